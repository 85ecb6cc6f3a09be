// SPDX-License-Identifier: BSD-3-Clause
// Matrices of complex doubles, with the few operations that residuals need in plain loops.
#pragma once

#include <algorithm>
#include <limits>
#include <vector>

#include "tests/lapack/matrices.h"

namespace qel::lapack {

using qel::operator*;  // else hidden by the product below

/// A matrix of doubles to compare with.
struct wide_matrix {
  core_int m, n;
  std::vector<wide> cells;
  wide_matrix(core_int rows, core_int columns)
      : m(rows), n(columns), cells(static_cast<size_t>(rows * columns)) {}
  wide& operator()(core_int i, core_int j) { return cells[static_cast<size_t>(i + j * m)]; }
  const wide& operator()(core_int i, core_int j) const { return cells[static_cast<size_t>(i + j * m)]; }
};
template <class Cell>
wide_matrix filled(core_int m, core_int n, const Cell& cell) {
  wide_matrix out(m, n);
  for (core_int j = 0; j < n; ++j) {
    for (core_int i = 0; i < m; ++i) out(i, j) = cell(i, j);
  }
  return out;
}
inline wide_matrix operator*(const wide_matrix& a, const wide_matrix& b) {
  wide_matrix out(a.m, b.n);
  for (core_int j = 0; j < b.n; ++j) {
    for (core_int k = 0; k < a.n; ++k) {
      for (core_int i = 0; i < a.m; ++i) out(i, j) += a(i, k) * b(k, j);
    }
  }
  return out;
}
inline wide_matrix turned(const wide_matrix& a, bool conjugated) {
  return filled(a.n, a.m, [&](core_int i, core_int j) { return conjugated ? std::conj(a(j, i)) : a(j, i); });
}
template <class T>
wide_matrix whole(const matrix<T>& a) {
  return filled(a.m, a.n, [&](core_int i, core_int j) { return widened(a(i, j)); });
}
template <class T>
wide_matrix triangle(const matrix<T>& a, bool upper, bool unit) {
  return filled(a.m, a.n, [&](core_int i, core_int j) -> wide {
    if (i == j) return unit ? wide(1) : widened(a(i, j));
    return (i < j) == upper ? widened(a(i, j)) : wide();
  });
}
inline double largest(const wide_matrix& a) {
  double size = 0;
  for (const wide& cell : a.cells) size = std::max(size, std::abs(cell));
  return size;
}
/// Largest difference in units of n eps times the sizes that went in.
template <class T>
double apart(const wide_matrix& a, const wide_matrix& b, double size) {
  wide_matrix difference = a;
  for (size_t i = 0; i < a.cells.size(); ++i) difference.cells[i] -= b.cells[i];
  return largest(difference) / (size * static_cast<double>(a.m) * std::numeric_limits<real_of<T>>::epsilon());
}
inline wide_matrix identity(core_int n) {
  return filled(n, n, [](core_int i, core_int j) { return wide(i == j ? 1 : 0); });
}

}  // namespace qel::lapack
