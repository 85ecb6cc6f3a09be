// SPDX-License-Identifier: BSD-3-Clause
#include "fft/kernels/shared/table.inl.h"

namespace qel::QEL_LEVEL {

constexpr fft_kernels_s fft_s = all_kernels<complex8, float>();

}  // namespace qel::QEL_LEVEL
