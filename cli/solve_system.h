// SPDX-License-Identifier: BSD-3-Clause
// What the two ways to solve a system share: right-hand sides, results, how good they are.
#pragma once

#include <chrono>
#include <complex>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands.h"
#include "cli/matrix_market.h"

namespace qel::cli {

using complex = std::complex<double>;
using solve_clock = std::chrono::steady_clock;
inline double seconds_since(solve_clock::time_point start) {
  return std::chrono::duration<double>(solve_clock::now() - start).count();
}

struct right_hand_sides {
  int count = 1;
  bool is_complex = false;
  std::vector<complex> values;  ///< n x count, column-major
};

/// A solved or singular system, and what there is to tell about the way.
struct solution {
  std::string singular;  ///< why there is no solution; empty if there is one
  int zero_pivot = 0;    ///< of a singular system, if known
  double factor_seconds = 0, solve_seconds = 0;
  double reciprocal_condition = 0;
  std::vector<double> backward_errors;  ///< one for each column
  std::vector<complex> values;          ///< n x right-hand sides
  std::string method;
  nlohmann::ordered_json details;                          ///< what only this method has to tell
  std::vector<std::pair<std::string, std::string>> lines;  ///< the same for people: what, text
};

/// |b - A x| / (|A| |x| + |b|) in the infinity norm for each column (J. L. Rigal, J. Gaches, J. ACM 14 (1967)
/// 543), with the matrix as it was read. residuals, if given, gets |b - A x| / |b|.
std::vector<double> normwise_backward_errors(const matrix_file& matrix, const right_hand_sides& rhs,
                                             const std::vector<complex>& x,
                                             std::vector<double>* residuals = nullptr);

/// LU with partial pivoting of the whole square (solve_dense.cpp).
solution solve_dense(const matrix_file& matrix, const right_hand_sides& rhs);
/// The direct sparse solver (solve_sparse.cpp). Throws file_error for options that don't fit the matrix.
solution solve_sparse(const matrix_file& matrix, const right_hand_sides& rhs, const solve_options& options);

}  // namespace qel::cli
