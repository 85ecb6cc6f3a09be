// SPDX-License-Identifier: BSD-3-Clause
// The only include of a kernel file beside its body: nothing from the standard library, so that a kernel
// object defines nothing that the linker could share with code of another processor type.
#pragma once

#include <immintrin.h>
#include <stdint.h>

#include "vector/kernels/vector_kernels.h"

#ifndef QEL_LEVEL
#error "kernel files are built by qel_add_level, which names the processor type"
#endif
