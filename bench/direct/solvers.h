// SPDX-License-Identifier: BSD-3-Clause
// One sparse system given to each library that can solve it, phase by phase.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/support/sparse_problems.h"

namespace qel::bench {

/// Real matrices, types 2, -2 and 11.
using matrix = test::csr_arrays<double>;

/// Phases may be repeated; each needs those before it. All throw std::runtime_error if the library refuses.
class direct_solver {
 public:
  virtual ~direct_solver() = default;
  virtual void analyse() = 0;
  virtual void factor() = 0;
  /// x := A^-1 b for nrhs columns, without refinement.
  virtual void solve(int nrhs, const double* b, double* x) = 0;
  /// Entries of L (symmetric types) or L and U together, diagonal counted once or twice as the library does.
  virtual double factor_entries() const = 0;
};

struct direct_library {
  std::string name;
  std::unique_ptr<direct_solver> (*make)(const matrix&);
};

/// The libraries for a type, QEL first. circuit: those made for circuits, too.
std::vector<direct_library> libraries_for(int type, bool circuit);

/// |b - A x| / (|A| |x| + |b|) in the infinity norm, of one column.
double backward_error(const matrix& a, const double* b, const double* x);

}  // namespace qel::bench
