// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tavik/core/exceptions.h"
#include "tavik/kernel/tavik_forwarders.h"
#include "tavik/matrix/interfaces.h"

namespace Tavik::Kernel {

/// Matrix operations over data blocks: matrices stored general, banded, packed and tridiagonal. An object has
/// no state, and any thread may use it.
///
/// The operations, with their element types, stand in tavik/matrix/matrix_kernel_operations.h; the static
/// forwarders named tavik_ and the routine's stem in tavik/kernel/tavik_forwarders.h.
class TAVIK_API MatrixDotNetBlas : public Matrix::IMatrixKernel, public TavikForwarders {
 public:
  /// The denominator that replaces an exact zero in SafeDivide.
  static constexpr double epsilon = 1e-09;
  /// Columns of Q at a time in MultiplyByQFromQR, for which it takes scratch.
  static constexpr int BLOCKSIZE = 64;

#define TAVIK_OPERATION
#define TAVIK_END override
#include "tavik/matrix/matrix_kernel_operations.h"
#undef TAVIK_OPERATION
#undef TAVIK_END
};

}  // namespace Tavik::Kernel
