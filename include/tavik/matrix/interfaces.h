// SPDX-License-Identifier: BSD-3-Clause
// The interfaces of the class library's matrix part that kernel classes implement.
#pragma once

#include "tavik/core/data_block.h"
#include "tavik/core/export.h"

namespace Tavik::Matrix {

using namespace Core;

/// Factorisations, solvers, decompositions and structured products of matrices.
class TAVIK_API IMatrixKernel {
 public:
  virtual ~IMatrixKernel() = default;
#define TAVIK_OPERATION virtual
#define TAVIK_END = 0
#include "tavik/matrix/matrix_kernel_operations.h"
#undef TAVIK_OPERATION
#undef TAVIK_END
};

}  // namespace Tavik::Matrix
