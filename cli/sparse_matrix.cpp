// SPDX-License-Identifier: BSD-3-Clause
#include "cli/sparse_matrix.h"

#include <fmt/core.h>

#include <algorithm>
#include <limits>

#include "qel/sparse.h"

namespace qel::cli {
namespace {

bool is_symmetric_type(int type) { return type % 2 == 0; }
bool is_hermitian_type(int type) { return type == 4 || type == -4; }

bool by_place(const matrix_entry& a, const matrix_entry& b) {
  return a.row != b.row ? a.row < b.row : a.col < b.col;
}

/// The entries in order, those of the same place added up.
std::vector<matrix_entry> summed(std::vector<matrix_entry> entries) {
  std::sort(entries.begin(), entries.end(), by_place);
  size_t kept = 0;
  for (const matrix_entry& e : entries) {
    if (kept > 0 && entries[kept - 1].row == e.row && entries[kept - 1].col == e.col) {
      entries[kept - 1].value += e.value;
    } else {
      entries[kept++] = e;
    }
  }
  entries.resize(kept);
  return entries;
}

/// Whether the transposed (hermitian: and conjugated) matrix is the same.
bool equals_transposed(const matrix_file& matrix, bool hermitian) {
  const bool told = hermitian ? matrix.symmetry == matrix_symmetry::hermitian ||
                                    (matrix.symmetry == matrix_symmetry::symmetric && !matrix.is_complex())
                              : matrix.symmetry == matrix_symmetry::symmetric;
  if (told) return true;
  std::vector<matrix_entry> turned = matrix.entries;
  for (matrix_entry& e : turned) {
    std::swap(e.row, e.col);
    if (hermitian) e.value = std::conj(e.value);
  }
  const std::vector<matrix_entry> a = summed(matrix.entries), b = summed(std::move(turned));
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const matrix_entry& p, const matrix_entry& q) {
    return p.row == q.row && p.col == q.col && p.value == q.value;
  });
}

bool diagonal_is_positive(const matrix_file& matrix) {
  std::vector<double> diagonal(static_cast<size_t>(matrix.rows));
  for (const matrix_entry& e : matrix.entries) {
    if (e.row == e.col) diagonal[static_cast<size_t>(e.row)] += e.value.real();
  }
  return std::all_of(diagonal.begin(), diagonal.end(), [](double d) { return d > 0; });
}

}  // namespace

bool is_complex_type(int type) { return type == 3 || type == 4 || type == -4 || type == 6 || type == 13; }

const char* describe_type(int type) {
  switch (type) {
    case 1:
      return "real, structurally symmetric";
    case 2:
      return "real symmetric, positive definite";
    case -2:
      return "real symmetric, indefinite";
    case 3:
      return "complex, structurally symmetric";
    case 4:
      return "Hermitian, positive definite";
    case -4:
      return "Hermitian, indefinite";
    case 6:
      return "complex symmetric";
    case 11:
      return "real, nonsymmetric";
    default:
      return "complex, nonsymmetric";
  }
}

std::vector<int> types_to_try(const matrix_file& matrix, int given_type, const std::string& name) {
  if (given_type != 0) {
    if (matrix.is_complex() && !is_complex_type(given_type)) {
      throw file_error(fmt::format("{}: the matrix is complex, type {} is real", name, given_type));
    }
    if (is_symmetric_type(given_type) && !equals_transposed(matrix, is_hermitian_type(given_type))) {
      throw file_error(fmt::format("{}: type {} ({}) does not suit the matrix", name, given_type,
                                   describe_type(given_type)));
    }
    return {given_type};
  }
  const bool symmetric = matrix.symmetry == matrix_symmetry::symmetric;
  if (matrix.is_complex()) {
    if (matrix.symmetry == matrix_symmetry::hermitian) {
      return diagonal_is_positive(matrix) ? std::vector{4, -4} : std::vector{-4};
    }
    return {symmetric ? 6 : 13};
  }
  if (!symmetric) return {11};
  return diagonal_is_positive(matrix) ? std::vector{2, -2} : std::vector{-2};
}

sparse_matrix sparse_form(const matrix_file& matrix, int type, const std::string& name) {
  std::vector<matrix_entry> entries;
  entries.reserve(matrix.entries.size() + static_cast<size_t>(matrix.rows));
  for (const matrix_entry& e : matrix.entries) {
    if (!is_symmetric_type(type) || e.row <= e.col) entries.push_back(e);
  }
  for (int i = 0; i < matrix.rows; ++i) entries.push_back({i, i, 0});
  entries = summed(std::move(entries));
  if (entries.size() >= static_cast<size_t>(std::numeric_limits<int>::max())) {
    throw file_error(name + ": more entries than the solver can count");
  }
  sparse_matrix result;
  result.n = matrix.rows;
  result.ia.assign(static_cast<size_t>(matrix.rows) + 1, 0);
  for (const matrix_entry& e : entries) {
    ++result.ia[static_cast<size_t>(e.row) + 1];
    result.ja.push_back(e.col + 1);
    result.values.push_back(e.value.real());
    if (is_complex_type(type)) result.values.push_back(e.value.imag());
  }
  result.ia[0] = 1;
  for (size_t i = 0; i < static_cast<size_t>(matrix.rows); ++i) result.ia[i + 1] += result.ia[i];

  const int nnz = result.ia.back() - 1, base = 1, size = 256;
  char text[size];
  if (qel_csr_check(&result.n, &result.n, result.ia.data(), result.ja.data(), &nnz, &base, text, &size) !=
      0) {
    throw file_error(fmt::format("{}: {}", name, text));
  }
  return result;
}

}  // namespace qel::cli
