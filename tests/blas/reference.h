// SPDX-License-Identifier: BSD-3-Clause
// What the BLAS tests compare with: dense matrices and vectors in complex long double, the straightforward
// product of them together with the size that bounds its rounding error, and storage of every form a BLAS
// routine takes, with NaN wherever nothing may be read and a record of what must not be written.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "service/complex_arithmetic.h"
#include "tests/support/poisoned.h"

namespace qel::test {

using wide = std::complex<long double>;

template <class T>
wide widen(T a) {
  if constexpr (is_complex<T>) {
    return {a.real, a.imag};
  } else {
    return a;
  }
}
template <class T>
T element(double real, double imag) {
  using R = real_of<T>;
  if constexpr (is_complex<T>) {
    return {static_cast<R>(real), static_cast<R>(imag)};
  } else {
    return static_cast<R>(real);
  }
}
template <class T>
T nan_element() {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  return element<T>(nan, nan);
}
template <class T>
long double epsilon() {
  return std::numeric_limits<real_of<T>>::epsilon();
}
inline bool is_nan(wide a) { return std::isnan(a.real()) || std::isnan(a.imag()); }

class random_source {
 public:
  template <class T>
  T next() {
    const double real = uniform_(engine_), imag = uniform_(engine_);
    return element<T>(real, imag);
  }

 private:
  std::mt19937 engine_{20240607};
  std::uniform_real_distribution<double> uniform_{-1, 1};
};

/// A result and the sum of the magnitudes that went into it.
struct bounded {
  wide value = 0;
  long double size = 0;
  void add(wide term) {
    value += term;
    size += std::abs(term);
  }
};

/// True if got is the wanted value up to the rounding of terms additions and multiplications.
template <class T>
bool close(T got, const bounded& want, core_int terms) {
  const long double bound = 4 * static_cast<long double>(terms + 4) * epsilon<T>() * want.size;
  return std::abs(widen(got) - want.value) <= bound;
}

/// A dense column-major matrix in wide numbers.
struct dense {
  core_int m, n;
  std::vector<wide> cells;
  dense(core_int rows, core_int columns)
      : m(rows), n(columns), cells(static_cast<std::size_t>(rows * columns)) {}
  wide& operator()(core_int i, core_int j) { return cells[static_cast<std::size_t>(i + j * m)]; }
  wide operator()(core_int i, core_int j) const { return cells[static_cast<std::size_t>(i + j * m)]; }
};

inline dense op(char trans, const dense& a) {
  if (trans == 'N') return a;
  dense result(a.n, a.m);
  for (core_int j = 0; j < a.n; ++j) {
    for (core_int i = 0; i < a.m; ++i) result(j, i) = trans == 'C' ? std::conj(a(i, j)) : a(i, j);
  }
  return result;
}

/// Element (i, j) of alpha A B, added to what sum holds. In parts, and with |re| + |im| for a size: products
/// and magnitudes of complex long doubles are slow.
inline void add_product(bounded& sum, wide alpha, const dense& a, const dense& b, core_int i, core_int j) {
  long double re = 0, im = 0, size = 0;
  for (core_int l = 0; l < a.n; ++l) {
    const wide x = a(i, l), y = b(l, j);
    re += x.real() * y.real() - x.imag() * y.imag();
    im += x.real() * y.imag() + x.imag() * y.real();
    size += (std::fabs(x.real()) + std::fabs(x.imag())) * (std::fabs(y.real()) + std::fabs(y.imag()));
  }
  sum.value += alpha * wide(re, im);
  sum.size += std::abs(alpha) * size;
}

/// Cells in memory of which a routine may read and write some. The rest must stay as it is: NaN, which shows
/// if read, or in an output a number, which shows if added to.
template <class T>
class storage {
 public:
  explicit storage(core_int size)
      : cells_(static_cast<std::size_t>(size)), used_(static_cast<std::size_t>(size), false) {
    std::fill(cells_.begin(), cells_.end(), nan_element<T>());
  }
  T* data() { return cells_.data(); }
  void make_output() {
    rest_ = element<T>(77, -77);
    for (std::size_t i = 0; i < used_.size(); ++i) {
      if (!used_[i]) cells_[i] = rest_;
    }
  }
  T& use(core_int offset) {
    used_[static_cast<std::size_t>(offset)] = true;
    return cells_[static_cast<std::size_t>(offset)];
  }
  T at(core_int offset) const { return const_cast<storage*>(this)->cells_[static_cast<std::size_t>(offset)]; }
  /// True if nothing outside the used cells was written.
  bool intact() {
    for (std::size_t i = 0; i < used_.size(); ++i) {
      const wide cell = widen(cells_[i]);
      if (!used_[i] && !(is_nan(widen(rest_)) ? is_nan(cell) : cell == widen(rest_))) return false;
    }
    return cells_.intact();
  }

