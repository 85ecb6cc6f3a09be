// SPDX-License-Identifier: BSD-3-Clause
// Inner loops of the portable BLAS. Here a strided vector is given by the address of its element 0 and a
// signed stride; n may be 0. Every loop has a contiguous form that the compiler vectorises: sums run in
// several independent lanes, since additions may not be reordered otherwise. Included by the sources of this
// folder only.
#pragma once

#include "service/complex_arithmetic.h"

namespace qel::plain {

/// Address of element 0 of a vector of n >= 1 elements that is given by its lowest address.
template <class T>
T* first_element(T* x, core_int n, core_int inc) {
  return inc < 0 ? x + (1 - n) * inc : x;
}

/// The numbers of a vector of T as a vector of reals: twice as many if T is complex.
template <class T>
const real_of<T>* as_reals(const T* x) {
  return reinterpret_cast<const real_of<T>*>(x);
}
template <class T>
real_of<T>* as_reals(T* x) {
  return reinterpret_cast<real_of<T>*>(x);
}
template <class T>
inline constexpr core_int kRealsOf = is_complex<T> ? 2 : 1;

/// Both strides -1: the same work as stride 1 from the other end.
template <class X, class Y>
void turn_forward(core_int n, X*& x, core_int& incx, Y*& y, core_int& incy) {
  if (incx == -1 && incy == -1 && n > 0) {
    x -= n - 1;
    y -= n - 1;
    incx = incy = 1;
  }
}

/// y += t x
template <bool kConjugate = false, class T>
void add_multiple(core_int n, T t, const T* x, core_int incx, T* y, core_int incy) {
  turn_forward(n, x, incx, y, incy);
  if (incx == 1 && incy == 1) {
    for (core_int i = 0; i < n; ++i) y[i] += t * conj_if<kConjugate>(x[i]);
    return;
  }
  for (core_int i = 0; i < n; ++i) y[i * incy] += t * conj_if<kConjugate>(x[i * incx]);
}

template <class R>
R sum_of_lanes(const R (&lane)[8]) {
  return ((lane[0] + lane[1]) + (lane[2] + lane[3])) + ((lane[4] + lane[5]) + (lane[6] + lane[7]));
}

/// Sum of x_i y_i over n contiguous reals; element i goes to lane i mod 8.
template <class R>
R contiguous_product(core_int n, const R* x, const R* y) {
  constexpr core_int kLanes = 8;
  R lanes[kLanes] = {};
  core_int i = 0;
  for (; i + kLanes <= n; i += kLanes) {
    for (core_int l = 0; l < kLanes; ++l) lanes[l] += x[i + l] * y[i + l];
  }
  for (core_int l = 0; i < n; ++i, ++l) lanes[l] += x[i] * y[i];
  return sum_of_lanes(lanes);
}

/// The complex sum from the four real sums re*re, im*im, re*im, im*re of (x, y).
template <bool kConjugate, complex_pair T>
T joined_sums(real_of<T> re_re, real_of<T> im_im, real_of<T> re_im, real_of<T> im_re) {
  if constexpr (kConjugate) return {re_re + im_im, re_im - im_re};
  return {re_re - im_im, re_im + im_re};
}

/// Sum of x_i y_i over n contiguous complex numbers; lane 2l holds products with re(x), lane 2l+1 with im(x).
template <bool kConjugate, complex_pair T>
T contiguous_complex_product(core_int n, const T* x, const T* y) {
  using R = real_of<T>;
  constexpr core_int kLanes = 8;
  const R *xr = as_reals(x), *yr = as_reals(y);
  R straight[kLanes] = {}, crossed[kLanes] = {};
  core_int i = 0;
  for (; i + kLanes <= 2 * n; i += kLanes) {
    for (core_int l = 0; l < kLanes; ++l) {
      straight[l] += xr[i + l] * yr[i + l];
      crossed[l] += xr[i + l] * yr[i + (l ^ 1)];
    }
  }
  for (; i < 2 * n; i += 2) {
    for (core_int l = 0; l < 2; ++l) {
      straight[l] += xr[i + l] * yr[i + l];
      crossed[l] += xr[i + l] * yr[i + (l ^ 1)];
    }
  }
  const auto sum = [](const R* lane) { return (lane[0] + lane[4]) + (lane[2] + lane[6]); };
  return joined_sums<kConjugate, T>(sum(straight), sum(straight + 1), sum(crossed), sum(crossed + 1));
}

/// Sum of x_i y_i, of conj(x_i) y_i with kConjugate.
template <bool kConjugate = false, class T>
T inner_product(core_int n, const T* x, core_int incx, const T* y, core_int incy) {
  turn_forward(n, x, incx, y, incy);
  if (incx == 1 && incy == 1) {
    if constexpr (is_complex<T>) {
      return contiguous_complex_product<kConjugate>(n, x, y);
    } else {
      return contiguous_product(n, x, y);
    }
  }
  T even{}, odd{};
  core_int i = 0;
  for (; i + 2 <= n; i += 2) {
    even += conj_if<kConjugate>(x[i * incx]) * y[i * incy];
    odd += conj_if<kConjugate>(x[(i + 1) * incx]) * y[(i + 1) * incy];
  }
  if (i < n) even += conj_if<kConjugate>(x[i * incx]) * y[i * incy];
  return even + odd;
}

}  // namespace qel::plain
