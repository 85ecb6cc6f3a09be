// SPDX-License-Identifier: BSD-3-Clause
// Native sums of magnitudes and Euclidean norms. A complex vector is twice as many reals.
//
// Magnitudes go to eight accumulator registers in turn.
//
// A norm is the root of the sum of squares, in double, so single precision can neither overflow nor
// underflow. In double the sum is good if it is finite and large enough that squares lost to underflow don't
// show in it. Otherwise the squares are summed again over numbers scaled by a power of two, which changes
// none of their bits: downwards if the sum is not finite, upwards if it is tiny. After scaling down only
// infinities and NaN can still give such a sum, and it then is the result.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/l5_avx2/wide.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R, class X>
struct magnitude_sum : eight_sums<wide<R>> {
  using W = wide<R>;
  using eight_sums<W>::sum;
  X x;
  explicit magnitude_sum(X from_x) : x(from_x) {}
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
#pragma GCC unroll 8
    for (int k = 0; k < kRegisters; ++k) sum[k] = W::add(sum[k], W::magnitude(x.get(k)));
    x.advance(kRegisters);
  }
  [[gnu::always_inline]] void part(core_int count) {
    sum[1] = W::add(sum[1], W::magnitude(x.get_part(count)));
  }
  R result() const { return W::sum(this->total()); }
};

// The squares of a register, added to two accumulators of doubles.
inline void add_squares(__m256d v, __m256d* sum) { sum[0] = _mm256_fmadd_pd(v, v, sum[0]); }
inline void add_squares(__m256 v, __m256d* sum) {
  const __m256d low = _mm256_cvtps_pd(_mm256_castps256_ps128(v));
  const __m256d high = _mm256_cvtps_pd(_mm256_extractf128_ps(v, 1));
  sum[0] = _mm256_fmadd_pd(low, low, sum[0]);
  sum[1] = _mm256_fmadd_pd(high, high, sum[1]);
}
template <class R>
inline constexpr int kSquareSums = 1;
template <>
inline constexpr int kSquareSums<float> = 2;

template <class R, class X, bool kScaled>
struct square_sum : eight_sums<wide<double>> {
  using W = wide<R>;
  X x;
  typename W::reg scale;
  square_sum(X from_x, R factor) : x(from_x), scale(W::all(factor)) {}
  void add(int k, typename W::reg v) {
    if (kScaled) v = W::mul(scale, v);
    add_squares(v, sum + k * kSquareSums<R>);
  }
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
#pragma GCC unroll 8
    for (int k = 0; k < kRegisters; ++k) add(k, x.get(k));
    x.advance(kRegisters);
  }
  [[gnu::always_inline]] void part(core_int count) { add(1, x.get_part(count)); }
  double result() const { return wide<double>::sum(total()); }
};

template <class R, class E, class X>
inline R sum_magnitudes(core_int n, X x) {
  magnitude_sum<R, X> op(x);
  run_registers<E, 8, 4, 2, 1>(op, n);
  return op.result();
}
// Strided ways stand out of line, so that the contiguous ones save no registers.
template <class R, class T>
[[gnu::noinline]] R asum_strided(core_int n, const T* x, core_int inc) {
  return sum_magnitudes<R, T>(n, strided<T>{first_element(x, n, inc), inc});
}
template <class R, class T>
inline R asum(core_int n, const T* x, core_int inc) {
  if (n <= 0) return 0;
  if (inc != 1 && inc != -1) return asum_strided<R>(n, x, inc);
  return sum_magnitudes<R, R>(n * parts<T>::kCount, contiguous<R>(reinterpret_cast<const R*>(x)));
}

template <bool kScaled, class E, class R, class X>
inline double sum_squares(core_int n, X x, R scale) {
  square_sum<R, X, kScaled> op(x, scale);
  if constexpr (kSquareSums<R> == 1) {
    run_registers<E, 8, 4, 2, 1>(op, n);
  } else {
    run_registers<E, 4, 2, 1>(op, n);
  }
  return op.result();
}
template <bool kScaled, class T, class R>
[[gnu::noinline]] double sum_squares_strided(core_int n, const T* x, core_int inc, R scale) {
  return sum_squares<kScaled, T>(n, strided<T>{x, inc}, scale);
}
/// The norm does not care for order: the walk goes up from the pointer, whatever the sign of the stride.
template <bool kScaled, class T, class R>
inline double sum_of_squares(core_int n, const T* x, core_int inc, R scale) {
  if (inc < 0) inc = -inc;
  if (inc != 1) return sum_squares_strided<kScaled>(n, x, inc, scale);
  return sum_squares<kScaled, R>(n * parts<T>::kCount, contiguous<R>(reinterpret_cast<const R*>(x)), scale);
}

inline double root(double v) {
  const __m128d wide_v = _mm_set_sd(v);
  return _mm_cvtsd_f64(_mm_sqrt_sd(wide_v, wide_v));
}

template <class T>
inline float norm(core_int n, const T* x, core_int inc, float) {
  return static_cast<float>(root(sum_of_squares<false>(n, x, inc, 1.0F)));
}

// A square below the smallest normal number loses at most 2^-1075, of any number of them less than 2^-1012.
constexpr double kSafelyLarge = 0x1p-950;
constexpr double kLargest = 0x1.fffffffffffffp1023;

template <class T>
[[gnu::noinline]] double norm_out_of_range(core_int n, const T* x, core_int inc, double scale) {
  return root(sum_of_squares<true>(n, x, inc, scale)) / scale;
}
template <class T>
inline double norm(core_int n, const T* x, core_int inc, double) {
  const double sum = sum_of_squares<false>(n, x, inc, 1.0);
  if (sum >= kSafelyLarge && sum <= kLargest) [[likely]] {
    return root(sum);
  }
  return norm_out_of_range(n, x, inc, sum < kSafelyLarge ? 0x1p600 : 0x1p-600);
}

template <class R, class T>
inline R nrm2(core_int n, const T* x, core_int inc) {
  return n <= 0 ? 0 : norm(n, x, inc, R{});
}

}  // namespace
}  // namespace qel::QEL_LEVEL

#include "blas/kernels/shared/asum_exports.inl.h"
#include "blas/kernels/shared/nrm2_exports.inl.h"
