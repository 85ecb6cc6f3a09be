// SPDX-License-Identifier: BSD-3-Clause
#include "fft/spec/pow2_spec.h"

#include <algorithm>
#include <utility>

namespace qel::fft {
namespace {

constexpr int kTileOrder = 5;
constexpr int kTile = 1 << kTileOrder;
constexpr int kFirstCopyOrder = 23;      // from here a bit-reversal out of place is a copy and one in place
constexpr core_int kChunkBytes = 16384;  // half of a first-level cache, the other half is for twiddles

core_int reverse_bits(core_int value, int bits) {
  core_int result = 0;
  for (int i = 0; i < bits; ++i) result |= (value >> i & 1) << (bits - 1 - i);
  return result;
}

/// Tile `middle`: rows of 32 neighbours, one row for each of the high bits; into rows of work.
template <class C>
void load_tile(const C* data, core_int middle, int order, C* work) {
  for (core_int row = 0; row < kTile; ++row) {
    const C* from = data + (row << (order - kTileOrder)) + (middle << kTileOrder);
    std::copy_n(from, kTile, work + row * kTile);
  }
}

/// A loaded tile to its mirrored place: rows and columns change places, each in reversed order.
template <class C>
void store_mirrored(C* data, core_int mirrored, int order, const C* work) {
  int reversed[kTile];
  for (int i = 0; i < kTile; ++i) reversed[i] = static_cast<int>(reverse_bits(i, kTileOrder));
  for (core_int row = 0; row < kTile; ++row) {
    C* to = data + (row << (order - kTileOrder)) + (mirrored << kTileOrder);
    const C* column = work + reversed[row];
    for (int i = 0; i < kTile; ++i) to[i] = column[reversed[i] * kTile];
  }
}

template <class C>
void reverse_by_tiles(const C* input, C* output, int order, C* work) {
  const int bits = order - 2 * kTileOrder;
  for (core_int middle = 0; middle < core_int{1} << bits; ++middle) {
    const core_int mirrored = reverse_bits(middle, bits);
    if (middle > mirrored) continue;
    C* second = work + kTile * kTile;
    load_tile(input, middle, order, work);
    if (middle != mirrored) load_tile(input, mirrored, order, second);
    store_mirrored(output, mirrored, order, work);
    if (middle != mirrored) store_mirrored(output, middle, order, second);
  }
}

}  // namespace

template <class R>
bool pow2_spec<R>::make_level(level& target, int order_of_level) {
  const bool base = order_of_level <= kLargestPlainOrder;
  const pow2_split split = base ? pow2_split{order_of_level, 0} : plan_pow2_split(order_of_level);
  const pow2_passes plan = base ? plan_pow2_passes(order_of_level) : plan_combination(split.k);
  target.order = order_of_level;
  target.low = base ? 0 : order_of_level - split.k;
  target.column_order = base ? 0 : split.c - split.k;
  target.pass_count = plan.count;
  quarter_wave wave;
  if (!wave.make(core_int{1} << order_of_level)) return false;
  int done = target.low;
  for (int i = 0; i < plan.count; ++i) {
    pass& p = target.passes[i];
    p.order = plan.orders[i];
    p.m = core_int{1} << (done - target.low);
    if (done > 0) {
      const core_int points = core_int{1} << done;
      p.roots = make_table<C>((p.radix() - 1) * points);
      if (p.roots == nullptr) return false;
      const int step = order_of_level - done - p.order;
      fill_plane_twiddles<R>(p.roots.get(), p.radix(), points,
                             [&](core_int product) { return wave.root(product << step); });
    }
    done += p.order;
  }
  return true;
}

template <class R>
bool pow2_spec<R>::make(int order_of_length) {
  order = order_of_length;
  int orders[kMaxLevels] = {};
  int tile_elements = 0;
  for (int left = order;; left -= plan_pow2_split(left).k) {
    orders[level_count++] = left;
    if (left <= kLargestPlainOrder) break;
    tile_elements = std::max({tile_elements, 1 << plan_pow2_split(left).c, 2 * kTile * kTile});
  }
  workspace_bytes = tile_elements * static_cast<int>(sizeof(C));
  for (int i = 0; i < level_count; ++i) {
    if (!make_level(levels[i], orders[level_count - 1 - i])) return false;
  }
  return level_count > 1 || make_places();
}

template <class R>
bool pow2_spec<R>::make_places() {
  const pass& first = levels[0].passes[0];
  const int bits = order - first.order;
  places = make_table<int>(core_int{1} << bits);
  if (places == nullptr) return false;
  // Each half is the half before it, one bit added.
  places[0] = 0;
  for (int bit = 0; bit < bits; ++bit) {
    const int half = 1 << bit, more = 1 << (order - 1 - bit);
    for (int i = 0; i < half; ++i)
      places[static_cast<size_t>(half + i)] = places[static_cast<size_t>(i)] + more;
  }
  return true;
}

template <class R>
void pow2_spec<R>::permute_in_place(C* data) const {
  const int low = levels[0].passes[0].order;
  core_int offsets[8];
  for (core_int i = 0; i < core_int{1} << low; ++i) offsets[i] = reverse_bits(i, low) << (order - low);
  for (core_int high = 0; high < core_int{1} << (order - low); ++high) {
    const core_int base = places[static_cast<size_t>(high)] >> low;
    for (core_int i = 0; i < core_int{1} << low; ++i) {
      const core_int from = (high << low) + i, to = base + offsets[i];
      if (from < to) std::swap(data[from], data[to]);
    }
  }
}

template <class R>
void pow2_spec<R>::permute(const C* input, C* output, C* work) const {
  const core_int n = core_int{1} << order;
  if (input != output && (level_count == 1 || order >= kFirstCopyOrder)) {
    std::copy_n(input, n, output);
    input = output;
  }
  if (level_count == 1) {
    permute_in_place(output);
  } else {
    reverse_by_tiles(input, output, order, work);
  }
}

/// Runs a pass over the rows of a group of columns: rows of either side lie `pitch` apart.
template <class R>
struct row_group {
  complex_of<R>* data;
  core_int pitch;
};
template <class R, class Pass, class Kernel>
void run_columns(const Pass& p, Kernel* run, row_group<R> from, row_group<R> to, core_int rows,
                 core_int columns, core_int first, core_int points) {
  for (core_int block = 0; block < rows; block += p.m * p.radix()) {
    for (core_int j = 0; j < p.m; ++j) {
      run(from.data + (block + j) * from.pitch, p.m * from.pitch, to.data + (block + j) * to.pitch,
          p.m * to.pitch, columns, 1, p.roots.get() + (p.radix() - 1) * (j * points + first));
    }
  }
}

// The rows of a group of columns lie side by side in work from the first pass to the last.
template <class R>
void pow2_spec<R>::combine(int index, C* data, C* work, direction way) const {
  const level& of = levels[index];
  const auto& kernels = level_kernels<R>();
  const core_int points = core_int{1} << of.low, columns = core_int{1} << of.column_order;
  const core_int rows = core_int{1} << (of.order - of.low);
  for (core_int first = 0; first < points; first += columns) {
    const row_group<R> line{data + first, points}, group{work, columns};
    for (int i = 0; i < of.pass_count; ++i) {
      const pass& p = of.passes[i];
      const bool is_last = i + 1 == of.pass_count;
      run_columns<R>(p, kernels.pow2_join[way][is_last ? side_of(index) : kPlanes][p.kernel()],
                     i == 0 ? line : group, is_last ? line : group, rows, columns, first, points);
    }
  }
}

/// The transpose of combine.
template <class R>
void pow2_spec<R>::part(int index, C* data, C* work, direction way) const {
  const level& of = levels[index];
  const auto& kernels = level_kernels<R>();
  const core_int points = core_int{1} << of.low, columns = core_int{1} << of.column_order;
  const core_int rows = core_int{1} << (of.order - of.low);
  for (core_int first = 0; first < points; first += columns) {
    const row_group<R> line{data + first, points}, group{work, columns};
    for (int i = of.pass_count - 1; i >= 0; --i) {
      const pass& p = of.passes[i];
      const bool is_first = i + 1 == of.pass_count;
      run_columns<R>(p, kernels.pow2_split[way][is_first ? side_of(index) : kPlanes][p.kernel()],
                     is_first ? line : group, i == 0 ? line : group, rows, columns, first, points);
    }
  }
}

/// A pass over blocks of sub-blocks, in place.
template <class R, class Pass, class Kernel>
void run_blocks(const Pass& p, Kernel* run, complex_of<R>* data, core_int n) {
  run(data, p.m, data, p.m, p.m, n / (p.m * p.radix()), p.roots.get());
}

/// The passes of the first level: those that stay within a chunk one chunk after the other.
template <class R>
void pow2_spec<R>::join_base(C* data, direction way, bool done_first) const {
  const level& of = levels[0];
  const auto& kernels = level_kernels<R>();
  const core_int n = core_int{1} << of.order;
  const auto join = [&](int i, C* part, core_int count) {
    const pass& p = of.passes[i];
    const plane_side side = i + 1 == of.pass_count ? side_of(0) : kPlanes;
    run_blocks<R>(p, kernels.pow2_join[way][side][p.kernel()], part, count);
  };
  int inner = 1;
  core_int chunk = of.passes[0].radix();
  while (inner < of.pass_count) {
    const core_int next = chunk * of.passes[inner].radix();
    if (next * core_int{sizeof(C)} > kChunkBytes) break;
    chunk = next;
    ++inner;
  }
  for (C* part = data; part < data + n; part += chunk) {
    if (!done_first) kernels.first_reversed[way][of.passes[0].kernel()](part, chunk / of.passes[0].radix());
    for (int i = 1; i < inner; ++i) join(i, part, chunk);
  }
  for (int i = inner; i < of.pass_count; ++i) join(i, data, n);
}

/// The transpose of run_level.
template <class R>
void pow2_spec<R>::split_level(int index, C* data, C* work, direction way) const {
  const level& of = levels[index];
  if (index > 0) {
    part(index, data, work, way);
    for (core_int block = 0; block < core_int{1} << of.order; block += core_int{1} << of.low) {
      split_level(index - 1, data + block, work, way);
    }
    return;
  }
  const auto& kernels = level_kernels<R>();
  const core_int n = core_int{1} << of.order;
  for (int i = of.pass_count - 1; i > 0; --i) {
    const pass& p = of.passes[i];
    const plane_side side = i + 1 == of.pass_count ? side_of(0) : kPlanes;
    run_blocks<R>(p, kernels.pow2_split[way][side][p.kernel()], data, n);
  }
  kernels.last_reversed[way][of.passes[0].kernel()](data, n / of.passes[0].radix());
}

template <class R>
void pow2_spec<R>::run_scrambled(const C* input, C* output, C* work, direction way) const {
  if (input != output) std::copy_n(input, core_int{1} << order, output);
  if (way == kForward) {
    split_level(level_count - 1, output, work, way);
  } else {
    run_level(level_count - 1, output, work, way);
  }
}

template <class R>
void pow2_spec<R>::run_level(int index, C* data, C* work, direction way) const {
  if (index == 0) return join_base(data, way, false);
  const level& of = levels[index];
  for (core_int block = 0; block < core_int{1} << of.order; block += core_int{1} << of.low) {
    run_level(index - 1, data + block, work, way);
  }
  combine(index, data, work, way);
}

template <class R>
void pow2_spec<R>::run(const C* input, C* output, C* work, direction way) const {
  if (input != output && level_count == 1) {
    const pass& first = levels[0].passes[0];
    const core_int groups = core_int{1} << (order - first.order);
    level_kernels<R>().first_planes[way][first.order - 1](input, 1, groups, output, places.get(), groups);
    join_base(output, way, true);
    return;
  }
  permute(input, output, work);
  run_level(level_count - 1, output, work, way);
}

template struct pow2_spec<float>;
template struct pow2_spec<double>;

}  // namespace qel::fft
