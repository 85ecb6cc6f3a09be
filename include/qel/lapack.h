/* SPDX-License-Identifier: BSD-3-Clause
 * LAPACK: linear systems, least squares, singular values, eigenvalues, for s (float), d (double), c and z
 * (complex). Plain C; conventions of blas.h: addresses, 32-bit int, letters in either case, column-major.
 *
 * Common arguments: n order of the matrix; nrhs columns of b, which is n x nrhs unless told otherwise,
 * ldb >= max(1, n); lda >= max(1, rows); uplo 'U' or 'L', the triangle that is stored or read; packed
 * storage as in spmv. work, rwork, iwork are scratch of the given length; iwork is in fact neither read nor
 * written. lwork -1 is the size query: nothing is computed, work[0] holds the best size. Outputs must not
 * overlap other arguments.
 * info is stored and also returned: 0 all is well; -i argument i was bad, which is also reported through
 * xerbla (service.h); -1023 no memory for the 64-bit copy of an integer array, nothing was done (reported
 * with position 1079); above 0 as told with the routine.
 * Threads as in blas.h.
 * Sources: Anderson et al., LAPACK Users' Guide, 3rd ed., SIAM 1999; Golub and Van Loan, Matrix Computations.
 * Every name is there for Fortran too, with an underscore at its end.
 */
#ifndef QEL_LAPACK_H
#define QEL_LAPACK_H

#include "qel/export.h"
#include "qel/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- General and positive definite matrices ---- */

/* A = P L U with partial pivoting, L unit lower triangular; L and U overwrite A.
 *   a     m x n, lda >= max(1, m)
 *   ipiv  out, min(m, n): row i was exchanged with row ipiv[i - 1], one-based
 * info: i > 0: U(i, i) is exactly 0; the factorisation is complete but can't be used to solve.
 */
QEL_API int sgetrf(const int* m, const int* n, float* a, const int* lda, int* ipiv, int* info);
QEL_API int dgetrf(const int* m, const int* n, double* a, const int* lda, int* ipiv, int* info);
QEL_API int cgetrf(const int* m, const int* n, _QEL_Complex8* a, const int* lda, int* ipiv, int* info);
QEL_API int zgetrf(const int* m, const int* n, _QEL_Complex16* a, const int* lda, int* ipiv, int* info);

/* Solves op(A) X = B with the factors of getrf; X overwrites B.
 *   trans 'N', 'T' or 'C';  n order of A;  nrhs columns of B;  lda, ldb >= max(1, n)
 */
QEL_API int sgetrs(const char* trans, const int* n, const int* nrhs, const float* a, const int* lda,
                   const int* ipiv, float* b, const int* ldb, int* info);
QEL_API int dgetrs(const char* trans, const int* n, const int* nrhs, const double* a, const int* lda,
                   const int* ipiv, double* b, const int* ldb, int* info);
QEL_API int cgetrs(const char* trans, const int* n, const int* nrhs, const _QEL_Complex8* a, const int* lda,
                   const int* ipiv, _QEL_Complex8* b, const int* ldb, int* info);
QEL_API int zgetrs(const char* trans, const int* n, const int* nrhs, const _QEL_Complex16* a, const int* lda,
                   const int* ipiv, _QEL_Complex16* b, const int* ldb, int* info);

/* The inverse of A from the factors of getrf, in their place.
 *   work  lwork elements, lwork >= max(1, n), best n times the block size; -1 is the size query
 * info: i > 0: U(i, i) is exactly 0, no inverse.
 */
QEL_API int sgetri(const int* n, float* a, const int* lda, const int* ipiv, float* work, const int* lwork,
                   int* info);
QEL_API int dgetri(const int* n, double* a, const int* lda, const int* ipiv, double* work, const int* lwork,
                   int* info);
QEL_API int cgetri(const int* n, _QEL_Complex8* a, const int* lda, const int* ipiv, _QEL_Complex8* work,
                   const int* lwork, int* info);
QEL_API int zgetri(const int* n, _QEL_Complex16* a, const int* lda, const int* ipiv, _QEL_Complex16* work,
                   const int* lwork, int* info);

/* Solves A X = B by LU factorisation: getrf and getrs in one. A holds the factors afterwards, B the solution.
 *   ipiv  out, n one-based pivots
 * info: i > 0: U(i, i) is exactly 0, no solution.
 */
QEL_API int dgesv(const int* n, const int* nrhs, double* a, const int* lda, int* ipiv, double* b,
                  const int* ldb, int* info);

/* Estimates the reciprocal condition number of A from the factors of getrf.
 *   norm  '1' or 'O' the one-norm, 'I' the infinity norm;  anorm that norm of the original A
 *   rcond out: 1 / (norm(A) * norm(inverse of A)), 0 if A is singular to working precision
 *   work  4 n elements (real), 2 n (complex);  iwork n (real);  rwork 2 n (complex)
 */
QEL_API int sgecon(const char* norm, const int* n, const float* a, const int* lda, const float* anorm,
                   float* rcond, float* work, int* iwork, int* info);
QEL_API int dgecon(const char* norm, const int* n, const double* a, const int* lda, const double* anorm,
                   double* rcond, double* work, int* iwork, int* info);
QEL_API int cgecon(const char* norm, const int* n, const _QEL_Complex8* a, const int* lda, const float* anorm,
                   float* rcond, _QEL_Complex8* work, float* rwork, int* info);
QEL_API int zgecon(const char* norm, const int* n, const _QEL_Complex16* a, const int* lda,
                   const double* anorm, double* rcond, _QEL_Complex16* work, double* rwork, int* info);

/* Solves A X = B for symmetric positive definite A by Cholesky factorisation, which overwrites the triangle
 * uplo of A; X overwrites B.
 * info: i > 0: the leading minor of order i is not positive, no solution.
 */
QEL_API int dposv(const char* uplo, const int* n, const int* nrhs, double* a, const int* lda, double* b,
                  const int* ldb, int* info);

/* ---- Band and tridiagonal matrices ---- */

