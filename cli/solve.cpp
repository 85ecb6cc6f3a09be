// SPDX-License-Identifier: BSD-3-Clause
// qel solve: reads a system, solves it as a sparse or a dense one, and reports how well it went.
#include <fmt/core.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "cli/progress.h"
#include "cli/solve_system.h"

namespace qel::cli {
namespace {

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

double worst_of(const std::vector<double>& errors) {
  double worst = 0;
  for (const double error : errors) {
    if (!(error <= worst)) worst = error;
  }
  return worst;
}

void print_text(const solve_options& options, const matrix_file& matrix, const right_hand_sides& rhs,
                const solution& result, double read_seconds) {
  const auto line = [](const std::string& what, const std::string& text) {
    fmt::print("{:<16}{}\n", what, text);
  };
  line("matrix", fmt::format("{}: {} {} {}, {} by {}, {} entries stored, {} in full", options.matrix,
                             name_of(matrix.format), name_of(matrix.field), name_of(matrix.symmetry),
                             matrix.rows, matrix.cols, matrix.stored, matrix.entries.size()));
  line("right-hand side",
       fmt::format("{}: {} column{}", options.right_hand_side, rhs.count, rhs.count == 1 ? "" : "s"));
  line("method", result.method);
  for (const auto& [what, text] : result.lines) line(what, text);
  line("seconds", fmt::format("read {:.3f}, factor {:.3f}, solve {:.3f}", read_seconds, result.factor_seconds,
                              result.solve_seconds));
  line("condition", fmt::format("about {:.1e}", 1 / result.reciprocal_condition));
  constexpr size_t kMostColumns = 8;
  std::string errors = fmt::format("{:.2e}", worst_of(result.backward_errors));
  if (result.backward_errors.size() > kMostColumns) {
    errors += fmt::format(" (largest of {} columns)", result.backward_errors.size());
  } else if (result.backward_errors.size() > 1) {
    errors = fmt::format("{:.2e}", fmt::join(result.backward_errors, " "));
  }
  line("backward error", errors);
  line("solution", options.output.empty() ? "not written (-o FILE writes it)" : options.output);
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
      {"method", result.method},
      {"status", result.singular.empty() ? "solved" : "singular"},
      {"seconds",
       {{"read", read_seconds}, {"factor", result.factor_seconds}, {"solve", result.solve_seconds}}},
  };
  if (!result.details.is_null()) report["solver"] = result.details;
  if (result.singular.empty()) {
    report["reciprocal_condition"] = result.reciprocal_condition;
    report["backward_error"] = worst_of(result.backward_errors);
    report["backward_errors"] = result.backward_errors;
    report["solution"] = options.output.empty() ? nlohmann::json(nullptr) : nlohmann::json(options.output);
  } else {
    report["reason"] = result.singular;
    if (result.zero_pivot > 0) report["zero_pivot"] = result.zero_pivot;
  }
  fmt::print("{}\n", report.dump(2));
}

}  // namespace

std::vector<double> normwise_backward_errors(const matrix_file& matrix, const right_hand_sides& rhs,
                                             const std::vector<complex>& x, std::vector<double>* residuals) {
  using wide = std::complex<long double>;
  const auto n = static_cast<size_t>(matrix.rows);
  std::vector<long double> row_sums(n);
  for (const matrix_entry& e : matrix.entries) row_sums[static_cast<size_t>(e.row)] += std::abs(e.value);
  const long double a_norm = n > 0 ? *std::max_element(row_sums.begin(), row_sums.end()) : 0;
  std::vector<double> errors;
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
    bool finite = true;
    for (const wide& r : residual) {
      finite = finite && std::isfinite(std::abs(r));
      r_norm = std::max(r_norm, std::abs(r));
    }
    const long double error = r_norm > 0 ? r_norm / (a_norm * x_norm + b_norm) : 0;
    errors.push_back(finite ? static_cast<double>(error) : INFINITY);
    if (residuals != nullptr) residuals->push_back(static_cast<double>(r_norm > 0 ? r_norm / b_norm : 0));
  }
  return errors;
}

int run_solve(const solve_options& options) {
  const solve_clock::time_point start = solve_clock::now();
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

  const bool is_sparse = matrix.format == matrix_format::coordinate && matrix.rows > 0 && !options.dense;
  const solution result = is_sparse ? solve_sparse(matrix, rhs, options) : solve_dense(matrix, rhs);
  const bool solved = result.singular.empty();
  if (solved && !options.output.empty()) {
    write_matrix_market(options.output, matrix.rows, rhs.count, result.values,
                        matrix.is_complex() || rhs.is_complex);
  }
  if (options.json) {
    print_json(options, matrix, rhs, result, read_seconds);
  } else if (solved) {
    print_text(options, matrix, rhs, result, read_seconds);
  }
  if (!solved) {
    fmt::print(stderr, "qel: {}: the matrix is singular: {}\n", options.matrix, result.singular);
    return kSingular;
  }
  return kDone;
}

}  // namespace qel::cli
