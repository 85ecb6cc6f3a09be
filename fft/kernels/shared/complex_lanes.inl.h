// SPDX-License-Identifier: BSD-3-Clause
// Registers of complex numbers: cx<R, n> holds n of them, side by side. widest<R> is the widest of the level.
#pragma once

#include "fft/kernels/kernel_prelude.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R, int kCount>
struct cx;

template <class R>
struct complex_of;
template <>
struct complex_of<double> {
  using type = complex16;
};
template <>
struct complex_of<float> {
  using type = complex8;
};
template <class R>
using complex_type = typename complex_of<R>::type;

#define QEL_LANES [[gnu::always_inline]] static inline

template <>
struct cx<double, 1> {
  using real = double;
  using reg = __m128d;
  static constexpr int kCount = 1;
  QEL_LANES reg load(const complex16* p) { return _mm_loadu_pd(reinterpret_cast<const double*>(p)); }
  /// Numbers that lie pitch apart.
  QEL_LANES reg load_across(const complex16* p, core_int) { return load(p); }
  /// One number in all places.
  QEL_LANES reg repeated(const complex16* p) { return load(p); }
  QEL_LANES void store(complex16* p, reg v) { _mm_storeu_pd(reinterpret_cast<double*>(p), v); }
  QEL_LANES reg add(reg a, reg b) { return _mm_add_pd(a, b); }
  QEL_LANES reg sub(reg a, reg b) { return _mm_sub_pd(a, b); }
  QEL_LANES reg times(reg a, double f) { return _mm_mul_pd(a, _mm_set1_pd(f)); }
  QEL_LANES reg swapped(reg a) { return _mm_shuffle_pd(a, a, 1); }
  /// The complex numbers in reversed order.
  QEL_LANES reg reversed(reg a) { return a; }
  /// Signs of the real parts turned.
  QEL_LANES reg minus_real(reg a) { return _mm_xor_pd(a, _mm_set_pd(0.0, -0.0)); }
  QEL_LANES reg minus_imag(reg a) { return _mm_xor_pd(a, _mm_set_pd(-0.0, 0.0)); }
  QEL_LANES reg reals(reg w) { return _mm_unpacklo_pd(w, w); }
  QEL_LANES reg imags(reg w) { return _mm_unpackhi_pd(w, w); }
  QEL_LANES reg mul(reg a, reg b) { return _mm_mul_pd(a, b); }
#ifdef __FMA__
  QEL_LANES reg mul_add_sub(reg a, reg b, reg c) { return _mm_fmaddsub_pd(a, b, c); }
  QEL_LANES reg mul_sub_add(reg a, reg b, reg c) { return _mm_fmsubadd_pd(a, b, c); }
  QEL_LANES reg mul_add(reg a, double f, reg c) { return _mm_fmadd_pd(a, _mm_set1_pd(f), c); }
#endif
};

template <>
struct cx<float, 2> {
  using real = float;
  using reg = __m128;
  static constexpr int kCount = 2;
  QEL_LANES reg load(const complex8* p) { return _mm_loadu_ps(reinterpret_cast<const float*>(p)); }
  QEL_LANES reg load_across(const complex8* p, core_int pitch) {
    const __m128i low = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
    return _mm_loadh_pi(_mm_castsi128_ps(low), reinterpret_cast<const __m64*>(p + pitch));
  }
  QEL_LANES reg repeated(const complex8* p) {
    const reg one = _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
    return _mm_movelh_ps(one, one);
  }
  QEL_LANES void store(complex8* p, reg v) { _mm_storeu_ps(reinterpret_cast<float*>(p), v); }
  QEL_LANES reg add(reg a, reg b) { return _mm_add_ps(a, b); }
  QEL_LANES reg sub(reg a, reg b) { return _mm_sub_ps(a, b); }
  QEL_LANES reg times(reg a, float f) { return _mm_mul_ps(a, _mm_set1_ps(f)); }
  QEL_LANES reg swapped(reg a) { return _mm_shuffle_ps(a, a, _MM_SHUFFLE(2, 3, 0, 1)); }
  QEL_LANES reg reversed(reg a) { return _mm_shuffle_ps(a, a, _MM_SHUFFLE(1, 0, 3, 2)); }
  QEL_LANES void transpose(reg* x) {
    const reg low = _mm_movelh_ps(x[0], x[1]);
    x[1] = _mm_movehl_ps(x[1], x[0]);
    x[0] = low;
  }
  QEL_LANES reg minus_real(reg a) { return _mm_xor_ps(a, _mm_set_ps(0.0F, -0.0F, 0.0F, -0.0F)); }
  QEL_LANES reg minus_imag(reg a) { return _mm_xor_ps(a, _mm_set_ps(-0.0F, 0.0F, -0.0F, 0.0F)); }
  QEL_LANES reg reals(reg w) { return _mm_shuffle_ps(w, w, _MM_SHUFFLE(2, 2, 0, 0)); }
  QEL_LANES reg imags(reg w) { return _mm_shuffle_ps(w, w, _MM_SHUFFLE(3, 3, 1, 1)); }
  QEL_LANES reg mul(reg a, reg b) { return _mm_mul_ps(a, b); }
#ifdef __FMA__
  QEL_LANES reg mul_add_sub(reg a, reg b, reg c) { return _mm_fmaddsub_ps(a, b, c); }
  QEL_LANES reg mul_sub_add(reg a, reg b, reg c) { return _mm_fmsubadd_ps(a, b, c); }
  QEL_LANES reg mul_add(reg a, float f, reg c) { return _mm_fmadd_ps(a, _mm_set1_ps(f), c); }
#endif
};

