// SPDX-License-Identifier: BSD-3-Clause
#include "fft/execution/compute.h"

#include "fft/planning/commit.h"
#include "fft/spec/dft_spec.h"
#include "service/serv.h"
#include "service/spin_lock.h"

namespace qel::fft {
namespace {

constinit spin_lock slot_lock;  // guards user_thread_busy of all descriptors

template <class R, direction kWay>
int run_node(const void* input, void* output, const dfti_node* node, void* work) {
  using C = complex_of<R>;
  constexpr bool kDouble = sizeof(R) == sizeof(double);
  const auto* spec = static_cast<const dft_spec<R>*>(node->specs[kOrderedSpec][kDouble ? 1 : 0]);
  const int result = dft_spec_run<R>(static_cast<const C*>(input), static_cast<C*>(output), spec, work, kWay);
  if (result != 0) return spec_status(result);
  R scale;
  if constexpr (kDouble) {
    scale = kWay == kForward ? node->forward_scale_f64 : node->backward_scale_f64;
  } else {
    scale = kWay == kForward ? node->forward_scale_f32 : node->backward_scale_f32;
  }
  if (scale != 1) level_kernels<R>().scale(static_cast<C*>(output), node->length, scale);
  return DFTI_NO_ERROR;
}

template <class C>
void gather(const C* from, core_int stride, C* to, core_int n) {
  for (core_int i = 0; i < n; ++i) to[i] = from[i * stride];
}
template <class C>
void scatter(const C* from, C* to, core_int stride, core_int n) {
  for (core_int i = 0; i < n; ++i) to[i * stride] = from[i];
}

template <class C>
int run_line(const C* input, C* output, const dfti_node* node, node_kernel* kernel, void* work) {
  if (node->output_stride != 1) {
    auto* buffer = static_cast<C*>(serv_malloc(static_cast<size_t>(node->length) * sizeof(C), 256));
    if (buffer == nullptr) return DFTI_MEMORY_ERROR;
    gather(input, node->input_stride, buffer, node->length);
    const int status = kernel(buffer, buffer, node, work);
    if (status == DFTI_NO_ERROR) scatter(buffer, output, node->output_stride, node->length);
    serv_free(buffer);
    return status;
  }
  if (node->input_stride != 1) {
    gather(input, node->input_stride, output, node->length);
    return kernel(output, output, node, work);
  }
  return kernel(input, output, node, work);
}

/// All transforms of the call, one after the other.
template <class C>
int run_sequentially(const C* input, C* output, const dfti_node* node, node_kernel* kernel, void* work) {
  for (core_int i = 0; i < node->number_of_transforms; ++i) {
    const int status =
        run_line(input + i * node->input_distance, output + i * node->output_distance, node, kernel, work);
    if (status != DFTI_NO_ERROR) return status;
  }
  return DFTI_NO_ERROR;
}

/// The first free slot of the user's threads, taken; -1 if there is none.
int take_slot(dfti_node* node) {
  const spin_guard guard(slot_lock);
  for (int i = 0; i < node->number_of_user_threads; ++i) {
    if (node->user_thread_busy[i] != 0) continue;
    node->user_thread_busy[i] = 1;
    return i;
  }
  return -1;
}
void give_slot_back(dfti_node* node, int slot) {
  const spin_guard guard(slot_lock);
  node->user_thread_busy[slot] = 0;
}

template <class R, direction kWay, bool kInPlace>
int compute(dfti_node* node, void* first, void* second, void*, void*) {
  using C = complex_of<R>;
  auto* input = static_cast<C*>(first) + node->input_offset;
  auto* output = kInPlace ? input : static_cast<C*>(second) + node->output_offset;
  node_kernel* kernel = kWay == kForward ? node->node_forward : node->node_backward;
  if ((node->flags & kDirectFlag) != 0) return kernel(input, output, node, node->workspace);
  if (node->number_of_user_threads <= 1)
    return run_sequentially(input, output, node, kernel, node->workspace);
  const int slot = take_slot(node);
  if (slot < 0) return DFTI_NUMBER_OF_THREADS_ERROR;
  void* work = static_cast<char*>(node->workspace) + core_int{slot} * node->workspace_bytes;
  const int status = (node->flags & kUnitFlag) != 0 ? kernel(input, output, node, work)
                                                    : run_sequentially(input, output, node, kernel, work);
  give_slot_back(node, slot);
  return status;
}

}  // namespace

template <class R>
void install_line(dfti_node* node) {
  node->node_forward = run_node<R, kForward>;
  node->node_backward = run_node<R, kBackward>;
  const bool in_place = node->placement == DFTI_INPLACE;
  node->compute_forward = in_place ? compute<R, kForward, true> : compute<R, kForward, false>;
  node->compute_backward = in_place ? compute<R, kBackward, true> : compute<R, kBackward, false>;
}

template void install_line<float>(dfti_node*);
template void install_line<double>(dfti_node*);

}  // namespace qel::fft
