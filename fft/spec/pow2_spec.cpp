// SPDX-License-Identifier: BSD-3-Clause
#include "fft/spec/pow2_spec.h"

#include <algorithm>
#include <utility>

namespace qel::fft {
namespace {

constexpr int kTileOrder = 5;
constexpr int kTile = 1 << kTileOrder;
constexpr int kLargestTableOrder = 17;  // beyond, the bit-reversal goes by tiles
constexpr int kFirstCopyOrder = 23;     // from here a bit-reversal out of place is a copy and one in place

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
      const core_int radix = core_int{1} << p.order, points = core_int{1} << done;
      p.roots = make_table<C>((radix - 1) * points);
      if (p.roots == nullptr) return false;
      const int step = order_of_level - done - p.order;
      C* next = p.roots.get();
      for (core_int q = 1; q < radix; ++q) {
        for (core_int k = 0; k < points; ++k) *next++ = narrowed<C>(wave.root((q * k) << step));
      }
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
  if (order > kLargestTableOrder) return true;
  reversal = make_table<int>(core_int{1} << order);
  if (reversal == nullptr) return false;
  for (int i = 0; i < 1 << order; ++i)
    reversal[static_cast<size_t>(i)] = static_cast<int>(reverse_bits(i, order));
  return true;
}

template <class R>
void pow2_spec<R>::permute(const C* input, C* output, C* work) const {
  const core_int n = core_int{1} << order;
  if (order > kLargestTableOrder) {
    if (input != output && order >= kFirstCopyOrder) {
      std::copy_n(input, n, output);
      input = output;
    }
    reverse_by_tiles(input, output, order, work);
  } else if (input != output) {
    for (core_int i = 0; i < n; ++i) output[i] = input[reversal[static_cast<size_t>(i)]];
  } else {
    for (core_int i = 0; i < n; ++i) {
      const core_int other = reversal[static_cast<size_t>(i)];
      if (i < other) std::swap(output[i], output[other]);
    }
  }
}

/// Calls body(work, first) for each group of columns, whose rows lie side by side in work meanwhile.
template <class R>
template <class Body>
void pow2_spec<R>::for_column_groups(const level& of, C* data, C* work, Body body) {
  const core_int points = core_int{1} << of.low, columns = core_int{1} << of.column_order;
  const core_int rows = core_int{1} << (of.order - of.low);
  for (core_int first = 0; first < points; first += columns) {
    for (core_int row = 0; row < rows; ++row) {
      std::copy_n(data + row * points + first, columns, work + row * columns);
    }
    body(first);
    for (core_int row = 0; row < rows; ++row) {
      std::copy_n(work + row * columns, columns, data + row * points + first);
    }
  }
}

/// Runs a pass over the rows of a group of columns.
template <class R, class Pass>
void run_columns(const Pass& p, typename fft_kernels<complex_of<R>, R>::column_pass* run, complex_of<R>* work,
                 core_int rows, core_int columns, core_int first, core_int points) {
  for (core_int block = 0; block < rows; block += p.m << p.order) {
    for (core_int j = 0; j < p.m; ++j) {
      run(work + (block + j) * columns, p.m * columns, columns, p.roots.get() + j * points + first,
          p.m * points);
    }
  }
}

constexpr int radix_of(int order_of_pass) { return order_of_pass == 2 ? kPow2Radix4 : kPow2Radix8; }

template <class R>
void pow2_spec<R>::combine(const level& of, C* data, C* work, direction way) const {
  const auto& kernels = level_kernels<R>();
  const core_int points = core_int{1} << of.low, columns = core_int{1} << of.column_order;
  for_column_groups(of, data, work, [&](core_int first) {
    for (int i = 0; i < of.pass_count; ++i) {
      const pass& p = of.passes[i];
      run_columns<R>(p, kernels.columns[way][radix_of(p.order)], work, core_int{1} << (of.order - of.low),
                     columns, first, points);
    }
  });
}

/// The transpose of combine.
template <class R>
void pow2_spec<R>::part(const level& of, C* data, C* work, direction way) const {
  const auto& kernels = level_kernels<R>();
  const core_int points = core_int{1} << of.low, columns = core_int{1} << of.column_order;
  for_column_groups(of, data, work, [&](core_int first) {
    for (int i = of.pass_count - 1; i >= 0; --i) {
      const pass& p = of.passes[i];
      run_columns<R>(p, kernels.column_splits[way][radix_of(p.order)], work,
                     core_int{1} << (of.order - of.low), columns, first, points);
    }
  });
}

/// The transpose of run_level.
template <class R>
void pow2_spec<R>::split_level(int index, C* data, C* work, direction way) const {
  const level& of = levels[index];
  if (index > 0) {
    part(of, data, work, way);
    for (core_int block = 0; block < core_int{1} << of.order; block += core_int{1} << of.low) {
      split_level(index - 1, data + block, work, way);
    }
    return;
  }
  const auto& kernels = level_kernels<R>();
  const core_int n = core_int{1} << of.order;
  for (int i = of.pass_count - 1; i >= 0; --i) {
    const pass& p = of.passes[i];
    const core_int blocks = n / (p.m << p.order);
    if (i == 0) {
      kernels.last[way][radix_of(p.order)](data, blocks);
    } else {
      kernels.pow2_split[way][radix_of(p.order)](data, data, blocks, p.m, p.roots.get());
    }
  }
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
  const level& of = levels[index];
  if (index > 0) {
    for (core_int block = 0; block < core_int{1} << of.order; block += core_int{1} << of.low) {
      run_level(index - 1, data + block, work, way);
    }
    combine(of, data, work, way);
    return;
  }
  const auto& kernels = level_kernels<R>();
  const core_int n = core_int{1} << of.order;
  for (int i = 0; i < of.pass_count; ++i) {
    const pass& p = of.passes[i];
    const int radix = radix_of(p.order);
    const core_int blocks = n / (p.m << p.order);
    if (i == 0) {
      kernels.first[way][radix](data, blocks);
    } else {
      kernels.pow2_join[way][radix](data, data, blocks, p.m, p.roots.get());
    }
  }
}

template <class R>
void pow2_spec<R>::run(const C* input, C* output, C* work, direction way) const {
  permute(input, output, work);
  run_level(level_count - 1, output, work, way);
}

template struct pow2_spec<float>;
template struct pow2_spec<double>;

}  // namespace qel::fft