/// One number in the low half, zeros above.
template <>
struct cx<float, 1> : cx<float, 2> {
  static constexpr int kCount = 1;
  QEL_LANES reg load(const complex8* p) {
    return _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
  }
  QEL_LANES reg repeated(const complex8* p) { return load(p); }
  QEL_LANES void store(complex8* p, reg v) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_castps_si128(v));
  }
  QEL_LANES reg reversed(reg a) { return a; }
};

#ifdef __AVX2__
template <>
struct cx<double, 2> {
  using real = double;
  using reg = __m256d;
  static constexpr int kCount = 2;
  QEL_LANES reg load(const complex16* p) { return _mm256_loadu_pd(reinterpret_cast<const double*>(p)); }
  QEL_LANES reg repeated(const complex16* p) {
    return _mm256_broadcast_pd(reinterpret_cast<const __m128d*>(p));
  }
  QEL_LANES void store(complex16* p, reg v) { _mm256_storeu_pd(reinterpret_cast<double*>(p), v); }
  QEL_LANES reg add(reg a, reg b) { return _mm256_add_pd(a, b); }
  QEL_LANES reg sub(reg a, reg b) { return _mm256_sub_pd(a, b); }
  QEL_LANES reg times(reg a, double f) { return _mm256_mul_pd(a, _mm256_set1_pd(f)); }
  QEL_LANES reg swapped(reg a) { return _mm256_permute_pd(a, 5); }
  QEL_LANES reg reversed(reg a) { return _mm256_permute2f128_pd(a, a, 1); }
  /// Rows and columns of complex numbers change places.
  QEL_LANES void transpose(reg* x) {
    const reg low = _mm256_permute2f128_pd(x[0], x[1], 0x20);
    x[1] = _mm256_permute2f128_pd(x[0], x[1], 0x31);
    x[0] = low;
  }
  QEL_LANES reg minus_real(reg a) { return _mm256_xor_pd(a, _mm256_set_pd(0.0, -0.0, 0.0, -0.0)); }
  QEL_LANES reg minus_imag(reg a) { return _mm256_xor_pd(a, _mm256_set_pd(-0.0, 0.0, -0.0, 0.0)); }
  QEL_LANES reg reals(reg w) { return _mm256_movedup_pd(w); }
  QEL_LANES reg imags(reg w) { return _mm256_permute_pd(w, 15); }
  QEL_LANES reg mul(reg a, reg b) { return _mm256_mul_pd(a, b); }
  QEL_LANES reg mul_add_sub(reg a, reg b, reg c) { return _mm256_fmaddsub_pd(a, b, c); }
  QEL_LANES reg mul_sub_add(reg a, reg b, reg c) { return _mm256_fmsubadd_pd(a, b, c); }
  QEL_LANES reg mul_add(reg a, double f, reg c) { return _mm256_fmadd_pd(a, _mm256_set1_pd(f), c); }
};
template <>
struct cx<float, 4> {
  using real = float;
  using reg = __m256;
  static constexpr int kCount = 4;
  QEL_LANES reg load(const complex8* p) { return _mm256_loadu_ps(reinterpret_cast<const float*>(p)); }
  QEL_LANES reg repeated(const complex8* p) {
    return _mm256_castpd_ps(_mm256_broadcast_sd(reinterpret_cast<const double*>(p)));
  }
  QEL_LANES void store(complex8* p, reg v) { _mm256_storeu_ps(reinterpret_cast<float*>(p), v); }
  QEL_LANES reg add(reg a, reg b) { return _mm256_add_ps(a, b); }
  QEL_LANES reg sub(reg a, reg b) { return _mm256_sub_ps(a, b); }
  QEL_LANES reg times(reg a, float f) { return _mm256_mul_ps(a, _mm256_set1_ps(f)); }
  QEL_LANES reg swapped(reg a) { return _mm256_permute_ps(a, 0xB1); }
  QEL_LANES reg reversed(reg a) {
    return _mm256_castpd_ps(_mm256_permute4x64_pd(_mm256_castps_pd(a), _MM_SHUFFLE(0, 1, 2, 3)));
  }
  QEL_LANES void transpose(reg* x) {
    const __m256d r0 = _mm256_castps_pd(x[0]), r1 = _mm256_castps_pd(x[1]);
    const __m256d r2 = _mm256_castps_pd(x[2]), r3 = _mm256_castps_pd(x[3]);
    const __m256d a = _mm256_unpacklo_pd(r0, r1), b = _mm256_unpackhi_pd(r0, r1);
    const __m256d c = _mm256_unpacklo_pd(r2, r3), d = _mm256_unpackhi_pd(r2, r3);
    x[0] = _mm256_castpd_ps(_mm256_permute2f128_pd(a, c, 0x20));
    x[1] = _mm256_castpd_ps(_mm256_permute2f128_pd(b, d, 0x20));
    x[2] = _mm256_castpd_ps(_mm256_permute2f128_pd(a, c, 0x31));
    x[3] = _mm256_castpd_ps(_mm256_permute2f128_pd(b, d, 0x31));
  }
  QEL_LANES reg minus_real(reg a) {
    return _mm256_xor_ps(a, _mm256_castpd_ps(_mm256_castsi256_pd(_mm256_set1_epi64x(0x80000000))));
  }
  QEL_LANES reg minus_imag(reg a) { return _mm256_xor_ps(a, _mm256_castpd_ps(_mm256_set1_pd(-0.0))); }
  QEL_LANES reg reals(reg w) { return _mm256_moveldup_ps(w); }
  QEL_LANES reg imags(reg w) { return _mm256_movehdup_ps(w); }
  QEL_LANES reg mul(reg a, reg b) { return _mm256_mul_ps(a, b); }
  QEL_LANES reg mul_add_sub(reg a, reg b, reg c) { return _mm256_fmaddsub_ps(a, b, c); }
  QEL_LANES reg mul_sub_add(reg a, reg b, reg c) { return _mm256_fmsubadd_ps(a, b, c); }
  QEL_LANES reg mul_add(reg a, float f, reg c) { return _mm256_fmadd_ps(a, _mm256_set1_ps(f), c); }
};
inline constexpr int kRegisterBytes = 32;
#else
inline constexpr int kRegisterBytes = 16;
#endif
#undef QEL_LANES

