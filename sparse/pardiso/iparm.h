// SPDX-License-Identifier: BSD-3-Clause
// The caller's 64 parameters and results.
#pragma once

#include "sparse/pardiso/matrix.h"

namespace qel::pardiso {

/// Elements of iparm, counted from 1 as everywhere in the texts.
enum parameter : int {
  p_user_values = 1,
  p_ordering = 2,
  p_threads = 3,
  p_hybrid = 4,
  p_permutation = 5,
  p_solution_in_b = 6,
  p_steps_done = 7,
  p_steps = 8,
  p_perturbation = 10,
  p_scaling = 11,
  p_transposed = 12,
  p_matching = 13,
  p_perturbed = 14,
  p_peak_analysis = 15,
  p_permanent_analysis = 16,
  p_numeric_memory = 17,
  p_factor_nonzeros = 18,
  p_factor_work = 19,
  p_iteration = 20,
  p_pivoting = 21,
  p_positive = 22,
  p_negative = 23,
  p_reserved_24 = 24,
  p_reserved_25 = 25,
  p_factor_control = 26,
  p_check_structure = 27,
  p_single = 28,
  p_failed_column = 30,
  p_fault_1 = 31,
  p_fault_2 = 32,
  p_fault_3 = 33,
  p_subgraph_exponent = 50,
  p_out_of_core = 60,
  p_memory_total = 61,
  p_memory_working = 62,
  p_memory_factors = 63,
  p_version = 64,
};

/// Mark of a system whose matrix is diagonal, in p_transposed.
inline constexpr int kDiagonalMark = -1;
inline constexpr int kSolverVersion = 108;

/// Element number (from 1) of an array of 64.
class parameters {
 public:
  explicit parameters(int* values) : values_(values) {}
  int& operator()(parameter number) const { return values_[number - 1]; }

 private:
  int* values_;
};

/// What a first call with iparm(1) = 0 stores; elements without a default stay.
void store_defaults(matrix_type type, parameters iparm);
/// What the initialisation routine stores: zeros, iparm(1) = 1, iparm(2) and the defaults by type.
void initialise(matrix_type type, void** pt, parameters iparm);

/// iparm(4) = +-(10 * L + K), read.
struct hybrid_choice {
  int krylov = 0;  ///< K with the sign of iparm(4): 0 none, +-2 CG, others CGS
  double tolerance = 1e-12;
  bool wanted() const { return krylov != 0; }
  bool conjugate_gradients() const { return krylov == 2 || krylov == -2; }
};
hybrid_choice choose_hybrid(int iparm4, double default_tolerance);

}  // namespace qel::pardiso
