// SPDX-License-Identifier: BSD-3-Clause
// Euclidean norm without overflow or underflow, for the exported BLAS names of both languages. Squares of
// single precision numbers and their sums always fit into doubles. For double precision the plain sum is
// taken first and kept if it shows that nothing was lost; else the elements are summed again, scaled by
// the power of two that brings the largest near 1.
#include "dropin/norm.h"

#include "blas/level1/level1.h"
#include "service/serv.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qel::dropin {

namespace {

constexpr int kLanes = 8;  // independent sums, so that the compiler can use vectors

// Sum of (scale * v)^2 over count runs of width numbers, the starts stride numbers apart.
template <class R>
double sum_of_squares(const R* v, core_int count, core_int width, core_int stride, double scale) {
  double sums[kLanes] = {};
  if (stride == width) {
    const core_int total = count * width, whole = total - total % kLanes;
    for (core_int i = 0; i < whole; i += kLanes) {
      for (int lane = 0; lane < kLanes; ++lane) {
        const double element = scale * static_cast<double>(v[i + lane]);
        sums[lane] += element * element;
      }
    }
    for (core_int i = whole; i < total; ++i) {
      const double element = scale * static_cast<double>(v[i]);
      sums[i - whole] += element * element;
    }
  } else {
    for (core_int i = 0; i < count; ++i) {
      for (core_int part = 0; part < width; ++part) {
        const double element = scale * static_cast<double>(v[i * stride + part]);
        sums[(i * width + part) % kLanes] += element * element;
      }
    }
  }
  for (int step = kLanes / 2; step > 0; step /= 2) {
    for (int lane = 0; lane < step; ++lane) sums[lane] += sums[lane + step];
  }
  return sums[0];
}

double largest_size(const double* v, core_int count, core_int width, core_int stride) {
  double largest = 0;
  for (core_int i = 0; i < count; ++i) {
    for (core_int part = 0; part < width; ++part)
      largest = std::max(largest, std::fabs(v[i * stride + part]));
  }
  return largest;
}

float norm_of(const float* v, core_int count, core_int width, core_int stride) {
  return static_cast<float>(std::sqrt(sum_of_squares(v, count, width, stride, 1.0)));
}

double norm_of(const double* v, core_int count, core_int width, core_int stride) {
  // A square that underflows loses at most 2^-1075, which this sum doesn't notice for any number of them.
  constexpr double kNothingLost = 0x1p-900;
  // Beyond these powers neither the scale nor the scaled numbers' squares leave the range.
  constexpr int kLargestShift = 1000;
  const double plain = sum_of_squares(v, count, width, stride, 1.0);
  if (std::isnan(plain)) return plain;  // sums of squares bring forth no NaN, so there is one in x
  if (plain >= kNothingLost && plain <= std::numeric_limits<double>::max()) return std::sqrt(plain);
  const double largest = largest_size(v, count, width, stride);
  if (largest == 0 || std::isinf(largest)) return largest;
  const int shift = std::clamp(std::ilogb(largest), -kLargestShift, kLargestShift);
  return std::ldexp(std::sqrt(sum_of_squares(v, count, width, stride, std::ldexp(1.0, -shift))), shift);
}

// The norms of the native levels keep the promise above and are faster.
float native_norm(core_int n, const float* x, core_int incx) { return core::snrm2(&n, x, &incx); }
double native_norm(core_int n, const double* x, core_int incx) { return core::dnrm2(&n, x, &incx); }
float native_norm(core_int n, const complex8* x, core_int incx) { return core::scnrm2(&n, x, &incx); }
double native_norm(core_int n, const complex16* x, core_int incx) { return core::dznrm2(&n, x, &incx); }

}  // namespace

template <class T>
real_of<T> euclidean_norm(core_int n, const T* x, core_int incx) {
  if (n <= 0) return 0;
  if (serv_cpu_level() >= 5) return native_norm(n, x, incx < 0 ? -incx : incx);
  constexpr core_int width = is_complex<T> ? 2 : 1;
  return norm_of(reinterpret_cast<const real_of<T>*>(x), n, width, width * (incx < 0 ? -incx : incx));
}

template float euclidean_norm(core_int, const float*, core_int);
template double euclidean_norm(core_int, const double*, core_int);
template float euclidean_norm(core_int, const complex8*, core_int);
template double euclidean_norm(core_int, const complex16*, core_int);

}  // namespace qel::dropin
