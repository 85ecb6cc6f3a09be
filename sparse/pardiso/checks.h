// SPDX-License-Identifier: BSD-3-Clause
// Tests of a call's arguments, in their order. They change nothing, so a handle keeps what it had.
#pragma once

#include "sparse/pardiso/call.h"
#include "sparse/pardiso/record.h"

namespace qel::pardiso {

/// Sub-codes of error -1, which select the report's detail.
enum input_fault : int {
  fault_none = 0,
  fault_phase = 1,
  fault_maxfct = 2,
  fault_mnum = 3,
  fault_mnum_phase = 4,
  fault_type_change = 5,
  fault_n_change = 6,
  fault_n = 7,
  fault_ia_end = 8,
  fault_nrhs = 9,
  fault_solution_place = 10,
  fault_ordering = 11,
  fault_threads_counted = 12,
  fault_threads = 13,
  fault_type = 15,
  fault_step = 20,
  fault_ia = 21,
  fault_ja_range = 22,
  fault_triangle = 23,
  fault_ja_order = 24,
  fault_pattern = 25,
  fault_done = 99,  ///< nothing more to do, no error
  fault_clean_number = 100,
  fault_only_symbolic = 999,
  fault_initialization = 1000,
  fault_phase_low = 10000,
  fault_no_analysis = 100000,
};

/// A structure's fault with the three numbers that its line prints.
struct structure_fault {
  int sub_code = fault_none;
  int numbers[3] = {};
};
/// Each test goes over all its elements and tells the last one that fails it; the first test with any ends
/// the check.
structure_fault check_structure(matrix_type type, int n, const int* ia, const int* ja);

/// Tests against what the handle stored; iparm(31 .. 33) get the numbers of a structure's fault, iparm(3) is
/// raised to 1, iparm(27) cleared after a good structure check.
int check_input(const solver_call& call, const basic_record& stored);

/// A number that differs, as good as surely, between two structures.
uint64_t pattern_fingerprint(int n, const int* ia, const int* ja);

}  // namespace qel::pardiso
