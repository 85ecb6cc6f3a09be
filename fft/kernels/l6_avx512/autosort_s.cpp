// SPDX-License-Identifier: BSD-3-Clause
#include "fft/kernels/shared/autosort_table.inl.h"

namespace qel::QEL_LEVEL {

constexpr autosort_kernels_s autosort_s = all_autosort<complex8, float>();

}  // namespace qel::QEL_LEVEL
