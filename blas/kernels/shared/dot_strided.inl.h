// SPDX-License-Identifier: BSD-3-Clause
// Strided real dot product: groups of four doubles (eight floats) into one accumulator register, then half a
// group, then what is left in pairs to lanes 0 and 1, a last one to lane 0. Element i of a group goes to lane
// i mod lanes; at the end the lanes are added, neighbours first.
#pragma once

#include "blas/kernels/shared/streams.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R>
struct strided_dot {
  strided_stream<R> x, y;
  typename lanes<R>::reg sum;
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
    for (int k = 0; k < kRegisters; ++k) sum = lanes<R>::add(sum, lanes<R>::mul(x.get(k), y.get(k)));
    x.advance(kRegisters);
    y.advance(kRegisters);
  }
};

template <class R>
[[gnu::noinline]] R dot_strided(core_int n, const R* x, core_int incx, const R* y, core_int incy) {
  constexpr int kLanes = lanes<R>::kCount;
  strided_dot<R> dot{{first_element(x, n, incx), incx}, {first_element(y, n, incy), incy}, lanes<R>::zero()};
  const core_int left = run_tiers<2, 1>(dot, n, kLanes, 0);
  R sum[kLanes];
  lanes<R>::storeu(sum, dot.sum);
  for (core_int i = 0; i < left; ++i)
    sum[i % 2] += element_at(dot.x.at + i * incx) * element_at(dot.y.at + i * incy);
  return tree_sum<kLanes>(sum);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
