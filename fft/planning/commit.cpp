// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/commit.h"

#include "fft/execution/compute.h"
#include "fft/planning/fast_plans.h"
#include "fft/spec/dft_spec.h"
#include "service/serv.h"

namespace qel::fft {
namespace {

template <class R>
constexpr int kSpecPrecision = sizeof(R) == sizeof(double) ? 1 : 0;

/// What the work at compute time must have besides the plan's own: the rounding of its address.
constexpr int kWorkspaceExtra = 64;

struct line_flags {
  bool unit;
  bool direct;
};
line_flags flags_of(const dfti_node& node) {
  const bool unit = node.number_of_transforms == 1 && node.input_stride == 1 && node.output_stride == 1 &&
                    node.threaded_backward == nullptr;
  return {unit, unit && node.number_of_user_threads <= 1};
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
  for (size_t i = 0; i < slices; ++i) first->user_thread_busy[i] = 0;
  return true;
}

/// The general plan of one complex line, or of several.
template <class R>
int plan_line_of(dfti_node* first) {
  release_plan(first);
  // No plan here runs on several threads, whatever the count of the domain.
  first->threads = 1;
  const line_flags flags = flags_of(*first);
  first->flags = static_cast<uint8_t>((flags.unit ? kUnitFlag : 0) | (flags.direct ? kDirectFlag : 0));
  if (first->complex_storage != DFTI_COMPLEX_COMPLEX || first->ordering != DFTI_ORDERED)
    return DFTI_UNIMPLEMENTED;
  dft_spec<R>* spec = nullptr;
  if (const int result = dft_spec_create(&spec, first->length, kUnscaled)) return spec_status(result);
  first->specs[kOrderedSpec][kSpecPrecision<R>] = spec;
  first->node_workspace = spec->workspace_bytes;
  first->workspace_bytes = spec->workspace_bytes;
  if (!allocate_workspace(first)) return DFTI_MEMORY_ERROR;
  install_line<R>(first);
  first->commit_status = DFTI_COMMITTED;
  return DFTI_NO_ERROR;
}

/// dfti_commit_d_c_1d and dfti_commit_s_c_1d.
template <class R>
int commit_complex_line(dfti_node* first) {
  first->commit_status = DFTI_UNCOMMITTED;
  first->compute_forward = nullptr;
  first->compute_backward = nullptr;
  if (attach_fast_plan<R>(first) == DFTI_NO_ERROR) {
    release_plan(first);
    return DFTI_NO_ERROR;
  }
  release_fast_plan(first);
  const int status = plan_line_of<R>(first);
  if (status != DFTI_NO_ERROR) release_plan(first);
  return status;
}

}  // namespace

commit_routine_type* commit_routine_for(int precision, int domain, core_int dimension) {
  if (domain != DFTI_COMPLEX || dimension != 1) return nullptr;
  return precision == DFTI_DOUBLE ? commit_complex_line<double> : commit_complex_line<float>;
}

int count_compute_pointers(int placement, int domain, int complex_storage) {
  const int sides = placement == DFTI_INPLACE ? 1 : 2;
  return domain == DFTI_COMPLEX && complex_storage == DFTI_REAL_REAL ? 2 * sides : sides;
}

int commit_descriptor(dfti_node* first) {
  if (first == nullptr) return DFTI_BAD_DESCRIPTOR;
  if (first->commit_routine == nullptr) {
    return first->magic == kMagic ? DFTI_INTERNAL_ERROR : DFTI_BAD_DESCRIPTOR;
  }
  const int status = first->commit_routine(first);
  if (status == DFTI_NO_ERROR) {
    first->compute_pointers =
        count_compute_pointers(first->placement, first->forward_domain, first->complex_storage);
  }
  return status;
}

int spec_status(int result) {
  if (result == 0) return DFTI_NO_ERROR;
  return result == kSpecNoMemory ? DFTI_MEMORY_ERROR : DFTI_INTERNAL_ERROR;
}

void release_plan(dfti_node* first) {
  for (dfti_node* node = first; node != nullptr; node = node->next_node) {
    auto& ordered = node->specs[kOrderedSpec];
    dft_spec_free(static_cast<dft_spec<float>*>(ordered[0]));
    dft_spec_free(static_cast<dft_spec<double>*>(ordered[1]));
    ordered[0] = ordered[1] = nullptr;
    serv_free(node->workspace);
    node->workspace = nullptr;
    serv_free(node->user_thread_busy);
    node->user_thread_busy = nullptr;
    node->workspace_bytes = node->node_workspace = 0;
  }
}

void release_fast_plan(dfti_node* first) {
  if (first->fast_plan != nullptr) first->fast_plan->release(first->fast_plan, first);
  first->fast_plan = nullptr;
}

}  // namespace qel::fft