/* LU factorisation of a band matrix with kl diagonals below and ku above the main one, partial pivoting.
 *   ab    (2 kl + ku + 1) x n: element (i, j) at ab[kl + ku + i - j + j * ldab]; the first kl rows are room
 *         for fill-in and need no values;  ldab >= 2 kl + ku + 1
 *   ipiv  out, min(m, n) one-based pivots
 * info: i > 0: U(i, i) is exactly 0.
 */
QEL_API int sgbtrf(const int* m, const int* n, const int* kl, const int* ku, float* ab, const int* ldab,
                   int* ipiv, int* info);
QEL_API int dgbtrf(const int* m, const int* n, const int* kl, const int* ku, double* ab, const int* ldab,
                   int* ipiv, int* info);
QEL_API int cgbtrf(const int* m, const int* n, const int* kl, const int* ku, _QEL_Complex8* ab,
                   const int* ldab, int* ipiv, int* info);
QEL_API int zgbtrf(const int* m, const int* n, const int* kl, const int* ku, _QEL_Complex16* ab,
                   const int* ldab, int* ipiv, int* info);

/* Solves op(A) X = B with the factors of gbtrf; X overwrites B. trans 'N', 'T' or 'C'.
 */
QEL_API int sgbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs,
                   const float* ab, const int* ldab, const int* ipiv, float* b, const int* ldb, int* info);
QEL_API int dgbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs,
                   const double* ab, const int* ldab, const int* ipiv, double* b, const int* ldb, int* info);
QEL_API int cgbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs,
                   const _QEL_Complex8* ab, const int* ldab, const int* ipiv, _QEL_Complex8* b,
                   const int* ldb, int* info);
QEL_API int zgbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs,
                   const _QEL_Complex16* ab, const int* ldab, const int* ipiv, _QEL_Complex16* b,
                   const int* ldb, int* info);

/* Reciprocal condition number from the factors of gbtrf; norm, anorm and rcond as in gecon.
 *   work  3 n elements (real), 2 n (complex);  iwork n (real);  rwork n (complex)
 */
QEL_API int sgbcon(const char* norm, const int* n, const int* kl, const int* ku, const float* ab,
                   const int* ldab, const int* ipiv, const float* anorm, float* rcond, float* work,
                   int* iwork, int* info);
QEL_API int dgbcon(const char* norm, const int* n, const int* kl, const int* ku, const double* ab,
                   const int* ldab, const int* ipiv, const double* anorm, double* rcond, double* work,
                   int* iwork, int* info);
QEL_API int cgbcon(const char* norm, const int* n, const int* kl, const int* ku, const _QEL_Complex8* ab,
                   const int* ldab, const int* ipiv, const float* anorm, float* rcond, _QEL_Complex8* work,
                   float* rwork, int* info);
QEL_API int zgbcon(const char* norm, const int* n, const int* kl, const int* ku, const _QEL_Complex16* ab,
                   const int* ldab, const int* ipiv, const double* anorm, double* rcond, _QEL_Complex16* work,
                   double* rwork, int* info);

/* Cholesky factorisation of a symmetric or Hermitian positive definite band matrix with kd diagonals on the
 * side uplo: A = U^H U or A = L L^H, in place.
 *   ab    (kd + 1) x n: 'U' element (i, j), i <= j, at ab[kd + i - j + j * ldab]; 'L' i >= j, at
 *         ab[i - j + j * ldab];  ldab >= kd + 1
 * info: i > 0: the leading minor of order i is not positive.
 */
QEL_API int spbtrf(const char* uplo, const int* n, const int* kd, float* ab, const int* ldab, int* info);
QEL_API int dpbtrf(const char* uplo, const int* n, const int* kd, double* ab, const int* ldab, int* info);
QEL_API int cpbtrf(const char* uplo, const int* n, const int* kd, _QEL_Complex8* ab, const int* ldab,
                   int* info);
QEL_API int zpbtrf(const char* uplo, const int* n, const int* kd, _QEL_Complex16* ab, const int* ldab,
                   int* info);

/* Solves A X = B with the factor of pbtrf; X overwrites B.
 */
QEL_API int spbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs, const float* ab,
                   const int* ldab, float* b, const int* ldb, int* info);
QEL_API int dpbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs, const double* ab,
                   const int* ldab, double* b, const int* ldb, int* info);
QEL_API int cpbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs, const _QEL_Complex8* ab,
                   const int* ldab, _QEL_Complex8* b, const int* ldb, int* info);
QEL_API int zpbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs, const _QEL_Complex16* ab,
                   const int* ldab, _QEL_Complex16* b, const int* ldb, int* info);

/* Reciprocal condition number (one-norm) from the factor of pbtrf; anorm and rcond as in gecon.
 *   work  3 n elements (real), 2 n (complex);  iwork n (real);  rwork n (complex)
 */
QEL_API int spbcon(const char* uplo, const int* n, const int* kd, const float* ab, const int* ldab,
                   const float* anorm, float* rcond, float* work, int* iwork, int* info);
QEL_API int dpbcon(const char* uplo, const int* n, const int* kd, const double* ab, const int* ldab,
                   const double* anorm, double* rcond, double* work, int* iwork, int* info);
QEL_API int cpbcon(const char* uplo, const int* n, const int* kd, const _QEL_Complex8* ab, const int* ldab,
                   const float* anorm, float* rcond, _QEL_Complex8* work, float* rwork, int* info);
QEL_API int zpbcon(const char* uplo, const int* n, const int* kd, const _QEL_Complex16* ab, const int* ldab,
                   const double* anorm, double* rcond, _QEL_Complex16* work, double* rwork, int* info);

/* LU factorisation of a tridiagonal matrix, partial pivoting.
 *   dl, d, du  in: n - 1 elements below, n on, n - 1 above the diagonal; out: multipliers and U
 *   du2   out, n - 2: the second diagonal above in U
 *   ipiv  out, n: ipiv[i - 1] is i or i + 1
 * info: i > 0: U(i, i) is exactly 0.
 */
