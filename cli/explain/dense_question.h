// SPDX-License-Identifier: BSD-3-Clause
// What questions about dense matrices have in common: the element type and the caches.
#pragma once

#include <string>
#include <vector>

#include "blas/level3/dense_facts.h"
#include "blas/level3/gemm_rules.h"
#include "cli/explain/menu.h"
#include "lapack/tuning/block_sizes.h"

namespace qel::cli {

struct dense_question {
  std::string type = "d";   ///< s, d, c, z
  std::vector<int> caches;  ///< bytes of the data and unified caches; empty: this processor's

  element_type element() const;
  /// The type as the names of LAPACK's routines begin.
  char capital() const { return static_cast<char>(type[0] & ~32); }
  /// This processor with what is replaced.
  dense_processor processor(const asked_machine& machine) const;
  lapack::tuning_processor tuning_processor(const asked_machine& machine) const;
};

/// --type, --caches
void declare_dense(CLI::App& command, dense_question& question);

}  // namespace qel::cli
