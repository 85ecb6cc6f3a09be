// SPDX-License-Identifier: BSD-3-Clause
// When level-2 routines use threads and how they cut their work: pure functions from sizes and facts to a
// plan. Levels 2 and 3 have rules of their own for general and triangular products of full matrices; the
// native ones were measured on two cores. Everything else runs on the calling thread.
#pragma once

#include "service/core_types.h"

namespace qel {

/// What a plan depends on beside the operands.
struct level2_facts {
  int level;    ///< serv_cpu_level
  int threads;  ///< what the BLAS domain allows
};
/// Whether the level has any threaded path; if not, nobody needs to count threads.
bool level_has_level2_threads(int level);
/// This process's facts for a matrix of that many bytes; threads is asked for only where it can matter.
level2_facts current_level2_facts(core_int bytes);

/// Elements first .. last - 1 of what is cut.
struct part_range {
  core_int first, last;
};

/// y in `threads` parts of `chunk` elements, the last with the rest; one thread: no cut. reason: the rule.
struct gemv_plan {
  int threads;
  core_int chunk;
  const char* reason;
  bool by_lines =
      false;  ///< parts end where cache lines of y do: all threads add to their parts again and again
};
/// m x n matrix of elements of that many bytes; without a transpose rows are cut, with one columns.
gemv_plan choose_gemv_threads(bool transposed, core_int m, core_int n, int element_bytes,
                              const level2_facts& facts);
/// past_line: elements between the last cache line's start before y and y; 0 if not by lines.
part_range gemv_part(const gemv_plan& plan, core_int length, int thread, core_int past_line = 0);

/// The same with kl sub- and ku superdiagonals.
gemv_plan choose_gbmv_threads(bool transposed, core_int m, core_int n, core_int kl, core_int ku,
                              int element_bytes, const level2_facts& facts);

/// As gemv_plan, for the columns of a rank-1 update.
gemv_plan choose_ger_threads(core_int m, core_int n, int element_bytes, const level2_facts& facts);

/// A triangle's product in two zones, or in parts of like areas.
struct trmv_plan {
  int threads;
  int first_zone;         ///< threads of the first zone; all: parts of like areas
  core_int first_width;   ///< elements of a thread of the first zone
  core_int second_width;  ///< of the second; the last thread takes what is left
  bool grows;             ///< later elements cost more than earlier ones
  int copy_threads;       ///< threads that copy x beforehand
  const char* reason;
};
trmv_plan choose_trmv_threads(bool upper, bool transposed, core_int n, core_int incx, int element_bytes,
                              const level2_facts& facts);
part_range trmv_part(const trmv_plan& plan, core_int n, int thread);

/// What a routine does with a stored triangle; the costs of a thread's start and end differ.
enum class triangle_work { kProduct, kMirroredProduct, kUpdate };
/// Rows of a product or columns of an update or of a mirrored product in one part per thread.
struct triangle_plan {
  int threads;
  bool grows;   ///< later rows or columns cost more
  bool banded;  ///< all cost the same
  const char* reason;
};
/// n: order; k: diagonals beside the main one, n if not banded.
triangle_plan choose_triangle_threads(triangle_work work, bool grows, core_int n, core_int k,
                                      int element_bytes, const level2_facts& facts);
part_range triangle_part(const triangle_plan& plan, core_int n, int thread);

/// The solution of a triangular system by blocks of x in the order in which they become known. While one
/// thread reduces the next block by the last and solves it, all reduce their share of what comes after it.
struct solution_plan {
  int threads;
  core_int block;
  const char* reason;
};
solution_plan choose_solution_threads(core_int n, int element_bytes, const level2_facts& facts);
/// A thread's share of `rest` elements behind the next block, counted from it, if each is reduced by `depth`.
part_range solution_part(const solution_plan& plan, core_int depth, core_int rest, int thread);

/// Nothing forks for a smaller general, triangular or banded matrix.
inline constexpr core_int kSmallestForkingGemv = 64;
inline constexpr core_int kSmallestForkingTrmv = 128;
inline constexpr core_int kSmallestForkingGbmv = 128;

}  // namespace qel
