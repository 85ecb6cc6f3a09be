// SPDX-License-Identifier: BSD-3-Clause
// The number types of the numeric core. Every size, stride, leading dimension, pivot and info in the core
// is a core_int; complex numbers are the plain pairs of the public headers. Kernel files see this header,
// so it holds types only: an inline function here could be compiled with one level's instructions and be
// the copy that the linker keeps for everybody.
#pragma once

#include <stdint.h>

#include "qel/types.h"

namespace qel {

using core_int = int64_t;
using complex8 = _QEL_Complex8;
using complex16 = _QEL_Complex16;

}  // namespace qel
