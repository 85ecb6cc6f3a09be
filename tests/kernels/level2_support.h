// SPDX-License-Identifier: BSD-3-Clause
// What the level-2 kernel tests share: the kernel tables that this processor can run, and one routine after
// the other as a case with operands of its own, so that a test can say something of all of them at once.
#pragma once

#include <algorithm>
#include <functional>
#include <limits>
#include <string>

#include "blas/level2/level2_rows.h"
#include "blas/level2/triangles.h"
#include "tests/kernels/support.h"

namespace qel::test {

/// Levels with tables of their own that can run here.
inline std::vector<int> own_levels() {
  std::vector<int> levels{0, 1, 2};
  if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) levels.push_back(5);
  return levels;
}

/// The operands of a call, as vectors of cells: a matrix, x, and y, of which the last named is written.
template <class T>
struct operands {
  std::vector<T> a, x, y;
};
/// Addresses of the three while a kernel runs.
template <class T>
struct addresses {
  T *a, *x, *y;
};

enum class result_in { kA, kX, kY };

/// A routine with everything but the data fixed: what it takes, where its result is, how to call it.
template <class T>
struct kernel_case {
  std::string name;
  core_int a_size, x_size, y_size;  ///< cells; no more than the routine may touch
  core_int incx, incy;
  core_int x_length, y_length;
  result_in result;
  std::vector<core_int> diagonal;  ///< cells of a triangular matrix's diagonal
  std::function<void(int level, const addresses<T>&, T alpha, T beta)> run;
};

inline const char* op_name(matrix_op op) {
  return op == matrix_op::kNone ? "N" : op == matrix_op::kTransposed ? "T" : "C";
}
constexpr matrix_op kOps[] = {matrix_op::kNone, matrix_op::kTransposed, matrix_op::kConjugated};

template <class T>
kernel_case<T> gemv_case(matrix_op op, core_int m, core_int n, core_int pad, core_int incx, core_int incy) {
  const core_int lda = m + pad, xs = op == matrix_op::kNone ? n : m, ys = op == matrix_op::kNone ? m : n;
  return {std::string("gemv ") + op_name(op) + std::to_string(m) + "x" + std::to_string(n),
          m > 0 && n > 0 ? lda * (n - 1) + m : 0,
          static_cast<core_int>(span_of(xs, incx)),
          static_cast<core_int>(span_of(ys, incy)),
          incx,
          incy,
          xs,
          ys,
          result_in::kY,
          {},
          [=](int level, const addresses<T>& p, T alpha, T beta) {
            level2_rows<T>::general.kernel[level]->gemv(op, m, n, alpha, p.a, lda, p.x, incx, beta, p.y,
                                                        incy);
          }};
}
template <class T>
kernel_case<T> gbmv_case(matrix_op op, core_int m, core_int n, core_int kl, core_int ku, core_int incx,
                         core_int incy) {
  const core_int lda = kl + ku + 1, xs = op == matrix_op::kNone ? n : m, ys = op == matrix_op::kNone ? m : n;
  return {std::string("gbmv ") + op_name(op) + std::to_string(m) + "x" + std::to_string(n) + " " +
              std::to_string(kl) + "," + std::to_string(ku),
          lda * n,
          static_cast<core_int>(span_of(xs, incx)),
          static_cast<core_int>(span_of(ys, incy)),
          incx,
          incy,
          xs,
          ys,
          result_in::kY,
          {},
          [=](int level, const addresses<T>& p, T alpha, T beta) {
            level2_rows<T>::general.kernel[level]->gbmv(op, m, n, kl, ku, alpha, p.a, lda, p.x, incx, beta,
                                                        p.y, incy);
          }};
}
template <class T>
kernel_case<T> ger_case(bool conjugated, core_int m, core_int n, core_int pad, core_int incx, core_int incy) {
  const core_int lda = m + pad;
  return {std::string(conjugated ? "gerc " : "geru ") + std::to_string(m) + "x" + std::to_string(n),
          m > 0 && n > 0 ? lda * (n - 1) + m : 0,
          static_cast<core_int>(span_of(m, incx)),
          static_cast<core_int>(span_of(n, incy)),
          incx,
          incy,
          m,
          n,
          result_in::kA,
          {},
          [=](int level, const addresses<T>& p, T alpha, T) {
            level2_rows<T>::general.kernel[level]->ger(conjugated, m, n, alpha, p.x, incx, p.y, incy, p.a,
                                                       lda);
          }};
}

