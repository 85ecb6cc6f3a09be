// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/symbolic/supernodes.h"

#include <algorithm>
#include <climits>
#include <iterator>

#include "sparse/pardiso/symbolic/structure.h"

namespace qel::pardiso {

supernode_plan plan_supernodes(const supernode_facts& facts) {
  supernode_plan plan;
  plan.width = std::clamp(facts.panel_width, 1, kWidestSupernode);
  if (!facts.native) return plan;
  // Few columns: one product in place of many small ones is worth a panel that is mostly zeros. Many
  // columns: the zeros cost what they would cost in a dense matrix.
  plan.merge = true;
  constexpr int kColumns[] = {4, 16, 48, INT_MAX};
  constexpr double kShare[] = {1.0, 0.4, 0.1, 0.05};
  std::copy(std::begin(kColumns), std::end(kColumns), plan.columns);
  std::copy(std::begin(kShare), std::end(kShare), plan.share);
  return plan;
}

bool find_runs(int n, const int* parent, const int* count, const int* group, memory_account& account,
               column_runs& runs) {
  block<int> run_of;
  if (!runs.first.allocate(account, n + 1, block_struc_s1) ||
      !runs.rows.allocate(account, n, block_struc_s1 - 1) ||
      !runs.parent.allocate(account, n, block_struc_s1 - 2) ||
      !run_of.allocate(account, n, block_struc_s1 - 3)) {
    return false;
  }
  runs.count = 0;
  for (int j = 0; j < n; ++j) {
    const bool joins = j > 0 && parent[j - 1] == j && count[j - 1] == count[j] + 1 &&
                       (group == nullptr || group[j - 1] == group[j]);
    if (!joins) {
      runs.first[runs.count] = j;
      runs.rows[runs.count++] = count[j];
    }
    run_of[j] = runs.count - 1;
  }
  runs.first[runs.count] = n;
  runs.largest = 1;
  for (int i = 0; i < runs.count; ++i) {
    runs.largest = std::max(runs.largest, runs.first[i + 1] - runs.first[i]);
    const int above = parent[runs.first[i + 1] - 1];
    runs.parent[i] = above < 0 ? -1 : run_of[above];
  }
  return true;
}

namespace {

/// A run as it grows. zeros: entries stored in vain.
struct growing_run {
  int columns, rows;
  double zeros;
};

double stored(int columns, int rows) { return 0.5 * columns * (2.0 * rows - columns + 1); }

bool merges(const supernode_plan& plan, const growing_run& child, const growing_run& parent,
            growing_run& both) {
  both.columns = child.columns + parent.columns;
  both.rows = child.columns + parent.rows;
  const double all = stored(both.columns, both.rows);
  both.zeros = child.zeros + parent.zeros + all - stored(child.columns, child.rows) -
               stored(parent.columns, parent.rows);
  for (int i = 0; i < 4; ++i) {
    if (both.columns <= plan.columns[i] && both.zeros <= plan.share[i] * all) return true;
  }
  return false;
}

}  // namespace

namespace {

/// Which run each run ends up in: itself, or one above. grown takes the sizes.
void choose_targets(const column_runs& runs, const supernode_plan& plan, const int* group, growing_run* grown,
                    int* target) {
  for (int i = 0; i < runs.count; ++i) {
    grown[i] = {runs.first[i + 1] - runs.first[i], runs.rows[i], 0};
    target[i] = i;
  }
  // A run comes after its children, so it has taken in those that it gets before it is looked at itself.
  for (int i = 0; i < runs.count; ++i) {
    const int above = runs.parent[i];
    if (above < 0 || (group != nullptr && group[runs.first[i]] != group[runs.first[above]])) continue;
    growing_run both{};
    if (!merges(plan, grown[i], grown[above], both)) continue;
    grown[above] = both;
    target[i] = above;
  }
  for (int i = runs.count - 1; i >= 0; --i) target[i] = target[target[i]];
}

}  // namespace

bool merge_runs(int n, const supernode_plan& plan, const int* group, memory_account& account,
                column_runs& runs, int* order) {
  const int count = runs.count;
  block<growing_run> grown;
  block<int> target, number, member, next_member, parent, tree_group, sequence, work;
  int code = block_struc_s1 - 4;
  for (block<int>* const each : {&target, &number, &member, &next_member, &parent, &tree_group, &sequence}) {
    if (!each->allocate(account, count, code--)) return false;
  }
  if (!grown.allocate(account, count, code--) ||
      !work.allocate(account, 3 * static_cast<int64_t>(count), code)) {
    return false;
  }
  choose_targets(runs, plan, group, grown.get(), target.get());
  int made = 0;
  for (int i = 0; i < count; ++i) {
    if (target[i] == i) number[i] = made++;
    member[i] = -1;
  }
  for (int i = count - 1; i >= 0; --i) {
    next_member[i] = member[target[i]];
    member[target[i]] = i;
    if (target[i] != i) continue;
    const int above = runs.parent[i];
    parent[number[i]] = above < 0 ? -1 : number[target[above]];
    tree_group[number[i]] = group == nullptr ? 0 : group[runs.first[i]];
  }
  postorder(made, parent.get(), {group == nullptr ? nullptr : tree_group.get(), nullptr}, sequence.get(),
            work.get());

  // Back to the runs: target_of in the old tree's numbers, then columns in the order of the new runs.
  int* const target_of = tree_group.get();
  int* const new_number = work.get();
  for (int i = 0; i < count; ++i) {
    if (target[i] == i) target_of[number[i]] = i;
  }
  for (int k = 0; k < made; ++k) new_number[sequence[k]] = k;
  int placed = 0;
  int* const first = work.get() + made;
  for (int k = 0; k < made; ++k) {
    first[k] = placed;
    for (int i = member[target_of[sequence[k]]]; i >= 0; i = next_member[i]) {
      for (int j = runs.first[i]; j < runs.first[i + 1]; ++j) order[placed++] = j;
    }
  }
  for (int k = 0; k < made; ++k) {
    const int old = sequence[k];
    runs.first[k] = first[k];
    runs.rows[k] = grown[target_of[old]].rows;
    runs.parent[k] = parent[old] < 0 ? -1 : new_number[parent[old]];
  }
  runs.first[made] = n;
  runs.count = made;
  return true;
}

}  // namespace qel::pardiso
