// SPDX-License-Identifier: BSD-3-Clause
// Complex numbers as one register of real and one of imaginary parts: px<R, n> holds n of them. Lines lie as
// two arrays of parts between passes, so that no pass but the first and the last moves parts between lanes.
#pragma once

#include "fft/kernels/shared/straight.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// Two instructions that read the same memory are two loads, which mostly cross cache lines.
template <class V>
[[gnu::always_inline]] inline V loaded_once(V v) {
  __asm__("" : "+v"(v));
  return v;
}

template <class R, int kCount>
struct parts;

#define QEL_LANES [[gnu::always_inline]] static inline

template <class R>
struct parts<R, 1> {
  using reg = R;
  QEL_LANES reg load(const R* p) {
    R value;
    __builtin_memcpy(&value, p, sizeof value);
    return value;
  }
  QEL_LANES void store(R* p, reg v) { __builtin_memcpy(p, &v, sizeof v); }
  QEL_LANES reg all(R v) { return v; }
  QEL_LANES reg plus(reg a, reg b, reg c) {
    if constexpr (sizeof(R) == sizeof(double)) {
      return _mm_cvtsd_f64(_mm_fmadd_sd(_mm_set_sd(a), _mm_set_sd(b), _mm_set_sd(c)));
    } else {
      return _mm_cvtss_f32(_mm_fmadd_ss(_mm_set_ss(a), _mm_set_ss(b), _mm_set_ss(c)));
    }
  }
  QEL_LANES reg minus(reg a, reg b, reg c) { return plus(-a, b, c); }
  QEL_LANES void load_pairs(const complex_type<R>* p, reg& re, reg& im) {
    const R* reals = reinterpret_cast<const R*>(p);
    re = load(reals);
    im = load(reals + 1);
  }
  QEL_LANES void store_pairs(complex_type<R>* p, reg re, reg im) {
    R* reals = reinterpret_cast<R*>(p);
    store(reals, re);
    store(reals + 1, im);
  }
};

template <>
struct parts<double, 2> {
  using reg = __m128d;
  QEL_LANES reg load(const double* p) { return _mm_loadu_pd(p); }
  QEL_LANES void store(double* p, reg v) { _mm_storeu_pd(p, v); }
  QEL_LANES reg all(double v) { return _mm_set1_pd(v); }
  QEL_LANES reg plus(reg a, reg b, reg c) { return _mm_fmadd_pd(a, b, c); }
  QEL_LANES reg minus(reg a, reg b, reg c) { return _mm_fnmadd_pd(a, b, c); }
  QEL_LANES void load_pairs(const complex16* p, reg& re, reg& im) {
    const reg a = load(reinterpret_cast<const double*>(p)), b = load(reinterpret_cast<const double*>(p + 1));
    re = _mm_unpacklo_pd(a, b);
    im = _mm_unpackhi_pd(a, b);
  }
  QEL_LANES void store_pairs(complex16* p, reg re, reg im) {
    store(reinterpret_cast<double*>(p), _mm_unpacklo_pd(re, im));
    store(reinterpret_cast<double*>(p + 1), _mm_unpackhi_pd(re, im));
  }
};

/// Half a register, its other half zero: for passes that cost more than what is done for nothing.
template <>
struct parts<float, 2> {
  using reg = __m128;
  QEL_LANES reg load(const float* p) {
    return _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
  }
  QEL_LANES void store(float* p, reg v) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_castps_si128(v));
  }
  QEL_LANES reg all(float v) { return _mm_set1_ps(v); }
  QEL_LANES reg plus(reg a, reg b, reg c) { return _mm_fmadd_ps(a, b, c); }
  QEL_LANES reg minus(reg a, reg b, reg c) { return _mm_fnmadd_ps(a, b, c); }
};

