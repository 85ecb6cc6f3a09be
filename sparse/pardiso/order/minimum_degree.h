// SPDX-License-Identifier: BSD-3-Clause
// Minimum degree ordering on the quotient graph, with approximate external degrees (P. Amestoy, T. Davis,
// I. Duff, SIAM J. Matrix Anal. Appl. 17 (1996) 886), supervariables, multiple elimination (J. Liu, ACM TOMS
// 11 (1985) 141) and aggressive absorption.
#pragma once

#include "sparse/pardiso/order/ordering.h"

namespace qel::pardiso {

struct minimum_degree_problem {
  const graph& g;
  const int* weight;  ///< unknowns that a node stands for
  /// All nodes of a class are eliminated before those of the next; later ones count in the degrees. Null: one
  /// class.
  const int* node_class = nullptr;
  int classes = 1;
};

/// order[k]: the node that is eliminated as k-th one. class_start[c]: how many unknowns come before class c
/// (classes + 1 numbers; unknowns from class_start[classes] on are those of nodes with very many neighbours,
/// of whatever class, which come last). error -2, -8.
stage_status minimum_degree(const minimum_degree_problem& problem, memory_account& account, int* order,
                            int* class_start);

/// Nodes with more neighbours come last: they would in any case, and until then be in every element. The
/// rails of a circuit would cost more time than all other nodes.
double densest_degree(double unknowns);

}  // namespace qel::pardiso
