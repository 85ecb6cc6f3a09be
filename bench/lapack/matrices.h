// SPDX-License-Identifier: BSD-3-Clause
// What the benchmarks of LAPACK routines share: names and costs by element type, matrices, and work lengths.
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <random>
#include <string>
#include <vector>

#include "bench/support/compare.h"

namespace qel::bench {

template <class T>
struct named;
template <>
struct named<float> {
  static constexpr char kLetter = 's';
  static constexpr bool kComplex = false;
};
template <>
struct named<double> {
  static constexpr char kLetter = 'd';
  static constexpr bool kComplex = false;
};
template <>
struct named<std::complex<float>> {
  static constexpr char kLetter = 'c';
  static constexpr bool kComplex = true;
};
template <>
struct named<std::complex<double>> {
  static constexpr char kLetter = 'z';
  static constexpr bool kComplex = true;
};
template <class T>
using real_part_of = decltype(std::abs(T{}));

/// n cubed in operations of this type.
template <class T>
double cube(int n) {
  return (named<T>::kComplex ? 4.0 : 1.0) * n * static_cast<double>(n) * n;
}
template <class T>
std::string symbol(const std::string& name) {
  return named<T>::kLetter + name + "_";
}
template <class T>
std::string title(const std::string& name, int n) {
  return named<T>::kLetter + name + "/n:" + std::to_string(n);
}

template <class T>
std::vector<T> random_matrix(int m, int n, double diagonal = 0) {
  using real = real_part_of<T>;
  std::mt19937_64 generator(1);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::vector<T> values(static_cast<size_t>(m) * static_cast<size_t>(n));
  for (T& value : values) value = static_cast<T>(static_cast<real>(uniform(generator)));
  for (int i = 0; i < std::min(m, n); ++i) {
    values[static_cast<size_t>(i) * static_cast<size_t>(m + 1)] +=
        static_cast<T>(static_cast<real>(diagonal));
  }
  return values;
}

/// Calls call(work, length) first with a query, then with what it asked for, and returns the work array.
template <class T, class Call>
std::vector<T> queried_work(const Call& call) {
  T most{};
  call(&most, -1);
  std::vector<T> work(static_cast<size_t>(std::real(most)) + 1);
  return work;
}

void register_solvers();
void register_spectral();

}  // namespace qel::bench
