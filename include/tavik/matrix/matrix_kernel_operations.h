// SPDX-License-Identifier: BSD-3-Clause
// The matrix operations of IMatrixKernel and of MatrixDotNetBlas, which implements them: the two classes have
// this one list in their bodies, as pure functions and as overrides.
//
// Blocks start at their offsets. An int result is the entry's info (qel/lapack.h): 0, -i for a bad argument
// i, above 0 as told there. A real result is a reciprocal condition number, or the info as a number if that
// is negative. Arrays of pivots are zero-based between calls unless told otherwise; an operation that reads
// them leaves them as they were. Scratch is taken for the length of a call.

// ---- General matrices, column-major with a leading dimension ----

/// A = Q R, m x n. R overwrites the upper triangle, the vectors of min(m, n) reflections the rest.
TAVIK_OPERATION int QRDecomp(int m, int n, const DoubleDataBlock& a, int lda,
                             const DoubleDataBlock& tau) TAVIK_END;
TAVIK_OPERATION int QRDecomp(int m, int n, const FloatDataBlock& a, int lda,
                             const FloatDataBlock& tau) TAVIK_END;
TAVIK_OPERATION int QRDecomp(int m, int n, const DoubleComplexDataBlock& a, int lda,
                             const DoubleComplexDataBlock& tau) TAVIK_END;
TAVIK_OPERATION int QRDecomp(int m, int n, const FloatComplexDataBlock& a, int lda,
                             const FloatComplexDataBlock& tau) TAVIK_END;
/// A P = Q R with column pivoting. jpvt goes in as it stands, one-based: a column with a value other than 0
/// is moved to the front first; it comes out zero-based.
TAVIK_OPERATION int QRDecompWithPivoting(int m, int n, const DoubleDataBlock& a, int lda,
                                         const Array<int>& jpvt, const DoubleDataBlock& tau) TAVIK_END;
TAVIK_OPERATION int QRDecompWithPivoting(int m, int n, const FloatDataBlock& a, int lda,
                                         const Array<int>& jpvt, const FloatDataBlock& tau) TAVIK_END;
TAVIK_OPERATION int QRDecompWithPivoting(int m, int n, const DoubleComplexDataBlock& a, int lda,
                                         const Array<int>& jpvt, const DoubleComplexDataBlock& tau) TAVIK_END;
TAVIK_OPERATION int QRDecompWithPivoting(int m, int n, const FloatComplexDataBlock& a, int lda,
                                         const Array<int>& jpvt, const FloatComplexDataBlock& tau) TAVIK_END;
/// The first n columns of Q, m x n, over the k reflections in a.
TAVIK_OPERATION int GetQFromQR(int m, int n, int k, const DoubleDataBlock& a, int lda,
                               const DoubleDataBlock& tau) TAVIK_END;
TAVIK_OPERATION int GetQFromQR(int m, int n, int k, const FloatDataBlock& a, int lda,
                               const FloatDataBlock& tau) TAVIK_END;
TAVIK_OPERATION int GetQFromQR(int m, int n, int k, const DoubleComplexDataBlock& a, int lda,
                               const DoubleComplexDataBlock& tau) TAVIK_END;
TAVIK_OPERATION int GetQFromQR(int m, int n, int k, const FloatComplexDataBlock& a, int lda,
                               const FloatComplexDataBlock& tau) TAVIK_END;
/// C := op(Q) C (side 'L') or C op(Q) ('R'), k reflections; trans 'N', and 'T' for real, 'C' for complex
/// types. C is m x n. The complex forms take a side of exactly 'L' for the left one when they size their
/// scratch.
TAVIK_OPERATION int MultiplyByQFromQR(char side, char trans, int m, int n, int k, const DoubleDataBlock& a,
                                      int lda, const DoubleDataBlock& tau, const DoubleDataBlock& c,
                                      int ldc) TAVIK_END;
TAVIK_OPERATION int MultiplyByQFromQR(char side, char trans, int m, int n, int k, const FloatDataBlock& a,
                                      int lda, const FloatDataBlock& tau, const FloatDataBlock& c,
                                      int ldc) TAVIK_END;
TAVIK_OPERATION int MultiplyByQFromQR(char side, char trans, int m, int n, int k,
                                      const DoubleComplexDataBlock& a, int lda,
                                      const DoubleComplexDataBlock& tau, const DoubleComplexDataBlock& c,
                                      int ldc) TAVIK_END;
TAVIK_OPERATION int MultiplyByQFromQR(char side, char trans, int m, int n, int k,
                                      const FloatComplexDataBlock& a, int lda,
                                      const FloatComplexDataBlock& tau, const FloatComplexDataBlock& c,
                                      int ldc) TAVIK_END;
/// Least squares (trans 'N') or minimum-norm solution of op(A) X = B for A of full rank, over plain arrays; A
/// is overwritten, X overwrites B (ldb >= max(m, n)).
TAVIK_OPERATION int GeneralLinearLeastSq(char trans, int m, int n, int nrhs, const Array<double>& a, int lda,
                                         const Array<double>& b, int ldb) TAVIK_END;
/// Singular values A = U S V^H, falling, by QR iteration; A is overwritten. jobu and jobvt: 'A' all columns
/// of U (rows of V^H), 'S' the first min(m, n), 'O' these over A, 'N' none; for 'O' and 'N' the block u (vt)
/// is not touched and may be empty.
TAVIK_OPERATION int SVDFromGeneral(char jobu, char jobvt, int m, int n, const DoubleDataBlock& a, int lda,
                                   const DoubleDataBlock& s, const DoubleDataBlock& u, int ldu,
                                   const DoubleDataBlock& vt, int ldvt) TAVIK_END;
