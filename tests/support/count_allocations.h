// SPDX-License-Identifier: BSD-3-Clause
// Counts this process's calls of operator new; link count_allocations.cpp.
#pragma once

namespace qel::test {

long allocation_count();

}  // namespace qel::test
