// SPDX-License-Identifier: BSD-3-Clause
// Matrices of the tests of LAPACK routines, and a count of threads that no policy reduces.
#pragma once

#include <gtest/gtest.h>

#include <complex>
#include <random>
#include <vector>

#include "service/complex_arithmetic.h"
#include "service/serv.h"

namespace qel::lapack {

using element_types = testing::Types<float, double, complex8, complex16>;

template <class T>
struct matrix {
  core_int m, n, lda;
  std::vector<T> cells;

  matrix(core_int rows, core_int columns, core_int beyond = 3)
      : m(rows), n(columns), lda(rows + beyond), cells(static_cast<size_t>(lda * columns)) {}
  T* data() { return cells.data(); }
  const T* data() const { return cells.data(); }
  T& operator()(core_int i, core_int j) { return cells[static_cast<size_t>(i + j * lda)]; }
  const T& operator()(core_int i, core_int j) const { return cells[static_cast<size_t>(i + j * lda)]; }
};

template <class T>
matrix<T> random_matrix(core_int m, core_int n, unsigned seed, core_int beyond = 3) {
  std::mt19937 generator(seed);
  std::uniform_real_distribution<double> uniform(-1, 1);
  matrix<T> a(m, n, beyond);
  for (T& cell : a.cells) {
    cell = from_real<T>(static_cast<real_of<T>>(uniform(generator)));
    if constexpr (is_complex<T>) cell.imag = static_cast<real_of<T>>(uniform(generator));
  }
  return a;
}
/// Hermitian with a heavy diagonal; the imaginary parts there are noise that must not be read.
template <class T>
matrix<T> positive_matrix(core_int n, unsigned seed) {
  matrix<T> a = random_matrix<T>(n, n, seed);
  for (core_int j = 0; j < n; ++j) {
    a(j, j) = a(j, j) + from_real<T>(static_cast<real_of<T>>(n));
    for (core_int i = 0; i < j; ++i) a(i, j) = conj(a(j, i));
  }
  return a;
}

using wide = std::complex<double>;
template <class T>
wide widened(T value) {
  if constexpr (is_complex<T>) {
    return {value.real, value.imag};
  } else {
    return value;
  }
}

/// This many threads for all calls while it lives, whatever the machine has.
class forced_threads {
 public:
  explicit forced_threads(int threads) {
    serv_set_dynamic(0);
    serv_set_num_threads(threads);
  }
  ~forced_threads() {
    serv_set_num_threads(1);
    serv_set_dynamic(1);
  }
  forced_threads(const forced_threads&) = delete;
  forced_threads& operator=(const forced_threads&) = delete;
};

}  // namespace qel::lapack
