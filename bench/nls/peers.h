// SPDX-License-Identifier: BSD-3-Clause
// One problem solved by each library, with analytic Jacobians and tight tolerances, and what it cost.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace qel::bench {

/// Residuals f (m) and, if fjac is not null, their column-major Jacobian at x.
using evaluation = std::function<void(const double* x, double* f, double* fjac)>;

struct least_squares {
  int n, m;
  evaluation evaluate;
};
struct cost {
  double squares = 0;  ///< sum of squares at the end
  int residuals = 0, jacobians = 0;
};
struct solver {
  std::string name;
  std::function<cost(const least_squares&, std::vector<double> x, int max_iterations)> solve;
};

/// QEL with classic and modern rules, then the libraries that this was built with.
std::vector<solver> solvers();

}  // namespace qel::bench
