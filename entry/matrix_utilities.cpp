// SPDX-License-Identifier: BSD-3-Clause
// Entries of the matrix norms, which install the error entry and have no info, and of the scaled copy, whose
// arguments go through as they stand.
#include "blas/utilities/omatcopy.h"
#include "entry/shapes.h"
#include "lapack/lapack.h"
#include "qel/blas.h"

using qel::complex16;
using qel::complex8;
using qel::blas::omatcopy_bad_argument;
using qel::entry::call_checked;
using qel::entry::call_hooked;
namespace core = qel::core;

extern "C" {

float slange(const char* norm, const int* m, const int* n, const float* a, const int* lda, float* work) {
  return call_hooked(__func__, core::qel_core_slange_, norm, m, n, a, lda, work);
}
double dlange(const char* norm, const int* m, const int* n, const double* a, const int* lda, double* work) {
  return call_hooked(__func__, core::qel_core_dlange_, norm, m, n, a, lda, work);
}
float clange(const char* norm, const int* m, const int* n, const complex8* a, const int* lda, float* work) {
  return call_hooked(__func__, core::qel_core_clange_, norm, m, n, a, lda, work);
}
double zlange(const char* norm, const int* m, const int* n, const complex16* a, const int* lda,
              double* work) {
  return call_hooked(__func__, core::qel_core_zlange_, norm, m, n, a, lda, work);
}

void QEL_Domatcopy(char ordering, char trans, size_t rows, size_t cols, double alpha, const double* a,
                   size_t lda, double* b, size_t ldb) {
  call_checked(__func__, core::domatcopy, omatcopy_bad_argument, ordering, trans, rows, cols, alpha, a, lda,
               b, ldb);
}

// The Fortran names. Lengths of option letters, which Fortran passes behind the arguments, are not looked at.

QEL_API decltype(slange) slange_ __attribute__((alias("slange")));
QEL_API decltype(dlange) dlange_ __attribute__((alias("dlange")));
QEL_API decltype(clange) clange_ __attribute__((alias("clange")));
QEL_API decltype(zlange) zlange_ __attribute__((alias("zlange")));

}  // extern "C"
