// SPDX-License-Identifier: BSD-3-Clause
// Native dot products. Real: eight accumulator registers, one product of registers to each per step. Complex:
// four and four, `straight` for y times x as stored (yr xr, yi xi), `crossed` for y times x with its parts
// exchanged (yr xi, yi xr); their sums by part give both products. Strided vectors fill the same registers,
// in shorter steps.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/l5_avx2/wide.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R, class X, class Y>
struct real_sum : eight_sums<wide<R>> {
  using W = wide<R>;
  using eight_sums<W>::sum;
  X x;
  Y y;
  real_sum(X from_x, Y from_y) : x(from_x), y(from_y) {}
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
#pragma GCC unroll 8
    for (int k = 0; k < kRegisters; ++k) sum[k] = W::fused(x.get(k), y.get(k), sum[k]);
    x.advance(kRegisters);
    y.advance(kRegisters);
  }
  [[gnu::always_inline]] void part(core_int count) {
    sum[1] = W::fused(x.get_part(count), y.get_part(count), sum[1]);
  }
  R result() const { return W::sum(this->total()); }
};

// The strided ways stand out of line, so that the contiguous ones save no registers.
template <class R>
[[gnu::noinline]] R dot_strided_real(core_int n, const R* x, core_int incx, const R* y, core_int incy) {
  real_sum<R, strided<R>, strided<R>> dot({first_element(x, n, incx), incx},
                                          {first_element(y, n, incy), incy});
  run_registers<R, 2, 1>(dot, n);
  return dot.result();
}
template <class R>
inline R dot_real(core_int n, const R* x, core_int incx, const R* y, core_int incy) {
  if (n <= 0) return 0;
  if (incx * incy == 1) {  // both strides 1 or both -1 pair the same elements
    real_sum<R, contiguous<R>, contiguous<R>> dot(contiguous<R>{x}, contiguous<R>{y});
    run_registers<R, 8, 4, 2, 1>(dot, n);
    return dot.result();
  }
  return dot_strided_real(n, x, incx, y, incy);
}

template <class C, class X, class Y>
struct complex_sum {
  using R = typename parts<C>::real;
  using W = wide<R>;
  X x;
  Y y;
  four_wide_sums<W> straight, crossed;
  complex_sum(X from_x, Y from_y) : x(from_x), y(from_y) {}
  void add(int k, typename W::reg from_x, typename W::reg from_y) {
    straight.sum[k] = W::fused(from_y, from_x, straight.sum[k]);
    crossed.sum[k] = W::fused(from_y, W::exchanged(from_x), crossed.sum[k]);
  }
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
#pragma GCC unroll 4
    for (int k = 0; k < kRegisters; ++k) add(k, in_register(x.get(k)), in_register(y.get(k)));
    x.advance(kRegisters);
    y.advance(kRegisters);
  }
  [[gnu::always_inline]] void part(core_int count) { add(1, x.get_part(count), y.get_part(count)); }
  template <bool kConjugate>
  C result() const {
    R same[2], cross[2];
    W::sums_by_part(straight.total(), same);
    W::sums_by_part(crossed.total(), cross);
    if (kConjugate) return {same[0] + same[1], cross[1] - cross[0]};
    return {same[0] - same[1], cross[0] + cross[1]};
  }
};

template <bool kConjugate, class C>
[[gnu::noinline]] C dot_strided_complex(core_int n, const C* x, core_int incx, const C* y, core_int incy) {
  complex_sum<C, strided<C>, strided<C>> dot({first_element(x, n, incx), incx},
                                             {first_element(y, n, incy), incy});
  run_registers<C, 2, 1>(dot, n);
  return dot.template result<kConjugate>();
}
template <bool kConjugate, class C>
inline C dot_complex(core_int n, const C* x, core_int incx, const C* y, core_int incy) {
  if (n <= 0) return {0, 0};
  if (incx * incy == 1) {
    complex_sum<C, contiguous<C>, contiguous<C>> dot(contiguous<C>{x}, contiguous<C>{y});
    run_registers<C, 4, 2, 1>(dot, n);
    return dot.template result<kConjugate>();
  }
  return dot_strided_complex<kConjugate>(n, x, incx, y, incy);
}

}  // namespace
}  // namespace qel::QEL_LEVEL

#include "blas/kernels/shared/dot_complex_exports.inl.h"
#include "blas/kernels/shared/dot_real_exports.inl.h"
