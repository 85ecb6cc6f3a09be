/* SPDX-License-Identifier: BSD-3-Clause
 * Number types that the public entries share. Plain C; no other header is needed.
 */
#ifndef QEL_TYPES_H
#define QEL_TYPES_H

/* Double complex number: two doubles, real part first; the bytes of Fortran's COMPLEX*16. */
typedef struct _QEL_Complex16 {
  double real; /* real part */
  double imag; /* imaginary part */
} _QEL_Complex16;

/* Single complex number: two floats, real part first; the bytes of Fortran's COMPLEX. */
typedef struct _QEL_Complex8 {
  float real; /* real part */
  float imag; /* imaginary part */
} _QEL_Complex8;

#endif /* QEL_TYPES_H */
