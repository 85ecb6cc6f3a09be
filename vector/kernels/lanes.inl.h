// SPDX-License-Identifier: BSD-3-Clause
// The widest registers of the processor type: doubles, and random words in 64-bit lanes. A block of 16
// doubles is what the kernels work at a time.
#pragma once

namespace qel::QEL_LEVEL {
namespace {

constexpr int kBlock = 16;

#if defined(__AVX512F__)
struct doubles {
  using reg = __m512d;
  using flags = __mmask8;
  static constexpr __mmask8 kAll = 0xff;  // g++ 12 warns of its own unmasked forms
  static constexpr int kCount = 8;
  static reg all(double v) { return _mm512_set1_pd(v); }
  static reg load(const double* p) { return _mm512_loadu_pd(p); }
  static void store(double* p, reg v) { _mm512_storeu_pd(p, v); }
  static reg add(reg a, reg b) { return _mm512_add_pd(a, b); }
  static reg sub(reg a, reg b) { return _mm512_sub_pd(a, b); }
  static reg mul(reg a, reg b) { return _mm512_mul_pd(a, b); }
  static reg div(reg a, reg b) { return _mm512_div_pd(a, b); }
  static reg min(reg a, reg b) { return _mm512_maskz_min_pd(kAll, a, b); }
  static reg max(reg a, reg b) { return _mm512_maskz_max_pd(kAll, a, b); }
  // Zeros of both signs and denormal numbers: those whose exponent field is 0.
  static flags none() { return 0; }
  static flags zero_exponents(reg v, flags others) {
    return static_cast<flags>(others | _mm512_fpclass_pd_mask(v, 0x26));
  }
  static bool any(flags f) { return f != 0; }
};
#elif defined(__AVX__)
struct doubles {
  using reg = __m256d;
  using flags = __m256d;
  static constexpr int kCount = 4;
  static reg all(double v) { return _mm256_set1_pd(v); }
  static reg load(const double* p) { return _mm256_loadu_pd(p); }
  static void store(double* p, reg v) { _mm256_storeu_pd(p, v); }
  static reg add(reg a, reg b) { return _mm256_add_pd(a, b); }
  static reg sub(reg a, reg b) { return _mm256_sub_pd(a, b); }
  static reg mul(reg a, reg b) { return _mm256_mul_pd(a, b); }
  static reg div(reg a, reg b) { return _mm256_div_pd(a, b); }
  static reg min(reg a, reg b) { return _mm256_min_pd(a, b); }
  static reg max(reg a, reg b) { return _mm256_max_pd(a, b); }
  static flags none() { return _mm256_setzero_pd(); }
  static flags zero_exponents(reg v, flags others) {
    const reg infinity = _mm256_set1_pd(__builtin_inf());  // all ones in the exponent field, else zeros
    return _mm256_or_pd(others, _mm256_cmp_pd(_mm256_and_pd(v, infinity), _mm256_setzero_pd(), _CMP_EQ_OQ));
  }
  static bool any(flags f) { return _mm256_movemask_pd(f) != 0; }
};
#else
struct doubles {
  using reg = __m128d;
  using flags = __m128d;
  static constexpr int kCount = 2;
  static reg all(double v) { return _mm_set1_pd(v); }
  static reg load(const double* p) { return _mm_loadu_pd(p); }
  static void store(double* p, reg v) { _mm_storeu_pd(p, v); }
  static reg add(reg a, reg b) { return _mm_add_pd(a, b); }
  static reg sub(reg a, reg b) { return _mm_sub_pd(a, b); }
  static reg mul(reg a, reg b) { return _mm_mul_pd(a, b); }
  static reg div(reg a, reg b) { return _mm_div_pd(a, b); }
  static reg min(reg a, reg b) { return _mm_min_pd(a, b); }
  static reg max(reg a, reg b) { return _mm_max_pd(a, b); }
  static flags none() { return _mm_setzero_pd(); }
  static flags zero_exponents(reg v, flags others) {
    const reg infinity = _mm_set1_pd(__builtin_inf());
    return _mm_or_pd(others, _mm_cmpeq_pd(_mm_and_pd(v, infinity), _mm_setzero_pd()));
  }
  static bool any(flags f) { return _mm_movemask_pd(f) != 0; }
};
#endif

// A random word stands in the low half of its lane, with zeros above. number() gives its value: the word
// becomes the mantissa of a number from 2^52 on, which is then taken away, both exactly.
constexpr int64_t kExponentOf52 = 0x4330000000000000;
constexpr double kTwoTo52 = 4503599627370496.0;

#if defined(__AVX512F__)
struct words : doubles {
  using word_reg = __m512i;
  static word_reg load_narrow(const uint32_t* p) {
    return _mm512_maskz_cvtepu32_epi64(kAll, _mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(p)));
  }
  static word_reg load_words(const double* p) { return _mm512_loadu_si512(p); }
  static void store_words(double* p, word_reg v) { _mm512_storeu_si512(p, v); }
  static word_reg exclusive_or(word_reg a, word_reg b) { return _mm512_xor_si512(a, b); }
  static reg number(word_reg v) {
    return sub(_mm512_castsi512_pd(_mm512_or_si512(v, _mm512_set1_epi64(kExponentOf52))), all(kTwoTo52));
  }
};
#elif defined(__AVX2__)
struct words : doubles {
  using word_reg = __m256i;
  static word_reg load_narrow(const uint32_t* p) {
    return _mm256_cvtepu32_epi64(_mm_loadu_si128(reinterpret_cast<const __m128i_u*>(p)));
  }
  static word_reg load_words(const double* p) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(p));
  }
  static void store_words(double* p, word_reg v) { _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(p), v); }
  static word_reg exclusive_or(word_reg a, word_reg b) { return _mm256_xor_si256(a, b); }
  static reg number(word_reg v) {
    return sub(_mm256_castsi256_pd(_mm256_or_si256(v, _mm256_set1_epi64x(kExponentOf52))), all(kTwoTo52));
  }
};
#else
struct words {
  using reg = __m128d;
  using word_reg = __m128i;
  static constexpr int kCount = 2;
  static reg all(double v) { return _mm_set1_pd(v); }
  static void store(double* p, reg v) { _mm_storeu_pd(p, v); }
  static reg add(reg a, reg b) { return _mm_add_pd(a, b); }
  static reg mul(reg a, reg b) { return _mm_mul_pd(a, b); }
  static word_reg load_narrow(const uint32_t* p) {
    return _mm_unpacklo_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i_u*>(p)), _mm_setzero_si128());
  }
  static word_reg load_words(const double* p) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(p));
  }
  static void store_words(double* p, word_reg v) { _mm_storeu_si128(reinterpret_cast<__m128i_u*>(p), v); }
  static word_reg exclusive_or(word_reg a, word_reg b) { return _mm_xor_si128(a, b); }
  static reg number(word_reg v) {
    return _mm_sub_pd(_mm_castsi128_pd(_mm_or_si128(v, _mm_set1_epi64x(kExponentOf52))), all(kTwoTo52));
  }
};
#endif

// One element at any address.
struct [[gnu::packed, gnu::may_alias]] double_anywhere {
  double value;
};
struct [[gnu::packed, gnu::may_alias]] word_anywhere {
  uint64_t value;
};
inline double element_at(const double* p) { return reinterpret_cast<const double_anywhere*>(p)->value; }
inline void set_element(double* p, double v) { reinterpret_cast<double_anywhere*>(p)->value = v; }
inline uint64_t word_at(const double* p) { return reinterpret_cast<const word_anywhere*>(p)->value; }
inline void set_word(double* p, uint64_t v) { reinterpret_cast<word_anywhere*>(p)->value = v; }

}  // namespace
}  // namespace qel::QEL_LEVEL

// A kernel's name with the type's code.
#define QEL_JOINED(family, code, name) family##code##name
#define QEL_CODED(family, code, name) QEL_JOINED(family, code, name)
#define QEL_VML_NAME(name) QEL_CODED(qel_vml_core_, QEL_VML_CODE, _vml_##name)
#define QEL_VSL_NAME(name) QEL_CODED(qel_vsl_core_, QEL_VML_CODE, _##name)
