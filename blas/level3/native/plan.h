// SPDX-License-Identifier: BSD-3-Clause
// How a native product is carried out: a pure function from sizes, tile, caches and threads to a record.
#pragma once

#include "blas/kernels/level3_native.h"
#include "service/complex_arithmetic.h"

namespace qel::native {

/// Everything that the plan depends on.
struct product_facts {
  core_int m, n, k;
  int element_size;  ///< bytes
  double weight;     ///< kProductWeight
  int tile_rows, tile_columns, lanes;
  c_part part;
  bool direct;  ///< A and B are general, so they can be read in place (A with its columns turned if need be)
  bool a_turned;  ///< A's rows are contiguous, not its columns
  bool b_turned;  ///< the same of B
  int caches[5];  ///< as serv_native_cache_sizes gives them
  int threads;    ///< what the BLAS domain allows
};

enum class product_scheme {
  direct,       ///< both factors in place
  a_packed,     ///< panels of A, B in place
  slabs,        ///< each thread a product of its own over a slab of rows or columns of C
  packed,       ///< panels of A and B, shared by the threads; C in a grid of cells
  split_depth,  ///< each thread a product over its own part of k, then the sum in the order of the threads
};

struct product_plan {
  product_scheme scheme;
  int threads;
  int grid_rows, grid_columns;  ///< packed: cells of a block of C; slabs: of C
  core_int depth;               ///< steps of a slice of k
  core_int rows, columns;       ///< packed: what of A, B is packed at a time
  bool columns_outside;         ///< each panel of B meets all of A's block in turn, not the reverse
  core_int columns_in_cache;    ///< packed: of B, worked on between two passes over A
  const char* reason;
};

product_plan plan_product(const product_facts& facts);

/// Whether a product of general matrices is so small that packing does not pay.
inline bool reads_in_place(core_int m, core_int n, core_int k) {
  constexpr double kDirectWork = 128.0 * 128 * 128;
  return static_cast<double>(m) * static_cast<double>(n) * static_cast<double>(k) <= kDirectWork;
}

/// What one product of two elements costs, in products of doubles.
template <class T>
inline constexpr double kProductWeight = static_cast<double>(sizeof(real_of<T>)) / 8 *
                                         (is_complex<T> ? 4 : 1);
inline double work_of(core_int m, core_int n, core_int k, double weight) {
  return static_cast<double>(m) * static_cast<double>(n) * static_cast<double>(k) * weight;
}
/// Below this much work per thread a region costs more than it saves.
inline constexpr double kWorkToFork = 100e3;
/// Whether threads can pay at all; asks for no thread count.
inline bool may_fork(core_int m, core_int n, core_int k, double weight) {
  return work_of(m, n, k, weight) >= 2 * kWorkToFork;
}

/// Whether a product goes in place on one thread in any case; in integers, as small calls feel every test.
template <class T>
constexpr bool goes_at_once(core_int m, core_int n, core_int k) {
  constexpr auto kMost = static_cast<core_int>(2 * kWorkToFork / kProductWeight<T>) - 1;
  static_assert(kMost <= 128 * 128 * 128 && kMost < (1 << 20));
  return m <= kMost && n <= kMost && k <= kMost && m * n * k <= kMost;
}

/// The number of panels in `count` rows (columns), and where panel number i begins; i = number gives the end.
core_int row_panels(core_int count, int tile_rows);
core_int row_panel_begin(core_int i, core_int count, int tile_rows, int lanes);
core_int column_panels(core_int count, int tile_columns);
core_int column_panel_begin(core_int i, core_int count, int tile_columns);

/// Panels [begin, end) of one of `parts` even parts.
struct panel_range {
  core_int begin, end;
};
panel_range even_part(core_int panels, int parts, int part);

/// Column panels of one of `parts` parts of a block with about the same number of tiles inside the triangle.
/// below: how many rows the block's first row lies under its first column's diagonal element.
panel_range triangle_part(core_int m, core_int n, core_int below, c_part which, int tile_columns, int parts,
                          int part);

/// Slabs of right-hand sides for a triangle of that order, one per thread; 1 if they don't pay.
int plan_slabs(core_int order, core_int count, double weight, int threads);
/// Right-hand sides of one slab: multiples of 8 but for the last.
panel_range even_slab(core_int count, int slabs, int slab);

}  // namespace qel::native
