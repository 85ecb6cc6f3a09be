// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/symbolic/structure.h"

#include <omp.h>

#include <algorithm>
#include <climits>
#include <numeric>

#include "sparse/pardiso/symbolic/schedule.h"
#include "sparse/pardiso/symbolic/supernodes.h"

namespace qel::pardiso {

namespace {

constexpr stage_status kNoMemory{-2, 0};
constexpr stage_status kInternal{-3, 0};

/// Groups of columns that the postorder keeps together: independent subgraphs and what lies between them.
/// Null if there is but one: the last column is last in any postorder, so that a range of it alone, behind
/// one with all others, changes nothing.
bool make_groups(int n, const block<column_range>& ranges, memory_account& account, block<int>& group) {
  int64_t count = ranges.size();
  if (count > 0 && ranges[count - 1].first == n - 1) --count;
  if (count < 1 || (count == 1 && ranges[0].first == 0 && ranges[0].last >= n - 2)) return true;
  if (!group.allocate(account, n, block_struc_s1 - 20)) return false;
  std::fill(group.begin(), group.end(), 0);
  for (int64_t i = 0; i < count; ++i) {
    group[ranges[i].first] = 1;
    if (ranges[i].last + 1 < n) group[ranges[i].last + 1] = 1;
  }
  std::partial_sum(group.begin(), group.end(), group.begin());
  return true;
}

/// Other nodes of pairs whose two nodes are neighbours in the order.
bool make_partners(const ordering& order, int n, memory_account& account, block<int>& partner) {
  if (order.pairs.size() == 0) return true;
  if (!partner.allocate(account, n, block_struc_s1 - 21)) return false;
  std::fill(partner.begin(), partner.end(), -1);
  for (int64_t i = 0; i + 1 < order.pairs.size(); i += 2) {
    const int a = order.pairs[i], b = order.pairs[i + 1];
    const int apart = order.inverse[a] - order.inverse[b];
    if (apart == 1 || apart == -1) partner[a] = b, partner[b] = a;
  }
  return true;
}

/// perm, its inverse and arrays by columns after renumbering by sequence[new] = old.
void renumber(int n, const int* sequence, ordering& order, int* work) {
  std::copy(order.perm.begin(), order.perm.begin() + n, work);
  for (int k = 0; k < n; ++k) {
    order.perm[k] = work[sequence[k]];
    order.inverse[order.perm[k]] = k;
  }
}

class builder {
 public:
  builder(const graph& adjacency, const structure_options& options, ordering& order, memory_account& account,
          structure& result)
      : n_(adjacency.n),
        adjacency_(adjacency),
        options_(options),
        order_(order),
        account_(account),
        result_(result) {}

  stage_status run() {
    const double start = omp_get_wtime();
    result_.n = n_;
    const int64_t off_diagonal = adjacency_.xadj[n_];
    result_.matrix_entries = (options_.unsymmetric ? off_diagonal : off_diagonal / 2) + n_;
    plan_ = plan_supernodes({options_.native, options_.panel_width, options_.unsymmetric});
    result_.panel_width = plan_.width;
    stage_status status = columns();
    if (status.ok()) status = supernodes();
    if (status.ok()) status = rows();
    if (status.ok()) status = ranges();
    const double middle = omp_get_wtime();
    if (status.ok()) status = schedule();
    result_.symbfct_seconds = middle - start;
    result_.parlist_seconds = omp_get_wtime() - middle;
    return status;
  }

 private:
  permuted_graph view() const {
    return {adjacency_, order_.perm.get(), order_.inverse.get(), partner_ ? partner_.get() : nullptr};
  }
  const int* group() const { return group_ ? group_.get() : nullptr; }

