// SPDX-License-Identifier: BSD-3-Clause
// Complex dot products for all levels, contiguous and strided.
//
// Order of summation from SSE3 on: four accumulator registers; the registers of y go alternately to number 0
// and 1, and there are two of each: `straight` receives y times x as stored (yr xr, yi xi), `crossed` y times
// x with its parts exchanged (yr xi, yi xr). A register holds one double or two single complex numbers, so
// element i belongs to class i mod 2 (single: i mod 4), whatever the stride and the alignment. At the end
// number 0 + number 1, for single then even + odd elements; and from the four real sums that remain
//   dotu  (yr xr - yi xi, yr xi + yi xr)        dotc  (yr xr + yi xi, yi xr - yr xi)
// From SSSE3 on vectors that both lie on a 16-byte boundary are read with aligned loads. The generic level
// has one straight and one crossed accumulator, which take the elements one by one.
#pragma once

#include "blas/kernels/shared/streams.inl.h"

namespace qel::QEL_LEVEL {
namespace {

// The sums of an accumulator's real and imaginary lanes.
inline void sums_by_part(__m128d v, double* part) { _mm_storeu_pd(part, v); }
inline void sums_by_part(__m128 v, float* part) {
  const __m128 sum = _mm_add_ps(v, _mm_movehl_ps(v, v));
  part[0] = _mm_cvtss_f32(sum);
  part[1] = _mm_cvtss_f32(_mm_shuffle_ps(sum, sum, 1));
}

template <bool kConjugate, class C>
inline C joined_sums(typename lanes<typename parts<C>::real>::reg straight_lanes,
                     typename lanes<typename parts<C>::real>::reg crossed_lanes) {
  typename parts<C>::real straight[2], crossed[2];
  sums_by_part(straight_lanes, straight);
  sums_by_part(crossed_lanes, crossed);
  if (kConjugate) return {straight[0] + straight[1], crossed[1] - crossed[0]};
  return {straight[0] - straight[1], crossed[0] + crossed[1]};
}

#ifdef QEL_LEVEL_l0_generic

inline __m128 one_element(const complex8* x) { return low_element(x); }
inline __m128d one_element(const complex16* x) { return gathered(x, 1); }

template <bool kConjugate, class C>
inline C dot_complex(core_int n, const C* x, core_int incx, const C* y, core_int incy) {
  using L = lanes<typename parts<C>::real>;
  if (n <= 0) return {0, 0};
  if (incx * incy == 1) incx = incy = 1;  // both -1 pair the same elements
  x = first_element(x, n, incx);
  y = first_element(y, n, incy);
  auto straight = L::zero(), crossed = L::zero();
  for (core_int i = 0; i < n; ++i) {
    const auto from_x = in_register(one_element(x + i * incx)),
               from_y = in_register(one_element(y + i * incy));
    straight = L::add(straight, L::mul(from_y, from_x));
    crossed = L::add(crossed, L::mul(from_y, L::exchanged(from_x)));
  }
  return joined_sums<kConjugate, C>(straight, crossed);
}

#else

template <class R, class X, class Y>
struct complex_dot {
  X x;
  Y y;
  typename lanes<R>::reg straight[2], crossed[2];
  int next = 0;
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
#pragma GCC unroll 16
    for (int k = 0; k < kRegisters; ++k) add(k % 2, in_register(x.get(k)), in_register(y.get(k)));
    next = kRegisters % 2;
    x.advance(kRegisters);
    y.advance(kRegisters);
  }
  void add(int number, typename lanes<R>::reg from_x, typename lanes<R>::reg from_y) {
    using L = lanes<R>;
    straight[number] = L::add(straight[number], L::mul(from_y, from_x));
    crossed[number] = L::add(crossed[number], L::mul(from_y, L::exchanged(from_x)));
  }
};

// The element that fills no register; a double one always does.
template <class Dot>
inline void add_last(Dot& dot, const complex8* x, const complex8* y) {
  // Constant numbers: one known only at run time would keep the accumulators in memory.
  if (dot.next == 0) {
    dot.add(0, low_element(x), low_element(y));
  } else {
    dot.add(1, low_element(x), low_element(y));
  }
}
template <class Dot>
inline void add_last(Dot&, const complex16*, const complex16*) {}

template <bool kConjugate, int... kTiers, class C, class X, class Y>
inline C dot_streams(core_int n, const C* x, core_int incx, const C* y, core_int incy, X from_x, Y from_y) {
  using R = typename parts<C>::real;
  using L = lanes<R>;
  complex_dot<R, X, Y> dot{from_x, from_y, {L::zero(), L::zero()}, {L::zero(), L::zero()}};
  const core_int left = run_tiers<kTiers...>(dot, n, L::kCount / 2, 0);
  if (left != 0) add_last(dot, x + (n - 1) * incx, y + (n - 1) * incy);
  return joined_sums<kConjugate, C>(L::add(dot.straight[0], dot.straight[1]),
                                    L::add(dot.crossed[0], dot.crossed[1]));
}

template <bool kConjugate, class C>
[[gnu::noinline]] C dot_complex_strided(core_int n, const C* x, core_int incx, const C* y, core_int incy) {
  x = first_element(x, n, incx);
  y = first_element(y, n, incy);
  constexpr int kGroup = 8 / lanes<typename parts<C>::real>::kCount;  // four elements
  return dot_streams<kConjugate, kGroup, 2, 1>(n, x, incx, y, incy, strided_stream<C>{x, incx},
                                               strided_stream<C>{y, incy});
}

template <bool kConjugate, class C>
inline C dot_complex(core_int n, const C* x, core_int incx, const C* y, core_int incy) {
  using R = typename parts<C>::real;
  if (n <= 0) return {0, 0};
  if (incx * incy != 1) return dot_complex_strided<kConjugate>(n, x, incx, y, incy);
  const R *from_x = reinterpret_cast<const R*>(x), *from_y = reinterpret_cast<const R*>(y);
#ifdef __SSSE3__
  if (misalignment(x) == 0 && misalignment(y) == 0) {
    return dot_streams<kConjugate, 4, 2, 1>(n, x, 1, y, 1, aligned_stream<R>{from_x},
                                            aligned_stream<R>{from_y});
  }
#endif
  // Four registers a step: with more, g++ loads so far ahead that accumulators move to memory.
  return dot_streams<kConjugate, 4, 2, 1>(n, x, 1, y, 1, unaligned_stream<R>{from_x},
                                          unaligned_stream<R>{from_y});
}

#endif

}  // namespace
}  // namespace qel::QEL_LEVEL

#include "blas/kernels/shared/dot_complex_exports.inl.h"
