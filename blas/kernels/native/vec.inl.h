// SPDX-License-Identifier: BSD-3-Clause
// The vector registers of the native levels: 32 bytes (AVX2) or 64 (AVX-512), lanes of one real type. Parts
// of a vector are read and written lane by lane exactly: nothing beside them is touched.
#pragma once

namespace qel::QEL_LEVEL {
namespace {

template <class R>
struct vec;

/// The real type of an element type, and how many of them an element holds.
template <class T>
struct reals {
  using type = T;
  static constexpr int kCount = 1;
};
template <>
struct reals<complex8> {
  using type = float;
  static constexpr int kCount = 2;
};
template <>
struct reals<complex16> {
  using type = double;
  static constexpr int kCount = 2;
};

#ifdef __AVX512F__

template <>
struct vec<double> {
  using reg = __m512d;
  static constexpr int kLanes = 8;
  static reg zero() { return _mm512_setzero_pd(); }
  static reg all(double v) { return _mm512_set1_pd(v); }
  static reg load(const double* p) { return _mm512_loadu_pd(p); }
  static void store(double* p, reg v) { _mm512_storeu_pd(p, v); }
  static __mmask8 first(int count) { return static_cast<__mmask8>((1 << count) - 1); }
  static reg load_part(const double* p, int count) { return _mm512_maskz_loadu_pd(first(count), p); }
  static void store_part(double* p, int count, reg v) { _mm512_mask_storeu_pd(p, first(count), v); }
  /// Lanes begin .. end - 1, the others zero.
  static reg load_between(const double* p, int begin, int end) {
    return _mm512_maskz_loadu_pd(static_cast<__mmask8>(first(end) & ~first(begin)), p);
  }
  static void store_between(double* p, int begin, int end, reg v) {
    _mm512_mask_storeu_pd(p, static_cast<__mmask8>(first(end) & ~first(begin)), v);
  }
  static reg add(reg a, reg b) { return _mm512_add_pd(a, b); }
  static reg minus(reg a, reg b) { return _mm512_sub_pd(a, b); }
  static reg mul(reg a, reg b) { return _mm512_mul_pd(a, b); }
  static reg magnitude(reg v) { return _mm512_abs_pd(v); }
  static reg larger(reg a, reg b) { return _mm512_maskz_max_pd(0xFF, a, b); }
  /// No NaN among them either.
  static bool all_between(reg v, double low, double high) {
    return _mm512_mask_cmp_pd_mask(_mm512_cmp_pd_mask(v, all(low), _CMP_GE_OQ), v, all(high), _CMP_LE_OQ) ==
           0xFF;
  }
  static bool is_zero(reg v) { return _mm512_cmp_pd_mask(v, zero(), _CMP_NEQ_UQ) == 0; }
  static reg div(reg a, reg b) { return _mm512_div_pd(a, b); }
  static reg sqrt(reg v) { return _mm512_maskz_sqrt_pd(0xFF, v); }
  static double first_lane(reg v) { return v[0]; }
  static double total(reg v) {
    const __m256d four =
        _mm256_add_pd(_mm512_maskz_extractf64x4_pd(0xF, v, 0), _mm512_maskz_extractf64x4_pd(0xF, v, 1));
    const __m128d two = _mm_add_pd(_mm256_castpd256_pd128(four), _mm256_extractf128_pd(four, 1));
    return two[0] + two[1];
  }
  /// One lane in all.
  template <int kLane>
  static reg lane(reg v) {
    return _mm512_maskz_permutexvar_pd(0xFF, _mm512_set1_epi64(kLane), v);
  }
  static reg fma(reg a, reg b, reg c) { return _mm512_fmadd_pd(a, b, c); }
  static reg minus_fma(reg a, reg b, reg c) { return _mm512_fnmadd_pd(a, b, c); }
  /// Real and imaginary parts exchanged. (The form without a mask trips g++ 12's test for uninitialised
  /// values.)
  static reg swapped(reg v) { return _mm512_maskz_permute_pd(0xFF, v, 0x55); }
  /// (first, first, third, third ...), (second, second, fourth, fourth ...)
  static reg evens(reg v) { return _mm512_maskz_permute_pd(0xFF, v, 0x00); }
  static reg odds(reg v) { return _mm512_maskz_permute_pd(0xFF, v, 0xFF); }
  /// Lanes kBegin .. kEnd - 1, the others zero.
  template <int kBegin, int kEnd>
  static reg only(reg v) {
    return _mm512_maskz_mov_pd(static_cast<__mmask8>(first(kEnd) & ~first(kBegin)), v);
  }
  /// The sums of kLanes vectors' lanes, one after the other.
  static reg sums(const reg (&v)[kLanes]) {
    const auto neighbours = [](reg a, reg b) {
      return add(_mm512_maskz_unpacklo_pd(0xFF, a, b), _mm512_maskz_unpackhi_pd(0xFF, a, b));
    };
    const auto quarters = [](reg a, reg b) {
      return add(_mm512_maskz_shuffle_f64x2(0xFF, a, b, 0x88), _mm512_maskz_shuffle_f64x2(0xFF, a, b, 0xDD));
    };
    return quarters(quarters(neighbours(v[0], v[1]), neighbours(v[2], v[3])),
                    quarters(neighbours(v[4], v[5]), neighbours(v[6], v[7])));
  }
  /// (even, odd, even, odd ...)
  static reg pairs(double even, double odd) {
    return _mm512_set_pd(odd, even, odd, even, odd, even, odd, even);
  }
};

template <>
struct vec<float> {
  using reg = __m512;
  static constexpr int kLanes = 16;
  static reg zero() { return _mm512_setzero_ps(); }
  static reg all(float v) { return _mm512_set1_ps(v); }
  static reg load(const float* p) { return _mm512_loadu_ps(p); }
  static void store(float* p, reg v) { _mm512_storeu_ps(p, v); }
  static __mmask16 first(int count) { return static_cast<__mmask16>((1 << count) - 1); }
  static reg load_part(const float* p, int count) { return _mm512_maskz_loadu_ps(first(count), p); }
  static void store_part(float* p, int count, reg v) { _mm512_mask_storeu_ps(p, first(count), v); }
  /// Lanes begin .. end - 1, the others zero.
  static reg load_between(const float* p, int begin, int end) {
    return _mm512_maskz_loadu_ps(static_cast<__mmask16>(first(end) & ~first(begin)), p);
  }
  static void store_between(float* p, int begin, int end, reg v) {
    _mm512_mask_storeu_ps(p, static_cast<__mmask16>(first(end) & ~first(begin)), v);
  }
  static reg add(reg a, reg b) { return _mm512_add_ps(a, b); }
  static reg minus(reg a, reg b) { return _mm512_sub_ps(a, b); }
  static reg mul(reg a, reg b) { return _mm512_mul_ps(a, b); }
  static reg magnitude(reg v) { return _mm512_abs_ps(v); }
  static reg larger(reg a, reg b) { return _mm512_maskz_max_ps(0xFFFF, a, b); }
  /// No NaN among them either.
  static bool all_between(reg v, float low, float high) {
    return _mm512_mask_cmp_ps_mask(_mm512_cmp_ps_mask(v, all(low), _CMP_GE_OQ), v, all(high), _CMP_LE_OQ) ==
           0xFFFF;
  }
  static bool is_zero(reg v) { return _mm512_cmp_ps_mask(v, zero(), _CMP_NEQ_UQ) == 0; }
  static reg div(reg a, reg b) { return _mm512_div_ps(a, b); }
  static reg sqrt(reg v) { return _mm512_maskz_sqrt_ps(0xFFFF, v); }
  static float first_lane(reg v) { return v[0]; }
  static float total(reg v) {
    const __m256 eight =
        _mm256_add_ps(_mm512_maskz_extractf32x8_ps(0xFF, v, 0), _mm512_maskz_extractf32x8_ps(0xFF, v, 1));
    const __m128 four = _mm_add_ps(_mm256_castps256_ps128(eight), _mm256_extractf128_ps(eight, 1)),
                 two = _mm_add_ps(four, _mm_movehl_ps(four, four));
    return two[0] + two[1];
  }
  /// One lane in all.
  template <int kLane>
  static reg lane(reg v) {
    return _mm512_maskz_permutexvar_ps(0xFFFF, _mm512_set1_epi32(kLane), v);
  }
  static reg fma(reg a, reg b, reg c) { return _mm512_fmadd_ps(a, b, c); }
  static reg minus_fma(reg a, reg b, reg c) { return _mm512_fnmadd_ps(a, b, c); }
  static reg swapped(reg v) { return _mm512_maskz_permute_ps(0xFFFF, v, 0xB1); }
  static reg evens(reg v) { return _mm512_maskz_permute_ps(0xFFFF, v, 0xA0); }
  static reg odds(reg v) { return _mm512_maskz_permute_ps(0xFFFF, v, 0xF5); }
  template <int kBegin, int kEnd>
  static reg only(reg v) {
    return _mm512_maskz_mov_ps(static_cast<__mmask16>(first(kEnd) & ~first(kBegin)), v);
  }
  static reg sums(const reg (&v)[kLanes]) {
    const auto four = [&](int i) {
      const auto neighbours = [](reg a, reg b) {
        return add(_mm512_maskz_unpacklo_ps(0xFFFF, a, b), _mm512_maskz_unpackhi_ps(0xFFFF, a, b));
      };
      const reg a = neighbours(v[i], v[i + 1]), b = neighbours(v[i + 2], v[i + 3]);
      return add(_mm512_maskz_shuffle_ps(0xFFFF, a, b, 0x44), _mm512_maskz_shuffle_ps(0xFFFF, a, b, 0xEE));
    };
    const auto quarters = [](reg a, reg b) {
      return add(_mm512_maskz_shuffle_f32x4(0xFFFF, a, b, 0x88),
                 _mm512_maskz_shuffle_f32x4(0xFFFF, a, b, 0xDD));
    };
    return quarters(quarters(four(0), four(4)), quarters(four(8), four(12)));
  }
  static reg pairs(float even, float odd) {
    return _mm512_set_ps(odd, even, odd, even, odd, even, odd, even, odd, even, odd, even, odd, even, odd,
                         even);
  }
};

#else

/// Eight 1-words and eight 0-words: a window of it is a mask for the first lanes.
alignas(64) constexpr int kLaneMask[16] = {-1, -1, -1, -1, -1, -1, -1, -1, 0, 0, 0, 0, 0, 0, 0, 0};

template <>
struct vec<double> {
  using reg = __m256d;
  static constexpr int kLanes = 4;
  static reg zero() { return _mm256_setzero_pd(); }
  static reg all_bits() { return _mm256_castsi256_pd(_mm256_set1_epi32(-1)); }
  static reg all(double v) { return _mm256_set1_pd(v); }
  static reg load(const double* p) { return _mm256_loadu_pd(p); }
  static void store(double* p, reg v) { _mm256_storeu_pd(p, v); }
  static reg load_part(const double* p, int count) {
    return _mm256_maskload_pd(
        p, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(kLaneMask + 8 - 2 * count)));
  }
  static reg load_between(const double* p, int begin, int end) {
    const auto first = [](int count) {
      return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(kLaneMask + 8 - 2 * count));
    };
    return _mm256_maskload_pd(p, _mm256_andnot_si256(first(begin), first(end)));
  }
  static void store_between(double* p, int begin, int end, reg v) {
    if (begin == 0) return store_part(p, end, v);
    alignas(32) double lanes[kLanes];
    store(lanes, v);
    for (int i = begin; i < end; ++i) __builtin_memcpy(p + i, lanes + i, sizeof *p);
  }
  // A masked store is slow on many processors.
  static void store_part(double* p, int count, reg v) {
    const __m128d low = _mm256_castpd256_pd128(v), high = _mm256_extractf128_pd(v, 1);
    if (count >= 4) return store(p, v);
    if (count >= 2) _mm_storeu_pd(p, low);
    if (count == 1) _mm_storel_pd(p, low);
    if (count == 3) _mm_storel_pd(p + 2, high);
  }
  static reg add(reg a, reg b) { return _mm256_add_pd(a, b); }
  static reg minus(reg a, reg b) { return _mm256_sub_pd(a, b); }
  static reg mul(reg a, reg b) { return _mm256_mul_pd(a, b); }
  /// Lanes of `yes` where the mask's bits are set, of `no` elsewhere.
  static reg choose(reg mask, reg yes, reg no) { return _mm256_blendv_pd(no, yes, mask); }
  /// Bits of the lanes that are equal to a number.
  static unsigned equal_lanes(reg v, double to) {
    return static_cast<unsigned>(_mm256_movemask_pd(_mm256_cmp_pd(v, all(to), _CMP_EQ_OQ)));
  }
  static reg magnitude(reg v) { return _mm256_andnot_pd(all(-0.0), v); }
  static reg larger(reg a, reg b) { return _mm256_max_pd(a, b); }
  static bool all_between(reg v, double low, double high) {
    const reg inside =
        _mm256_and_pd(_mm256_cmp_pd(v, all(low), _CMP_GE_OQ), _mm256_cmp_pd(v, all(high), _CMP_LE_OQ));
    return _mm256_movemask_pd(inside) == 0xF;
  }
  static bool is_zero(reg v) { return _mm256_movemask_pd(_mm256_cmp_pd(v, zero(), _CMP_NEQ_UQ)) == 0; }
  static reg div(reg a, reg b) { return _mm256_div_pd(a, b); }
  static reg sqrt(reg v) { return _mm256_sqrt_pd(v); }
  static double first_lane(reg v) { return v[0]; }
  static double total(reg v) {
    const __m128d half = _mm_add_pd(_mm256_castpd256_pd128(v), _mm256_extractf128_pd(v, 1));
    return half[0] + half[1];
  }
  static double largest(reg v) {
    const __m128d half = _mm_max_pd(_mm256_castpd256_pd128(v), _mm256_extractf128_pd(v, 1));
    return _mm_max_pd(half, _mm_unpackhi_pd(half, half))[0];
  }
  template <int kLane>
  static reg lane(reg v) {
    return _mm256_permute4x64_pd(v, kLane * 0x55);
  }
  static reg fma(reg a, reg b, reg c) { return _mm256_fmadd_pd(a, b, c); }
  static reg minus_fma(reg a, reg b, reg c) { return _mm256_fnmadd_pd(a, b, c); }
  static reg swapped(reg v) { return _mm256_permute_pd(v, 5); }
  static reg evens(reg v) { return _mm256_permute_pd(v, 0x0); }
  static reg odds(reg v) { return _mm256_permute_pd(v, 0xF); }
  template <int kBegin, int kEnd>
  static reg only(reg v) {
    return _mm256_blend_pd(zero(), v, ((1 << kEnd) - 1) & ~((1 << kBegin) - 1));
  }
  static reg sums(const reg (&v)[kLanes]) {
    const reg a = _mm256_hadd_pd(v[0], v[1]), b = _mm256_hadd_pd(v[2], v[3]);
    return add(_mm256_permute2f128_pd(a, b, 0x21), _mm256_blend_pd(a, b, 0xC));
  }
  static reg pairs(double even, double odd) { return _mm256_set_pd(odd, even, odd, even); }
};