  /// Tree, postorder and counts, and from them the runs of columns.
  stage_status columns() {
    block<int> parent, count, sequence, work;
    if (!make_groups(n_, order_.ranges, account_, group_) || !make_partners(order_, n_, account_, partner_) ||
        !parent.allocate(account_, n_, block_struc_s1 - 22) ||
        !count.allocate(account_, n_, block_struc_s1 - 23) ||
        !sequence.allocate(account_, n_, block_struc_s1 - 24) ||
        !work.allocate(account_, 4 * static_cast<int64_t>(n_), block_struc_s1 - 25)) {
      return kNoMemory;
    }
    elimination_tree(view(), parent.get(), work.get());
    postorder(n_, parent.get(), {}, sequence.get(), work.get());
    const int64_t total = column_counts(view(), parent.get(), sequence.get(), count.get(), work.get());
    if (total > INT_MAX) return {-8, analysis_overflow};

    // The first column of a pair must come right before the second; otherwise the child with most entries
    // may share its structure with the parent.
    int* const weight = work.get() + 3 * static_cast<int64_t>(n_);
    for (int k = 0; k < n_; ++k) weight[k] = view().opens_pair(k) ? INT_MAX : count[k];
    postorder(n_, parent.get(), {group(), weight}, sequence.get(), work.get());
    renumber(n_, sequence.get(), order_, work.get());
    int *const old_number_parent = work.get(), *const old_number_count = work.get() + n_,
               *const new_number = work.get() + 2 * static_cast<int64_t>(n_);
    std::copy(parent.begin(), parent.end(), old_number_parent);
    std::copy(count.begin(), count.end(), old_number_count);
    for (int k = 0; k < n_; ++k) new_number[sequence[k]] = k;
    for (int k = 0; k < n_; ++k) {
      const int above = old_number_parent[sequence[k]];
      parent[k] = above < 0 ? -1 : new_number[above];
      count[k] = old_number_count[sequence[k]];
    }

    // Groups may share a supernode unless supernodes move.
    const int* const kept_apart = plan_.merge ? group() : nullptr;
    if (!find_runs(n_, parent.get(), count.get(), kept_apart, account_, runs_)) return kNoMemory;
    result_.largest_run = runs_.largest;
    if (plan_.merge) {
      if (!merge_runs(n_, plan_, group(), account_, runs_, sequence.get())) return kNoMemory;
      renumber(n_, sequence.get(), order_, work.get());
    }
    return {};
  }

  /// Width of the supernode that starts at a column of a run.
  int width_at(int column, int end) const {
    if (end - column <= plan_.width) return end - column;
    const bool splits_pair = plan_.width > 1 && view().opens_pair(column + plan_.width - 1);
    return plan_.width - (splits_pair ? 1 : 0);
  }
  template <class Visit>
  void for_each_panel(const Visit& visit) const {
    for (int i = 0; i < runs_.count; ++i) {
      const int end = runs_.first[i + 1];
      for (int column = runs_.first[i], width = 0; column < end; column += width) {
        width = width_at(column, end);
        visit(i, column, width, runs_.rows[i] - (column - runs_.first[i]));
      }
    }
  }