enum class form { kFull, kBanded, kPacked };
struct triangle_case {
  form storage;
  char uplo;
  core_int n, k, pad;
  core_int ld() const { return (storage == form::kBanded ? k + 1 : n) + pad; }
  core_int size() const {
    if (n == 0) return 0;
    if (storage == form::kPacked) return n * (n + 1) / 2;
    return ld() * (n - 1) + (storage == form::kBanded ? k + 1 : n);
  }
  template <class E>
  stored_triangle<E> of(E* base) const {
    if (storage == form::kFull) return full_triangle(uplo, n, base, ld());
    if (storage == form::kBanded) return banded_triangle(uplo, n, k, base, ld());
    return packed_triangle(uplo, n, base);
  }
  std::vector<core_int> diagonal() const {
    std::vector<core_int> cells;
    for (core_int j = 0; j < n; ++j) cells.push_back(cell(j, j));
    return cells;
  }
  /// Where element (i, j) stands.
  core_int cell(core_int i, core_int j) const {
    if (storage == form::kFull) return i + j * ld();
    if (storage == form::kBanded) return (uplo == 'U' ? k : 0) + i - j + j * ld();
    return uplo == 'U' ? i + j * (j + 1) / 2 : i - j + j * n - j * (j - 1) / 2;
  }
  std::string name() const {
    return std::string(1, uplo) + "fbp"[static_cast<int>(storage)] + std::to_string(n) + " ";
  }
};

template <class T>
kernel_case<T> hermitian_case(const triangle_case& t, bool symmetric, core_int incx, core_int incy) {
  return {(symmetric ? "symv " : "hemv ") + t.name(),
          t.size(),
          static_cast<core_int>(span_of(t.n, incx)),
          static_cast<core_int>(span_of(t.n, incy)),
          incx,
          incy,
          t.n,
          t.n,
          result_in::kY,
          {},
          [=](int level, const addresses<T>& p, T alpha, T beta) {
            level2_rows<T>::hermitian.kernel[level]->product(t.of<const T>(p.a), symmetric, alpha, p.x, incx,
                                                             beta, p.y, incy);
          }};
}
template <class T>
kernel_case<T> update_case(const triangle_case& t, bool two, core_int incx, core_int incy) {
  return {(two ? "her2 " : "her ") + t.name(),
          t.size(),
          static_cast<core_int>(span_of(t.n, incx)),
          static_cast<core_int>(span_of(t.n, incy)),
          incx,
          incy,
          t.n,
          t.n,
          result_in::kA,
          {},
          [=](int level, const addresses<T>& p, T alpha, T) {
            const auto* kernels = level2_rows<T>::hermitian.kernel[level];
            if (two) return kernels->update2(t.of(p.a), alpha, p.x, incx, p.y, incy, 0, t.n);
            kernels->update(t.of(p.a), real_part(alpha), p.x, incx, 0, t.n);
          }};
}
template <class T>
kernel_case<T> triangular_case(const triangle_case& t, matrix_op op, bool unit, bool solve, core_int incx) {
  return {std::string(solve ? "trsv " : "trmv ") + op_name(op) + (unit ? "U" : "N") + t.name(),
          t.size(),
          static_cast<core_int>(span_of(t.n, incx)),
          0,
          incx,
          1,
          t.n,
          0,
          result_in::kX,
          t.diagonal(),
          [=](int level, const addresses<T>& p, T, T) {
            const auto* kernels = level2_rows<T>::triangular.kernel[level];
            (solve ? kernels->solution : kernels->product)(t.of<const T>(p.a), op, unit, p.x, incx);
          }};
}

