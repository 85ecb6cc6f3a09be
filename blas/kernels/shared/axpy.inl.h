// SPDX-License-Identifier: BSD-3-Clause
// y = y + alpha x for all levels: multiply, then add, element by element, so that neither steps nor alignment
// show in the result.
// Contiguous: y is brought to a 16-byte boundary by peeling elements, if any number of them does, and x is
// read with aligned loads or rebuilt from them (complex: unaligned loads); 32 registers a step, then 16, 8,
// 4, 2, 1, then single elements; the generic level 8, 4, 1. Strided: four elements a step, strictly in order,
// since a stride of 0 adds up in one element.
#pragma once

#include "blas/kernels/shared/multiple.inl.h"
#include "blas/kernels/shared/streams.inl.h"

namespace qel::QEL_LEVEL {
namespace {

inline float sum_of(float a, float b) { return a + b; }
inline double sum_of(double a, double b) { return a + b; }
template <class C>
inline C sum_of(C a, C b) {
  return {a.real + b.real, a.imag + b.imag};
}

template <class T, class X, bool kAligned>
struct contiguous_axpy {
  using R = typename parts<T>::real;
  using L = lanes<R>;
  multiple<T> alpha_times;
  X x;
  R* y;
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
#pragma GCC unroll 32
    for (int k = 0; k < kRegisters; ++k) {
      R* at = y + k * L::kCount;
      const auto product = alpha_times.of(x.get(k));
      if (kAligned) {
        L::store(at, L::add(L::load(at), product));
      } else {
        L::storeu(at, L::add(L::loadu(at), product));
      }
    }
    x.advance(kRegisters);
    y += kRegisters * L::kCount;
  }
};

template <class T>
inline void axpy_elements(core_int n, const multiple<T>& alpha_times, const T* x, core_int incx, T* y,
                          core_int incy) {
  const auto update = [&](core_int i) {
    set_element(y + i * incy,
                sum_of(element_at(y + i * incy), alpha_times.of_element(element_at(x + i * incx))));
  };
  for (; n >= 4; n -= 4, x += 4 * incx, y += 4 * incy) {
    update(0);
    update(1);
    update(2);
    update(3);
  }
  for (core_int i = 0; i < n; ++i) update(i);
}

template <bool kAligned, class T, class X>
[[gnu::always_inline]] inline void axpy_stream(core_int n, const multiple<T>& alpha_times, X stream,
                                               const T* x, T* y) {
  using R = typename parts<T>::real;
  constexpr int kElements = lanes<R>::kCount / parts<T>::kCount;
  contiguous_axpy<T, X, kAligned> axpy{alpha_times, stream, reinterpret_cast<R*>(y)};
#ifdef QEL_LEVEL_l0_generic
  const core_int left = run_tiers<8, 4, 1>(axpy, n, kElements, X::kKeepBack);
#else
  const core_int left = run_tiers<32, 16, 8, 4, 2, 1>(axpy, n, kElements, X::kKeepBack);
#endif
  axpy_elements(left, alpha_times, x + (n - left), 1, y + (n - left), 1);
}

template <class T>
[[gnu::noinline]] void axpy_misaligned(core_int n, const multiple<T>& alpha_times, const T* x, T* y) {
  using R = typename parts<T>::real;
  constexpr core_int kElements = lanes<R>::kCount / parts<T>::kCount;
  const core_int peeled = elements_to_boundary(y);
  if (peeled < 0 || n < peeled + 2 * kElements) {
    axpy_stream<false>(n, alpha_times, unaligned_stream<R>{reinterpret_cast<const R*>(x)}, x, y);
    return;
  }
  axpy_elements(peeled, alpha_times, x, 1, y, 1);
  x += peeled;
  y += peeled;
  n -= peeled;
  const R* from_x = reinterpret_cast<const R*>(x);
  if constexpr (parts<T>::kCount == 1) {
    with_stream_beside_aligned(from_x, [&](auto stream) { axpy_stream<true>(n, alpha_times, stream, x, y); });
  } else if (misalignment(x) == 0) {
    axpy_stream<true>(n, alpha_times, aligned_stream<R>{from_x}, x, y);
  } else {
    axpy_stream<true>(n, alpha_times, unaligned_stream<R>{from_x}, x, y);
  }
}

template <class R>
inline bool is_zero(R a) {
  return a == 0;
}
inline bool is_zero(complex8 a) { return a.real == 0 && a.imag == 0; }
inline bool is_zero(complex16 a) { return a.real == 0 && a.imag == 0; }

template <class T>
[[gnu::noinline]] void axpy_strided(core_int n, const multiple<T>& alpha_times, const T* x, core_int incx,
                                    T* y, core_int incy) {
  axpy_elements(n, alpha_times, first_element(x, n, incx), incx, first_element(y, n, incy), incy);
}

// Aligned vectors are updated in line: a short update is bound by its stores, and every register that a call
// saves is one more.
template <class T>
inline void axpy(core_int n, T alpha, const T* x, core_int incx, T* y, core_int incy) {
  using R = typename parts<T>::real;
  if (n <= 0 || is_zero(alpha)) return;
  const multiple<T> alpha_times(alpha);
  if (incx * incy != 1) return axpy_strided(n, alpha_times, x, incx, y, incy);
  if ((misalignment(x) | misalignment(y)) != 0) return axpy_misaligned(n, alpha_times, x, y);
  axpy_stream<true>(n, alpha_times, aligned_stream<R>{reinterpret_cast<const R*>(x)}, x, y);
}

}  // namespace
}  // namespace qel::QEL_LEVEL

#include "blas/kernels/shared/axpy_exports.inl.h"
