// SPDX-License-Identifier: BSD-3-Clause
// Arithmetic of the core's complex pairs, for templates over the four element types. Products are the plain
// four-multiplication formula (no repair of infinities, as in Fortran), quotients are Smith's
// (R. L. Smith, Comm. ACM 5 (1962) 435) so that they don't overflow early.
#pragma once

#include <cmath>

#include "service/core_types.h"

namespace qel {

template <class T>
struct real_type {
  using type = T;
};
template <>
struct real_type<complex8> {
  using type = float;
};
template <>
struct real_type<complex16> {
  using type = double;
};
/// float for float and complex8, double for double and complex16.
template <class T>
using real_of = typename real_type<T>::type;

template <class T>
inline constexpr bool is_complex = !__is_same(T, real_of<T>);

template <class T>
concept complex_pair = is_complex<T>;

template <complex_pair T>
constexpr T operator+(T a, T b) {
  return {a.real + b.real, a.imag + b.imag};
}
template <complex_pair T>
constexpr T operator-(T a, T b) {
  return {a.real - b.real, a.imag - b.imag};
}
template <complex_pair T>
constexpr T operator-(T a) {
  return {-a.real, -a.imag};
}
template <complex_pair T>
constexpr T operator*(T a, T b) {
  return {a.real * b.real - a.imag * b.imag, a.real * b.imag + a.imag * b.real};
}
template <complex_pair T>
constexpr T operator*(real_of<T> a, T b) {
  return {a * b.real, a * b.imag};
}
template <complex_pair T>
constexpr T operator/(T a, T b) {
  using R = real_of<T>;
  const R abs_real = b.real < 0 ? -b.real : b.real;
  const R abs_imag = b.imag < 0 ? -b.imag : b.imag;
  if (abs_real < abs_imag) {
    const R ratio = b.real / b.imag, denominator = (b.real * ratio) + b.imag;
    return {((a.real * ratio) + a.imag) / denominator, ((a.imag * ratio) - a.real) / denominator};
  }
  const R ratio = b.imag / b.real, denominator = (b.imag * ratio) + b.real;
  return {((a.imag * ratio) + a.real) / denominator, (a.imag - (a.real * ratio)) / denominator};
}
template <complex_pair T>
constexpr T& operator+=(T& a, T b) {
  return a = a + b;
}
template <complex_pair T>
constexpr T& operator-=(T& a, T b) {
  return a = a - b;
}
template <complex_pair T>
constexpr T& operator*=(T& a, T b) {
  return a = a * b;
}
template <complex_pair T>
constexpr bool operator==(T a, T b) {
  return a.real == b.real && a.imag == b.imag;
}

template <class T>
constexpr T conj(T a) {
  if constexpr (is_complex<T>) {
    return {a.real, -a.imag};
  } else {
    return a;
  }
}
/// conj(a) if wanted, else a.
template <bool kConjugate, class T>
constexpr T conj_if(T a) {
  if constexpr (kConjugate) return conj(a);
  return a;
}
template <class T>
constexpr real_of<T> real_part(T a) {
  if constexpr (is_complex<T>) {
    return a.real;
  } else {
    return a;
  }
}
/// The value r of the real type as an element of T.
template <class T>
constexpr T from_real(real_of<T> r) {
  if constexpr (is_complex<T>) {
    return {r, 0};
  } else {
    return r;
  }
}
/// |re| + |im|, the size by which complex pivots and maxima are compared.
template <class T>
inline real_of<T> abs1(T a) {
  if constexpr (is_complex<T>) {
    return std::fabs(a.real) + std::fabs(a.imag);
  } else {
    return std::fabs(a);
  }
}

}  // namespace qel