QEL_API int sgttrf(const int* n, float* dl, float* d, float* du, float* du2, int* ipiv, int* info);
QEL_API int dgttrf(const int* n, double* dl, double* d, double* du, double* du2, int* ipiv, int* info);
QEL_API int cgttrf(const int* n, _QEL_Complex8* dl, _QEL_Complex8* d, _QEL_Complex8* du, _QEL_Complex8* du2,
                   int* ipiv, int* info);
QEL_API int zgttrf(const int* n, _QEL_Complex16* dl, _QEL_Complex16* d, _QEL_Complex16* du,
                   _QEL_Complex16* du2, int* ipiv, int* info);

/* Solves op(A) X = B with the factors of gttrf; X overwrites B. trans 'N', 'T' or 'C'.
 */
QEL_API int sgttrs(const char* trans, const int* n, const int* nrhs, const float* dl, const float* d,
                   const float* du, const float* du2, const int* ipiv, float* b, const int* ldb, int* info);
QEL_API int dgttrs(const char* trans, const int* n, const int* nrhs, const double* dl, const double* d,
                   const double* du, const double* du2, const int* ipiv, double* b, const int* ldb,
                   int* info);
QEL_API int cgttrs(const char* trans, const int* n, const int* nrhs, const _QEL_Complex8* dl,
                   const _QEL_Complex8* d, const _QEL_Complex8* du, const _QEL_Complex8* du2, const int* ipiv,
                   _QEL_Complex8* b, const int* ldb, int* info);
QEL_API int zgttrs(const char* trans, const int* n, const int* nrhs, const _QEL_Complex16* dl,
                   const _QEL_Complex16* d, const _QEL_Complex16* du, const _QEL_Complex16* du2,
                   const int* ipiv, _QEL_Complex16* b, const int* ldb, int* info);

/* Reciprocal condition number from the factors of gttrf; norm, anorm and rcond as in gecon.
 *   work  2 n elements;  iwork n (real types only)
 */
QEL_API int sgtcon(const char* norm, const int* n, const float* dl, const float* d, const float* du,
                   const float* du2, const int* ipiv, const float* anorm, float* rcond, float* work,
                   int* iwork, int* info);
QEL_API int dgtcon(const char* norm, const int* n, const double* dl, const double* d, const double* du,
                   const double* du2, const int* ipiv, const double* anorm, double* rcond, double* work,
                   int* iwork, int* info);
QEL_API int cgtcon(const char* norm, const int* n, const _QEL_Complex8* dl, const _QEL_Complex8* d,
                   const _QEL_Complex8* du, const _QEL_Complex8* du2, const int* ipiv, const float* anorm,
                   float* rcond, _QEL_Complex8* work, int* info);
QEL_API int zgtcon(const char* norm, const int* n, const _QEL_Complex16* dl, const _QEL_Complex16* d,
                   const _QEL_Complex16* du, const _QEL_Complex16* du2, const int* ipiv, const double* anorm,
                   double* rcond, _QEL_Complex16* work, int* info);

/* Solves A X = B for tridiagonal A by elimination with partial pivoting; dl, d, du are overwritten, X
 * overwrites B. info: i > 0: U(i, i) is exactly 0, no solution.
 */
QEL_API int dgtsv(const int* n, const int* nrhs, double* dl, double* d, double* du, double* b, const int* ldb,
                  int* info);

/* A = L D L^H of a symmetric or Hermitian positive definite tridiagonal matrix.
 *   d     n diagonal elements (real); out: D
 *   e     n - 1 elements below the diagonal; out: those of L
 * info: i > 0: the leading minor of order i is not positive.
 */
QEL_API int spttrf(const int* n, float* d, float* e, int* info);
QEL_API int dpttrf(const int* n, double* d, double* e, int* info);
QEL_API int cpttrf(const int* n, float* d, _QEL_Complex8* e, int* info);
QEL_API int zpttrf(const int* n, double* d, _QEL_Complex16* e, int* info);

/* Solves A X = B with the factors of pttrf; X overwrites B. The complex forms take uplo first: 'L' if e is
 * the diagonal below (A = L D L^H), 'U' if it is the one above (A = U^H D U).
 */
QEL_API int spttrs(const int* n, const int* nrhs, const float* d, const float* e, float* b, const int* ldb,
                   int* info);
QEL_API int dpttrs(const int* n, const int* nrhs, const double* d, const double* e, double* b, const int* ldb,
                   int* info);
QEL_API int cpttrs(const char* uplo, const int* n, const int* nrhs, const float* d, const _QEL_Complex8* e,
                   _QEL_Complex8* b, const int* ldb, int* info);
QEL_API int zpttrs(const char* uplo, const int* n, const int* nrhs, const double* d, const _QEL_Complex16* e,
                   _QEL_Complex16* b, const int* ldb, int* info);

/* Reciprocal condition number (one-norm) from the factors of pttrf, computed and not estimated.
 *   anorm one-norm of the original A;  work n real elements
 */
QEL_API int sptcon(const int* n, const float* d, const float* e, const float* anorm, float* rcond,
                   float* work, int* info);
QEL_API int dptcon(const int* n, const double* d, const double* e, const double* anorm, double* rcond,
                   double* work, int* info);
QEL_API int cptcon(const int* n, const float* d, const _QEL_Complex8* e, const float* anorm, float* rcond,
                   float* rwork, int* info);
QEL_API int zptcon(const int* n, const double* d, const _QEL_Complex16* e, const double* anorm, double* rcond,
                   double* rwork, int* info);

/* ---- Packed and triangular matrices ---- */

/* Cholesky factorisation of a symmetric or Hermitian positive definite matrix in packed storage, in place.
 * info: i > 0: the leading minor of order i is not positive.
 */
QEL_API int spptrf(const char* uplo, const int* n, float* ap, int* info);
QEL_API int dpptrf(const char* uplo, const int* n, double* ap, int* info);
QEL_API int cpptrf(const char* uplo, const int* n, _QEL_Complex8* ap, int* info);
QEL_API int zpptrf(const char* uplo, const int* n, _QEL_Complex16* ap, int* info);

