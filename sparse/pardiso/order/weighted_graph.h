// SPDX-License-Identifier: BSD-3-Clause
// Adjacency graphs of the ordering: building them from a matrix, and putting nodes together.
#pragma once

#include "sparse/pardiso/order/ordering.h"

namespace qel::pardiso {

/// The pattern of B + B^T without its diagonal, where row i of B is row matched_row[i] of a (a itself if
/// that is null). Lists are ascending. error -2.
template <class T>
stage_status build_adjacency(const csr_view<T>& a, const int* matched_row, memory_account& account,
                             graph& result);

/// Nodes of a graph put together in groups: group g has the nodes members[first[g]] .. members[first[g + 1] -
/// 1], in the order in which they are to be numbered.
struct grouped_graph {
  graph groups;
  block<int> weight;  ///< nodes of a group
  block<int> first;   ///< groups.n + 1
  block<int> members;
};

/// Two nodes stay together that pairs names (old numbers, two and two, the first one goes first); then nodes
/// that have the same neighbours. error -2.
stage_status group_nodes(const graph& g, const int* pairs, int64_t pairs_length, memory_account& account,
                         grouped_graph& result);

}  // namespace qel::pardiso
