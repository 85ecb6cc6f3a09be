// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "sparse/pardiso/order/ordering.h"

namespace qel::pardiso {

/// Entries of the factor of a graph in an order, diagonal included; -1 if memory is out.
int64_t count_fill(const graph& adjacency, const int* perm, const int* inverse, memory_account& account);

}  // namespace qel::pardiso