TAVIK_OPERATION int SVDFromGeneral(char jobu, char jobvt, int m, int n, const FloatDataBlock& a, int lda,
                                   const FloatDataBlock& s, const FloatDataBlock& u, int ldu,
                                   const FloatDataBlock& vt, int ldvt) TAVIK_END;
TAVIK_OPERATION int SVDFromGeneral(char jobu, char jobvt, int m, int n, const DoubleComplexDataBlock& a,
                                   int lda, const DoubleDataBlock& s, const DoubleComplexDataBlock& u,
                                   int ldu, const DoubleComplexDataBlock& vt, int ldvt) TAVIK_END;
TAVIK_OPERATION int SVDFromGeneral(char jobu, char jobvt, int m, int n, const FloatComplexDataBlock& a,
                                   int lda, const FloatDataBlock& s, const FloatComplexDataBlock& u, int ldu,
                                   const FloatComplexDataBlock& vt, int ldvt) TAVIK_END;
/// The same by divide and conquer, jobz for both; u and vt are not touched for 'N'.
TAVIK_OPERATION int SVDFromGeneralDC(char jobz, int m, int n, const DoubleDataBlock& a, int lda,
                                     const DoubleDataBlock& s, const DoubleDataBlock& u, int ldu,
                                     const DoubleDataBlock& vt, int ldvt) TAVIK_END;
TAVIK_OPERATION int SVDFromGeneralDC(char jobz, int m, int n, const FloatDataBlock& a, int lda,
                                     const FloatDataBlock& s, const FloatDataBlock& u, int ldu,
                                     const FloatDataBlock& vt, int ldvt) TAVIK_END;
TAVIK_OPERATION int SVDFromGeneralDC(char jobz, int m, int n, const DoubleComplexDataBlock& a, int lda,
                                     const DoubleDataBlock& s, const DoubleComplexDataBlock& u, int ldu,
                                     const DoubleComplexDataBlock& vt, int ldvt) TAVIK_END;
TAVIK_OPERATION int SVDFromGeneralDC(char jobz, int m, int n, const FloatComplexDataBlock& a, int lda,
                                     const FloatDataBlock& s, const FloatComplexDataBlock& u, int ldu,
                                     const FloatComplexDataBlock& vt, int ldvt) TAVIK_END;
/// Eigenvalues of a general matrix, which is overwritten, and on request eigenvectors and condition numbers;
/// letters as for geevx in qel/lapack.h. Blocks that the letters leave unused may be empty. The result is 0,
/// a negative info, or, if the iteration broke down, the number of eigenvalues that converged: they are then
/// moved to where the unbalanced part starts (and are looked for from the start of the array, not of the
/// block).
TAVIK_OPERATION int GeneralEigDecomp(char balance, char jobvl, char jobvr, char sense, int n,
                                     const DoubleDataBlock& a, int lda, const DoubleDataBlock& wr,
                                     const DoubleDataBlock& wi, const DoubleDataBlock& vl, int ldvl,
                                     const DoubleDataBlock& vr, int ldvr, const DoubleDataBlock& rconde,
                                     const DoubleDataBlock& rcondv) TAVIK_END;
TAVIK_OPERATION int GeneralEigDecomp(char balance, char jobvl, char jobvr, char sense, int n,
                                     const FloatDataBlock& a, int lda, const FloatDataBlock& wr,
                                     const FloatDataBlock& wi, const FloatDataBlock& vl, int ldvl,
                                     const FloatDataBlock& vr, int ldvr, const FloatDataBlock& rconde,
                                     const FloatDataBlock& rcondv) TAVIK_END;
TAVIK_OPERATION int GeneralEigDecomp(char balance, char jobvl, char jobvr, char sense, int n,
                                     const DoubleComplexDataBlock& a, int lda,
                                     const DoubleComplexDataBlock& w, const DoubleComplexDataBlock& vl,
                                     int ldvl, const DoubleComplexDataBlock& vr, int ldvr,
                                     const DoubleDataBlock& rconde, const DoubleDataBlock& rcondv) TAVIK_END;
TAVIK_OPERATION int GeneralEigDecomp(char balance, char jobvl, char jobvr, char sense, int n,
                                     const FloatComplexDataBlock& a, int lda, const FloatComplexDataBlock& w,
                                     const FloatComplexDataBlock& vl, int ldvl,
                                     const FloatComplexDataBlock& vr, int ldvr, const FloatDataBlock& rconde,
                                     const FloatDataBlock& rcondv) TAVIK_END;
