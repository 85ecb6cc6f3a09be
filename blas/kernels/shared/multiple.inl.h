// SPDX-License-Identifier: BSD-3-Clause
// The product alpha x of axpy and scal, for a register and for one element, with the same rounding in both:
// a complex product is (ar xr - ai xi, ar xi + ai xr), each part two products and one sum.
#pragma once

#include "blas/kernels/shared/lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class T>
struct multiple {
  typename lanes<T>::reg factor;
  T alpha;
  explicit multiple(T a) : factor(lanes<T>::all(a)), alpha(a) {}
  typename lanes<T>::reg of(typename lanes<T>::reg v) const { return lanes<T>::mul(factor, v); }
  T of_element(T v) const { return alpha * v; }
};
template <class C>
struct complex_multiple {
  using R = typename parts<C>::real;
  using L = lanes<R>;
  typename L::reg real, imag;
  C alpha;
  explicit complex_multiple(C a) : real(L::all(a.real)), imag(L::opposite(a.imag)), alpha(a) {}
  typename L::reg of(typename L::reg v) const {
    v = in_register(v);
    return L::add(L::mul(real, v), L::mul(imag, L::exchanged(v)));
  }
  C of_element(C v) const {
    return {alpha.real * v.real - alpha.imag * v.imag, alpha.real * v.imag + alpha.imag * v.real};
  }
};
template <>
struct multiple<complex8> : complex_multiple<complex8> {
  using complex_multiple::complex_multiple;
};
template <>
struct multiple<complex16> : complex_multiple<complex16> {
  using complex_multiple::complex_multiple;
};

}  // namespace
}  // namespace qel::QEL_LEVEL
