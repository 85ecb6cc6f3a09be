// SPDX-License-Identifier: BSD-3-Clause
// The solves of liblapack.so.3 whose right-hand sides are shared out to threads.
#include "lapack/solve/split.h"

#pragma GCC visibility push(default)
#define QEL_INT int
#define QEL_OWN(routine) routine##_
#define QEL_PLAIN(routine) qel_plain_##routine
#include "lapack/solve/split_names.inl.h"
#pragma GCC visibility pop
