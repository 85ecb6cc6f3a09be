// SPDX-License-Identifier: BSD-3-Clause
// Fills with AVX2. Over bits, squaring a linear recurrence doubles its distances: so eight neighbouring
// words, taken as one, obey the recurrence of single words, y(k) = y(k - 8 * 250) ^ y(k - 8 * 147), and no
// register reads what has just been stored. The numbers are stored once, as their words come by.
#pragma once

#include "vector/kernels/r250_native.inl.h"

namespace qel::QEL_LEVEL {
namespace {

constexpr int kRing = kLanes * kWords;
constexpr int kShortestLong = 2 * kRing;  // the ring's own words come from the recurrence of single words

/// The words that follow the first 250 of y, for as many as count, whole registers.
void next_words(uint32_t* y, int count) {
  for (int k = 0; k < count; k += kLanes) {
    set_eight_words(y + k + kWords, _mm256_xor_si256(eight_words(y + k), eight_words(y + k + kLag)));
  }
}

/// Eight words in the order of the ring, or back: halves of both lanes then give neighbours.
inline __m256i ring_order(__m256i w) { return _mm256_permute4x64_epi64(w, 0xd8); }

template <bool kStreamed, class Make>
[[gnu::always_inline]] inline void put_numbers(__m256i word, double* r, const Make& make) {
  const __m256i upper = _mm256_set1_epi32(make.upper_half);
  put<kStreamed>(r, make(_mm256_castsi256_pd(_mm256_unpacklo_epi32(word, upper))));
  put<kStreamed>(r + 4, make(_mm256_castsi256_pd(_mm256_unpackhi_epi32(word, upper))));
}

/// count numbers, whole registers of them, from the ring's start on; returns the place that follows.
template <bool kStreamed, class Make>
int turn_ring(uint32_t* ring, int count, double* r, Make make) {
  int p = 0, q = kLanes * kLag;
  while (count > 0) {
    // Up to where either place wraps.
    int run = kRing - (p > q ? p : q);
    if (run > count) run = count;
    for (int k = 0; k < run; k += kLanes) {
      const __m256i word = _mm256_xor_si256(eight_words(ring + p + k), eight_words(ring + q + k));
      set_eight_words(ring + p + k, word);
      put_numbers<kStreamed>(word, r + k, make);
    }
    p = p + run == kRing ? 0 : p + run;
    q = q + run == kRing ? 0 : q + run;
    r += run;
    count -= run;
  }
  return p;
}

/// count numbers, whole registers of them.
template <bool kStreamed>
void fill_long(r250_register& state, int count, double* r, double a, double scale) {
  constexpr int kNewest = 256;  // what the register holds, in whole vectors
  alignas(64) uint32_t y[kNewest + kRing], newest[kNewest];
  uint32_t* const ring = y + kNewest;
  copy_in_order(state, ring - kWords);
  next_words(ring - kWords, kRing);
  choose_numbers(a, scale, [=, &newest](const auto& make) {
    for (int k = 0; k < kRing; k += kLanes) {
      const __m256i word = ring_order(eight_words(ring + k));
      set_eight_words(ring + k, word);
      put_numbers<kStreamed>(word, r + k, make);
    }
    int p = turn_ring<kStreamed>(ring, count - kRing, r + kRing, make);
    if (kStreamed) _mm_sfence();
    for (int k = kNewest - kLanes; k >= 0; k -= kLanes) {
      p = (p == 0 ? kRing : p) - kLanes;
      set_eight_words(newest + k, ring_order(eight_words(ring + p)));
    }
  });
  set_in_order(state, newest + kNewest - kWords);
}

void fill(r250_register& state, int n, double* r, double a, double scale, bool streamed) {
  if (n >= kShortestLong + kLanes && unit_bits(scale).can_be_raised()) {
    const int ahead = elements_ahead_of_line(r, n), count = (n - ahead) & ~(kLanes - 1);
    fill_in_place(state, ahead, r, a, scale);
    r += ahead;
    streamed ? fill_long<true>(state, count, r, a, scale) : fill_long<false>(state, count, r, a, scale);
    r += count;
    n -= ahead + count;
  }
  fill_in_place(state, n, r, a, scale);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
