/* SPDX-License-Identifier: BSD-3-Clause
 * Convolution and correlation of one-dimensional sequences through a task: create it, execute it any number
 * of times, delete it. Plain C; scalars by value. The letter after vsl is the element type: s float, d
 * double, c and z complex.
 *
 *   convolution  w[t] = sum over i of x[i] y[t - i],  t = 0 .. nx + ny - 2
 *   correlation  w[t] = sum over i of x[i] y[i + t],  t = 1 - nx .. ny - 1; nothing is conjugated
 *   z[r] = w[start + r], r = 0 .. nz - 1; start is 0 for a convolution, 1 - nx for a correlation
 *
 * Strides are in elements; pointers are to the lowest address: with a stride s below 0 element i of n lies at
 * |s| (n - 1 - i). A stride of 0 repeats the first element of x or y.
 *
 * Every function returns a status: 0 or a code below. A task that has failed stays failed: each later call
 * but the deletion returns its status. A task is used by one thread at a time; execution runs on the calling
 * thread.
 */
#ifndef QEL_CONV_H
#define QEL_CONV_H

#include "qel/export.h"
#include "qel/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A task: operands' shapes, how to compute, what went wrong. */
typedef struct vsl_cc_task* VSLConvTaskPtr;
typedef struct vsl_cc_task* VSLCorrTaskPtr;

/* Modes. AUTO and FFT take transforms where the shorter sequence has 64 elements and the result 512, else
 * sums; DIRECT always takes sums, of the wanted elements only.
 */
enum {
  VSL_CONV_MODE_AUTO = 0,
  VSL_CONV_MODE_DIRECT = 1,
  VSL_CONV_MODE_FFT = 2,
  VSL_CORR_MODE_AUTO = 0,
  VSL_CORR_MODE_DIRECT = 1,
  VSL_CORR_MODE_FFT = 2
};
enum { VSL_CONV_PRECISION_SINGLE = 1, VSL_CONV_PRECISION_DOUBLE = 2 };

#ifndef VSL_STATUS_OK
#define VSL_STATUS_OK 0 /* all went well */
#endif
#ifndef VSL_ERROR_MEM_FAILURE
#define VSL_ERROR_MEM_FAILURE (-4) /* no memory to create */
#endif
#ifndef VSL_ERROR_NULL_PTR
#define VSL_ERROR_NULL_PTR (-5) /* a null task */
#endif
#define VSL_CC_ERROR_NOT_IMPLEMENTED (-2000)    /* double data in single precision */
#define VSL_CC_ERROR_ALLOCATION_FAILURE (-2001) /* no memory to execute */
#define VSL_CC_ERROR_EDIT_FAILURE (-2211)       /* an edit of an unknown parameter or a bad value */
#define VSL_CC_ERROR_EDIT_PROHIBITED (-2212)    /* an edit of a parameter that is fixed */
#define VSL_CC_ERROR_COMMIT_FAILURE (-2220)     /* the task can't be prepared */
#define VSL_CC_ERROR_DELETE_FAILURE (-2240)     /* the task's plan can't be released */
#define VSL_CC_ERROR_DIMS (-2301)               /* a rank out of range */
#define VSL_CC_ERROR_START (-2302)              /* a start out of range */
#define VSL_CC_ERROR_DECIMATION (-2303)         /* nz reaches past the end of w */
#define VSL_CC_ERROR_XSHAPE (-2311)             /* a shape below 1 */
#define VSL_CC_ERROR_YSHAPE (-2312)             /* the same of y */
#define VSL_CC_ERROR_ZSHAPE (-2313)             /* the same of z */
#define VSL_CC_ERROR_ZSTRIDE (-2323)            /* a stride of 0 */
#define VSL_CC_ERROR_X (-2331)                  /* null data */
#define VSL_CC_ERROR_Y (-2332)                  /* the same of y */
#define VSL_CC_ERROR_Z (-2333)                  /* the same of z */
#define VSL_CC_ERROR_KERNEL_FAILURE (-2800)     /* no memory for a transform */