/* Solves A X = B with the factor of pptrf; X overwrites B (n x nrhs, ldb >= max(1, n)).
 */
QEL_API int spptrs(const char* uplo, const int* n, const int* nrhs, const float* ap, float* b, const int* ldb,
                   int* info);
QEL_API int dpptrs(const char* uplo, const int* n, const int* nrhs, const double* ap, double* b,
                   const int* ldb, int* info);
QEL_API int cpptrs(const char* uplo, const int* n, const int* nrhs, const _QEL_Complex8* ap, _QEL_Complex8* b,
                   const int* ldb, int* info);
QEL_API int zpptrs(const char* uplo, const int* n, const int* nrhs, const _QEL_Complex16* ap,
                   _QEL_Complex16* b, const int* ldb, int* info);

/* The inverse of A from the factor of pptrf, in its place. info: i > 0: element (i, i) of the factor is 0.
 */
QEL_API int spptri(const char* uplo, const int* n, float* ap, int* info);
QEL_API int dpptri(const char* uplo, const int* n, double* ap, int* info);
QEL_API int cpptri(const char* uplo, const int* n, _QEL_Complex8* ap, int* info);
QEL_API int zpptri(const char* uplo, const int* n, _QEL_Complex16* ap, int* info);

/* Reciprocal condition number (one-norm) from the factor of pptrf; anorm and rcond as in gecon.
 *   work  3 n elements (real), 2 n (complex);  iwork n (real);  rwork n (complex)
 */
QEL_API int sppcon(const char* uplo, const int* n, const float* ap, const float* anorm, float* rcond,
                   float* work, int* iwork, int* info);
QEL_API int dppcon(const char* uplo, const int* n, const double* ap, const double* anorm, double* rcond,
                   double* work, int* iwork, int* info);
QEL_API int cppcon(const char* uplo, const int* n, const _QEL_Complex8* ap, const float* anorm, float* rcond,
                   _QEL_Complex8* work, float* rwork, int* info);
QEL_API int zppcon(const char* uplo, const int* n, const _QEL_Complex16* ap, const double* anorm,
                   double* rcond, _QEL_Complex16* work, double* rwork, int* info);

/* A = U D U^T or L D L^T of a symmetric matrix in packed storage (complex: no conjugation), D of blocks of
 * order 1 and 2, after Bunch and Kaufman (Math. Comp. 31 (1977) 163), in place.
 *   ipiv  out, n: above 0 the row exchanged with row i; two equal values below 0 mark a block of order 2
 * info: i > 0: D(i, i) is exactly 0.
 */
QEL_API int ssptrf(const char* uplo, const int* n, float* ap, int* ipiv, int* info);
QEL_API int dsptrf(const char* uplo, const int* n, double* ap, int* ipiv, int* info);
QEL_API int csptrf(const char* uplo, const int* n, _QEL_Complex8* ap, int* ipiv, int* info);
QEL_API int zsptrf(const char* uplo, const int* n, _QEL_Complex16* ap, int* ipiv, int* info);

/* Solves A X = B with the factors of sptrf; X overwrites B.
 */
QEL_API int ssptrs(const char* uplo, const int* n, const int* nrhs, const float* ap, const int* ipiv,
                   float* b, const int* ldb, int* info);
QEL_API int dsptrs(const char* uplo, const int* n, const int* nrhs, const double* ap, const int* ipiv,
                   double* b, const int* ldb, int* info);
QEL_API int csptrs(const char* uplo, const int* n, const int* nrhs, const _QEL_Complex8* ap, const int* ipiv,
                   _QEL_Complex8* b, const int* ldb, int* info);
QEL_API int zsptrs(const char* uplo, const int* n, const int* nrhs, const _QEL_Complex16* ap, const int* ipiv,
                   _QEL_Complex16* b, const int* ldb, int* info);

/* The inverse of A from the factors of sptrf, in their place.  work n elements.
 * info: i > 0: D(i, i) is exactly 0, no inverse.
 */
QEL_API int ssptri(const char* uplo, const int* n, float* ap, const int* ipiv, float* work, int* info);
QEL_API int dsptri(const char* uplo, const int* n, double* ap, const int* ipiv, double* work, int* info);
QEL_API int csptri(const char* uplo, const int* n, _QEL_Complex8* ap, const int* ipiv, _QEL_Complex8* work,
                   int* info);
QEL_API int zsptri(const char* uplo, const int* n, _QEL_Complex16* ap, const int* ipiv, _QEL_Complex16* work,
                   int* info);

/* Reciprocal condition number (one-norm) from the factors of sptrf; anorm and rcond as in gecon.
 *   work  2 n elements;  iwork n (real types only)
 */
QEL_API int sspcon(const char* uplo, const int* n, const float* ap, const int* ipiv, const float* anorm,
                   float* rcond, float* work, int* iwork, int* info);
QEL_API int dspcon(const char* uplo, const int* n, const double* ap, const int* ipiv, const double* anorm,
                   double* rcond, double* work, int* iwork, int* info);
QEL_API int cspcon(const char* uplo, const int* n, const _QEL_Complex8* ap, const int* ipiv,
                   const float* anorm, float* rcond, _QEL_Complex8* work, int* info);
QEL_API int zspcon(const char* uplo, const int* n, const _QEL_Complex16* ap, const int* ipiv,
                   const double* anorm, double* rcond, _QEL_Complex16* work, int* info);

/* A = U D U^H or L D L^H of a Hermitian matrix in packed storage; otherwise as sptrf.
 */
QEL_API int chptrf(const char* uplo, const int* n, _QEL_Complex8* ap, int* ipiv, int* info);
QEL_API int zhptrf(const char* uplo, const int* n, _QEL_Complex16* ap, int* ipiv, int* info);

/* Solves A X = B with the factors of hptrf; X overwrites B.
 */
