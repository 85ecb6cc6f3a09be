// SPDX-License-Identifier: BSD-3-Clause
// The only include of a kernel file beside its body; see blas/kernels/kernel_prelude.h for the reason.
#pragma once

#include <immintrin.h>
#include <stdint.h>

#include "sparse/kernels/csr_kernels.h"
#include "sparse/kernels/row_runs.h"

#ifndef QEL_LEVEL
#error "kernel files are built by qel_add_level, which names the level"
#endif
