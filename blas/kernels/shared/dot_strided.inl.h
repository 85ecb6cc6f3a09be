// SPDX-License-Identifier: BSD-3-Clause
// Strided double dot product: groups of four elements into one two-lane accumulator (elements 0 and 2 of a
// group to the low lane, 1 and 3 to the high), then a pair, then one to the low lane; low + high at the end.
namespace qel::QEL_LEVEL {
namespace {

inline double dot_strided(core_int n, const double* x, core_int incx, const double* y, core_int incy) {
  // A negative stride walks down to the pointer, which names the lowest address.
  if (incx < 0) x += (1 - n) * incx;
  if (incy < 0) y += (1 - n) * incy;
  __m128d sum = _mm_setzero_pd();
  core_int left = n;
  for (; left >= 4; left -= 4, x += 4 * incx, y += 4 * incy) {
    sum = _mm_add_pd(sum, _mm_mul_pd(_mm_set_pd(x[incx], x[0]), _mm_set_pd(y[incy], y[0])));
    sum = _mm_add_pd(sum,
                     _mm_mul_pd(_mm_set_pd(x[3 * incx], x[2 * incx]), _mm_set_pd(y[3 * incy], y[2 * incy])));
  }
  if (left >= 2) {
    sum = _mm_add_pd(sum, _mm_mul_pd(_mm_set_pd(x[incx], x[0]), _mm_set_pd(y[incy], y[0])));
    x += 2 * incx;
    y += 2 * incy;
    left -= 2;
  }
  if (left != 0) sum = _mm_add_sd(sum, _mm_mul_sd(_mm_load_sd(x), _mm_load_sd(y)));
  return _mm_cvtsd_f64(sum) + _mm_cvtsd_f64(_mm_unpackhi_pd(sum, sum));
}

}  // namespace
}  // namespace qel::QEL_LEVEL
