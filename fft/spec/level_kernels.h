// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "fft/kernels/fft_kernels.h"

namespace qel::fft {

/// The types of one precision.
template <class R>
struct precision_types;
template <>
struct precision_types<double> {
  using complex = complex16;
  using kernels = fft_kernels_d;
  using autosort = autosort_kernels_d;
};
template <>
struct precision_types<float> {
  using complex = complex8;
  using kernels = fft_kernels_s;
  using autosort = autosort_kernels_s;
};
template <class R>
using complex_of = typename precision_types<R>::complex;

enum direction : int { kForward, kBackward };

/// The kernels of this process.
template <class R>
const typename precision_types<R>::kernels& level_kernels();
/// The passes of native levels that sort as they go; null on other levels.
template <class R>
const typename precision_types<R>::autosort* native_passes();

}  // namespace qel::fft
