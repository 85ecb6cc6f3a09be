// SPDX-License-Identifier: BSD-3-Clause
// Maximum product matching of rows and columns, and what follows from it: scaling, and the pairs of symmetric
// matrices.
#pragma once

#include <float.h>
#include <math.h>

#include "sparse/pardiso/order/ordering.h"

namespace qel::pardiso {

/// Not above the largest finite number; not a number if the value isn't.
template <class T>
double modulus(T value) {
  double m;
  if constexpr (is_complex<T>) {
    m = hypot(static_cast<double>(value.real), static_cast<double>(value.imag));
  } else {
    m = fabs(static_cast<double>(value));
  }
  return m > DBL_MAX ? DBL_MAX : m;
}

/// Rows of costs, counted from 0: entry p of row i has the cost
/// log(largest modulus of its column) - log(its modulus) >= 0.
struct cost_matrix {
  int n = 0;
  block<int64_t> start;
  block<int> column;
  block<double> cost;
  block<double> column_log;  ///< logarithm of a column's largest modulus
};

/// Of a's moduli, those of the whole matrix for symmetric types. Zeros and values that are not numbers are
/// left out, infinite ones count as the largest finite one. error -2.
template <class T>
stage_status build_costs(const csr_view<T>& a, memory_account& account, cost_matrix& result);

struct matching {
  int cardinality = 0;
  block<int> row_of;     ///< row matched with a column; -1 for none
  block<int> column_of;  ///< column matched with a row; -1 for none
  /// row_dual[i] + column_dual[j] <= cost(i, j), with equality for matched entries; complete matchings only.
  block<double> row_dual, column_dual;
};

/// The matching of the least sum of costs among those of the largest cardinality, by shortest augmenting
/// paths (I. Duff, J. Koster, SIAM J. Matrix Anal. Appl. 22 (2001) 973). Without a complete matching only the
/// cardinality counts. error -2.
stage_status match_rows(const cost_matrix& costs, memory_account& account, matching& result);

/// Pairs of a symmetric matrix from the cycles of its matching.
struct pairing {
  block<int> pairs;  ///< pair_count times two nodes, the one that goes first before the other
  int64_t pairs_length = 0;
  /// Nodes outside the pairs with a small diagonal entry, and the partners that they wait for: two and two.
  block<int> held_back;
  int64_t held_back_length = 0;
};

/// From a complete matching. column_log: of the costs; diagonal: moduli of the diagonal as it will be
/// factored. error -2.
stage_status pair_nodes(const matching& matched, int n, const double* column_log, const double* diagonal,
                        memory_account& account, pairing& result);

}  // namespace qel::pardiso
