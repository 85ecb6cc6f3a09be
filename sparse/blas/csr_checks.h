// SPDX-License-Identifier: BSD-3-Clause
// Argument tests of the operations on CSR matrices: the 1-based position of the first bad argument in the
// public argument list, or 0. The sort option is not tested: what is none of 1, 2, 3 sorts nothing.
#pragma once

#include "service/core_types.h"

namespace qel::sparse {

int csrgemv_bad_argument(const char* transa, core_int m);
int csrmv_bad_argument(const char* transa, core_int m, core_int k, const char* matdescra);
int csradd_bad_argument(const char* transa, core_int request, core_int m, core_int n, core_int nzmax);
int csrmultcsr_bad_argument(const char* transa, core_int request, core_int m, core_int n, core_int k,
                            core_int nzmax);
int csrmultd_bad_argument(const char* transa, core_int m, core_int n, core_int k, core_int ldc);
int dnscsr_bad_argument(const int* job, core_int m, core_int n, core_int lda);

}  // namespace qel::sparse
