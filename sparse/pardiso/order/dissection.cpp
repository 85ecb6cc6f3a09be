// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/order/dissection.h"

#include <limits.h>

#include "sparse/pardiso/order/minimum_degree.h"

namespace qel::pardiso {
namespace {

constexpr int kMemoryCode = block_struc_s0 - 1;

/// Parts whose ranges are wanted are made down to this size.
constexpr int kSmallestSplit = 16;
/// Splits that take little away don't go on for ever.
constexpr int kDeepest = 64;

/// A part of the graph, with the nodes' numbers in the whole.
struct part {
  int n = 0;
  int unknowns = 0;
  block<int> xadj, adjncy, weight, node;

  bool allocate(memory_account& account, int count, int64_t edges) {
    n = count;
    return xadj.allocate(account, count + 1, kMemoryCode) && adjncy.allocate(account, edges, kMemoryCode) &&
           weight.allocate(account, count, kMemoryCode) && node.allocate(account, count, kMemoryCode);
  }
};

class splitter {
 public:
  splitter(const dissection_options& options, const dissection_plan& plan, memory_account& account,
           dissection& result, int nodes)
      : options_(options), plan_(plan), account_(account), result_(result), nodes_(nodes) {}

  bool allocate() {
    return result_.node_class.allocate(account_, nodes_, kMemoryCode) &&
           result_.parts.allocate(account_, plan_.subgraphs, kMemoryCode) &&
           local_.allocate(account_, nodes_, kMemoryCode);
  }
  /// The whole graph without the nodes of more than limit neighbours: these get the last class.
  bool take_whole(const graph& g, const int* weight, double limit, part& whole);
  bool split(part&& here, int parts_wanted, int depth);
  void finish();

 private:
  bool halves(const part& here, const int* side, part& left, part& right);
  bool extract(const part& here, const int* side, int which, part& half);
  void close_part(int first_class);
  void give_class(const part& here);
  bool partitioner_has_room(const part& here);

