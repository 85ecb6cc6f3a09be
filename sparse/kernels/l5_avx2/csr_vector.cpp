// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/kernels/sparse_prelude.h"
//
#define QEL_CSR_FUSED
#include "sparse/kernels/shared/csr_vector.inl.h"
