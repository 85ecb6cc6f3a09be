// SPDX-License-Identifier: BSD-3-Clause
// The kernel of one node: a line at unit stride through the node's plan, then the node's scale.
#pragma once

#include "fft/descriptor/dfti_node.h"
#include "fft/spec/dft_spec.h"
#include "fft/spec/real_spec.h"

namespace qel::fft {

template <class R>
inline constexpr int kSpecPrecision = sizeof(R) == sizeof(double) ? 1 : 0;

template <class R>
R scale_of(const dfti_node& node, direction way) {
  if constexpr (sizeof(R) == sizeof(double)) {
    return way == kForward ? node.forward_scale_f64 : node.backward_scale_f64;
  } else {
    return way == kForward ? node.forward_scale_f32 : node.backward_scale_f32;
  }
}
template <class R>
const dft_spec<R>* ordered_spec_of(const dfti_node& node) {
  return static_cast<const dft_spec<R>*>(node.specs[kOrderedSpec][kSpecPrecision<R>]);
}

/// From one transform's output to the next one's: in place the input's distance serves if none is set.
inline core_int output_distance_of(const dfti_node& first) {
  const bool shared = first.placement == DFTI_INPLACE && first.output_distance == 0;
  return shared ? first.input_distance : first.output_distance;
}

/// Whether the spectrum of a real descriptor lies as complex numbers (strides and distances count those):
/// by its storage, or because it has rows of complex numbers.
bool has_complex_spectrum(const dfti_node& first);
/// The packing of a real descriptor's lines; false: there is none for its storage and format.
bool packing_of(const dfti_node& first, packing* format);

/// Sets both node kernels of a complex node by storage and ordering; null ones for what has none.
template <class R>
void pick_complex_kernels(dfti_node* node);
/// The same for the real node of a real descriptor.
template <class R>
void pick_real_kernels(dfti_node* node);

/// The status of a spec_result.
int spec_status(int result);

}  // namespace qel::fft