template <>
struct parts<float, 4> {
  using reg = __m128;
  QEL_LANES reg load(const float* p) { return _mm_loadu_ps(p); }
  QEL_LANES void store(float* p, reg v) { _mm_storeu_ps(p, v); }
  QEL_LANES reg all(float v) { return _mm_set1_ps(v); }
  QEL_LANES reg plus(reg a, reg b, reg c) { return _mm_fmadd_ps(a, b, c); }
  QEL_LANES reg minus(reg a, reg b, reg c) { return _mm_fnmadd_ps(a, b, c); }
  QEL_LANES void load_pairs(const complex8* p, reg& re, reg& im) {
    const reg a = load(reinterpret_cast<const float*>(p)), b = load(reinterpret_cast<const float*>(p + 2));
    re = _mm_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0));
    im = _mm_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1));
  }
  QEL_LANES void store_pairs(complex8* p, reg re, reg im) {
    store(reinterpret_cast<float*>(p), _mm_unpacklo_ps(re, im));
    store(reinterpret_cast<float*>(p + 2), _mm_unpackhi_ps(re, im));
  }
  QEL_LANES void store_columns(float* to, core_int step, const reg* x) {
    const reg a = _mm_unpacklo_ps(x[0], x[1]), b = _mm_unpackhi_ps(x[0], x[1]);
    const reg c = _mm_unpacklo_ps(x[2], x[3]), d = _mm_unpackhi_ps(x[2], x[3]);
    store(to, _mm_movelh_ps(a, c));
    store(to + step, _mm_movehl_ps(c, a));
    store(to + 2 * step, _mm_movelh_ps(b, d));
    store(to + 3 * step, _mm_movehl_ps(d, b));
  }
};

template <>
struct parts<double, 4> {
  using reg = __m256d;
  QEL_LANES reg load(const double* p) { return _mm256_loadu_pd(p); }
  QEL_LANES void store(double* p, reg v) { _mm256_storeu_pd(p, v); }
  QEL_LANES reg all(double v) { return _mm256_set1_pd(v); }
  /// a b + c
  QEL_LANES reg plus(reg a, reg b, reg c) { return _mm256_fmadd_pd(a, b, c); }
  /// c - a b
  QEL_LANES reg minus(reg a, reg b, reg c) { return _mm256_fnmadd_pd(a, b, c); }
  QEL_LANES void load_pairs(const complex16* p, reg& re, reg& im) {
    const reg a = loaded_once(load(reinterpret_cast<const double*>(p)));
    const reg b = loaded_once(load(reinterpret_cast<const double*>(p + 2)));
    const reg low = _mm256_permute2f128_pd(a, b, 0x20), high = _mm256_permute2f128_pd(a, b, 0x31);
    re = _mm256_unpacklo_pd(low, high);
    im = _mm256_unpackhi_pd(low, high);
  }
  /// The same, but in an order of lanes of its own; store_mixed puts them back.
  QEL_LANES void load_mixed(const complex16* p, reg& re, reg& im) {
    const reg a = loaded_once(load(reinterpret_cast<const double*>(p)));
    const reg b = loaded_once(load(reinterpret_cast<const double*>(p + 2)));
    re = _mm256_unpacklo_pd(a, b);
    im = _mm256_unpackhi_pd(a, b);
  }
  QEL_LANES void store_mixed(complex16* p, reg re, reg im) {
    store(reinterpret_cast<double*>(p), _mm256_unpacklo_pd(re, im));
    store(reinterpret_cast<double*>(p + 2), _mm256_unpackhi_pd(re, im));
  }
  QEL_LANES void store_pairs(complex16* p, reg re, reg im) {
    const reg low = _mm256_unpacklo_pd(re, im), high = _mm256_unpackhi_pd(re, im);
    store(reinterpret_cast<double*>(p), _mm256_permute2f128_pd(low, high, 0x20));
    store(reinterpret_cast<double*>(p + 2), _mm256_permute2f128_pd(low, high, 0x31));
  }
  /// Element i of four registers side by side at to + i step.
  QEL_LANES void store_columns(double* to, core_int step, const reg* x) {
    const reg a = _mm256_unpacklo_pd(x[0], x[1]), b = _mm256_unpackhi_pd(x[0], x[1]);
    const reg c = _mm256_unpacklo_pd(x[2], x[3]), d = _mm256_unpackhi_pd(x[2], x[3]);
    store(to, _mm256_permute2f128_pd(a, c, 0x20));
    store(to + step, _mm256_permute2f128_pd(b, d, 0x20));
    store(to + 2 * step, _mm256_permute2f128_pd(a, c, 0x31));
    store(to + 3 * step, _mm256_permute2f128_pd(b, d, 0x31));
  }
};

