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
  static void stream(double* p, reg v) { _mm512_stream_pd(p, v); }
  static reg add(reg a, reg b) { return _mm512_add_pd(a, b); }
  static reg sub(reg a, reg b) { return _mm512_sub_pd(a, b); }
  static reg mul(reg a, reg b) { return _mm512_mul_pd(a, b); }
  static reg div(reg a, reg b) { return _mm512_div_pd(a, b); }
  static reg mul_add(reg a, reg b, reg c) { return _mm512_fmadd_pd(a, b, c); }
  static reg min(reg a, reg b) { return _mm512_maskz_min_pd(kAll, a, b); }
  static reg max(reg a, reg b) { return _mm512_maskz_max_pd(kAll, a, b); }
  // Zeros of both signs and denormal numbers: those whose exponent field is 0.
  static flags none() { return 0; }
  static flags zero_exponents(reg v, flags others) {
    return static_cast<flags>(others | _mm512_fpclass_pd_mask(v, 0x26));
  }
  static bool any(flags f) { return f != 0; }
  static flags first(int n) { return static_cast<flags>((1u << n) - 1); }
  static reg load_part(const double* p, flags part, reg others) {
    return _mm512_mask_loadu_pd(others, part, p);
  }
  static void store_part(double* p, flags part, reg v) { _mm512_mask_storeu_pd(p, part, v); }
};
#elif defined(__AVX__)
struct doubles {
  using reg = __m256d;
  using flags = __m256d;
  static constexpr int kCount = 4;
  static reg all(double v) { return _mm256_set1_pd(v); }
  static reg load(const double* p) { return _mm256_loadu_pd(p); }
  static void store(double* p, reg v) { _mm256_storeu_pd(p, v); }
  static void stream(double* p, reg v) { _mm256_stream_pd(p, v); }
  static reg add(reg a, reg b) { return _mm256_add_pd(a, b); }
  static reg sub(reg a, reg b) { return _mm256_sub_pd(a, b); }
  static reg mul(reg a, reg b) { return _mm256_mul_pd(a, b); }
  static reg div(reg a, reg b) { return _mm256_div_pd(a, b); }
#ifdef __FMA__
  static reg mul_add(reg a, reg b, reg c) { return _mm256_fmadd_pd(a, b, c); }
#endif
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
  static void stream(double* p, reg v) { _mm_stream_pd(p, v); }
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

/// Stores a register, past the caches if kStreamed: p is then aligned to it.
template <bool kStreamed>
[[gnu::always_inline]] inline void put(double* p, doubles::reg v) {
  if constexpr (kStreamed) {
    doubles::stream(p, v);
  } else {
    doubles::store(p, v);
  }
}

// How a register gets to and from memory: as a whole, or the first lanes of it, when ones stand in the
// others.
template <bool kStreamed>
struct whole_register {
  doubles::reg load(const double* p) const { return doubles::load(p); }
  void store(double* p, doubles::reg v) const { put<kStreamed>(p, v); }
};
#if defined(__AVX512F__)
struct part_of_register {
  doubles::flags lanes;
  doubles::reg load(const double* p) const { return doubles::load_part(p, lanes, doubles::all(1)); }
  void store(double* p, doubles::reg v) const { doubles::store_part(p, lanes, v); }
};
#endif

/// Elements ahead of the first one on a cache line, at most n. p is a multiple of 8.
inline int elements_ahead_of_line(const double* p, int n) {
  const int ahead = static_cast<int>((0 - reinterpret_cast<uintptr_t>(p)) % 64 / 8);
  return ahead < n ? ahead : n;
}

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
