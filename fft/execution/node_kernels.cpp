// SPDX-License-Identifier: BSD-3-Clause
#include "fft/execution/node_kernels.h"

#include "fft/spec/moves.h"

namespace qel::fft {
namespace {

template <class R>
void scale_reals(R* data, core_int n, R factor) {
  for (core_int i = 0; i < n; ++i) set_element(data + i, element_at(data + i) * factor);
}

template <class R, direction kWay, spec_slot kSlot>
int run_pairs(const void* input, void* output, const dfti_node* node, void* work) {
  using C = complex_of<R>;
  const auto* spec = static_cast<const dft_spec<R>*>(node->specs[kSlot][kSpecPrecision<R>]);
  const int result = dft_spec_run<R>(static_cast<const C*>(input), static_cast<C*>(output), spec, work, kWay);
  if (result != 0) return spec_status(result);
  const R scale = scale_of<R>(*node, kWay);
  if (scale != 1) level_kernels<R>().scale(static_cast<C*>(output), node->length, scale);
  return DFTI_NO_ERROR;
}

template <class R, direction kWay>
int run_split(const void* input, void* output, const dfti_node* node, void* work) {
  const auto& in = *static_cast<const split_line<const R>*>(input);
  const auto& out = *static_cast<const split_line<R>*>(output);
  const auto* spec = static_cast<const dft_spec<R>*>(node->specs[kSplitSpec][kSpecPrecision<R>]);
  if (const int result = dft_spec_run_split<R>(in, out, spec, work, kWay)) return spec_status(result);
  const R scale = scale_of<R>(*node, kWay);
  if (scale != 1) {
    scale_reals(out.real, node->length, scale);
    scale_reals(out.imag, node->length, scale);
  }
  return DFTI_NO_ERROR;
}

template <class R, direction kWay, packing kFormat>
int run_real(const void* input, void* output, const dfti_node* node, void* work) {
  const auto* spec = static_cast<const real_spec<R>*>(node->specs[kRealSpec][kSpecPrecision<R>]);
  const auto* in = static_cast<const R*>(input);
  auto* out = static_cast<R*>(output);
  const core_int n = node->length;
  const R scale = scale_of<R>(*node, kWay);
  if constexpr (kWay == kForward) {
    if (const int result = real_forward(in, out, spec, kFormat, work)) return spec_status(result);
    // An even line's last real is a zero, and stays one.
    if (scale != 1) scale_reals(out, kFormat == packing::kCcs ? n + 1 : n, scale);
  } else {
    if (const int result = real_backward(in, out, spec, kFormat, work)) return spec_status(result);
    if (scale != 1) scale_reals(out, n, scale);
    // Kept: in place the element behind the line, once the spectrum's last real part, is cleared.
    if (input == output && node->packed_format == DFTI_CCS_FORMAT) set_element(out + n, R{0});
  }
  return DFTI_NO_ERROR;
}

template <class R, packing kFormat>
void set_real_kernels(dfti_node* node) {
  node->node_forward = run_real<R, kForward, kFormat>;
  node->node_backward = run_real<R, kBackward, kFormat>;
}

}  // namespace

bool has_complex_spectrum(const dfti_node& first) {
  return first.conjugate_even_storage == DFTI_COMPLEX_COMPLEX ||
         (first.packed_format == DFTI_CCS_FORMAT && first.dimension > 1);
}

bool packing_of(const dfti_node& first, packing* format) {
  if (first.conjugate_even_storage == DFTI_COMPLEX_COMPLEX || first.packed_format == DFTI_CCS_FORMAT) {
    *format = packing::kCcs;
  } else if (first.packed_format == DFTI_PACK_FORMAT) {
    *format = packing::kPack;
  } else if (first.packed_format == DFTI_PERM_FORMAT) {
    *format = packing::kPerm;
  } else {
    return false;
  }
  return true;
}

template <class R>
void pick_complex_kernels(dfti_node* node) {
  const bool split = node->complex_storage == DFTI_REAL_REAL;
  const bool scrambled = node->ordering == DFTI_BACKWARD_SCRAMBLED;
  node->node_forward = nullptr;
  node->node_backward = nullptr;
  if (split && scrambled) return;
  if (split) {
    node->node_forward = run_split<R, kForward>;
    node->node_backward = run_split<R, kBackward>;
  } else if (scrambled) {
    node->node_forward = run_pairs<R, kForward, kScrambledSpec>;
    node->node_backward = run_pairs<R, kBackward, kScrambledSpec>;
  } else {
    node->node_forward = run_pairs<R, kForward, kOrderedSpec>;
    node->node_backward = run_pairs<R, kBackward, kOrderedSpec>;
  }
}

template <class R>
void pick_real_kernels(dfti_node* node) {
  packing format = packing::kPerm;
  packing_of(*node, &format);
  // The rows of several dimensions are packed when the columns have been transformed.
  if (format == packing::kCcs || node->dimension > 1) {
    set_real_kernels<R, packing::kCcs>(node);
  } else if (format == packing::kPack) {
    set_real_kernels<R, packing::kPack>(node);
  } else {
    set_real_kernels<R, packing::kPerm>(node);
  }
}

int spec_status(int result) {
  if (result == 0) return DFTI_NO_ERROR;
  return result == kSpecNoMemory ? DFTI_MEMORY_ERROR : DFTI_INTERNAL_ERROR;
}

template void pick_complex_kernels<float>(dfti_node*);
template void pick_complex_kernels<double>(dfti_node*);
template void pick_real_kernels<float>(dfti_node*);
template void pick_real_kernels<double>(dfti_node*);

}  // namespace qel::fft
