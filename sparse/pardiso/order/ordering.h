// SPDX-License-Identifier: BSD-3-Clause
// First half of the analysis: matching and scaling, and the order in which the columns are eliminated.
// Everything here counts from 0 unless it is the caller's.
#pragma once

#include "sparse/pardiso/matrix.h"
#include "sparse/pardiso/memory_account.h"

namespace qel::pardiso {

struct ordering_options {
  int method = 2;             ///< iparm(2): 0 minimum degree, 1 constrained, 2 and 3 nested dissection
  int permutation_mode = 0;   ///< iparm(5): 1 the caller's, 2 handed back
  int scaling = 0;            ///< iparm(11)
  int matching = 0;           ///< iparm(13)
  int subgraph_exponent = 0;  ///< iparm(50)
  int threads = 1;
  bool choose_by_fill = false;  ///< the better of methods 0 and 2 by counted fill
};

/// What brings large entries to the diagonal: a permutation of the rows, or pairs of columns that stay
/// neighbours; refused is a request that the type does not know.
enum class matching_kind { none, rows, pairs, refused };
matching_kind choose_matching(const matrix_type& type, int asked);

/// An adjacency graph without diagonal and without double entries, both directions stored.
struct graph {
  int n = 0;
  block<int64_t> xadj;  ///< n + 1 starts
  block<int> adjncy;
};

/// Columns first .. last of the final order.
struct column_range {
  int first, last;
};

/// The row permutation and scaling bring large entries to the diagonal:
/// B(i, j) = row_scale[r] * A(r, j) * column_scale[j] with r = matched_row[i] (symmetric types: matched_row
/// is empty, both scales are the same numbers). The factorisation runs on B(perm[k], perm[l]).
struct ordering {
  block<int> perm;          ///< perm[new] = old
  block<int> inverse;       ///< inverse[old] = new
  block<int> matched_row;   ///< empty without matching
  block<double> row_scale;  ///< both empty without scaling
  block<double> column_scale;
  block<int> pairs;  ///< old numbers, two and two, which stay neighbours as 2-by-2 pivots; may be empty
  block<column_range> ranges;        ///< independent subgraphs, ascending, disjoint
  int subgraphs = 1;                 ///< S, the number of subgraphs aimed at
  int method = 2;                    ///< the method used (differs from the asked one after choose_by_fill)
  bool dense_rows = false;           ///< dissection took its options for dense rows
  bool separators_by_degree = true;  ///< method 1: separators ordered by minimum degree
  double fulladj_seconds = 0, reorder_seconds = 0;
};

/// Fills result.perm, inverse, matching, scaling, pairs and ranges, and gives the graph of B (in A's
/// numbering after the matching). user_perm is the caller's array of permutation_mode 1 and 2 (counting from
/// 1). error -2 (no memory: the account knows which), -3, -6 (sub-code minus the cardinality, or 1), -8.
template <class T>
stage_status compute_ordering(const csr_view<T>& a, const ordering_options& options, int* user_perm,
                              memory_account& account, ordering& result, graph& adjacency);

}  // namespace qel::pardiso
