// SPDX-License-Identifier: BSD-3-Clause
// Numbers of the R250 generator, y(k) = y(k - 250) ^ y(k - 147) (S. Kirkpatrick, E. P. Stoll, J. Comput.
// Phys. 40 (1981) 517), and the clamp of uniform numbers into their interval.
#include "vector/kernels/kernel_prelude.h"
#include "vector/kernels/lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

constexpr int kWords = kR250Words, kLag = kR250Lag;

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

#ifdef __AVX2__

// Native types. Over bits, squaring a linear recurrence doubles its distances: so eight neighbouring words,
// taken as one, obey the recurrence of single words, y(k) = y(k - 8 * 250) ^ y(k - 8 * 147), and no register
// reads what has just been stored. The numbers are stored once, as their words come by.
constexpr int kLanes = 8;
constexpr int kRing = kLanes * kWords;

/// The words that follow the first 250 of y, for as many as count.
void next_words(uint32_t* y, int count) {
  int k = 0;
  for (; k + kLanes <= count; k += kLanes) {
    const __m256i first = _mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(y + k));
    const __m256i second = _mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(y + k + kLag));
    _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(y + k + kWords), _mm256_xor_si256(first, second));
  }
  for (; k < count; ++k) y[k + kWords] = y[k] ^ y[k + kLag];
}

/// r[i] = shift + w_i factor for eight words.
template <bool kStreamed>
[[gnu::always_inline]] inline void convert(__m256i w, double* r, doubles::reg shift, doubles::reg factor) {
#ifdef __AVX512F__
  put<kStreamed>(r, doubles::add(shift, doubles::mul(_mm512_maskz_cvtepu32_pd(doubles::kAll, w), factor)));
#else
  // A word becomes the mantissa of a number from 2^52 on, which is then taken away, both exactly.
  const __m256i exponent = _mm256_set1_epi64x(0x4330000000000000);
  const doubles::reg offset = doubles::all(4503599627370496.0);
  const __m256i low = _mm256_or_si256(_mm256_cvtepu32_epi64(_mm256_castsi256_si128(w)), exponent);
  const __m256i high = _mm256_or_si256(_mm256_cvtepu32_epi64(_mm256_extracti128_si256(w, 1)), exponent);
  const doubles::reg first = doubles::sub(_mm256_castsi256_pd(low), offset),
                     second = doubles::sub(_mm256_castsi256_pd(high), offset);
  put<kStreamed>(r, doubles::add(shift, doubles::mul(first, factor)));
  put<kStreamed>(r + 4, doubles::add(shift, doubles::mul(second, factor)));
#endif
}
void convert_words(const uint32_t* w, int n, double* r, double a, double scale) {
  int k = 0;
  for (; k + kLanes <= n; k += kLanes) {
    convert<false>(_mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(w + k)), r + k, doubles::all(a),
                   doubles::all(scale));
  }
  for (; k < n; ++k) set_element(r + k, a + static_cast<double>(w[k]) * scale);
}

/// count numbers, whole registers of them, from the ring's place p on; returns the place that follows.
template <bool kStreamed>
[[gnu::always_inline]] inline int turn_ring(uint32_t* ring, int p, int count, double* r, double a,
                                            double scale) {
  const doubles::reg shift = doubles::all(a), factor = doubles::all(scale);
  int q = (p + kLanes * kLag) % kRing;
  while (count > 0) {
    // Up to where either place wraps.
    int run = kRing - (p > q ? p : q);
    if (run > count) run = count;
    for (int k = 0; k < run; k += kLanes) {
      const __m256i old = _mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(ring + p + k));
      const __m256i partner = _mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(ring + q + k));
      const __m256i word = _mm256_xor_si256(old, partner);
      _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(ring + p + k), word);
      convert<kStreamed>(word, r + k, shift, factor);
    }
    p = p + run == kRing ? 0 : p + run;
    q = q + run == kRing ? 0 : q + run;
    r += run;
    count -= run;
  }
  return p;
}

/// The first words come from the recurrence of single words, up to a cache line; the ring goes on from them;
/// those that fill no register come from single words again.
void fill_long(r250_register& state, int n, double* r, double a, double scale, bool streamed) {
  alignas(64) uint32_t y[kWords + kRing + kLanes], ring[kRing];
  copy_in_order(state, y);
  int first = kRing + (streamed ? elements_ahead_of_line(r, kLanes) : 0);
  if (first > n) first = n;
  next_words(y, first);
  convert_words(y + kWords, first, r, a, scale);
  const uint32_t* last = y + first;  // the newest 250 words
  const int rest = (n - first) % kLanes, whole = n - first - rest;
  if (n > first) {
    copy_words(y + kWords + first - kRing, kRing, ring);
    const int p = streamed ? turn_ring<true>(ring, 0, whole, r + first, a, scale)
                           : turn_ring<false>(ring, 0, whole, r + first, a, scale);
    if (streamed) _mm_sfence();
    uint32_t* newest = y + kRing - kWords;
    copy_ring(ring, kRing, p, y);
    next_words(newest, rest);
    convert_words(newest + kWords, rest, r + n - rest, a, scale);
    last = newest + rest;
  }
  set_in_order(state, last);
}

#else

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

void fill_long(r250_register& state, int n, double* r, double a, double scale, bool) {
  for (; n >= kWords;) {
    const int piece = n < kPiece ? n : kPiece;
    fill_by_block(state, piece, r, a, scale);
    r += piece;
    n -= piece;
  }
  fill_by_word(state, n, r, a, scale);
}

#endif

}  // namespace

void QEL_VSL_NAME(r250_fill)(r250_register& state, int n, double* r, double a, double scale, bool streamed) {
  if (n < kWords) return fill_by_word(state, n, r, a, scale);
  fill_long(state, n, r, a, scale, streamed);
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
