// SPDX-License-Identifier: BSD-3-Clause
// Fast plans: they hold a descriptor without building its nodes' plans.
#pragma once

#include "fft/descriptor/dfti_node.h"

namespace qel::fft {

struct dfti_fast_plan {
  /// 1 if the plan applies, else 0.
  double (*estimate)(const dfti_fast_plan* plan, const dfti_node* node);
  /// Builds what is needed and commits the descriptor; a status, or kPlanTooLarge.
  int (*attach)(const dfti_fast_plan* plan, dfti_node* node);
  void (*release)(const dfti_fast_plan* plan, dfti_node* node);
};

// Never reported to a caller.
inline constexpr int kNoFastPlan = 100;
inline constexpr int kPlanTooLarge = 101;

/// Offers a complex line to the plans in turn; 0 if one took it, else kNoFastPlan.
template <class R>
int attach_fast_plan(dfti_node* node);

}  // namespace qel::fft