QEL_API int chptrs(const char* uplo, const int* n, const int* nrhs, const _QEL_Complex8* ap, const int* ipiv,
                   _QEL_Complex8* b, const int* ldb, int* info);
QEL_API int zhptrs(const char* uplo, const int* n, const int* nrhs, const _QEL_Complex16* ap, const int* ipiv,
                   _QEL_Complex16* b, const int* ldb, int* info);

/* The inverse of A from the factors of hptrf, in their place.  work n elements. info as sptri.
 */
QEL_API int chptri(const char* uplo, const int* n, _QEL_Complex8* ap, const int* ipiv, _QEL_Complex8* work,
                   int* info);
QEL_API int zhptri(const char* uplo, const int* n, _QEL_Complex16* ap, const int* ipiv, _QEL_Complex16* work,
                   int* info);

/* Reciprocal condition number (one-norm) from the factors of hptrf.  work 2 n elements.
 */
QEL_API int chpcon(const char* uplo, const int* n, const _QEL_Complex8* ap, const int* ipiv,
                   const float* anorm, float* rcond, _QEL_Complex8* work, int* info);
QEL_API int zhpcon(const char* uplo, const int* n, const _QEL_Complex16* ap, const int* ipiv,
                   const double* anorm, double* rcond, _QEL_Complex16* work, int* info);

/* Solves op(A) X = B for a triangular matrix in packed storage; X overwrites B.
 *   diag  'U' takes the diagonal as 1 and doesn't read it
 * info: i > 0: element (i, i) is exactly 0, no solution.
 */
QEL_API int stptrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                   const float* ap, float* b, const int* ldb, int* info);
QEL_API int dtptrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                   const double* ap, double* b, const int* ldb, int* info);
QEL_API int ctptrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                   const _QEL_Complex8* ap, _QEL_Complex8* b, const int* ldb, int* info);
QEL_API int ztptrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                   const _QEL_Complex16* ap, _QEL_Complex16* b, const int* ldb, int* info);

/* The inverse of a triangular matrix in packed storage, in place. info: i > 0: element (i, i) is exactly 0.
 */
QEL_API int stptri(const char* uplo, const char* diag, const int* n, float* ap, int* info);
QEL_API int dtptri(const char* uplo, const char* diag, const int* n, double* ap, int* info);
QEL_API int ctptri(const char* uplo, const char* diag, const int* n, _QEL_Complex8* ap, int* info);
QEL_API int ztptri(const char* uplo, const char* diag, const int* n, _QEL_Complex16* ap, int* info);

/* Reciprocal condition number of a triangular matrix in packed storage; norm and rcond as in gecon.
 *   work  3 n elements (real), 2 n (complex);  iwork n (real);  rwork n (complex)
 */
QEL_API int stpcon(const char* norm, const char* uplo, const char* diag, const int* n, const float* ap,
                   float* rcond, float* work, int* iwork, int* info);
QEL_API int dtpcon(const char* norm, const char* uplo, const char* diag, const int* n, const double* ap,
                   double* rcond, double* work, int* iwork, int* info);
QEL_API int ctpcon(const char* norm, const char* uplo, const char* diag, const int* n,
                   const _QEL_Complex8* ap, float* rcond, _QEL_Complex8* work, float* rwork, int* info);
QEL_API int ztpcon(const char* norm, const char* uplo, const char* diag, const int* n,
                   const _QEL_Complex16* ap, double* rcond, _QEL_Complex16* work, double* rwork, int* info);

/* Reciprocal condition number of a triangular matrix in an n x n array, lda >= max(1, n).
 *   work  3 n elements;  iwork n
 */
QEL_API int strcon(const char* norm, const char* uplo, const char* diag, const int* n, const float* a,
                   const int* lda, float* rcond, float* work, int* iwork, int* info);
QEL_API int dtrcon(const char* norm, const char* uplo, const char* diag, const int* n, const double* a,
                   const int* lda, double* rcond, double* work, int* iwork, int* info);

/* Reciprocal condition number (one-norm) of a symmetric positive definite matrix from its Cholesky factor,
 * the triangle uplo of an n x n array, lda >= max(1, n); anorm is the one-norm of the original matrix.
 *   work  3 n elements;  iwork n
 */
QEL_API int spocon(const char* uplo, const int* n, const float* a, const int* lda, const float* anorm,
                   float* rcond, float* work, int* iwork, int* info);
QEL_API int dpocon(const char* uplo, const int* n, const double* a, const int* lda, const double* anorm,
                   double* rcond, double* work, int* iwork, int* info);

/* ---- QR factorisation and least squares ---- */

/* A = Q R. R overwrites the upper triangle of A, the vectors of the Householder reflections the rest.
 *   a     m x n, lda >= max(1, m);  tau out, min(m, n) factors of the reflections
 *   work  lwork elements, lwork >= max(1, n); -1 is the size query
 */
QEL_API int sgeqrf(const int* m, const int* n, float* a, const int* lda, float* tau, float* work,
                   const int* lwork, int* info);
QEL_API int dgeqrf(const int* m, const int* n, double* a, const int* lda, double* tau, double* work,
                   const int* lwork, int* info);
QEL_API int cgeqrf(const int* m, const int* n, _QEL_Complex8* a, const int* lda, _QEL_Complex8* tau,
                   _QEL_Complex8* work, const int* lwork, int* info);
QEL_API int zgeqrf(const int* m, const int* n, _QEL_Complex16* a, const int* lda, _QEL_Complex16* tau,
                   _QEL_Complex16* work, const int* lwork, int* info);

/* A P = Q R with column pivoting: the diagonal of R doesn't grow in size.
 *   jpvt  n, in: a column with a value other than 0 is moved to the front first, the others are free;
 *         out: column i of A P was column jpvt[i - 1] of A. Not touched by the size query
 *   tau   out, min(m, n);  rwork 2 n (complex)
 *   work  lwork elements, lwork >= 3 n + 1 (real), n + 1 (complex); -1 is the size query
 */
