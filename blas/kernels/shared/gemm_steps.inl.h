// SPDX-License-Identifier: BSD-3-Clause
// Steps of a register tile along the depth. The instructions of a step are written one by one: left alone,
// g++ would reorder the sums, spill some and copy others. Their order matters, because the processor hands
// them to its multipliers and adders by turns.
#pragma once

#include "blas/kernels/shared/gemm_lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// Keeps g++ from loading a value again, which would cost more than a copy.
template <class Reg>
[[gnu::always_inline]] inline Reg loaded_once(Reg value) {
#ifndef QEL_LEVEL_l4_avx
  asm volatile("" : "+x"(value));
#endif
  return value;
}

/// How far A is fetched ahead, in bytes.
inline constexpr int kFetchAhead = 0x600;

/// The depth in unrolled rounds of kSteps, then what is left. A is fetched every kFetchStep bytes.
template <int kSteps, int kStepA, int kFetchStep, class Tile, class R, class B>
[[gnu::always_inline]] inline void run_depth(Tile& tile, core_int depth, const R* a, B b) {
  for (; depth >= kSteps; depth -= kSteps, a += kSteps * kStepA, b.advance(kSteps)) {
#pragma GCC unroll 4
    for (int at = 0; at < kSteps * kStepA * static_cast<int>(sizeof(R)); at += kFetchStep) {
      _mm_prefetch(reinterpret_cast<const char*>(a) + kFetchAhead + at, _MM_HINT_T0);
    }
#pragma GCC unroll 8
    for (int l = 0; l < kSteps; ++l) tile.step(l, a + l * kStepA, b);
  }
  for (; depth > 0; --depth, a += kStepA, b.advance(1)) tile.step(0, a, b);
}

/// Which register comes second in a step: the one that follows in memory, or the first with neighbours
/// swapped.
enum class second_register { next, swapped };

#ifdef QEL_LEVEL_l4_avx
[[gnu::always_inline]] inline __m256d product(__m256d a, __m256d b) {
  __m256d p;
  asm volatile("vmulpd %2, %1, %0" : "=x"(p) : "x"(a), "x"(b));
  return p;
}
[[gnu::always_inline]] inline __m256 product(__m256 a, __m256 b) {
  __m256 p;
  asm volatile("vmulps %2, %1, %0" : "=x"(p) : "x"(a), "x"(b));
  return p;
}
[[gnu::always_inline]] inline void accumulate(__m256d& sum, __m256d p) {
  asm volatile("vaddpd %1, %0, %0" : "+x"(sum) : "x"(p));
}
[[gnu::always_inline]] inline void accumulate(__m256& sum, __m256 p) {
  asm volatile("vaddps %1, %0, %0" : "+x"(sum) : "x"(p));
}

/// One step of eight sums, sum[2 q + x]: two registers of A (x) times four of B (q).
template <second_register, class L, class R, class B>
[[gnu::always_inline]] inline void two_by_four(typename L::reg (&sum)[8], int l, const R* a, const B& b) {
  const typename L::reg first = L::load(a), second = L::load(a + L::kCount);
#pragma GCC unroll 4
  for (int q = 0; q < 4; ++q) {
    const typename L::reg factor = b.get(l, q);
    const typename L::reg above = product(first, factor), below = product(second, factor);
    accumulate(sum[2 * q], above);
    accumulate(sum[2 * q + 1], below);
  }
}
#else
/// sum += kept spent; the product takes the place of `spent`, which is copied if it is used again.
[[gnu::always_inline]] inline void add_product(__m128d& sum, __m128d kept, __m128d spent) {
  asm volatile("mulpd %1, %0" : "+x"(spent) : "x"(kept));
  asm volatile("addpd %1, %0" : "+x"(sum) : "x"(spent));
}
[[gnu::always_inline]] inline void add_product(__m128& sum, __m128 kept, __m128 spent) {
  asm volatile("mulps %1, %0" : "+x"(spent) : "x"(kept));
  asm volatile("addps %1, %0" : "+x"(sum) : "x"(spent));
}

