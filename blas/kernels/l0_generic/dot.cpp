// SPDX-License-Identifier: BSD-3-Clause
// Dot products for plain SSE2; complex ones as dot_complex.inl.h tells.
//
// Order of summation, real: four accumulators as four_sums.inl.h tells, products in place of elements; 16
// doubles (32 floats) a step, 8 (16) once, then register by register to accumulator 0. Elements are peeled
// if that aligns both vectors; vectors that no peeling can align both take the same steps with unaligned
// loads and no peel.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/shared/dot_complex.inl.h"
#include "blas/kernels/shared/dot_strided.inl.h"
#include "blas/kernels/shared/four_sums.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R, class Stream>
struct contiguous_dot {
  four_sums<R> sum;
  Stream x, y;
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
    for (int k = 0; k < kRegisters; ++k) sum.add(k, lanes<R>::mul(x.get(k), y.get(k)));
    x.advance(kRegisters);
    y.advance(kRegisters);
  }
};

template <class Stream, class R>
inline R dot_streams(core_int left, const R* x, const R* y, const R* product, core_int peeled) {
  contiguous_dot<R, Stream> dot{four_sums<R>(product, peeled), {x}, {y}};
  left = run_tiers<8, 4, 1>(dot, left, lanes<R>::kCount, 0);
  return dot.sum.total(left, [&](core_int i) { return element_at(dot.x.at + i) * element_at(dot.y.at + i); });
}

template <class R>
inline R dot_real(core_int n, const R* x, core_int incx, const R* y, core_int incy) {
  if (n <= 0) return 0;
  if (incx * incy != 1) return dot_strided(n, x, incx, y, incy);
  core_int peeled = elements_to_boundary(x);
  if (peeled < 0 || misalignment(x) != misalignment(y)) {
    return dot_streams<unaligned_stream<R>>(n, x, y, static_cast<const R*>(nullptr), 0);
  }
  if (peeled > n) peeled = n;
  R product[lanes<R>::kCount];
  for (core_int i = 0; i < peeled; ++i) product[i] = x[i] * y[i];
  return dot_streams<aligned_stream<R>>(n - peeled, x + peeled, y + peeled, product, peeled);
}

}  // namespace
}  // namespace qel::QEL_LEVEL

#include "blas/kernels/shared/dot_real_exports.inl.h"
