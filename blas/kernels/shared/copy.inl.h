// SPDX-License-Identifier: BSD-3-Clause
// y = x for all levels; bits are moved, so that every NaN arrives as it left.
// Contiguous: y is brought to a 16-byte boundary by peeling and stored with aligned stores, x is read with
// aligned loads or rebuilt from them; 16 registers a step, then 8, 4, 2, 1, then single elements. Complex
// numbers go as one double (single) or two. Strided: four elements a step, then two, then one, in order. A
// step stores nothing before it has loaded what stands at the same place, so a vector may be copied onto
// itself.
#pragma once

#include "blas/kernels/shared/streams.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R, class X, bool kAligned>
struct contiguous_copy {
  X x;
  R* y;
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
#pragma GCC unroll 16
    for (int k = 0; k < kRegisters; ++k) {
      R* at = y + k * lanes<R>::kCount;
      if (kAligned) {
        lanes<R>::store(at, x.get(k));
      } else {
        lanes<R>::storeu(at, x.get(k));
      }
    }
    x.advance(kRegisters);
    y += kRegisters * lanes<R>::kCount;
  }
};

template <class T>
inline void copy_elements(core_int n, const T* x, core_int incx, T* y, core_int incy) {
  const auto move = [&](core_int i) { set_element(y + i * incy, element_at(x + i * incx)); };
  for (; n >= 4; n -= 4, x += 4 * incx, y += 4 * incy) {
    move(0);
    move(1);
    move(2);
    move(3);
  }
  if (n >= 2) {
    move(0);
    move(1);
  }
  if (n % 2 != 0) move(n - 1);
}

template <bool kAligned, class R, class X>
inline void copy_stream(core_int n, X stream, const R* x, R* y) {
  contiguous_copy<R, X, kAligned> copy{stream, y};
  const core_int left = run_tiers<16, 8, 4, 2, 1>(copy, n, lanes<R>::kCount, X::kKeepBack);
  for (core_int i = n - left; i < n; ++i) set_element(y + i, element_at(x + i));
}

template <class R>
[[gnu::noinline]] void copy_misaligned(core_int n, const R* x, R* y) {
  constexpr core_int kLanes = lanes<R>::kCount;
  const core_int peeled = elements_to_boundary(y);
  if (peeled < 0 || n < peeled + 2 * kLanes) return copy_stream<false>(n, unaligned_stream<R>{x}, x, y);
  for (core_int i = 0; i < peeled; ++i) set_element(y + i, element_at(x + i));
  x += peeled;
  y += peeled;
  with_stream_beside_aligned(x, [&](auto stream) { copy_stream<true>(n - peeled, stream, x, y); });
}
template <class T>
[[gnu::noinline]] void copy_strided(core_int n, const T* x, core_int incx, T* y, core_int incy) {
  copy_elements(n, first_element(x, n, incx), incx, first_element(y, n, incy), incy);
}

// R is the unit of the contiguous copy, kUnits of which make one element. Aligned vectors are copied in line:
// a short copy is bound by its stores, and every register that a call saves is one more.
template <class R, int kUnits, class T>
inline void copy(core_int n, const T* x, core_int incx, T* y, core_int incy) {
  if (n <= 0) return;
  if (incx * incy != 1) return copy_strided(n, x, incx, y, incy);
  const R* from = reinterpret_cast<const R*>(x);
  R* to = reinterpret_cast<R*>(y);
  if ((misalignment(x) | misalignment(y)) != 0) return copy_misaligned(n * kUnits, from, to);
  copy_stream<true>(n * kUnits, aligned_stream<R>{from}, from, to);
}

}  // namespace

void scopy(const core_int* n, const float* x, const core_int* incx, float* y, const core_int* incy) {
  copy<float, 1>(*n, x, *incx, y, *incy);
}
void dcopy(const core_int* n, const double* x, const core_int* incx, double* y, const core_int* incy) {
  copy<double, 1>(*n, x, *incx, y, *incy);
}
void ccopy(const core_int* n, const complex8* x, const core_int* incx, complex8* y, const core_int* incy) {
  copy<double, 1>(*n, x, *incx, y, *incy);
}
void zcopy(const core_int* n, const complex16* x, const core_int* incx, complex16* y, const core_int* incy) {
  copy<double, 2>(*n, x, *incx, y, *incy);
}

}  // namespace qel::QEL_LEVEL
