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
#define TAVIK_OPERATION virtual
#define TAVIK_END = 0
#include "tavik/core/vector_kernel_operations.h"
#undef TAVIK_OPERATION
#undef TAVIK_END
};

/// Matrix utilities over plain arrays.
class TAVIK_API IBlasLikeKernel {
 public:
  virtual ~IBlasLikeKernel() = default;
  /// Kernel::BlasLikeFunctions says what each does.
  virtual void omatcopy(char ordering, char trans, int rows, int cols, double alpha, const Array<double>& A,
                        int lda, const Array<double>& B, int ldb) = 0;
  virtual double lange(char norm, int rows, int cols, const Array<double>& A, int lda) = 0;
};

/// Element-wise arithmetic over plain arrays.
class TAVIK_API IVectorMathKernel {
 public:
  virtual ~IVectorMathKernel() = default;
  /// Kernel::VectorMathFunctions says what each does.
  virtual void div(int n, const Array<double>& a, const Array<double>& b, const Array<double>& y) = 0;
  virtual void mul(int n, const Array<double>& a, const Array<double>& b, const Array<double>& y) = 0;
  virtual void sub(int n, const Array<double>& a, const Array<double>& b, const Array<double>& y) = 0;
};

}  // namespace Tavik::Core
