// SPDX-License-Identifier: BSD-3-Clause
#include "nls/dense.h"
#include "nls/trust_region.h"

namespace qel::nls {
namespace {

// A fork and a join cost as much as some ten thousand elements.
constexpr core_int kElementsForThreads = 20000;

}  // namespace

int threads_for_norms(int m, int n, int threads) {
  return core_int{m} * n < kElementsForThreads ? 1 : threads;
}

void column_norms(int m, int n, const double* a, double* norms, int threads) {
#pragma omp parallel for num_threads(threads) schedule(static) if (threads > 1)
  for (int j = 0; j < n; ++j) norms[j] = norm(m, a + static_cast<core_int>(j) * m);
}

}  // namespace qel::nls
