// SPDX-License-Identifier: BSD-3-Clause
#include "fft/kernels/shared/autosort_table.inl.h"

namespace qel::QEL_LEVEL {

constexpr autosort_kernels_d autosort_d = all_autosort<complex16, double>();

}  // namespace qel::QEL_LEVEL
