// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tavik/core/exceptions.h"
#include "tavik/kernel/tavik_forwarders.h"

namespace Tavik::Kernel {

/// Operations of MatrixDotNetBlas that need no object: the forwarders (tavik_forwarders.h) and these, which
/// do what their namesakes do.
class TAVIK_API MatrixSupport : public TavikForwarders {
 public:
  static constexpr double epsilon = 1e-09;  ///< SafeDivide's divisor in place of 0
  static constexpr int BLOCKSIZE = 64;      ///< block size of scratch

  /// As in MatrixDotNetBlas (tavik/matrix/matrix_kernel_operations.h).
  static int SolveSymPd(char uplo, int n, int nrhs, const DoubleDataBlock& a, int lda,
                        const DoubleDataBlock& b, int ldb);
  static void FastDivide(int n, const DoubleDataBlock& AData, const DoubleDataBlock& BData,
                         const DoubleDataBlock& CData);
  static void SafeDivide(int len, const Array<double>& a, const Array<double>& b, const Array<double>& c);
  static void SafeDivide(int rows, int cols, const DoubleDataBlock& AData, int ARowStride, int AColStride,
                         const DoubleDataBlock& BData, int BRowStride, int BColStride);
  static void SafeDivide(int rows, int cols, const DoubleDataBlock& AData, int ARowStride, int AColStride,
                         const DoubleDataBlock& BData, int BRowStride, int BColStride,
                         const DoubleDataBlock& CData, int CRowStride, int CColStride);
  static void MakeNonNegative(int rows, int cols, const DoubleDataBlock& AData, int ARowStride,
                              int AColStride);
};

}  // namespace Tavik::Kernel
