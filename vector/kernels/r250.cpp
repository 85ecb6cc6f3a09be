// SPDX-License-Identifier: BSD-3-Clause
// Numbers of the R250 generator, y(k) = y(k - 250) ^ y(k - 147) (S. Kirkpatrick, E. P. Stoll, J. Comput.
// Phys. 40 (1981) 517), and the clamp of uniform numbers into their interval.
#include "vector/kernels/kernel_prelude.h"
#include "vector/kernels/lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

constexpr int kWords = kR250Words, kLag = kR250Lag;
constexpr int kOld = kWords - kLag;  // outputs until the partner word is itself an output
// A long fill is cut into pieces, so that the raw words are still in the first cache when they are converted.
constexpr int kPiece = 3072;

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

/// Turns the register until its next word is word 0.
void turn_to_start(r250_register& state) {
  uint32_t turned[kWords];
  for (int k = 0; k < kWords; ++k) turned[k] = state.x[(state.p + static_cast<uint32_t>(k)) % kWords];
  for (int k = 0; k < kWords; ++k) state.x[k] = turned[k];
  state.p = 0;
  state.q = kLag;
}

/// first ^ second for words from .. to - 1, as many at a time as a register holds.
template <class First, class Second>
[[gnu::always_inline]] inline void join_words(int from, int to, double* r, First first, Second second) {
  int k = from;
  for (; k + words::kCount <= to; k += words::kCount) {
    words::store_words(r + k, words::exclusive_or(first.several(k), second.several(k)));
  }
  for (; k < to; ++k) set_word(r + k, first.one(k) ^ second.one(k));
}
struct from_register {
  const uint32_t* x;
  words::word_reg several(int k) const { return words::load_narrow(x + k); }
  uint64_t one(int k) const { return x[k]; }
};
struct from_output {
  const double* r;
  words::word_reg several(int k) const { return words::load_words(r + k); }
  uint64_t one(int k) const { return word_at(r + k); }
};

/// At least 250 numbers: the output array holds the raw words in the low halves of its elements, so that
/// no index wraps; they are converted in place when the register has got the last 250 back.
void fill_by_block(r250_register& state, int n, double* r, double a, double scale) {
  if (state.p != 0) turn_to_start(state);
  join_words(0, kOld, r, from_register{state.x}, from_register{state.x + kLag});
  join_words(kOld, kWords, r, from_register{state.x}, from_output{r - kOld});
  join_words(kWords, n, r, from_output{r - kWords}, from_output{r - kOld});
  for (int k = 0; k < kWords; ++k) state.x[k] = static_cast<uint32_t>(word_at(r + n - kWords + k));
  const words::reg factor = words::all(scale), shift = words::all(a);
  int k = 0;
  for (; k + words::kCount <= n; k += words::kCount) {
    const words::reg number = words::number(words::load_words(r + k));
    words::store(r + k, words::add(shift, words::mul(number, factor)));
  }
  for (; k < n; ++k) set_element(r + k, a + static_cast<double>(word_at(r + k)) * scale);
}

}  // namespace

void QEL_VSL_NAME(r250_fill)(r250_register& state, int n, double* r, double a, double scale) {
  for (; n >= kWords;) {
    const int piece = n < kPiece ? n : kPiece;
    fill_by_block(state, piece, r, a, scale);
    r += piece;
    n -= piece;
  }
  fill_by_word(state, n, r, a, scale);
}

void QEL_VSL_NAME(clamp)(int n, double* r, double a, double b) {
  const doubles::reg low = doubles::all(a), high = doubles::all(b);
  int i = 0;
  for (; i < (n & ~(kBlock - 1)); i += kBlock) {
#pragma GCC unroll 8
    for (int k = i; k < i + kBlock; k += doubles::kCount) {
      doubles::store(r + k, doubles::min(high, doubles::max(low, doubles::load(r + k))));
    }
  }
  for (; i < n; ++i) {
    const double v = element_at(r + i), raised = a > v ? a : v;
    set_element(r + i, b < raised ? b : raised);
  }
}

}  // namespace qel::QEL_LEVEL
