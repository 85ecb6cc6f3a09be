// SPDX-License-Identifier: BSD-3-Clause
#include "fft/kernels/shared/table.inl.h"

namespace qel::QEL_LEVEL {

constexpr fft_kernels_d fft_d = all_kernels<complex16, double>();

}  // namespace qel::QEL_LEVEL
