// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tavik/core/data_block.h"
#include "tavik/core/interfaces.h"

namespace Tavik::Kernel {

/// Vector and matrix operations over data blocks. An object has no state, and any thread may use it.
///
/// A vector is (n, block, inc): element k is Data[Offset + k * inc], for any sign of inc; a stride of 0
/// repeats one element. Strides that run past the array's end are the caller's error and not tested; only
/// the lowest address that a vector touches first is a checked access, which throws std::out_of_range
/// before any number is read or written.
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

  /// Dot product, the sum of x_k * y_k over n elements; complex vectors are not conjugated. 0 for n <= 0.
  double dot(int n, const Core::DoubleDataBlock& x, int incx, const Core::DoubleDataBlock& y,
             int incy) override;
  float dot(int n, const Core::FloatDataBlock& x, int incx, const Core::FloatDataBlock& y, int incy) override;
  Core::DoubleComplex dot(int n, const Core::DoubleComplexDataBlock& x, int incx,
                          const Core::DoubleComplexDataBlock& y, int incy) override;
  Core::FloatComplex dot(int n, const Core::FloatComplexDataBlock& x, int incx,
                         const Core::FloatComplexDataBlock& y, int incy) override;
};

}  // namespace Tavik::Kernel
