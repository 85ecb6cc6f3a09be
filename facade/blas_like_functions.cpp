// SPDX-License-Identifier: BSD-3-Clause
#include "tavik/kernel/blas_like_functions.h"

#include <cctype>

#include "facade/calls.h"
#include "qel/blas.h"
#include "qel/lapack.h"

namespace Tavik::Kernel {

void BlasLikeFunctions::omatcopy(char ordering, char trans, int rows, int cols, double alpha,
                                 const Core::Array<double>& A, int lda, const Core::Array<double>& B,
                                 int ldb) {
  // Sign-extended: a negative size stays a size that no matrix has, and is reported.
  const auto wide = [](int size) { return static_cast<size_t>(static_cast<ptrdiff_t>(size)); };
  QEL_Domatcopy(ordering, trans, wide(rows), wide(cols), alpha, array_pointer(A), wide(lda), array_pointer(B),
                wide(ldb));
}

double BlasLikeFunctions::lange(char norm, int rows, int cols, const Core::Array<double>& A, int lda) {
  // Only the infinity norm needs work space; the letter goes on as it came.
  Core::Array<double> work;
  if (std::toupper(static_cast<unsigned char>(norm)) == 'I') work = Core::Array<double>(rows);
  double* work_pointer = work.Length() > 0 ? array_pointer(work) : nullptr;
  return dlange(&norm, &rows, &cols, array_pointer(A), &lda, work_pointer);
}

}  // namespace Tavik::Kernel