/// All routines at a size, with all their options.
template <class T>
std::vector<kernel_case<T>> all_cases(core_int n, core_int incx, core_int incy) {
  std::vector<kernel_case<T>> cases;
  for (const matrix_op op : kOps) {
    cases.push_back(gemv_case<T>(op, n, n, 1, incx, incy));
    cases.push_back(gemv_case<T>(op, n, n / 3 + 1, 0, incx, incy));
    cases.push_back(gemv_case<T>(op, n / 3 + 1, n, 2, incx, incy));
    cases.push_back(gbmv_case<T>(op, n, n + 2, n / 4, n / 5, incx, incy));
    cases.push_back(gbmv_case<T>(op, n, n, n / 2 + 17, n / 2 + 16, incx, incy));
  }
  for (const bool conjugated : {false, true})
    cases.push_back(ger_case<T>(conjugated, n, n / 2 + 1, 1, incx, incy));
  for (const char uplo : {'U', 'L'}) {
    for (const form storage : {form::kFull, form::kBanded, form::kPacked}) {
      // Bands on both sides of the width from which panels of columns are taken.
      const triangle_case t{storage, uplo, n,
                            storage == form::kBanded ? n % 2 == 0 ? n / 4 : n - n / 8 - 1 : n, 1};
      if (t.k < 0) continue;
      for (const bool symmetric : {false, true}) cases.push_back(hermitian_case<T>(t, symmetric, incx, incy));
      if (storage != form::kBanded) {
        for (const bool two : {false, true}) cases.push_back(update_case<T>(t, two, incx, incy));
      }
      for (const matrix_op op : kOps) {
        for (const bool unit : {false, true}) {
          for (const bool solve : {false, true}) {
            cases.push_back(triangular_case<T>(t, op, unit, solve, incx));
          }
        }
      }
    }
  }
  return cases;
}

template <class T>
T small_element(double real, double imag) {
  if constexpr (is_complex<T>) {
    return {static_cast<real_of<T>>(real), static_cast<real_of<T>>(imag)};
  } else {
    return static_cast<T>(real);
  }
}

/// Random operands; a triangular matrix is near the identity, so that solutions stay small.
template <class T>
operands<T> operands_of(const kernel_case<T>& c, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> uniform(0.1, 1);
  const auto next = [&](double scale) {
    const double real = (random() % 2 == 0 ? scale : -scale) * uniform(random),
                 imag = scale * uniform(random);
    return small_element<T>(real, imag);
  };
  operands<T> o;
  for (core_int i = 0; i < c.a_size; ++i) o.a.push_back(next(1));
  if (!c.diagonal.empty()) {
    const double share = 1.0 / static_cast<double>(c.diagonal.size());
    for (T& cell : o.a) cell = small_element<T>(share, 0) * cell;
    for (const core_int cell : c.diagonal) o.a[static_cast<std::size_t>(cell)] = small_element<T>(1.5, 0.25);
  }
  for (core_int i = 0; i < c.x_size; ++i) o.x.push_back(next(1));
  for (core_int i = 0; i < c.y_size; ++i) o.y.push_back(next(1));
  return o;
}

template <class T>
std::vector<T>& result_of(const kernel_case<T>& c, operands<T>& o) {
  return c.result == result_in::kA ? o.a : c.result == result_in::kX ? o.x : o.y;
}

template <class T>
bool same_bits(const std::vector<T>& a, const std::vector<T>& b) {
  return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}
template <class T>
long double size_of(T v) {
  if constexpr (is_complex<T>) {
    return std::abs(static_cast<long double>(v.real)) + std::abs(static_cast<long double>(v.imag));
  } else {
    return std::abs(static_cast<long double>(v));
  }
}

}  // namespace qel::test
