// SPDX-License-Identifier: BSD-3-Clause
// The complex numbers of the class library.
#pragma once

namespace Tavik::Core {

/// A complex number: real part first, the same bytes as the numeric entries' pairs.
template <class Number>
struct Complex {
  Number Real = 0;  ///< real part
  Number Imag = 0;  ///< imaginary part

  constexpr Complex() = default;
  /// From its parts, or from a real number.
  constexpr Complex(Number real, Number imag) : Real(real), Imag(imag) {}
  constexpr Complex(Number real) : Real(real) {}  // NOLINT(google-explicit-constructor): reals are complex

  /// Arithmetic by parts, as rounded numbers give it.
  friend constexpr bool operator==(Complex a, Complex b) = default;
  friend constexpr Complex operator+(Complex a, Complex b) { return {a.Real + b.Real, a.Imag + b.Imag}; }
  friend constexpr Complex operator-(Complex a, Complex b) { return {a.Real - b.Real, a.Imag - b.Imag}; }
  friend constexpr Complex operator*(Complex a, Complex b) {
    return {a.Real * b.Real - a.Imag * b.Imag, a.Real * b.Imag + a.Imag * b.Real};
  }
  /// Smith's quotient (R. L. Smith, Comm. ACM 5 (1962) 435): scaled by the larger part of b, so that
  /// b's squares can't overflow.
  friend constexpr Complex operator/(Complex a, Complex b) {
    const Number real = b.Real < 0 ? -b.Real : b.Real, imag = b.Imag < 0 ? -b.Imag : b.Imag;
    if (imag <= real) {
      const Number ratio = b.Imag / b.Real, denominator = b.Real + b.Imag * ratio;
      return {(a.Real + a.Imag * ratio) / denominator, (a.Imag - a.Real * ratio) / denominator};
    }
    const Number ratio = b.Real / b.Imag, denominator = b.Real * ratio + b.Imag;
    return {(a.Real * ratio + a.Imag) / denominator, (a.Imag * ratio - a.Real) / denominator};
  }
};

/// The two precisions.
using DoubleComplex = Complex<double>;
using FloatComplex = Complex<float>;

}  // namespace Tavik::Core
