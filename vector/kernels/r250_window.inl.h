// SPDX-License-Identifier: BSD-3-Clause
// Fills with AVX-512. Sixteen registers hold the newest 256 words, so that the recurrence neither loads nor
// stores any: what a fill stores is its numbers alone.
#pragma once

#include "vector/kernels/r250_native.inl.h"

namespace qel::QEL_LEVEL {
namespace {

constexpr int kWindow = 256, kStep = 16;
constexpr int kUnused = kWindow - kWords;          // words that no later one is made of
constexpr int kPartner = kWindow - kWords + kLag;  // where the partner of the oldest used word stands
constexpr int kShortestLong = 3 * kWindow;

/// Words from place kFirst on out of two neighbouring registers.
template <int kFirst>
[[gnu::always_inline]] inline __m512i from_both(__m512i low, __m512i high) {
  return _mm512_maskz_alignr_epi32(0xffff, high, low, kFirst);
}

template <bool kStreamed, class Make>
[[gnu::always_inline]] inline void put_numbers(__m512i words, double* r, const Make& make) {
  const __m512i upper = _mm512_set1_epi32(make.upper_half);
  const __m512i first = _mm512_setr_epi32(0, 16, 1, 16, 2, 16, 3, 16, 4, 16, 5, 16, 6, 16, 7, 16);
  const __m512i second = _mm512_setr_epi32(8, 16, 9, 16, 10, 16, 11, 16, 12, 16, 13, 16, 14, 16, 15, 16);
  put<kStreamed>(r, make(_mm512_castsi512_pd(_mm512_permutex2var_epi32(words, first, upper))));
  put<kStreamed>(r + doubles::kCount,
                 make(_mm512_castsi512_pd(_mm512_permutex2var_epi32(words, second, upper))));
}

/// rounds * 256 numbers; words holds the newest 256 and gets the newest again. The registers are named one by
/// one, and the function is one of its own: otherwise the compiler keeps some of them in memory.
template <bool kStreamed, class Make>
[[gnu::noinline]] void turn_window(uint32_t* words, int rounds, double* r, const Make& make) {
  const auto at = [words](int i) { return _mm512_load_si512(words + i * kStep); };
  __m512i w0 = at(0), w1 = at(1), w2 = at(2), w3 = at(3), w4 = at(4), w5 = at(5), w6 = at(6), w7 = at(7);
  __m512i w8 = at(8), w9 = at(9), w10 = at(10), w11 = at(11), w12 = at(12), w13 = at(13), w14 = at(14),
          w15 = at(15);
  // The oldest register becomes the newest.
  const auto next = [&](__m512i & oldest, __m512i second, __m512i partner, __m512i behind_it)
      __attribute__((always_inline)) {
    oldest =
        _mm512_xor_si512(from_both<kUnused>(oldest, second), from_both<kPartner % kStep>(partner, behind_it));
    put_numbers<kStreamed>(oldest, r, make);
    r += kStep;
  };
  static_assert(kPartner / kStep == 6);
  for (; rounds > 0; --rounds) {
    next(w0, w1, w6, w7);
    next(w1, w2, w7, w8);
    next(w2, w3, w8, w9);
    next(w3, w4, w9, w10);
    next(w4, w5, w10, w11);
    next(w5, w6, w11, w12);
    next(w6, w7, w12, w13);
    next(w7, w8, w13, w14);
    next(w8, w9, w14, w15);
    next(w9, w10, w15, w0);
    next(w10, w11, w0, w1);
    next(w11, w12, w1, w2);
    next(w12, w13, w2, w3);
    next(w13, w14, w3, w4);
    next(w14, w15, w4, w5);
    next(w15, w0, w5, w6);
  }
  const __m512i all[] = {w0, w1, w2, w3, w4, w5, w6, w7, w8, w9, w10, w11, w12, w13, w14, w15};
#pragma GCC unroll 16
  for (int i = 0; i < kStep; ++i) _mm512_store_si512(words + i * kStep, all[i]);
}

void fill(r250_register& state, int n, double* r, double a, double scale, bool streamed) {
  if (n >= kShortestLong && unit_bits(scale).can_be_raised()) {
    const int ahead = elements_ahead_of_line(r, n), rounds = (n - ahead) / kWindow;
    fill_in_place(state, ahead, r, a, scale);
    r += ahead;
    alignas(64) uint32_t words[kWindow] = {};
    copy_in_order(state, words + kUnused);
    choose_numbers(a, scale, [=, &words](const auto& make) {
      if (streamed) {
        turn_window<true>(words, rounds, r, make);
        _mm_sfence();
      } else {
        turn_window<false>(words, rounds, r, make);
      }
    });
    set_in_order(state, words + kUnused);
    r += rounds * kWindow;
    n -= ahead + rounds * kWindow;
  }
  fill_in_place(state, n, r, a, scale);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
