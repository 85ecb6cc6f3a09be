/* SPDX-License-Identifier: BSD-3-Clause
 * Nonlinear least squares: minimise |F(x)|^2 for F from n unknowns to m >= n residuals, with and without
 * bounds on x, and Jacobians by central differences. Plain C; every scalar is passed by its address, matrices
 * are column-major, all integers 32-bit.
 *
 * The solvers never call F: they return with a request, the caller answers it and calls again.
 *
 *   int request = 0;
 *   dtrnlsp_init(&run, &n, &m, x, eps, &iter1, &iter2, &rs);
 *   while (dtrnlsp_solve(&run, fvec, fjac, &request) == QEL_NLS_SUCCESS && request >= 0) {
 *     if (request == 1) F(x, fvec);    // m residuals at the present x
 *     if (request == 2) J(x, fjac);    // fjac[i + j * m] = dF_i / dx_j
 *   }
 *   dtrnlsp_get(&run, &iterations, &reason, &r1, &r2);
 *   dtrnlsp_delete(&run);
 *
 * x, eps and the bounds are kept by reference until the run is deleted. fvec and fjac keep what they hold
 * between calls. One thread at a time uses a run; dense work inside has threads of its own.
 *
 * Method: trust region with Levenberg-Marquardt acceptance (J. J. More, Lecture Notes in Mathematics 630,
 * 1978), trial steps by More and Sorensen's iteration (SIAM J. Sci. Stat. Comput. 4 (1983) 553); bounds by
 * scaling with the distance to them (T. F. Coleman, Y. Li, SIAM J. Optim. 6 (1996) 418).
 */
#ifndef QEL_NLS_H
#define QEL_NLS_H

#include "qel/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What the routines return. */
#define QEL_NLS_SUCCESS 1501
#define QEL_NLS_INVALID_OPTION \
  1502 /* a bad argument, a null handle, or (without bounds) a failed trial step */
#define QEL_NLS_OUT_OF_MEMORY 1503

/* ---- Without bounds ---- */

/* Makes a run.
 *   x      n start values; the solution in the end
 *   eps    six values above 0: [0] least trust radius, which is also the floor of the first one; [1] |F|;
 *          [2] norm of a column of J that counts as zero, and change of the linear model; [3] step norm;
 *          [4] must be above 0, has no effect; [5] the same
 *   iter1  most accepted steps;  iter2  most rounds of a trial step: above 0
 *   rs     first radius in units of the weighted norm of x, 0 to 100; 0 means 100
 * 1502: n, m, iter1 or iter2 below 1, m < n, an eps not above 0, rs outside its range. 1503: no memory;
 * nothing is left behind.
 */
QEL_API int dtrnlsp_init(void** handle, const int* n, const int* m, double* x, const double* eps,
                         const int* iter1, const int* iter2, const double* rs);
/* One step. RCI_Request: 0 at the start; comes back as
 *   0       call again
 *   1       fvec := F(x), call again;   2   fjac := J(x), m by n, call again
 *   -1..-6  the run has ended, with the stop code that dtrnlsp_get returns with the other sign
 * A caller that puts -1 or -2 there stops the run. Returns 1502 when no trial step could be formed (stop code
 * -4), because F or J is not finite; RCI_Request then stays as it was.
 */
QEL_API int dtrnlsp_solve(void** handle, double* fvec, double* fjac, int* RCI_Request);
/* iter accepted steps; st_cr stop code; r1, r2 |F| at the start and the end. Stop codes: 0 running; 1 iter1
 * steps; 2 radius below eps[0]; 3 |F| at or below eps[1]; 4 all columns of J below eps[2]; 5 step at or below
 * eps[3]; 6 change of the linear model at or below eps[2]; -1, -2 the caller; -4 no trial step (iter is then
 * 0).
 */
QEL_API int dtrnlsp_get(void** handle, int* iter, int* st_cr, double* r1, double* r2);
/* Frees the run and sets *handle to null. */
QEL_API int dtrnlsp_delete(void** handle);

/* ---- With bounds LW[i] <= x[i] <= UP[i] ---- */

/* As dtrnlsp_init. A bound of DBL_MAX (UP) or -DBL_MAX (LW) means none. F is never asked for outside the box:
 * x is moved into it first.
 */
QEL_API int dtrnlspbc_init(void** handle, const int* n, const int* m, double* x, const double* LW,
                           const double* UP, const double* eps, const int* iter1, const int* iter2,
                           const double* rs);
/* As dtrnlsp_solve, but a failed trial step returns 1501, too: only the stop code -4 tells it. */
QEL_API int dtrnlspbc_solve(void** handle, double* fvec, double* fjac, int* RCI_Request);
QEL_API int dtrnlspbc_get(void** handle, int* iter, int* st_cr, double* r1, double* r2);
QEL_API int dtrnlspbc_delete(void** handle);

/* ---- Of both ---- */

/* Departures from the classic rules, between init and the first solve; value 1 on, 0 off (the default). 1502:
 * no such option.
 */
#define QEL_NLS_MODERN 0           /* all of the following */
#define QEL_NLS_RADIUS_GROWS 1     /* the radius grows to twice the step where the ratio is 0.75 and more */
#define QEL_NLS_SCALED_NORM 2      /* bounds: ratio and radius measure the step in the scaled space */
#define QEL_NLS_UNIT_FREE_RADIUS 3 /* the first radius is rs |x|, without the units of F */
QEL_API int qel_dtrnlsp_option(void** handle, const int* option, const int* value);
/* Requests for F and for J so far. */
QEL_API int qel_dtrnlsp_evaluations(void** handle, int* residuals, int* jacobians);
/* A stop code in words. */
QEL_API const char* qel_nls_reason(const int* st_cr);

/* ---- Jacobians by central differences ----
 * An element x[j] with |x[j]| above eps moves by the factors 1 + eps and 1 - eps, a smaller one by eps
 * itself.
 */

/* Makes a run that fills fjac, m by n, at x; each element of x moves while its column is formed and is
 * restored. 1502: n or m below 1, eps not above 0.
 */
QEL_API int djacobi_init(void** handle, const int* n, const int* m, double* x, double* fjac,
                         const double* eps);
/* One step. RCI_Request: 0 at the start; 1: f1 := F(x), call again; 2: f2 := F(x), call again; 0: done. */
QEL_API int djacobi_solve(void** handle, double* f1, double* f2, int* RCI_Request);
QEL_API int djacobi_delete(void** handle);

/* F: m residuals f at the n values x. */
typedef void (*qel_residual_function)(int* m, int* n, double* x, double* f);
/* The whole of it by calls of fcn, from several threads at once: fcn must allow that. Mind the order of fjac
 * and x. 1502: n below 1, eps not above 0. 1503: no memory on one thread. Without memory for several threads
 * 1501 is returned, too, and fjac is not filled.
 */
QEL_API int djacobi(qel_residual_function fcn, const int* n, const int* m, double* fjac, double* x,
                    const double* eps);
/* The same on at most max_threads threads, 1 for functions that can't be called at once; here no memory is
 * always 1503.
 */
QEL_API int qel_djacobi(qel_residual_function fcn, const int* n, const int* m, double* fjac, double* x,
                        const double* eps, const int* max_threads);

#ifdef __cplusplus
}
#endif

#endif /* QEL_NLS_H */
