// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/order/ordering.h"

#include <math.h>

#include <chrono>

#include "sparse/pardiso/order/dissection.h"
#include "sparse/pardiso/order/fill.h"
#include "sparse/pardiso/order/matching.h"
#include "sparse/pardiso/order/minimum_degree.h"

namespace qel::pardiso {
namespace {

constexpr stage_status kNoMemory{-2, block_struc_s0};
constexpr stage_status kRefusedMatching{-6, 1};

class stopwatch {
 public:
  double seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
  }

 private:
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

/// exp, kept finite and off zero: entries of very different size have duals beyond the range of a double.
double scale_of(double logarithm) { return exp(fmin(fmax(logarithm, -700), 700)); }

/// Moduli of the diagonal, scaled if there are scales; 0 where there is no entry.
template <class T>
void take_diagonal(const csr_view<T>& a, const double* scale, double* diagonal) {
  for (int i = 0; i < a.n; ++i) {
    diagonal[i] = 0;
    for (int p = a.ia[i] - 1; p < a.ia[i + 1] - 1; ++p)
      if (a.ja[p] - 1 == i) diagonal[i] += modulus(a.a[p]);
    if (scale != nullptr) diagonal[i] *= scale[i] * scale[i];
  }
}

bool fill_scales(const matching& matched, const cost_matrix& costs, bool symmetric, memory_account& account,
                 ordering& result) {
  const int n = costs.n;
  if (!result.row_scale.allocate(account, n, block_struc_fi) ||
      !result.column_scale.allocate(account, n, block_struc_fi))
    return false;
  for (int i = 0; i < n; ++i) {
    const double row = matched.row_dual[i], column = matched.column_dual[i] - costs.column_log[i];
    result.row_scale[i] = scale_of(symmetric ? (row + column) / 2 : row);
    result.column_scale[i] = symmetric ? result.row_scale[i] : scale_of(column);
  }
  return true;
}

template <class T>
stage_status match(const csr_view<T>& a, const ordering_options& options, matching_kind kind,
                   memory_account& account, ordering& result, pairing& paired) {
  cost_matrix costs;
  matching matched;
  stage_status status = build_costs(a, account, costs);
  if (status.ok()) status = match_rows(costs, account, matched);
  if (!status.ok()) return status;
  if (matched.cardinality < a.n) return {-6, -matched.cardinality};
  const bool symmetric = kind == matching_kind::pairs;
  if (options.scaling == 1 && !fill_scales(matched, costs, symmetric, account, result)) return kNoMemory;
  if (!symmetric) {
    result.matched_row = std::move(matched.row_of);
    return {};
  }
  block<double> diagonal;
  if (!diagonal.allocate(account, a.n, block_struc_s0)) return kNoMemory;
  take_diagonal(a, result.row_scale.get(), diagonal.get());
  return pair_nodes(matched, a.n, costs.column_log.get(), diagonal.get(), account, paired);
}

/// The order of the nodes, and where classes begin in it.
struct class_order {
  block<int> nodes;
  block<int> class_start;
  dissection classes;
};

/// Orders the groups by one of the methods 0 .. 3.
stage_status order_groups(const grouped_graph& grouped, int method, int subgraphs,
                          const dissection_options& options, memory_account& account, class_order& result) {
  const graph& g = grouped.groups;
  minimum_degree_problem problem{g, grouped.weight.get()};
  if (method != 0) {
    const bool by_degree = method == 1;
    int64_t most_neighbours = 0;
    for (int i = 0; i < g.n; ++i) most_neighbours = std::max(most_neighbours, g.xadj[i + 1] - g.xadj[i]);
    const dissection_plan plan{choose_leaf(g.n, g.xadj[g.n], most_neighbours), method == 2 ? 1 : subgraphs,
                               !by_degree, by_degree};
    const stage_status status = dissect(g, grouped.weight.get(), options, plan, account, result.classes);
    if (!status.ok()) return status;
    problem.node_class = result.classes.node_class.get();
    problem.classes = result.classes.classes;
  }
  if (!result.nodes.allocate(account, g.n, block_struc_s0) ||
      !result.class_start.allocate(account, problem.classes + 1, block_struc_s0))
    return kNoMemory;
  return minimum_degree(problem, account, result.nodes.get(), result.class_start.get());
}

/// The independent part of each node (old number), -1 for none.
void name_parts(const class_order& found, int n, const int* perm, int* part_of) {
  for (int i = 0; i < n; ++i) part_of[i] = -1;
  for (int k = 0; k < found.classes.part_count; ++k) {
    const column_range classes = found.classes.parts[k];
    for (int at = found.class_start[classes.first]; at < found.class_start[classes.last + 1]; ++at)
      part_of[perm[at]] = k;
  }
}

/// Moves each node that is held back behind its partner (and the partner's own), if that comes later; it then
/// belongs to the partner's part.
bool place_held_back(const pairing& paired, ordering& order, int n, int* part_of, memory_account& account) {
  if (paired.held_back_length == 0) return true;
  block<int> mate, first_waiting, next_waiting, moved;
  const auto get = [&](block<int>& array) { return array.allocate(account, n, block_struc_s0); };
  if (!get(mate) || !get(first_waiting) || !get(next_waiting) || !get(moved)) return false;
  for (int i = 0; i < n; ++i) mate[i] = i, first_waiting[i] = -1;
  for (int64_t p = 0; p < paired.pairs_length; p += 2) mate[paired.pairs[p]] = paired.pairs[p + 1];
  for (int64_t p = 0; p < paired.held_back_length; p += 2) {
    const int i = paired.held_back[p], after = mate[paired.held_back[p + 1]];
    if (order.inverse[i] > order.inverse[after]) continue;
    next_waiting[i] = first_waiting[after];
    first_waiting[after] = i;
    order.inverse[i] = -1;
    part_of[i] = part_of[after];
  }
  int k = 0;
  for (int at = 0; at < n; ++at) {
    const int old = order.perm[at];
    if (order.inverse[old] < 0) continue;
    moved[k++] = old;
    for (int i = first_waiting[old]; i >= 0; i = next_waiting[i]) moved[k++] = i;
  }
  for (int at = 0; at < n; ++at) order.inverse[order.perm[at] = moved[at]] = at;
  return true;
}

/// True if the caller's permutation (from 1) is one.
bool take_users(const int* user_perm, int n, ordering& result) {
  for (int i = 0; i < n; ++i) result.inverse[i] = -1;
  for (int k = 0; k < n; ++k) {
    if (user_perm[k] < 1 || user_perm[k] > n) return false;
    const int old = user_perm[k] - 1;
    if (result.inverse[old] >= 0) return false;
    result.perm[k] = old;
    result.inverse[old] = k;
  }
  return true;
}

/// Ranges of the parts in the final order; without parts all columns are one range. A dissection's list does
/// not end with a longer range than the last column.
bool set_ranges(int n, const int* part_of, int parts, bool dissected, memory_account& account,
                ordering& result) {
  block<column_range> all;
  if (!all.allocate(account, parts + 2, block_struc_s0)) return false;
  int count = 0;
  for (int at = 0; at < n && parts > 0; ++at) {
    const int part = part_of[result.perm[at]];
    if (part < 0) continue;
    if (at > 0 && part_of[result.perm[at - 1]] == part) {
      all[count - 1].last = at;
    } else {
      all[count++] = {at, at};
    }
  }
  if (count == 0) all[count++] = {0, n - 1};
  column_range& last = all[count - 1];
  if (dissected && last.last == n - 1 && last.first < n - 1) {
    last.last = n - 2;
    all[count++] = {n - 1, n - 1};
  }
  if (!result.ranges.allocate(account, count, block_struc_fi)) return false;
  for (int k = 0; k < count; ++k) result.ranges[k] = all[k];
  return true;
}

bool allocate_permutation(int n, memory_account& account, ordering& result) {
  return result.perm.allocate(account, n, block_struc_fi) &&
         result.inverse.allocate(account, n, block_struc_fi);
}

/// perm, inverse and ranges by result.method.
stage_status order_columns(const graph& adjacency, const pairing& paired, ordering& result,
                           memory_account& account) {
  const int n = adjacency.n;
  if (!allocate_permutation(n, account, result)) return kNoMemory;
  int64_t longest = 0;
  for (int i = 0; i < n; ++i) longest = std::max(longest, adjacency.xadj[i + 1] - adjacency.xadj[i]);
  const dissection_options dissecting = choose_dissection_options(n, longest);
  result.dense_rows = dissecting.explicit_options != 0;
  grouped_graph grouped;
  class_order found;
  block<int> part_of;
  stage_status status = group_nodes(adjacency, paired.pairs.get(), paired.pairs_length, account, grouped);
  if (status.ok())
    status = order_groups(grouped, result.method, result.subgraphs, dissecting, account, found);
  if (!status.ok()) return status;
  if (!part_of.allocate(account, n, block_struc_s0)) return kNoMemory;
  int k = 0;
  for (int c = 0; c < grouped.groups.n; ++c) {
    const int group = found.nodes[c];
    for (int m = grouped.first[group]; m < grouped.first[group + 1]; ++m)
      result.perm[k++] = grouped.members[m];
  }
  for (k = 0; k < n; ++k) result.inverse[result.perm[k]] = k;
  name_parts(found, n, result.perm.get(), part_of.get());
  const int parts = result.method == 1 || result.method == 3 ? found.classes.part_count : 0;
  if (!place_held_back(paired, result, n, part_of.get(), account) ||
      !set_ranges(n, part_of.get(), parts, result.method >= 2, account, result))
    return kNoMemory;
  return {};
}

/// The same by minimum degree or by nested dissection, whichever leaves less fill.
stage_status order_by_fill(const graph& adjacency, const pairing& paired, ordering& result,
                           memory_account& account) {
  ordering by_degree;
  by_degree.method = 0;
  by_degree.subgraphs = result.subgraphs;
  result.method = 2;
  stage_status status = order_columns(adjacency, paired, by_degree, account);
  if (status.ok()) status = order_columns(adjacency, paired, result, account);
  if (!status.ok()) return status;
  const int64_t fill = count_fill(adjacency, result.perm.get(), result.inverse.get(), account);
  const int64_t fill_by_degree =
      count_fill(adjacency, by_degree.perm.get(), by_degree.inverse.get(), account);
  if (fill < 0 || fill_by_degree < 0) return kNoMemory;
  if (fill_by_degree >= fill) return {};
  result.method = 0;
  result.perm = std::move(by_degree.perm);
  result.inverse = std::move(by_degree.inverse);
  result.ranges = std::move(by_degree.ranges);
  return {};
}

}  // namespace

matching_kind choose_matching(const matrix_type& type, int asked) {
  if (type.number == 11 || type.number == 13) {
    if (asked == 1) return matching_kind::rows;
    return asked >= 2 && asked <= 4 ? matching_kind::refused : matching_kind::none;
  }
  return type.indefinite() && asked > 0 ? matching_kind::pairs : matching_kind::none;
}

template <class T>
stage_status compute_ordering(const csr_view<T>& a, const ordering_options& options, int* user_perm,
                              memory_account& account, ordering& result, graph& adjacency) {
  const int n = a.n;
  result.subgraphs = choose_subgraphs(n, a.type.number, options.threads, options.subgraph_exponent);
  result.method = options.method;
  const matching_kind kind = choose_matching(a.type, options.matching);
  if (kind == matching_kind::refused) return kRefusedMatching;
  const stopwatch reorder;
  pairing paired;
  stage_status status;
  if (kind != matching_kind::none) status = match(a, options, kind, account, result, paired);
  if (!status.ok()) return status;
  const double matching_seconds = reorder.seconds();

  const stopwatch fulladj;
  status = build_adjacency(a, result.matched_row.get(), account, adjacency);
  result.fulladj_seconds = fulladj.seconds();
  if (!status.ok()) return status;

  const stopwatch order;
  if (paired.pairs_length > 0 && options.permutation_mode != 1) {
    if (!result.pairs.allocate(account, paired.pairs_length, block_struc_fi)) return kNoMemory;
    for (int64_t p = 0; p < paired.pairs_length; ++p) result.pairs[p] = paired.pairs[p];
  }
  if (options.permutation_mode == 1) {
    if (!allocate_permutation(n, account, result)) return kNoMemory;
    if (!take_users(user_perm, n, result)) return {-3, 0};
    if (!set_ranges(n, nullptr, 0, false, account, result)) return kNoMemory;
  } else {
    const bool by_fill = options.choose_by_fill && (result.method == 0 || result.method == 2);
    status = by_fill ? order_by_fill(adjacency, paired, result, account)
                     : order_columns(adjacency, paired, result, account);
    if (!status.ok()) return status;
  }
  if (options.permutation_mode == 2)
    for (int k = 0; k < n; ++k) user_perm[k] = result.perm[k] + 1;
  result.reorder_seconds = matching_seconds + order.seconds();
  return {};
}

#define QEL_INSTANTIATE(T)                                                                     \
  template stage_status compute_ordering<T>(const csr_view<T>&, const ordering_options&, int*, \
                                            memory_account&, ordering&, graph&);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel::pardiso
