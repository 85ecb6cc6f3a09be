// SPDX-License-Identifier: BSD-3-Clause
// The search for extremes of levels 0 to 4, on 16-byte registers.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/shared/lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R>
struct search_lanes;
template <>
struct search_lanes<double> : lanes<double> {
  static reg larger(reg a, reg b) { return _mm_max_pd(a, b); }
  static reg smaller(reg a, reg b) { return _mm_min_pd(a, b); }
  static reg above(reg a, reg b) { return _mm_cmpgt_pd(a, b); }
  static reg equal(reg a, reg b) { return _mm_cmpeq_pd(a, b); }
  static reg unordered(reg a, reg b) { return _mm_cmpunord_pd(a, b); }
  static reg either(reg a, reg b) { return _mm_or_pd(a, b); }
  static int lane_bits(reg mask) { return _mm_movemask_pd(mask); }
  static double low_lane(reg v) { return _mm_cvtsd_f64(v); }
  template <int kDistance>
  static reg exchanged_lanes(reg v) {
    return exchanged(v);
  }
};
template <>
struct search_lanes<float> : lanes<float> {
  static reg larger(reg a, reg b) { return _mm_max_ps(a, b); }
  static reg smaller(reg a, reg b) { return _mm_min_ps(a, b); }
  static reg above(reg a, reg b) { return _mm_cmpgt_ps(a, b); }
  static reg equal(reg a, reg b) { return _mm_cmpeq_ps(a, b); }
  static reg unordered(reg a, reg b) { return _mm_cmpunord_ps(a, b); }
  static reg either(reg a, reg b) { return _mm_or_ps(a, b); }
  static int lane_bits(reg mask) { return _mm_movemask_ps(mask); }
  static float low_lane(reg v) { return _mm_cvtss_f32(v); }
  template <int kDistance>
  static reg exchanged_lanes(reg v) {
    return kDistance == 2 ? _mm_movelh_ps(_mm_movehl_ps(v, v), v) : exchanged(v);
  }
};

}  // namespace
}  // namespace qel::QEL_LEVEL

#include "blas/kernels/shared/extremes.inl.h"