template <>
struct parts<float, 8> {
  using reg = __m256;
  QEL_LANES reg load(const float* p) { return _mm256_loadu_ps(p); }
  QEL_LANES void store(float* p, reg v) { _mm256_storeu_ps(p, v); }
  QEL_LANES reg all(float v) { return _mm256_set1_ps(v); }
  QEL_LANES reg plus(reg a, reg b, reg c) { return _mm256_fmadd_ps(a, b, c); }
  QEL_LANES reg minus(reg a, reg b, reg c) { return _mm256_fnmadd_ps(a, b, c); }
  QEL_LANES void load_pairs(const complex8* p, reg& re, reg& im) {
    const reg a = loaded_once(load(reinterpret_cast<const float*>(p)));
    const reg b = loaded_once(load(reinterpret_cast<const float*>(p + 4)));
    const reg low = _mm256_permute2f128_ps(a, b, 0x20), high = _mm256_permute2f128_ps(a, b, 0x31);
    re = _mm256_shuffle_ps(low, high, _MM_SHUFFLE(2, 0, 2, 0));
    im = _mm256_shuffle_ps(low, high, _MM_SHUFFLE(3, 1, 3, 1));
  }
  QEL_LANES void load_mixed(const complex8* p, reg& re, reg& im) {
    const reg a = loaded_once(load(reinterpret_cast<const float*>(p)));
    const reg b = loaded_once(load(reinterpret_cast<const float*>(p + 4)));
    re = _mm256_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0));
    im = _mm256_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1));
  }
  QEL_LANES void store_mixed(complex8* p, reg re, reg im) {
    store(reinterpret_cast<float*>(p), _mm256_unpacklo_ps(re, im));
    store(reinterpret_cast<float*>(p + 4), _mm256_unpackhi_ps(re, im));
  }
  QEL_LANES void store_pairs(complex8* p, reg re, reg im) {
    const reg low = _mm256_unpacklo_ps(re, im), high = _mm256_unpackhi_ps(re, im);
    store(reinterpret_cast<float*>(p), _mm256_permute2f128_ps(low, high, 0x20));
    store(reinterpret_cast<float*>(p + 4), _mm256_permute2f128_ps(low, high, 0x31));
  }
  QEL_LANES void store_columns(float* to, core_int step, const reg* x) {
    const reg a = _mm256_unpacklo_ps(x[0], x[1]), b = _mm256_unpackhi_ps(x[0], x[1]);
    const reg c = _mm256_unpacklo_ps(x[2], x[3]), d = _mm256_unpackhi_ps(x[2], x[3]);
    const reg y[4] = {
        _mm256_shuffle_ps(a, c, _MM_SHUFFLE(1, 0, 1, 0)), _mm256_shuffle_ps(a, c, _MM_SHUFFLE(3, 2, 3, 2)),
        _mm256_shuffle_ps(b, d, _MM_SHUFFLE(1, 0, 1, 0)), _mm256_shuffle_ps(b, d, _MM_SHUFFLE(3, 2, 3, 2))};
#pragma GCC unroll 4
    for (int i = 0; i < 4; ++i) {
      _mm_storeu_ps(to + i * step, _mm256_castps256_ps128(y[i]));
      _mm_storeu_ps(to + (i + 4) * step, _mm256_extractf128_ps(y[i], 1));
    }
  }
};

