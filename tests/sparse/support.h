// SPDX-License-Identifier: BSD-3-Clause
// CSR matrices of the patterns that break loops, and their dense form as a reference.
#pragma once

#include <algorithm>
#include <complex>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "tests/entry/support.h"

namespace qel::test {

using reference = std::complex<long double>;

template <class T>
reference widen(T value) {
  if constexpr (is_complex<T>) {
    return {value.real, value.imag};
  } else {
    return value;
  }
}
/// Small integers, so that every sum is exact in whatever order.
template <class T>
T exact_value(std::mt19937& random) {
  const auto part = [&] { return static_cast<double>(static_cast<int>(random() % 17) - 8); };
  return make<T>(part(), is_complex<T> ? part() : 0);
}

/// Three-array form; base 1 unless shifted.
template <class T>
struct csr {
  int rows, columns;
  std::vector<int> ia, ja;
  std::vector<T> a;

  csr shifted(int by) const {
    csr result = *this;
    for (int& start : result.ia) start += by;
    for (int& column : result.ja) column += by;
    return result;
  }
  bool operator==(const csr& other) const { return ia == other.ia && ja == other.ja && same_values(other); }
  bool same_values(const csr& other) const {
    if (a.size() != other.a.size()) return false;
    for (std::size_t p = 0; p < a.size(); ++p)
      if (!(widen(a[p]) == widen(other.a[p]))) return false;
    return true;
  }
};

enum class pattern { random, sorted, empty_rows, dense_row, duplicates, diagonal_only };
inline constexpr pattern kPatterns[] = {pattern::random,    pattern::sorted,     pattern::empty_rows,
                                        pattern::dense_row, pattern::duplicates, pattern::diagonal_only};

template <class T>
csr<T> make_csr(pattern kind, int rows, int columns, unsigned seed) {
  std::mt19937 random(seed);
  csr<T> m{rows, columns, {1}, {}, {}};
  for (int i = 0; i < rows; ++i) {
    std::vector<int> row;
    if (kind == pattern::diagonal_only) {
      if (i < columns) row.push_back(i);
    } else if (kind == pattern::dense_row && i == rows / 2) {
      for (int j = 0; j < columns; ++j) row.push_back(j);
    } else if (columns > 0 && (kind != pattern::empty_rows || i % 3 == 1)) {
      const int tries = static_cast<int>(random() % 9);
      for (int t = 0; t < tries; ++t) {
        const int j = static_cast<int>(random() % static_cast<unsigned>(columns));
        if (kind == pattern::duplicates || std::find(row.begin(), row.end(), j) == row.end())
          row.push_back(j);
      }
      if (kind == pattern::sorted) std::sort(row.begin(), row.end());
    }
    for (const int j : row) {
      m.ja.push_back(j + 1);
      m.a.push_back(exact_value<T>(random));
    }
    m.ia.push_back(static_cast<int>(m.ja.size()) + 1);
  }
  return m;
}

template <class T>
std::vector<T> make_vector(int n, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<T> x;
  for (int i = 0; i < n; ++i) x.push_back(exact_value<T>(random));
  return x;
}

/// Row by row.
struct dense {
  int rows, columns;
  std::vector<reference> at;
  dense(int m, int n) : rows(m), columns(n), at(static_cast<std::size_t>(m) * static_cast<std::size_t>(n)) {}
  reference& operator()(int i, int j) {
    return at[static_cast<std::size_t>(i) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(j)];
  }
  reference operator()(int i, int j) const { return const_cast<dense&>(*this)(i, j); }
};

template <class T>
dense dense_of(const csr<T>& m) {
  dense d(m.rows, m.columns);
  for (int i = 0; i < m.rows; ++i)
    for (int p = m.ia[i] - 1; p < m.ia[i + 1] - 1; ++p) d(i, m.ja[p] - 1) += widen(m.a[p]);
  return d;
}

inline dense op(char trans, const dense& d) {
  if (trans == 'N') return d;
  dense t(d.columns, d.rows);
  for (int i = 0; i < d.rows; ++i)
    for (int j = 0; j < d.columns; ++j) t(j, i) = trans == 'C' ? std::conj(d(i, j)) : d(i, j);
  return t;
}

}  // namespace qel::test
