// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/order/fill.h"

#include "sparse/pardiso/symbolic/elimination_tree.h"

namespace qel::pardiso {

int64_t count_fill(const graph& adjacency, const int* perm, const int* inverse, memory_account& account) {
  const int n = adjacency.n;
  block<int> parent, order, count, work;
  const auto get = [&](block<int>& array, int64_t size) {
    return array.allocate(account, size, block_struc_s0);
  };
  if (!get(parent, n) || !get(order, n) || !get(count, n) || !get(work, 4 * static_cast<int64_t>(n)))
    return -1;
  const permuted_graph permuted{adjacency, perm, inverse, nullptr};
  elimination_tree(permuted, parent.get(), work.get());
  postorder(n, parent.get(), {}, order.get(), work.get());
  return column_counts(permuted, parent.get(), order.get(), count.get(), work.get());
}

}  // namespace qel::pardiso
