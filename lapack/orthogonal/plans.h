// SPDX-License-Identifier: BSD-3-Clause
// How QR factorisations and products with their Q are carried out: pure functions from sizes, threads and
// processor to a record.
#pragma once

#include "lapack/tuning/block_sizes.h"

namespace qel::lapack {

struct qr_facts {
  char type;  ///< S, D, C, Z
  core_int m, n;
  tuning_processor processor;
};
struct qr_plan {
  core_int block;  ///< columns that are factored before the rest is updated; 1: no blocks
  const char* reason;
};
qr_plan plan_qr(const qr_facts& facts);

/// Columns that are worked on without halving them.
core_int plan_qr_panel(char type, core_int rows, int level);

struct q_product_facts {
  char type;
  bool left;
  core_int m, n, k;  ///< C is m x n, Q of k reflectors
  int threads;
  tuning_processor processor;
};
struct q_product_plan {
  core_int block;  ///< reflectors applied at once; 1: each by itself, from the left only
  int slices;      ///< of C's columns, from the right its rows; one thread each
  const char* reason;
};
q_product_plan plan_q_product(const q_product_facts& facts);

}  // namespace qel::lapack
