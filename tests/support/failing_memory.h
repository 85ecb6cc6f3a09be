// SPDX-License-Identifier: BSD-3-Clause
// Memory that fails when it is told to: the library's allocator and this program's operator new. Link
// failing_memory.cpp; call take_allocator() before the library's first use.
#pragma once

#include <cstddef>

namespace qel::test {

enum class failing { one, all_from_there };

void take_allocator();
/// From now on the k-th request (from 1; 0: none) fails, or that and all that follow.
void fail_request(size_t k, failing how);
/// Ends it. Returns how many requests failed.
size_t requests_failed();
/// Blocks of the library's allocator that were not given back.
long blocks_held();

}  // namespace qel::test
