// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/tuning.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace qel::pardiso {

int choose_threads(int available, bool may_adjust, int n, int nrhs) {
  constexpr int kEquationsPerThread = 50;
  if (int64_t{n} >= int64_t{kEquationsPerThread} * available) return std::max(available, 1);
  const int threads = nrhs == 1 && may_adjust ? n / kEquationsPerThread : available;
  return std::max(threads, 1);
}

int panel_width(matrix_type type, int threads, int n, bool selected_vendor) {
  if (type.unsymmetric()) return threads <= 1 ? 128 : threads <= 4 ? 96 : 72;
  if (!selected_vendor) return threads <= 4 ? 80 : 64;
  if (threads <= 1) return 128;
  const bool large = n > 250000;
  if (threads <= 4) return large ? 112 : 80;
  return large ? 96 : 64;
}

int memory_factor(matrix_type type) {
  switch (std::abs(type.number)) {
    case 1:
    case 2:
    case 3:
    case 4:
      return 2;
    case 6:
    case 11:
    case 13:
      return 4;
    default:
      return 0;
  }
}

size_counts count_sizes(matrix_type type, int n, int64_t nnz) {
  const int64_t off_diagonal = type.symmetric() ? nnz - n : (nnz - n) / 2;
  return {off_diagonal, type.number > 10 ? n + 2 * nnz : 2 * off_diagonal};
}

iteration_limits choose_iteration_limits(int krylov, double factor_seconds, double solve_seconds,
                                         bool out_of_core) {
  constexpr int kMost = 100, kMostForced = 150, kLeastOutOfCore = 10;
  int limit = 0;
  if (krylov < 0) {
    limit = kMostForced;
  } else if (solve_seconds > 1e-10) {
    const double steps = std::trunc(3.0 * krylov * factor_seconds / solve_seconds * 0.45 + 1);
    limit = static_cast<int>(std::min<double>(steps, kMost));
    if (out_of_core) limit = std::max(limit, kLeastOutOfCore);
  }
  return {limit, static_cast<int>(limit * 0.5 + 1)};
}

}  // namespace qel::pardiso
