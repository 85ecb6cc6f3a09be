// SPDX-License-Identifier: BSD-3-Clause
// Second half of the analysis: the supernodal structure of the factors. Counts from 0.
#pragma once

#include "sparse/pardiso/order/ordering.h"

namespace qel::pardiso {

/// Columns of a supernode at most, whatever the panel width asked for.
inline constexpr int kWidestSupernode = 256;

/// Supernode s has the columns xsup[s] .. xsup[s + 1] - 1 (its width w) and the rows
/// lindx[xlindx[s]] .. lindx[xlindx[s + 1] - 1] (their number r, ascending; the first w are its own columns).
/// It is stored as an r-by-w column-major panel at lnz + xlnz[s]; for unsymmetric types a second one of the
/// same shape at unz + xunz[s] holds its rows of U as columns.
struct structure {
  int n = 0;
  int supernodes = 0;
  int panel_width = 0;
  int largest_run = 0;    ///< widest fundamental supernode before it was cut
  block<int> xsup;        ///< supernodes + 1
  block<int> snode;       ///< supernode of a column
  block<int> run;         ///< first supernode of the run of columns that a supernode was cut from
  block<int64_t> xlindx;  ///< supernodes + 1
  block<int> lindx;
  block<int64_t> xlnz;  ///< supernodes + 1, elements
  block<int64_t> xunz;  ///< the same for U; empty for symmetric types
  block<int> parent;    ///< parent of a supernode in the tree, -1 for a root
  block<int> pnlsch;    ///< order of the supernodes in the numeric phase
  block<column_range>
      supernode_ranges;  ///< independent subgraphs as supernodes; the last one is the root part
  int64_t nonzeros_l = 0, nonzeros_u = 0;
  int64_t factor_elements = 0;  ///< of lnz and unz together
  int64_t longest_rows = 0;     ///< longest row list
  int64_t largest_panel = 0;    ///< elements
  int64_t work_elements = 0;    ///< scratch elements that one thread of the factorisation needs
  int64_t updates = 0;          ///< pairs of a supernode and another that it updates
  int64_t matrix_entries = 0;   ///< of A, both triangles for unsymmetric types, if its pattern is symmetric
  double work = 0;              ///< floating-point operations of the factorisation
  int tree_height = 0;
  double symbfct_seconds = 0, parlist_seconds = 0;
};

struct structure_options {
  int panel_width = 128;
  bool unsymmetric = false;
  bool is_complex = false;
  int threads = 1;
  bool native = false;  ///< the process runs on a native level: supernodes may be merged
};

/// Memory of the numeric phases in megabytes, rounded down and plus one: iparm(61), (62), (63).
struct memory_prediction {
  int total, working, factors;
  int out_of_core_minimum;  ///< smallest working set with the factors in files
};

/// Postorders the elimination tree (perm and inverse follow) and builds the structure. error -2, -3, -8
/// (sub-code analysis_overflow when the entries of L leave the 32-bit range).
stage_status build_structure(const graph& adjacency, const structure_options& options, ordering& order,
                             memory_account& account, structure& result);

/// scalar_bytes: of a factor entry.
memory_prediction predict_memory(const structure& s, const structure_options& options, int scalar_bytes);

}  // namespace qel::pardiso
