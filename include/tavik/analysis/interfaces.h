// SPDX-License-Identifier: BSD-3-Clause
// The interfaces of the class library's analysis part that kernel classes implement.
#pragma once

#include <functional>

#include "tavik/core/array.h"
#include "tavik/core/export.h"

namespace Tavik::Analysis {

/// A function of x: m residuals, or their m by n Jacobian, column-major. The array that it returns is copied.
using TrustRegionFunction = std::function<Core::Array<double>(const Core::Array<double>& x)>;

/// Nonlinear least squares.
class TAVIK_API ITrustRegionKernel {
 public:
  virtual ~ITrustRegionKernel() = default;
  /// Kernel::TrustRegionKernel says what each does.
  virtual void Solve(int n, int m, const TrustRegionFunction& objective_function,
                     const Core::Array<double>& x, int xOffset, const TrustRegionFunction& jacobian_function,
                     const Core::Array<double>& eps, int max_iterations, int max_trial_step_iterations,
                     double initial_step_bound, int& num_iterations, int& stop_criterion,
                     double& initial_residual, double& final_residual) = 0;
  virtual void SolveWithBoundaryContraints(
      int n, int m, const TrustRegionFunction& objective_function, const Core::Array<double>& x,
      const Core::Array<double>& lower_bounds, const Core::Array<double>& upper_bounds,
      const TrustRegionFunction& jacobian_function, const Core::Array<double>& eps, int max_iterations,
      int max_trial_step_iterations, double initial_step_bound, int& num_iterations, int& stop_criterion,
      double& initial_residual, double& final_residual) = 0;
  virtual void ComputeJacobian(int n, int m, const TrustRegionFunction& objective_function,
                               const Core::Array<double>& x, const Core::Array<double>& jacx,
                               double tolerance) = 0;
};

}  // namespace Tavik::Analysis
