// SPDX-License-Identifier: BSD-3-Clause
#include "tavik/kernel/qel_direct_sparse_solver.h"

#include "facade/calls.h"
#include "qel/dss.h"

namespace Tavik::Kernel {

int QelDirectSparseSolver::Factor(int n, MatrixType type, int nnz, const Core::Array<double>& a,
                                  const Core::Array<int>& rowIndex, const Core::Array<int>& columns) {
  void* handle = nullptr;
  const int none = 0, default_order = QEL_DSS_DEFAULT_ORDER;
  const int structure = type == NonSymmetric ? QEL_DSS_NON_SYMMETRIC : QEL_DSS_SYMMETRIC;
  const int kind = type == SymmetricPositiveDefinite ? QEL_DSS_POSITIVE_DEFINITE : QEL_DSS_INDEFINITE;
  if (const int status = dss_create(&handle, &none); status != 0) return status;
  if (const int status = dss_define_structure(&handle, &structure, array_pointer(rowIndex), &n, &n,
                                              array_pointer(columns), &nnz);
      status != 0) {
    return status;
  }
  if (const int status = dss_reorder(&handle, &default_order, nullptr); status != 0) return status;
  const int status = dss_factor_real(&handle, &kind, array_pointer(a));
  handle_ = handle;
  return status;
}

int QelDirectSparseSolver::Solve(int nrhs, const Core::Array<double>& rhs,
                                 const Core::Array<double>& solution) {
  const int none = 0;
  return dss_solve_real(&handle_, &none, array_pointer(rhs), &nrhs, array_pointer(solution));
}

}  // namespace Tavik::Kernel
