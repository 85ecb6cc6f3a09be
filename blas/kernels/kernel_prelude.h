// SPDX-License-Identifier: BSD-3-Clause
// The only include of a kernel file beside its body. No standard library, no templates at namespace scope:
// a kernel object must not define anything that the linker could share with code of another level.
#pragma once

#include <immintrin.h>
#include <stdint.h>

#include "blas/kernels/kernel_names.h"

#ifndef QEL_LEVEL
#error "kernel files are built by qel_add_level, which names the level"
#endif
