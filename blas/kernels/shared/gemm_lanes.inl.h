// SPDX-License-Identifier: BSD-3-Clause
// Registers of the matrix product: what lanes.inl.h has, and the permutations that the tiles need. `lane_set`
// is the level's widest register.
#pragma once

#include "blas/kernels/shared/lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

#ifdef QEL_LEVEL_l4_avx
template <class R>
struct lane_set;
template <>
struct lane_set<double> {
  using reg = __m256d;
  static constexpr int kCount = 4;
  static reg zero() { return _mm256_setzero_pd(); }
  static reg all(double v) { return _mm256_set1_pd(v); }
  static reg load(const double* p) { return _mm256_load_pd(p); }
  static reg loadu(const double* p) { return _mm256_loadu_pd(p); }
  static void store(double* p, reg v) { _mm256_store_pd(p, v); }
  static void storeu(double* p, reg v) { _mm256_storeu_pd(p, v); }
  static reg add(reg a, reg b) { return _mm256_add_pd(a, b); }
  static reg mul(reg a, reg b) { return _mm256_mul_pd(a, b); }
  static reg exchanged(reg v) { return _mm256_shuffle_pd(v, v, 5); }
  /// (a - b, a + b) in every pair of lanes.
  static reg crosswise_sum(reg a, reg b) { return _mm256_addsub_pd(a, b); }
};
template <>
struct lane_set<float> {
  using reg = __m256;
  static constexpr int kCount = 8;
  static reg zero() { return _mm256_setzero_ps(); }
  static reg all(float v) { return _mm256_set1_ps(v); }
  static reg load(const float* p) { return _mm256_load_ps(p); }
  static reg loadu(const float* p) { return _mm256_loadu_ps(p); }
  static void store(float* p, reg v) { _mm256_store_ps(p, v); }
  static void storeu(float* p, reg v) { _mm256_storeu_ps(p, v); }
  static reg add(reg a, reg b) { return _mm256_add_ps(a, b); }
  static reg mul(reg a, reg b) { return _mm256_mul_ps(a, b); }
  static reg exchanged(reg v) { return _mm256_shuffle_ps(v, v, _MM_SHUFFLE(2, 3, 0, 1)); }
  static reg crosswise_sum(reg a, reg b) { return _mm256_addsub_ps(a, b); }
};
#else
template <class R>
struct lane_set;
template <>
struct lane_set<double> : lanes<double> {
  /// Neighbouring lanes exchanged. The integer shuffle leaves its source alone, which saves a copy.
  static reg swapped(reg v) {
    return _mm_castsi128_pd(_mm_shuffle_epi32(_mm_castpd_si128(v), _MM_SHUFFLE(1, 0, 3, 2)));
  }
  /// As many copies of a pair of numbers as there is room for; here the pair is aligned.
  static reg pair(const double* p) { return load(p); }
  /// (a - b, a + b) in every pair of lanes.
  static reg crosswise_sum(reg a, reg b) { return _mm_add_pd(a, _mm_xor_pd(b, _mm_set_pd(0.0, -0.0))); }
  /// Every second lane, the imaginary parts, with the other sign.
  static reg conjugated(reg v) { return _mm_xor_pd(v, _mm_set_pd(-0.0, 0.0)); }
};
template <>
struct lane_set<float> : lanes<float> {
  static reg swapped(reg v) {
    return _mm_castsi128_ps(_mm_shuffle_epi32(_mm_castps_si128(v), _MM_SHUFFLE(2, 3, 0, 1)));
  }
  static reg pair(const float* p) {
    return _mm_castpd_ps(_mm_set1_pd(element_at(reinterpret_cast<const double*>(p))));
  }
  static reg crosswise_sum(reg a, reg b) {
    return _mm_add_ps(a, _mm_xor_ps(b, _mm_set_ps(0.0F, -0.0F, 0.0F, -0.0F)));
  }
  static reg conjugated(reg v) { return _mm_xor_ps(v, _mm_set_ps(-0.0F, 0.0F, -0.0F, 0.0F)); }
};
#endif

template <bool kFirst, class A, class B>
struct one_of_two {
  using type = A;
};
template <class A, class B>
struct one_of_two<false, A, B> {
  using type = B;
};

/// The numbers of an array of elements.
template <class T>
inline const typename parts<T>::real* reals(const T* p) {
  return reinterpret_cast<const typename parts<T>::real*>(p);
}
template <class T>
inline typename parts<T>::real* reals(T* p) {
  return reinterpret_cast<typename parts<T>::real*>(p);
}

inline float times(float a, float b) { return a * b; }
inline double times(double a, double b) { return a * b; }
template <class C>
inline C times(C a, C b) {
  return {a.real * b.real - a.imag * b.imag, a.real * b.imag + a.imag * b.real};
}
inline float plus(float a, float b) { return a + b; }
inline double plus(double a, double b) { return a + b; }
template <class C>
inline C plus(C a, C b) {
  return {a.real + b.real, a.imag + b.imag};
}
inline float opposite(float a) { return -a; }
inline double opposite(double a) { return -a; }
template <class C>
inline C opposite(C a) {
  return {-a.real, -a.imag};
}
inline float conjugate(float a) { return a; }
inline double conjugate(double a) { return a; }
template <class C>
inline C conjugate(C a) {
  return {a.real, -a.imag};
}

}  // namespace
}  // namespace qel::QEL_LEVEL
