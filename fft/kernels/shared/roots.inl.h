// SPDX-License-Identifier: BSD-3-Clause
// Roots of unity for tables, several at a time: sines and cosines of angles up to an eighth of the circle,
// which are known to twice the precision, by their series. Errors stay below 0.8 units of the last place.
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

/// roots[i] = exp(-2 pi i (start + step i) / n), i < count.
void roots_of_unity(complex16* roots, core_int count, core_int start, core_int step, core_int n) {
  using V = widest_parts<double>;
  constexpr double kHigh = 0x1.921fb54442d18p+2, kLow = 0x1.1a62633145c07p-52;  // 2 pi
  const auto whole_circle = static_cast<double>(n);
  const double unit = kHigh / whole_circle,
               rest = (parts<double, 1>::minus(unit, whole_circle, kHigh) + kLow) / whole_circle;
  const auto run = [&]<class W>(core_int first, typename W::lane at) QEL_BODY {
    using P = typename W::part;
    const auto high = at * P::all(unit);
    const auto low = P::plus(at, P::all(rest), P::minus(-at, P::all(unit), -high));
    const auto square = high * high, half = P::all(0.5) * square;
    const auto tail = P::minus(-high, high, -square);  // of the square
    const auto sine = high + P::plus(high * square, series<P, 1, 1, 8>(square), P::minus(half, low, low));
    const auto whole = P::all(1.0) - half, lost = (P::all(1.0) - whole) - half;
    const auto far = P::plus(square * square, series<P, 0, 2, 9>(square), lost);
    const auto cosine = whole + P::minus(high, low, P::minus(P::all(0.5), tail, far));
    W::template store_pairs<false>(roots + first, {cosine, -sine});
  };
  alignas(64) double numerators[V::kCount];
  for (int i = 0; i < V::kCount; ++i) numerators[i] = static_cast<double>(start + step * i);
  auto at = V::part::load(numerators);
  const auto next = V::part::all(static_cast<double>(step * V::kCount));
  core_int i = 0;
  for (; i + V::kCount <= count; i += V::kCount, at += next) run.template operator()<V>(i, at);
  for (; i < count; ++i) run.template operator()<px<double, 1>>(i, static_cast<double>(start + step * i));
}

}  // namespace
}  // namespace qel::QEL_LEVEL
