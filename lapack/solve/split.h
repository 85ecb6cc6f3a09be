// SPDX-License-Identifier: BSD-3-Clause
// Solves whose right-hand sides are shared out to threads: the factor is only read, slices of columns of B do
// not depend on each other, and each goes through the plain routine.
#pragma once

#include "lapack/tuning/block_sizes.h"
#include "service/serv.h"

namespace qel::lapack {

struct split_facts {
  std::string_view routine;  ///< e.g. DGBTRS
  core_int n, nrhs;
  double work;  ///< operations for one right-hand side, roughly
  int threads;
  tuning_processor processor;
};
struct split_plan {
  int slices;
  const char* reason;
};
split_plan plan_split(const split_facts& facts);

/// Operations for one right-hand side, roughly: by the routine's name without its type, the order and, of a
/// band, the diagonals below and above the main one.
constexpr double split_work(std::string_view name, core_int order, core_int below, core_int above) {
  const auto n = static_cast<double>(order);
  if (name == "GTTRS") return 8 * n;
  if (name == "PTTRS") return 6 * n;
  if (name == "GBTRS") return 2 * n * static_cast<double>(2 * below + above);
  if (name == "PBTRS") return 4 * n * static_cast<double>(below);
  return name == "TPTRS" ? n * n : 2 * n * n;
}

/// First column of a slice; that of slice `slices` is nrhs.
constexpr core_int slice_begin(core_int nrhs, int slices, int slice) { return nrhs * slice / slices; }

/// Solves by plain(first column, columns, info). A call without columns tests the arguments for all slices.
template <class Int, class Plain>
void split_solve(std::string_view routine, Int n, Int nrhs, double work, Int* info, const Plain& plain) {
  const int threads = nrhs > 1 ? serv_threads_all() : 1;
  const int slices =
      threads < 2 ? 1 : plan_split({routine, n, nrhs, work, threads, this_tuning_processor()}).slices;
  if (slices < 2) return plain(Int{0}, nrhs, info);
  plain(Int{0}, Int{0}, info);
  if (*info != 0) return;
#pragma omp parallel for num_threads(slices) schedule(static, 1)
  for (int slice = 0; slice < slices; ++slice) {
    const core_int first = slice_begin(nrhs, slices, slice), end = slice_begin(nrhs, slices, slice + 1);
    Int good = 0;
    plain(static_cast<Int>(first), static_cast<Int>(end - first), &good);
  }
}

}  // namespace qel::lapack