template <>
struct vec<float> {
  using reg = __m256;
  static constexpr int kLanes = 8;
  static reg zero() { return _mm256_setzero_ps(); }
  static reg all_bits() { return _mm256_castsi256_ps(_mm256_set1_epi32(-1)); }
  static reg all(float v) { return _mm256_set1_ps(v); }
  static reg load(const float* p) { return _mm256_loadu_ps(p); }
  static void store(float* p, reg v) { _mm256_storeu_ps(p, v); }
  static reg load_part(const float* p, int count) {
    return _mm256_maskload_ps(p, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(kLaneMask + 8 - count)));
  }
  static reg load_between(const float* p, int begin, int end) {
    const auto first = [](int count) {
      return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(kLaneMask + 8 - count));
    };
    return _mm256_maskload_ps(p, _mm256_andnot_si256(first(begin), first(end)));
  }
  static void store_between(float* p, int begin, int end, reg v) {
    if (begin == 0) return store_part(p, end, v);
    alignas(32) float lanes[kLanes];
    store(lanes, v);
    for (int i = begin; i < end; ++i) __builtin_memcpy(p + i, lanes + i, sizeof *p);
  }
  static void store_part(float* p, int count, reg v) {
    if (count >= 8) return store(p, v);
    __m128 part = _mm256_castps256_ps128(v);
    if (count >= 4) {
      _mm_storeu_ps(p, part);
      part = _mm256_extractf128_ps(v, 1);
      p += 4;
      count -= 4;
    }
    if (count >= 2) {
      _mm_storel_pi(reinterpret_cast<__m64*>(p), part);
      part = _mm_movehl_ps(part, part);
      p += 2;
      count -= 2;
    }
    if (count == 1) _mm_store_ss(p, part);
  }
  static reg add(reg a, reg b) { return _mm256_add_ps(a, b); }
  static reg minus(reg a, reg b) { return _mm256_sub_ps(a, b); }
  static reg mul(reg a, reg b) { return _mm256_mul_ps(a, b); }
  /// Lanes of `yes` where the mask's bits are set, of `no` elsewhere.
  static reg choose(reg mask, reg yes, reg no) { return _mm256_blendv_ps(no, yes, mask); }
  /// Bits of the lanes that are equal to a number.
  static unsigned equal_lanes(reg v, float to) {
    return static_cast<unsigned>(_mm256_movemask_ps(_mm256_cmp_ps(v, all(to), _CMP_EQ_OQ)));
  }
  static reg magnitude(reg v) { return _mm256_andnot_ps(all(-0.0F), v); }
  static reg larger(reg a, reg b) { return _mm256_max_ps(a, b); }
  static bool all_between(reg v, float low, float high) {
    const reg inside =
        _mm256_and_ps(_mm256_cmp_ps(v, all(low), _CMP_GE_OQ), _mm256_cmp_ps(v, all(high), _CMP_LE_OQ));
    return _mm256_movemask_ps(inside) == 0xFF;
  }
  static bool is_zero(reg v) { return _mm256_movemask_ps(_mm256_cmp_ps(v, zero(), _CMP_NEQ_UQ)) == 0; }
  static reg div(reg a, reg b) { return _mm256_div_ps(a, b); }
  static reg sqrt(reg v) { return _mm256_sqrt_ps(v); }
  static float first_lane(reg v) { return v[0]; }
  static float total(reg v) {
    const __m128 four = _mm_add_ps(_mm256_castps256_ps128(v), _mm256_extractf128_ps(v, 1)),
                 two = _mm_add_ps(four, _mm_movehl_ps(four, four));
    return two[0] + two[1];
  }
  static float largest(reg v) {
    const __m128 four = _mm_max_ps(_mm256_castps256_ps128(v), _mm256_extractf128_ps(v, 1)),
                 two = _mm_max_ps(four, _mm_movehl_ps(four, four));
    return _mm_max_ps(two, _mm_movehdup_ps(two))[0];
  }
  template <int kLane>
  static reg lane(reg v) {
    return _mm256_permutevar8x32_ps(v, _mm256_set1_epi32(kLane));
  }
  static reg fma(reg a, reg b, reg c) { return _mm256_fmadd_ps(a, b, c); }
  static reg minus_fma(reg a, reg b, reg c) { return _mm256_fnmadd_ps(a, b, c); }
  static reg swapped(reg v) { return _mm256_permute_ps(v, 0xB1); }
  static reg evens(reg v) { return _mm256_permute_ps(v, 0xA0); }
  static reg odds(reg v) { return _mm256_permute_ps(v, 0xF5); }
  template <int kBegin, int kEnd>
  static reg only(reg v) {
    return _mm256_blend_ps(zero(), v, ((1 << kEnd) - 1) & ~((1 << kBegin) - 1));
  }
  static reg sums(const reg (&v)[kLanes]) {
    const reg a = _mm256_hadd_ps(_mm256_hadd_ps(v[0], v[1]), _mm256_hadd_ps(v[2], v[3])),
              b = _mm256_hadd_ps(_mm256_hadd_ps(v[4], v[5]), _mm256_hadd_ps(v[6], v[7]));
    return add(_mm256_permute2f128_ps(a, b, 0x21), _mm256_blend_ps(a, b, 0xF0));
  }
  static reg pairs(float even, float odd) {
    return _mm256_set_ps(odd, even, odd, even, odd, even, odd, even);
  }
};

#endif

/// Lanes from `first` on of one vector, the lanes before of another.
template <class R>
class lanes_from {
  using V = vec<R>;
  using reg = typename V::reg;

 public:
#ifdef __AVX512F__
  explicit lanes_from(core_int first) : before_(V::first(static_cast<int>(first))) {}
  __m512d choose(__m512d behind, __m512d before) const {
    return _mm512_mask_blend_pd(before_, behind, before);
  }
  __m512 choose(__m512 behind, __m512 before) const { return _mm512_mask_blend_ps(before_, behind, before); }

 private:
  decltype(V::first(0)) before_;
#else
  explicit lanes_from(core_int first)
      : before_(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(
            kLaneMask + 8 - first * static_cast<core_int>(sizeof(R) / sizeof(int))))) {}
  __m256d choose(__m256d behind, __m256d before) const {
    return _mm256_blendv_pd(behind, before, _mm256_castsi256_pd(before_));
  }
  __m256 choose(__m256 behind, __m256 before) const {
    return _mm256_blendv_ps(behind, before, _mm256_castsi256_ps(before_));
  }

 private:
  __m256i before_;
#endif
};

}  // namespace
}  // namespace qel::QEL_LEVEL
