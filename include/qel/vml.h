/* SPDX-License-Identifier: BSD-3-Clause
 * Vector math: element-wise division, multiplication and subtraction of contiguous arrays of double, with an
 * error state for each thread. Plain C.
 *
 *   n     elements; 0 returns at once and looks at no pointer
 *   a, b  operands;  r result, which may be a or b but must not overlap them otherwise
 * Bad arguments: xerbla (service.h) with the names "vdDiv", "vdMul", "vdSub" and position 1 for n < 0 (status
 * -1), 2, 3, 4 for a null a, b, r (status -2); r is untouched.
 */
#ifndef QEL_VML_H
#define QEL_VML_H

#include "qel/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Arithmetic ---- */

/* r[i] := a[i] / b[i], the IEEE quotient in every mode. A divisor that is exactly zero gives the IEEE result,
 * infinity or NaN, and raises status VML_STATUS_SING; nothing else raises a status, and the rest of the array
 * is computed. vddiv takes n by its address and reports as "vdDiv"; Fortran's name is vddiv_.
 */
QEL_API void vdDiv(int n, const double* a, const double* b, double* r);
QEL_API void vddiv(const int* n, const double* a, const double* b, double* r);

/* r[i] := a[i] * b[i]; raises no status. */
QEL_API void vdMul(int n, const double* a, const double* b, double* r);

/* r[i] := a[i] - b[i]; raises no status. */
QEL_API void vdSub(int n, const double* a, const double* b, double* r);

/* ---- The calling thread's state ---- */

/* Accuracy, the low four bits of the mode: all divide exactly, they differ in their thread rules. */
#define VML_LA 1
#define VML_HA 2
#define VML_EP 3
/* Reactions to a status, bits 8 to 15; a mode with VML_ERRMODE_IGNORE alone has none. */
#define VML_ERRMODE_IGNORE 0x100
#define VML_ERRMODE_ERRNO 0x200     /* sets errno */
#define VML_ERRMODE_PRINT 0x400     /* prints a line, and the operands, on standard output */
#define VML_ERRMODE_EXCEPT 0x800    /* raises the floating-point flag */
#define VML_ERRMODE_CALLBACK 0x1000 /* calls the callback, if there is one */

#define VML_STATUS_BADMEM (-2)  /* a null operand */
#define VML_STATUS_BADSIZE (-1) /* a count below 0 */
#define VML_STATUS_OK 0         /* all elements were well */
#define VML_STATUS_ERRDOM 1     /* an argument outside the domain */
#define VML_STATUS_SING 2       /* a singularity: a zero divisor */
#define VML_STATUS_OVERFLOW 3   /* a result too large */
#define VML_STATUS_UNDERFLOW 4  /* a result too small */

/* The mode, at first VML_HA with errno, exception and callback. Setting returns the former one: the low four
 * bits are replaced unless they are 0, bits 8 to 15 if any of them is set; bits 16 and 17, if either is set,
 * are replaced, and bits 8 to 15 then in any case.
 */
QEL_API unsigned qel_vml_get_mode(void);
QEL_API unsigned qel_vml_set_mode(unsigned mode);

/* The last status; calls that succeed leave it alone, but for a division on several threads, which sets it
 * to that of its own elements, 0 if all were well. Setting returns the former one.
 */
QEL_API int qel_vml_get_status(void);
QEL_API int qel_vml_set_status(int status);

/* What a callback gets to see. It may change r1, which then is the result. */
typedef struct qel_vml_event {
  int status;    /* VML_STATUS_ of this element */
  int index;     /* of the element in the whole array, from 0 */
  double a;      /* its first operand */
  double b;      /* its second operand */
  double r1;     /* its result */
  double r2;     /* the same again */
  char name[65]; /* the routine */
} qel_vml_event;

/* 0 goes on to the other reactions; anything else ends them, and changes of the event count for nothing. */
typedef int (*qel_vml_callback)(qel_vml_event* event);

/* Makes callback (null: none) that of the calling thread and returns the former one. A division on several
 * threads calls it from all of them, and leaves the thread without one.
 */
QEL_API qel_vml_callback qel_vml_set_callback(qel_vml_callback callback);

#ifdef __cplusplus
}
#endif

#endif /* QEL_VML_H */
