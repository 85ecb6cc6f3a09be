// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/fast_plan_rules.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "fft/kernels/fft_kernels.h"
#include "fft/spec/dft_spec.h"
#include "qel/dfti.h"

namespace qel::fft {
namespace {

constexpr core_int kLargestSmallPlan = 4096;

/// Bytes of work that no plan of such a line goes without; powers of two of portable levels need none.
core_int least_work(const line_facts& f) {
  if (f.native) {
    return f.single ? autosort_spec<float>::least_work_reals(f.length) * core_int{sizeof(float)}
                    : autosort_spec<double>::least_work_reals(f.length) * core_int{sizeof(double)};
  }
  return (f.length & (f.length - 1)) == 0 ? 0 : 16 * f.length;
}

template <class R>
int flag_for(R forward, R backward, core_int length) {
  const R by_n = 1 / static_cast<R>(length), by_root = 1 / std::sqrt(static_cast<R>(length));
  if (forward == 1 && backward == 1) return kUnscaled;
  if (forward == by_n && backward == 1) return kForwardByN;
  if (forward == 1 && backward == by_n) return kBackwardByN;
  if (forward == by_root && backward == by_root) return kBothByRoot;
  return 0;
}

}  // namespace

bool is_plain_line(const line_facts& f) {
  return f.transforms == 1 && f.complex_storage == DFTI_COMPLEX_COMPLEX && f.input_stride == 1 &&
         f.input_offset == 0 &&
         (f.placement == DFTI_INPLACE || (f.output_stride == 1 && f.output_offset == 0));
}

bool takes_straight_kernel(const line_facts& f) {
  if (!is_plain_line(f) || f.forward_scale != 1 || f.backward_scale != 1) return false;
  if (f.native) {
    return f.length <= kStraightLengths ||
           std::find(std::begin(kHeldLengths), std::end(kHeldLengths), f.length) != std::end(kHeldLengths);
  }
  return f.length >= 2 && f.length <= (f.single ? 64 : 128) && (f.length & (f.length - 1)) == 0;
}

int small_plan_flag(const line_facts& f) {
  if (!is_plain_line(f) || f.length > kLargestSmallPlan) return 0;
  if (f.length > kStraightLengths && least_work(f) >= kSmallPlanWorkspace) return 0;
  return f.single
             ? flag_for(static_cast<float>(f.forward_scale), static_cast<float>(f.backward_scale), f.length)
             : flag_for(f.forward_scale, f.backward_scale, f.length);
}

bool is_straight_small_plan(const line_facts& f) {
  return small_plan_flag(f) == kUnscaled && f.length >= 2 && f.length <= kStraightLengths;
}

}  // namespace qel::fft