#ifdef __AVX512F__
template <>
struct parts<double, 8> {
  using reg = __m512d;
  QEL_LANES reg load(const double* p) { return _mm512_loadu_pd(p); }
  QEL_LANES void store(double* p, reg v) { _mm512_storeu_pd(p, v); }
  QEL_LANES reg all(double v) { return _mm512_set1_pd(v); }
  QEL_LANES reg plus(reg a, reg b, reg c) { return _mm512_fmadd_pd(a, b, c); }
  QEL_LANES reg minus(reg a, reg b, reg c) { return _mm512_fnmadd_pd(a, b, c); }
  QEL_LANES void load_pairs(const complex16* p, reg& re, reg& im) {
    const reg a = loaded_once(load(reinterpret_cast<const double*>(p)));
    const reg b = loaded_once(load(reinterpret_cast<const double*>(p + 4)));
    re = _mm512_permutex2var_pd(a, _mm512_setr_epi64(0, 2, 4, 6, 8, 10, 12, 14), b);
    im = _mm512_permutex2var_pd(a, _mm512_setr_epi64(1, 3, 5, 7, 9, 11, 13, 15), b);
  }
  QEL_LANES void load_mixed(const complex16* p, reg& re, reg& im) {
    const reg a = loaded_once(load(reinterpret_cast<const double*>(p)));
    const reg b = loaded_once(load(reinterpret_cast<const double*>(p + 4)));
    re = _mm512_unpacklo_pd(a, b);
    im = _mm512_unpackhi_pd(a, b);
  }
  QEL_LANES void store_mixed(complex16* p, reg re, reg im) {
    store(reinterpret_cast<double*>(p), _mm512_unpacklo_pd(re, im));
    store(reinterpret_cast<double*>(p + 4), _mm512_unpackhi_pd(re, im));
  }
  QEL_LANES void store_pairs(complex16* p, reg re, reg im) {
    store(reinterpret_cast<double*>(p),
          _mm512_permutex2var_pd(re, _mm512_setr_epi64(0, 8, 1, 9, 2, 10, 3, 11), im));
    store(reinterpret_cast<double*>(p + 4),
          _mm512_permutex2var_pd(re, _mm512_setr_epi64(4, 12, 5, 13, 6, 14, 7, 15), im));
  }
  QEL_LANES void store_columns(double* to, core_int step, const reg* x) {
    const reg a = _mm512_unpacklo_pd(x[0], x[1]), b = _mm512_unpackhi_pd(x[0], x[1]);
    const reg c = _mm512_unpacklo_pd(x[2], x[3]), d = _mm512_unpackhi_pd(x[2], x[3]);
    const __m512i even = _mm512_setr_epi64(0, 1, 8, 9, 4, 5, 12, 13),
                  odd = _mm512_setr_epi64(2, 3, 10, 11, 6, 7, 14, 15);
    const reg y[4] = {_mm512_permutex2var_pd(a, even, c), _mm512_permutex2var_pd(b, even, d),
                      _mm512_permutex2var_pd(a, odd, c), _mm512_permutex2var_pd(b, odd, d)};
#pragma GCC unroll 4
    for (int i = 0; i < 4; ++i) {
      _mm256_storeu_pd(to + i * step, _mm512_castpd512_pd256(y[i]));
      _mm256_storeu_pd(to + (i + 4) * step, _mm512_extractf64x4_pd(y[i], 1));
    }
  }
};

