// SPDX-License-Identifier: BSD-3-Clause
// What the native level-1 kernels share: 32-byte registers of real numbers, of which a complex number takes
// two, and the streams that fill them, contiguous or strided.
// No path looks at alignment: loads are unaligned, and what fills no register is loaded and stored piece by
// piece. So results don't depend on where the vectors lie. (Masked loads are no faster here; where they would
// read past a page, processors take hundreds of cycles and emulators fault.)
#pragma once

#include "blas/kernels/shared/streams.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R>
struct wide;

template <>
struct wide<double> {
  using reg = __m256d;
  static constexpr int kCount = 4;
  static reg zero() { return _mm256_setzero_pd(); }
  static reg all(double v) { return _mm256_set1_pd(v); }
  static reg load(const double* p) { return _mm256_loadu_pd(p); }
  static void store(double* p, reg v) { _mm256_storeu_pd(p, v); }
  /// The first `count` of 1 .. kCount - 1 numbers, zeros above.
  static reg load_part(const double* p, core_int count) {
    if (count == 1) return _mm256_zextpd128_pd256(_mm_load_sd(p));
    const reg low = _mm256_zextpd128_pd256(_mm_loadu_pd(p));
    return count == 2 ? low : _mm256_insertf128_pd(low, _mm_load_sd(p + 2), 1);
  }
  static void store_part(double* p, reg v, core_int count) {
    __m128d rest = _mm256_castpd256_pd128(v);
    if ((count & 2) != 0) {
      _mm_storeu_pd(p, rest);
      p += 2;
      rest = _mm256_extractf128_pd(v, 1);
    }
    if ((count & 1) != 0) _mm_store_sd(p, rest);
  }
  static reg add(reg a, reg b) { return _mm256_add_pd(a, b); }
  static reg mul(reg a, reg b) { return _mm256_mul_pd(a, b); }
  /// a b + c, rounded once.
  static reg fused(reg a, reg b, reg c) { return _mm256_fmadd_pd(a, b, c); }
  static reg magnitude(reg v) { return _mm256_andnot_pd(_mm256_set1_pd(-0.0), v); }
  /// Real and imaginary parts exchanged.
  static reg exchanged(reg v) { return _mm256_permute_pd(v, 5); }
  /// (-v, v) in every pair of lanes.
  static reg opposite(double v) { return _mm256_set_pd(v, -v, v, -v); }
  static double sum(reg v) {
    const __m128d half = _mm_add_pd(_mm256_castpd256_pd128(v), _mm256_extractf128_pd(v, 1));
    return _mm_cvtsd_f64(_mm_add_sd(half, _mm_unpackhi_pd(half, half)));
  }
  /// The sums of the real and of the imaginary lanes.
  static void sums_by_part(reg v, double* part) {
    _mm_storeu_pd(part, _mm_add_pd(_mm256_castpd256_pd128(v), _mm256_extractf128_pd(v, 1)));
  }
};

template <>
struct wide<float> {
  using reg = __m256;
  static constexpr int kCount = 8;
  static reg zero() { return _mm256_setzero_ps(); }
  static reg all(float v) { return _mm256_set1_ps(v); }
  static reg load(const float* p) { return _mm256_loadu_ps(p); }
  static void store(float* p, reg v) { _mm256_storeu_ps(p, v); }
  static __m128 load_part_of_half(const float* p, core_int count) {
    if (count == 1) return _mm_load_ss(p);
    const __m128 low = _mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(p));
    return count == 2 ? low : _mm_movelh_ps(low, _mm_load_ss(p + 2));
  }
  static reg load_part(const float* p, core_int count) {
    if (count < 4) return _mm256_zextps128_ps256(load_part_of_half(p, count));
    const reg low = _mm256_zextps128_ps256(_mm_loadu_ps(p));
    return count == 4 ? low : _mm256_insertf128_ps(low, load_part_of_half(p + 4, count - 4), 1);
  }
  static void store_part(float* p, reg v, core_int count) {
    __m128 rest = _mm256_castps256_ps128(v);
    if ((count & 4) != 0) {
      _mm_storeu_ps(p, rest);
      p += 4;
      rest = _mm256_extractf128_ps(v, 1);
    }
    if ((count & 2) != 0) {
      _mm_storel_pi(reinterpret_cast<__m64*>(p), rest);
      p += 2;
      rest = _mm_movehl_ps(rest, rest);
    }
    if ((count & 1) != 0) _mm_store_ss(p, rest);
  }
  static reg add(reg a, reg b) { return _mm256_add_ps(a, b); }
  static reg mul(reg a, reg b) { return _mm256_mul_ps(a, b); }
  static reg fused(reg a, reg b, reg c) { return _mm256_fmadd_ps(a, b, c); }
  static reg magnitude(reg v) { return _mm256_andnot_ps(_mm256_set1_ps(-0.0F), v); }
  static reg exchanged(reg v) { return _mm256_permute_ps(v, _MM_SHUFFLE(2, 3, 0, 1)); }
  static reg opposite(float v) { return _mm256_set_ps(v, -v, v, -v, v, -v, v, -v); }
  static float sum(reg v) {
    const __m128 half = _mm_add_ps(_mm256_castps256_ps128(v), _mm256_extractf128_ps(v, 1));
    const __m128 pair = _mm_add_ps(half, _mm_movehl_ps(half, half));
    return _mm_cvtss_f32(_mm_add_ss(pair, _mm_movehdup_ps(pair)));
  }
  static void sums_by_part(reg v, float* part) {
    const __m128 half = _mm_add_ps(_mm256_castps256_ps128(v), _mm256_extractf128_ps(v, 1));
    _mm_storel_pi(reinterpret_cast<__m64*>(part), _mm_add_ps(half, _mm_movehl_ps(half, half)));
  }
};

