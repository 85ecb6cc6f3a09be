// SPDX-License-Identifier: BSD-3-Clause
// Central differences: |x| above eps moves by the factors 1 + eps and 1 - eps, a smaller one by eps itself.
#pragma once

#include "service/core_types.h"

namespace qel::nls {

/// The record of a Jacobian formed by requests; x and fjac (m by n) are the caller's.
struct jacobian_run {
  int n, m;
  double* x;
  double* fjac;
  double eps;
  int column;  ///< the present one, from 1
  double h;    ///< the divisor of its differences
  double saved;
};

/// kOutOfMemory or kSuccess.
int create_jacobian(jacobian_run** made, int n, int m, double* x, double* fjac, double eps);
void delete_jacobian(jacobian_run* run);
/// One step: 1 asks for f1 = F(x), 2 for f2 = F(x); 0 is the end.
void advance_jacobian(jacobian_run& run, double* f1, const double* f2, int* rci);

/// F as the callback form calls it: sizes by address, x in, f out.
using residual_function = void (*)(int* m, int* n, double* x, double* f);
/// The whole Jacobian by calls of fcn, columns shared out among threads. Returns 0, -1 without memory for one
/// thread, kOutOfMemory without memory for several.
int jacobian_by_calls(residual_function fcn, int n, int m, double* fjac, double* x, double eps, int threads);

}  // namespace qel::nls
