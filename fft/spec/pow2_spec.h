// SPDX-License-Identifier: BSD-3-Clause
// Transforms of powers of two from 2^6 up: a bit-reversal, which the first pass does on its way, then passes
// of radix 8 and 4 over planes. From 2^17 up the passes run in blocks that stay in cache, and the blocks are
// combined by groups of columns.
#pragma once

#include "fft/planning/line_plan.h"
#include "fft/spec/level_kernels.h"
#include "fft/spec/tables.h"

namespace qel::fft {

template <class R>
struct pow2_spec {
  using C = complex_of<R>;
  struct pass {
    int order;       ///< of the radix
    core_int m;      ///< elements of a sub-block, of a row in a combination: rows
    table<C> roots;  ///< twiddles as the pass reads them; none for the first pass of all
    core_int radix() const { return core_int{1} << order; }
    int kernel() const { return order == 2 ? kPow2Radix4 : kPow2Radix8; }
  };
  /// The transform of 2^order elements from transformed blocks of 2^low: the base has low = 0.
  struct level {
    int order;
    int low;
    int column_order;  ///< log2 of a group's columns
    pass passes[12];
    int pass_count;
  };
  static constexpr int kMaxLevels = 4;

  int order;
  int workspace_bytes;
  table<int> places;  ///< of lines of one level: where the first pass leaves its groups
  level levels[kMaxLevels];
  int level_count;

  /// False if memory is out.
  bool make(int order_of_length);
  /// In place or out; no scale.
  void run(const C* input, C* output, C* work, direction way) const;
  /// The same between natural order (forward: of the input) and bit-reversed order.
  void run_scrambled(const C* input, C* output, C* work, direction way) const;

 private:
  bool make_level(level& target, int order_of_level);
  bool make_places();
  void permute(const C* input, C* output, C* work) const;
  void permute_in_place(C* data) const;
  plane_side side_of(int index) const { return index + 1 == level_count ? kPairs : kPlanes; }
  void run_level(int index, C* data, C* work, direction way) const;
  void join_base(C* data, direction way, bool done_first) const;
  void combine(int index, C* data, C* work, direction way) const;
  void split_level(int index, C* data, C* work, direction way) const;
  void part(int index, C* data, C* work, direction way) const;
};

}  // namespace qel::fft
