// SPDX-License-Identifier: BSD-3-Clause
// Fills of the processor types without AVX2: short ones word by word, long ones in pieces.
#pragma once

#include "vector/kernels/r250_register.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// Short fills: one word after the other on the register.
void fill_by_word(r250_register& state, int n, double* r, double a, double scale) {
  uint32_t p = state.p, q = state.q;
  for (int k = 0; k < n; ++k) {
    const uint32_t word = state.x[p] ^= state.x[q];
    p = p + 1 == kWords ? 0 : p + 1;
    q = q + 1 == kWords ? 0 : q + 1;
    set_element(r + k, a + static_cast<double>(word) * scale);
  }
  state.p = p;
  state.q = q;
}

// A long fill is cut into pieces, so that the raw words are still in the first cache when they are converted.
constexpr int kPiece = 3072;
constexpr int kOld = kWords - kLag;  // outputs until the partner word is itself an output

// A random word stands in the low half of its 8-byte element, with zeros above.
inline __m128i two_words(const uint32_t* p) {
  return _mm_unpacklo_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i_u*>(p)), _mm_setzero_si128());
}
inline __m128i two_words(const double* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(p)); }
inline uint64_t one_word(const uint32_t* p) { return *p; }
inline uint64_t one_word(const double* p) { return word_at(p); }

/// r[k] = first[k] ^ second[k] as raw words for k in from .. to - 1.
template <class First, class Second>
[[gnu::always_inline]] inline void join_words(int from, int to, double* r, const First* first,
                                              const Second* second) {
  int k = from;
  for (; k + 2 <= to; k += 2) {
    _mm_storeu_si128(reinterpret_cast<__m128i_u*>(r + k),
                     _mm_xor_si128(two_words(first + k), two_words(second + k)));
  }
  for (; k < to; ++k) set_word(r + k, one_word(first + k) ^ one_word(second + k));
}

/// At least 250 numbers: the output array holds the raw words, so that no index wraps; they are converted in
/// place when the register has got the last 250 back.
void fill_by_block(r250_register& state, int n, double* r, double a, double scale) {
  uint32_t x[kWords];
  copy_in_order(state, x);
  join_words(0, kOld, r, x, x + kLag);
  join_words(kOld, kWords, r, x, r - kOld);
  join_words(kWords, n, r, r - kWords, r - kOld);
  for (int k = 0; k < kWords; ++k) x[k] = static_cast<uint32_t>(word_at(r + n - kWords + k));
  set_in_order(state, x);
  // A word becomes the mantissa of a number from 2^52 on, which is then taken away, both exactly.
  const __m128i exponent = _mm_set1_epi64x(0x4330000000000000);
  const __m128d offset = _mm_set1_pd(4503599627370496.0), factor = _mm_set1_pd(scale), shift = _mm_set1_pd(a);
  int k = 0;
  for (; k + 2 <= n; k += 2) {
    const __m128d number = _mm_sub_pd(_mm_castsi128_pd(_mm_or_si128(two_words(r + k), exponent)), offset);
    _mm_storeu_pd(r + k, _mm_add_pd(shift, _mm_mul_pd(number, factor)));
  }
  for (; k < n; ++k) set_element(r + k, a + static_cast<double>(word_at(r + k)) * scale);
}

void fill(r250_register& state, int n, double* r, double a, double scale, bool) {
  for (; n >= kWords;) {
    const int piece = n < kPiece ? n : kPiece;
    fill_by_block(state, piece, r, a, scale);
    r += piece;
    n -= piece;
  }
  fill_by_word(state, n, r, a, scale);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
