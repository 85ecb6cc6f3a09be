// SPDX-License-Identifier: BSD-3-Clause
// The direct solver's view of the caller's matrix, and what a stage reports.
#pragma once

#include "service/complex_arithmetic.h"

namespace qel::pardiso {

/// Properties of a matrix type number (1, 2, -2, 3, 4, -4, 6, 11, 13).
struct matrix_type {
  int number;
  /// One triangle is stored and one factor kept: 2, -2, 4, -4, 6.
  constexpr bool symmetric() const { return number % 2 == 0; }
  constexpr bool hermitian() const { return number == 4 || number == -4; }
  constexpr bool definite() const { return number == 2 || number == 4; }
  constexpr bool indefinite() const { return symmetric() && !definite(); }
  constexpr bool is_complex() const {
    return number == 3 || number == 4 || number == -4 || number == 6 || number == 13;
  }
  /// L and U: 1, 3, 11, 13.
  constexpr bool unsymmetric() const { return !symmetric(); }
};

/// Rows that count from 1 (ia[0] = 1, ja from 1 to n); symmetric types: the upper triangle.
template <class T>
struct csr_view {
  int n;
  const int* ia;
  const int* ja;
  const T* a;
  matrix_type type;
};

/// error as the caller gets it, and the sub-code that selects the report's detail.
struct stage_status {
  int error = 0;
  int sub_code = 0;
  bool ok() const { return error == 0; }
};

/// Sub-code of an analysis whose counts leave the range of 32-bit integers.
inline constexpr int analysis_overflow = -182;

/// Sub-code of error -4 after the caller's progress function asked for an end.
inline constexpr int factorisation_cancelled = -113;

}  // namespace qel::pardiso
