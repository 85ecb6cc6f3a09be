// SPDX-License-Identifier: BSD-3-Clause
// Numeric factorisation by supernodes, looking left, and the substitutions with its factors.
#pragma once

#include "sparse/pardiso/symbolic/structure.h"

namespace qel::pardiso {

/// What the analysis leaves for the numeric phases.
struct analysis {
  ordering order;
  structure form;
};

struct factor_options {
  double threshold = 0;       ///< pivots of at most this modulus are perturbed (unused by definite types)
  bool bunch_kaufman = true;  ///< symmetric indefinite: search in the block; else the diagonal as it comes
  int threads = 1;
  /// Called after supernodes, from the calling thread, with the share of entries computed (0 to 1); true
  /// cancels.
  bool (*progress)(void* context, double share) = nullptr;
  void* progress_context = nullptr;
};

template <class T>
class panel_store;

/// The factors of one matrix. pivot, luperm and luperm_row hold, column by column, lists of interchanges
/// inside the diagonal blocks: see diagonal_block.h. The diagonal block of a symmetric indefinite type holds
/// D on its diagonal, and an element of D below the diagonal above it; L has ones on its diagonal, and so has
/// the L of an unsymmetric type, whose U stands on and above the diagonal.
template <class T>
struct factors {
  matrix_type type{};  ///< what they were made as: a later call may name another one
  block<T> lnz, unz;
  panel_store<T>* store = nullptr;  ///< where the panels are if not in lnz and unz; belongs to the caller
  block<int> pivot;                 ///< symmetric indefinite: interchanges and 2-by-2 pivots of the blocks
  block<int> luperm, luperm_row;    ///< unsymmetric: column and row interchanges of the blocks
  int perturbed = 0;                ///< iparm(14)
  int positive = 0, negative = 0;   ///< inertia, iparm(22), iparm(23)
  int failed_column = 0;            ///< iparm(30), the caller's number, counted from 1
  double norm_a = 0;
  double scatter_seconds = 0, factor_seconds = 0;
};

/// The threshold for iparm(10) = k; a is needed for the types whose threshold goes with the matrix.
template <class T>
double pivot_threshold(const csr_view<T>& a, int k);

/// Into the result's store if it has one. error -2, -4 (failed_column; sub-code -2: no work memory;
/// factorisation_cancelled), and -5 if A has an entry that the analysed pattern has not; the store's own
/// failure if a transfer failed.
template <class T>
stage_status factorise(const csr_view<T>& a, const analysis& analysed, const factor_options& options,
                       memory_account& account, factors<T>& result);

/// Parts of a solve; forward and the others take and leave vectors as 331, 332, 333 do.
enum class solve_part { all = 0, forward = 1, diagonal = 2, backward = 3 };

struct solve_options {
  solve_part part = solve_part::all;
  bool transposed = false;  ///< with the transposed matrix (unsymmetric types)
  int threads = 1;
  /// Called by the first thread after each supernode: whether it went forward or backward, unknowns done.
  void (*progress)(void* context, solve_part pass, int unknowns) = nullptr;
  void* progress_context = nullptr;
};

/// x := A^-1 b (or a part of it) for nrhs columns of n, leading dimension n; b and x may be the same.
/// work: n * nrhs elements. Only a store can fail.
template <class T>
stage_status substitute(const analysis& analysed, const factors<T>& f, const solve_options& options, int nrhs,
                        const T* b, T* x, T* work);

}  // namespace qel::pardiso
