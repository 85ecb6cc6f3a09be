// SPDX-License-Identifier: BSD-3-Clause
// Elimination tree of a permuted graph, its postorder and the column counts of the factor. Everything counts
// from 0; a parent of -1 is a root.
#pragma once

#include "sparse/pardiso/order/ordering.h"

namespace qel::pardiso {

/// The graph as the factorisation sees it. The two nodes of a pair have both their neighbours, so that they
/// stay in one supernode, where a 2-by-2 pivot can be made of them.
struct permuted_graph {
  const graph& adjacency;
  const int* perm;     ///< old number of a node
  const int* inverse;  ///< new number of a node
  const int* partner;  ///< old numbers of the other nodes of pairs, -1 for single nodes; null without pairs

  int size() const { return adjacency.n; }
  /// visit(new number) for the neighbours of new number k, some of them more than once.
  template <class Visit>
  void for_each_neighbour(int k, const Visit& visit) const {
    const int node = perm[k];
    visit_list(node, k, visit);
    if (partner == nullptr || partner[node] < 0) return;
    visit(inverse[partner[node]]);
    visit_list(partner[node], k, visit);
  }
  /// Whether new number k is the first node of a pair.
  bool opens_pair(int k) const {
    return partner != nullptr && partner[perm[k]] >= 0 && inverse[partner[perm[k]]] == k + 1;
  }

 private:
  template <class Visit>
  void visit_list(int node, int k, const Visit& visit) const {
    for (int64_t p = adjacency.xadj[node]; p < adjacency.xadj[node + 1]; ++p) {
      const int other = adjacency.adjncy[p];
      if (inverse[other] != k) visit(inverse[other]);
      if (partner != nullptr && partner[other] >= 0 && inverse[partner[other]] != k) {
        visit(inverse[partner[other]]);
      }
    }
  }
};

/// ancestor: n elements of work memory.
void elimination_tree(const permuted_graph& graph, int* parent, int* ancestor);

/// What a postorder has to respect beside the tree; arrays may be null.
struct postorder_wishes {
  const int* group = nullptr;   ///< ascending; nodes of a group stay together in its place
  const int* weight = nullptr;  ///< the heaviest of several children comes last
};
/// order[new] = old number of the node. Children stay in ascending order but for the heaviest. work: 3 n
/// elements.
void postorder(int n, const int* parent, const postorder_wishes& wishes, int* order, int* work);

/// Entries of each column of the factor, diagonal included, and their sum. order: a postorder without wishes;
/// work: 4 n elements. Near-linear in the entries of the graph: J. R. Gilbert, E. G. Ng, B. W. Peyton,
/// SIAM J. Matrix Anal. Appl. 15 (1994) 1075.
int64_t column_counts(const permuted_graph& graph, const int* parent, const int* order, int* count,
                      int* work);

}  // namespace qel::pardiso