  /// Cuts the runs; sizes and places of all panels.
  stage_status supernodes() {
    int count = 0;
    for_each_panel([&](int, int, int, int) { ++count; });
    structure& s = result_;
    s.supernodes = count;
    if (!s.xsup.allocate(account_, count + 1, block_struc_fi) ||
        !s.snode.allocate(account_, n_, block_struc_fi - 1) ||
        !s.run.allocate(account_, count, block_struc_fi - 1) ||
        !s.parent.allocate(account_, count, block_struc_fi - 1) ||
        !s.xlindx.allocate(account_, count + 1, block_struc_fi - 2) ||
        !s.xlnz.allocate(account_, count + 1, block_struc_fi - 3) ||
        (options_.unsymmetric && !s.xunz.allocate(account_, count + 1, block_struc_fi - 3)) ||
        !panel_of_run_.allocate(account_, runs_.count + 1, block_struc_s2)) {
      return kNoMemory;
    }
    int64_t indices = 0, elements = 0;
    int panel = 0;
    for_each_panel([&](int run, int column, int width, int row_count) {
      if (column == runs_.first[run]) panel_of_run_[run] = panel;
      s.run[panel] = panel_of_run_[run];
      s.xsup[panel] = column;
      std::fill_n(s.snode.get() + column, width, panel);
      s.xlindx[panel] = indices;
      s.xlnz[panel] = elements;
      indices += row_count;
      elements += static_cast<int64_t>(row_count) * width;
      s.longest_rows = std::max<int64_t>(s.longest_rows, row_count);
      s.largest_panel = std::max(s.largest_panel, static_cast<int64_t>(row_count) * width);
      s.nonzeros_l += static_cast<int64_t>(row_count) * width - static_cast<int64_t>(width) * (width - 1) / 2;
      longest_tail_ = std::max<int64_t>(longest_tail_, row_count - width);
      widest_ = std::max(widest_, width);
      ++panel;
    });
    panel_of_run_[runs_.count] = panel;
    s.xsup[panel] = n_;
    s.xlindx[panel] = indices;
    s.xlnz[panel] = elements;
    if (s.xunz) std::copy(s.xlnz.begin(), s.xlnz.end(), s.xunz.begin());
    s.nonzeros_u = options_.unsymmetric ? s.nonzeros_l - n_ : 0;
    s.factor_elements = options_.unsymmetric ? 2 * elements : elements;
    // An update's product, and beside it the one for U, or the source's rows times D.
    s.work_elements = (longest_tail_ + (options_.unsymmetric ? longest_tail_ : widest_)) * widest_;
    if (!s.lindx.allocate(account_, indices, block_struc_fi - 4)) return kNoMemory;
    return {};
  }

  /// Row list of every run from its columns of A and its children; panels behind the first have tails of it.
  stage_status rows() {
    block<int> mark, first_child, next_child, extra;
    if (!mark.allocate(account_, n_, block_struc_s2 - 1) ||
        !first_child.allocate(account_, runs_.count, block_struc_s2 - 1) ||
        !next_child.allocate(account_, runs_.count, block_struc_s2 - 1) ||
        !extra.allocate(account_, std::max<int64_t>(longest_tail_, 1), block_struc_s2 - 2)) {
      return kNoMemory;
    }
    structure& s = result_;
    std::fill(mark.begin(), mark.end(), -1);
    std::fill(first_child.begin(), first_child.end(), -1);
    for (int i = 0; i < runs_.count; ++i) {
      const int first = runs_.first[i], end = runs_.first[i + 1];
      const int tail = runs_.rows[i] - (end - first);
      int* const list = s.lindx.get() + s.xlindx[panel_of_run_[i]];
      std::iota(list, list + (end - first), first);
      int* const below = list + (end - first);
      int kept = 0, extras = 0;
      const auto child_rows = [&](int c, const int*& from, const int*& to) {
        from = s.lindx.get() + s.xlindx[panel_of_run_[c]] + (runs_.first[c + 1] - runs_.first[c]);
        to = s.lindx.get() + s.xlindx[panel_of_run_[c]] + runs_.rows[c];
        from = std::lower_bound(from, to, end);
      };
      const auto add = [&](int row) {
        if (row < end || mark[row] == i) return true;
        mark[row] = i;
        if (kept + extras == tail) return false;
        extra[extras++] = row;
        return true;
      };
      // The longest child's rows come in order already.
      int longest = -1;
      for (int c = first_child[i]; c >= 0; c = next_child[c]) {
        if (longest < 0 || runs_.rows[c] > runs_.rows[longest]) longest = c;
      }
      bool fits = true;
      if (longest >= 0) {
        const int *from = nullptr, *to = nullptr;
        child_rows(longest, from, to);
        if (to - from > tail) return kInternal;
        for (; from != to; ++from) mark[*from] = i, below[kept++] = *from;
      }
      for (int c = first_child[i]; c >= 0 && kept + extras < tail; c = next_child[c]) {
        if (c == longest) continue;
        const int *from = nullptr, *to = nullptr;
        for (child_rows(c, from, to); from != to; ++from) fits = add(*from) && fits;
      }
      for (int j = first; j < end && kept + extras < tail; ++j) {
        view().for_each_neighbour(j, [&](int row) { fits = add(row) && fits; });
      }
      if (!fits || kept + extras != tail) return kInternal;
      std::sort(extra.begin(), extra.begin() + extras);
      for (int to = tail - 1, p = kept - 1, q = extras - 1; q >= 0; --to) {
        below[to] = p >= 0 && below[p] > extra[q] ? below[p--] : extra[q--];
      }
      for (int panel = panel_of_run_[i] + 1; panel < panel_of_run_[i + 1]; ++panel) {
        const int64_t skipped = s.xsup[panel] - first;
        std::copy(list + skipped, list + runs_.rows[i], s.lindx.get() + s.xlindx[panel]);
      }
      if (const int above = runs_.parent[i]; above >= 0) {
        next_child[i] = first_child[above];
        first_child[above] = i;
      }
    }
    return {};
  }

