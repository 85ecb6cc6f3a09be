// SPDX-License-Identifier: BSD-3-Clause
// What the entry tests share: calls by value of entries that take addresses, the entry of an element type out
// of four, and dense matrices with the few operations that residuals need, in plain loops.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

#include "qel/qel.h"
#include "service/complex_arithmetic.h"
#include "tests/support/guarded.h"
#include "tests/support/poisoned.h"

namespace qel::test {

using qel::operator*;  // else hidden by the products below

using all_types = testing::Types<float, double, complex8, complex16>;
using real_types = testing::Types<float, double>;

/// n integers that end at a page which can't be touched: a read or write past them faults.
class exact_ints {
 public:
  explicit exact_ints(int n) : cells_(static_cast<std::size_t>(n), static_cast<std::size_t>(-4 * n) % 16) {}
  int* data() { return cells_.data(); }
  int* begin() { return data(); }
  int* end() { return data() + cells_.size(); }
  int& operator[](int i) { return data()[i]; }

 private:
  guarded<int> cells_;
};

/// The function for element type T.
template <class T>
constexpr auto pick(auto s, auto d, auto c, auto z) {
  if constexpr (std::is_same_v<T, float>) {
    return s;
  } else if constexpr (std::is_same_v<T, double>) {
    return d;
  } else if constexpr (std::is_same_v<T, complex8>) {
    return c;
  } else {
    return z;
  }
}

template <class A>
auto address(A& argument) {
  using V = std::remove_const_t<A>;
  if constexpr (std::is_pointer_v<V> || std::is_null_pointer_v<V>) {
    return argument;
  } else if constexpr (std::is_array_v<V>) {
    return &argument[0];
  } else {
    return &argument;
  }
}

/// Calls an entry; scalars are given by value.
template <class F, class... A>
auto call(F entry, A&&... arguments) {
  return entry(address(arguments)...);
}

/// Calls an entry with info, tests that both ways of getting info agree, and returns it.
template <class F, class... A>
int run(F entry, A&&... arguments) {
  int info[3] = {77, 99, 77};
  const int returned = entry(address(arguments)..., &info[1]);
  EXPECT_EQ(returned, info[1]);
  EXPECT_TRUE(info[0] == 77 && info[2] == 77) << "info written as 64 bits";
  return returned;
}

template <class T>
inline constexpr double kEpsilon = std::numeric_limits<real_of<T>>::epsilon();

template <class T>
constexpr T make(double re, double im = 0) {
  using R = real_of<T>;
  if constexpr (is_complex<T>) {
    return {static_cast<R>(re), static_cast<R>(im)};
  } else {
    return static_cast<T>(re);
  }
}

template <class T>
std::complex<double> wide(T a) {
  if constexpr (is_complex<T>) {
    return {a.real, a.imag};
  } else {
    return a;
  }
}

/// Column-major; the leading dimension is the number of rows.
template <class T>
struct matrix {
  int rows, cols;
  std::vector<T> values;
  matrix(int m, int n) : rows(m), cols(n), values(static_cast<std::size_t>(m) * n) {}
  T* data() { return values.data(); }
  T& operator()(int i, int j) { return values[i + static_cast<std::size_t>(j) * rows]; }
  T operator()(int i, int j) const { return values[i + static_cast<std::size_t>(j) * rows]; }
};

template <class T>
matrix<T> identity(int n) {
  matrix<T> a(n, n);
  for (int i = 0; i < n; ++i) a(i, i) = make<T>(1);
  return a;
}

/// Elements uniform in [-1, 1], in both parts.
template <class T>
matrix<T> random_matrix(int m, int n, unsigned seed) {
  std::mt19937 engine(seed);
  std::uniform_real_distribution<double> uniform(-1, 1);
  matrix<T> a(m, n);
  for (T& value : a.values) {
    const double re = uniform(engine);
    value = make<T>(re, uniform(engine));
  }
  return a;
}

/// Random with a heavy diagonal: well conditioned.
template <class T>
matrix<T> heavy_matrix(int n, unsigned seed) {
  matrix<T> a = random_matrix<T>(n, n, seed);
  for (int i = 0; i < n; ++i) a(i, i) += make<T>(n + 1);
  return a;
}

enum class form { plain, transposed, adjoint };

template <class T>
matrix<T> op(form how, const matrix<T>& a) {
  if (how == form::plain) return a;
  matrix<T> result(a.cols, a.rows);
  for (int i = 0; i < a.rows; ++i) {
    for (int j = 0; j < a.cols; ++j) result(j, i) = how == form::adjoint ? conj(a(i, j)) : a(i, j);
  }
  return result;
}
/// The form that an option letter asks for.
inline form form_of(char trans) {
  return trans == 'N' || trans == 'n'   ? form::plain
         : trans == 'T' || trans == 't' ? form::transposed
                                        : form::adjoint;
}

/// A of the same values, symmetric or Hermitian from its upper triangle, with a heavy diagonal if asked for.
template <class T>
matrix<T> mirrored(matrix<T> a, form how, bool heavy) {
  for (int j = 0; j < a.cols; ++j) {
    for (int i = 0; i < j; ++i) a(j, i) = how == form::adjoint ? conj(a(i, j)) : a(i, j);
    if (how == form::adjoint) a(j, j) = from_real<T>(real_part(a(j, j)));
    if (heavy) a(j, j) += make<T>(2 * a.cols);
  }
  return a;
}

template <class T>
matrix<T> operator*(const matrix<T>& a, const matrix<T>& b) {
  matrix<T> c(a.rows, b.cols);
  for (int j = 0; j < b.cols; ++j) {
    for (int l = 0; l < a.cols; ++l) {
      for (int i = 0; i < a.rows; ++i) c(i, j) += a(i, l) * b(l, j);
    }
  }
  return c;
}

/// Largest column sum of moduli.
template <class T>
double one_norm(const matrix<T>& a) {
  double norm = 0;
  for (int j = 0; j < a.cols; ++j) {
    double sum = 0;
    for (int i = 0; i < a.rows; ++i) sum += std::abs(wide(a(i, j)));
    norm = std::max(norm, sum);
  }
  return norm;
}

template <class T>
double distance(const matrix<T>& a, const matrix<T>& b) {
  matrix<T> difference = a;
  for (std::size_t i = 0; i < a.values.size(); ++i) difference.values[i] = a.values[i] - b.values[i];
  return one_norm(difference);
}

/// A and B agree to rounding: |A - B| <= 30 n eps (|A| + |B|) in the one-norm, n the larger size.
template <class T>
void expect_near(const matrix<T>& a, const matrix<T>& b, const char* what) {
  ASSERT_EQ(a.rows, b.rows);
  ASSERT_EQ(a.cols, b.cols);
  const double bound = 30 * std::max(a.rows, a.cols) * kEpsilon<T> * (one_norm(a) + one_norm(b));
  EXPECT_LE(distance(a, b), bound) << what;
}

/// An estimated reciprocal condition number is never far below the true one, and seldom far above.
template <class T>
void expect_rcond(double rcond, const matrix<T>& a, const matrix<T>& inverse) {
  const double truth = 1 / (one_norm(a) * one_norm(inverse));
  EXPECT_GE(rcond, truth * (1 - 1e-3));
  EXPECT_LE(rcond, truth * 5);
}

/// Packed storage of one triangle.
template <class T>
std::vector<T> packed(char uplo, const matrix<T>& a) {
  std::vector<T> ap;
  for (int j = 0; j < a.cols; ++j) {
    for (int i = uplo == 'U' ? 0 : j; i < (uplo == 'U' ? j + 1 : a.rows); ++i) ap.push_back(a(i, j));
  }
  return ap;
}
/// The matrix with this triangle; the other one follows from how, or is 0 for form::plain.
template <class T>
matrix<T> unpacked(char uplo, int n, const std::vector<T>& ap, form how) {
  matrix<T> a(n, n);
  std::size_t next = 0;
  for (int j = 0; j < n; ++j) {
    for (int i = uplo == 'U' ? 0 : j; i < (uplo == 'U' ? j + 1 : n); ++i) {
      a(i, j) = ap[next++];
      if (i != j && how != form::plain) a(j, i) = how == form::adjoint ? conj(a(i, j)) : a(i, j);
    }
  }
  return a;
}

/// The inverse, by elimination with row exchanges in this header's own loops.
template <class T>
matrix<T> inverse_of(matrix<T> a) {
  const int n = a.rows;
  matrix<T> b = identity<T>(n);
  for (int k = 0; k < n; ++k) {
    int best = k;
    for (int i = k; i < n; ++i) best = abs1(a(i, k)) > abs1(a(best, k)) ? i : best;
    for (int j = 0; j < n; ++j) {
      std::swap(a(k, j), a(best, j));
      std::swap(b(k, j), b(best, j));
    }
    const T scale = make<T>(1) / a(k, k);
    for (int j = 0; j < n; ++j) a(k, j) = scale * a(k, j), b(k, j) = scale * b(k, j);
    for (int i = 0; i < n; ++i) {
      const T factor = a(i, k);
      for (int j = 0; i != k && j < n; ++j) a(i, j) -= factor * a(k, j), b(i, j) -= factor * b(k, j);
    }
  }
  return b;
}

/// Size from a workspace query.
template <class T>
int best_size(const T& first) {
  return static_cast<int>(real_part(first));
}

}  // namespace qel::test