  const dissection_options& options_;
  const dissection_plan& plan_;
  memory_account& account_;
  dissection& result_;
  const int nodes_;
  block<int> local_;
};

constexpr int kLast = -1;  // class of the pruned nodes and of separators that come last, until finish()

bool splitter::take_whole(const graph& g, const int* weight, double limit, part& whole) {
  const auto degree = [&](int i) { return static_cast<double>(g.xadj[i + 1] - g.xadj[i]); };
  int count = 0;
  int64_t edges = 0;
  for (int i = 0; i < g.n; ++i) {
    if (degree(i) > limit) {
      local_[i] = kLast;
      result_.node_class[i] = kLast;
    } else {
      local_[i] = count++;
      edges += g.xadj[i + 1] - g.xadj[i];
    }
  }
  if (!whole.allocate(account_, count, edges)) return false;
  int kept = 0;
  for (int i = 0, k = 0; i < g.n; ++i) {
    if (local_[i] == kLast) continue;
    whole.xadj[k] = kept;
    whole.node[k] = i;
    whole.weight[k] = weight[i];
    whole.unknowns += weight[i];
    for (int64_t p = g.xadj[i]; p < g.xadj[i + 1]; ++p)
      if (local_[g.adjncy[p]] != kLast) whole.adjncy[kept++] = local_[g.adjncy[p]];
    ++k;
  }
  whole.xadj[count] = kept;
  return true;
}

bool splitter::extract(const part& here, const int* side, int which, part& half) {
  int count = 0;
  int64_t edges = 0;
  for (int i = 0; i < here.n; ++i)
    if (side[i] == which) {
      local_[i] = count++;
      edges += here.xadj[i + 1] - here.xadj[i];
    }
  if (!half.allocate(account_, count, edges)) return false;
  int kept = 0;
  for (int i = 0, k = 0; i < here.n; ++i) {
    if (side[i] != which) continue;
    half.xadj[k] = kept;
    half.node[k] = here.node[i];
    half.weight[k] = here.weight[i];
    half.unknowns += here.weight[i];
    for (int p = here.xadj[i]; p < here.xadj[i + 1]; ++p)
      if (side[here.adjncy[p]] == which) half.adjncy[kept++] = local_[here.adjncy[p]];
    ++k;
  }
  half.xadj[count] = kept;
  return true;
}

void splitter::give_class(const part& here) {
  for (int i = 0; i < here.n; ++i) result_.node_class[here.node[i]] = result_.classes;
  ++result_.classes;
}

void splitter::close_part(int first_class) {
  if (result_.classes > first_class) result_.parts[result_.part_count++] = {first_class, result_.classes - 1};
}

/// The partitioner takes its memory from the C library and ends the process when there is none: whether it is
/// there is tried before, and counted.
bool splitter::partitioner_has_room(const part& here) {
  const int64_t edges = here.xadj[here.n];
  block<int> probe;
  return probe.allocate(account_, 32 * static_cast<int64_t>(here.n) + 6 * edges, kMemoryCode);
}

/// parts_wanted: how many parts with ranges are still to be made of this one; 0 inside of such a part.
bool splitter::split(part&& here, int parts_wanted, int depth) {
  const int first_class = result_.classes;
  const bool cuts_for_range = parts_wanted > 1 && here.n >= kSmallestSplit;
  const bool cuts_for_fill = plan_.below_subgraphs && here.unknowns > plan_.leaf && here.n > 2;
  bool done = true;
  bool cut = false;
  if (here.n > 0 && here.xadj[here.n] > 0 && depth < kDeepest && (cuts_for_range || cuts_for_fill)) {
    block<int> side;
    if (!side.allocate(account_, here.n, kMemoryCode) || !partitioner_has_room(here)) return false;
    cut = find_separator(here.n, here.xadj.get(), here.adjncy.get(), here.weight.get(), options_, side.get());
    int count[3] = {0, 0, 0};
    for (int i = 0; i < here.n; ++i) ++count[side[i]];
    cut = cut && count[side_left] > 0 && count[side_right] > 0;
    if (cut) {
      part left, right, separator;
      if (!extract(here, side.get(), side_left, left) || !extract(here, side.get(), side_right, right) ||
          !extract(here, side.get(), side_separator, separator))
        return false;
      side.reset();
      here = part();
      const int half = parts_wanted / 2;
      done = split(std::move(left), half, depth + 1) && split(std::move(right), half, depth + 1);
      if (separator.n > 0) {
        if (plan_.separators_last) {
          for (int i = 0; i < separator.n; ++i) result_.node_class[separator.node[i]] = kLast;
        } else {
          give_class(separator);
        }
      }
    }
  }
  if (!cut && here.n > 0) give_class(here);
  if (parts_wanted == 1 || (!cut && parts_wanted > 1)) close_part(first_class);
  return done;
}

void splitter::finish() {
  bool any = false;
  for (int i = 0; i < nodes_; ++i)
    if (result_.node_class[i] == kLast) result_.node_class[i] = result_.classes, any = true;
  if (any) ++result_.classes;
}

}  // namespace

dissection_options choose_dissection_options(int n, int64_t longest_row) {
  if (longest_row >= n / 8) return {1, 3, 1, 2, 0, 1, 200, 1};
  return {};
}

int choose_leaf(int64_t nodes, int64_t edges, int64_t most_neighbours) {
  constexpr int kMostInPlane = 6;
  const bool sparse = edges < 5 * nodes;
  if (sparse && most_neighbours > 0 && most_neighbours <= kMostInPlane) return 5000;
  if (sparse && static_cast<double>(most_neighbours) > densest_degree(static_cast<double>(nodes)))
    return 30000;
  return 400;
}

int choose_subgraphs(int n, int type_number, int threads, int exponent) {
  const int wanted = type_number == 11 && threads > 1 ? threads : 4;
  int64_t subgraphs = 1;
  while (subgraphs < wanted) subgraphs *= 2;
  if (exponent > 0) subgraphs = std::max(subgraphs, int64_t{1} << std::min(exponent, 40));
  return static_cast<int>(std::min<int64_t>(subgraphs, n));
}

stage_status dissect(const graph& g, const int* weight, const dissection_options& options,
                     const dissection_plan& plan, memory_account& account, dissection& result) {
  if (g.xadj[g.n] > INT_MAX) return {-8, analysis_overflow};
  const double average = g.n > 0 ? static_cast<double>(g.xadj[g.n]) / g.n : 0;
  const double limit = options.prune_factor > 0 ? options.prune_factor * average : INT_MAX;
  result.classes = 0;
  result.part_count = 0;
  splitter work(options, plan, account, result, g.n);
  part whole;
  if (!work.allocate() || !work.take_whole(g, weight, limit, whole) ||
      !work.split(std::move(whole), plan.subgraphs, 0))
    return {-2, kMemoryCode};
  work.finish();
  return {};
}

}  // namespace qel::pardiso