QEL_API int sgeqp3(const int* m, const int* n, float* a, const int* lda, int* jpvt, float* tau, float* work,
                   const int* lwork, int* info);
QEL_API int dgeqp3(const int* m, const int* n, double* a, const int* lda, int* jpvt, double* tau,
                   double* work, const int* lwork, int* info);
QEL_API int cgeqp3(const int* m, const int* n, _QEL_Complex8* a, const int* lda, int* jpvt,
                   _QEL_Complex8* tau, _QEL_Complex8* work, const int* lwork, float* rwork, int* info);
QEL_API int zgeqp3(const int* m, const int* n, _QEL_Complex16* a, const int* lda, int* jpvt,
                   _QEL_Complex16* tau, _QEL_Complex16* work, const int* lwork, double* rwork, int* info);

/* C := op(Q) C (side 'L') or C op(Q) (side 'R') with the Q of geqrf or geqp3, k reflections.
 *   trans 'N' Q, 'T' its transpose (orm) or 'C' its conjugate transpose (unm)
 *   a     the reflections in columns 1..k, lda >= max(1, m) (side 'L') or max(1, n) (side 'R'); its diagonal
 *         is changed during the call and restored: two threads must not share it
 *   c     m x n, ldc >= max(1, m)
 *   work  lwork elements, lwork >= max(1, n) (side 'L') or max(1, m) (side 'R'); -1 is the size query
 */
QEL_API int sormqr(const char* side, const char* trans, const int* m, const int* n, const int* k, float* a,
                   const int* lda, const float* tau, float* c, const int* ldc, float* work, const int* lwork,
                   int* info);
QEL_API int dormqr(const char* side, const char* trans, const int* m, const int* n, const int* k, double* a,
                   const int* lda, const double* tau, double* c, const int* ldc, double* work,
                   const int* lwork, int* info);
QEL_API int cunmqr(const char* side, const char* trans, const int* m, const int* n, const int* k,
                   _QEL_Complex8* a, const int* lda, const _QEL_Complex8* tau, _QEL_Complex8* c,
                   const int* ldc, _QEL_Complex8* work, const int* lwork, int* info);
QEL_API int zunmqr(const char* side, const char* trans, const int* m, const int* n, const int* k,
                   _QEL_Complex16* a, const int* lda, const _QEL_Complex16* tau, _QEL_Complex16* c,
                   const int* ldc, _QEL_Complex16* work, const int* lwork, int* info);

/* The first n columns of the Q of geqrf or geqp3, k reflections, written over them.
 *   m >= n >= k;  a m x n, lda >= max(1, m);  work lwork >= max(1, n) elements, -1 is the size query
 */
QEL_API int sorgqr(const int* m, const int* n, const int* k, float* a, const int* lda, const float* tau,
                   float* work, const int* lwork, int* info);
QEL_API int dorgqr(const int* m, const int* n, const int* k, double* a, const int* lda, const double* tau,
                   double* work, const int* lwork, int* info);
QEL_API int cungqr(const int* m, const int* n, const int* k, _QEL_Complex8* a, const int* lda,
                   const _QEL_Complex8* tau, _QEL_Complex8* work, const int* lwork, int* info);
QEL_API int zungqr(const int* m, const int* n, const int* k, _QEL_Complex16* a, const int* lda,
                   const _QEL_Complex16* tau, _QEL_Complex16* work, const int* lwork, int* info);

/* Least squares (overdetermined) or minimum-norm (underdetermined) solutions of op(A) X = B for A of full
 * rank, by QR or LQ factorisation, which overwrites A.
 *   trans 'N' or 'T';  a m x n, lda >= max(1, m)
 *   b     max(m, n) x nrhs, ldb >= max(1, m, n): right-hand sides in, solutions out; below a least squares
 *         solution stand the elements whose squares sum up to the residual's
 *   work  lwork >= max(1, min(m, n) + max(1, min(m, n), nrhs)) elements, -1 is the size query
 * info: i > 0: element (i, i) of the triangle is 0, A has not full rank, no solution.
 */
QEL_API int dgels(const char* trans, const int* m, const int* n, const int* nrhs, double* a, const int* lda,
                  double* b, const int* ldb, double* work, const int* lwork, int* info);

/* Minimum-norm least squares solution of A X = B for A of any rank, by a complete orthogonal factorisation,
 * which overwrites A; X overwrites B (max(m, n) x nrhs).
 *   jpvt  n, in and out, as in geqp3
 *   rcond the leading triangle of R with a condition number below 1 / rcond determines the rank
 *   rank  out: the rank found
 *   work  lwork elements, -1 is the size query;  rwork 2 n (complex)
 */
QEL_API int sgelsy(const int* m, const int* n, const int* nrhs, float* a, const int* lda, float* b,
                   const int* ldb, int* jpvt, const float* rcond, int* rank, float* work, const int* lwork,
                   int* info);
QEL_API int dgelsy(const int* m, const int* n, const int* nrhs, double* a, const int* lda, double* b,
                   const int* ldb, int* jpvt, const double* rcond, int* rank, double* work, const int* lwork,
                   int* info);
QEL_API int cgelsy(const int* m, const int* n, const int* nrhs, _QEL_Complex8* a, const int* lda,
                   _QEL_Complex8* b, const int* ldb, int* jpvt, const float* rcond, int* rank,
                   _QEL_Complex8* work, const int* lwork, float* rwork, int* info);
QEL_API int zgelsy(const int* m, const int* n, const int* nrhs, _QEL_Complex16* a, const int* lda,
                   _QEL_Complex16* b, const int* ldb, int* jpvt, const double* rcond, int* rank,
                   _QEL_Complex16* work, const int* lwork, double* rwork, int* info);

/* ---- Singular values and eigenvalues ---- */

