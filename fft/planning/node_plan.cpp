// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/node_plan.h"

#include <algorithm>

#include "fft/execution/compute.h"
#include "fft/execution/node_kernels.h"
#include "fft/execution/real_driver.h"
#include "fft/planning/box_rules.h"
#include "fft/planning/long_plan.h"
#include "service/native_level.h"
#include "service/serv.h"

namespace qel::fft {
namespace {

/// What the work at compute time must have besides the plan's own: the rounding of its address.
constexpr int kWorkspaceExtra = 64;

bool is_unit_line(const dfti_node& first) {
  return first.dimension == 1 && first.number_of_transforms == 1 && first.input_stride == 1 &&
         first.output_stride == 1 && first.threaded_backward == nullptr;
}

int settle_flags(dfti_node* first) {
  const bool many_users = first->number_of_user_threads > 1;
  const bool unit = is_unit_line(*first);
  first->flags = static_cast<uint8_t>((unit ? kUnitFlag : 0) | (unit && !many_users ? kDirectFlag : 0));
  if (many_users) {
    first->threads = 1;
  } else if (first->dimension == 1 && first->number_of_transforms <= 1) {
    const bool forward = first->threaded_forward != nullptr, backward = first->threaded_backward != nullptr;
    if (forward != backward) return DFTI_INTERNAL_ERROR;
    if (!forward) first->threads = 1;
  } else if (serv_cpu_level() >= kFirstNativeLevel) {
    first->threads = native_threads(first->element_count, first->number_of_transforms,
                                    first->forward_domain == DFTI_REAL, first->threads);
  }
  return DFTI_NO_ERROR;
}

spec_slot slot_of(const dfti_node& node) {
  if (node.complex_storage == DFTI_REAL_REAL) return kSplitSpec;
  return node.ordering == DFTI_BACKWARD_SCRAMBLED ? kScrambledSpec : kOrderedSpec;
}
line_form form_of(spec_slot slot) {
  return slot == kSplitSpec       ? line_form::kSplit
         : slot == kScrambledSpec ? line_form::kScrambled
                                  : line_form::kOrdered;
}

template <class R>
int plan_complex_node(dfti_node* node, spec_slot slot, line_use use) {
  dft_spec<R>* spec = nullptr;
  if (const int result = dft_spec_create(&spec, node->length, kUnscaled, form_of(slot), use))
    return spec_status(result);
  node->specs[slot][kSpecPrecision<R>] = spec;
  node->node_workspace = spec->workspace_bytes;
  return DFTI_NO_ERROR;
}
template <class R>
int plan_real_node(dfti_node* node) {
  real_spec<R>* spec = nullptr;
  if (const int result = dft_real_spec_create(&spec, node->length, kUnscaled)) return spec_status(result);
  node->specs[kRealSpec][kSpecPrecision<R>] = spec;
  node->node_workspace = spec->workspace_bytes;
  return DFTI_NO_ERROR;
}

void copy_configuration(const dfti_node& first, dfti_node* node) {
  node->complex_storage = first.complex_storage;
  node->ordering = first.ordering;
  node->packed_format = first.packed_format;
  node->conjugate_even_storage = first.conjugate_even_storage;
  node->placement = first.placement;
  node->precision = first.precision;
  node->forward_domain = first.forward_domain;
  node->threads = first.threads;
  node->threaded_forward = nullptr;
  node->threaded_backward = nullptr;
}

/// The node's kernels and its plan.
template <class R>
int plan_node(const dfti_node& first, dfti_node* node) {
  if (node != &first) copy_configuration(first, node);
  if (first.forward_domain == DFTI_COMPLEX) {
    pick_complex_kernels<R>(node);
    const bool single = first.dimension == 1 && first.number_of_transforms == 1;
    return plan_complex_node<R>(node, slot_of(*node), single ? line_use::kOneByOne : line_use::kAny);
  }
  if (node != &first) {
    // The columns of a spectrum are ordinary complex lines, whatever the storage set for complex data.
    node->complex_storage = DFTI_COMPLEX_COMPLEX;
    node->ordering = DFTI_ORDERED;
    pick_complex_kernels<R>(node);
    node->complex_storage = first.complex_storage;
    return plan_complex_node<R>(node, kOrderedSpec, line_use::kAny);
  }
  packing format;
  if (!packing_of(first, &format)) return DFTI_UNIMPLEMENTED;
  if (!rows_coincide(first)) return DFTI_INCONSISTENT_CONFIGURATION;
  pick_real_kernels<R>(node);
  return plan_real_node<R>(node);
}

bool allocate_workspace(dfti_node* first) {
  const bool many = first->number_of_user_threads > 1;
  const auto slices = static_cast<size_t>(many ? first->number_of_user_threads : first->threads);
  first->workspace_bytes += kWorkspaceExtra;
  first->workspace = serv_malloc(static_cast<size_t>(first->workspace_bytes) * slices, 16);
  if (first->workspace == nullptr) return false;
  if (!many) return true;
  first->user_thread_busy = static_cast<int*>(serv_malloc(slices * sizeof(int), 16));
  if (first->user_thread_busy == nullptr) return false;
  std::fill_n(first->user_thread_busy, slices, 0);
  return true;
}

void release_nodes(dfti_node* first) {
  for (dfti_node* node = first; node != nullptr; node = node->next_node) {
    for (auto& slot : {kOrderedSpec, kSplitSpec, kScrambledSpec}) {
      dft_spec_free(static_cast<dft_spec<float>*>(node->specs[slot][0]));
      dft_spec_free(static_cast<dft_spec<double>*>(node->specs[slot][1]));
      node->specs[slot][0] = node->specs[slot][1] = nullptr;
    }
    auto& real = node->specs[kRealSpec];
    dft_real_spec_free(static_cast<real_spec<float>*>(real[0]));
    dft_real_spec_free(static_cast<real_spec<double>*>(real[1]));
    real[0] = real[1] = nullptr;
    serv_free(node->workspace);
    node->workspace = nullptr;
    serv_free(node->user_thread_busy);
    node->user_thread_busy = nullptr;
    node->workspace_bytes = node->node_workspace = 0;
  }
}

template <class R>
int plan_all(dfti_node* first) {
  if (const int status = settle_flags(first)) return status;
  if (first->threaded_forward != nullptr && first->threads != 1) {
    first->workspace_bytes = long_workspace<R>(*first);
  } else {
    for (dfti_node* node = first; node != nullptr; node = node->next_node) {
      if (const int status = plan_node<R>(*first, node)) return status;
      first->workspace_bytes = std::max(first->workspace_bytes, node->node_workspace);
      node->commit_status = DFTI_COMMITTED;
    }
  }
  if (!allocate_workspace(first)) return DFTI_MEMORY_ERROR;
  install_compute_entries<R>(first);
  first->commit_status = DFTI_COMMITTED;
  return DFTI_NO_ERROR;
}

}  // namespace

template <class R>
int plan_nodes(dfti_node* first) {
  first->commit_status = DFTI_UNCOMMITTED;
  first->compute_forward = nullptr;
  first->compute_backward = nullptr;
  release_nodes(first);
  const int status = plan_all<R>(first);
  if (status != DFTI_NO_ERROR) {
    first->commit_status = DFTI_UNCOMMITTED;
    release_plan(first);
  }
  return status;
}

void release_plan(dfti_node* first) {
  release_nodes(first);
  release_long_plan(first);
}

template int plan_nodes<float>(dfti_node*);
template int plan_nodes<double>(dfti_node*);

}  // namespace qel::fft
