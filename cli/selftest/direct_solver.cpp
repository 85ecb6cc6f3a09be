// SPDX-License-Identifier: BSD-3-Clause
// The direct sparse solver: systems of a grid in all matrix types, both precisions and orderings; solutions
// must satisfy their equations.
#include <fmt/core.h>

#include <cmath>
#include <tuple>

#include "cli/selftest/sparse_matrices.h"
#include "qel/pardiso.h"

namespace qel::cli::selftest {
namespace {

bool is_symmetric(int type) { return type % 2 == 0; }
bool is_hermitian(int type) { return type == 4 || type == -4; }
bool is_complex_number(int type) { return type == 3 || type == 4 || type == -4 || type == 6 || type == 13; }

/// A grid of side times side points, each coupled to its neighbours; nonsymmetric ones to one far away, too.
/// Only the upper triangle for symmetric types.
template <class T>
sparse_rows<T> grid(int type, int side, number_source& source) {
  sparse_rows<T> result;
  result.columns = side * side;
  const bool definite = type == 2 || type == 4;
  // Values of the upper triangle are needed again below the diagonal of structurally symmetric types only as
  // places, so every entry has its own.
  for (int i = 0; i < result.columns; ++i) {
    for (int j = 0; j < result.columns; ++j) {
      const int rows_apart = std::abs(i / side - j / side), columns_apart = std::abs(i % side - j % side);
      const bool neighbour = rows_apart + columns_apart <= 1;
      const bool far = (type == 11 || type == 13) && j == (i * 7 + 3) % result.columns;
      if ((!neighbour && !far) || (is_symmetric(type) && j < i)) continue;
      wide value = widened(source.number<T>());
      if (i == j) {
        value += wide(definite || i % 3 != 0 || !is_symmetric(type) ? 6 : -6);
        if (is_hermitian(type)) value = value.real();
      }
      result.add(j, narrowed<T>(value));
    }
    result.end_row();
  }
  return result;
}

template <class T>
void check_system(recorder& out, int type, int side, int ordering, int nrhs) {
  number_source source(static_cast<std::uint64_t>(type + 100) * 1000 + static_cast<std::uint64_t>(side));
  const sparse_rows<T> a = grid<T>(type, side, source);
  const int n = a.rows, one = 1, silent = 0;
  std::vector<T> b = source.numbers<T>(n * nrhs), x(b.size());
  const std::vector<T> given = b;
  void* pt[64];
  int iparm[64];
  pardisoinit(pt, &type, iparm);
  iparm[1] = ordering;
  iparm[27] = sizeof(real_of<T>) == 4;
  const auto call = [&](int phase) {
    int error = 0;
    pardiso(pt, &one, &one, &type, &phase, &n, a.a.data(), a.ia.data(), a.ja.data(), nullptr, &nrhs, iparm,
            &silent, b.data(), x.data(), &error);
    return error;
  };
  const std::string sizes = fmt::format("type {} {} grid {} ordering {} nrhs {}", type,
                                        sizeof(real_of<T>) == 4 ? "single" : "double", side, ordering, nrhs);
  const int error = call(13);
  call(-1);
  out.expect("pardiso", fmt::format("{} error {}", sizes, error), error == 0);
  double worst = 0;
  for (int column = 0; column < nrhs; ++column) {
    const auto at = [&](const std::vector<T>& v, int i) {
      return widened(v[static_cast<size_t>(i + column * n)]);
    };
    std::vector<wide> residual(static_cast<size_t>(n));
    double matrix_norm = 0, solution_norm = 0, largest = 0;
    a.each([&](int i, int j, const wide& value) {
      residual[static_cast<size_t>(i)] += value * at(x, j);
      if (is_symmetric(type) && i != j)
        residual[static_cast<size_t>(j)] += (is_hermitian(type) ? std::conj(value) : value) * at(x, i);
      matrix_norm = std::max(matrix_norm, static_cast<double>(std::abs(value)));
    });
    for (int i = 0; i < n; ++i) {
      const double off = static_cast<double>(std::abs(residual[static_cast<size_t>(i)] - at(given, i)));
      raise(largest, off);
      solution_norm = std::max(solution_norm, static_cast<double>(std::abs(at(x, i))));
    }
    const double relative = largest / (5 * matrix_norm * solution_norm * kEpsilon<T>);
    raise(worst, relative);
  }
  out.compare("pardiso", sizes, worst, 100);
}

template <class R>
void check_precision(recorder& out) {
  using pair = std::conditional_t<sizeof(R) == 4, complex8, complex16>;
  for (const int type : {1, 2, -2, 3, 4, -4, 6, 11, 13}) {
    for (const auto& [side, ordering, nrhs] : {std::tuple{2, 2, 1}, {7, 0, 2}, {13, 2, 1}, {24, 3, 5}}) {
      if (is_complex_number(type)) {
        check_system<pair>(out, type, side, ordering, nrhs);
      } else {
        check_system<R>(out, type, side, ordering, nrhs);
      }
    }
  }
}

}  // namespace

void check_direct_solver(recorder& out) {
  check_precision<double>(out);
  check_precision<float>(out);
}

}  // namespace qel::cli::selftest
