// SPDX-License-Identifier: BSD-3-Clause
// The register of the R250 generator as a row of words.
#pragma once

#include "vector/kernels/lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

constexpr int kWords = kR250Words, kLag = kR250Lag;

/// to may lie below from in the same array.
inline void copy_words(const uint32_t* from, int n, uint32_t* to) {
  int k = 0;
  for (; k + 4 <= n; k += 4) {
    _mm_storeu_si128(reinterpret_cast<__m128i_u*>(to + k),
                     _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(from + k)));
  }
  for (; k < n; ++k) to[k] = from[k];
}
/// A ring's words from place p on, around to it.
inline void copy_ring(const uint32_t* ring, int length, int p, uint32_t* to) {
  copy_words(ring + p, length - p, to);
  copy_words(ring, p, to + length - p);
}

/// The register's words in the order in which they are replaced.
void copy_in_order(const r250_register& state, uint32_t* to) {
  copy_ring(state.x, kWords, static_cast<int>(state.p), to);
}
/// Makes these words, in this order, the register.
void set_in_order(r250_register& state, const uint32_t* from) {
  copy_words(from, kWords, state.x);
  state.p = 0;
  state.q = kLag;
}

}  // namespace
}  // namespace qel::QEL_LEVEL