/* Singular values A = U S V^H, by QR iteration; A is overwritten.
 *   jobu, jobvt  columns of U, rows of V^H: 'A' all, 'S' the first min(m, n), 'O' these written over A (not
 *         both), 'N' none
 *   s     out, min(m, n), falling
 *   u     ldu >= m for 'A' or 'S';  vt ldvt >= n for 'A', min(m, n) for 'S'; otherwise not used, may be null,
 *         leading dimension >= 1
 *   work  lwork elements, -1 is the size query;  rwork 5 min(m, n) (complex)
 * info: i > 0: i off-diagonal elements of the bidiagonal form did not converge to 0.
 */
QEL_API int sgesvd(const char* jobu, const char* jobvt, const int* m, const int* n, float* a, const int* lda,
                   float* s, float* u, const int* ldu, float* vt, const int* ldvt, float* work,
                   const int* lwork, int* info);
QEL_API int dgesvd(const char* jobu, const char* jobvt, const int* m, const int* n, double* a, const int* lda,
                   double* s, double* u, const int* ldu, double* vt, const int* ldvt, double* work,
                   const int* lwork, int* info);
QEL_API int cgesvd(const char* jobu, const char* jobvt, const int* m, const int* n, _QEL_Complex8* a,
                   const int* lda, float* s, _QEL_Complex8* u, const int* ldu, _QEL_Complex8* vt,
                   const int* ldvt, _QEL_Complex8* work, const int* lwork, float* rwork, int* info);
QEL_API int zgesvd(const char* jobu, const char* jobvt, const int* m, const int* n, _QEL_Complex16* a,
                   const int* lda, double* s, _QEL_Complex16* u, const int* ldu, _QEL_Complex16* vt,
                   const int* ldvt, _QEL_Complex16* work, const int* lwork, double* rwork, int* info);

/* The same by divide and conquer.
 *   jobz  'A' all columns of U and rows of V^H, 'S' the first min(m, n), 'N' none, 'O' U (m >= n) or V^H
 *         over A and all of the other
 *   iwork 8 min(m, n);  rwork (complex): with mn = min(m, n), mx = max(m, n): 7 mn for 'N', else
 *         max(5 mn^2 + 5 mn, 2 mx mn + 2 mn^2 + mn)
 * info: i > 0: no convergence.
 */
QEL_API int sgesdd(const char* jobz, const int* m, const int* n, float* a, const int* lda, float* s, float* u,
                   const int* ldu, float* vt, const int* ldvt, float* work, const int* lwork, int* iwork,
                   int* info);
QEL_API int dgesdd(const char* jobz, const int* m, const int* n, double* a, const int* lda, double* s,
                   double* u, const int* ldu, double* vt, const int* ldvt, double* work, const int* lwork,
                   int* iwork, int* info);
QEL_API int cgesdd(const char* jobz, const int* m, const int* n, _QEL_Complex8* a, const int* lda, float* s,
                   _QEL_Complex8* u, const int* ldu, _QEL_Complex8* vt, const int* ldvt, _QEL_Complex8* work,
                   const int* lwork, float* rwork, int* iwork, int* info);
QEL_API int zgesdd(const char* jobz, const int* m, const int* n, _QEL_Complex16* a, const int* lda, double* s,
                   _QEL_Complex16* u, const int* ldu, _QEL_Complex16* vt, const int* ldvt,
                   _QEL_Complex16* work, const int* lwork, double* rwork, int* iwork, int* info);

/* Eigenvalues and, on request, left and right eigenvectors of a general matrix, with balancing and condition
 * numbers; A is overwritten.
 *   balanc 'N' none, 'P' permute, 'S' scale, 'B' both;  jobvl, jobvr 'V' wanted, 'N' not
 *   sense  'N' none, 'E' eigenvalues, 'V' right vectors, 'B' both ('E' and 'B' need jobvl = jobvr = 'V')
 *   wr, wi real types: real and imaginary parts; conjugate pairs stand together, positive part first, and
 *          take two columns of vl and vr: real part, imaginary part.  w complex types
 *   vl, vr n x n if wanted, ld >= n, else not used, ld >= 1
 *   ilo, ihi, scale (n), abnrm  out: what balancing did, and the one-norm of the balanced matrix
 *   rconde, rcondv  out, n each, where asked for by sense
 *   work   lwork elements, -1 is the size query;  iwork 2 n - 2 (real);  rwork 2 n (complex)
 * info: i > 0: eigenvalues 1..ilo-1 and i+1..n converged, no vectors.
 */
QEL_API int sgeevx(const char* balanc, const char* jobvl, const char* jobvr, const char* sense, const int* n,
                   float* a, const int* lda, float* wr, float* wi, float* vl, const int* ldvl, float* vr,
                   const int* ldvr, int* ilo, int* ihi, float* scale, float* abnrm, float* rconde,
                   float* rcondv, float* work, const int* lwork, int* iwork, int* info);
QEL_API int dgeevx(const char* balanc, const char* jobvl, const char* jobvr, const char* sense, const int* n,
                   double* a, const int* lda, double* wr, double* wi, double* vl, const int* ldvl, double* vr,
                   const int* ldvr, int* ilo, int* ihi, double* scale, double* abnrm, double* rconde,
                   double* rcondv, double* work, const int* lwork, int* iwork, int* info);
QEL_API int cgeevx(const char* balanc, const char* jobvl, const char* jobvr, const char* sense, const int* n,
                   _QEL_Complex8* a, const int* lda, _QEL_Complex8* w, _QEL_Complex8* vl, const int* ldvl,
                   _QEL_Complex8* vr, const int* ldvr, int* ilo, int* ihi, float* scale, float* abnrm,
                   float* rconde, float* rcondv, _QEL_Complex8* work, const int* lwork, float* rwork,
                   int* info);
QEL_API int zgeevx(const char* balanc, const char* jobvl, const char* jobvr, const char* sense, const int* n,
                   _QEL_Complex16* a, const int* lda, _QEL_Complex16* w, _QEL_Complex16* vl, const int* ldvl,
                   _QEL_Complex16* vr, const int* ldvr, int* ilo, int* ihi, double* scale, double* abnrm,
                   double* rconde, double* rcondv, _QEL_Complex16* work, const int* lwork, double* rwork,
                   int* info);

