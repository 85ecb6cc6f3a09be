// SPDX-License-Identifier: BSD-3-Clause
// What qel explain asks about the native levels.
#pragma once

#include <string>

#include "cli/explain/menu.h"
#include "service/core_types.h"

namespace qel::cli {

struct native_question {
  std::string operation;  ///< gemm, symm, syrk, trsm, trmm
  char type;              ///< s, d, c, z
  int level;              ///< 5 or 6
  bool left;
  core_int m, n, k;  ///< of the product; trsm, trmm: k is not looked at
  int threads;
  int caches[5];
};
report explain_native(const native_question& question);

}  // namespace qel::cli
