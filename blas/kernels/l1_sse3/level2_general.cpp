// SPDX-License-Identifier: BSD-3-Clause
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/shared/level2_general.inl.h"