template <>
struct parts<float, 16> {
  using reg = __m512;
  QEL_LANES reg load(const float* p) { return _mm512_loadu_ps(p); }
  QEL_LANES void store(float* p, reg v) { _mm512_storeu_ps(p, v); }
  QEL_LANES reg all(float v) { return _mm512_set1_ps(v); }
  QEL_LANES reg plus(reg a, reg b, reg c) { return _mm512_fmadd_ps(a, b, c); }
  QEL_LANES reg minus(reg a, reg b, reg c) { return _mm512_fnmadd_ps(a, b, c); }
  QEL_LANES void load_pairs(const complex8* p, reg& re, reg& im) {
    const reg a = loaded_once(load(reinterpret_cast<const float*>(p)));
    const reg b = loaded_once(load(reinterpret_cast<const float*>(p + 8)));
    const __m512i even = _mm512_setr_epi32(0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30);
    re = _mm512_permutex2var_ps(a, even, b);
    im = _mm512_permutex2var_ps(a, _mm512_add_epi32(even, _mm512_set1_epi32(1)), b);
  }
  QEL_LANES void load_mixed(const complex8* p, reg& re, reg& im) {
    const reg a = loaded_once(load(reinterpret_cast<const float*>(p)));
    const reg b = loaded_once(load(reinterpret_cast<const float*>(p + 8)));
    re = _mm512_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0));
    im = _mm512_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1));
  }
  QEL_LANES void store_mixed(complex8* p, reg re, reg im) {
    store(reinterpret_cast<float*>(p), _mm512_unpacklo_ps(re, im));
    store(reinterpret_cast<float*>(p + 8), _mm512_unpackhi_ps(re, im));
  }
  QEL_LANES void store_pairs(complex8* p, reg re, reg im) {
    const __m512i low = _mm512_setr_epi32(0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
    store(reinterpret_cast<float*>(p), _mm512_permutex2var_ps(re, low, im));
    store(reinterpret_cast<float*>(p + 8),
          _mm512_permutex2var_ps(re, _mm512_add_epi32(low, _mm512_set1_epi32(8)), im));
  }
  QEL_LANES void store_columns(float* to, core_int step, const reg* x) {
    const reg a = _mm512_unpacklo_ps(x[0], x[1]), b = _mm512_unpackhi_ps(x[0], x[1]);
    const reg c = _mm512_unpacklo_ps(x[2], x[3]), d = _mm512_unpackhi_ps(x[2], x[3]);
    const reg y[4] = {
        _mm512_shuffle_ps(a, c, _MM_SHUFFLE(1, 0, 1, 0)), _mm512_shuffle_ps(a, c, _MM_SHUFFLE(3, 2, 3, 2)),
        _mm512_shuffle_ps(b, d, _MM_SHUFFLE(1, 0, 1, 0)), _mm512_shuffle_ps(b, d, _MM_SHUFFLE(3, 2, 3, 2))};
#pragma GCC unroll 4
    for (int i = 0; i < 4; ++i) {
      _mm_storeu_ps(to + i * step, _mm512_castps512_ps128(y[i]));
      _mm_storeu_ps(to + (i + 4) * step, _mm512_extractf32x4_ps(y[i], 1));
      _mm_storeu_ps(to + (i + 8) * step, _mm512_extractf32x4_ps(y[i], 2));
      _mm_storeu_ps(to + (i + 12) * step, _mm512_extractf32x4_ps(y[i], 3));
    }
  }
  /// The same of eight registers.
  QEL_LANES void store_eight_columns(float* to, core_int step, const reg* x) {
    const __m512i low = _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11);
    const __m512i high = _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15);
    __m512d part[8];  // four columns of a row in each 128 bits
#pragma GCC unroll 2
    for (int i = 0; i < 2; ++i) {
      const reg* const y = x + 4 * i;
      const reg a = _mm512_unpacklo_ps(y[0], y[1]), b = _mm512_unpackhi_ps(y[0], y[1]);
      const reg c = _mm512_unpacklo_ps(y[2], y[3]), d = _mm512_unpackhi_ps(y[2], y[3]);
      part[4 * i] = _mm512_castps_pd(_mm512_shuffle_ps(a, c, _MM_SHUFFLE(1, 0, 1, 0)));
      part[4 * i + 1] = _mm512_castps_pd(_mm512_shuffle_ps(a, c, _MM_SHUFFLE(3, 2, 3, 2)));
      part[4 * i + 2] = _mm512_castps_pd(_mm512_shuffle_ps(b, d, _MM_SHUFFLE(1, 0, 1, 0)));
      part[4 * i + 3] = _mm512_castps_pd(_mm512_shuffle_ps(b, d, _MM_SHUFFLE(3, 2, 3, 2)));
    }
#pragma GCC unroll 4
    for (int i = 0; i < 4; ++i) {
      const __m512d p = _mm512_permutex2var_pd(part[i], low, part[i + 4]);
      const __m512d q = _mm512_permutex2var_pd(part[i], high, part[i + 4]);
      _mm256_storeu_ps(to + i * step, _mm256_castpd_ps(_mm512_castpd512_pd256(p)));
      _mm256_storeu_ps(to + (i + 4) * step, _mm256_castpd_ps(_mm512_extractf64x4_pd(p, 1)));
      _mm256_storeu_ps(to + (i + 8) * step, _mm256_castpd_ps(_mm512_castpd512_pd256(q)));
      _mm256_storeu_ps(to + (i + 12) * step, _mm256_castpd_ps(_mm512_extractf64x4_pd(q, 1)));
    }
  }
};
inline constexpr int kPartBytes = 64;
#else
inline constexpr int kPartBytes = 32;
#endif
#undef QEL_LANES

