// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tavik/core/array.h"
#include "tavik/core/interfaces.h"

namespace Tavik::Kernel {

/// Matrix utilities over plain arrays; the matrix starts at element 0.
class TAVIK_API BlasLikeFunctions : public Core::IBlasLikeKernel {
 public:
  /// B = alpha op(A), out of place.
  ///   ordering   'R' row-major, 'C' column-major
  ///   trans      'N' A, 'T' transposed, 'C' conjugate transposed, 'R' conjugated (as 'N' for real numbers)
  ///   rows, cols sizes of A; lda, ldb distances between its rows ('R') or columns ('C'), in elements
  /// A bad letter or size is reported on standard output and leaves B alone.
  void omatcopy(char ordering, char trans, int rows, int cols, double alpha, const Core::Array<double>& A,
                int lda, const Core::Array<double>& B, int ldb) override;
  /// Norm of the rows x cols column-major matrix A (lda >= rows): 'M' largest absolute value, '1' or 'O' one
  /// norm, 'I' infinity norm, 'F' or 'E' Frobenius norm; either case. 0 for an empty matrix.
  double lange(char norm, int rows, int cols, const Core::Array<double>& A, int lda) override;
};

}  // namespace Tavik::Kernel
