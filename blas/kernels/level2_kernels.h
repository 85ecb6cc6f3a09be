// SPDX-License-Identifier: BSD-3-Clause
// The level-2 kernels of a processor level as tables, one per element type and family, and the declarations
// of every level's own tables. All operands by value; vectors are given by their lowest address and a stride
// of either sign. Kernels run on the calling thread, take no memory but the stack, and may be handed operands
// at any address.
#pragma once

#include "service/core_types.h"

namespace qel {

/// op(A): A, its transpose, its conjugate transpose; for real types the last two are one.
enum class matrix_op : int { kNone, kTransposed, kConjugated };

/// A triangle as it lies in memory: element (i, j) stands at column(j) + i, where column(j) is
/// base + j ld + growth j (j + 1) / 2.
template <class E>
struct stored_triangle {
  E* base;
  core_int n;       ///< order
  core_int k;       ///< diagonals beside the main one; n if not banded
  core_int ld;      ///< elements from (0, 0) to (0, 1), less the growth
  core_int growth;  ///< by which that distance grows with the columns: packed upper 1, lower -1, others 0
  bool upper;
};

/// Products of and updates to a general matrix.
template <class T>
struct general_kernels {
  /// y = alpha op(A) x + beta y
  void (*gemv)(matrix_op op, core_int m, core_int n, T alpha, const T* a, core_int lda, const T* x,
               core_int incx, T beta, T* y, core_int incy);
  /// The same with kl sub- and ku superdiagonals: element (i, j) at a[ku + i - j + j lda].
  void (*gbmv)(matrix_op op, core_int m, core_int n, core_int kl, core_int ku, T alpha, const T* a,
               core_int lda, const T* x, core_int incx, T beta, T* y, core_int incy);
  /// A += alpha x y**T, or y**H if conjugated
  void (*ger)(bool conjugated, core_int m, core_int n, T alpha, const T* x, core_int incx, const T* y,
              core_int incy, T* a, core_int lda);
};

/// Symmetric and Hermitian matrices; R is the real type of T. Unless symmetric is set, complex ones are
/// Hermitian, with imaginary parts on the diagonal taken and stored as zero.
template <class T, class R>
struct hermitian_kernels {
  /// y = alpha A x + beta y
  void (*product)(const stored_triangle<const T>& a, bool symmetric, T alpha, const T* x, core_int incx,
                  T beta, T* y, core_int incy);
  /// Contiguous sums += what the stored columns first .. last - 1 and their mirror images add to alpha A x
  void (*product_part)(const stored_triangle<const T>& a, bool symmetric, T alpha, const T* x, core_int incx,
                       T* sums, core_int first, core_int last);
  /// A += alpha x x**H in columns first .. last - 1
  void (*update)(const stored_triangle<T>& a, R alpha, const T* x, core_int incx, core_int first,
                 core_int last);
  /// A += alpha x y**H + conj(alpha) y x**H in columns first .. last - 1
  void (*update2)(const stored_triangle<T>& a, T alpha, const T* x, core_int incx, const T* y, core_int incy,
                  core_int first, core_int last);
};

/// Triangular matrices; a unit diagonal is not read.
template <class T>
struct triangular_kernels {
  /// x = op(A) x
  void (*product)(const stored_triangle<const T>& a, matrix_op op, bool unit, T* x, core_int incx);
  /// Elements first .. last - 1 of op(A) x into x, which holds the old ones there; copy holds all of the old
  /// x, contiguous.
  void (*product_part)(const stored_triangle<const T>& a, matrix_op op, bool unit, const T* copy, T* x,
                       core_int incx, core_int first, core_int last);
  /// The solution of op(A) x = b over b
  void (*solution)(const stored_triangle<const T>& a, matrix_op op, bool unit, T* x, core_int incx);
  /// The same for the diagonal block of rows first .. last - 1 and its part of b
  void (*solution_part)(const stored_triangle<const T>& a, matrix_op op, bool unit, T* x, core_int incx,
                        core_int first, core_int last);
  /// Elements first .. last - 1 of x -= op(A) times the elements known_first .. known_last - 1 of x, other
  /// ones
  void (*reduction_part)(const stored_triangle<const T>& a, matrix_op op, T* x, core_int incx,
                         core_int known_first, core_int known_last, core_int first, core_int last);
};

namespace l0_generic {
extern const general_kernels<float> general_s;
extern const general_kernels<double> general_d;
extern const general_kernels<complex8> general_c;
extern const general_kernels<complex16> general_z;
extern const hermitian_kernels<float, float> hermitian_s;
extern const hermitian_kernels<double, double> hermitian_d;
extern const hermitian_kernels<complex8, float> hermitian_c;
extern const hermitian_kernels<complex16, double> hermitian_z;
extern const triangular_kernels<float> triangular_s;
extern const triangular_kernels<double> triangular_d;
extern const triangular_kernels<complex8> triangular_c;
extern const triangular_kernels<complex16> triangular_z;
}  // namespace l0_generic

// The other levels have the same tables.
// clang-format off
#define QEL_DECLARE_LEVEL2(level)                                                                    \
  namespace level {                                                                                  \
  extern const decltype(l0_generic::general_s) general_s;                                            \
  extern const decltype(l0_generic::general_d) general_d;                                            \
  extern const decltype(l0_generic::general_c) general_c;                                            \
  extern const decltype(l0_generic::general_z) general_z;                                            \
  extern const decltype(l0_generic::hermitian_s) hermitian_s;                                        \
  extern const decltype(l0_generic::hermitian_d) hermitian_d;                                        \
  extern const decltype(l0_generic::hermitian_c) hermitian_c;                                        \
  extern const decltype(l0_generic::hermitian_z) hermitian_z;                                        \
  extern const decltype(l0_generic::triangular_s) triangular_s;                                      \
  extern const decltype(l0_generic::triangular_d) triangular_d;                                      \
  extern const decltype(l0_generic::triangular_c) triangular_c;                                      \
  extern const decltype(l0_generic::triangular_z) triangular_z;                                      \
  }
QEL_DECLARE_LEVEL2(l1_sse3)
QEL_DECLARE_LEVEL2(l2_ssse3)
QEL_DECLARE_LEVEL2(l5_avx2)
#undef QEL_DECLARE_LEVEL2
// clang-format on

}  // namespace qel
