// SPDX-License-Identifier: BSD-3-Clause
// One thread's work on one supernode after the other: fetch the entries of A, take the updates of finished
// supernodes, factor.
#pragma once

#include "sparse/pardiso/numeric/diagonal_block.h"
#include "sparse/pardiso/numeric/matrix_entries.h"
#include "sparse/pardiso/numeric/panel_store.h"

namespace qel::pardiso {

/// What all threads share and only read, but for the panels and lists of interchanges of their own
/// supernodes.
template <class T>
struct factorisation {
  const structure& form;
  const matrix_entries<T>& entries;
  const factor_options& options;
  matrix_type type;
  panel_store<T>& store;
  int *pivot, *luperm, *luperm_row;
};

/// A finished supernode, and where in its row list the updated one begins.
struct update_source {
  int supernode, from;
};

enum class step_result { done, bad_pivot, bad_entry, io_failed };

template <class T>
class supernode_worker {
 public:
  /// False if memory is out.
  bool prepare(const factorisation<T>& shared, int thread, memory_account& account);

  /// Gives the memory back. prepare() and this are for one thread at a time.
  void release();

  step_result begin(int supernode);
  /// Sources in the order of their numbers share work if they stem from one run of columns.
  step_result update(const update_source* sources, int count);
  step_result finish();

  const pivot_counts& counts() const { return counts_; }
  /// After bad_pivot: the column, in the final order.
  int failed_column() const { return failed_column_; }

 private:
  struct update_shape;
  step_result apply(const update_source* sources, int count);
  void add_small(const update_shape& u, const T* left, int ld_left, const T* right, int ld_right, int w,
                 int skipped, T* panel) const;
  void scatter(const update_shape& u, const T* temp, int skipped, T* panel) const;
  bool factor_diagonal();
  void solve_below();

  const factorisation<T>* shared_ = nullptr;
  int thread_ = 0;
  block<int> indmap_, relind_;
  block<T> temp_;
  supernode_shape own_{};
  int supernode_ = -1;
  panel_pair<T> panels_;
  pivot_counts counts_;
  int failed_column_ = -1;
};

}  // namespace qel::pardiso
