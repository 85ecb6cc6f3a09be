// SPDX-License-Identifier: BSD-3-Clause
#define QEL_INT qel::core_int
#define QEL_OWN(routine) qel_core_##routine##_
#define QEL_PLAIN(routine) qel_core_plain_##routine##_
#include "lapack/own_or_plain.inl.h"
