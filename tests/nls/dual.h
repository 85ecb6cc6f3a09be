// SPDX-License-Identifier: BSD-3-Clause
// A number with its derivative in one direction, so that each test problem is written once.
#pragma once

#include <cmath>

namespace qel::test {

struct dual {
  double value = 0, slope = 0;
  constexpr dual() = default;
  constexpr dual(double v, double s = 0) : value(v), slope(s) {}  // NOLINT(google-explicit-constructor)

  friend dual operator+(dual a, dual b) { return {a.value + b.value, a.slope + b.slope}; }
  friend dual operator-(dual a, dual b) { return {a.value - b.value, a.slope - b.slope}; }
  friend dual operator-(dual a) { return {-a.value, -a.slope}; }
  friend dual operator*(dual a, dual b) { return {a.value * b.value, a.slope * b.value + a.value * b.slope}; }
  friend dual operator/(dual a, dual b) {
    const double quotient = a.value / b.value;
    return {quotient, (a.slope - quotient * b.slope) / b.value};
  }
};
inline dual exp(dual a) { return {std::exp(a.value), std::exp(a.value) * a.slope}; }
inline dual cos(dual a) { return {std::cos(a.value), -std::sin(a.value) * a.slope}; }
inline dual sin(dual a) { return {std::sin(a.value), std::cos(a.value) * a.slope}; }
inline dual sqrt(dual a) { return {std::sqrt(a.value), a.slope / (2 * std::sqrt(a.value))}; }
/// base constant
inline dual pow(double base, dual a) {
  const double p = std::pow(base, a.value);
  return {p, p * std::log(base) * a.slope};
}
/// atan(y / x) / (2 pi), half a turn more for negative x.
inline dual turn(dual y, dual x) {
  const dual q = y / x;
  constexpr double kTurn = 6.283185307179586;
  const double angle = std::atan(q.value) / kTurn + (x.value < 0 ? 0.5 : 0);
  return {angle, q.slope / (1 + q.value * q.value) / kTurn};
}
template <class T>
T square(T a) {
  return a * a;
}

}  // namespace qel::test
