// SPDX-License-Identifier: BSD-3-Clause
// When the other operations of level 3 use threads, how they cut their work, and the block sizes of
// triangular solves. Pure functions; the drivers carry them out.
#pragma once

#include "blas/level3/dense_facts.h"

namespace qel {

/// An operation with a triangular or symmetric matrix on one side of B or C, m x n.
struct side_facts {
  bool left;
  int level;
  core_int m, n;
  int threads;  ///< what the BLAS domain allows
};
/// Threads and the columns (side left) or rows of each slab; the last takes what is left. One thread: serial.
struct side_choice {
  core_int threads, chunk;
  const char* reason;
};
side_choice choose_trsm(const side_facts& facts);
/// Products: trmm, and symm and hemm, which have the same shape.
side_choice choose_trmm(const side_facts& facts);
/// The facts of this process.
side_facts side_facts_now(bool left, core_int m, core_int n);

enum class syrk_scheme : int { nothing, four, serial, slices, triangle_blocks };
struct syrk_facts {
  int level;
  core_int n, k;
  int threads;
  bool changes_nothing;  ///< beta is 1 and alpha or k is 0
};
/// slices: slabs of `chunk` columns. triangle_blocks: 2 threads blocks of `chunk` columns, the last takes
/// what is left, in `items` pieces of work.
struct syrk_choice {
  syrk_scheme scheme;
  core_int threads, chunk, items;
  const char* reason;
};
syrk_choice choose_syrk(const syrk_facts& facts);
syrk_facts syrk_facts_now(core_int n, core_int k, bool changes_nothing);

/// Block sizes of a triangular solve or product: diagonal blocks of `outer`, in them of `inner`; as many
/// columns (side left) or rows of B at a time as `right_hand`.
struct triangle_plan {
  core_int outer, inner, right_hand;
};
triangle_plan choose_triangle_plan(int level, bool left, core_int n);
inline constexpr core_int kInnerTriangle = 32;

}  // namespace qel
