// SPDX-License-Identifier: BSD-3-Clause
// Native axpy and scal. Contiguous vectors go register by register, others strictly element by element, since
// a stride of 0 adds up, or multiplies, in one element. axpy with alpha 0 returns before it looks at x; scal
// with alpha 1 touches nothing, with alpha 0 it multiplies, so NaN stays.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/l5_avx2/multiple.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R>
inline bool equals(R a, int real) {
  return a == static_cast<R>(real);
}
inline bool equals(complex8 a, int real) { return equals(a.real, real) && a.imag == 0; }
inline bool equals(complex16 a, int real) { return equals(a.real, real) && a.imag == 0; }

template <class T>
struct contiguous_axpy {
  using R = typename parts<T>::real;
  using W = wide<R>;
  const fused_multiple<T>& alpha_times;
  const R* x;
  R* y;
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
#pragma GCC unroll 8
    for (int k = 0; k < kRegisters; ++k) {
      R* at = y + k * W::kCount;
      W::store(at, alpha_times.added(W::load(x + k * W::kCount), W::load(at)));
    }
    x += kRegisters * W::kCount;
    y += kRegisters * W::kCount;
  }
  [[gnu::always_inline]] void part(core_int count) {
    const core_int reals = count * parts<T>::kCount;
    W::store_part(y, alpha_times.added(W::load_part(x, reals), W::load_part(y, reals)), reals);
  }
};

// Strided ways stand out of line, so that the contiguous ones save no registers.
template <class T>
[[gnu::noinline]] void axpy_strided(core_int n, T alpha, const T* x, core_int incx, T* y, core_int incy) {
  const fused_multiple<T> alpha_times(alpha);
  x = first_element(x, n, incx);
  y = first_element(y, n, incy);
#pragma GCC unroll 4
  for (core_int i = 0; i < n; ++i, x += incx, y += incy) {
    set_element(y, alpha_times.added_element(element_at(x), element_at(y)));
  }
}
template <class T>
inline void axpy(core_int n, T alpha, const T* x, core_int incx, T* y, core_int incy) {
  if (n <= 0 || equals(alpha, 0)) return;
  // Both strides 1 or both -1 pair the same elements.
  if (incx * incy != 1) return axpy_strided(n, alpha, x, incx, y, incy);
  using R = typename parts<T>::real;
  const fused_multiple<T> alpha_times(alpha);
  contiguous_axpy<T> op{alpha_times, reinterpret_cast<const R*>(x), reinterpret_cast<R*>(y)};
  run_registers<T, 8, 2, 1>(op, n);
}

template <class T>
struct contiguous_scal {
  using R = typename parts<T>::real;
  using W = wide<R>;
  const fused_multiple<T>& alpha_times;
  R* x;
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
#pragma GCC unroll 8
    for (int k = 0; k < kRegisters; ++k) {
      R* at = x + k * W::kCount;
      W::store(at, alpha_times.of(W::load(at)));
    }
    x += kRegisters * W::kCount;
  }
  [[gnu::always_inline]] void part(core_int count) {
    const core_int reals = count * parts<T>::kCount;
    W::store_part(x, alpha_times.of(W::load_part(x, reals)), reals);
  }
};

template <class T>
inline void scal_contiguous(core_int n, T alpha, T* x) {
  const fused_multiple<T> alpha_times(alpha);
  contiguous_scal<T> op{alpha_times, reinterpret_cast<typename parts<T>::real*>(x)};
  run_registers<T, 8, 2, 1>(op, n);
}
template <class T, class Product>
[[gnu::noinline]] void scal_strided(core_int n, T* x, core_int inc, Product product) {
  x = first_element(x, n, inc);
#pragma GCC unroll 4
  for (core_int i = 0; i < n; ++i, x += inc) set_element(x, product(element_at(x)));
}

template <class T>
inline void scal(core_int n, T alpha, T* x, core_int inc) {
  if (n <= 0 || equals(alpha, 1)) return;
  if (inc == 1 || inc == -1) return scal_contiguous(n, alpha, x);
  const fused_multiple<T> alpha_times(alpha);
  scal_strided(n, x, inc, [&](T v) { return alpha_times.of_element(v); });
}
/// A real factor sees a complex vector as twice as many reals.
template <class R, class C>
inline void real_scal(core_int n, R alpha, C* x, core_int inc) {
  if (n <= 0 || alpha == 1) return;
  if (inc == 1 || inc == -1) return scal_contiguous(2 * n, alpha, reinterpret_cast<R*>(x));
  scal_strided(n, x, inc, [=](C v) { return C{alpha * v.real, alpha * v.imag}; });
}

}  // namespace
}  // namespace qel::QEL_LEVEL

#include "blas/kernels/shared/axpy_exports.inl.h"
#include "blas/kernels/shared/scal_exports.inl.h"
