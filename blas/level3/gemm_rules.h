// SPDX-License-Identifier: BSD-3-Clause
// How a matrix product is shared among threads: the tuning class of the processor, whether threads pay, the
// scheme and its numbers. Pure functions over facts; gemm_schemes.h carries the choice out.
#pragma once

#include "blas/level3/dense_facts.h"

namespace qel {

/// Tuning classes of the driver.
enum gemm_class_number : int {
  kClassDefault = 0,     ///< levels 0 and 1
  kClassSsse3 = 1,       ///< SSSE3, no SSE4.1
  kClassBigCache = 2,    ///< SSE4.1, second cache unknown or over 3 MiB
  kClassSse42 = 3,       ///< SSE4.2
  kClassSmallCache = 4,  ///< SSE4.1, second cache up to 3 MiB
  kClassAvx = 5,         ///< AVX
  kClassFamily10h = 6,   ///< AMD family 10h
};
int gemm_class(const dense_processor& processor);

enum class gemm_scheme : int {
  serial,
  row_blocks,    ///< the calling thread, rows in steps
  split_cols,    ///< slabs of columns
  split_rows,    ///< slabs of rows
  grid,          ///< cells of a grid
  grid_blocked,  ///< cells, each in sub-blocks
  private_pack,  ///< rows; every thread packs for itself
  shared_b,      ///< rows; B packed together
  shared_a,      ///< a grid; a row of cells shares its packed A
};
const char* name_of(gemm_scheme scheme);

/// Where a plan's blocking numbers come from.
enum class gemm_blocking : int { of_level, family_10h_first, family_10h_second };

struct gemm_facts {
  element_type type = element_type::d;
  dense_processor processor;
  int threads = 1;           ///< what the BLAS domain allows
  bool in_parallel = false;  ///< the caller stands in a parallel region
  core_int m = 0, n = 0, k = 0;
};

/// The scheme, its numbers (0: not used, or left to the blocking) and the rule that settled it, in words.
struct gemm_choice {
  gemm_scheme scheme = gemm_scheme::serial;
  bool scale_first = false;  ///< beta is applied in a region of its own, then counts as 1
  core_int threads = 1, grid_rows = 0, grid_cols = 0;
  core_int block_m = 0, block_n = 0, block_k = 0;
  gemm_blocking blocking = gemm_blocking::of_level;
  const char* reason = "";
};

/// True if the sizes alone rule threads out, so that no more needs to be asked.
bool never_threaded(core_int m, core_int n, core_int k);
/// Whether threads pay on classes 1 to 4.
bool threads_pay(element_type type, core_int m, core_int n, core_int k, core_int threads);
gemm_choice choose_gemm(const gemm_facts& facts);

/// This process's facts for a product of the given sizes.
gemm_facts gemm_facts_now(element_type type, core_int m, core_int n, core_int k);

}  // namespace qel
