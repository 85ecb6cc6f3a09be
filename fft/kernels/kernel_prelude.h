// SPDX-License-Identifier: BSD-3-Clause
// The only include of a kernel file beside its body: nothing from the standard library, so that a kernel
// object defines nothing that the linker could share with code of another level.
#pragma once

#include <immintrin.h>
#include <stdint.h>

#include "fft/kernels/fft_kernels.h"

#ifndef QEL_LEVEL
#error "kernel files are built by qel_add_level, which names the level"
#endif
