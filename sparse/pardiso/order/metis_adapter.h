// SPDX-License-Identifier: BSD-3-Clause
// The partitioner of the nested dissection: METIS, behind one call.
#pragma once

namespace qel::pardiso {

/// The eight options of a dissection, in the order of the partitioner's older interface.
struct dissection_options {
  int explicit_options = 0;  ///< 0: its defaults, the others don't count
  int coarsening = 0;        ///< 3: sorted heavy edges
  int initial_partition = 0;
  int refinement = 0;  ///< 2: one-sided node refinement
  int debug = 0;
  int compress = 0;
  int prune_factor = 0;  ///< nodes of more neighbours than this times the average are ordered last; 0: none
  int separators = 0;    ///< of how many tries the best one is taken
  friend constexpr bool operator==(const dissection_options&, const dissection_options&) = default;
};

/// Sides of a node after a split.
enum node_side : int { side_left = 0, side_right = 1, side_separator = 2 };

/// Finds a small set of nodes without which the graph falls into two parts of about the same weight. Graph
/// counted from 0, without diagonal, both directions; lists of 32-bit starts. False: no separator found.
/// Any thread may call it; calls wait for each other, since the partitioner shares the C library's random
/// numbers, which it leaves as they were.
bool find_separator(int n, int* xadj, int* adjncy, int* weight, const dissection_options& options, int* side);

}  // namespace qel::pardiso
