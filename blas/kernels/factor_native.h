// SPDX-License-Identifier: BSD-3-Clause
// What a native level offers to factorisations: narrow panels, small matrices, and waves of plane
// rotations.
// One table per element type and level.
#pragma once

#include "service/core_types.h"

namespace qel {

/// Most columns of an LU panel.
inline constexpr int kFactorColumns = 64;
/// Most rows of a Cholesky triangle: its copy lies on the stack.
template <class T>
inline constexpr int kCholeskyOrder = sizeof(T) > 8 ? 64 : 128;

/// How a kernel factors a panel.
enum class lu_form : int {
  in_registers,  ///< all of it
  rows_stay,     ///< in a copy, with masks; exchanges come at the end
  by_columns,
};
/// Most rows, and most columns, of panels in registers, and most columns of those whose rows stay.
inline constexpr core_int kRegisterOrder = 8, kStayingColumns = 32;

/// Registers hold a panel if they are as long as AVX-512's; below order five columns are quicker. Complex
/// rows that stay gain nothing: one vector holds too few of them.
constexpr lu_form lu_form_of(core_int m, core_int n, core_int real_bytes, bool is_complex,
                             int register_bytes) {
  constexpr core_int kFewest = 5, kVectorBytes = 32, kVectors = 4;
  if (m < kFewest || n < kFewest) return lu_form::by_columns;
  if (register_bytes == 64 && m <= kRegisterOrder && n <= kRegisterOrder) return lu_form::in_registers;
  const core_int most_rows = kVectors * kVectorBytes / real_bytes;
  return is_complex || m > most_rows || n > kStayingColumns ? lu_form::by_columns : lu_form::rows_stay;
}

/// Largest order of a matrix that is inverted in a copy.
inline constexpr int kInverseOrder = 64;

/// Largest matrix, its columns whole vectors, that is factored by reflectors in a copy.
inline constexpr int kReflectBytes = 65536;

template <class T>
struct real_of_pair {
  using type = T;
};
template <>
struct real_of_pair<complex8> {
  using type = float;
};
template <>
struct real_of_pair<complex16> {
  using type = double;
};

template <class T>
struct factor_kernels {
  using R = typename real_of_pair<T>::type;

  /// A = P L U, m x n, n at most kFactorColumns; returns the number of the first zero pivot, 0 if there is
  /// none.
  core_int (*lu)(core_int m, core_int n, T* a, core_int lda, core_int* pivots);
  /// A = U**H U (upper) or L L**H, one triangle of order n, at most kCholeskyOrder<T>; returns the order of
  /// the first leading minor that is not positive, 0 if all are.
  core_int (*cholesky)(bool upper, core_int n, T* a, core_int lda);
  /// A = inv(U) inv(L) for the LU factors of order n, at most kInverseOrder, in A: column j goes to
  /// places[j]. False, with nothing written, if a pivot has no safe reciprocal or a result is not finite.
  bool (*invert_lu)(core_int n, T* a, core_int lda, const core_int* places);
  /// A = Q R, m x n, by reflectors as LAPACK stores them. Returns how many columns are done: none of a matrix
  /// larger than kReflectBytes, and not those from one on that is zero or too small or large for its squares.
  core_int (*reflect)(core_int m, core_int n, T* a, core_int lda, T* tau);
  /// Rotates neighbouring columns of A, m x n with at least two of them, or its rows (left), by pairs from
  /// the first on or from the last back: (x, y) becomes (c x + s y, c y - s x).
  void (*rotate)(bool left, bool forward, core_int m, core_int n, const R* cosines, const R* sines, T* a,
                 core_int lda);
};

namespace l5_avx2 {
extern const factor_kernels<float> sfactor;
extern const factor_kernels<double> dfactor;
extern const factor_kernels<complex8> cfactor;
extern const factor_kernels<complex16> zfactor;
}  // namespace l5_avx2

namespace l6_avx512 {
extern const factor_kernels<float> sfactor;
extern const factor_kernels<double> dfactor;
extern const factor_kernels<complex8> cfactor;
extern const factor_kernels<complex16> zfactor;
}  // namespace l6_avx512

}  // namespace qel