template <class R>
using single = cx<R, 1>;
template <class R>
using widest = cx<R, kRegisterBytes / (2 * static_cast<int>(sizeof(R)))>;

/// 128 bits of numbers.
template <class R>
using across = cx<R, 16 / (2 * static_cast<int>(sizeof(R)))>;

template <class V>
using reg_of = typename V::reg;

/// a * w forward, a * conj(w) backward.
template <class V, bool kBackward>
[[gnu::always_inline]] inline reg_of<V> turned(reg_of<V> a, reg_of<V> w) {
  const auto crossed = V::mul(V::swapped(a), V::imags(w));
#ifdef __FMA__
  return kBackward ? V::mul_sub_add(a, V::reals(w), crossed) : V::mul_add_sub(a, V::reals(w), crossed);
#else
  const auto straight = V::mul(a, V::reals(w));
  return V::add(straight, kBackward ? V::minus_imag(crossed) : V::minus_real(crossed));
#endif
}

/// -i a forward, i a backward.
template <class V, bool kBackward>
[[gnu::always_inline]] inline reg_of<V> quarter(reg_of<V> a) {
  return kBackward ? V::minus_real(V::swapped(a)) : V::minus_imag(V::swapped(a));
}

/// a f + c
template <class V>
[[gnu::always_inline]] inline reg_of<V> times_plus(reg_of<V> a, typename V::real f, reg_of<V> c) {
#ifdef __FMA__
  return V::mul_add(a, f, c);
#else
  return V::add(V::times(a, f), c);
#endif
}

}  // namespace
}  // namespace qel::QEL_LEVEL
