// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/fast_plans.h"

#include "fft/execution/node_kernels.h"
#include "fft/kernels/fft_kernels.h"
#include "fft/planning/commit.h"
#include "fft/planning/fast_plan_rules.h"
#include "fft/spec/dft_spec.h"

namespace qel::fft {
namespace {

template <class R>
line_facts facts_of(const dfti_node& node) {
  constexpr bool kSingle = sizeof(R) == sizeof(float);
  return {node.length,
          node.number_of_transforms,
          node.complex_storage,
          node.placement,
          node.input_stride,
          node.output_stride,
          node.input_offset,
          node.output_offset,
          kSingle ? static_cast<double>(node.forward_scale_f32) : node.forward_scale_f64,
          kSingle ? static_cast<double>(node.backward_scale_f32) : node.backward_scale_f64,
          kSingle,
          native_passes<R>() != nullptr};
}

void take(const dfti_fast_plan* plan, dfti_node* node, compute_routine* forward, compute_routine* backward) {
  node->fast_plan = plan;
  node->compute_forward = forward;
  node->compute_backward = backward;
  node->commit_status = DFTI_COMMITTED;
}

void release_other(const dfti_fast_plan* plan, dfti_node* node) {
  if (node->fast_plan != plan) release_fast_plan(node);
}

/// One kernel for the whole line, without scale.
template <class R>
struct straight_plan {
  using C = complex_of<R>;
  using kernel_type = void(const C*, C*, R);

  template <direction kWay, bool kInPlace>
  static int compute(dfti_node* node, void* first, void* second, void*, void*) {
    auto* const kernel = reinterpret_cast<kernel_type*>(node->straight[kWay]);
    kernel(static_cast<const C*>(first), static_cast<C*>(kInPlace ? first : second), R{1});
    return DFTI_NO_ERROR;
  }
  static kernel_type* kernel_of(core_int length, direction way) {
    if (auto* const held = register_kernel<R>(length, way)) return held;
    const auto& kernels = level_kernels<R>();
    return length == 32    ? kernels.of_32[way]
           : length == 64  ? kernels.of_64[way]
           : length == 128 ? kernels.of_128[way]
                           : kernels.unscaled[way][length];
  }
  static double estimate(const dfti_fast_plan*, const dfti_node* node) {
    return takes_straight_kernel(facts_of<R>(*node)) ? 1.0 : 0.0;
  }
  static int attach(const dfti_fast_plan* plan, dfti_node* node) {
    release_other(plan, node);
    take_kernel(plan, node);
    return DFTI_NO_ERROR;
  }
  static void take_kernel(const dfti_fast_plan* plan, dfti_node* node) {
    for (const direction way : {kForward, kBackward})
      node->straight[way] = reinterpret_cast<line_kernel*>(kernel_of(node->length, way));
    if (node->placement == DFTI_INPLACE) {
      take(plan, node, compute<kForward, true>, compute<kBackward, true>);
    } else {
      take(plan, node, compute<kForward, false>, compute<kBackward, false>);
    }
  }
  static void release(const dfti_fast_plan*, dfti_node*) {}
};

/// A plan small enough to find its work on the stack, the scales folded in.
template <class R>
struct small_plan {
  using C = complex_of<R>;
  template <direction kWay, bool kInPlace>
  static int compute(dfti_node* node, void* first, void* second, void*, void*) {
    alignas(64) char work[kSmallPlanWorkspace + 63];
    const auto* spec = static_cast<const dft_spec<R>*>(node->fast_plan_data);
    return spec_status(dft_spec_run<R>(static_cast<const C*>(first),
                                       static_cast<C*>(kInPlace ? first : second), spec, work, kWay));
  }
  static double estimate(const dfti_fast_plan*, const dfti_node* node) {
    return small_plan_flag(facts_of<R>(*node)) != 0 ? 1.0 : 0.0;
  }
  static int flag_of(const dft_spec<R>& spec) {
    if (spec.scaled[kForward] != 0) return spec.scaled[kBackward] != 0 ? kBothByRoot : kForwardByN;
    return spec.scaled[kBackward] != 0 ? kBackwardByN : kUnscaled;
  }
  static int attach(const dfti_fast_plan* plan, dfti_node* node) {
    release_other(plan, node);
    const int flag = small_plan_flag(facts_of<R>(*node));
    auto* held = static_cast<dft_spec<R>*>(node->fast_plan_data);
    if (held == nullptr || held->length != node->length || flag_of(*held) != flag) {
      dft_spec<R>* made = nullptr;
      if (const int result = dft_spec_create(&made, node->length, flag)) return spec_status(result);
      if (made->workspace_bytes >= kSmallPlanWorkspace) {
        dft_spec_free(made);
        return kPlanTooLarge;
      }
      dft_spec_free(held);
      node->fast_plan_data = made;
    }
    if (is_straight_small_plan(facts_of<R>(*node))) {
      straight_plan<R>::take_kernel(plan, node);
    } else if (node->placement == DFTI_INPLACE) {
      take(plan, node, compute<kForward, true>, compute<kBackward, true>);
    } else {
      take(plan, node, compute<kForward, false>, compute<kBackward, false>);
    }
    return DFTI_NO_ERROR;
  }
  static void release(const dfti_fast_plan*, dfti_node* node) {
    dft_spec_free(static_cast<dft_spec<R>*>(node->fast_plan_data));
    node->fast_plan_data = nullptr;
  }
};

template <class Plan>
constexpr dfti_fast_plan operations() {
  return {Plan::estimate, Plan::attach, Plan::release};
}
template <class R>
constexpr dfti_fast_plan kPlans[] = {operations<straight_plan<R>>(), operations<small_plan<R>>()};

}  // namespace

template <class R>
int attach_fast_plan(dfti_node* node) {
  for (const dfti_fast_plan& plan : kPlans<R>) {
    if (plan.estimate(&plan, node) != 0.0 && plan.attach(&plan, node) == DFTI_NO_ERROR) return DFTI_NO_ERROR;
  }
  return kNoFastPlan;
}

template int attach_fast_plan<float>(dfti_node*);
template int attach_fast_plan<double>(dfti_node*);

}  // namespace qel::fft
