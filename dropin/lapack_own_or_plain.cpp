// SPDX-License-Identifier: BSD-3-Clause
// Routines of liblapack.so.3 that go their own way or the reference's.
#include <cstring>
#include <initializer_list>
#include <limits>

#include "blas/letters.h"
#include "blas/plain/scratch.h"
#include "lapack/factor/elements.h"
#include "lapack/factor/gbtrf.h"
#include "lapack/fitness.h"
#include "lapack/orthogonal/qr.h"
#include "lapack/spectral/rotations.h"
#include "lapack/spectral/slices.h"
#include "service/complex_arithmetic.h"
#include "service/serv.h"

#pragma GCC visibility push(default)
#define QEL_INT int
#define QEL_OWN(routine) routine##_
#define QEL_PLAIN(routine) qel_plain_##routine
#include "lapack/own_or_plain.inl.h"
#pragma GCC visibility pop
