// SPDX-License-Identifier: BSD-3-Clause
// What the level-1 kernels of single and double precision share: a 16-byte register of lanes with its
// operations, access to one element at any address, and sums over an array of lanes.
// Elements are reached through element_at() and set_element(), because a caller's pointer need not be a
// multiple of the element size and plain dereferences would let the compiler assume so.
#pragma once

namespace qel::QEL_LEVEL {
namespace {

template <class R>
struct lanes;

template <>
struct lanes<double> {
  using reg = __m128d;
  static constexpr int kCount = 2;
  static reg zero() { return _mm_setzero_pd(); }
  static reg all(double v) { return _mm_set1_pd(v); }
  static reg load(const double* p) { return _mm_load_pd(p); }
  static reg loadu(const double* p) { return _mm_loadu_pd(p); }
  static void store(double* p, reg v) { _mm_store_pd(p, v); }
  static void storeu(double* p, reg v) { _mm_storeu_pd(p, v); }
  static reg add(reg a, reg b) { return _mm_add_pd(a, b); }
  static reg mul(reg a, reg b) { return _mm_mul_pd(a, b); }
  /// All bits but the sign's: `and` leaves its constant where it is, `andnot` overwrites it.
  static reg magnitude(reg v) { return _mm_and_pd(v, _mm_castsi128_pd(_mm_set1_epi64x(INT64_MAX))); }
  /// Real and imaginary parts exchanged; an integer shuffle needs no copy of v before it.
  static reg exchanged(reg v) {
    return _mm_castsi128_pd(_mm_shuffle_epi32(_mm_castpd_si128(v), _MM_SHUFFLE(1, 0, 3, 2)));
  }
  /// (-v, v) in every pair of lanes.
  static reg opposite(double v) { return _mm_set_pd(v, -v); }
  /// |re| + |im| of the two complex numbers in a and b.
  static reg pair_sums(reg a, reg b) { return _mm_add_pd(_mm_unpacklo_pd(a, b), _mm_unpackhi_pd(a, b)); }
  /// The register that starts kShift lanes into `held` and goes on with `next`.
  template <int kShift>
  static reg joined(reg held, reg next) {
    static_assert(kShift == 1);
#ifdef __SSSE3__
    return _mm_castsi128_pd(_mm_alignr_epi8(_mm_castpd_si128(next), _mm_castpd_si128(held), 8));
#else
    return _mm_shuffle_pd(held, next, 1);
#endif
  }
};

template <>
struct lanes<float> {
  using reg = __m128;
  static constexpr int kCount = 4;
  static reg zero() { return _mm_setzero_ps(); }
  static reg all(float v) { return _mm_set1_ps(v); }
  static reg load(const float* p) { return _mm_load_ps(p); }
  static reg loadu(const float* p) { return _mm_loadu_ps(p); }
  static void store(float* p, reg v) { _mm_store_ps(p, v); }
  static void storeu(float* p, reg v) { _mm_storeu_ps(p, v); }
  static reg add(reg a, reg b) { return _mm_add_ps(a, b); }
  static reg mul(reg a, reg b) { return _mm_mul_ps(a, b); }
  static reg magnitude(reg v) { return _mm_and_ps(v, _mm_castsi128_ps(_mm_set1_epi32(INT32_MAX))); }
  static reg exchanged(reg v) {
    return _mm_castsi128_ps(_mm_shuffle_epi32(_mm_castps_si128(v), _MM_SHUFFLE(2, 3, 0, 1)));
  }
  static reg opposite(float v) { return _mm_set_ps(v, -v, v, -v); }
  static reg pair_sums(reg a, reg b) {
    return _mm_add_ps(_mm_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0)),
                      _mm_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1)));
  }
  template <int kShift>
  static reg joined(reg held, reg next) {
    static_assert(kShift >= 1 && kShift <= 3);
#ifdef __SSSE3__
    return _mm_castsi128_ps(_mm_alignr_epi8(_mm_castps_si128(next), _mm_castps_si128(held), 4 * kShift));
#else
    if constexpr (kShift == 1) {
      const reg mixed = _mm_move_ss(held, next);
      return _mm_shuffle_ps(mixed, mixed, _MM_SHUFFLE(0, 3, 2, 1));
    } else if constexpr (kShift == 2) {
      return _mm_shuffle_ps(held, next, _MM_SHUFFLE(1, 0, 3, 2));
    } else {
      const reg seam = _mm_shuffle_ps(held, next, _MM_SHUFFLE(0, 0, 3, 3));
      return _mm_shuffle_ps(seam, next, _MM_SHUFFLE(2, 1, 2, 0));
    }
#endif
  }
};

/// The real type of an element type, and how many of them an element holds.
template <class T>
struct parts {
  using real = T;
  static constexpr int kCount = 1;
};
template <>
struct parts<complex8> {
  using real = float;
  static constexpr int kCount = 2;
};
template <>
struct parts<complex16> {
  using real = double;
  static constexpr int kCount = 2;
};

template <class T>
struct [[gnu::packed, gnu::may_alias]] anywhere {
  T value;
};
template <class T>
inline T element_at(const T* p) {
  return reinterpret_cast<const anywhere<T>*>(p)->value;
}
template <class T>
inline void set_element(T* p, T value) {
  reinterpret_cast<anywhere<T>*>(p)->value = value;
}

/// v in a register: where a loaded value is used twice g++ would rather load it twice, which costs more than
/// any arithmetic.
template <class V>
inline V in_register(V v) {
  __asm__("" : "+x"(v));
  return v;
}

inline uintptr_t misalignment(const void* p) { return reinterpret_cast<uintptr_t>(p) & 15; }

inline float magnitude(float v) { return __builtin_fabsf(v); }
inline double magnitude(double v) { return __builtin_fabs(v); }

/// A negative stride walks down to the pointer, which names the lowest address.
template <class T>
inline T* first_element(T* x, core_int n, core_int inc) {
  return inc < 0 ? x + (1 - n) * inc : x;
}

/// ((0 + 1) + (2 + 3)) + ...: neighbours first.
template <int kCount, class R>
inline R tree_sum(const R* lane) {
  if constexpr (kCount == 1) {
    return lane[0];
  } else {
    return tree_sum<kCount / 2>(lane) + tree_sum<kCount / 2>(lane + kCount / 2);
  }
}

/// A register's worth of elements, one complex element at a time or one real.
inline __m128d gathered(const double* x, core_int inc) {
  return _mm_set_pd(element_at(x + inc), element_at(x));
}
inline __m128 gathered(const float* x, core_int inc) {
  return _mm_set_ps(element_at(x + 3 * inc), element_at(x + 2 * inc), element_at(x + inc), element_at(x));
}
inline __m128d gathered(const complex16* x, core_int) {
  return _mm_loadu_pd(reinterpret_cast<const double*>(x));
}
inline __m128 gathered(const complex8* x, core_int inc) {
  return _mm_castpd_ps(gathered(reinterpret_cast<const double*>(x), inc));  // 8 bytes hold one complex number
}
/// One complex number in the low lanes, zeros above.
inline __m128 low_element(const complex8* x) {
  return _mm_castpd_ps(_mm_set_sd(element_at(reinterpret_cast<const double*>(x))));
}
inline void put_low_element(complex8* x, __m128 v) {
  set_element(reinterpret_cast<double*>(x), _mm_cvtsd_f64(_mm_castps_pd(v)));
}

}  // namespace
}  // namespace qel::QEL_LEVEL
