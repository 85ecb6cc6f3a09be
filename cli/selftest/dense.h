// SPDX-License-Identifier: BSD-3-Clause
// Dense matrices of the self-test: column-major, with rows between the columns that must stay as they are,
// and products in wide arithmetic.
#pragma once

#include <algorithm>
#include <cmath>

#include "cli/selftest/recorder.h"
#include "service/core_types.h"

namespace qel::cli::selftest {

template <class T>
struct dense {
  core_int rows, columns, ld;
  std::vector<T> memory;

  dense(number_source& source, core_int m, core_int n, core_int gap = 1)
      : rows(m), columns(n), ld(std::max<core_int>(m, 1) + gap), memory(source.numbers<T>(ld * n + 1)) {}
  T* data() { return memory.data(); }
  const T* data() const { return memory.data(); }
  size_t place(core_int i, core_int j) const { return static_cast<size_t>(i + j * ld); }
  T& operator()(core_int i, core_int j) { return memory[place(i, j)]; }
  wide at(core_int i, core_int j) const { return widened(memory[place(i, j)]); }
  std::vector<wide> expected() const {
    std::vector<wide> all(memory.size());
    std::transform(memory.begin(), memory.end(), all.begin(), [](T x) { return widened(x); });
    return all;
  }
};

/// A matrix as its elements in wide arithmetic, rows by columns without gaps.
struct wide_matrix {
  core_int rows, columns;
  std::vector<wide> values;
  wide_matrix(core_int m, core_int n) : rows(m), columns(n), values(static_cast<size_t>(m * n)) {}
  wide& operator()(core_int i, core_int j) { return values[static_cast<size_t>(i + j * rows)]; }
  const wide& operator()(core_int i, core_int j) const { return values[static_cast<size_t>(i + j * rows)]; }
};

/// op(A) by the letter N, T or C.
template <class T>
wide_matrix operand(const dense<T>& a, char op = 'N') {
  wide_matrix result(op == 'N' ? a.rows : a.columns, op == 'N' ? a.columns : a.rows);
  for (core_int j = 0; j < a.columns; ++j) {
    for (core_int i = 0; i < a.rows; ++i) {
      const wide value = op == 'C' ? std::conj(a.at(i, j)) : a.at(i, j);
      (op == 'N' ? result(i, j) : result(j, i)) = value;
    }
  }
  return result;
}
/// What a routine sees of a square matrix of which one triangle is stored.
enum class special { kSymmetric, kHermitian, kTriangle, kUnitTriangle };
template <class T>
wide_matrix special_operand(const dense<T>& a, char uplo, special kind) {
  wide_matrix result(a.rows, a.rows);
  for (core_int j = 0; j < a.rows; ++j) {
    for (core_int i = 0; i < a.rows; ++i) {
      const bool stored = uplo == 'U' ? i <= j : i >= j;
      if (stored) {
        result(i, j) = a.at(i, j);
      } else if (kind == special::kSymmetric) {
        result(i, j) = a.at(j, i);
      } else if (kind == special::kHermitian) {
        result(i, j) = std::conj(a.at(j, i));
      }
    }
    if (kind == special::kHermitian) result(j, j) = result(j, j).real();
    if (kind == special::kUnitTriangle) result(j, j) = 1;
  }
  return result;
}
inline wide_matrix turned(const wide_matrix& a, char op) {
  if (op == 'N') return a;
  wide_matrix result(a.columns, a.rows);
  for (core_int j = 0; j < a.columns; ++j)
    for (core_int i = 0; i < a.rows; ++i) result(j, i) = op == 'C' ? std::conj(a(i, j)) : a(i, j);
  return result;
}

/// A B with the sums of the moduli, which the errors are measured by.
struct wide_product {
  wide_matrix value;
  std::vector<double> scale;
};
wide_product multiply(const wide_matrix& a, const wide_matrix& b);

/// Frobenius norm.
double norm_of(const wide_matrix& a);
/// Frobenius norm of A - B.
double distance(const wide_matrix& a, const wide_matrix& b);

}  // namespace qel::cli::selftest
