// SPDX-License-Identifier: BSD-3-Clause
// Nonlinear least squares for callers who have functions: the loops that answer the solvers' requests
// (qel/nls.h).
#pragma once

#include "tavik/analysis/interfaces.h"
#include "tavik/core/exceptions.h"

namespace Tavik::Kernel {

/// Minimises |F(x)|^2, F from n unknowns to m >= n residuals. Failures of the routines underneath throw
/// Core::Exception with the text "Error in ROUTINE" (dtrnlsp_init: a bad argument or no memory;
/// dtrnlsp_solve: F or its Jacobian is not finite). An exception of a user's function passes through; an
/// array of too few values is std::out_of_range. All arrays are checked for the elements that are used.
class TAVIK_API TrustRegionKernel : public Analysis::ITrustRegionKernel {
 public:
  /// Off by default: the radius grows more freely, its start does not depend on the units of F, steps near
  /// bounds are measured in the scaled space, and numerical Jacobians take the step of ComputeJacobian
  /// without tolerance.
  bool UseModernRules = false;

  /// x begins at element xOffset of its array and is updated in place; functions get the whole array. Without
  /// jacobian_function (null) the Jacobian comes from 2 n values of objective_function, with eps[0] as its
  /// step.
  ///
  ///   eps                        six tolerances above 0: radius, |F|, columns of J and model, step;
  ///                              two without effect
  ///   max_iterations             most accepted steps
  ///   max_trial_step_iterations  most rounds of one trial step
  ///   initial_step_bound         first radius in units of x, 0 to 100; 0 means 100
  ///
  /// Results: accepted steps; the reason 1 to 6 (qel_nls_reason words it); |F| at the start and at the end.
  void Solve(int n, int m, const Analysis::TrustRegionFunction& objective_function,
             const Core::Array<double>& x, int xOffset,
             const Analysis::TrustRegionFunction& jacobian_function, const Core::Array<double>& eps,
             int max_iterations, int max_trial_step_iterations, double initial_step_bound,
             int& num_iterations, int& stop_criterion, double& initial_residual,
             double& final_residual) override;

  /// The same with lower_bounds[i] <= x[i] <= upper_bounds[i]; the largest double, with its sign, is no
  /// bound.
  void SolveWithBoundaryContraints(int n, int m, const Analysis::TrustRegionFunction& objective_function,
                                   const Core::Array<double>& x, const Core::Array<double>& lower_bounds,
                                   const Core::Array<double>& upper_bounds,
                                   const Analysis::TrustRegionFunction& jacobian_function,
                                   const Core::Array<double>& eps, int max_iterations,
                                   int max_trial_step_iterations, double initial_step_bound,
                                   int& num_iterations, int& stop_criterion, double& initial_residual,
                                   double& final_residual) override;

  /// jacx[i + j * m] = dF_i / dx_j by central differences; tolerance is their step: relative for |x[j]| above
  /// it, else absolute. x is moved and restored.
  void ComputeJacobian(int n, int m, const Analysis::TrustRegionFunction& objective_function,
                       const Core::Array<double>& x, const Core::Array<double>& jacx,
                       double tolerance) override;
  /// The same with the cube root of the machine precision, where rounding and truncation balance.
  void ComputeJacobian(int n, int m, const Analysis::TrustRegionFunction& objective_function,
                       const Core::Array<double>& x, const Core::Array<double>& jacx);

  // Each forwards to the routine of its name (qel/nls.h) and returns its code.
  static int tavik_dtrnlsp_init(void** handle, const int* n, const int* m, double* x, const double* eps,
                                const int* iter1, const int* iter2, const double* rs);
  static int tavik_dtrnlsp_solve(void** handle, double* fvec, double* fjac, int* RCI_Request);
  static int tavik_dtrnlsp_get(void** handle, int* iter, int* st_cr, double* r1, double* r2);
  static int tavik_dtrnlsp_delete(void** handle);
  static int tavik_dtrnlspbc_init(void** handle, const int* n, const int* m, double* x, const double* LW,
                                  const double* UP, const double* eps, const int* iter1, const int* iter2,
                                  const double* rs);
  static int tavik_dtrnlspbc_solve(void** handle, double* fvec, double* fjac, int* RCI_Request);
  static int tavik_dtrnlspbc_get(void** handle, int* iter, int* st_cr, double* r1, double* r2);
  static int tavik_dtrnlspbc_delete(void** handle);
  static int tavik_djacobi_init(void** handle, const int* n, const int* m, double* x, double* fjac,
                                const double* eps);
  static int tavik_djacobi_solve(void** handle, double* f1, double* f2, int* RCI_Request);
  static int tavik_djacobi_delete(void** handle);
  static int tavik_djacobi(void (*fcn)(int* m, int* n, double* x, double* f), const int* n, const int* m,
                           double* fjac, double* x, const double* eps);
};

}  // namespace Tavik::Kernel
