// SPDX-License-Identifier: BSD-3-Clause
// Native copies, exchanges, and the plane rotations, which are a 2 by 2 matrix applied to every pair
// (x_i, y_i): for rot (c, s; -s, c), for rotm as its parameters say.
// Contiguous vectors go register by register; a step of a copy loads everything before it stores, so a vector
// may be copied onto itself and downwards. Others go strictly element by element.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/l5_avx2/wide.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R>
struct contiguous_copy {
  using W = wide<R>;
  const R* x;
  R* y;
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
    typename W::reg v[kRegisters];
#pragma GCC unroll 8
    for (int k = 0; k < kRegisters; ++k) v[k] = W::load(x + k * W::kCount);
#pragma GCC unroll 8
    for (int k = 0; k < kRegisters; ++k) W::store(y + k * W::kCount, v[k]);
    x += kRegisters * W::kCount;
    y += kRegisters * W::kCount;
  }
  [[gnu::always_inline]] void part(core_int count) { W::store_part(y, W::load_part(x, count), count); }
};

template <class R>
struct contiguous_swap {
  using W = wide<R>;
  R *x, *y;
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
#pragma GCC unroll 8
    for (int k = 0; k < kRegisters; ++k) {
      const auto from_x = W::load(x + k * W::kCount), from_y = W::load(y + k * W::kCount);
      W::store(x + k * W::kCount, from_y);
      W::store(y + k * W::kCount, from_x);
    }
    x += kRegisters * W::kCount;
    y += kRegisters * W::kCount;
  }
  [[gnu::always_inline]] void part(core_int count) {
    const auto from_x = W::load_part(x, count), from_y = W::load_part(y, count);
    W::store_part(x, from_y, count);
    W::store_part(y, from_x, count);
  }
};

// Calls each(x_i, y_i) for every pair of addresses. Out of line, so that the contiguous ways save no
// registers.
template <class X, class Y, class Each>
[[gnu::noinline]] void for_pairs(core_int n, X* x, core_int incx, Y* y, core_int incy, const Each& each) {
  x = first_element(x, n, incx);
  y = first_element(y, n, incy);
#pragma GCC unroll 4
  for (core_int i = 0; i < n; ++i, x += incx, y += incy) each(x, y);
}

// Bits are moved, so float and double serve complex numbers as well. Both strides 1 or both -1 pair the same
// elements.
template <class T>
inline void copy(core_int n, const T* x, core_int incx, T* y, core_int incy) {
  using R = typename parts<T>::real;
  if (n <= 0) return;
  if (incx * incy != 1) {
    return for_pairs(n, x, incx, y, incy, [](const T* from, T* to) { set_element(to, element_at(from)); });
  }
  contiguous_copy<R> op{reinterpret_cast<const R*>(x), reinterpret_cast<R*>(y)};
  run_registers<R, 8, 2, 1>(op, n * parts<T>::kCount);
}

template <class T>
inline void swap(core_int n, T* x, core_int incx, T* y, core_int incy) {
  using R = typename parts<T>::real;
  if (n <= 0) return;
  if (incx * incy != 1) {
    return for_pairs(n, x, incx, y, incy, [](T* at_x, T* at_y) {
      const T from_x = element_at(at_x);
      set_element(at_x, element_at(at_y));
      set_element(at_y, from_x);
    });
  }
  contiguous_swap<R> op{reinterpret_cast<R*>(x), reinterpret_cast<R*>(y)};
  run_registers<R, 4, 1>(op, n * parts<T>::kCount);
}

/// x = h11 x + h12 y, y = h22 y + h21 x; the second product is rounded before the first is added to it.
template <class R>
struct pair_matrix {
  using W = wide<R>;
  R h11, h21, h12, h22;
  R x_of(R x, R y) const { return fused(h11, x, h12 * y); }
  R y_of(R x, R y) const { return fused(h22, y, h21 * x); }
  template <class C>
  C x_of(C x, C y) const {
    return {x_of(x.real, y.real), x_of(x.imag, y.imag)};
  }
  template <class C>
  C y_of(C x, C y) const {
    return {y_of(x.real, y.real), y_of(x.imag, y.imag)};
  }
};

