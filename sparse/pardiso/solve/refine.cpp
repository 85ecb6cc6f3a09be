// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/solve/refine.h"

#include <cstdlib>

#include "sparse/pardiso/solve/trace.h"

namespace qel::pardiso {
namespace {

constexpr double kContraction = 0.9, kLargeError = 0.5;
constexpr int kStepsWithoutContraction = 4;
constexpr int kStepsUnasked = 2, kStoppedUnasked = -34;

bool large_error(const refinement_norms& norms) {
  return norms.correction != 0 && !(norms.correction / norms.solution <= kLargeError);
}

}  // namespace

refinement_verdict judge_refinement(int it, int iparm8, double previous, const refinement_norms& norms) {
  refinement_verdict verdict;
  verdict.previous = previous;
  if (it == kStepsUnasked && iparm8 == 0) {
    verdict.stop = true;
    verdict.iteration_code = kStoppedUnasked;
    return verdict;
  }
  const bool above_rhs = norms.residual > norms.rhs;
  if (it == 1 && above_rhs) {
    verdict.warn = true;
    verdict.previous = 2 * norms.residual;
  }
  const int limit = std::abs(iparm8);
  if (it == limit) {
    verdict.stop = true;
    verdict.keep_final = above_rhs;
    if (above_rhs) verdict.sub_code = -111;
  } else if (kContraction * verdict.previous > norms.residual) {
    verdict.previous = norms.residual;
  } else if (it >= kStepsWithoutContraction || it >= limit) {
    verdict.stop = true;
    if (large_error(norms)) verdict.sub_code = -112;
  }
  return verdict;
}

void trace_refinement(int it, const refinement_norms& norms) {
  if (norms.rhs == 0 || norms.solution == 0) {
    tell_trace({" ref_it:", 3, it, " sumdx,sumx", norms.correction, "", 2, norms.solution});
    tell_trace({" ref_it:", 3, it, " sumres,sumrhs", norms.residual, "", 2, norms.rhs});
  } else {
    tell_trace({" ref_it:", 3, it, " rel res", norms.residual / norms.rhs, " rel err", 2,
                norms.correction / norms.solution});
  }
}

void warn_of_refinement(int it, const refinement_norms& norms) {
  tell_trace({"*** warning ref_it:", 3, it, " sumres,sumrhs", norms.residual, "", 2, norms.rhs});
}

}  // namespace qel::pardiso
