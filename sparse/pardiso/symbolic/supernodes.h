// SPDX-License-Identifier: BSD-3-Clause
// Supernodes of a factor: runs of columns with one structure, merged with their parents where that pays, cut
// at the panel width.
#pragma once

#include "sparse/pardiso/symbolic/elimination_tree.h"

namespace qel::pardiso {

struct supernode_facts {
  bool native;       ///< the process runs on a native level
  int panel_width;   ///< as the driver has it for the processor and the threads
  bool unsymmetric;  ///< two factors, complete pivoting in the diagonal blocks
};
/// A child is merged into its parent if the columns of both together are at most columns[i] and the zeros
/// stored among their entries at most share[i], for any i.
struct supernode_plan {
  bool merge = false;
  int width = 0;
  int columns[4] = {};
  double share[4] = {};
};
supernode_plan plan_supernodes(const supernode_facts& facts);

/// Runs of columns that share one structure: run i has the columns first[i] .. first[i + 1] - 1 and rows[i]
/// rows.
struct column_runs {
  int count = 0;
  int largest = 1;    ///< columns of the largest one
  block<int> first;   ///< room for n + 1
  block<int> rows;    ///< room for n
  block<int> parent;  ///< run of the parent of the last column, -1 for a root; room for n
};

/// Fundamental runs: column j joins column j - 1 if that is its child and has one entry more. Groups, if not
/// null, are not joined. False if memory is out.
bool find_runs(int n, const int* parent, const int* count, const int* group, memory_account& account,
               column_runs& runs);

/// Merges runs by the plan; order[new] = old number of the columns then. group as in find_runs. False if
/// memory is out.
bool merge_runs(int n, const supernode_plan& plan, const int* group, memory_account& account,
                column_runs& runs, int* order);

}  // namespace qel::pardiso
