// SPDX-License-Identifier: BSD-3-Clause
#include <string.h>

#include "sparse/pardiso/order/weighted_graph.h"

namespace qel::pardiso {
namespace {

constexpr stage_status kNoMemory{-2, block_struc_s0};

/// Lists of a symmetric graph, transposed, are the same lists in ascending order; double entries then stand
/// side by side.
bool sort_lists(int n, const int64_t* start, const int* lists, memory_account& account, graph& result) {
  block<int64_t> next;
  if (!next.allocate(account, n + 1, block_struc_s0) ||
      !result.xadj.allocate(account, n + 1, block_struc_s0) ||
      !result.adjncy.allocate(account, start[n], block_struc_s0))
    return false;
  memcpy(next.get(), start, static_cast<size_t>(n + 1) * sizeof(int64_t));
  int* const adjncy = result.adjncy.get();
  for (int i = 0; i < n; ++i)
    for (int64_t p = start[i]; p < start[i + 1]; ++p) {
      const int j = lists[p];
      if (next[j] == start[j] || adjncy[next[j] - 1] != i) adjncy[next[j]++] = i;
    }
  result.n = n;
  int64_t kept = 0;
  for (int i = 0; i < n; ++i) {
    const int64_t length = next[i] - start[i];
    memmove(adjncy + kept, adjncy + start[i], static_cast<size_t>(length) * sizeof(int));
    result.xadj[i] = kept;
    kept += length;
  }
  result.xadj[n] = kept;
  return true;
}

/// Calls pair(i, j) for each edge that the rows give, i != j.
template <class Rows, class Pair>
void for_each_edge(int n, const Rows& rows, const Pair& pair) {
  for (int i = 0; i < n; ++i)
    rows(i, [&](int j) {
      if (i != j) pair(i, j);
    });
}

/// rows(i, f) calls f(j) for the entries of row i; each is taken in both directions.
template <class Rows>
bool symmetrise(int n, const Rows& rows, memory_account& account, graph& result) {
  block<int64_t> start;
  block<int> lists;
  if (!start.allocate(account, n + 2, block_struc_s0)) return false;
  memset(start.get(), 0, static_cast<size_t>(n + 2) * sizeof(int64_t));
  // Counted one place late, so that filling the lists moves each start to its own place.
  int64_t* const next = start.get() + 1;
  for_each_edge(n, rows, [&](int i, int j) { ++next[i + 1], ++next[j + 1]; });
  for (int i = 0; i < n; ++i) next[i + 1] += next[i];
  if (!lists.allocate(account, next[n], block_struc_s0)) return false;
  for_each_edge(n, rows, [&](int i, int j) {
    lists[next[i]++] = j;
    lists[next[j]++] = i;
  });
  return sort_lists(n, start.get(), lists.get(), account, result);
}

/// A map from nodes to groups, from the list of pairs.
int number_groups(int n, const int* pairs, int64_t pairs_length, int* group_of) {
  for (int i = 0; i < n; ++i) group_of[i] = i;
  for (int64_t p = 0; p + 1 < pairs_length; p += 2) group_of[pairs[p + 1]] = pairs[p];
  int groups = 0;
  for (int i = 0; i < n; ++i)
    if (group_of[i] == i) group_of[i] = groups++ - n;  // negative: numbered
  for (int i = 0; i < n; ++i)
    if (group_of[i] >= 0) group_of[i] = group_of[group_of[i]];
  for (int i = 0; i < n; ++i) group_of[i] += n;
  return groups;
}

/// Maps nodes with the same closed neighbourhood to the first of them; returns how many classes there are.
/// hash_head and hash_next: n each.
int find_twins(const graph& g, int* representative, int* hash_head, int* hash_next) {
  for (int i = 0; i < g.n; ++i) hash_head[i] = -1;
  int classes = 0;
  for (int i = 0; i < g.n; ++i) {
    const int64_t begin = g.xadj[i], length = g.xadj[i + 1] - begin;
    uint64_t sum = static_cast<uint64_t>(i);
    for (int64_t p = begin; p < begin + length; ++p) sum += static_cast<uint64_t>(g.adjncy[p]);
    const int slot = static_cast<int>(sum % static_cast<uint64_t>(g.n));
    representative[i] = i;
    for (int j = hash_head[slot]; j >= 0; j = hash_next[j]) {
      if (g.xadj[j + 1] - g.xadj[j] != length) continue;
      // Ascending lists that differ in i and j alone: compare them with the other node taken out.
      const int* p = g.adjncy.get() + begin;
      const int* q = g.adjncy.get() + g.xadj[j];
      const int* const p_end = p + length;
      const int* const q_end = q + length;
      bool met_j = false, met_i = false;
      for (;;) {
        if (p != p_end && *p == j) met_j = true, ++p;
        if (q != q_end && *q == i) met_i = true, ++q;
        if (p == p_end || q == q_end || *p != *q) break;
        ++p, ++q;
      }
      if (p == p_end && q == q_end && met_i && met_j) {
        representative[i] = j;
        break;
      }
    }
    if (representative[i] == i) {
      hash_next[i] = hash_head[slot];
      hash_head[slot] = i;
      ++classes;
    }
  }
  return classes;
}

/// The graph of the groups that group_of names, ascending by first member.
bool quotient(const graph& g, const int* group_of, int groups, memory_account& account, graph& result) {
  block<int> mark, list;
  block<int64_t> start;
  if (!mark.allocate(account, groups, block_struc_s0) ||
      !start.allocate(account, groups + 2, block_struc_s0) ||
      !list.allocate(account, g.n + 1, block_struc_s0) ||
      !result.xadj.allocate(account, groups + 1, block_struc_s0) ||
      !result.adjncy.allocate(account, g.xadj[g.n], block_struc_s0))
    return false;
  // Nodes by group.
  int64_t* const next = start.get() + 1;
  memset(start.get(), 0, static_cast<size_t>(groups + 2) * sizeof(int64_t));
  for (int i = 0; i < g.n; ++i) ++next[group_of[i] + 1];
  for (int c = 0; c < groups; ++c) next[c + 1] += next[c];
  for (int i = 0; i < g.n; ++i) list[next[group_of[i]]++] = i;
  for (int c = 0; c < groups; ++c) mark[c] = -1;
  int64_t kept = 0;
  for (int c = 0; c < groups; ++c) {
    result.xadj[c] = kept;
    mark[c] = c;
    for (int64_t m = start[c]; m < start[c + 1]; ++m)
      for (int64_t p = g.xadj[list[m]]; p < g.xadj[list[m] + 1]; ++p) {
        const int other = group_of[g.adjncy[p]];
        if (mark[other] != c) mark[other] = c, result.adjncy[kept++] = other;
      }
  }
  result.xadj[groups] = kept;
  result.n = groups;
  return true;
}

/// Lists of a graph with unsorted lists, sorted.
bool sorted(graph& g, memory_account& account) {
  graph ordered;
  if (!sort_lists(g.n, g.xadj.get(), g.adjncy.get(), account, ordered)) return false;
  g = std::move(ordered);
  return true;
}

}  // namespace

template <class T>
stage_status build_adjacency(const csr_view<T>& a, const int* matched_row, memory_account& account,
                             graph& result) {
  const auto rows = [&](int i, const auto& entry) {
    const int r = matched_row == nullptr ? i : matched_row[i];
    for (int p = a.ia[r] - 1; p < a.ia[r + 1] - 1; ++p) entry(a.ja[p] - 1);
  };
  return symmetrise(a.n, rows, account, result) ? stage_status{} : kNoMemory;
}

stage_status group_nodes(const graph& g, const int* pairs, int64_t pairs_length, memory_account& account,
                         grouped_graph& result) {
  const int n = g.n;
  block<int> group_of, hash_head, hash_next, representative;
  if (!group_of.allocate(account, n, block_struc_s0)) return kNoMemory;
  const int pair_groups = number_groups(n, pairs, pairs_length, group_of.get());
  graph by_pairs;
  if (pairs_length > 0) {
    if (!quotient(g, group_of.get(), pair_groups, account, by_pairs) || !sorted(by_pairs, account))
      return kNoMemory;
  }
  const graph& base = pairs_length > 0 ? by_pairs : g;
  if (!representative.allocate(account, base.n, block_struc_s0) ||
      !hash_head.allocate(account, base.n, block_struc_s0) ||
      !hash_next.allocate(account, base.n, block_struc_s0))
    return kNoMemory;
  const int classes = find_twins(base, representative.get(), hash_head.get(), hash_next.get());
  int* const class_of = hash_head.get();
  int numbered = 0;
  for (int i = 0; i < base.n; ++i)
    class_of[i] = representative[i] == i ? numbered++ : class_of[representative[i]];
  for (int i = 0; i < n; ++i) group_of[i] = class_of[group_of[i]];

  if (!quotient(base, class_of, classes, account, result.groups) ||
      !result.weight.allocate(account, classes, block_struc_s0) ||
      !result.first.allocate(account, classes + 1, block_struc_s0) ||
      !result.members.allocate(account, n, block_struc_s0))
    return kNoMemory;
  for (int c = 0; c < classes; ++c) result.weight[c] = 0;
  for (int i = 0; i < n; ++i) ++result.weight[group_of[i]];
  result.first[0] = 0;
  for (int c = 0; c < classes; ++c) result.first[c + 1] = result.first[c] + result.weight[c];
  int* const next = hash_next.get();
  for (int c = 0; c < classes; ++c) next[c] = result.first[c];
  const auto place = [&](int i) { result.members[next[group_of[i]]++] = i; };
  for (int64_t p = 0; p < pairs_length; ++p) place(pairs[p]);
  if (pairs_length > 0) {
    // Pairs stand first in their groups, unbroken; the others follow.
    block<bool> paired;
    if (!paired.allocate(account, n, block_struc_s0)) return kNoMemory;
    for (int i = 0; i < n; ++i) paired[i] = false;
    for (int64_t p = 0; p < pairs_length; ++p) paired[pairs[p]] = true;
    for (int i = 0; i < n; ++i)
      if (!paired[i]) place(i);
  } else {
    for (int i = 0; i < n; ++i) place(i);
  }
  return {};
}

#define QEL_INSTANTIATE(T) \
  template stage_status build_adjacency<T>(const csr_view<T>&, const int*, memory_account&, graph&);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel::pardiso
