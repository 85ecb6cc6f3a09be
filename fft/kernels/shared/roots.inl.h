// SPDX-License-Identifier: BSD-3-Clause
// Roots of unity for tables, several at a time: sines and cosines of angles up to an eighth of the circle
// from an axis, which are known to twice the precision, by their series. Errors stay below 0.8 units of the
// last place.
#pragma once

#include "fft/kernels/shared/planar_lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// (-1)^i / (2 i + first)!, the coefficients of cosines (first 0) and sines (first 1).
template <int first>
constexpr double series_coefficient(int i) {
  long double product = 1;
  for (int j = 2; j <= 2 * i + first; ++j) product *= j;
  return static_cast<double>((i % 2 == 0 ? 1 : -1) / product);
}

/// The terms from the given one on, as a polynomial of the square.
template <class P, int first, int from, int to>
[[gnu::always_inline]] inline typename P::reg series(typename P::reg square) {
  auto sum = P::all(series_coefficient<first>(to));
#pragma GCC unroll 16
  for (int i = to - 1; i >= from; --i) sum = P::plus(sum, square, P::all(series_coefficient<first>(i)));
  return sum;
}

/// The multiples of an n-th of the circle.
class angles {
 public:
  explicit angles(core_int n) : count_(static_cast<double>(n)) {
    constexpr double kHigh = 0x1.921fb54442d18p+2, kLow = 0x1.1a62633145c07p-52;  // 2 pi
    const double whole = 4 * count_;
    unit_ = kHigh / whole;
    rest_ = (parts<double, 1>::minus(unit_, whole, kHigh) + kLow) / whole;
  }
  /// exp(-2 pi i at / n), 0 <= at < n
  template <class V>
  [[gnu::always_inline]] reg_of<V> root(typename V::lane at) const {
    using P = typename V::part;
    // The nearest quarter, and the way from it in quarters of 1 / n, at most an eighth of the circle.
    constexpr double kRounds = 0x1.8p+52;
    const auto turns = at * P::all(4 / count_) + P::all(kRounds) - P::all(kRounds);
    const auto rest = P::minus(turns, P::all(count_), P::all(4.0) * at);
    const auto high = rest * P::all(unit_);
    const auto low = P::plus(rest, P::all(rest_), P::minus(-rest, P::all(unit_), -high));
    const auto square = high * high, half = P::all(0.5) * square;
    const auto tail = P::minus(-high, high, -square);  // of the square
    const auto sine = high + P::plus(high * square, series<P, 1, 1, 8>(square), P::minus(half, low, low));
    const auto whole = P::all(1.0) - half, lost = (P::all(1.0) - whole) - half;
    const auto far = P::plus(square * square, series<P, 0, 2, 9>(square), lost);
    const auto cosine = whole + P::minus(high, low, P::minus(P::all(0.5), tail, far));
    const auto one = P::all(1.0), two = P::all(2.0), three = P::all(3.0);
    const auto odd = (turns == one) | (turns == three);
    const auto re = odd ? sine : cosine, im = odd ? cosine : sine;
    return {((turns == one) | (turns == two)) ? -re : re, ((turns == two) | (turns == three)) ? im : -im};
  }

 private:
  double count_, unit_, rest_;  ///< the last two: a quarter of an n-th, to twice the precision
};

constexpr int kCounted[] = {0, 1, 2, 3, 4, 5, 6, 7};

template <int kCount>
[[gnu::always_inline]] inline typename parts<double, kCount>::reg in_doubles(const int* p) {
  if constexpr (kCount == 1) {
    return static_cast<double>(*p);
  } else if constexpr (kCount == 4) {
    return _mm256_cvtepi32_pd(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
  } else {
#ifdef __AVX512F__
    return _mm512_cvtepi32_pd(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)));
#endif
  }
}

/// roots[i] = exp(-2 pi i numerators[i] / n), i < count; no numerators: 0, 1, 2 ...
void roots_of_unity(complex16* roots, const int* numerators, core_int count, core_int n) {
  const angles all(n);
  const auto run = [&]<class V>(core_int first) QEL_BODY {
    const auto at = numerators != nullptr
                        ? in_doubles<V::kCount>(numerators + first)
                        : V::part::all(static_cast<double>(first)) + in_doubles<V::kCount>(kCounted);
    V::template store_pairs<false>(roots + first, all.root<V>(at));
  };
  using V = widest_parts<double>;
  core_int i = 0;
  for (; i + V::kCount <= count; i += V::kCount) run.template operator()<V>(i);
  for (; i < count; ++i) run.template operator()<px<double, 1>>(i);
}

/// Four roots, at steps of so many elements, as parts; with the other sign of the imaginary ones if mirrored.
template <class R, bool kMirrored>
[[gnu::always_inline]] inline void spread_four(const complex16* roots, core_int step, R* re, R* im) {
  const auto at = [&](core_int i) QEL_BODY { return _mm_loadu_pd(&roots[i * step].real); };
  const __m256d a = _mm256_insertf128_pd(_mm256_castpd128_pd256(at(0)), at(2), 1);
  const __m256d b = _mm256_insertf128_pd(_mm256_castpd128_pd256(at(1)), at(3), 1);
  const __m256d x = _mm256_unpacklo_pd(a, b), y = _mm256_unpackhi_pd(a, b), z = kMirrored ? -y : y;
  if constexpr (sizeof(R) == sizeof(double)) {
    _mm256_storeu_pd(re, x);
    _mm256_storeu_pd(im, z);
  } else {
    _mm_storeu_ps(re, _mm256_cvtpd_ps(x));
    _mm_storeu_ps(im, _mm256_cvtpd_ps(z));
  }
}

/// A row of twiddles as parts: exp(-2 pi i j step / n), j < count, count step <= n, from the half of the
/// circle.
template <class R>
void spread_roots(const complex16* half, core_int step, core_int count, core_int n, R* re, R* im) {
  const auto run = [&]<bool kMirrored>(core_int from, core_int to) QEL_BODY {
    const complex16* roots = half + (kMirrored ? n - from * step : from * step);
    const core_int way = kMirrored ? -step : step;
    core_int j = from;
    for (; j + 4 <= to; j += 4, roots += 4 * way) spread_four<R, kMirrored>(roots, way, re + j, im + j);
    for (; j < to; ++j, roots += way) {
      re[j] = static_cast<R>(roots->real);
      im[j] = static_cast<R>(kMirrored ? -roots->imag : roots->imag);
    }
  };
  const core_int in_half = n / 2 / step + 1, turn = in_half < count ? in_half : count;
  run.template operator()<false>(0, turn);
  run.template operator()<true>(turn, count);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
