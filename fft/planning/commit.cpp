// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/commit.h"

#include "fft/planning/fast_plans.h"
#include "fft/planning/long_plan.h"
#include "fft/planning/node_plan.h"
#include "service/native_level.h"
#include "service/serv.h"

namespace qel::fft {
namespace {

long_facts long_facts_of(const dfti_node& first) {
  return {first.length,
          first.number_of_transforms,
          first.complex_storage,
          first.ordering,
          first.placement,
          first.input_stride,
          first.output_stride,
          first.threads,
          first.number_of_user_threads,
          serv_threads_dynamic() != 0,
          serv_cpu_level() >= kFirstNativeLevel,
          first.precision == DFTI_SINGLE};
}

/// A commit: a fast plan, else a long line on several threads, else the plans of the nodes.
template <class R, bool kComplexLine>
int commit(dfti_node* first) {
  first->commit_status = DFTI_UNCOMMITTED;
  first->compute_forward = nullptr;
  first->compute_backward = nullptr;
  if (kComplexLine && attach_fast_plan<R>(first) == DFTI_NO_ERROR) {
    release_plan(first);
    return DFTI_NO_ERROR;
  }
  release_fast_plan(first);
  first->threads = serv_threads_for_domain(2);
  release_long_plan(first);
  if (kComplexLine) {
    const long_choice choice = choose_long_tier(long_facts_of(*first));
    if (choice.tier != long_tier::kNone) {
      if (const int status = make_long_plan<R>(first, choice)) {
        release_plan(first);
        return status;
      }
    }
  }
  return plan_nodes<R>(first);
}

// By precision, domain and dimension.
int dfti_commit_d_c_1d(dfti_node* first) { return commit<double, true>(first); }
int dfti_commit_d_c_md(dfti_node* first) { return commit<double, false>(first); }
int dfti_commit_d_r_1d(dfti_node* first) { return commit<double, false>(first); }
int dfti_commit_d_r_md(dfti_node* first) { return commit<double, false>(first); }
int dfti_commit_s_c_1d(dfti_node* first) { return commit<float, true>(first); }
int dfti_commit_s_c_md(dfti_node* first) { return commit<float, false>(first); }
int dfti_commit_s_r_1d(dfti_node* first) { return commit<float, false>(first); }
int dfti_commit_s_r_md(dfti_node* first) { return commit<float, false>(first); }

constexpr commit_routine_type* kCommitRoutines[2][2][2] = {
    {{dfti_commit_d_c_1d, dfti_commit_d_c_md}, {dfti_commit_d_r_1d, dfti_commit_d_r_md}},
    {{dfti_commit_s_c_1d, dfti_commit_s_c_md}, {dfti_commit_s_r_1d, dfti_commit_s_r_md}},
};

}  // namespace

commit_routine_type* commit_routine_for(int precision, int domain, core_int dimension) {
  return kCommitRoutines[precision == DFTI_DOUBLE ? 0 : 1][domain == DFTI_COMPLEX ? 0 : 1]
                        [dimension == 1 ? 0 : 1];
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

void release_fast_plan(dfti_node* first) {
  if (first->fast_plan != nullptr) first->fast_plan->release(first->fast_plan, first);
  first->fast_plan = nullptr;
}

}  // namespace qel::fft
