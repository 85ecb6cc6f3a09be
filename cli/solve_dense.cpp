// SPDX-License-Identifier: BSD-3-Clause
#include <fmt/core.h>

#include <algorithm>

#include "cli/progress.h"
#include "cli/solve_system.h"
#include "qel/blas.h"
#include "qel/lapack.h"

namespace qel::cli {
namespace {

// The LAPACK entries of either number type under one name.
struct real_lapack {
  using number = double;
  static double from(complex value) { return value.real(); }
  static void factor(int n, double* a, int* ipiv, int* info) { dgetrf(&n, &n, a, &n, ipiv, info); }
  static void solve(int n, int nrhs, double* a, int* ipiv, double* b, int* info) {
    dgetrs("N", &n, &nrhs, a, &n, ipiv, b, &n, info);
  }
  static double norm(int n, double* a) { return dlange("1", &n, &n, a, &n, nullptr); }
  static double reciprocal_condition(int n, double* a, double anorm) {
    std::vector<double> work(4 * static_cast<size_t>(n));
    std::vector<int> iwork(static_cast<size_t>(n));
    double rcond = 0;
    int info = 0;
    dgecon("1", &n, a, &n, &anorm, &rcond, work.data(), iwork.data(), &info);
    return rcond;
  }
};
struct complex_lapack {
  using number = complex;
  static complex from(complex value) { return value; }
  static _QEL_Complex16* pair(complex* p) { return reinterpret_cast<_QEL_Complex16*>(p); }
  static void factor(int n, complex* a, int* ipiv, int* info) { zgetrf(&n, &n, pair(a), &n, ipiv, info); }
  static void solve(int n, int nrhs, complex* a, int* ipiv, complex* b, int* info) {
    zgetrs("N", &n, &nrhs, pair(a), &n, ipiv, pair(b), &n, info);
  }
  static double norm(int n, complex* a) { return zlange("1", &n, &n, pair(a), &n, nullptr); }
  static double reciprocal_condition(int n, complex* a, double anorm) {
    std::vector<complex> work(2 * static_cast<size_t>(n));
    std::vector<double> rwork(2 * static_cast<size_t>(n));
    double rcond = 0;
    int info = 0;
    zgecon("1", &n, pair(a), &n, &anorm, &rcond, pair(work.data()), rwork.data(), &info);
    return rcond;
  }
};

template <class Lapack>
solution solve_with(const matrix_file& matrix, const right_hand_sides& rhs) {
  using number = typename Lapack::number;
  const int n = matrix.rows;
  const auto order = static_cast<size_t>(n);
  solution result;
  result.method = "dense LU with partial pivoting";
  result.backward_errors.assign(static_cast<size_t>(rhs.count), 0);
  if (n == 0) return result;
  std::vector<number> a(order * order);
  for (const matrix_entry& e : matrix.entries) {
    a[static_cast<size_t>(e.row) + order * static_cast<size_t>(e.col)] += Lapack::from(e.value);
  }
  std::vector<number> x(rhs.values.size());
  std::transform(rhs.values.begin(), rhs.values.end(), x.begin(), Lapack::from);
  std::vector<int> pivots(order);
  int info = 0;

  const double anorm = Lapack::norm(n, a.data());
  const solve_clock::time_point start = solve_clock::now();
  {
    const progress_line progress(fmt::format("factoring a dense matrix of order {}", n));
    Lapack::factor(n, a.data(), pivots.data(), &info);
  }
  result.factor_seconds = seconds_since(start);
  if (info != 0) {
    result.zero_pivot = info;
    result.singular = fmt::format("pivot {} of {} is exactly zero", info, n);
    return result;
  }

  const solve_clock::time_point factored = solve_clock::now();
  Lapack::solve(n, rhs.count, a.data(), pivots.data(), x.data(), &info);
  result.solve_seconds = seconds_since(factored);
  result.reciprocal_condition = Lapack::reciprocal_condition(n, a.data(), anorm);
  result.values.assign(x.begin(), x.end());
  result.backward_errors = normwise_backward_errors(matrix, rhs, result.values);
  return result;
}

}  // namespace

solution solve_dense(const matrix_file& matrix, const right_hand_sides& rhs) {
  const bool is_complex = matrix.is_complex() || rhs.is_complex;
  return is_complex ? solve_with<complex_lapack>(matrix, rhs) : solve_with<real_lapack>(matrix, rhs);
}

}  // namespace qel::cli
