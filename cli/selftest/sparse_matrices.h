// SPDX-License-Identifier: BSD-3-Clause
// Sparse matrices of the self-test, in compressed rows that count from 1.
#pragma once

#include "cli/selftest/recorder.h"

namespace qel::cli::selftest {

template <class T>
struct sparse_rows {
  int rows = 0, columns = 0;
  std::vector<int> ia{1}, ja;
  std::vector<T> a;

  void add(int column, T value) {
    ja.push_back(column + 1);
    a.push_back(value);
  }
  void end_row() {
    ++rows;
    ia.push_back(static_cast<int>(ja.size()) + 1);
  }
  /// body(row, column, value)
  template <class Body>
  void each(const Body& body) const {
    for (int i = 0; i < rows; ++i) {
      for (int p = ia[static_cast<size_t>(i)] - 1; p < ia[static_cast<size_t>(i) + 1] - 1; ++p)
        body(i, ja[static_cast<size_t>(p)] - 1, widened(a[static_cast<size_t>(p)]));
    }
  }
};

/// Rows of very different lengths, some of them empty; a real diagonal, so that it may be a Hermitian's.
template <class T>
sparse_rows<T> random_rows(number_source& source, int rows, int columns) {
  sparse_rows<T> result;
  result.columns = columns;
  for (int i = 0; i < rows; ++i) {
    const double share = i % 7 == 3 ? -2 : i % 5 == 0 ? 0.9 : 12.0 / columns;
    for (int j = 0; j < columns; ++j) {
      if (source.next() < 2 * share - 1 || (share > 0 && i == j))
        result.add(j, i == j ? narrowed<T>(source.next()) : source.number<T>());
    }
    result.end_row();
  }
  return result;
}

}  // namespace qel::cli::selftest
