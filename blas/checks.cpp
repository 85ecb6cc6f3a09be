// SPDX-License-Identifier: BSD-3-Clause
// Argument tests of BLAS levels 2 and 3 as ladders: the first true condition names the position. Order and
// positions are those of the Fortran interface.
#include "blas/checks.h"

#include <algorithm>

#include "blas/letters.h"

namespace qel::blas {

namespace {

bool bad_trans(const char* trans) {
  return !letter_is(*trans, 'N') && !letter_is(*trans, 'T') && !letter_is(*trans, 'C');
}
bool bad_uplo(const char* uplo) { return !letter_is(*uplo, 'U') && !letter_is(*uplo, 'L'); }
bool bad_side(const char* side) { return !letter_is(*side, 'L') && !letter_is(*side, 'R'); }
bool bad_diag(const char* diag) { return !letter_is(*diag, 'U') && !letter_is(*diag, 'N'); }
bool bad_update_trans(update_letters letters, const char* trans) {
  return !letter_is(*trans, 'N') && !(letter_is(*trans, 'T') && letters != update_letters::kNc) &&
         !(letter_is(*trans, 'C') && letters != update_letters::kNt);
}
/// A leading dimension too small for the rows it must hold.
bool short_of(core_int ld, core_int rows) { return ld < std::max<core_int>(1, rows); }

}  // namespace

// clang-format off
int gemv_bad_argument(const char* trans, core_int m, core_int n, core_int lda, core_int incx, core_int incy) {
  return bad_trans(trans)  ? 1
       : m < 0             ? 2
       : n < 0             ? 3
       : short_of(lda, m)  ? 6
       : incx == 0         ? 8
       : incy == 0         ? 11
                           : 0;
}
int gbmv_bad_argument(const char* trans, core_int m, core_int n, core_int kl, core_int ku, core_int lda,
                      core_int incx, core_int incy) {
  return bad_trans(trans)   ? 1
       : m < 0              ? 2
       : n < 0              ? 3
       : kl < 0             ? 4
       : ku < 0             ? 5
       : lda < kl + ku + 1  ? 8
       : incx == 0          ? 10
       : incy == 0          ? 13
                            : 0;
}
int symv_bad_argument(const char* uplo, core_int n, core_int lda, core_int incx, core_int incy) {
  return bad_uplo(uplo)    ? 1
       : n < 0             ? 2
       : short_of(lda, n)  ? 5
       : incx == 0         ? 7
       : incy == 0         ? 10
                           : 0;
}
int sbmv_bad_argument(const char* uplo, core_int n, core_int k, core_int lda, core_int incx, core_int incy) {
  return bad_uplo(uplo)  ? 1
       : n < 0           ? 2
       : k < 0           ? 3
       : lda < k + 1     ? 6
       : incx == 0       ? 8
       : incy == 0       ? 11
                         : 0;
}
int spmv_bad_argument(const char* uplo, core_int n, core_int incx, core_int incy) {
  return bad_uplo(uplo)  ? 1
       : n < 0           ? 2
       : incx == 0       ? 6
       : incy == 0       ? 9
                         : 0;
}
int trmv_bad_argument(const char* uplo, const char* trans, const char* diag, core_int n, core_int lda,
                      core_int incx) {
  return bad_uplo(uplo)    ? 1
       : bad_trans(trans)  ? 2
       : bad_diag(diag)    ? 3
       : n < 0             ? 4
       : short_of(lda, n)  ? 6
       : incx == 0         ? 8
                           : 0;
}
int tbmv_bad_argument(const char* uplo, const char* trans, const char* diag, core_int n, core_int k,
                      core_int lda, core_int incx) {
  return bad_uplo(uplo)    ? 1
       : bad_trans(trans)  ? 2
       : bad_diag(diag)    ? 3
       : n < 0             ? 4
       : k < 0             ? 5
       : lda < k + 1       ? 7
       : incx == 0         ? 9
                           : 0;
}
int tpmv_bad_argument(const char* uplo, const char* trans, const char* diag, core_int n, core_int incx) {
  return bad_uplo(uplo)    ? 1
       : bad_trans(trans)  ? 2
       : bad_diag(diag)    ? 3
       : n < 0             ? 4
       : incx == 0         ? 7
                           : 0;
}
int ger_bad_argument(core_int m, core_int n, core_int incx, core_int incy, core_int lda) {
  return m < 0             ? 1
       : n < 0             ? 2
       : incx == 0         ? 5
       : incy == 0         ? 7
       : short_of(lda, m)  ? 9
                           : 0;
}
int syr_bad_argument(const char* uplo, core_int n, core_int incx, core_int lda) {
  return bad_uplo(uplo)    ? 1
       : n < 0             ? 2
       : incx == 0         ? 5
       : short_of(lda, n)  ? 7
                           : 0;
}
int spr_bad_argument(const char* uplo, core_int n, core_int incx) {
  return bad_uplo(uplo)  ? 1
       : n < 0           ? 2
       : incx == 0       ? 5
                         : 0;
}
int syr2_bad_argument(const char* uplo, core_int n, core_int incx, core_int incy, core_int lda) {
  return bad_uplo(uplo)    ? 1
       : n < 0             ? 2
       : incx == 0         ? 5
       : incy == 0         ? 7
       : short_of(lda, n)  ? 9
                           : 0;
}
int spr2_bad_argument(const char* uplo, core_int n, core_int incx, core_int incy) {
  return bad_uplo(uplo)  ? 1
       : n < 0           ? 2
       : incx == 0       ? 5
       : incy == 0       ? 7
                         : 0;
}

int gemm_bad_argument(const char* transa, const char* transb, core_int m, core_int n, core_int k, core_int lda,
                      core_int ldb, core_int ldc) {
  return bad_trans(transa)                                 ? 1
       : bad_trans(transb)                                 ? 2
       : m < 0                                             ? 3
       : n < 0                                             ? 4
       : k < 0                                             ? 5
       : short_of(lda, letter_is(*transa, 'N') ? m : k)    ? 8
       : short_of(ldb, letter_is(*transb, 'N') ? k : n)    ? 10
       : short_of(ldc, m)                                  ? 13
                                                           : 0;
}
int symm_bad_argument(const char* side, const char* uplo, core_int m, core_int n, core_int lda, core_int ldb,
                      core_int ldc) {
  return bad_side(side)                                  ? 1
       : bad_uplo(uplo)                                  ? 2
       : m < 0                                           ? 3
       : n < 0                                           ? 4
       : short_of(lda, letter_is(*side, 'L') ? m : n)    ? 7
       : short_of(ldb, m)                                ? 9
       : short_of(ldc, m)                                ? 12
                                                         : 0;
}
int syrk_bad_argument(update_letters letters, const char* uplo, const char* trans, core_int n, core_int k,
                      core_int lda, core_int ldc) {
  return bad_uplo(uplo)                                   ? 1
       : bad_update_trans(letters, trans)                 ? 2
       : n < 0                                            ? 3
       : k < 0                                            ? 4
       : short_of(lda, letter_is(*trans, 'N') ? n : k)    ? 7
       : short_of(ldc, n)                                 ? 10
                                                          : 0;
}
int syr2k_bad_argument(update_letters letters, const char* uplo, const char* trans, core_int n, core_int k,
                       core_int lda, core_int ldb, core_int ldc) {
  return bad_uplo(uplo)                                   ? 1
       : bad_update_trans(letters, trans)                 ? 2
       : n < 0                                            ? 3
       : k < 0                                            ? 4
       : short_of(lda, letter_is(*trans, 'N') ? n : k)    ? 7
       : short_of(ldb, letter_is(*trans, 'N') ? n : k)    ? 9
       : short_of(ldc, n)                                 ? 12
                                                          : 0;
}
int trmm_bad_argument(const char* side, const char* uplo, const char* transa, const char* diag, core_int m,
                      core_int n, core_int lda, core_int ldb) {
  return bad_side(side)                                  ? 1
       : bad_uplo(uplo)                                  ? 2
       : bad_trans(transa)                               ? 3
       : bad_diag(diag)                                  ? 4
       : m < 0                                           ? 5
       : n < 0                                           ? 6
       : short_of(lda, letter_is(*side, 'L') ? m : n)    ? 9
       : short_of(ldb, m)                                ? 11
                                                         : 0;
}
// clang-format on

}  // namespace qel::blas
