// SPDX-License-Identifier: BSD-3-Clause
// The accumulation kernels of convolution by processor type.
#pragma once

#include "service/core_types.h"

namespace qel {

/// w[t - first] += sum over i of taps[i] * data[t - i] for t = first .. last - 1, over those of the tap_count
/// taps that meet one of the data_count data; i ascends. 0 <= first, last <= tap_count + data_count - 1.
template <class R>
using accumulate_kernel = void(const R* taps, core_int tap_count, const R* data, core_int data_count,
                               core_int first, core_int last, R* w);

/// w[t - first] = sum over i of taps[i] * data[t - i] for the same t, in an order of its own; w must not
/// overlap the others. E is any of the four element types; processor types that fuse have these only.
template <class E>
using sums_kernel = void(const E* taps, core_int tap_count, const E* data, core_int data_count,
                         core_int first, core_int last, E* w);

#define QEL_CONV_TYPE(type)               \
  namespace type {                        \
  accumulate_kernel<float> accumulate_s;  \
  accumulate_kernel<double> accumulate_d; \
  }
QEL_CONV_TYPE(t0_ex)
QEL_CONV_TYPE(t1_e7)
QEL_CONV_TYPE(t2_u8)
QEL_CONV_TYPE(t3_y8)
QEL_CONV_TYPE(t4_h8)
QEL_CONV_TYPE(t5_e9)
#undef QEL_CONV_TYPE

#define QEL_CONV_TYPE(type)      \
  namespace type {               \
  sums_kernel<float> sums_s;     \
  sums_kernel<double> sums_d;    \
  sums_kernel<complex8> sums_c;  \
  sums_kernel<complex16> sums_z; \
  }
QEL_CONV_TYPE(t6_n6)
QEL_CONV_TYPE(t7_n7)
#undef QEL_CONV_TYPE

}  // namespace qel
