// SPDX-License-Identifier: BSD-3-Clause
// What a handle of the simpler interface keeps: the solver's arguments, and where the caller is.
#pragma once

#include <stddef.h>

namespace qel::dss {

enum state : int {
  state_created = 0,
  state_defined = 1,
  state_reordered = 2,
  state_factored = 3,
  state_solved = 4,
  state_deleted = 5,
};
enum structure_kind : int { symmetric = 0, structurally_symmetric = 1, nonsymmetric = 2 };
enum factor_kind : int {
  positive_definite = 0,
  indefinite = 1,
  hermitian_definite = 2,
  hermitian_indefinite = 3
};
enum data_kind : int { real_data = 1, complex_data = 2 };

struct record {
  int rows, columns, nonzeros;
  const int *row_index, *column_index;  ///< the caller's, kept by address
  int* perm;
  int mtype, structure, factor, data;
  const void* values;
  int nrhs;
  const void* rhs;
  void* solution;
  int maxfct, mnum;
  void* pt[64];
  int phase;
  int iparm[64];
  int msglvl;
  int message_level, termination_level;
  int state;
  double reorder_seconds, factor_seconds, solve_seconds;
  char unused[64];
};
static_assert(sizeof(record) == 976);

/// A new record, or null if memory is out.
record* create_record();
void delete_record(record* freed);

/// A matrix with one entry per row, which the solver keeps no factors of.
inline bool is_diagonal(const record& r) { return r.nonzeros == r.rows; }

/// Calls the solver with what the record holds. Returns 0 or the status that its error means.
int call_solver(record& r, int phase);

/// The type for a structure and data before the values are known, and with a factor kind.
int starting_type(int structure, int data);
int factored_type(int structure, int factor, int data);

}  // namespace qel::dss