/// One step of a register of A times many of B.
template <class L, int kMany, class R, class B>
[[gnu::always_inline]] inline void one_by_many(typename L::reg (&sum)[kMany], int l, const R* a, const B& b) {
  const typename L::reg factor = L::load(a);
#pragma GCC unroll 12
  for (int q = 0; q < kMany; ++q) add_product(sum[q], factor, b.get(l, q));
}
/// Eight sums of a step in one statement, so that the sums stay in their registers. `next` makes the second
/// register of A, `load` reads one of B.
#define QEL_EIGHT_SUMS(ps, load, next)                                                                 \
  asm volatile(                                                                                        \
      "movaps %[a], %[first]\n\t" next "\n\t" load                                                     \
      " %[b0], %[factor]\n\t"                                                                          \
      "movaps %[first], %[copy]\n\tmul" ps " %[factor], %[copy]\n\tadd" ps                             \
      " %[copy], %[s0]\n\t"                                                                            \
      "mul" ps " %[second], %[factor]\n\tadd" ps " %[factor], %[s1]\n\t" load                          \
      " %[b1], %[factor]\n\t"                                                                          \
      "movaps %[first], %[copy]\n\tmul" ps " %[factor], %[copy]\n\tadd" ps                             \
      " %[copy], %[s2]\n\t"                                                                            \
      "mul" ps " %[second], %[factor]\n\tadd" ps " %[factor], %[s3]\n\t" load                          \
      " %[b2], %[factor]\n\t"                                                                          \
      "movaps %[first], %[copy]\n\tmul" ps " %[factor], %[copy]\n\tadd" ps                             \
      " %[copy], %[s4]\n\t"                                                                            \
      "mul" ps " %[second], %[factor]\n\tadd" ps " %[factor], %[s5]\n\t" load                          \
      " %[b3], %[factor]\n\t"                                                                          \
      "mul" ps " %[factor], %[first]\n\tadd" ps                                                        \
      " %[first], %[s6]\n\t"                                                                           \
      "mul" ps " %[second], %[factor]\n\tadd" ps " %[factor], %[s7]"                                   \
      : [s0] "+x"(sum[0]), [s1] "+x"(sum[1]), [s2] "+x"(sum[2]), [s3] "+x"(sum[3]), [s4] "+x"(sum[4]), \
        [s5] "+x"(sum[5]), [s6] "+x"(sum[6]), [s7] "+x"(sum[7]), [first] "=&x"(first),                 \
        [second] "=&x"(second), [factor] "=&x"(factor), [copy] "=&x"(copy)                             \
      : [a] "m"(a[0]), [below] "m"(*below), [b0] "m"(b[0]), [b1] "m"(b[1]), [b2] "m"(b[2]), [b3] "m"(b[3]))

/// How a register of B is read: as it is in memory, as 8 bytes of that twice, or with more than one
/// instruction.
enum class read_of_b { whole, twice, made };
#ifdef __SSE3__
inline constexpr read_of_b kTwice = read_of_b::twice;
#else
inline constexpr read_of_b kTwice = read_of_b::made;
#endif

template <second_register kSecond, bool kWhole, class Reg, class B>
[[gnu::always_inline]] inline void eight_sums(Reg (&sum)[8], const Reg* a, const B* b) {
  constexpr bool kNext = kSecond == second_register::next;
  Reg first, second, factor, copy;
  const Reg* const below = a + (kNext ? 1 : 0);
  if constexpr (sizeof(first[0]) == 4) {
    if constexpr (kNext && kWhole) QEL_EIGHT_SUMS("ps", "movaps", "movaps %[below], %[second]");
    if constexpr (kNext && !kWhole) QEL_EIGHT_SUMS("ps", "movddup", "movaps %[below], %[second]");
    if constexpr (!kNext && kWhole) QEL_EIGHT_SUMS("ps", "movaps", "pshufd $0xb1, %[first], %[second]");
    if constexpr (!kNext && !kWhole) QEL_EIGHT_SUMS("ps", "movddup", "pshufd $0xb1, %[first], %[second]");
  } else {
    if constexpr (kNext && kWhole) QEL_EIGHT_SUMS("pd", "movaps", "movaps %[below], %[second]");
    if constexpr (kNext && !kWhole) QEL_EIGHT_SUMS("pd", "movddup", "movaps %[below], %[second]");
    if constexpr (!kNext && kWhole) QEL_EIGHT_SUMS("pd", "movaps", "pshufd $0x4e, %[first], %[second]");
    if constexpr (!kNext && !kWhole) QEL_EIGHT_SUMS("pd", "movddup", "pshufd $0x4e, %[first], %[second]");
  }
}
#undef QEL_EIGHT_SUMS

/// One step of eight sums, sum[2 q + x]: two registers of A (x) times four of B (q).
template <second_register kSecond, class L, class R, class B>
[[gnu::always_inline]] inline void two_by_four(typename L::reg (&sum)[8], int l, const R* a, const B& b) {
  using reg = typename L::reg;
  if constexpr (B::kRead == read_of_b::made) {
    const reg first = L::load(a);
    const reg second = kSecond == second_register::next ? L::load(a + L::kCount) : L::swapped(first);
#pragma GCC unroll 4
    for (int q = 0; q < 4; ++q) {
      const reg factor = b.get(l, q);
      add_product(sum[2 * q], factor, first);
      add_product(sum[2 * q + 1], second, factor);
    }
  } else if constexpr (B::kRead == read_of_b::whole) {
    eight_sums<kSecond, true>(sum, reinterpret_cast<const reg*>(a), reinterpret_cast<const reg*>(b.step(l)));
  } else {
    eight_sums<kSecond, false>(sum, reinterpret_cast<const reg*>(a),
                               reinterpret_cast<const anywhere<double>*>(b.step(l)));
  }
}
#endif

}  // namespace
}  // namespace qel::QEL_LEVEL
