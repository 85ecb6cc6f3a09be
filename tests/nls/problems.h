// SPDX-License-Identifier: BSD-3-Clause
// Small least-squares problems of the literature (J. J. More, B. S. Garbow, K. E. Hillstrom, Testing
// unconstrained optimization software, ACM Trans. Math. Softw. 7 (1981) 17).
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/nls/dual.h"

namespace qel::test {

using duals = std::vector<dual>;

struct nls_problem {
  std::string name;
  std::vector<double> start;
  int residuals;
  std::function<void(const duals& x, duals& f)> evaluate;
  /// Sums of squares at the known minima, the global one first.
  std::vector<double> minima;

  int unknowns() const { return static_cast<int>(start.size()); }
};

const std::vector<nls_problem>& classic_problems();

/// f and, if wanted, fjac (column-major) at x.
void evaluate(const nls_problem& problem, const double* x, double* f, double* fjac);

}  // namespace qel::test
