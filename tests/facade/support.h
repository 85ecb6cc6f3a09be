// SPDX-License-Identifier: BSD-3-Clause
// What the facade tests share: blocks in the middle of arrays, and their elements as complex numbers, in
// which everything is computed again by plain loops.
#pragma once

#include <gtest/gtest.h>

#include <complex>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

#include "tavik/kernel/dot_net_blas.h"

namespace Tavik::test {

using namespace Core;
using wide = std::complex<double>;

template <class T>
struct parts_of {
  using real = T;
  static constexpr bool complex = false;
};
template <class R>
struct parts_of<Complex<R>> {
  using real = R;
  static constexpr bool complex = true;
};
template <class T>
using real_of = typename parts_of<T>::real;
template <class T>
inline constexpr bool is_complex = parts_of<T>::complex;
template <class T>
inline constexpr double kEpsilon = std::numeric_limits<real_of<T>>::epsilon();

using AllTypes = testing::Types<double, float, DoubleComplex, FloatComplex>;
using RealTypes = testing::Types<double, float>;
using ComplexTypes = testing::Types<DoubleComplex, FloatComplex>;

template <class T>
wide widened(T v) {
  if constexpr (is_complex<T>) {
    return {v.Real, v.Imag};
  } else {
    return v;
  }
}
template <class T>
T narrowed(wide v) {
  if constexpr (is_complex<T>) {
    return {static_cast<real_of<T>>(v.real()), static_cast<real_of<T>>(v.imag())};
  } else {
    return static_cast<T>(v.real());
  }
}

/// Small numbers that are multiples of 1/4, so that sums and products of a few are exact in every type; none
/// is 0.
template <class T>
Array<T> exact_numbers(int length, unsigned seed) {
  std::mt19937 engine(seed);
  const auto number = [&engine] {
    return (static_cast<double>(engine() % 15) - 7.0 + 0.25 * static_cast<double>(engine() % 3 + 1));
  };
  Array<T> array(length);
  for (int i = 0; i < length; ++i) {
    const double re = number();
    array[i] = narrowed<T>({re, number()});
  }
  return array;
}
/// Uniform in [-1, 1] in both parts.
template <class T>
Array<T> random_numbers(int length, unsigned seed) {
  std::mt19937 engine(seed);
  std::uniform_real_distribution<double> uniform(-1, 1);
  Array<T> array(length);
  for (int i = 0; i < length; ++i) {
    const double re = uniform(engine);
    array[i] = narrowed<T>({re, uniform(engine)});
  }
  return array;
}
template <class T>
Array<T> copy_of(const Array<T>& from) {
  Array<T> array(from.Length());
  for (int i = 0; i < from.Length(); ++i) array[i] = from[i];
  return array;
}
template <class T>
std::vector<T> values_of(const Array<T>& from) {
  std::vector<T> values;
  for (int i = 0; i < from.Length(); ++i) values.push_back(from[i]);
  return values;
}

/// How a vector lies in its array.
struct placing {
  int offset, inc;
};
/// Room of 60 elements each way around offset 100, for vectors of up to 20 elements.
inline constexpr int kRoom = 200;
inline constexpr placing kPlacings[] = {{100, 1}, {100, -1}, {97, 3}, {101, -2}, {0, 1}};

/// An operand with its array as it was before.
template <class T>
struct vector_operand {
  DataBlock<T> block;
  int inc;
  std::vector<T> before;
  vector_operand(placing where, unsigned seed)
      : block{exact_numbers<T>(kRoom, seed), where.offset}, inc(where.inc), before(values_of(block.Data)) {}
  int index(int k) const { return block.Offset + k * inc; }
  wide was(int k) const { return widened(before[static_cast<size_t>(index(k))]); }
  wide is(int k) const { return widened(block.Data[index(k)]); }
  /// Elements 0 .. n - 1 are want(k), all others as before.
  template <class Want>
  void expect(int n, const Want& want, double tolerance, const char* what) const {
    std::vector<wide> all;
    for (const T& v : before) all.push_back(widened(v));
    for (int k = 0; k < n; ++k) all[static_cast<size_t>(index(k))] = want(k);
    for (int i = 0; i < kRoom; ++i) {
      const wide w = all[static_cast<size_t>(i)];
      ASSERT_LE(std::abs(widened(block.Data[i]) - w), tolerance * std::abs(w)) << what << " at " << i;
    }
  }
  void expect_unchanged(const char* what) const {
    expect(
        0, [](int) { return wide(); }, 0, what);
  }
};

/// A matrix operand of up to 5 x 4 in the same room.
struct matrix_placing {
  int offset, row_stride, col_stride;
};
inline constexpr matrix_placing kMatrixPlacings[] = {{100, 1, 5},   {100, 1, 7},   {100, 7, 1},
                                                     {100, -2, 11}, {100, 3, -16}, {0, 1, 5}};
template <class T>
struct matrix_operand {
  DataBlock<T> block;
  int row_stride, col_stride;
  std::vector<T> before;
  matrix_operand(matrix_placing where, unsigned seed)
      : block{exact_numbers<T>(kRoom, seed), where.offset},
        row_stride(where.row_stride),
        col_stride(where.col_stride),
        before(values_of(block.Data)) {}
  int index(int i, int j) const { return block.Offset + i * row_stride + j * col_stride; }
  wide was(int i, int j) const { return widened(before[static_cast<size_t>(index(i, j))]); }
  template <class Want>
  void expect(int rows, int cols, const Want& want, double tolerance, const char* what) const {
    std::vector<wide> all;
    for (const T& v : before) all.push_back(widened(v));
    for (int j = 0; j < cols; ++j) {
      for (int i = 0; i < rows; ++i) all[static_cast<size_t>(index(i, j))] = want(i, j);
    }
    for (int i = 0; i < kRoom; ++i) {
      const wide w = all[static_cast<size_t>(i)];
      ASSERT_LE(std::abs(widened(block.Data[i]) - w), tolerance * (1 + std::abs(w))) << what << " at " << i;
    }
  }
  void expect_unchanged(const char* what) const {
    expect(
        0, 0, [](int, int) { return wide(); }, 0, what);
  }
};

}  // namespace Tavik::test
