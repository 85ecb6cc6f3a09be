// SPDX-License-Identifier: BSD-3-Clause
// Nested dissection: a tree of separators, and the classes that bind the elimination to it.
#pragma once

#include "sparse/pardiso/order/metis_adapter.h"
#include "sparse/pardiso/order/weighted_graph.h"

namespace qel::pardiso {

/// Which options the partitioner gets: with a row of at least n / 8 entries, nodes with very many neighbours
/// are kept out of the dissection.
dissection_options choose_dissection_options(int n, int64_t longest_row);

/// The number of independent subgraphs aimed at: a power of two, at least 2 to the power exponent, not above
/// n. threads counts for real unsymmetric matrices only.
int choose_subgraphs(int n, int type_number, int threads, int exponent);

/// Parts of at most this many unknowns are left to minimum degree: few in general, where its choice among
/// equal degrees costs fill; more in meshes of the plane, whose nodes all have few neighbours and where
/// further separators cost more time than they save; most where nodes of very many neighbours among others of
/// few tell of a circuit. most_neighbours 0: unknown.
int choose_leaf(int64_t nodes, int64_t edges, int64_t most_neighbours = 0);

/// What is split, and how deep.
struct dissection_plan {
  int leaf = 200;
  int subgraphs = 1;             ///< parts of which the ranges are wanted
  bool below_subgraphs = true;   ///< splits go on inside the parts
  bool separators_last = false;  ///< one class for all separators, after all parts
};

/// The classes of the nodes: each is eliminated before those with a higher number.
struct dissection {
  block<int> node_class;
  int classes = 0;
  /// Of the parts asked for: first and last class, ascending; no edge runs between two parts.
  block<column_range> parts;
  int part_count = 0;
};

/// error -2, -8.
stage_status dissect(const graph& g, const int* weight, const dissection_options& options,
                     const dissection_plan& plan, memory_account& account, dissection& result);

}  // namespace qel::pardiso