/// x := op(A) x for a triangular matrix of order n (uplo 'U', 'L'; trans 'N', 'T', 'C'). With a negative
/// stride x starts at its lowest address: its block's offset is not adjusted.
TAVIK_OPERATION void TriangularProduct(char uplo, char trans, int n, const DoubleDataBlock& a, int lda,
                                       const DoubleDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void TriangularProduct(char uplo, char trans, int n, const FloatDataBlock& a, int lda,
                                       const FloatDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void TriangularProduct(char uplo, char trans, int n, const DoubleComplexDataBlock& a, int lda,
                                       const DoubleComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void TriangularProduct(char uplo, char trans, int n, const FloatComplexDataBlock& a, int lda,
                                       const FloatComplexDataBlock& x, int incx) TAVIK_END;
/// Solves a symmetric positive definite system by Cholesky factorisation, which overwrites A.
TAVIK_OPERATION int SolveSymPd(char uplo, int n, int nrhs, const DoubleDataBlock& a, int lda,
                               const DoubleDataBlock& b, int ldb) TAVIK_END;
/// As in DotNetBlas.
TAVIK_OPERATION void FastDivide(int n, const DoubleDataBlock& AData, const DoubleDataBlock& BData,
                                const DoubleDataBlock& CData) TAVIK_END;
TAVIK_OPERATION void SafeDivide(int len, const Array<double>& a, const Array<double>& b,
                                const Array<double>& c) TAVIK_END;
TAVIK_OPERATION void SafeDivide(int rows, int cols, const DoubleDataBlock& AData, int ARowStride,
                                int AColStride, const DoubleDataBlock& BData, int BRowStride,
                                int BColStride) TAVIK_END;
TAVIK_OPERATION void SafeDivide(int rows, int cols, const DoubleDataBlock& AData, int ARowStride,
                                int AColStride, const DoubleDataBlock& BData, int BRowStride, int BColStride,
                                const DoubleDataBlock& CData, int CRowStride, int CColStride) TAVIK_END;
TAVIK_OPERATION void MakeNonNegative(int rows, int cols, const DoubleDataBlock& AData, int ARowStride,
                                     int AColStride) TAVIK_END;

// ---- Band matrices: ab in LAPACK's band form, kl diagonals below and ku above ----

/// A = P L U; ab has room for kl more diagonals ahead (ldab >= 2 kl + ku + 1). Pivots come out zero-based.
TAVIK_OPERATION int BandedFact(int m, int n, int kl, int ku, const DoubleDataBlock& ab, int ldab,
                               const Array<int>& ipiv) TAVIK_END;
TAVIK_OPERATION int BandedFact(int m, int n, int kl, int ku, const FloatDataBlock& ab, int ldab,
                               const Array<int>& ipiv) TAVIK_END;
TAVIK_OPERATION int BandedFact(int m, int n, int kl, int ku, const DoubleComplexDataBlock& ab, int ldab,
                               const Array<int>& ipiv) TAVIK_END;
TAVIK_OPERATION int BandedFact(int m, int n, int kl, int ku, const FloatComplexDataBlock& ab, int ldab,
                               const Array<int>& ipiv) TAVIK_END;
/// Solves op(A) X = B with the factors (trans 'N', 'T', 'C'); X overwrites B.
TAVIK_OPERATION int SolveFromBandFact(char trans, int n, int kl, int ku, int nrhs, const DoubleDataBlock& ab,
                                      int ldab, const Array<int>& ipiv, const DoubleDataBlock& b,
                                      int ldb) TAVIK_END;
TAVIK_OPERATION int SolveFromBandFact(char trans, int n, int kl, int ku, int nrhs, const FloatDataBlock& ab,
                                      int ldab, const Array<int>& ipiv, const FloatDataBlock& b,
                                      int ldb) TAVIK_END;
TAVIK_OPERATION int SolveFromBandFact(char trans, int n, int kl, int ku, int nrhs,
                                      const DoubleComplexDataBlock& ab, int ldab, const Array<int>& ipiv,
                                      const DoubleComplexDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolveFromBandFact(char trans, int n, int kl, int ku, int nrhs,
                                      const FloatComplexDataBlock& ab, int ldab, const Array<int>& ipiv,
                                      const FloatComplexDataBlock& b, int ldb) TAVIK_END;
/// Reciprocal condition number from the factors; norm '1' or 'I', anorm that norm of A.
TAVIK_OPERATION double CondNumberFromBandFact(char norm, int n, int kl, int ku, const DoubleDataBlock& ab,
                                              int ldab, const Array<int>& ipiv, double anorm) TAVIK_END;
TAVIK_OPERATION float CondNumberFromBandFact(char norm, int n, int kl, int ku, const FloatDataBlock& ab,
                                             int ldab, const Array<int>& ipiv, float anorm) TAVIK_END;
TAVIK_OPERATION double CondNumberFromBandFact(char norm, int n, int kl, int ku,
                                              const DoubleComplexDataBlock& ab, int ldab,
                                              const Array<int>& ipiv, double anorm) TAVIK_END;
TAVIK_OPERATION float CondNumberFromBandFact(char norm, int n, int kl, int ku,
                                             const FloatComplexDataBlock& ab, int ldab,
                                             const Array<int>& ipiv, float anorm) TAVIK_END;
/// A = U^H U for a positive definite matrix, upper band form with kd diagonals above the main one; solution;
/// reciprocal condition number in the one-norm.
TAVIK_OPERATION int SymPDBandFact(int n, int kd, const DoubleDataBlock& ab, int ldab) TAVIK_END;
TAVIK_OPERATION int SymPDBandFact(int n, int kd, const FloatDataBlock& ab, int ldab) TAVIK_END;
TAVIK_OPERATION int SymPDBandFact(int n, int kd, const DoubleComplexDataBlock& ab, int ldab) TAVIK_END;
TAVIK_OPERATION int SymPDBandFact(int n, int kd, const FloatComplexDataBlock& ab, int ldab) TAVIK_END;
TAVIK_OPERATION int SolveFromSymPDBandFact(int n, int kd, int nrhs, const DoubleDataBlock& ab, int ldab,
                                           const DoubleDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolveFromSymPDBandFact(int n, int kd, int nrhs, const FloatDataBlock& ab, int ldab,
                                           const FloatDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolveFromSymPDBandFact(int n, int kd, int nrhs, const DoubleComplexDataBlock& ab,
                                           int ldab, const DoubleComplexDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolveFromSymPDBandFact(int n, int kd, int nrhs, const FloatComplexDataBlock& ab, int ldab,
                                           const FloatComplexDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION double CondNumberFromSymPDBandFact(int n, int kd, const DoubleDataBlock& ab, int ldab,
                                                   double anorm) TAVIK_END;
TAVIK_OPERATION float CondNumberFromSymPDBandFact(int n, int kd, const FloatDataBlock& ab, int ldab,
                                                  float anorm) TAVIK_END;
TAVIK_OPERATION double CondNumberFromSymPDBandFact(int n, int kd, const DoubleComplexDataBlock& ab, int ldab,
                                                   double anorm) TAVIK_END;
TAVIK_OPERATION float CondNumberFromSymPDBandFact(int n, int kd, const FloatComplexDataBlock& ab, int ldab,
                                                  float anorm) TAVIK_END;
/// y := op(A) x + y; a has kl + ku + 1 rows. The bases of both vectors are found with n as their length.
TAVIK_OPERATION void BandedProduct(char trans, int m, int n, int kl, int ku, const DoubleDataBlock& a,
                                   const DoubleDataBlock& x, int incx, const DoubleDataBlock& y,
                                   int incy) TAVIK_END;
TAVIK_OPERATION void BandedProduct(char trans, int m, int n, int kl, int ku, const FloatDataBlock& a,
                                   const FloatDataBlock& x, int incx, const FloatDataBlock& y,
                                   int incy) TAVIK_END;
TAVIK_OPERATION void BandedProduct(char trans, int m, int n, int kl, int ku, const DoubleComplexDataBlock& a,
                                   const DoubleComplexDataBlock& x, int incx, const DoubleComplexDataBlock& y,
                                   int incy) TAVIK_END;
TAVIK_OPERATION void BandedProduct(char trans, int m, int n, int kl, int ku, const FloatComplexDataBlock& a,
                                   const FloatComplexDataBlock& x, int incx, const FloatComplexDataBlock& y,
                                   int incy) TAVIK_END;
/// y := A x + y for a symmetric (Hermitian) matrix, upper band form, k diagonals above the main one, k + 1
/// rows.
TAVIK_OPERATION void SymBandedProduct(int n, int k, const DoubleDataBlock& a, const DoubleDataBlock& x,
                                      int incx, const DoubleDataBlock& y, int incy) TAVIK_END;
TAVIK_OPERATION void SymBandedProduct(int n, int k, const FloatDataBlock& a, const FloatDataBlock& x,
                                      int incx, const FloatDataBlock& y, int incy) TAVIK_END;
TAVIK_OPERATION void HermitianBandedProduct(int n, int k, const DoubleComplexDataBlock& a,
                                            const DoubleComplexDataBlock& x, int incx,
                                            const DoubleComplexDataBlock& y, int incy) TAVIK_END;
TAVIK_OPERATION void HermitianBandedProduct(int n, int k, const FloatComplexDataBlock& a,
                                            const FloatComplexDataBlock& x, int incx,
                                            const FloatComplexDataBlock& y, int incy) TAVIK_END;

// ---- Tridiagonal matrices: dl below, d on, du above the diagonal, each a block of its own ----

/// LU factors in place, du2 (n - 2) the second diagonal above in U; pivots come out zero-based.
TAVIK_OPERATION int TriDiagLUFact(int n, const DoubleDataBlock& dl, const DoubleDataBlock& d,
                                  const DoubleDataBlock& du, const DoubleDataBlock& du2,
                                  const Array<int>& ipvt) TAVIK_END;
TAVIK_OPERATION int TriDiagLUFact(int n, const FloatDataBlock& dl, const FloatDataBlock& d,
                                  const FloatDataBlock& du, const FloatDataBlock& du2,
                                  const Array<int>& ipvt) TAVIK_END;
TAVIK_OPERATION int TriDiagLUFact(int n, const DoubleComplexDataBlock& dl, const DoubleComplexDataBlock& d,
                                  const DoubleComplexDataBlock& du, const DoubleComplexDataBlock& du2,
                                  const Array<int>& ipvt) TAVIK_END;
TAVIK_OPERATION int TriDiagLUFact(int n, const FloatComplexDataBlock& dl, const FloatComplexDataBlock& d,
                                  const FloatComplexDataBlock& du, const FloatComplexDataBlock& du2,
                                  const Array<int>& ipvt) TAVIK_END;
TAVIK_OPERATION int SolveTriDiagFromLUFact(int n, int nrhs, const DoubleDataBlock& dl,
                                           const DoubleDataBlock& d, const DoubleDataBlock& du,
                                           const DoubleDataBlock& du2, const Array<int>& ipvt,
                                           const DoubleDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolveTriDiagFromLUFact(int n, int nrhs, const FloatDataBlock& dl, const FloatDataBlock& d,
                                           const FloatDataBlock& du, const FloatDataBlock& du2,
                                           const Array<int>& ipvt, const FloatDataBlock& b,
                                           int ldb) TAVIK_END;
TAVIK_OPERATION int SolveTriDiagFromLUFact(int n, int nrhs, const DoubleComplexDataBlock& dl,
                                           const DoubleComplexDataBlock& d, const DoubleComplexDataBlock& du,
                                           const DoubleComplexDataBlock& du2, const Array<int>& ipvt,
                                           const DoubleComplexDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolveTriDiagFromLUFact(int n, int nrhs, const FloatComplexDataBlock& dl,
                                           const FloatComplexDataBlock& d, const FloatComplexDataBlock& du,
                                           const FloatComplexDataBlock& du2, const Array<int>& ipvt,
                                           const FloatComplexDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION double CondNumberFromTriDiagLU(char norm, int n, const DoubleDataBlock& dl,
                                               const DoubleDataBlock& d, const DoubleDataBlock& du,
                                               const DoubleDataBlock& du2, const Array<int>& ipvt,
                                               double anorm) TAVIK_END;
TAVIK_OPERATION float CondNumberFromTriDiagLU(char norm, int n, const FloatDataBlock& dl,
                                              const FloatDataBlock& d, const FloatDataBlock& du,
                                              const FloatDataBlock& du2, const Array<int>& ipvt,
                                              float anorm) TAVIK_END;
TAVIK_OPERATION double CondNumberFromTriDiagLU(char norm, int n, const DoubleComplexDataBlock& dl,
                                               const DoubleComplexDataBlock& d,
                                               const DoubleComplexDataBlock& du,
                                               const DoubleComplexDataBlock& du2, const Array<int>& ipvt,
                                               double anorm) TAVIK_END;
TAVIK_OPERATION float CondNumberFromTriDiagLU(char norm, int n, const FloatComplexDataBlock& dl,
                                              const FloatComplexDataBlock& d, const FloatComplexDataBlock& du,
                                              const FloatComplexDataBlock& du2, const Array<int>& ipvt,
                                              float anorm) TAVIK_END;
/// A = L D L^H for a positive definite matrix: d real, e below the diagonal.
TAVIK_OPERATION int SymPDTriDiagFact(int n, const DoubleDataBlock& d, const DoubleDataBlock& e) TAVIK_END;
TAVIK_OPERATION int SymPDTriDiagFact(int n, const FloatDataBlock& d, const FloatDataBlock& e) TAVIK_END;
TAVIK_OPERATION int SymPDTriDiagFact(int n, const DoubleDataBlock& d,
                                     const DoubleComplexDataBlock& e) TAVIK_END;
TAVIK_OPERATION int SymPDTriDiagFact(int n, const FloatDataBlock& d,
                                     const FloatComplexDataBlock& e) TAVIK_END;
TAVIK_OPERATION int SolveSymPDTriDiagFromFact(int n, int nrhs, const DoubleDataBlock& d,
                                              const DoubleDataBlock& e, const DoubleDataBlock& b,
                                              int ldb) TAVIK_END;
TAVIK_OPERATION int SolveSymPDTriDiagFromFact(int n, int nrhs, const FloatDataBlock& d,
                                              const FloatDataBlock& e, const FloatDataBlock& b,
                                              int ldb) TAVIK_END;
TAVIK_OPERATION int SolveSymPDTriDiagFromFact(int n, int nrhs, const DoubleDataBlock& d,
                                              const DoubleComplexDataBlock& e,
                                              const DoubleComplexDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolveSymPDTriDiagFromFact(int n, int nrhs, const FloatDataBlock& d,
                                              const FloatComplexDataBlock& e, const FloatComplexDataBlock& b,
                                              int ldb) TAVIK_END;
TAVIK_OPERATION double CondNumberFromSymPDTriDiagFact(int n, const DoubleDataBlock& d,
                                                      const DoubleDataBlock& e, double anorm) TAVIK_END;
TAVIK_OPERATION float CondNumberFromSymPDTriDiagFact(int n, const FloatDataBlock& d, const FloatDataBlock& e,
                                                     float anorm) TAVIK_END;
TAVIK_OPERATION double CondNumberFromSymPDTriDiagFact(int n, const DoubleDataBlock& d,
                                                      const DoubleComplexDataBlock& e,
                                                      double anorm) TAVIK_END;
TAVIK_OPERATION float CondNumberFromSymPDTriDiagFact(int n, const FloatDataBlock& d,
                                                     const FloatComplexDataBlock& e, float anorm) TAVIK_END;

// ---- Packed matrices: the upper triangle by columns, element (i, j), i <= j, at i + j (j + 1) / 2. A lower
// triangular matrix is held as the packed upper triangle of its transpose ----

/// A = U D U^T (U D U^H for complex types) after Bunch and Kaufman. Pivots keep the core's one-based form
/// between calls, since their sign means something.
TAVIK_OPERATION int SymFact(int n, const DoubleDataBlock& a, const Array<int>& ipiv) TAVIK_END;
TAVIK_OPERATION int SymFact(int n, const FloatDataBlock& a, const Array<int>& ipiv) TAVIK_END;
TAVIK_OPERATION int SymFact(int n, const DoubleComplexDataBlock& a, const Array<int>& ipiv) TAVIK_END;
TAVIK_OPERATION int SymFact(int n, const FloatComplexDataBlock& a, const Array<int>& ipiv) TAVIK_END;
TAVIK_OPERATION int SolveSymFromFact(int n, int nrhs, const DoubleDataBlock& ap, const Array<int>& ipiv,
                                     const DoubleDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolveSymFromFact(int n, int nrhs, const FloatDataBlock& ap, const Array<int>& ipiv,
                                     const FloatDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolveSymFromFact(int n, int nrhs, const DoubleComplexDataBlock& ap,
                                     const Array<int>& ipiv, const DoubleComplexDataBlock& b,
                                     int ldb) TAVIK_END;
TAVIK_OPERATION int SolveSymFromFact(int n, int nrhs, const FloatComplexDataBlock& ap, const Array<int>& ipiv,
                                     const FloatComplexDataBlock& b, int ldb) TAVIK_END;
/// Reciprocal condition number and inverse. The complex forms take the factors as those of a complex
/// symmetric matrix, not of a Hermitian one.
TAVIK_OPERATION double CondNumberFromSymFact(int n, const DoubleDataBlock& ap, const Array<int>& ipiv,
                                             double anorm) TAVIK_END;
TAVIK_OPERATION float CondNumberFromSymFact(int n, const FloatDataBlock& ap, const Array<int>& ipiv,
                                            float anorm) TAVIK_END;
TAVIK_OPERATION double CondNumberFromSymFact(int n, const DoubleComplexDataBlock& ap, const Array<int>& ipiv,
                                             double anorm) TAVIK_END;
TAVIK_OPERATION float CondNumberFromSymFact(int n, const FloatComplexDataBlock& ap, const Array<int>& ipiv,
                                            float anorm) TAVIK_END;
TAVIK_OPERATION int InverseFromSymFact(int n, const DoubleDataBlock& ap, const Array<int>& ipiv) TAVIK_END;
TAVIK_OPERATION int InverseFromSymFact(int n, const FloatDataBlock& ap, const Array<int>& ipiv) TAVIK_END;
TAVIK_OPERATION int InverseFromSymFact(int n, const DoubleComplexDataBlock& ap,
                                       const Array<int>& ipiv) TAVIK_END;
TAVIK_OPERATION int InverseFromSymFact(int n, const FloatComplexDataBlock& ap,
                                       const Array<int>& ipiv) TAVIK_END;
/// A = U^H U for a positive definite matrix; solution, reciprocal condition number, inverse.
TAVIK_OPERATION int SymPDFact(int n, const DoubleDataBlock& ap) TAVIK_END;
TAVIK_OPERATION int SymPDFact(int n, const FloatDataBlock& ap) TAVIK_END;
TAVIK_OPERATION int SymPDFact(int n, const DoubleComplexDataBlock& ap) TAVIK_END;
TAVIK_OPERATION int SymPDFact(int n, const FloatComplexDataBlock& ap) TAVIK_END;
TAVIK_OPERATION int SolveSymPDFromFact(int n, int nrhs, const DoubleDataBlock& ap, const DoubleDataBlock& b,
                                       int ldb) TAVIK_END;
TAVIK_OPERATION int SolveSymPDFromFact(int n, int nrhs, const FloatDataBlock& ap, const FloatDataBlock& b,
                                       int ldb) TAVIK_END;
TAVIK_OPERATION int SolveSymPDFromFact(int n, int nrhs, const DoubleComplexDataBlock& ap,
                                       const DoubleComplexDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolveSymPDFromFact(int n, int nrhs, const FloatComplexDataBlock& ap,
                                       const FloatComplexDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION double CondNumberFromSymPDFact(int n, const DoubleDataBlock& ap, double anorm) TAVIK_END;
TAVIK_OPERATION float CondNumberFromSymPDFact(int n, const FloatDataBlock& ap, float anorm) TAVIK_END;
TAVIK_OPERATION double CondNumberFromSymPDFact(int n, const DoubleComplexDataBlock& ap,
                                               double anorm) TAVIK_END;
TAVIK_OPERATION float CondNumberFromSymPDFact(int n, const FloatComplexDataBlock& ap, float anorm) TAVIK_END;
TAVIK_OPERATION int InverseFromSymPDFact(int n, const DoubleDataBlock& ap) TAVIK_END;
TAVIK_OPERATION int InverseFromSymPDFact(int n, const FloatDataBlock& ap) TAVIK_END;
TAVIK_OPERATION int InverseFromSymPDFact(int n, const DoubleComplexDataBlock& ap) TAVIK_END;
TAVIK_OPERATION int InverseFromSymPDFact(int n, const FloatComplexDataBlock& ap) TAVIK_END;
/// Solves A X = B for a triangular matrix; X overwrites B. info i > 0: element (i, i) is 0.
TAVIK_OPERATION int SolvePackedUpperTriSystem(int n, int nrhs, const DoubleDataBlock& ap,
                                              const DoubleDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolvePackedUpperTriSystem(int n, int nrhs, const FloatDataBlock& ap,
                                              const FloatDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolvePackedUpperTriSystem(int n, int nrhs, const DoubleComplexDataBlock& ap,
                                              const DoubleComplexDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolvePackedUpperTriSystem(int n, int nrhs, const FloatComplexDataBlock& ap,
                                              const FloatComplexDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolvePackedLowerTriSystem(int n, int nrhs, const DoubleDataBlock& ap,
                                              const DoubleDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolvePackedLowerTriSystem(int n, int nrhs, const FloatDataBlock& ap,
                                              const FloatDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolvePackedLowerTriSystem(int n, int nrhs, const DoubleComplexDataBlock& ap,
                                              const DoubleComplexDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int SolvePackedLowerTriSystem(int n, int nrhs, const FloatComplexDataBlock& ap,
                                              const FloatComplexDataBlock& b, int ldb) TAVIK_END;
/// The inverse, in place, in the same packed form.
TAVIK_OPERATION int InverseOfPackedUpperTriSystem(int n, const DoubleDataBlock& ap) TAVIK_END;
TAVIK_OPERATION int InverseOfPackedUpperTriSystem(int n, const FloatDataBlock& ap) TAVIK_END;
TAVIK_OPERATION int InverseOfPackedUpperTriSystem(int n, const DoubleComplexDataBlock& ap) TAVIK_END;
TAVIK_OPERATION int InverseOfPackedUpperTriSystem(int n, const FloatComplexDataBlock& ap) TAVIK_END;
TAVIK_OPERATION int InverseOfPackedLowerTriSystem(int n, const DoubleDataBlock& ap) TAVIK_END;
TAVIK_OPERATION int InverseOfPackedLowerTriSystem(int n, const FloatDataBlock& ap) TAVIK_END;
TAVIK_OPERATION int InverseOfPackedLowerTriSystem(int n, const DoubleComplexDataBlock& ap) TAVIK_END;
TAVIK_OPERATION int InverseOfPackedLowerTriSystem(int n, const FloatComplexDataBlock& ap) TAVIK_END;
/// Reciprocal condition number of the packed upper triangle, in both operations. A bad argument gives a
/// positive number here, the argument's position.
TAVIK_OPERATION double ConditionNumOfPackedUpperTriMat(char norm, int n, const DoubleDataBlock& ap) TAVIK_END;
TAVIK_OPERATION float ConditionNumOfPackedUpperTriMat(char norm, int n, const FloatDataBlock& ap) TAVIK_END;
TAVIK_OPERATION double ConditionNumOfPackedUpperTriMat(char norm, int n,
                                                       const DoubleComplexDataBlock& ap) TAVIK_END;
TAVIK_OPERATION float ConditionNumOfPackedUpperTriMat(char norm, int n,
                                                      const FloatComplexDataBlock& ap) TAVIK_END;
TAVIK_OPERATION double ConditionNumOfPackedLowerTriMat(char norm, int n, const DoubleDataBlock& ap) TAVIK_END;
TAVIK_OPERATION float ConditionNumOfPackedLowerTriMat(char norm, int n, const FloatDataBlock& ap) TAVIK_END;
TAVIK_OPERATION double ConditionNumOfPackedLowerTriMat(char norm, int n,
                                                       const DoubleComplexDataBlock& ap) TAVIK_END;
TAVIK_OPERATION float ConditionNumOfPackedLowerTriMat(char norm, int n,
                                                      const FloatComplexDataBlock& ap) TAVIK_END;
/// x := A x.
TAVIK_OPERATION void UpperTriangularProduct(int n, const DoubleDataBlock& ap, const DoubleDataBlock& x,
                                            int incx) TAVIK_END;
TAVIK_OPERATION void UpperTriangularProduct(int n, const FloatDataBlock& ap, const FloatDataBlock& x,
                                            int incx) TAVIK_END;
TAVIK_OPERATION void UpperTriangularProduct(int n, const DoubleComplexDataBlock& ap,
                                            const DoubleComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void UpperTriangularProduct(int n, const FloatComplexDataBlock& ap,
                                            const FloatComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void LowerTriangularProduct(int n, const DoubleDataBlock& ap, const DoubleDataBlock& x,
                                            int incx) TAVIK_END;
TAVIK_OPERATION void LowerTriangularProduct(int n, const FloatDataBlock& ap, const FloatDataBlock& x,
                                            int incx) TAVIK_END;
TAVIK_OPERATION void LowerTriangularProduct(int n, const DoubleComplexDataBlock& ap,
                                            const DoubleComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void LowerTriangularProduct(int n, const FloatComplexDataBlock& ap,
                                            const FloatComplexDataBlock& x, int incx) TAVIK_END;
/// y := A x; y is contiguous.
TAVIK_OPERATION void SymmetricProduct(int n, const DoubleDataBlock& m, const DoubleDataBlock& x, int incx,
                                      const DoubleDataBlock& y) TAVIK_END;
TAVIK_OPERATION void SymmetricProduct(int n, const FloatDataBlock& m, const FloatDataBlock& x, int incx,
                                      const FloatDataBlock& y) TAVIK_END;
TAVIK_OPERATION void HermitianProduct(int n, const DoubleComplexDataBlock& m, const DoubleComplexDataBlock& x,
                                      int incx, const DoubleComplexDataBlock& y) TAVIK_END;
TAVIK_OPERATION void HermitianProduct(int n, const FloatComplexDataBlock& m, const FloatComplexDataBlock& x,
                                      int incx, const FloatComplexDataBlock& y) TAVIK_END;
/// Selected eigenvalues, rising, and on request eigenvectors of a symmetric (Hermitian) matrix, which is
/// overwritten; letters, ranges (il, iu one-based) and ifail as for spevx in qel/lapack.h. z and ifail may be
/// empty for jobz 'N'.
TAVIK_OPERATION int SymmetricPackedEigDecomp(char jobz, char range, int n, const DoubleDataBlock& ap,
                                             double vl, double vu, int il, int iu, double abstol,
                                             const DoubleDataBlock& w, const DoubleDataBlock& z, int ldz,
                                             const Array<int>& ifail) TAVIK_END;
TAVIK_OPERATION int SymmetricPackedEigDecomp(char jobz, char range, int n, const FloatDataBlock& ap, float vl,
                                             float vu, int il, int iu, float abstol, const FloatDataBlock& w,
                                             const FloatDataBlock& z, int ldz,
                                             const Array<int>& ifail) TAVIK_END;
TAVIK_OPERATION int SymmetricPackedEigDecomp(char jobz, char range, int n, const DoubleComplexDataBlock& ap,
                                             double vl, double vu, int il, int iu, double abstol,
                                             const DoubleDataBlock& w, const DoubleComplexDataBlock& z,
                                             int ldz, const Array<int>& ifail) TAVIK_END;
TAVIK_OPERATION int SymmetricPackedEigDecomp(char jobz, char range, int n, const FloatComplexDataBlock& ap,
                                             float vl, float vu, int il, int iu, float abstol,
                                             const FloatDataBlock& w, const FloatComplexDataBlock& z, int ldz,
                                             const Array<int>& ifail) TAVIK_END;

// ---- Packed matrices whose consecutive elements lie incap (incm) apart, in loops of the facade ----

/// y := A x; y is contiguous.
TAVIK_OPERATION void UpperTriangularProduct(int n, const DoubleDataBlock& ap, int incap,
                                            const DoubleDataBlock& x, int incx,
                                            const DoubleDataBlock& y) TAVIK_END;
TAVIK_OPERATION void UpperTriangularProduct(int n, const FloatDataBlock& ap, int incap,
                                            const FloatDataBlock& x, int incx,
                                            const FloatDataBlock& y) TAVIK_END;
TAVIK_OPERATION void UpperTriangularProduct(int n, const DoubleComplexDataBlock& ap, int incap,
                                            const DoubleComplexDataBlock& x, int incx,
                                            const DoubleComplexDataBlock& y) TAVIK_END;
TAVIK_OPERATION void UpperTriangularProduct(int n, const FloatComplexDataBlock& ap, int incap,
                                            const FloatComplexDataBlock& x, int incx,
                                            const FloatComplexDataBlock& y) TAVIK_END;
TAVIK_OPERATION void LowerTriangularProduct(int n, const DoubleDataBlock& ap, int incap,
                                            const DoubleDataBlock& x, int incx,
                                            const DoubleDataBlock& y) TAVIK_END;
TAVIK_OPERATION void LowerTriangularProduct(int n, const FloatDataBlock& ap, int incap,
                                            const FloatDataBlock& x, int incx,
                                            const FloatDataBlock& y) TAVIK_END;
TAVIK_OPERATION void LowerTriangularProduct(int n, const DoubleComplexDataBlock& ap, int incap,
                                            const DoubleComplexDataBlock& x, int incx,
                                            const DoubleComplexDataBlock& y) TAVIK_END;
TAVIK_OPERATION void LowerTriangularProduct(int n, const FloatComplexDataBlock& ap, int incap,
                                            const FloatComplexDataBlock& x, int incx,
                                            const FloatComplexDataBlock& y) TAVIK_END;
TAVIK_OPERATION void SymmetricProduct(int n, const DoubleDataBlock& m, int incm, const DoubleDataBlock& x,
                                      int incx, const DoubleDataBlock& y) TAVIK_END;
TAVIK_OPERATION void SymmetricProduct(int n, const FloatDataBlock& m, int incm, const FloatDataBlock& x,
                                      int incx, const FloatDataBlock& y) TAVIK_END;
/// The same for a Hermitian matrix; with flag for a complex symmetric one.
TAVIK_OPERATION void HermitianProduct(int n, const DoubleComplexDataBlock& m, int incm,
                                      const DoubleComplexDataBlock& x, int incx,
                                      const DoubleComplexDataBlock& y, bool flag) TAVIK_END;
TAVIK_OPERATION void HermitianProduct(int n, const FloatComplexDataBlock& m, int incm,
                                      const FloatComplexDataBlock& x, int incx,
                                      const FloatComplexDataBlock& y, bool flag) TAVIK_END;
/// Copies a packed triangle into the contiguous t, all but the diagonal elements conjugated.
TAVIK_OPERATION void Transpose(int n, const DoubleComplexDataBlock& m, int incm,
                               const DoubleComplexDataBlock& t) TAVIK_END;
TAVIK_OPERATION void Transpose(int n, const FloatComplexDataBlock& m, int incm,
                               const FloatComplexDataBlock& t) TAVIK_END;
/// The same for a band: o columns of hb elements, each column followed by its diagonal element.
TAVIK_OPERATION void Transpose(int o, const DoubleComplexDataBlock& m, int incm, int hb,
                               const DoubleComplexDataBlock& t) TAVIK_END;
TAVIK_OPERATION void Transpose(int o, const FloatComplexDataBlock& m, int incm, int hb,
                               const FloatComplexDataBlock& t) TAVIK_END;
/// True if the imaginary parts of the diagonal are exactly 0; sets them to 0.
TAVIK_OPERATION bool PackedIsDiagonalReal(int n, const DoubleComplexDataBlock& m, int incm) TAVIK_END;
TAVIK_OPERATION bool PackedIsDiagonalReal(int n, const FloatComplexDataBlock& m, int incm) TAVIK_END;
TAVIK_OPERATION void PackedMakeDiagonalReal(int n, const DoubleComplexDataBlock& m, int incm) TAVIK_END;
TAVIK_OPERATION void PackedMakeDiagonalReal(int n, const FloatComplexDataBlock& m, int incm) TAVIK_END;
/// The same for a band with hb elements ahead of each diagonal one.
TAVIK_OPERATION bool BandedIsDiagonalReal(int n, const DoubleComplexDataBlock& m, int incm, int hb) TAVIK_END;
TAVIK_OPERATION bool BandedIsDiagonalReal(int n, const FloatComplexDataBlock& m, int incm, int hb) TAVIK_END;
TAVIK_OPERATION void BandedMakeDiagonalReal(int n, const DoubleComplexDataBlock& m, int incm,
                                            int hb) TAVIK_END;
TAVIK_OPERATION void BandedMakeDiagonalReal(int n, const FloatComplexDataBlock& m, int incm,
                                            int hb) TAVIK_END;
