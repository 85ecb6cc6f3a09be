// SPDX-License-Identifier: BSD-3-Clause
// Sums in four accumulator registers 0..3: registers of a step go to them in turn, starting at 0. The
// elements peeled before a 16-byte boundary start lanes 0, 1, 2 of accumulator 0; what fills no register is
// added to its lanes 0 and 1 in turn. At the end (0 + 1) + (2 + 3), then the lanes, neighbours first. Used by
// the sums of absolute values, and by the real dot product of the generic level.
#pragma once

#include "blas/kernels/shared/streams.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R>
struct four_sums {
  using L = lanes<R>;
  typename L::reg sum[4];

  four_sums(const R* peeled, core_int count) : sum{L::zero(), L::zero(), L::zero(), L::zero()} {
    if (count == 0) return;
    R start[L::kCount] = {};
    for (core_int i = 0; i < count; ++i) start[i] = peeled[i];
    sum[0] = L::loadu(start);
  }
  void add(int turn, typename L::reg v) { sum[turn % 4] = L::add(sum[turn % 4], v); }

  /// The total, with `left` more numbers term(0), term(1), ...
  template <class Term>
  R total(core_int left, Term term) {
    R lane[L::kCount];
    if (left != 0) {
      L::storeu(lane, sum[0]);
      for (core_int i = 0; i < left; ++i) lane[i % 2] += term(i);
      sum[0] = L::loadu(lane);
    }
    L::storeu(lane, L::add(L::add(sum[0], sum[1]), L::add(sum[2], sum[3])));
    return tree_sum<L::kCount>(lane);
  }
};

}  // namespace
}  // namespace qel::QEL_LEVEL
