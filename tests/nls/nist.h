// SPDX-License-Identifier: BSD-3-Clause
// Certified nonlinear regressions (NIST Statistical Reference Datasets, public domain), read from their
// files.
#pragma once

#include <string>
#include <vector>

#include "tests/nls/problems.h"

namespace qel::test {

struct nist_set {
  nls_problem problem;  ///< starts at the first start values; the minimum is the certified one
  std::vector<double> second_start, certified, deviation;
};
/// All sets of tests/data/nist whose model is known here.
std::vector<nist_set> nist_sets();

}  // namespace qel::test