template <class R>
struct contiguous_pairs {
  using W = wide<R>;
  using reg = typename W::reg;
  reg h11, h21, h12, h22;
  R *x, *y;
  contiguous_pairs(const pair_matrix<R>& h, R* to_x, R* to_y)
      : h11(W::all(h.h11)), h21(W::all(h.h21)), h12(W::all(h.h12)), h22(W::all(h.h22)), x(to_x), y(to_y) {}
  reg x_of(reg from_x, reg from_y) const { return W::fused(h11, from_x, W::mul(h12, from_y)); }
  reg y_of(reg from_x, reg from_y) const { return W::fused(h22, from_y, W::mul(h21, from_x)); }
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
#pragma GCC unroll 8
    for (int k = 0; k < kRegisters; ++k) {
      const reg from_x = W::load(x + k * W::kCount), from_y = W::load(y + k * W::kCount);
      W::store(x + k * W::kCount, x_of(from_x, from_y));
      W::store(y + k * W::kCount, y_of(from_x, from_y));
    }
    x += kRegisters * W::kCount;
    y += kRegisters * W::kCount;
  }
  [[gnu::always_inline]] void part(core_int count) {
    const reg from_x = W::load_part(x, count), from_y = W::load_part(y, count);
    W::store_part(x, x_of(from_x, from_y), count);
    W::store_part(y, y_of(from_x, from_y), count);
  }
};

template <class T>
inline void turn_pairs(core_int n, const pair_matrix<typename parts<T>::real>& h, T* x, core_int incx, T* y,
                       core_int incy) {
  using R = typename parts<T>::real;
  if (incx * incy != 1) {
    return for_pairs(n, x, incx, y, incy, [h](T* at_x, T* at_y) {
      const T from_x = element_at(at_x), from_y = element_at(at_y);
      set_element(at_x, h.x_of(from_x, from_y));
      set_element(at_y, h.y_of(from_x, from_y));
    });
  }
  contiguous_pairs<R> op(h, reinterpret_cast<R*>(x), reinterpret_cast<R*>(y));
  run_registers<R, 4, 1>(op, n * parts<T>::kCount);
}

template <class T, class R>
inline void rot(core_int n, T* x, core_int incx, T* y, core_int incy, R c, R s) {
  if (n > 0) turn_pairs(n, pair_matrix<R>{c, -s, s, c}, x, incx, y, incy);
}

/// The flag in param[0] tells which entries of the matrix are implied: -2 all of the unit matrix, 0 the ones
/// on the diagonal, 1 those beside it, 1 above and -1 below.
template <class R>
inline void rotm(core_int n, R* x, core_int incx, R* y, core_int incy, const R* param) {
  const R flag = param[0];
  if (n <= 0 || flag == -2) return;
  const bool unit_diagonal = flag == 0, unit_beside = flag > 0;
  turn_pairs(n,
             pair_matrix<R>{unit_diagonal ? 1 : param[1], unit_beside ? -1 : param[2],
                            unit_beside ? 1 : param[3], unit_diagonal ? 1 : param[4]},
             x, incx, y, incy);
}

}  // namespace

void scopy(const core_int* n, const float* x, const core_int* incx, float* y, const core_int* incy) {
  copy(*n, x, *incx, y, *incy);
}
void dcopy(const core_int* n, const double* x, const core_int* incx, double* y, const core_int* incy) {
  copy(*n, x, *incx, y, *incy);
}
void ccopy(const core_int* n, const complex8* x, const core_int* incx, complex8* y, const core_int* incy) {
  copy(*n, x, *incx, y, *incy);
}
void zcopy(const core_int* n, const complex16* x, const core_int* incx, complex16* y, const core_int* incy) {
  copy(*n, x, *incx, y, *incy);
}

void sswap(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy) {
  swap(*n, x, *incx, y, *incy);
}
void dswap(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy) {
  swap(*n, x, *incx, y, *incy);
}
void cswap(const core_int* n, complex8* x, const core_int* incx, complex8* y, const core_int* incy) {
  swap(*n, x, *incx, y, *incy);
}
void zswap(const core_int* n, complex16* x, const core_int* incx, complex16* y, const core_int* incy) {
  swap(*n, x, *incx, y, *incy);
}

void srot(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy, const float* c,
          const float* s) {
  rot(*n, x, *incx, y, *incy, *c, *s);
}
void drot(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy,
          const double* c, const double* s) {
  rot(*n, x, *incx, y, *incy, *c, *s);
}
void csrot(const core_int* n, complex8* x, const core_int* incx, complex8* y, const core_int* incy,
           const float* c, const float* s) {
  rot(*n, x, *incx, y, *incy, *c, *s);
}
void zdrot(const core_int* n, complex16* x, const core_int* incx, complex16* y, const core_int* incy,
           const double* c, const double* s) {
  rot(*n, x, *incx, y, *incy, *c, *s);
}

void srotm(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy,
           const float* param) {
  rotm(*n, x, *incx, y, *incy, param);
}
void drotm(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy,
           const double* param) {
  rotm(*n, x, *incx, y, *incy, param);
}

}  // namespace qel::QEL_LEVEL
