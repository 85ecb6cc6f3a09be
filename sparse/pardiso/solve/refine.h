// SPDX-License-Identifier: BSD-3-Clause
// Iterative refinement.
#pragma once

#include <stdint.h>

#include "sparse/pardiso/matrix.h"

namespace qel::pardiso {

/// Whether a solve is refined: on request, or because pivots were perturbed.
constexpr bool wants_refinement(int iparm8, int perturbed) { return iparm8 != 0 || perturbed > 0; }

/// Norms of one step: sums of absolute values over all right-hand sides.
struct refinement_norms {
  double rhs, residual, correction, solution;
};
struct refinement_verdict {
  bool stop = false;
  bool warn = false;        ///< the first residual is above the right-hand side
  bool keep_final = false;  ///< the residual ended above the right-hand side
  int iteration_code = 0;   ///< for iparm(20); 0: as it is
  int sub_code = 0;         ///< of error -4: -111, -112
  double previous = 0;      ///< residual that the next step is compared with
};
/// After step it, with iparm8 as the caller's limit and sign; previous: as the last verdict gave it, the norm
/// of the right-hand side at first.
refinement_verdict judge_refinement(int it, int iparm8, double previous, const refinement_norms& norms);

/// Prints a step.
void trace_refinement(int it, const refinement_norms& norms);
void warn_of_refinement(int it, const refinement_norms& norms);

}  // namespace qel::pardiso
