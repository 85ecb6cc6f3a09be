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
  const auto one = [&](int j) { norms[j] = norm(m, a + static_cast<core_int>(j) * m); };
  if (threads < 2) {  // a region of one thread would still dismiss the others
    for (int j = 0; j < n; ++j) one(j);
    return;
  }
#pragma omp parallel for num_threads(threads) schedule(static)
  for (int j = 0; j < n; ++j) one(j);
}

}  // namespace qel::nls
