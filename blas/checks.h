// SPDX-License-Identifier: BSD-3-Clause
// Argument tests of BLAS levels 2 and 3: each function returns the 1-based position, in the Fortran argument
// list, of the first bad argument, or 0. Option letters are tested first, then sizes, then leading dimensions
// and strides. Pure functions, so that every face of the library (plain, Fortran, C) reports alike; the
// caller reports and returns.
#pragma once

#include "service/core_types.h"

namespace qel::blas {

/// Which letters the trans option of a symmetric or Hermitian update may be.
enum class update_letters {
  kNtc,  ///< real syrk, syr2k
  kNt,   ///< complex syrk, syr2k
  kNc,   ///< herk, her2k
};

// Level 2

int gemv_bad_argument(const char* trans, core_int m, core_int n, core_int lda, core_int incx, core_int incy);
int gbmv_bad_argument(const char* trans, core_int m, core_int n, core_int kl, core_int ku, core_int lda,
                      core_int incx, core_int incy);
/// symv and hemv
int symv_bad_argument(const char* uplo, core_int n, core_int lda, core_int incx, core_int incy);
/// sbmv and hbmv
int sbmv_bad_argument(const char* uplo, core_int n, core_int k, core_int lda, core_int incx, core_int incy);
/// spmv and hpmv
int spmv_bad_argument(const char* uplo, core_int n, core_int incx, core_int incy);
/// trmv and trsv
int trmv_bad_argument(const char* uplo, const char* trans, const char* diag, core_int n, core_int lda,
                      core_int incx);
/// tbmv and tbsv
int tbmv_bad_argument(const char* uplo, const char* trans, const char* diag, core_int n, core_int k,
                      core_int lda, core_int incx);
/// tpmv and tpsv
int tpmv_bad_argument(const char* uplo, const char* trans, const char* diag, core_int n, core_int incx);
/// ger, geru and gerc
int ger_bad_argument(core_int m, core_int n, core_int incx, core_int incy, core_int lda);
/// syr and her
int syr_bad_argument(const char* uplo, core_int n, core_int incx, core_int lda);
/// spr and hpr
int spr_bad_argument(const char* uplo, core_int n, core_int incx);
/// syr2 and her2
int syr2_bad_argument(const char* uplo, core_int n, core_int incx, core_int incy, core_int lda);
/// spr2 and hpr2
int spr2_bad_argument(const char* uplo, core_int n, core_int incx, core_int incy);

// Level 3

int gemm_bad_argument(const char* transa, const char* transb, core_int m, core_int n, core_int k,
                      core_int lda, core_int ldb, core_int ldc);
/// symm and hemm
int symm_bad_argument(const char* side, const char* uplo, core_int m, core_int n, core_int lda, core_int ldb,
                      core_int ldc);
/// syrk and herk
int syrk_bad_argument(update_letters letters, const char* uplo, const char* trans, core_int n, core_int k,
                      core_int lda, core_int ldc);
/// syr2k and her2k
int syr2k_bad_argument(update_letters letters, const char* uplo, const char* trans, core_int n, core_int k,
                       core_int lda, core_int ldb, core_int ldc);
/// trmm and trsm
int trmm_bad_argument(const char* side, const char* uplo, const char* transa, const char* diag, core_int m,
                      core_int n, core_int lda, core_int ldb);

}  // namespace qel::blas
