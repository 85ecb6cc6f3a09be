// SPDX-License-Identifier: BSD-3-Clause
// Euclidean norms for all levels: one number at a time in the order of memory, with a running scale so that
// no square over- or underflows (C. L. Lawson et al., ACM TOMS 5 (1979) 308). No vector code on purpose:
// safety over speed. The sign of the stride plays no part. Two infinities give NaN.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/shared/lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

inline float root(float v) { return _mm_cvtss_f32(_mm_sqrt_ss(_mm_set_ss(v))); }
inline double root(double v) {
  const __m128d wide = _mm_set_sd(v);
  return _mm_cvtsd_f64(_mm_sqrt_sd(wide, wide));
}

/// The norm is scale * sqrt(ssq).
template <class R>
struct scaled_squares {
  R scale = 0, ssq = 1;
  void take(R v) {
    if (v == 0) return;
    const R a = magnitude(v);
    if (a > scale) {
      ssq = 1 + ssq * ((scale / a) * (scale / a));
      scale = a;
    } else {  // a NaN comes here and stays
      ssq = ssq + (a / scale) * (a / scale);
    }
  }
};

template <class R, class T>
inline R nrm2(core_int n, const T* x, core_int inc) {
  if (n <= 0) return 0;
  if (parts<T>::kCount == 1 && n == 1) return magnitude(element_at(reinterpret_cast<const R*>(x)));
  if (inc < 0) inc = -inc;
  scaled_squares<R> sum;
  for (core_int i = 0; i < n; ++i, x += inc) {
    const R* part = reinterpret_cast<const R*>(x);
    sum.take(element_at(part));
    if (parts<T>::kCount == 2) sum.take(element_at(part + 1));
  }
  return sum.scale * root(sum.ssq);
}

}  // namespace
}  // namespace qel::QEL_LEVEL

#include "blas/kernels/shared/nrm2_exports.inl.h"
