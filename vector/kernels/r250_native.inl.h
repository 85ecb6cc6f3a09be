// SPDX-License-Identifier: BSD-3-Clause
// What the fills of the native types share: numbers from words, and a fill on the register where it lies.
#pragma once

#include "vector/kernels/r250_register.inl.h"

namespace qel::QEL_LEVEL {
namespace {

constexpr int kLanes = 8;

inline __m256i eight_words(const uint32_t* p) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(p));
}
inline void set_eight_words(uint32_t* p, __m256i w) {
  _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(p), w);
}

/// r[i] = shift + w_i factor for eight words.
[[gnu::always_inline]] inline void convert(__m256i w, double* r, doubles::reg shift, doubles::reg factor) {
#ifdef __AVX512F__
  doubles::store(r, doubles::add(shift, doubles::mul(_mm512_maskz_cvtepu32_pd(doubles::kAll, w), factor)));
#else
  // A word becomes the mantissa of a number from 2^52 on, which is then taken away, both exactly.
  const __m256i exponent = _mm256_set1_epi64x(0x4330000000000000);
  const doubles::reg offset = doubles::all(4503599627370496.0);
  const __m256i low = _mm256_or_si256(_mm256_cvtepu32_epi64(_mm256_castsi256_si128(w)), exponent);
  const __m256i high = _mm256_or_si256(_mm256_cvtepu32_epi64(_mm256_extracti128_si256(w, 1)), exponent);
  const doubles::reg first = doubles::sub(_mm256_castsi256_pd(low), offset),
                     second = doubles::sub(_mm256_castsi256_pd(high), offset);
  doubles::store(r, doubles::add(shift, doubles::mul(first, factor)));
  doubles::store(r + 4, doubles::add(shift, doubles::mul(second, factor)));
#endif
}

/// A fill of any length, up to where either place wraps at a time.
void fill_in_place(r250_register& state, int n, double* r, double a, double scale) {
  const doubles::reg shift = doubles::all(a), factor = doubles::all(scale);
  int p = static_cast<int>(state.p), q = static_cast<int>(state.q);
  while (n > 0) {
    int run = kWords - (p > q ? p : q);
    if (run > n) run = n;
    uint32_t* const old = state.x + p;
    const uint32_t* const partner = state.x + q;
    int k = 0;
    for (; k + kLanes <= run; k += kLanes) {
      const __m256i word = _mm256_xor_si256(eight_words(old + k), eight_words(partner + k));
      set_eight_words(old + k, word);
      convert(word, r + k, shift, factor);
    }
    for (; k < run; ++k) {
      old[k] ^= partner[k];
      set_element(r + k, a + static_cast<double>(old[k]) * scale);
    }
    p = p + run == kWords ? 0 : p + run;
    q = q + run == kWords ? 0 : q + run;
    r += run;
    n -= run;
  }
  state.p = static_cast<uint32_t>(p);
  state.q = static_cast<uint32_t>(q);
}

// Long fills put a word into the mantissa of a number from 2^52 units on, by a constant that is the upper
// half of each, and take 2^52 units away.
struct unit_bits {
  uint64_t exponent, mantissa;
  explicit unit_bits(double scale) {
    const auto bits = __builtin_bit_cast(uint64_t, scale);
    exponent = bits >> 52;
    mantissa = bits << 12;
  }
  /// 2^52 of them are a number.
  bool can_be_raised() const { return exponent + 52 < 2047; }
  bool is_power_of_two() const { return exponent > 0 && mantissa == 0; }
};
constexpr double kTwoTo52 = 4503599627370496.0;

/// Numbers w scale: a power of two, which is the unit.
struct scaled_words {
  int upper_half;
  doubles::reg offset;
  explicit scaled_words(double scale)
      : upper_half(static_cast<int>(unit_bits(scale).exponent + 52) << 20),
        offset(doubles::all(kTwoTo52 * scale)) {}
  [[gnu::always_inline]] doubles::reg operator()(doubles::reg raised) const {
    return doubles::sub(raised, offset);
  }
};
/// Numbers a + w scale. The unit is 1, and the product with the scale is rounded once: both that and 2^52
/// times the scale are exact before the difference is rounded.
struct shifted_words {
  int upper_half = 0x43300000;
  doubles::reg shift, factor, offset;
  shifted_words(double a, double scale)
      : shift(doubles::all(a)), factor(doubles::all(scale)), offset(doubles::all(-kTwoTo52 * scale)) {}
  [[gnu::always_inline]] doubles::reg operator()(doubles::reg raised) const {
    return doubles::add(shift, doubles::mul_add(raised, factor, offset));
  }
};

/// turn(make) with the cheapest way to make such numbers; 2^52 scale is one.
template <class Turn>
[[gnu::always_inline]] inline void choose_numbers(double a, double scale, const Turn& turn) {
  if (a == 0 && unit_bits(scale).is_power_of_two()) return turn(scaled_words(scale));
  turn(shifted_words(a, scale));
}

}  // namespace
}  // namespace qel::QEL_LEVEL
