// SPDX-License-Identifier: BSD-3-Clause
// Double dot product for plain SSE2.
//
// Order of summation: if both vectors are off by 8 from a 16-byte boundary, the first product starts the low
// lane of accumulator 0. Then pairs go to four two-lane accumulators in turn, 16 elements a step and 8 once;
// what is left goes in pairs, and a last one alone, to accumulator 0. At the end (0 + 1) + (2 + 3), then
// low + high. Vectors that no peeling can align both take the same steps with unaligned loads.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/shared/dot_strided.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <bool kAligned>
inline __m128d product(const double* x, const double* y) {
  if (kAligned) return _mm_mul_pd(_mm_load_pd(x), _mm_load_pd(y));
  return _mm_mul_pd(_mm_loadu_pd(x), _mm_loadu_pd(y));
}

template <bool kAligned>
inline double dot_contiguous(core_int left, const double* x, const double* y, double peeled) {
  __m128d sum[4] = {_mm_set_pd(0.0, peeled), _mm_setzero_pd(), _mm_setzero_pd(), _mm_setzero_pd()};
  for (; left >= 16; left -= 16, x += 16, y += 16) {
    for (int k = 0; k < 8; ++k) sum[k % 4] = _mm_add_pd(sum[k % 4], product<kAligned>(x + 2 * k, y + 2 * k));
  }
  if (left >= 8) {
    for (int k = 0; k < 4; ++k) sum[k] = _mm_add_pd(sum[k], product<kAligned>(x + 2 * k, y + 2 * k));
    left -= 8, x += 8, y += 8;
  }
  for (; left >= 2; left -= 2, x += 2, y += 2) sum[0] = _mm_add_pd(sum[0], product<kAligned>(x, y));
  if (left != 0) sum[0] = _mm_add_sd(sum[0], _mm_mul_sd(_mm_load_sd(x), _mm_load_sd(y)));
  const __m128d all = _mm_add_pd(_mm_add_pd(sum[0], sum[1]), _mm_add_pd(sum[2], sum[3]));
  return _mm_cvtsd_f64(all) + _mm_cvtsd_f64(_mm_unpackhi_pd(all, all));
}

}  // namespace

double ddot(const core_int* n, const double* x, const core_int* incx, const double* y, const core_int* incy) {
  if (*n <= 0) return 0.0;
  if (*incx * *incy != 1) return dot_strided(*n, x, *incx, y, *incy);
  const auto x_off = reinterpret_cast<uintptr_t>(x) & 15, y_off = reinterpret_cast<uintptr_t>(y) & 15;
  if (x_off == 0 && y_off == 0) return dot_contiguous<true>(*n, x, y, 0.0);
  if (x_off == 8 && y_off == 8) return dot_contiguous<true>(*n - 1, x + 1, y + 1, x[0] * y[0]);
  return dot_contiguous<false>(*n, x, y, 0.0);
}

}  // namespace qel::QEL_LEVEL
