// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/kernels/sparse_prelude.h"
//
#include "sparse/kernels/shared/substitution.inl.h"