/* Turns eigenvectors of a balanced matrix into those of the original.
 *   job   what gebal or geevx did: 'N', 'P', 'S' or 'B';  side 'R' right vectors, 'L' left ones
 *   ilo, ihi, scale  as gebal returned them;  v n x m, in place, ldv >= max(1, n)
 */
QEL_API int sgebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
                   const float* scale, const int* m, float* v, const int* ldv, int* info);
QEL_API int dgebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
                   const double* scale, const int* m, double* v, const int* ldv, int* info);
QEL_API int cgebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
                   const float* scale, const int* m, _QEL_Complex8* v, const int* ldv, int* info);
QEL_API int zgebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
                   const double* scale, const int* m, _QEL_Complex16* v, const int* ldv, int* info);

/* Selected eigenvalues and eigenvectors of a symmetric (sp) or Hermitian (hp) matrix in packed storage, which
 * is overwritten.
 *   jobz  'V' with vectors, 'N' without
 *   range 'A' all, 'V' those in (vl, vu], 'I' the il-th to the iu-th, one-based
 *   abstol tolerance of an eigenvalue; 0 or less takes the machine's
 *   m     out: eigenvalues found;  w out: these, rising, room for n
 *   z     out, n x m ('V': room for n columns), ldz >= max(1, n); not used for 'N', ldz >= 1
 *   work  8 n elements (real), 2 n (complex);  rwork 7 n (complex);  iwork 5 n
 *   ifail n, for 'V' only: the first m are 0, or, with info > 0, the first info are the numbers of the
 *         vectors that did not converge
 * info: i > 0: i vectors did not converge.
 */
QEL_API int sspevx(const char* jobz, const char* range, const char* uplo, const int* n, float* ap,
                   const float* vl, const float* vu, const int* il, const int* iu, const float* abstol,
                   int* m, float* w, float* z, const int* ldz, float* work, int* iwork, int* ifail,
                   int* info);
QEL_API int dspevx(const char* jobz, const char* range, const char* uplo, const int* n, double* ap,
                   const double* vl, const double* vu, const int* il, const int* iu, const double* abstol,
                   int* m, double* w, double* z, const int* ldz, double* work, int* iwork, int* ifail,
                   int* info);
QEL_API int chpevx(const char* jobz, const char* range, const char* uplo, const int* n, _QEL_Complex8* ap,
                   const float* vl, const float* vu, const int* il, const int* iu, const float* abstol,
                   int* m, float* w, _QEL_Complex8* z, const int* ldz, _QEL_Complex8* work, float* rwork,
                   int* iwork, int* ifail, int* info);
QEL_API int zhpevx(const char* jobz, const char* range, const char* uplo, const int* n, _QEL_Complex16* ap,
                   const double* vl, const double* vu, const int* il, const int* iu, const double* abstol,
                   int* m, double* w, _QEL_Complex16* z, const int* ldz, _QEL_Complex16* work, double* rwork,
                   int* iwork, int* ifail, int* info);

/* Balances a general matrix in place: job 'N' nothing, 'P' permutes, 'S' scales, 'B' both.
 *   ilo, ihi  out: the block that is not yet triangular;  scale out, n: the permutation and the factors
 */
QEL_API int zgebal(const char* job, const int* n, _QEL_Complex16* a, const int* lda, int* ilo, int* ihi,
                   double* scale, int* info);

/* A = Q H Q^H, H upper Hessenberg: H overwrites A, the reflections of Q stand below its subdiagonal.
 *   ilo, ihi  from gebal, else 1 and n;  tau out, n - 1
 *   work  lwork >= max(1, n) elements, -1 is the size query
 */
QEL_API int zgehrd(const int* n, const int* ilo, const int* ihi, _QEL_Complex16* a, const int* lda,
                   _QEL_Complex16* tau, _QEL_Complex16* work, const int* lwork, int* info);

/* The Q of gehrd, written over its reflections.
 *   work  lwork >= max(1, ihi - ilo) elements, -1 is the size query
 */
QEL_API int zunghr(const int* n, const int* ilo, const int* ihi, _QEL_Complex16* a, const int* lda,
                   const _QEL_Complex16* tau, _QEL_Complex16* work, const int* lwork, int* info);

/* Eigenvalues of an upper Hessenberg matrix and, on request, its Schur form H = Z T Z^H.
 *   job   'E' eigenvalues only, 'S' also T over H
 *   compz 'N' no Z, 'I' Z of H, 'V' z holds Q on entry and Q Z on exit
 *   w     out, n;  work lwork >= max(1, n) elements, -1 is the size query
 * info: i > 0: eigenvalues 1..ilo-1 and i+1..n converged.
 */
QEL_API int zhseqr(const char* job, const char* compz, const int* n, const int* ilo, const int* ihi,
                   _QEL_Complex16* h, const int* ldh, _QEL_Complex16* w, _QEL_Complex16* z, const int* ldz,
                   _QEL_Complex16* work, const int* lwork, int* info);

/* Eigenvectors of an upper triangular matrix T, each scaled to largest |re| + |im| of 1.
 *   side  'R' right, 'L' left, 'B' both
 *   howmny 'A' all, 'B' all, multiplied by the matrix in vl, vr on entry (Q of the Schur form),
 *          'S' the selected ones
 *   select n, for 'S' only: not 0 for the wanted eigenvalues
 *   t     n x n, ldt >= max(1, n); its diagonal is changed during the call and restored
 *   mm    columns of vl, vr;  m out: columns used
 *   work  2 n elements;  rwork n
 */
QEL_API int ztrevc(const char* side, const char* howmny, const int* select, const int* n, _QEL_Complex16* t,
                   const int* ldt, _QEL_Complex16* vl, const int* ldvl, _QEL_Complex16* vr, const int* ldvr,
                   const int* mm, int* m, _QEL_Complex16* work, double* rwork, int* info);

#ifdef __cplusplus
}
#endif

#endif /* QEL_LAPACK_H */
