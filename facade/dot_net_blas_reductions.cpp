// SPDX-License-Identifier: BSD-3-Clause
// Sums, extremes, statistics, sequences. Sums go from the first element to the last.
#include <cmath>
#include <limits>

#include "facade/calls.h"
#include "facade/views.h"
#include "tavik/kernel/dot_net_blas.h"

namespace Tavik::Kernel {
namespace {

/// What sums of an element type are carried out in.
template <class T>
struct wide_type {
  using type = double;
};
template <class R>
struct wide_type<Complex<R>> {
  using type = DoubleComplex;
};
template <class T>
using wide_of = typename wide_type<T>::type;

inline double widened(double v) { return v; }
inline DoubleComplex widened(DoubleComplex v) { return v; }
inline DoubleComplex widened(FloatComplex v) { return {v.Real, v.Imag}; }
template <class T>
T narrowed(wide_of<T> v) {
  if constexpr (is_complex<T>) {
    return {static_cast<real_of<T>>(v.Real), static_cast<real_of<T>>(v.Imag)};
  } else {
    return static_cast<T>(v);
  }
}

template <class T>
T sum(int n, const DataBlock<T>& x, int stride) {
  T total(0);
  for_each_element(
      n, [&](const T& v) { total = total + v; }, elements(n, x, stride));
  return total;
}

template <class T>
T product(int n, const DataBlock<T>& x, int stride) {
  T total = x.Data[x.Offset];
  const strided<T> v = elements(n, x, stride);
  for (int k = 1; k < n; ++k) total = total * v[k];
  return total;
}

/// y_0 = x_0, y_k = next(x_k, x_(k-1), y_(k-1)).
template <class T, class Next>
void make_sequence(int n, const DataBlock<T>& x, int stride, const DataBlock<T>& y, const Next& next) {
  const strided<T> from = elements(n, x, stride), to = elements(n, y, 1);
  if (n <= 0) return;
  T before = from[0];  // kept, so that y may lie over x
  to[0] = before;
  for (int k = 1; k < n; ++k) {
    const T now = from[k];
    to[k] = next(now, before, to[k - 1]);
    before = now;
  }
}

/// Position of the first element that beats all before it. Element 0 is the first to beat, whatever n is.
template <class T, class Beats>
int extreme_index(int n, const DataBlock<T>& x, int stride, const Beats& beats) {
  T best = x.Data[x.Offset];
  int place = 0;
  const strided<T> v = elements(n, x, stride);
  for (int k = 1; k < n; ++k) {
    if (beats(v[k], best)) {
      best = v[k];
      place = k;
    }
  }
  return place;
}
template <class T, class Beats>
T extreme_value(int n, const DataBlock<T>& x, int stride, const Beats& beats) {
  const int place = extreme_index(n, x, stride, beats);
  return n <= 0 ? x.Data[x.Offset] : elements(n, x, stride)[place];
}
constexpr auto kGreater = [](auto a, auto b) { return a > b; };
constexpr auto kSmaller = [](auto a, auto b) { return a < b; };
// For searches that start from element 0 and leave NaN out.
constexpr auto kGreaterOrFirst = [](auto a, auto b) { return a > b || (std::isnan(b) && !std::isnan(a)); };
constexpr auto kSmallerOrFirst = [](auto a, auto b) { return a < b || (std::isnan(b) && !std::isnan(a)); };

/// Position of the first element that beats all before it and the limit; -1 if there is none.
template <class T, class Beats>
int extreme_index_from(T limit, int n, const DataBlock<T>& x, int stride, const Beats& beats) {
  int place = -1;
  const strided<T> v = elements(n, x, stride);
  for (int k = 0; k < n; ++k) {
    if (beats(v[k], limit)) {
      limit = v[k];
      place = k;
    }
  }
  return place;
}

/// Sums over some elements: how many they are, their sum and the sum of their squares.
template <class W>
struct moments {
  int count = 0;
  W first{}, second{};
  void add(W v) {
    ++count;
    first = first + v;
    second = second + v * v;
  }
  /// The sum of squared deviations from the mean.
  W deviation(int n) const { return second - first * first / W(n); }
};

template <class T, class Take>
moments<wide_of<T>> moments_of(int n, const strided<T>& v, const Take& take) {
  moments<wide_of<T>> sums;
  for (int k = 0; k < n; ++k) {
    if (take(v[k])) sums.add(widened(v[k]));
  }
  return sums;
}
constexpr auto kAll = [](const auto&) { return true; };
constexpr auto kNumbers = [](auto v) { return !std::isnan(v); };

template <class T>
T sum_of_squares(int n, const strided<T>& v) {
  return narrowed<T>(moments_of(n, v, kAll).deviation(n));
}

template <class T>
T nan_sum_of_squares(int n, const DataBlock<T>& x, int stride) {
  const auto sums = moments_of(n, elements(n, x, stride), kNumbers);
  // Kept: the result has single precision in either type.
  return static_cast<float>(sums.deviation(sums.count));
}

template <class T>
T nan_variance(int n, const DataBlock<T>& x, int stride, T mean) {
  double squares = 0;
  int count = 0;
  const strided<T> v = elements(n, x, stride);
  for (int k = 0; k < n; ++k) {
    if (std::isnan(v[k])) continue;
    const double deviation = static_cast<double>(v[k]) - static_cast<double>(mean);
    squares += deviation * deviation;
    ++count;
  }
  return static_cast<T>(squares / count);
}

}  // namespace

#define DEFINE(T)                                                                                   \
  T DotNetBlas::Sum(int n, const DataBlock<T>& x, int stride) { return sum(n, x, stride); }         \
  T DotNetBlas::Product(int n, const DataBlock<T>& x, int stride) { return product(n, x, stride); } \
  void DotNetBlas::Delta(int n, const DataBlock<T>& x, int stride, const DataBlock<T>& y) {         \
    make_sequence(n, x, stride, y, [](T now, T before, T) { return now - before; });                \
  }                                                                                                 \
  T DotNetBlas::SumOfSquares(int n, const DataBlock<T>& x, int stride) {                            \
    return sum_of_squares(n, elements(n, x, stride));                                               \
  }                                                                                                 \
  T DotNetBlas::Variance(int n, const DataBlock<T>& x, int stride) {                                \
    return SumOfSquares(n, x, stride) / T(static_cast<real_of<T>>(n));                              \
  }
TAVIK_FOR_ALL(DEFINE)
#undef DEFINE

double DotNetBlas::SumOfSquares(const Array<double>& data) {
  return SumOfSquares(data.Length(), DoubleDataBlock{data, 0}, 1);
}

#define DEFINE(T)                                                                                   \
  void DotNetBlas::CumulativeSum(int n, const DataBlock<T>& x, int stride, const DataBlock<T>& y) { \
    make_sequence(n, x, stride, y, [](T now, T, T total) { return total + now; });                  \
  }                                                                                                 \
  int DotNetBlas::MaxIndex(int n, const DataBlock<T>& x, int stride) {                              \
    return extreme_index(n, x, stride, kGreater);                                                   \
  }                                                                                                 \
  int DotNetBlas::MinIndex(int n, const DataBlock<T>& x, int stride) {                              \
    return extreme_index(n, x, stride, kSmaller);                                                   \
  }                                                                                                 \
  T DotNetBlas::MaxValue(int n, const DataBlock<T>& x, int stride) {                                \
    return extreme_value(n, x, stride, kGreater);                                                   \
  }                                                                                                 \
  T DotNetBlas::MinValue(int n, const DataBlock<T>& x, int stride) {                                \
    return extreme_value(n, x, stride, kSmaller);                                                   \
  }                                                                                                 \
  int DotNetBlas::NaNMaxIndex(int n, const DataBlock<T>& x, int stride) {                           \
    return extreme_index_from(std::numeric_limits<T>::lowest(), n, x, stride, kGreater);            \
  }                                                                                                 \
  int DotNetBlas::NaNMinIndex(int n, const DataBlock<T>& x, int stride) {                           \
    return extreme_index_from(std::numeric_limits<T>::max(), n, x, stride, kSmaller);               \
  }                                                                                                 \
  T DotNetBlas::NaNMaxValue(int n, const DataBlock<T>& x, int stride) {                             \
    return extreme_value(n, x, stride, kGreaterOrFirst);                                            \
  }                                                                                                 \
  T DotNetBlas::NaNMinValue(int n, const DataBlock<T>& x, int stride) {                             \
    return extreme_value(n, x, stride, kSmallerOrFirst);                                            \
  }                                                                                                 \
  int DotNetBlas::NaNCount(int n, const DataBlock<T>& x, int stride) {                              \
    return moments_of(n, elements(n, x, stride), kNumbers).count;                                   \
  }                                                                                                 \
  T DotNetBlas::NaNSum(int n, const DataBlock<T>& x, int stride) {                                  \
    return static_cast<T>(moments_of(n, elements(n, x, stride), kNumbers).first);                   \
  }                                                                                                 \
  T DotNetBlas::NaNMean(int n, const DataBlock<T>& x, int stride) {                                 \
    return NaNSum(n, x, stride) / static_cast<T>(NaNCount(n, x, stride));                           \
  }                                                                                                 \
  T DotNetBlas::NaNSumOfSquares(int n, const DataBlock<T>& x, int stride) {                         \
    return nan_sum_of_squares(n, x, stride);                                                        \
  }                                                                                                 \
  T DotNetBlas::NaNVariance(int n, const DataBlock<T>& x, int stride) {                             \
    return nan_variance(n, x, stride, NaNMean(n, x, stride));                                       \
  }
TAVIK_FOR_REALS(DEFINE)
#undef DEFINE

}  // namespace Tavik::Kernel
