// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tavik/core/exceptions.h"
#include "tavik/core/interfaces.h"

namespace Tavik::Kernel {

using namespace Core;  // the lists of operations name the class library's types as they are

/// Vector and matrix operations over data blocks. An object has no state, and any thread may use it.
///
/// A vector is (n, block, inc): element k is Data[Offset + k * inc], for any sign of inc; a stride of 0
/// repeats one element. Strides that run past the array's end are the caller's error where a numeric entry
/// does the work: only the lowest address that a vector touches first is then a checked access, which throws
/// std::out_of_range before any number is read or written. Operations that loop themselves check both ends.
/// Element (i, j) of a matrix is Data[Offset + i * rowStride + j * colStride].
///
/// The operations, with their element types, stand in tavik/core/vector_kernel_operations.h.
class TAVIK_API DotNetBlas : public Core::ITavikKernel {
 public:
  /// The denominator that replaces an exact zero in SafeDivide.
  static constexpr double epsilon = 1e-09;

  // The frame's helpers.

  /// Index of the lowest address of a vector that starts at offset: offset itself for inc >= 0, otherwise
  /// (n - 1) * inc + offset. n is not tested: n = 0 and inc = -2 move up by 2. Wraps on overflow.
  static int AdjustVectorOffset(int n, int inc, int offset);
  /// True if a matrix of numRows rows is column-major without gaps: rowStride 1 and colStride numRows.
  static bool IsCompactStride(int numRows, int rowStride, int colStride);
  /// Zero-based to one-based, in place: adds 1 to every element.
  static void AdjustIndicesUp(const Core::Array<int>& indices);
  /// One-based to zero-based, in place: subtracts 1 from every element.
  static void AdjustIndicesDown(const Core::Array<int>& indices);
  /// Swaps rows with cols and rowStride with colStride: the same storage, seen transposed.
  static void TransposeSizes(int& rows, int& cols, int& rowStride, int& colStride);

  // What the products do with an operand that has gaps.

  /// C(i, j) := the dot product of row i of op(A) and column j of op(B), k elements long; op transposes for
  /// the letters 'T' and 't'. With a negative stride the base of a transposed operand is found from m (or n)
  /// in place of k. compact is not read.
  static void NonCompactProduct(int m, int n, int k, char transa, char transb, const DoubleDataBlock& a,
                                int aRowStride, int aColStride, const DoubleDataBlock& b, int bRowStride,
                                int bColStride, const DoubleDataBlock& c, int cRowStride, int cColStride);
  static void NonCompactProduct(int m, int n, int k, char transa, char transb, const FloatDataBlock& a,
                                int aRowStride, int aColStride, const FloatDataBlock& b, int bRowStride,
                                int bColStride, const FloatDataBlock& c, int cRowStride, int cColStride);
  static void NonCompactProduct(int m, int n, int k, char transa, char transb,
                                const DoubleComplexDataBlock& a, int aRowStride, int aColStride,
                                const DoubleComplexDataBlock& b, int bRowStride, int bColStride,
                                const DoubleComplexDataBlock& c, int cRowStride, int cColStride,
                                bool compact);
  static void NonCompactProduct(int m, int n, int k, char transa, char transb, const FloatComplexDataBlock& a,
                                int aRowStride, int aColStride, const FloatComplexDataBlock& b,
                                int bRowStride, int bColStride, const FloatComplexDataBlock& c,
                                int cRowStride, int cColStride, bool compact);
  /// y := A x by a dot product per row.
  static void ProductUsingZdotu(int m, int n, const DoubleComplexDataBlock& a, int aRowStride, int aColStride,
                                const DoubleComplexDataBlock& x, int incx, const DoubleComplexDataBlock& y,
                                int incy);
  static void ProductUsingCdotu(int m, int n, const FloatComplexDataBlock& a, int aRowStride, int aColStride,
                                const FloatComplexDataBlock& x, int incx, const FloatComplexDataBlock& y,
                                int incy);

#define TAVIK_OPERATION
#define TAVIK_END override
#include "tavik/core/vector_kernel_operations.h"
#undef TAVIK_OPERATION
#undef TAVIK_END
};

}  // namespace Tavik::Kernel
