// SPDX-License-Identifier: BSD-3-Clause
// How LU and Cholesky factorisations are carried out: pure functions from sizes, threads and processor to a
// record.
#pragma once

#include "lapack/tuning/block_sizes.h"

namespace qel::lapack {

struct lu_facts {
  char type;  ///< S, D, C, Z
  core_int m, n;
  int threads;
  tuning_processor processor;
};
enum class lu_path : int {
  nothing,
  recursive,     ///< on the calling thread, but for BLAS calls that are large enough for threads
  blas_threads,  ///< the same because a measured crossover says so, or for want of memory
  unblocked,     ///< the blocks would be as wide as the matrix, or one column
  tasks,         ///< block columns handed out to threads
};
struct lu_plan {
  lu_path path;
  int threads;
  core_int block, group, lookahead;  ///< tasks only
  const char* reason;
};
lu_plan plan_lu(const lu_facts& facts);

/// Columns that are worked on without halving them.
core_int plan_lu_panel(char type, core_int rows, int level);

/// Whether the halves of a triangle are inverted on a thread each: where two are all there are, or the
/// products of the halves too small to share.
bool inverts_halves_at_once(core_int n, int threads);
/// Threads that share what an inverse moves: columns into their places.
int plan_column_moves(core_int n, int threads);

struct cholesky_facts {
  char type;
  bool upper;
  core_int n;
  int threads;
  tuning_processor processor;
};
enum class cholesky_path : int { nothing, unblocked, serial, tasks };
struct cholesky_plan {
  cholesky_path path;
  int threads;
  core_int block;  ///< tasks: the order of a tile
  core_int grain;  ///< panels that one task applies at most
  const char* reason;
};
cholesky_plan plan_cholesky(const cholesky_facts& facts);

}  // namespace qel::lapack