  /// Independent subgraphs as ranges of supernodes; behind them the part that depends on all of them.
  stage_status ranges() {
    structure& s = result_;
    const int64_t count = order_.ranges.size();
    if (!s.supernode_ranges.allocate(account_, count + 1, block_struc_fi - 5)) return kNoMemory;
    int behind = 0;
    for (int64_t i = 0; i < count; ++i) {
      const column_range columns = order_.ranges[i];
      column_range range{s.snode[columns.first], s.snode[columns.last]};
      if (columns.last + 1 < n_ && s.snode[columns.last + 1] == range.last) --range.last;
      s.supernode_ranges[i] = range;
      behind = range.last + 1;
    }
    s.supernode_ranges[count] = {behind, s.supernodes - 1};
    return {};
  }

  /// Supernode tree, work, and the order of the numeric phase.
  stage_status schedule() {
    structure& s = result_;
    block<double> work;
    block<int> height;
    if (!s.pnlsch.allocate(account_, s.supernodes, block_struc_fi - 5) ||
        !work.allocate(account_, s.supernodes, block_struc_s2 - 8) ||
        !height.allocate(account_, s.supernodes, block_struc_s2 - 9)) {
      return kNoMemory;
    }
    std::fill(height.begin(), height.end(), 1);
    for (int i = 0; i < s.supernodes; ++i) {
      const int width = s.xsup[i + 1] - s.xsup[i];
      const int* const list = s.lindx.get() + s.xlindx[i];
      const int64_t row_count = s.xlindx[i + 1] - s.xlindx[i];
      s.parent[i] = row_count > width ? s.snode[list[width]] : -1;
      work[i] = 0;
      for (int j = 0; j < width; ++j) {
        const double below = static_cast<double>(row_count - j - 1);
        work[i] += options_.unsymmetric ? 2 * below * below + below : below * below + 2 * below + 1;
      }
      if (options_.is_complex) work[i] *= 4;
      s.work += work[i];
      s.tree_height = std::max(s.tree_height, height[i]);
      if (s.parent[i] >= 0) height[s.parent[i]] = std::max(height[s.parent[i]], height[i] + 1);
      for (int64_t p = width, last = -1; p < row_count; ++p) {
        if (s.snode[list[p]] != last) ++s.updates;
        last = s.snode[list[p]];
      }
    }
    const bool done = schedule_supernodes(s.supernodes, s.parent.get(), work.get(), options_.threads,
                                          account_, s.pnlsch.get());
    return done ? stage_status{} : kNoMemory;
  }

  int n_;
  const graph& adjacency_;
  const structure_options& options_;
  ordering& order_;
  memory_account& account_;
  structure& result_;
  supernode_plan plan_;
  block<int> group_, partner_, panel_of_run_;
  column_runs runs_;
  int64_t longest_tail_ = 0;
  int widest_ = 0;
};

}  // namespace

stage_status build_structure(const graph& adjacency, const structure_options& options, ordering& order,
                             memory_account& account, structure& result) {
  result = structure{};
  return builder(adjacency, options, order, account, result).run();
}

}  // namespace qel::pardiso