// b and c are taken from registers: emulators read 16 bytes for an operand in memory, past the end of a page.
inline float fused(float a, float b, float c) { return __builtin_fmaf(a, in_register(b), in_register(c)); }
inline double fused(double a, double b, double c) { return __builtin_fma(a, in_register(b), in_register(c)); }

/// Elements that fill a register.
template <class T>
inline constexpr core_int kElementsOf = wide<typename parts<T>::real>::kCount / parts<T>::kCount;

// A register's worth of strided elements.
inline __m256d wide_gathered(const double* x, core_int inc) {
  return _mm256_set_m128d(gathered(x + 2 * inc, inc), gathered(x, inc));
}
inline __m256 wide_gathered(const float* x, core_int inc) {
  return _mm256_set_m128(gathered(x + 4 * inc, inc), gathered(x, inc));
}
inline __m256d wide_gathered(const complex16* x, core_int inc) {
  return _mm256_set_m128d(gathered(x + inc, inc), gathered(x, inc));
}
inline __m256 wide_gathered(const complex8* x, core_int inc) {
  return _mm256_set_m128(gathered(x + 2 * inc, inc), gathered(x, inc));
}

/// get(k) is the k-th register from the stream's position, get_part(count) the next `count` elements, fewer
/// than a register has, with zeros above.
template <class T>
struct contiguous {
  using R = typename parts<T>::real;
  using W = wide<R>;
  const R* at;
  explicit contiguous(const T* x) : at(reinterpret_cast<const R*>(x)) {}
  typename W::reg get(int k) const { return W::load(at + k * W::kCount); }
  typename W::reg get_part(core_int count) const { return W::load_part(at, count * parts<T>::kCount); }
  void advance(core_int registers) { at += registers * W::kCount; }
};
template <class T>
struct strided {
  using R = typename parts<T>::real;
  using W = wide<R>;
  const T* at;
  core_int inc;
  typename W::reg get(int k) const { return wide_gathered(at + k * kElementsOf<T> * inc, inc); }
  typename W::reg get_part(core_int count) const {
    T element[kElementsOf<T>] = {};
    for (core_int i = 0; i < count; ++i) element[i] = element_at(at + i * inc);
    return W::load(reinterpret_cast<const R*>(element));
  }
  void advance(core_int registers) { at += registers * kElementsOf<T> * inc; }
};

/// Accumulators. Zeros are spelled out: from a loop over them g++ makes a call to clear memory.
template <class W>
struct eight_sums {
  typename W::reg sum[8] = {W::zero(), W::zero(), W::zero(), W::zero(),
                            W::zero(), W::zero(), W::zero(), W::zero()};
  typename W::reg total() const {
    return W::add(W::add(W::add(sum[0], sum[1]), W::add(sum[2], sum[3])),
                  W::add(W::add(sum[4], sum[5]), W::add(sum[6], sum[7])));
  }
};
template <class W>
struct four_wide_sums {
  typename W::reg sum[4] = {W::zero(), W::zero(), W::zero(), W::zero()};
  typename W::reg total() const { return W::add(W::add(sum[0], sum[1]), W::add(sum[2], sum[3])); }
};

/// Runs op over n elements of T: op.registers<k>() for the tiers, then op.part(count) for what fills none.
template <class T, int... kTiers, class Op>
[[gnu::always_inline]] inline void run_registers(Op& op, core_int n) {
  const core_int left = run_tiers<kTiers...>(op, n, kElementsOf<T>, 0);
  if (left > 0) op.part(left);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
