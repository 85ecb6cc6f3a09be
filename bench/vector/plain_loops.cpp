// SPDX-License-Identifier: BSD-3-Clause
#include "bench/vector/plain_loops.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <random>

namespace qel::bench {

void plain_div(int n, const double* a, const double* b, double* r) {
  for (int i = 0; i < n; ++i) r[i] = a[i] / b[i];
}
void plain_mul(int n, const double* a, const double* b, double* r) {
  for (int i = 0; i < n; ++i) r[i] = a[i] * b[i];
}
void plain_sub(int n, const double* a, const double* b, double* r) {
  for (int i = 0; i < n; ++i) r[i] = a[i] - b[i];
}
void plain_copy(int n, const double* a, const double*, double* r) {
  std::memcpy(r, a, static_cast<std::size_t>(n) * sizeof(double));
}

void standard_uniform(int n, double* r) {
  static std::mt19937_64 engine(1);
  std::uniform_real_distribution<double> uniform(0, 1);
  for (int i = 0; i < n; ++i) r[i] = uniform(engine);
}
void constant_fill(int n, double* r) { std::fill(r, r + n, 0.5); }
void constant_fill_past_caches(int n, double* r) {
  for (int i = 0; i < n; ++i)
    _mm_stream_si64(reinterpret_cast<long long*>(r + i), std::bit_cast<long long>(0.5));
  _mm_sfence();
}

}  // namespace qel::bench
