// SPDX-License-Identifier: BSD-3-Clause
// Sparse matrices by generators: grids, elasticity, convection, saddle points, circuits, complex shifts, and
// those that break solvers. Values come from fixed seeds, so that fill and pivots stay the same from run to
// run.
#pragma once

#include <algorithm>
#include <complex>
#include <string>
#include <vector>

#include "service/complex_arithmetic.h"

namespace qel::test {

struct sparse_entry {
  int row, col;
  std::complex<double> value;
};

/// All entries of a square matrix, both triangles, counted from 0; an entry given twice is a sum.
struct sparse_problem {
  std::string name;
  int n;
  int type;  ///< matrix type number of the direct solver: 1, 2, -2, 3, 4, -4, 6, 11, 13
  std::vector<sparse_entry> entries;
};

/// Rows counted from 1, columns ascending; of symmetric types the upper triangle with all of the diagonal.
template <class T>
struct csr_arrays {
  int n;
  int type;
  std::vector<int> ia, ja;
  std::vector<T> a;
};

template <class T>
T scalar_from(std::complex<double> value) {
  if constexpr (is_complex<T>) {
    return {static_cast<real_of<T>>(value.real()), static_cast<real_of<T>>(value.imag())};
  } else {
    return static_cast<T>(value.real());
  }
}

template <class T>
csr_arrays<T> csr_of(const sparse_problem& problem) {
  const bool symmetric = problem.type % 2 == 0;
  std::vector<sparse_entry> kept;
  for (const sparse_entry& e : problem.entries)
    if (!symmetric || e.row <= e.col) kept.push_back(e);
  if (symmetric)
    for (int i = 0; i < problem.n; ++i) kept.push_back({i, i, 0});
  std::stable_sort(kept.begin(), kept.end(), [](const sparse_entry& p, const sparse_entry& q) {
    return p.row != q.row ? p.row < q.row : p.col < q.col;
  });
  csr_arrays<T> result{problem.n, problem.type, std::vector<int>(static_cast<size_t>(problem.n) + 1), {}, {}};
  for (size_t k = 0; k < kept.size();) {
    const sparse_entry& e = kept[k];
    std::complex<double> sum = 0;
    for (; k < kept.size() && kept[k].row == e.row && kept[k].col == e.col; ++k) sum += kept[k].value;
    ++result.ia[static_cast<size_t>(e.row) + 1];
    result.ja.push_back(e.col + 1);
    result.a.push_back(scalar_from<T>(sum));
  }
  result.ia[0] = 1;
  for (size_t i = 0; i < static_cast<size_t>(problem.n); ++i) result.ia[i + 1] += result.ia[i];
  return result;
}

/// Laplacian of a grid of nx * ny * nz points, each tied to its neighbours (box: those across corners too).
sparse_problem grid(int nx, int ny, int nz, bool box = false);
/// As a grid, with three unknowns to a point that are all tied to each other.
sparse_problem elasticity(int nx, int ny, int nz);
/// Upwind convection and diffusion on a grid: real unsymmetric.
sparse_problem convection(int nx, int ny, int nz);
/// [H A^T; A 0] with a grid's H and m random constraints: real symmetric indefinite, zero diagonal block.
sparse_problem saddle_point(int side, int constraints);
/// Random graph of few entries to a row and some nets of many: real unsymmetric, zeros on the diagonal.
sparse_problem circuit(int n, unsigned seed);
/// A problem as one of another type: complex types get imaginary parts, Hermitian ones skew imaginary parts,
/// indefinite ones a shifted diagonal, unsymmetric ones unequal triangles.
sparse_problem as_type(const sparse_problem& grid_like, int type);
/// Dense first row and column, and a diagonal.
sparse_problem arrow(int n, int type);
/// Unknowns scaled by powers of 10 from 10^-range to 10^range.
sparse_problem badly_scaled(const sparse_problem& problem, int range);

}  // namespace qel::test
