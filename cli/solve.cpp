// SPDX-License-Identifier: BSD-3-Clause
// qel solve: reads a system, solves it through the LAPACK entries as a dense one (LU with partial pivoting),
// and reports how well it went.
#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cmath>
#include <complex>
#include <nlohmann/json.hpp>
#include <random>
#include <vector>

#include "cli/commands.h"
#include "cli/matrix_market.h"
#include "cli/progress.h"
#include "qel/blas.h"
#include "qel/lapack.h"

namespace qel::cli {
namespace {

using complex = std::complex<double>;
using clock = std::chrono::steady_clock;

double seconds_since(clock::time_point start) {
  return std::chrono::duration<double>(clock::now() - start).count();
}

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

struct right_hand_sides {
  int count = 1;
  bool is_complex = false;
  std::vector<complex> values;  ///< n x count, column-major
};

right_hand_sides make_right_hand_sides(const std::string& source, int n) {
  right_hand_sides rhs;
  if (source == "ones" || source == "random") {
    rhs.values.assign(static_cast<size_t>(n), 1.0);
    if (source == "random") {
      std::mt19937_64 generator(1);  // the same numbers in every run
      std::uniform_real_distribution<double> uniform(-1, 1);
      for (complex& value : rhs.values) value = uniform(generator);
    }
    return rhs;
  }
  const matrix_file file = read_matrix_market(source);
  if (file.rows != n) {
    throw file_error(fmt::format("{}: {} rows, but the matrix has {}", source, file.rows, n));
  }
  rhs.count = file.cols;
  rhs.is_complex = file.is_complex();
  rhs.values.assign(static_cast<size_t>(n) * static_cast<size_t>(file.cols), 0.0);
  for (const matrix_entry& e : file.entries) {
    rhs.values[static_cast<size_t>(e.row) + static_cast<size_t>(n) * static_cast<size_t>(e.col)] += e.value;
  }
  return rhs;
}

struct solution {
  int info = 0;  ///< > 0: that pivot is exactly zero
  double factor_seconds = 0, solve_seconds = 0;
  double reciprocal_condition = 0;
  double backward_error = 0;
  std::vector<complex> values;  ///< n x right-hand sides
};

/// max over columns of |b - A x| / (|A| |x| + |b|) in the infinity norm (J. L. Rigal, J. Gaches, J. ACM 14
/// (1967) 543), with the matrix as it was read.
double normwise_backward_error(const matrix_file& matrix, const right_hand_sides& rhs,
                               const std::vector<complex>& x) {
  using wide = std::complex<long double>;
  const auto n = static_cast<size_t>(matrix.rows);
  std::vector<long double> row_sums(n);
  for (const matrix_entry& e : matrix.entries) row_sums[static_cast<size_t>(e.row)] += std::abs(e.value);
  const long double a_norm = n > 0 ? *std::max_element(row_sums.begin(), row_sums.end()) : 0;
  long double worst = 0;
  for (size_t column = 0; column < static_cast<size_t>(rhs.count); ++column) {
    std::vector<wide> residual(n);
    long double x_norm = 0, b_norm = 0, r_norm = 0;
    for (size_t i = 0; i < n; ++i) {
      residual[i] = rhs.values[i + n * column];
      b_norm = std::max(b_norm, std::abs(residual[i]));
      x_norm = std::max<long double>(x_norm, std::abs(x[i + n * column]));
    }
    for (const matrix_entry& e : matrix.entries) {
      residual[static_cast<size_t>(e.row)] -=
          wide(e.value) * wide(x[static_cast<size_t>(e.col) + n * column]);
    }
    for (const wide& r : residual) {
      if (!std::isfinite(std::abs(r))) return INFINITY;
      r_norm = std::max(r_norm, std::abs(r));
    }
    if (r_norm > 0) worst = std::max(worst, r_norm / (a_norm * x_norm + b_norm));
  }
  return static_cast<double>(worst);
}

template <class Lapack>
solution solve_dense(const matrix_file& matrix, const right_hand_sides& rhs) {
  using number = typename Lapack::number;
  const int n = matrix.rows;
  const auto order = static_cast<size_t>(n);
  solution result;
  if (n == 0) return result;
  std::vector<number> a(order * order);
  for (const matrix_entry& e : matrix.entries) {
    a[static_cast<size_t>(e.row) + order * static_cast<size_t>(e.col)] += Lapack::from(e.value);
  }
  std::vector<number> x(rhs.values.size());
  std::transform(rhs.values.begin(), rhs.values.end(), x.begin(), Lapack::from);
  std::vector<int> pivots(order);

  const double anorm = Lapack::norm(n, a.data());
  const clock::time_point start = clock::now();
  {
    const progress_line progress(fmt::format("factoring a dense matrix of order {}", n));
    Lapack::factor(n, a.data(), pivots.data(), &result.info);
  }
  result.factor_seconds = seconds_since(start);
  if (result.info != 0) return result;

  const clock::time_point factored = clock::now();
  Lapack::solve(n, rhs.count, a.data(), pivots.data(), x.data(), &result.info);
  result.solve_seconds = seconds_since(factored);
  result.reciprocal_condition = Lapack::reciprocal_condition(n, a.data(), anorm);
  result.values.assign(x.begin(), x.end());
  result.backward_error = normwise_backward_error(matrix, rhs, result.values);
  return result;
}

void print_text(const solve_options& options, const matrix_file& matrix, const right_hand_sides& rhs,
                const solution& result, double read_seconds) {
  fmt::print("matrix          {}: {} {} {}, {} by {}, {} entries stored, {} in full\n", options.matrix,
             name_of(matrix.format), name_of(matrix.field), name_of(matrix.symmetry), matrix.rows,
             matrix.cols, matrix.stored, matrix.entries.size());
  fmt::print("right-hand side {}: {} column{}\n", options.right_hand_side, rhs.count,
             rhs.count == 1 ? "" : "s");
  fmt::print("method          dense LU with partial pivoting\n");
  fmt::print("seconds         read {:.3f}, factor {:.3f}, solve {:.3f}\n", read_seconds,
             result.factor_seconds, result.solve_seconds);
  fmt::print("condition       about {:.1e}\n", 1 / result.reciprocal_condition);
  fmt::print("backward error  {:.2e}\n", result.backward_error);
  if (options.output.empty()) {
    fmt::print("solution        not written (-o FILE writes it)\n");
  } else {
    fmt::print("solution        {}\n", options.output);
  }
}

void print_json(const solve_options& options, const matrix_file& matrix, const right_hand_sides& rhs,
                const solution& result, double read_seconds) {
  nlohmann::ordered_json report = {
      {"matrix",
       {{"file", options.matrix},
        {"format", name_of(matrix.format)},
        {"field", name_of(matrix.field)},
        {"symmetry", name_of(matrix.symmetry)},
        {"rows", matrix.rows},
        {"cols", matrix.cols},
        {"stored_entries", matrix.stored},
        {"entries", matrix.entries.size()}}},
      {"right_hand_side", {{"source", options.right_hand_side}, {"columns", rhs.count}}},
      {"method", "dense LU with partial pivoting"},
      {"status", result.info == 0 ? "solved" : "singular"},
      {"seconds",
       {{"read", read_seconds}, {"factor", result.factor_seconds}, {"solve", result.solve_seconds}}},
  };
  if (result.info == 0) {
    report["reciprocal_condition"] = result.reciprocal_condition;
    report["backward_error"] = result.backward_error;
    report["solution"] = options.output.empty() ? nlohmann::json(nullptr) : nlohmann::json(options.output);
  } else {
    report["zero_pivot"] = result.info;
  }
  fmt::print("{}\n", report.dump(2));
}

}  // namespace

int run_solve(const solve_options& options) {
  const clock::time_point start = clock::now();
  const matrix_file matrix = [&] {
    progress_line progress("reading " + options.matrix);
    return read_matrix_market(options.matrix, [&](long done, long all) {
      progress.update(static_cast<double>(done) / static_cast<double>(all));
    });
  }();
  if (matrix.rows != matrix.cols) {
    throw file_error(fmt::format("{}: the matrix is {} by {}, but a system needs a square one",
                                 options.matrix, matrix.rows, matrix.cols));
  }
  const right_hand_sides rhs = make_right_hand_sides(options.right_hand_side, matrix.rows);
  const double read_seconds = seconds_since(start);

  const bool is_complex = matrix.is_complex() || rhs.is_complex;
  const solution result =
      is_complex ? solve_dense<complex_lapack>(matrix, rhs) : solve_dense<real_lapack>(matrix, rhs);
  if (result.info == 0 && !options.output.empty()) {
    write_matrix_market(options.output, matrix.rows, rhs.count, result.values, is_complex);
  }
  if (options.json) {
    print_json(options, matrix, rhs, result, read_seconds);
  } else if (result.info == 0) {
    print_text(options, matrix, rhs, result, read_seconds);
  }
  if (result.info != 0) {
    fmt::print(stderr, "qel: {}: the matrix is singular: pivot {} of {} is exactly zero\n", options.matrix,
               result.info, matrix.rows);
    return kSingular;
  }
  return kDone;
}

}  // namespace qel::cli
