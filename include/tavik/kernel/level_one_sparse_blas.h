// SPDX-License-Identifier: BSD-3-Clause
// Operations on a compressed vector, n values x[k] with their positions indx[k] in a full vector y, and y.
// Positions count from 1, in any order; they are not checked. An index outside of an array where a vector
// begins (element 0, or the offset) throws std::out_of_range; nothing else is tested here.
#pragma once

#include "tavik/core/export.h"
#include "tavik/matrix/sparse_interfaces.h"

namespace Tavik::Kernel {

/// Compressed vectors (qel/sparse.h has the entries).
class TAVIK_API LevelOneSparseBlas : public Matrix::ILevelOneSparseBlasKernel {
 public:
  /// y[yOffset + indx[k] - 1] += alpha * x[k] for k = 0..n-1, in this order; alpha exactly 0 does nothing.
  void axpyi(int n, float alpha, const Core::Array<float>& x, const Core::Array<int>& indx,
             const Core::Array<float>& y, int yOffset) override;
  void axpyi(int n, double alpha, const Core::Array<double>& x, const Core::Array<int>& indx,
             const Core::Array<double>& y, int yOffset) override;
  void axpyi(int n, Core::DoubleComplex alpha, const Core::Array<Core::DoubleComplex>& x,
             const Core::Array<int>& indx, const Core::Array<Core::DoubleComplex>& y, int yOffset) override;

  /// x[k * incx] *= alpha for k = 0..n-1.
  void scal(int n, float alpha, const Core::Array<float>& x, int incx) override;
  void scal(int n, double alpha, const Core::Array<double>& x, int incx) override;
  void scal(int n, Core::DoubleComplex alpha, const Core::Array<Core::DoubleComplex>& x, int incx) override;

  /// The sum of x[k] * y[yOffset + indx[k] - 1], without conjugation; 0 for n < 1.
  double doti(int n, const Core::Array<double>& x, const Core::Array<int>& indx, const Core::Array<double>& y,
              int yOffset) override;
  Core::DoubleComplex doti(int n, const Core::Array<Core::DoubleComplex>& x, const Core::Array<int>& indx,
                           const Core::Array<Core::DoubleComplex>& y, int yOffset) override;

  /// x[k] = y[yOffset + indx[k] - 1].
  void gthr(int n, const Core::Array<double>& y, int yOffset, const Core::Array<double>& x,
            const Core::Array<int>& indx) override;
  void gthr(int n, const Core::Array<Core::DoubleComplex>& y, int yOffset,
            const Core::Array<Core::DoubleComplex>& x, const Core::Array<int>& indx) override;

  /// The same, then y[yOffset + indx[k] - 1] = 0, one after the other: a repeated position gathers 0 the
  /// second time.
  void gthrz(int n, const Core::Array<double>& y, int yOffset, const Core::Array<double>& x,
             const Core::Array<int>& indx) override;
  void gthrz(int n, const Core::Array<Core::DoubleComplex>& y, int yOffset,
             const Core::Array<Core::DoubleComplex>& x, const Core::Array<int>& indx) override;

  /// y[indx[k] - 1] = x[k]; of repeated positions the last one wins.
  void sctr(int n, const Core::Array<double>& x, const Core::Array<int>& indx,
            const Core::Array<double>& y) override;
  void sctr(int n, const Core::Array<Core::DoubleComplex>& x, const Core::Array<int>& indx,
            const Core::Array<Core::DoubleComplex>& y) override;
};

}  // namespace Tavik::Kernel
