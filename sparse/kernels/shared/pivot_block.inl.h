// SPDX-License-Identifier: BSD-3-Clause
// Body of the step of complete pivoting. Multiplies and subtracts in two roundings on every level, because
// ties between pivots must not depend on it.
#include "sparse/kernels/pivot_kernels.h"

namespace qel::QEL_LEVEL {

namespace {

#ifdef __AVX__
template <class T>
struct lanes;
template <>
struct lanes<double> {
  using vector = __m256d;
  static constexpr int count = 4;
  static vector load(const double* p) { return _mm256_loadu_pd(p); }
  static void store(double* p, vector v) { _mm256_storeu_pd(p, v); }
  static vector all(double x) { return _mm256_set1_pd(x); }
  static vector minus_product(vector y, vector l, vector u) { return _mm256_sub_pd(y, _mm256_mul_pd(l, u)); }
  static vector larger(vector v, vector most) {
    return _mm256_max_pd(_mm256_andnot_pd(_mm256_set1_pd(-0.0), v), most);
  }
};
template <>
struct lanes<float> {
  using vector = __m256;
  static constexpr int count = 8;
  static vector load(const float* p) { return _mm256_loadu_ps(p); }
  static void store(float* p, vector v) { _mm256_storeu_ps(p, v); }
  static vector all(float x) { return _mm256_set1_ps(x); }
  static vector minus_product(vector y, vector l, vector u) { return _mm256_sub_ps(y, _mm256_mul_ps(l, u)); }
  static vector larger(vector v, vector most) {
    return _mm256_max_ps(_mm256_andnot_ps(_mm256_set1_ps(-0.0F), v), most);
  }
};
#else
template <class T>
struct lanes;
template <>
struct lanes<double> {
  using vector = __m128d;
  static constexpr int count = 2;
  static vector load(const double* p) { return _mm_loadu_pd(p); }
  static void store(double* p, vector v) { _mm_storeu_pd(p, v); }
  static vector all(double x) { return _mm_set1_pd(x); }
  static vector minus_product(vector y, vector l, vector u) { return _mm_sub_pd(y, _mm_mul_pd(l, u)); }
  static vector larger(vector v, vector most) {
    return _mm_max_pd(_mm_andnot_pd(_mm_set1_pd(-0.0), v), most);
  }
};
template <>
struct lanes<float> {
  using vector = __m128;
  static constexpr int count = 4;
  static vector load(const float* p) { return _mm_loadu_ps(p); }
  static void store(float* p, vector v) { _mm_storeu_ps(p, v); }
  static vector all(float x) { return _mm_set1_ps(x); }
  static vector minus_product(vector y, vector l, vector u) { return _mm_sub_ps(y, _mm_mul_ps(l, u)); }
  static vector larger(vector v, vector most) {
    return _mm_max_ps(_mm_andnot_ps(_mm_set1_ps(-0.0F), v), most);
  }
};
#endif

/// A NaN is never the largest: it fails every comparison.
template <class T>
void pivot_update(const pivot_step<T>& step) {
  using v = lanes<T>;
  for (core_int j = 0; j < step.n; ++j) {
    T* const y = step.y + j * step.ld;
    const T u = step.u[j * step.ld];
    const typename v::vector factor = v::all(u);
    typename v::vector most = v::all(-1), most_2 = most;
    core_int i = 0;
    for (; i + 2 * v::count <= step.m; i += 2 * v::count) {
      const auto first = v::minus_product(v::load(y + i), v::load(step.l + i), factor);
      const auto second = v::minus_product(v::load(y + i + v::count), v::load(step.l + i + v::count), factor);
      v::store(y + i, first);
      v::store(y + i + v::count, second);
      most = v::larger(first, most);
      most_2 = v::larger(second, most_2);
    }
    T found[2 * v::count], largest = -1;
    v::store(found, most);
    v::store(found + v::count, most_2);
    for (const T each : found) largest = each > largest ? each : largest;
    for (; i < step.m; ++i) {
      const T value = y[i] - step.l[i] * u;
      y[i] = value;
      const T size = value < 0 ? -value : value;
      largest = size > largest ? size : largest;
    }
    step.largest[j] = largest;
  }
}

}  // namespace

void pivot_update_s(const pivot_step<float>* step) { pivot_update(*step); }
void pivot_update_d(const pivot_step<double>* step) { pivot_update(*step); }

}  // namespace qel::QEL_LEVEL
