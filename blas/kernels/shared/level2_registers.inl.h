// SPDX-License-Identifier: BSD-3-Clause
// Registers of the level-2 kernels: 16 bytes on levels 0 to 4, where a product is rounded before it is added,
// 32 bytes with fused multiply-add from AVX2 on. Loads and stores take any address. A register that is only
// partly inside an operand is loaded with zeros in the other lanes; nothing outside is touched.
#pragma once

#include "blas/kernels/level2_kernels.h"
#include "blas/kernels/shared/lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class T>
constexpr bool kIsComplex = parts<T>::kCount == 2;

template <class R>
struct wide;

#ifdef __AVX2__

/// The first `count` entries from kMask + 8 - count select lanes.
alignas(32) constexpr int32_t kMask[16] = {-1, -1, -1, -1, -1, -1, -1, -1, 0, 0, 0, 0, 0, 0, 0, 0};

template <>
struct wide<double> {
  using reg = __m256d;
  static constexpr int kCount = 4;
  static reg zero() { return _mm256_setzero_pd(); }
  static reg all(double v) { return _mm256_set1_pd(v); }
  static reg loadu(const double* p) { return _mm256_loadu_pd(p); }
  static void storeu(double* p, reg v) { _mm256_storeu_pd(p, v); }
  static reg add(reg a, reg b) { return _mm256_add_pd(a, b); }
  static reg mul(reg a, reg b) { return _mm256_mul_pd(a, b); }
  static reg mul_add(reg a, reg b, reg c) { return _mm256_fmadd_pd(a, b, c); }
  static reg of(const double* v) { return _mm256_set_pd(v[3], v[2], v[1], v[0]); }
  static reg exchanged(reg v) { return _mm256_permute_pd(v, 5); }
  static reg opposite(double v) { return _mm256_set_pd(v, -v, v, -v); }
  static reg load_part(const double* p, core_int count) {
    const auto mask = reinterpret_cast<const __m256i*>(kMask + 8 - 2 * count);
    return _mm256_maskload_pd(p, _mm256_loadu_si256(mask));
  }
  static void store_part(double* p, core_int count, reg v) {
    __m128d rest = _mm256_castpd256_pd128(v);
    if (count & 2) {
      _mm_storeu_pd(p, rest);
      p += 2;
      rest = _mm256_extractf128_pd(v, 1);
    }
    if (count & 1) _mm_store_sd(p, rest);
  }
  static void four_sums(const reg (&v)[4], double* sum) {
    const reg left = _mm256_hadd_pd(v[0], v[1]), right = _mm256_hadd_pd(v[2], v[3]);
    storeu(sum, add(_mm256_permute2f128_pd(left, right, 0x20), _mm256_permute2f128_pd(left, right, 0x31)));
  }
};

template <>
struct wide<float> {
  using reg = __m256;
  static constexpr int kCount = 8;
  static reg zero() { return _mm256_setzero_ps(); }
  static reg all(float v) { return _mm256_set1_ps(v); }
  static reg loadu(const float* p) { return _mm256_loadu_ps(p); }
  static void storeu(float* p, reg v) { _mm256_storeu_ps(p, v); }
  static reg add(reg a, reg b) { return _mm256_add_ps(a, b); }
  static reg mul(reg a, reg b) { return _mm256_mul_ps(a, b); }
  static reg mul_add(reg a, reg b, reg c) { return _mm256_fmadd_ps(a, b, c); }
  static reg of(const float* v) { return _mm256_set_ps(v[7], v[6], v[5], v[4], v[3], v[2], v[1], v[0]); }
  static reg exchanged(reg v) { return _mm256_permute_ps(v, _MM_SHUFFLE(2, 3, 0, 1)); }
  static reg opposite(float v) { return _mm256_set_ps(v, -v, v, -v, v, -v, v, -v); }
  static reg load_part(const float* p, core_int count) {
    const auto mask = reinterpret_cast<const __m256i*>(kMask + 8 - count);
    return _mm256_maskload_ps(p, _mm256_loadu_si256(mask));
  }
  static void store_part(float* p, core_int count, reg v) {
    __m128 rest = _mm256_castps256_ps128(v);
    if (count & 4) {
      _mm_storeu_ps(p, rest);
      p += 4;
      rest = _mm256_extractf128_ps(v, 1);
    }
    if (count & 2) {
      _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_castps_si128(rest));
      p += 2;
      rest = _mm_movehl_ps(rest, rest);
    }
    if (count & 1) _mm_store_ss(p, rest);
  }
  static void four_sums(const reg (&v)[4], float* sum) {
    const reg sums = _mm256_hadd_ps(_mm256_hadd_ps(v[0], v[1]), _mm256_hadd_ps(v[2], v[3]));
    _mm_storeu_ps(sum, _mm_add_ps(_mm256_castps256_ps128(sums), _mm256_extractf128_ps(sums, 1)));
  }
};

