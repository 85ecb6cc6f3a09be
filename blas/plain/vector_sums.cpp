// SPDX-License-Identifier: BSD-3-Clause
// Level 1 results that are one number: inner products, sums of absolute values, Euclidean norms. Inner
// products and sums run in several lanes on contiguous vectors; the norm visits its elements strictly in
// order. The norm's running scale is that of C. L. Lawson et al., ACM TOMS 5 (1979) 308.
#include <cmath>

#include "blas/plain/level1.h"
#include "blas/plain/strided_loops.h"

namespace qel::plain {

namespace {

/// Sum of |x_i| over contiguous reals; element i goes to lane i mod 8.
template <class R>
R contiguous_magnitudes(core_int n, const R* x) {
  constexpr core_int kLanes = 8;
  R lanes[kLanes] = {};
  core_int i = 0;
  for (; i + kLanes <= n; i += kLanes) {
    for (core_int l = 0; l < kLanes; ++l) lanes[l] += std::fabs(x[i + l]);
  }
  for (core_int l = 0; i < n; ++i, ++l) lanes[l] += std::fabs(x[i]);
  return sum_of_lanes(lanes);
}

/// sum = scale^2 ssq: numbers are taken in without squaring anything above 1.
template <class R>
struct scaled_squares {
  R scale = 0;
  R ssq = 1;

  void take(R v) {
    if (v == 0) return;
    const R a = std::fabs(v);
    if (a > scale) {
      ssq = 1 + ssq * ((scale / a) * (scale / a));
      scale = a;
    } else {
      ssq += (a / scale) * (a / scale);
    }
  }
};

}  // namespace

template <class T>
T dot(core_int n, const T* x, core_int incx, const T* y, core_int incy) {
  if (n <= 0) return T{};
  return inner_product(n, first_element(x, n, incx), incx, first_element(y, n, incy), incy);
}

template <class T>
T dotc(core_int n, const T* x, core_int incx, const T* y, core_int incy) {
  if (n <= 0) return T{};
  return inner_product<true>(n, first_element(x, n, incx), incx, first_element(y, n, incy), incy);
}

double double_dot(core_int n, double start, const float* x, core_int incx, const float* y, core_int incy) {
  if (n <= 0) return start;
  const float *x0 = first_element(x, n, incx), *y0 = first_element(y, n, incy);
  double sum = start;
  for (core_int i = 0; i < n; ++i) sum += static_cast<double>(x0[i * incx]) * y0[i * incy];
  return sum;
}

template <class T>
real_of<T> asum(core_int n, const T* x, core_int incx) {
  if (n <= 0) return 0;
  if (incx == 1 || incx == -1) return contiguous_magnitudes(n * kRealsOf<T>, as_reals(x));
  const T* x0 = first_element(x, n, incx);
  real_of<T> sum = 0;
  for (core_int i = 0; i < n; ++i) sum += abs1(x0[i * incx]);
  return sum;
}

template <class T>
real_of<T> nrm2(core_int n, const T* x, core_int incx) {
  if (n <= 0) return 0;
  scaled_squares<real_of<T>> sum;
  const core_int step = incx < 0 ? -incx : incx;
  if constexpr (is_complex<T>) {
    for (core_int i = 0; i < n; ++i) {
      sum.take(x[i * step].real);
      sum.take(x[i * step].imag);
    }
  } else {
    if (n == 1) return std::fabs(x[0]);
    for (core_int i = 0; i < n; ++i) sum.take(x[i * step]);
  }
  return sum.scale * std::sqrt(sum.ssq);
}

template float dot(core_int, const float*, core_int, const float*, core_int);
template double dot(core_int, const double*, core_int, const double*, core_int);
template complex8 dot(core_int, const complex8*, core_int, const complex8*, core_int);
template complex16 dot(core_int, const complex16*, core_int, const complex16*, core_int);
template complex8 dotc(core_int, const complex8*, core_int, const complex8*, core_int);
template complex16 dotc(core_int, const complex16*, core_int, const complex16*, core_int);
template float asum(core_int, const float*, core_int);
template double asum(core_int, const double*, core_int);
template float asum(core_int, const complex8*, core_int);
template double asum(core_int, const complex16*, core_int);
template float nrm2(core_int, const float*, core_int);
template double nrm2(core_int, const double*, core_int);
template float nrm2(core_int, const complex8*, core_int);
template double nrm2(core_int, const complex16*, core_int);

}  // namespace qel::plain
