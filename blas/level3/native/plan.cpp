// SPDX-License-Identifier: BSD-3-Clause
#include "blas/level3/native/plan.h"

#include <algorithm>

namespace qel::native {

namespace {

constexpr core_int kKilo = 1024;
constexpr core_int kL1 = 32 * kKilo, kL2 = 512 * kKilo, kL3 = 8 * kKilo * kKilo;  // where nothing is known

core_int cache_or(const int caches[5], int level, core_int otherwise) {
  return caches[0] >= level && caches[level] > 0 ? caches[level] : otherwise;
}

core_int ceil_div(core_int a, core_int b) { return (a + b - 1) / b; }
core_int round_up(core_int n, core_int step) { return ceil_div(n, step) * step; }

/// Steps of a slice of the depth where factors are read in place.
constexpr core_int kDirectDepth = 192, kLeastDepth = 64;
/// The same where each slice passes over a large C once more: shorter ones are bound by that.
constexpr core_int kLeastPass = 160;

}  // namespace

core_int row_panels(core_int count, int tile_rows) { return ceil_div(count, tile_rows); }
core_int row_panel_begin(core_int i, core_int count, int tile_rows, int lanes) {
  const core_int panels = ceil_div(count, tile_rows);
  if (i >= panels) return count;
  if (i > 0 && i == panels - 1) {
    const core_int before = (i - 1) * tile_rows;
    return before + panel_rows(count - before, tile_rows, lanes);
  }
  return i * tile_rows;
}
core_int column_panels(core_int count, int tile_columns) { return ceil_div(count, tile_columns); }
core_int column_panel_begin(core_int i, core_int count, int tile_columns) {
  const core_int panels = ceil_div(count, tile_columns);
  if (i >= panels) return count;
  if (i > 0 && i == panels - 1) {
    const core_int before = (i - 1) * tile_columns;
    return before + panel_columns(count - before, tile_columns);
  }
  return i * tile_columns;
}

panel_range even_part(core_int panels, int parts, int part) {
  return {panels * part / parts, panels * (part + 1) / parts};
}

panel_range triangle_part(core_int m, core_int n, core_int below, c_part which, int tile_columns, int parts,
                          int part) {
  const core_int panels = column_panels(n, tile_columns);
  // rows inside the triangle of the panel's widest column
  const auto weight = [&](core_int p) {
    const core_int first = column_panel_begin(p, n, tile_columns);
    const core_int last = column_panel_begin(p + 1, n, tile_columns) - 1;
    if (which == c_part::upper) return std::clamp<core_int>(last - below + 1, 0, m);
    return std::clamp<core_int>(m - (first - below), 0, m);
  };
  core_int total = 0;
  for (core_int p = 0; p < panels; ++p) total += weight(p);
  const auto cut = [&](core_int share) {  // first panel behind that share of the total
    core_int sum = 0, p = 0;
    while (p < panels && sum + weight(p) / 2 < share) sum += weight(p++);
    return p;
  };
  const core_int begin = part == 0 ? 0 : cut(total * part / parts);
  const core_int end = part == parts - 1 ? panels : cut(total * (part + 1) / parts);
  return {begin, end};
}

int plan_slabs(core_int order, core_int count, double weight, int threads) {
  constexpr core_int kThinnest = 32;  // right-hand sides; thinner slabs use the caches badly
  const double work = work_of(order, order, count, weight) / 2;
  const double by_work = std::min(work / kWorkToFork, static_cast<double>(count / kThinnest));
  return static_cast<int>(std::clamp(by_work, 1.0, static_cast<double>(threads)));
}
panel_range even_slab(core_int count, int slabs, int slab) {
  const core_int size = round_up(ceil_div(count, slabs), 8);
  return {std::min(slab * size, count), std::min((slab + 1) * size, count)};
}

namespace {

/// Even pieces of at most `whole`, as multiples of `step`.
core_int even_pieces(core_int size, core_int whole, core_int step) {
  const core_int pieces = std::max<core_int>(ceil_div(size, std::max(whole, step)), 1);
  return std::max<core_int>(round_up(ceil_div(size, pieces), step), step);
}

/// Schemes that leave B, or both factors, where they are; true if one of them pays. rows_stream: panels of A
/// may come from the second cache without end.
bool plan_in_place(const product_facts& f, bool rows_stream, core_int l1, core_int l2, product_plan& plan) {
  if (!f.direct || f.part != c_part::whole) return false;
  const bool small = reads_in_place(f.m, f.n, f.k);
  if (small && !f.a_turned) {
    plan.scheme = product_scheme::direct;
    plan.depth = f.k;
    plan.columns_outside = true;
    plan.reason = "small: packing does not pay";
    return true;
  }
  const core_int room = rows_stream ? l2 / 2 : l1 * 3 / 4, depth = room / (f.m * f.element_size);
  plan.columns_outside = depth >= kLeastDepth;
  plan.depth = std::clamp(depth, kLeastDepth, kDirectDepth);
  const core_int b_slice = f.n * plan.depth * f.element_size;
  const bool few_passes = !rows_stream || f.k <= depth || depth >= kLeastPass;
  if (small ||
      (plan.columns_outside && few_passes && f.k > kLeastDepth && (!f.b_turned || b_slice <= l2 / 2))) {
    plan.scheme = product_scheme::a_packed;
    plan.reason = "A's panels stay in a cache: B is read once, where it is";
    return true;
  }
  // Of a tall A each element is used a few times only; tiles must not share cache lines.
  if (f.n <= 4 * f.tile_columns && !f.a_turned && f.tile_rows * f.element_size % 64 == 0) {
    plan.scheme = product_scheme::direct;
    plan.columns_outside = false;
    plan.reason = "few columns: A is read once, where it is";
    return true;
  }
  return false;
}

/// Slabs whose products can go in place: no thread waits for another.
bool plan_thread_slabs(const product_facts& f, int threads, bool rows_stream, core_int l1, core_int l2,
                       product_plan& plan) {
  const bool by_columns = f.n / f.tile_columns >= f.m / f.tile_rows;
  const core_int tile = by_columns ? f.tile_columns : f.tile_rows;
  const core_int slabs = std::min<core_int>(threads, (by_columns ? f.n : f.m) / tile);
  if (slabs < threads) return false;
  product_facts slab = f;
  slab.threads = 1;
  (by_columns ? slab.n : slab.m) = round_up(ceil_div(by_columns ? f.n : f.m, slabs), tile);
  product_plan inside{};
  if (!plan_in_place(slab, rows_stream, l1, l2, inside)) return false;
  plan.scheme = product_scheme::slabs;
  plan.threads = threads;
  plan.grid_rows = by_columns ? 1 : threads;
  plan.grid_columns = by_columns ? threads : 1;
  plan.reason = "slabs small enough to go in place, without waiting";
  return true;
}

}  // namespace

product_plan plan_product(const product_facts& f) {
  product_plan plan{};
  plan.threads = plan.grid_rows = plan.grid_columns = 1;
  const core_int l1 = cache_or(f.caches, 1, kL1), l2 = cache_or(f.caches, 2, kL2),
                 l3 = cache_or(f.caches, 3, std::max(kL3, l2));
  const double work = work_of(f.m, f.n, f.k, f.weight);
  const int useful = static_cast<int>(std::clamp(work / kWorkToFork, 1.0, static_cast<double>(f.threads)));

  // One panel stays in the first cache while the other factor's panels pass from the second. The smaller ones
  // had better pass; but where tiles are so high that a panel of A fits for a short depth only, B's stays.
  const core_int a_depth = l1 * 3 / 4 / (f.tile_rows * f.element_size);
  const core_int b_depth = l1 / 2 / (f.tile_columns * f.element_size);
  const bool rows_stream = a_depth < kDirectDepth;
  if (useful == 1 && plan_in_place(f, rows_stream, l1, l2, plan)) return plan;
  if (useful > 1 && plan_thread_slabs(f, useful, rows_stream, l1, l2, plan)) return plan;
  plan.scheme = product_scheme::packed;
  plan.columns_outside = rows_stream;
  plan.depth = even_pieces(f.k, plan.columns_outside ? b_depth : a_depth, 1);
  const core_int step = plan.depth * f.element_size;
  const core_int share = std::max<core_int>(l3 / 4, l2);
  core_int rows = share / step;
  if (plan.columns_outside || f.n * step <= l2 / 2) {
    rows = l2 * 3 / 4 / step * useful;  // A's block in the second cache, each thread's own
  }
  plan.rows = even_pieces(f.m, rows, f.tile_rows);
  plan.columns = even_pieces(f.n, share / step, f.tile_columns);
  plan.columns_in_cache = plan.columns_outside
                              ? plan.columns
                              : std::max<core_int>(l2 / 2 / step / f.tile_columns, 1) * f.tile_columns;

  plan.threads = useful;
  if (useful == 1) {
    plan.reason = f.threads == 1 ? "one thread in the domain" : "too little work for threads";
    return plan;
  }
  const core_int row_count = row_panels(std::min(f.m, plan.rows), f.tile_rows);
  const core_int column_count = column_panels(std::min(f.n, plan.columns), f.tile_columns);
  if (f.part == c_part::whole && row_count * column_count < 4 * useful && f.k >= useful * core_int{256}) {
    plan.scheme = product_scheme::split_depth;
    plan.reason = "few tiles and many steps: threads share the depth";
    return plan;
  }
  if (f.part != c_part::whole) {
    plan.grid_columns = useful;
    plan.reason = "columns of about the same number of tiles";
    return plan;
  }
  core_int least = 0;
  for (int r = 1; r <= useful; ++r) {
    const int c = useful / r;
    const core_int largest = ceil_div(row_count, r) * ceil_div(column_count, c);
    if (r == 1 || largest < least) {
      least = largest;
      plan.grid_rows = r;
      plan.grid_columns = c;
    }
  }
  plan.threads = plan.grid_rows * plan.grid_columns;
  plan.reason = "a grid of cells with the fewest tiles in the largest";
  return plan;
}

}  // namespace qel::native
