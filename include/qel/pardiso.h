/* SPDX-License-Identifier: BSD-3-Clause
 * Direct solution of sparse linear systems A x = b: one routine, driven by a phase number, that orders the
 * equations, analyses the structure, factors the values and solves, and keeps everything between calls behind
 * a handle of 64 words. Plain C; every scalar is passed by its address, all integers are 32-bit, vectors of
 * several right-hand sides lie column after column.
 *
 *   void* pt[64] = {0};                      // the handle: zero before the first call
 *   int iparm[64] = {0};                     // iparm(1) = 0: defaults
 *   int maxfct = 1, mnum = 1, mtype = 11, nrhs = 1, msglvl = 0, error, phase = 13;
 *   pardiso(pt, &maxfct, &mnum, &mtype, &phase, &n, a, ia, ja, 0, &nrhs, iparm, &msglvl, b, x, &error);
 *   phase = -1;                              // gives the memory back
 *   pardiso(pt, &maxfct, &mnum, &mtype, &phase, &n, a, ia, ja, 0, &nrhs, iparm, &msglvl, b, x, &error);
 *
 * The matrix: compressed sparse rows counted from 1 (ia[0] = 1), column numbers rising in each row; symmetric
 * and Hermitian types give the upper triangle only, with its diagonal, zeros there written out (the other
 * types fare best so, too).
 *
 *   mtype   1  real, structurally symmetric          3  complex, structurally symmetric
 *           2  real, symmetric positive definite     4  complex, Hermitian positive definite
 *          -2  real, symmetric indefinite           -4  complex, Hermitian indefinite
 *          11  real, nonsymmetric                    6  complex, symmetric
 *                                                   13  complex, nonsymmetric
 *
 *   phase   11, 12, 13     analysis; and factorisation; and solve. What the handle held before goes
 *           22, 23         factorisation of new values of the same structure; and solve
 *           33             solve, with refinement
 *           331, 332, 333  only the forward, the diagonal, the backward part of a solve
 *           0, -1          releases the factors of mnum; everything: the handle is empty then
 *           -2, -3         queries: error 16 and iparm(1) 23; error 300000
 *
 * The matrix (a, ia, ja) must be given in every phase from 11 on. Another n needs phase -1 first. maxfct
 * factorisations of one structure can be kept, mnum (1 to maxfct) names the one of this call.
 *
 * Threads: one call at a time on a handle; different handles are independent. The solver takes the library's
 * thread count (qel/service.h), at most one thread per 50 equations for a single right-hand side.
 *
 * Method: orderings by minimum degree or nested dissection; left-looking supernodal factorisation with
 * level-3 BLAS; pivots searched inside the diagonal blocks of supernodes, small ones replaced (iparm(10));
 * iterative refinement. See docs/sparse_solver.md for recipes.
 */
#ifndef QEL_PARDISO_H
#define QEL_PARDISO_H

#include "qel/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The solver. a, b, x: double, or pairs of doubles (real part first) for complex types; float and pairs of
 * floats with iparm(28) = 1.
 *
 *   perm    n numbers, used with iparm(5) = 1, 2 only; else may be null. perm[k - 1] is the equation that
 *           comes k-th, counted from 1
 *   msglvl  0 silent; else errors and statistics on standard output; 2 and more: the version, too
 *   error   see below. With msglvl 0 input errors are -7 in place of -1. Phase 33 with iparm(4) = 0 on a
 *           handle in use leaves 0 here in any case; msglvl 1 tells what happened
 *
 * iparm, counted from 1: element k is iparm[k - 1]. With iparm(1) = 0 the first call of a handle stores the
 * defaults; later calls read the elements as they are.
 *
 *   1       0 defaults, 1 the values as given
 *   2       ordering: 0 minimum degree, 1 the same with constraints, 2 nested dissection (default), 3 the
 *           same with subgraphs for the threads
 *   3       out: threads used
 *   4       10 L + K, not 0: phase 23 iterates with the factors of earlier values; K = 1 CGS, 2 CG; L
 *           digits. Read only with iparm(1) = 1
 *   5       1 perm is given, 2 perm is returned
 *   6       1 the solution overwrites b, and x is not used
 *   7       out: refinement steps
 *   8       most refinement steps; below 0: with residuals in a wider format. 0: two steps if pivots were
 *           perturbed, else none
 *   10      pivots of at most 10^-k are perturbed: 13 for types 1, 3, 11, 13, 8 for -2, -4, 6
 *   11      1: scale together with the matching; default for types 11, 13
 *   12      1: solve with the transposed matrix; only with iparm(1) not 1
 *   13      1: match large entries to the diagonal; default for types 11, 13, on request for -2, -4, 6
 *   14      out: perturbed pivots
 *   15, 16  out: KB of the analysis, at its peak and kept; 17: of the factorisation with its factor
 *   18, 19  in: below 0; out: non-zeros of the factors, millions of operations of the factorisation
 *   20      out: steps of the iteration; below 0 why it failed: -1 diverged, -2 stalled, -3 limit, -4 no
 *           start, -5 not worth while. -34: refinement stopped after its two steps
 *   21      symmetric indefinite: 1 Bunch-Kaufman pivoting in the blocks, 0 the diagonal as it comes
 *   22, 23  out: positive and negative eigenvalues of symmetric indefinite types
 *   27      1: check the structure at the next call; set to 0 by a good check
 *   28      1: single precision
 *   30      out: the equation at which the factorisation failed
 *   31..33  out: the numbers in the structure check's message
 *   50      2^k is a lower limit for the number of independent subgraphs
 *   60      factors in files: 0 no, 1 if memory asks for it, 2 yes
 *   61..63  out: megabytes that the factorisation will take: in all, to work with, for the factors
 *   64      out: 108
 *
 * The others are not used. Any phase that ends with 3 solves a system with a diagonal matrix (as many
 * entries as rows) without a handle and marks that by iparm(12) = -1; calls with the mark and another matrix
 * do nothing.
 *
 *   error   -1   input (see msglvl 1, and iparm(27))
 *           -2   no memory
 *           -3   the ordering failed
 *           -4   zero pivot (iparm(30)); types 2, 4: not positive definite; refinement failed; cancelled
 *           -5   others; a has entries that the analysed structure has not
 *           -6   structurally singular: there is no perfect matching
 *           -7   input, silently; a zero on a diagonal matrix
 *           -8   the factors have too many entries for 32-bit counts
 *           -9   not even a factorisation with its factors in files fits the limit
 *          -10   these files can't be opened; -11: not be read or written
 */
