// SPDX-License-Identifier: BSD-3-Clause
// The full convolution of dense real sequences.
#pragma once

#include "service/core_types.h"

namespace qel::conv {

/// Results of conv_full below zero.
enum conv_result : int { kConvBadLength = -6, kConvNull = -8, kConvNoMemory = -9 };

/// w[t] = sum over i of a[i] * b[t - i], t = 0 .. na + nb - 2, by the method of plan_conv; w must not overlap
/// a and b. 0 or a conv_result. R is float or double.
template <class R>
int conv_full(const R* a, core_int na, const R* b, core_int nb, R* w);

/// w[t - first] = the same for t = first .. last - 1, always as sums.
template <class R>
void conv_range(const R* a, core_int na, const R* b, core_int nb, core_int first, core_int last, R* w);

}  // namespace qel::conv
