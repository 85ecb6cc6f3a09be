// SPDX-License-Identifier: BSD-3-Clause
// What a fork must not break: the service's locks are held across it, so that the child gets consistent
// records, and the child is marked, because an OpenMP team does not survive in it.
#pragma once

namespace qel {

/// Registers the handlers, once; every piece of the service that takes a lock calls it first.
void guard_forks();
/// True in a process that was forked after guard_forks.
bool in_forked_child();

}  // namespace qel
