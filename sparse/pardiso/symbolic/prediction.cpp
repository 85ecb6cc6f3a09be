// SPDX-License-Identifier: BSD-3-Clause
// Memory of the numeric phases, from what they allocate.
#include "sparse/pardiso/symbolic/structure.h"

namespace qel::pardiso {

namespace {

int megabytes(double bytes) { return static_cast<int>(bytes / (1024.0 * 1024.0)) + 1; }

}  // namespace

memory_prediction predict_memory(const structure& s, const structure_options& options, int scalar_bytes) {
  const double integer = sizeof(int), position = sizeof(int64_t), scalar = scalar_bytes;
  const double n = s.n, supernodes = s.supernodes, threads = options.threads;
  const double kept = integer * (static_cast<double>(s.lindx.size()) + 7 * n + 4 * supernodes) +
                      position * supernodes * (options.unsymmetric ? 3 : 2);
  const double factors = scalar * static_cast<double>(s.factor_elements) + 2 * integer * n;
  const double lists = options.threads > 1
                           ? 3 * integer * static_cast<double>(s.updates) + 4 * integer * supernodes
                           : 4 * integer * supernodes;
  const double scattered = 2 * integer * static_cast<double>(s.matrix_entries) + position * supernodes;
  const double scratch = threads * (scalar * static_cast<double>(s.work_elements) +
                                    integer * (n + static_cast<double>(s.longest_rows)));
  const double working = lists + scattered + scratch;
  // A thread fills one pair of panels and reads another.
  const double pairs =
      2 * threads * scalar * static_cast<double>(s.largest_panel) * (options.unsymmetric ? 2 : 1);
  const double places = 32 * supernodes;
  return {megabytes(kept + factors + working), megabytes(working), megabytes(factors),
          megabytes(kept + working + pairs + places)};
}

}  // namespace qel::pardiso