 private:
  poisoned<T> cells_;
  std::vector<bool> used_;
  T rest_ = nan_element<T>();
};

/// A vector of n elements with a stride of either sign, or of stride 0 on one cell.
template <class T>
class strided {
 public:
  strided(core_int n, core_int inc, random_source& random)
      : n_(n), inc_(inc), cells_(std::max<core_int>(1, 1 + (n - 1) * std::abs(inc))) {
    for (core_int i = 0; i < n; ++i) cells_.use(offset(i)) = random.next<T>();
  }
  T* data() { return cells_.data(); }
  strided& as_output() {
    cells_.make_output();
    return *this;
  }
  T operator[](core_int i) const { return cells_.at(offset(i)); }
  void set(core_int i, T value) { cells_.use(offset(i)) = value; }
  void fill(T value) {
    for (core_int i = 0; i < n_; ++i) set(i, value);
  }
  bool intact() { return cells_.intact(); }
  /// As a matrix of one column.
  dense column() const {
    dense result(n_, 1);
    for (core_int i = 0; i < n_; ++i) result(i, 0) = widen((*this)[i]);
    return result;
  }

 private:
  core_int offset(core_int i) const { return inc_ >= 0 ? i * inc_ : (i + 1 - n_) * inc_; }
  core_int n_, inc_;
  storage<T> cells_;
};

enum class form { kFull, kBanded, kPacked };
enum class shape { kGeneral, kSymmetric, kHermitian, kTriangular, kUnitTriangular };

/// A matrix as a BLAS routine stores it. stored(i, j) says which elements are in memory; all else is NaN.
template <class T>
class matrix {
 public:
  /// A full m x n matrix with pad rows below each column, of which uplo names the stored triangle (G: all).
  matrix(core_int m, core_int n, core_int pad, random_source& random, char uplo = 'G', bool unit = false)
      : matrix(form::kFull, uplo, unit, m, n, m, n, std::max<core_int>(1, m) + pad, random) {}
  /// A triangle of order n in any form; banded with k diagonals beside the main one.
  static matrix triangle(form storage_form, char uplo, bool unit, core_int n, core_int k, core_int pad,
                         random_source& random) {
    const core_int rows = storage_form == form::kBanded ? k + 1 : std::max<core_int>(1, n);
    const core_int reach = storage_form == form::kBanded ? k : n;
    return matrix(storage_form, uplo, unit, n, n, reach, reach, rows + pad, random);
  }
  static matrix band(core_int m, core_int n, core_int kl, core_int ku, core_int pad, random_source& random) {
    return matrix(form::kBanded, 'G', false, m, n, kl, ku, kl + ku + 1 + pad, random);
  }
  T* data() { return cells_.data(); }
  core_int ld() const { return ld_; }
  matrix& as_output() {
    cells_.make_output();
    return *this;
  }
  bool stored(core_int i, core_int j) const {
    if (i - j > lower_ || j - i > upper_) return false;
    return i == j ? !unit_ : uplo_ == 'G' || (uplo_ == 'U') == (i < j);
  }
  T at(core_int i, core_int j) const { return cells_.at(offset(i, j)); }
  void set(core_int i, core_int j, T value) { cells_.use(offset(i, j)) = value; }
  void for_stored(const std::function<void(core_int, core_int)>& visit) const {
    for (core_int j = 0; j < n_; ++j) {
      for (core_int i = 0; i < m_; ++i) {
        if (stored(i, j)) visit(i, j);
      }
    }
  }
  void fill(T value) {
    for_stored([&](core_int i, core_int j) { set(i, j, value); });
  }
  bool intact() { return cells_.intact(); }

  /// The matrix that the stored cells stand for.
  dense meaning(shape kind) const {
    dense result(m_, n_);
    for_stored([&](core_int i, core_int j) {
      const wide a = widen(at(i, j));
      const bool hermitian = kind == shape::kHermitian;
      result(i, j) = hermitian && i == j ? a.real() : a;
      if (i != j && (hermitian || kind == shape::kSymmetric)) result(j, i) = hermitian ? std::conj(a) : a;
    });
    if (kind == shape::kUnitTriangular) {
      for (core_int i = 0; i < n_; ++i) result(i, i) = 1;
    }
    return result;
  }

 private:
  matrix(form storage_form, char uplo, bool unit, core_int m, core_int n, core_int lower, core_int upper,
         core_int ld, random_source& random)
      : form_(storage_form),
        uplo_(uplo),
        unit_(unit),
        m_(m),
        n_(n),
        lower_(lower),
        upper_(upper),
        ld_(ld),
        cells_(storage_form == form::kPacked ? n * (n + 1) / 2 : ld * n) {
    for_stored([&](core_int i, core_int j) { set(i, j, random.next<T>()); });
  }
  core_int offset(core_int i, core_int j) const {
    if (form_ == form::kFull) return i + j * ld_;
    if (form_ == form::kBanded) return (uplo_ == 'L' ? 0 : upper_) + i - j + j * ld_;
    return uplo_ == 'U' ? i + j * (j + 1) / 2 : i - j + j * n_ - j * (j - 1) / 2;
  }
  form form_;
  char uplo_;
  bool unit_;
  core_int m_, n_, lower_, upper_, ld_;
  storage<T> cells_;
};

/// A factor for op, alpha and beta tables: zero, one, or something else.
template <class T>
T factor(int index) {
  return index == 0 ? T{} : index == 1 ? element<T>(1, 0) : element<T>(-0.75, 0.5);
}
/// The pairs (alpha, beta) that every product meets, as indices of factor.
constexpr int kFactorPairs[][2] = {{1, 1}, {2, 0}, {2, 2}, {0, 2}, {0, 0}, {0, 1}, {1, 0}};

}  // namespace qel::test
