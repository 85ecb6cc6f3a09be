// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/symbolic/elimination_tree.h"

#include <algorithm>

namespace qel::pardiso {

void elimination_tree(const permuted_graph& graph, int* parent, int* ancestor) {
  for (int k = 0; k < graph.size(); ++k) {
    parent[k] = ancestor[k] = -1;
    graph.for_each_neighbour(k, [&](int i) {
      while (i >= 0 && i < k) {
        const int next = ancestor[i];
        ancestor[i] = k;
        if (next < 0) parent[i] = k;
        i = next;
      }
    });
  }
}

namespace {

/// Children of every node as linked lists.
class child_lists {
 public:
  child_lists(int n, const int* parent, const postorder_wishes& wishes, int* first, int* next)
      : parent_(parent), group_(wishes.group), first_(first), next_(next) {
    std::fill(first, first + n, -1);
    std::fill(next, next + n, -1);
    for (int k = n - 1; k >= 0; --k) {
      if (is_root(k)) continue;
      next[k] = first[parent[k]];
      first[parent[k]] = k;
    }
    if (wishes.weight == nullptr) return;
    for (int k = 0; k < n; ++k) heaviest_last(k, wishes.weight);
  }
  bool is_root(int k) const {
    return parent_[k] < 0 || (group_ != nullptr && group_[parent_[k]] != group_[k]);
  }

 private:
  void heaviest_last(int k, const int* weight) {
    int before_heaviest = -1, heaviest = first_[k], last = heaviest;
    if (heaviest < 0) return;
    for (int c = next_[heaviest], before = heaviest; c >= 0; before = c, c = next_[c]) {
      if (weight[c] >= weight[heaviest]) before_heaviest = before, heaviest = c;
      last = c;
    }
    if (heaviest == last) return;
    (before_heaviest < 0 ? first_[k] : next_[before_heaviest]) = next_[heaviest];
    next_[last] = heaviest;
    next_[heaviest] = -1;
  }

  const int *parent_, *group_;
  int *first_, *next_;
};

}  // namespace

void postorder(int n, const int* parent, const postorder_wishes& wishes, int* order, int* work) {
  int *const first = work, *const next = work + n, *const stack = work + 2 * static_cast<int64_t>(n);
  const child_lists children(n, parent, wishes, first, next);
  int count = 0;
  for (int root = 0; root < n; ++root) {
    if (!children.is_root(root)) continue;
    int height = 0;
    stack[height++] = root;
    while (height > 0) {
      const int k = stack[height - 1], child = first[k];
      if (child >= 0) {
        first[k] = next[child];
        stack[height++] = child;
      } else {
        order[count++] = k;
        --height;
      }
    }
  }
}

int64_t column_counts(const permuted_graph& graph, const int* parent, const int* order, int* count,
                      int* work) {
  const int n = graph.size();
  // first: number in the postorder of a node's first descendant. A column j is a leaf of row i's subtree if
  // its descendants begin behind those of all leaves before. Each leaf adds one path up to the tree that the
  // earlier leaves span: one entry at the leaf, taken back where the path meets that tree.
  int *const first = work, *const latest_first = work + n, *const leaf = work + 2 * static_cast<int64_t>(n),
             *const ancestor = work + 3 * static_cast<int64_t>(n);
  std::fill(first, first + n, -1);
  std::fill(latest_first, latest_first + n, -1);
  std::fill(leaf, leaf + n, -1);
  for (int k = 0; k < n; ++k) {
    ancestor[k] = k;
    const int bottom = order[k];
    count[bottom] = first[bottom] < 0 ? 1 : 0;
    for (int j = bottom; j >= 0 && first[j] < 0; j = parent[j]) first[j] = k;
  }
  const auto root_of = [&](int j) {
    int root = j;
    while (ancestor[root] != root) root = ancestor[root];
    while (ancestor[j] != root) {
      const int next = ancestor[j];
      ancestor[j] = root;
      j = next;
    }
    return root;
  };
  for (int k = 0; k < n; ++k) {
    const int j = order[k];
    if (parent[j] >= 0) --count[parent[j]];
    graph.for_each_neighbour(j, [&](int i) {
      if (i < j || first[j] <= latest_first[i]) return;
      ++count[j];
      if (leaf[i] >= 0) --count[root_of(leaf[i])];
      latest_first[i] = first[j];
      leaf[i] = j;
    });
    if (parent[j] >= 0) ancestor[j] = parent[j];
  }
  int64_t total = 0;
  for (int j = 0; j < n; ++j) {
    if (parent[j] >= 0) count[parent[j]] += count[j];
    total += count[j];
  }
  return total;
}

}  // namespace qel::pardiso
