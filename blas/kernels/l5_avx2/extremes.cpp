// SPDX-License-Identifier: BSD-3-Clause
// The native search for extremes, and its forms for the slices of threads: they take n >= 1, incx >= 1 and
// give a negative index if they met a NaN.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/l5_avx2/wide.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R>
struct search_lanes;
template <>
struct search_lanes<double> : wide<double> {
  static reg loadu(const double* p) { return load(p); }
  static reg pair_sums(reg a, reg b) { return _mm256_hadd_pd(a, b); }
  static reg larger(reg a, reg b) { return _mm256_max_pd(a, b); }
  static reg smaller(reg a, reg b) { return _mm256_min_pd(a, b); }
  static reg above(reg a, reg b) { return _mm256_cmp_pd(a, b, _CMP_GT_OQ); }
  static reg equal(reg a, reg b) { return _mm256_cmp_pd(a, b, _CMP_EQ_OQ); }
  static reg unordered(reg a, reg b) { return _mm256_cmp_pd(a, b, _CMP_UNORD_Q); }
  static reg either(reg a, reg b) { return _mm256_or_pd(a, b); }
  static int lane_bits(reg mask) { return _mm256_movemask_pd(mask); }
  static double low_lane(reg v) { return _mm256_cvtsd_f64(v); }
  /// Halves or quarters exchanged.
  template <int kDistance>
  static reg exchanged_lanes(reg v) {
    return kDistance == 2 ? _mm256_permute2f128_pd(v, v, 1) : _mm256_permute_pd(v, 5);
  }
};
template <>
struct search_lanes<float> : wide<float> {
  static reg loadu(const float* p) { return load(p); }
  static reg pair_sums(reg a, reg b) { return _mm256_hadd_ps(a, b); }
  static reg larger(reg a, reg b) { return _mm256_max_ps(a, b); }
  static reg smaller(reg a, reg b) { return _mm256_min_ps(a, b); }
  static reg above(reg a, reg b) { return _mm256_cmp_ps(a, b, _CMP_GT_OQ); }
  static reg equal(reg a, reg b) { return _mm256_cmp_ps(a, b, _CMP_EQ_OQ); }
  static reg unordered(reg a, reg b) { return _mm256_cmp_ps(a, b, _CMP_UNORD_Q); }
  static reg either(reg a, reg b) { return _mm256_or_ps(a, b); }
  static int lane_bits(reg mask) { return _mm256_movemask_ps(mask); }
  static float low_lane(reg v) { return _mm256_cvtss_f32(v); }
  template <int kDistance>
  static reg exchanged_lanes(reg v) {
    if (kDistance == 4) return _mm256_permute2f128_ps(v, v, 1);
    return kDistance == 2 ? _mm256_permute_ps(v, _MM_SHUFFLE(1, 0, 3, 2))
                          : _mm256_permute_ps(v, _MM_SHUFFLE(2, 3, 0, 1));
  }
};

}  // namespace
}  // namespace qel::QEL_LEVEL

#include "blas/kernels/shared/extremes.inl.h"

namespace qel::QEL_LEVEL {

core_int isamax_slice(const core_int* n, const float* x, const core_int* incx) {
  return extreme_of_slice<largest>(*n, x, *incx);
}
core_int idamax_slice(const core_int* n, const double* x, const core_int* incx) {
  return extreme_of_slice<largest>(*n, x, *incx);
}
core_int icamax_slice(const core_int* n, const complex8* x, const core_int* incx) {
  return extreme_of_slice<largest>(*n, x, *incx);
}
core_int izamax_slice(const core_int* n, const complex16* x, const core_int* incx) {
  return extreme_of_slice<largest>(*n, x, *incx);
}
core_int isamin_slice(const core_int* n, const float* x, const core_int* incx) {
  return extreme_of_slice<smallest>(*n, x, *incx);
}
core_int idamin_slice(const core_int* n, const double* x, const core_int* incx) {
  return extreme_of_slice<smallest>(*n, x, *incx);
}
core_int icamin_slice(const core_int* n, const complex8* x, const core_int* incx) {
  return extreme_of_slice<smallest>(*n, x, *incx);
}
core_int izamin_slice(const core_int* n, const complex16* x, const core_int* incx) {
  return extreme_of_slice<smallest>(*n, x, *incx);
}

}  // namespace qel::QEL_LEVEL
