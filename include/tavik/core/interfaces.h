// SPDX-License-Identifier: BSD-3-Clause
// The interfaces of the class library that kernel classes implement.
#pragma once

#include "tavik/core/data_block.h"
#include "tavik/core/export.h"

namespace Tavik::Core {

/// Vector operations.
class TAVIK_API ITavikKernel {
 public:
  virtual ~ITavikKernel() = default;
  virtual double dot(int n, const DoubleDataBlock& x, int incx, const DoubleDataBlock& y, int incy) = 0;
  virtual float dot(int n, const FloatDataBlock& x, int incx, const FloatDataBlock& y, int incy) = 0;
  virtual DoubleComplex dot(int n, const DoubleComplexDataBlock& x, int incx, const DoubleComplexDataBlock& y,
                            int incy) = 0;
  virtual FloatComplex dot(int n, const FloatComplexDataBlock& x, int incx, const FloatComplexDataBlock& y,
                           int incy) = 0;
};

/// Matrix utilities over plain arrays.
class TAVIK_API IBlasLikeKernel {
 public:
  virtual ~IBlasLikeKernel() = default;
  virtual void omatcopy(char ordering, char trans, int rows, int cols, double alpha, const Array<double>& A,
                        int lda, const Array<double>& B, int ldb) = 0;
  virtual double lange(char norm, int rows, int cols, const Array<double>& A, int lda) = 0;
};

}  // namespace Tavik::Core