QEL_API void PARDISO(void** pt, const int* maxfct, const int* mnum, const int* mtype, const int* phase,
                     const int* n, const void* a, const int* ia, const int* ja, int* perm, const int* nrhs,
                     int* iparm, const int* msglvl, void* b, void* x, int* error);
QEL_API void pardiso(void** pt, const int* maxfct, const int* mnum, const int* mtype, const int* phase,
                     const int* n, const void* a, const int* ia, const int* ja, int* perm, const int* nrhs,
                     int* iparm, const int* msglvl, void* b, void* x, int* error);

/* Zeroes the handle (which must not be in use) and iparm, and stores iparm(1) = 1 and the defaults for mtype.
 * Returns -1.
 */
QEL_API int pardisoinit(void** pt, const int* mtype, int* iparm);

/* How far a solution can be trusted. */
typedef struct qel_pardiso_quality {
  int perturbed_pivots;  /* as iparm(14) */
  int positive;          /* eigenvalues of symmetric indefinite types above 0 */
  int negative;          /* and below 0 */
  double condition;      /* estimate of |A| |A^-1| in the 1-norm; below 1: not computed */
  double backward_error; /* the largest of the right-hand sides'; below 0: none given */
  double forward_error;  /* condition * backward error: about the relative error of x; below 0: unknown */
  char text[256];        /* the verdict in words */
} qel_pardiso_quality;

/* Looks at the factors of mnum, and at solutions if there are any (nrhs 0: none). a, ia, ja: the matrix that
 * was factored. backward_errors: |b - A x| / (|A| |x| + |b|) in the infinity norm for each right-hand side;
 * may be null. Costs some ten solves. Returns 0 good, 1 to be looked at, 2 not to be trusted, -1 no such
 * factors, -2 no memory. The factors stay as they are.
 */
QEL_API int qel_pardiso_report(void* const* pt, int mnum, const void* a, const int* ia, const int* ja,
                               int nrhs, const void* b, const void* x, double* backward_errors,
                               qel_pardiso_quality* quality);

/* Tells progress of the calling thread's calls from now on: stage 1, 2, 3 as in phase, share 0 to 1 of it.
 * The function may be called from another thread, by one at a time; if it returns anything but 0 the call
 * ends with error -4, and the handle can be used and released as after any error. A null function ends it.
 */
typedef int (*qel_pardiso_progress)(void* context, int stage, double share);
QEL_API void qel_pardiso_set_progress(qel_pardiso_progress function, void* context);

/* Environment, read by each analysis:
 *   QEL_PARDISO_ORDERING=auto      the better of minimum degree and nested dissection by counted fill
 *   QEL_PARDISO_CHECK_PATTERN=1    later phases compare ia and ja with the analysis's: else error -1
 * and by the first call of a handle, for factors in files: QEL_PARDISO_OOC_PATH and others, which
 * docs/sparse_solver.md lists.
 */

#ifdef __cplusplus
}
#endif

#endif /* QEL_PARDISO_H */