/* Creates a task with a fixed x of xshape elements, which is not copied; y will have yshape, z zshape
 * elements. Shapes are tested by the execution. -5: task is null. -4: no memory.
 */
QEL_API int vslsConvNewTaskX1D(VSLConvTaskPtr* task, int mode, int xshape, int yshape, int zshape,
                               const float* x, int xstride);
QEL_API int vsldConvNewTaskX1D(VSLConvTaskPtr* task, int mode, int xshape, int yshape, int zshape,
                               const double* x, int xstride);
QEL_API int vslcConvNewTaskX1D(VSLConvTaskPtr* task, int mode, int xshape, int yshape, int zshape,
                               const _QEL_Complex8* x, int xstride);
QEL_API int vslzConvNewTaskX1D(VSLConvTaskPtr* task, int mode, int xshape, int yshape, int zshape,
                               const _QEL_Complex16* x, int xstride);
QEL_API int vslsCorrNewTaskX1D(VSLCorrTaskPtr* task, int mode, int xshape, int yshape, int zshape,
                               const float* x, int xstride);
QEL_API int vsldCorrNewTaskX1D(VSLCorrTaskPtr* task, int mode, int xshape, int yshape, int zshape,
                               const double* x, int xstride);
QEL_API int vslcCorrNewTaskX1D(VSLCorrTaskPtr* task, int mode, int xshape, int yshape, int zshape,
                               const _QEL_Complex8* x, int xstride);
QEL_API int vslzCorrNewTaskX1D(VSLCorrTaskPtr* task, int mode, int xshape, int yshape, int zshape,
                               const _QEL_Complex16* x, int xstride);
/* The same without x, which each execution brings. */
QEL_API int vsldCorrNewTask1D(VSLCorrTaskPtr* task, int mode, int xshape, int yshape, int zshape);

/* Computes z. */
QEL_API int vslsConvExecX1D(VSLConvTaskPtr task, const float* y, int ystride, float* z, int zstride);
QEL_API int vsldConvExecX1D(VSLConvTaskPtr task, const double* y, int ystride, double* z, int zstride);
QEL_API int vslcConvExecX1D(VSLConvTaskPtr task, const _QEL_Complex8* y, int ystride, _QEL_Complex8* z,
                            int zstride);
QEL_API int vslzConvExecX1D(VSLConvTaskPtr task, const _QEL_Complex16* y, int ystride, _QEL_Complex16* z,
                            int zstride);
QEL_API int vslsCorrExecX1D(VSLCorrTaskPtr task, const float* y, int ystride, float* z, int zstride);
QEL_API int vsldCorrExecX1D(VSLCorrTaskPtr task, const double* y, int ystride, double* z, int zstride);
QEL_API int vslcCorrExecX1D(VSLCorrTaskPtr task, const _QEL_Complex8* y, int ystride, _QEL_Complex8* z,
                            int zstride);
QEL_API int vslzCorrExecX1D(VSLCorrTaskPtr task, const _QEL_Complex16* y, int ystride, _QEL_Complex16* z,
                            int zstride);
QEL_API int vsldCorrExec1D(VSLCorrTaskPtr task, const double* x, int xstride, const double* y, int ystride,
                           double* z, int zstride);

/* Precision of the sums: 1 single, 2 double. Single for double data fails when executed, not here. */
QEL_API int vslConvSetInternalPrecision(VSLConvTaskPtr task, int precision);

/* Frees the task and sets *task to null. -5: task is null; a null *task gives 0. */
QEL_API int vslConvDeleteTask(VSLConvTaskPtr* task);
QEL_API int vslCorrDeleteTask(VSLCorrTaskPtr* task);

#ifdef __cplusplus
}
#endif

#endif /* QEL_CONV_H */