#else

template <>
struct wide<double> : lanes<double> {
  static reg of(const double* v) { return _mm_set_pd(v[1], v[0]); }
  static reg mul_add(reg a, reg b, reg c) { return add(mul(a, b), c); }
  static reg load_part(const double* p, core_int) { return _mm_load_sd(p); }
  static void store_part(double* p, core_int, reg v) { _mm_store_sd(p, v); }
  static void four_sums(const reg (&v)[4], double* sum) {
    storeu(sum, pair_sums(v[0], v[1]));
    storeu(sum + 2, pair_sums(v[2], v[3]));
  }
};

template <>
struct wide<float> : lanes<float> {
  static reg of(const float* v) { return _mm_set_ps(v[3], v[2], v[1], v[0]); }
  static reg mul_add(reg a, reg b, reg c) { return add(mul(a, b), c); }
  static reg load_part(const float* p, core_int count) {
    if (count == 1) return _mm_load_ss(p);
    const reg pair = _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
    return count == 2 ? pair : _mm_movelh_ps(pair, _mm_load_ss(p + 2));
  }
  static void store_part(float* p, core_int count, reg v) {
    if (count == 1) return _mm_store_ss(p, v);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_castps_si128(v));
    if (count == 3) _mm_store_ss(p + 2, _mm_movehl_ps(v, v));
  }
  static void four_sums(const reg (&v)[4], float* sum) {
    storeu(sum, pair_sums(pair_sums(v[0], v[1]), pair_sums(v[2], v[3])));
  }
};

#endif

/// The sign turned in every second lane: the real or the imaginary parts.
template <class R>
inline typename wide<R>::reg with_real_negated(typename wide<R>::reg v) {
  return wide<R>::mul(v, wide<R>::opposite(1));
}
template <class R>
inline typename wide<R>::reg with_imag_negated(typename wide<R>::reg v) {
  return wide<R>::mul(v, wide<R>::opposite(-1));
}

// One element at a time: what lies inside a panel's own triangle, and factors.

inline float mul_add(float a, float b, float c) {
#ifdef __FMA__
  return _mm_cvtss_f32(_mm_fmadd_ss(_mm_set_ss(a), _mm_set_ss(b), _mm_set_ss(c)));
#else
  return a * b + c;
#endif
}
inline double mul_add(double a, double b, double c) {
#ifdef __FMA__
  return _mm_cvtsd_f64(_mm_fmadd_sd(_mm_set_sd(a), _mm_set_sd(b), _mm_set_sd(c)));
#else
  return a * b + c;
#endif
}
template <class C>
inline C mul_add(C a, C b, C c) {
  return {mul_add(-a.imag, b.imag, mul_add(a.real, b.real, c.real)),
          mul_add(a.imag, b.real, mul_add(a.real, b.imag, c.imag))};
}

template <class T>
inline T product_of(T a, T b) {
  if constexpr (kIsComplex<T>) {
    return {a.real * b.real - a.imag * b.imag, a.real * b.imag + a.imag * b.real};
  } else {
    return a * b;
  }
}
template <class T>
inline T sum_of(T a, T b) {
  if constexpr (kIsComplex<T>) {
    return {a.real + b.real, a.imag + b.imag};
  } else {
    return a + b;
  }
}
template <class T>
inline T negative(T a) {
  if constexpr (kIsComplex<T>) {
    return {-a.real, -a.imag};
  } else {
    return -a;
  }
}
template <bool kConjugate, class T>
inline T conjugate_if(T a) {
  if constexpr (kConjugate && kIsComplex<T>) {
    return {a.real, -a.imag};
  } else {
    return a;
  }
}
template <class T>
inline T real_element(typename parts<T>::real r) {
  if constexpr (kIsComplex<T>) {
    return {r, 0};
  } else {
    return r;
  }
}
template <class T>
inline typename parts<T>::real real_part(T a) {
  if constexpr (kIsComplex<T>) {
    return a.real;
  } else {
    return a;
  }
}
template <class T>
inline bool equals_real(T a, typename parts<T>::real r) {
  if constexpr (kIsComplex<T>) {
    return a.real == r && a.imag == 0;
  } else {
    return a == r;
  }
}
/// a / b; complex ones by Smith's method (Comm. ACM 5 (1962) 435), which doesn't overflow early.
template <class T>
inline T quotient_of(T a, T b) {
  if constexpr (!kIsComplex<T>) {
    return a / b;
  } else if (magnitude(b.real) < magnitude(b.imag)) {
    // a / b = -i a / (-i b)
    return quotient_of<T>({a.imag, -a.real}, {b.imag, -b.real});
  } else {
    const auto ratio = b.imag / b.real, denominator = b.real + b.imag * ratio;
    return {(a.real + a.imag * ratio) / denominator, (a.imag - a.real * ratio) / denominator};
  }
}

}  // namespace
}  // namespace qel::QEL_LEVEL
