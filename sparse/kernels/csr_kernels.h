// SPDX-License-Identifier: BSD-3-Clause
// Kernels of the products of a CSR matrix and a vector, by processor level and element type. Every one adds
// into its result and works on a range of rows, so that a driver can share the rows out among threads.
#pragma once

#include "service/core_types.h"

namespace qel {

/// The rows first .. last - 1 (from 0) of a CSR matrix with 32-bit indices. Row i has the entries
/// begin[i] - base .. end[i] - base - 1; columns and row starts count from base.
struct csr_slice {
  core_int first, last;
  const int* columns;
  const int* begin;
  const int* end;
  int base;
  core_int column_count;  ///< for the ones of a unit diagonal: rows from here on have none
  bool overwrites;        ///< gather, symmetric: the rows of y are written, else added to
  bool streams;           ///< the matrix comes from memory: asked for ahead
  bool in_steps = false;  ///< and in two steps, as elements of x or y come from all over them
};

/// Where a thread's rows of a symmetric matrix add what lies outside of them: far is an accumulator for all
/// rows, of which a block of kFarBlock rows is zeroed at its first use and marked in touched.
inline constexpr int kFarBlockBits = 9;
template <class T>
struct far_rows {
  T* far;
  unsigned char* touched;
};

/// Which stored entries take part: all, the triangle with its diagonal, or the diagonal alone; a unit
/// diagonal replaces what is stored there.
enum csr_part : int { kWhole, kLower, kLowerUnit, kUpper, kUpperUnit, kDiagonal, kDiagonalUnit, kCsrParts };
[[gnu::always_inline]] constexpr bool is_unit(csr_part part) {
  return part == kLowerUnit || part == kUpperUnit || part == kDiagonalUnit;
}

/// How a triangle is mirrored: as it is (symmetric), conjugated (Hermitian), with its sign changed and no
/// diagonal (antisymmetric).
enum csr_mirror : int { kSame, kConjugated, kOpposite, kCsrMirrors };

template <class T>
struct csr_kernels {
  /// y += alpha * A * x, or transposed y += alpha * A^T * x.
  using product = void(const csr_slice* rows, const T* a, const T* alpha, const T* x, T* y);
  /// The same with the mirrored triangle. With far, only rows of the slice are added to in y.
  using mirrored = void(const csr_slice* rows, const T* a, const T* alpha, const T* x, T* y,
                        const far_rows<T>* far);

  product* gather[kCsrParts][2];           ///< [part][stored values conjugated]
  product* scatter[kCsrParts][2];          ///< the same for the transposed product
  mirrored* symmetric[kCsrMirrors][4][2];  ///< [mirror][lower, lower unit, upper, upper unit][conjugated]
};

#define QEL_CSR_LEVEL(level)                 \
  namespace level {                          \
  extern const csr_kernels<double> csr_d;    \
  extern const csr_kernels<complex16> csr_z; \
  }
QEL_CSR_LEVEL(l0_generic)
QEL_CSR_LEVEL(l4_avx)
QEL_CSR_LEVEL(l5_avx2)
#undef QEL_CSR_LEVEL

}  // namespace qel
