// SPDX-License-Identifier: BSD-3-Clause
// Dense matrices of complex doubles with what residuals need, in plain loops, and their way into blocks.
#pragma once

#include <algorithm>
#include <cmath>

#include "tests/facade/support.h"

namespace Tavik::test {

struct dense {
  int rows, cols;
  std::vector<wide> values;
  dense(int m, int n) : rows(m), cols(n), values(static_cast<size_t>(m) * static_cast<size_t>(n)) {}
  wide& operator()(int i, int j) { return values[static_cast<size_t>(i + j * rows)]; }
  const wide& operator()(int i, int j) const { return values[static_cast<size_t>(i + j * rows)]; }
};

/// The m x n matrix of element(i, j).
template <class Element>
dense made_of(int m, int n, const Element& element) {
  dense a(m, n);
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < m; ++i) a(i, j) = element(i, j);
  }
  return a;
}
inline dense operator*(const dense& a, const dense& b) {
  return made_of(a.rows, b.cols, [&](int i, int j) {
    wide sum = 0;
    for (int l = 0; l < a.cols; ++l) sum += a(i, l) * b(l, j);
    return sum;
  });
}
inline dense operator-(const dense& a, const dense& b) {
  return made_of(a.rows, a.cols, [&](int i, int j) { return a(i, j) - b(i, j); });
}
inline dense transposed(const dense& a) {
  return made_of(a.cols, a.rows, [&](int i, int j) { return a(j, i); });
}
inline dense adjoint(const dense& a) {
  return made_of(a.cols, a.rows, [&](int i, int j) { return std::conj(a(j, i)); });
}
inline dense triangle(const dense& a, bool upper) {
  return made_of(a.rows, a.cols, [&](int i, int j) { return (upper ? i <= j : i >= j) ? a(i, j) : wide(); });
}
inline dense identity(int n) {
  return made_of(n, n, [](int i, int j) { return wide(i == j); });
}
/// Elements that the type holds exactly, so that a block has the same matrix.
template <class T>
dense random_dense(int m, int n, unsigned seed) {
  const Array<T> numbers = random_numbers<T>(m * n, seed);
  return made_of(m, n, [&](int i, int j) { return widened(numbers[i + j * m]); });
}
template <class T>
dense heavy_dense(int n, unsigned seed) {
  const dense a = random_dense<T>(n, n, seed);
  // Off the diagonal, so that pivoting has something to do; rounded to the type by a power of two.
  return made_of(n, n, [&](int i, int j) { return a(i, j) * (i == (j + 1) % n ? 8.0 : 1.0); });
}
/// Hermitian (or symmetric) positive definite.
template <class T>
dense positive_dense(int n, unsigned seed) {
  const dense a = random_dense<T>(n, n, seed);
  return made_of(n, n, [&](int i, int j) {
    if (i == j) return wide(2.0 * n);
    return i < j ? a(i, j) : std::conj(a(j, i));
  });
}

inline double largest(const dense& a) {
  double most = 0;
  for (const wide& v : a.values) most = std::max(most, std::abs(v));
  return most;
}
inline double one_norm(const dense& a) {
  double norm = 0;
  for (int j = 0; j < a.cols; ++j) {
    double sum = 0;
    for (int i = 0; i < a.rows; ++i) sum += std::abs(a(i, j));
    norm = std::max(norm, sum);
  }
  return norm;
}
template <class T>
void expect_close(const dense& got, const dense& want) {
  ASSERT_EQ(got.rows, want.rows);
  ASSERT_EQ(got.cols, want.cols);
  EXPECT_LE(largest(got - want), 100 * kEpsilon<T> * got.rows * (1 + largest(want)));
}
/// An estimate of 1 / (|A| |A^-1|) is never far below and seldom far above.
inline void expect_condition(double rcond, const dense& a, const dense& inverse) {
  const double truth = 1 / (one_norm(a) * one_norm(inverse));
  EXPECT_GE(rcond, truth * 0.99);
  EXPECT_LE(rcond, truth * 5);
}
/// By elimination with row exchanges.
inline dense inverse_of(dense a) {
  const int n = a.rows;
  dense b = identity(n);
  for (int k = 0; k < n; ++k) {
    int best = k;
    for (int i = k; i < n; ++i) best = std::abs(a(i, k)) > std::abs(a(best, k)) ? i : best;
    for (int j = 0; j < n; ++j) {
      std::swap(a(k, j), a(best, j));
      std::swap(b(k, j), b(best, j));
    }
    const wide scale = 1.0 / a(k, k);
    for (int j = 0; j < n; ++j) a(k, j) *= scale, b(k, j) *= scale;
    for (int i = 0; i < n; ++i) {
      const wide factor = a(i, k);
      for (int j = 0; i != k && j < n; ++j) a(i, j) -= factor * a(k, j), b(i, j) -= factor * b(k, j);
    }
  }
  return b;
}

/// Column-major with the leading dimension ld, after `ahead` elements that belong to nobody.
template <class T>
DataBlock<T> block_of(const dense& a, int ld, int ahead) {
  DataBlock<T> block{Array<T>(ahead + std::max(ld * a.cols, 1)), ahead};
  for (int j = 0; j < a.cols; ++j) {
    for (int i = 0; i < a.rows; ++i) block.Data[ahead + i + j * ld] = narrowed<T>(a(i, j));
  }
  return block;
}
template <class T>
dense dense_of(const DataBlock<T>& block, int m, int n, int ld) {
  return made_of(m, n, [&](int i, int j) { return widened(block.Data[block.Offset + i + j * ld]); });
}

}  // namespace Tavik::test
