// SPDX-License-Identifier: BSD-3-Clause
// alpha x and alpha x + y of the native axpy and scal, for a register and for one element, with the same
// roundings in both, so that neither steps nor strides show in the result. A real sum is rounded once. A
// complex part is two fused steps, the real part of alpha first.
#pragma once

#include "blas/kernels/l5_avx2/wide.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class T>
struct fused_multiple {
  using W = wide<T>;
  typename W::reg factor;
  T alpha;
  explicit fused_multiple(T a) : factor(W::all(a)), alpha(a) {}
  typename W::reg of(typename W::reg x) const { return W::mul(factor, x); }
  typename W::reg added(typename W::reg x, typename W::reg y) const { return W::fused(factor, x, y); }
  T of_element(T x) const { return alpha * x; }
  T added_element(T x, T y) const { return fused(alpha, x, y); }
};

template <class C>
struct fused_complex_multiple {
  using R = typename parts<C>::real;
  using W = wide<R>;
  typename W::reg real, imag;
  C alpha;
  explicit fused_complex_multiple(C a) : real(W::all(a.real)), imag(W::opposite(a.imag)), alpha(a) {}
  typename W::reg of(typename W::reg x) const {
    x = in_register(x);
    return W::fused(imag, W::exchanged(x), W::mul(real, x));
  }
  typename W::reg added(typename W::reg x, typename W::reg y) const {
    x = in_register(x);
    return W::fused(imag, W::exchanged(x), W::fused(real, x, y));
  }
  C of_element(C x) const {
    return {fused(-alpha.imag, x.imag, alpha.real * x.real), fused(alpha.imag, x.real, alpha.real * x.imag)};
  }
  C added_element(C x, C y) const {
    return {fused(-alpha.imag, x.imag, fused(alpha.real, x.real, y.real)),
            fused(alpha.imag, x.real, fused(alpha.real, x.imag, y.imag))};
  }
};
template <>
struct fused_multiple<complex8> : fused_complex_multiple<complex8> {
  using fused_complex_multiple::fused_complex_multiple;
};
template <>
struct fused_multiple<complex16> : fused_complex_multiple<complex16> {
  using fused_complex_multiple::fused_complex_multiple;
};

}  // namespace
}  // namespace qel::QEL_LEVEL
