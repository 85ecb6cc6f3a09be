// SPDX-License-Identifier: BSD-3-Clause
// The simpler interface of the direct solver (qel/dss.h) as an object.
#pragma once

#include "tavik/core/array.h"
#include "tavik/core/export.h"

namespace Tavik::Kernel {

/// Factor, then Solve. Real systems in compressed rows counted from 1. Methods return the status of
/// qel/dss.h.
///
/// Two things to know: a failure ends the process, with the status as exit code, because the handle is made
/// without a termination level; and nothing releases a handle, so each Factor keeps its memory until the
/// process ends.
class TAVIK_API QelDirectSparseSolver {
 public:
  /// What is stored, and how it is factored.
  enum MatrixType { NonSymmetric = 0, Symmetric = 1, SymmetricPositiveDefinite = 2 };

  /// The symmetric types take the upper triangle with its diagonal. The arrays must stay alive until the last
  /// Solve.
  int Factor(int n, MatrixType type, int nnz, const Core::Array<double>& a, const Core::Array<int>& rowIndex,
             const Core::Array<int>& columns);
  /// solution = A^-1 rhs for nrhs columns of n.
  int Solve(int nrhs, const Core::Array<double>& rhs, const Core::Array<double>& solution);

 private:
  void* handle_ = nullptr;
};

}  // namespace Tavik::Kernel