/// The arithmetic that dft<> asks for.
template <class R, int kLanes>
struct px {
  using real = R;
  using part = parts<R, kLanes>;
  using lane = typename part::reg;
  static constexpr int kCount = kLanes;
  struct reg {
    lane re, im;
  };
#define QEL_LANES [[gnu::always_inline]] static inline
  // Half of the sums go through the multipliers, which transforms leave idle; a 1 + b is a + b, exactly.
  QEL_LANES reg add(reg a, reg b) { return {a.re + b.re, part::plus(a.im, part::all(R{1}), b.im)}; }
  QEL_LANES reg sub(reg a, reg b) { return {a.re - b.re, part::minus(b.im, part::all(R{1}), a.im)}; }
  QEL_LANES reg times(reg a, R f) { return {a.re * part::all(f), a.im * part::all(f)}; }
  QEL_LANES reg swapped(reg a) { return {a.im, a.re}; }
  QEL_LANES reg minus_real(reg a) { return {-a.re, a.im}; }
  QEL_LANES reg minus_imag(reg a) { return {a.re, -a.im}; }
  QEL_LANES reg mul_add(reg a, R f, reg c) {
    return {part::plus(a.re, part::all(f), c.re), part::plus(a.im, part::all(f), c.im)};
  }
  /// a w
  QEL_LANES reg turn(reg a, reg w) {
    return {part::minus(a.im, w.im, a.re * w.re), part::plus(a.re, w.im, a.im * w.re)};
  }
  QEL_LANES reg load(const R* re, const R* im) { return {part::load(re), part::load(im)}; }
  QEL_LANES void store(R* re, R* im, reg a) {
    part::store(re, a.re);
    part::store(im, a.im);
  }
  template <bool kSwap>
  QEL_LANES reg load_pairs(const complex_type<R>* p) {
    reg a;
    part::load_pairs(p, a.re, a.im);
    return kSwap ? swapped(a) : a;
  }
  template <bool kSwap>
  QEL_LANES void store_pairs(complex_type<R>* p, reg a) {
    part::store_pairs(p, kSwap ? a.im : a.re, kSwap ? a.re : a.im);
  }
  // In registers of more than 128 bits pairs are parted cheapest in an order of lanes of its own, which lines
  // side by side may have from their first pass to their last.
  static constexpr bool kMixes = sizeof(lane) > 16;
  template <bool kSwap>
  QEL_LANES reg load_mixed(const complex_type<R>* p) {
    if constexpr (kMixes) {
      reg a;
      part::load_mixed(p, a.re, a.im);
      return kSwap ? swapped(a) : a;
    } else {
      return load_pairs<kSwap>(p);
    }
  }
  template <bool kSwap>
  QEL_LANES void store_mixed(complex_type<R>* p, reg a) {
    if constexpr (kMixes) {
      part::store_mixed(p, kSwap ? a.im : a.re, kSwap ? a.re : a.im);
    } else {
      store_pairs<kSwap>(p, a);
    }
  }
  QEL_LANES reg all(complex_type<R> z) { return {part::all(z.real), part::all(z.imag)}; }
#undef QEL_LANES
};

template <class R>
using widest_parts = px<R, kPartBytes / static_cast<int>(sizeof(R))>;

/// body.template operator()<V>(at) over 0 .. count: by the widest registers, by halves of one, one by one.
template <class R, class Body>
[[gnu::always_inline]] inline void by_registers(core_int count, Body body) {
  using V = widest_parts<R>;
  core_int at = 0;
  for (; at + V::kCount <= count; at += V::kCount) body.template operator()<V>(at);
  if (at == count) return;
  if (at + V::kCount / 2 <= count) {
    body.template operator()<px<R, V::kCount / 2>>(at);
    at += V::kCount / 2;
  }
  // Two floats are no register of their own.
  if constexpr (V::kCount / 4 > 2 || (V::kCount / 4 == 2 && sizeof(R) == 8)) {
    if (at + V::kCount / 4 <= count) {
      body.template operator()<px<R, V::kCount / 4>>(at);
      at += V::kCount / 4;
    }
  }
  for (; at < count; ++at) body.template operator()<px<R, 1>>(at);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
