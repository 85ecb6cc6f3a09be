/* SPDX-License-Identifier: BSD-3-Clause
 * A simpler way to the direct sparse solver (qel/pardiso.h): create a handle, define a structure, reorder,
 * factor, solve, delete. Plain C; scalars are passed by their addresses, integers are 32-bit.
 *
 *   void* h;
 *   int levels = QEL_DSS_TERM_LVL_FATAL, kind = QEL_DSS_SYMMETRIC, none = 0, nrhs = 1;
 *   dss_create(&h, &levels);
 *   dss_define_structure(&h, &kind, ia, &n, &n, ja, &nnz);   // keep ia and ja alive: their addresses stay
 *   dss_reorder(&h, &none, 0);
 *   dss_factor_real(&h, &none, a);                           // as a positive definite matrix
 *   dss_solve_real(&h, &none, b, &nrhs, x);
 *   dss_delete(&h, &none);
 *
 * An options word has fields and single bits; those below are added up. Each routine takes the two levels,
 * which stay with the handle until changed, and what is named for it; other bits are an error.
 *
 * Beware: without a termination level a status of severity Error ends the process, with the status as exit
 * code. Pass QEL_DSS_TERM_LVL_FATAL to dss_create to have statuses returned (-16 ends it all the same, and so
 * does a refused statistics key). From the message level on statuses are printed on standard output.
 *
 * Statuses (of several faults each is reported, the most severe and then the first is returned):
 *     0  success                              -9  wrong order of calls
 *    -1  zero pivot                          -10  unknown option bits
 *    -2  no memory                           -11  options that conflict
 *    -3  other failure of the solver         -12  bad message level
 *    -4  rows below 1                        -13  bad termination level
 *    -5  columns below 1                     -14  bad structure option
 *    -6  fewer non-zeros than rows           -15  bad reorder option
 *    -7  more than the matrix has places     -16  bad factor option
 *    -8  not square
 */
#ifndef QEL_DSS_H
#define QEL_DSS_H

#include "qel/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Levels, for all routines; default: ERROR for both. */
#define QEL_DSS_MSG_LVL_SUCCESS ((int)0x80000001)
#define QEL_DSS_MSG_LVL_DEBUG ((int)0x80000002)
#define QEL_DSS_MSG_LVL_INFO ((int)0x80000003)
#define QEL_DSS_MSG_LVL_WARNING ((int)0x80000004)
#define QEL_DSS_MSG_LVL_ERROR ((int)0x80000005)
#define QEL_DSS_MSG_LVL_FATAL ((int)0x80000006)
#define QEL_DSS_TERM_LVL_SUCCESS 0x40000008
#define QEL_DSS_TERM_LVL_DEBUG 0x40000010
#define QEL_DSS_TERM_LVL_INFO 0x40000018
#define QEL_DSS_TERM_LVL_WARNING 0x40000020
#define QEL_DSS_TERM_LVL_ERROR 0x40000028
#define QEL_DSS_TERM_LVL_FATAL 0x40000030

/* dss_create */
#define QEL_DSS_OOC_VARIABLE 0x400 /* factors in files if memory asks for it */
#define QEL_DSS_OOC_STRONG 0x800   /* factors in files */
#define QEL_DSS_SINGLE_PRECISION 0x10000
/* dss_define_structure; symmetric kinds give the upper triangle with its diagonal. Default: symmetric */
#define QEL_DSS_SYMMETRIC 0x20000040
#define QEL_DSS_SYMMETRIC_STRUCTURE 0x20000080
#define QEL_DSS_NON_SYMMETRIC 0x200000C0
#define QEL_DSS_SYMMETRIC_COMPLEX 0x20000100
#define QEL_DSS_SYMMETRIC_STRUCTURE_COMPLEX 0x20000140
#define QEL_DSS_NON_SYMMETRIC_COMPLEX 0x20000180
/* dss_reorder */
#define QEL_DSS_DEFAULT_ORDER 0x10000040
#define QEL_DSS_MY_ORDER 0x10000080 /* perm is given */
#define QEL_DSS_MINIMUM_DEGREE 0x100000C0
#define QEL_DSS_GET_ORDER 0x10000100 /* perm is returned */
#define QEL_DSS_METIS_ORDER 0x10000140
#define QEL_DSS_METIS_SUBGRAPHS_ORDER 0x10000180
/* dss_factor...; for symmetric structures. Default: positive definite */
#define QEL_DSS_POSITIVE_DEFINITE 0x08000040
#define QEL_DSS_INDEFINITE 0x08000080 /* complex data: symmetric, not Hermitian */
#define QEL_DSS_HERMITIAN_POSITIVE_DEFINITE 0x080000C0
#define QEL_DSS_HERMITIAN_INDEFINITE 0x08000100
/* dss_solve...; the first two are remembered by the handle */
#define QEL_DSS_REFINEMENT_OFF 0x1000
#define QEL_DSS_REFINEMENT_ON 0x2000 /* two steps, as at the start */
#define QEL_DSS_FORWARD_SOLVE 0x4000
#define QEL_DSS_DIAGONAL_SOLVE 0x8000
#define QEL_DSS_BACKWARD_SOLVE 0xC000

/* Makes a handle. */
QEL_API int dss_create(void** handle, const int* options);
/* The structure in compressed rows counted from 1, after creation or after a solve (a new system then). */
QEL_API int dss_define_structure(void** handle, const int* options, const int* rowIndex, const int* nRows,
                                 const int* nCols, const int* columns, const int* nNonZeros);
/* Orders and analyses. perm: for MY_ORDER and GET_ORDER, else null. */
QEL_API int dss_reorder(void** handle, const int* options, int* perm);
/* Factors values (double, or float for a single-precision handle; complex: pairs of them); may be called
 * again with new values. dss_factor: dataKind 1 real, 2 complex.
 */
QEL_API int dss_factor_real(void** handle, const int* options, const void* values);
QEL_API int dss_factor_complex(void** handle, const int* options, const void* values);
QEL_API int dss_factor(void** handle, const int* options, const void* values, const int* dataKind);
/* Solves for nrhs columns. */
QEL_API int dss_solve_real(void** handle, const int* options, const void* rhs, const int* nrhs,
                           void* solution);
QEL_API int dss_solve_complex(void** handle, const int* options, const void* rhs, const int* nrhs,
                              void* solution);
/* Gives everything back and sets *handle to null. */
QEL_API int dss_delete(void** handle, const int* options);
/* keys: names with commas between, in any case, blanks don't count. result gets, key after key:
 *   determinant   exponent, mantissa (complex: its real and imaginary part): mantissa * 10^exponent
 *   inertia       positive, negative, zero eigenvalues; symmetric indefinite matrices only
 *   flops         operations of the factorisation
 *   factortime, reordertime, solvetime    seconds of the last call
 *   peakmem, factormem, solvemem          KB: peak of the analysis, kept by it, factors and their work
 * A diagonal matrix has times only; other keys are told so on standard output and store nothing. Unknown
 * names and values that are not there yet end the process.
 */
QEL_API int dss_statistics(void** handle, const int* options, const char* keys, double* result);

#ifdef __cplusplus
}
#endif

#endif /* QEL_DSS_H */
