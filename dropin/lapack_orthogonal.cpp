// SPDX-License-Identifier: BSD-3-Clause
// QR factorisations of liblapack.so.3 and products with their Q.
#include "blas/letters.h"
#include "lapack/factor/elements.h"
#include "lapack/orthogonal/qr.h"
#include "service/complex_arithmetic.h"

#pragma GCC visibility push(default)
#define QEL_INT int
#define QEL_OWN(routine) routine##_
#define QEL_PLAIN(routine) qel_plain_##routine
#include "lapack/orthogonal/names.inl.h"
#pragma GCC visibility pop
