// SPDX-License-Identifier: BSD-3-Clause
// What a handle keeps between calls.
#pragma once

#include <stdint.h>

#include <type_traits>

#include "sparse/pardiso/iparm.h"
#include "sparse/pardiso/memory_account.h"

namespace qel::pardiso {

/// Mark of a value that has not been set yet.
inline constexpr int kNotSet = 777777777;

/// Values of the last stages for reports; kNotSet until their stage has run.
enum slot : int {
  slot_panel_width,
  slot_subgraphs,
  slot_ordering,          ///< method used, as iparm(2)
  slot_permutation_mode,  ///< iparm(5) of the analysis
  slot_separators_by_degree,
  slot_supernodes,
  slot_largest_supernode,
  slot_tree_height,
  slot_peak_analysis,
  slot_permanent_analysis,
  slot_numeric_memory,
  slot_iteration_limit,
  slot_stall_step,
  slot_count = 100,
};

/// Seconds of the stages of one call; below 0 for a stage that did not run.
struct stage_times {
  double fulladj = -1, reorder = -1, symbfct = -1, parlist = -1, a_to_lu = -1, numfct = -1, solve = -1,
         cgs = -1, allocation = 0, total = 0;
};

struct basic_fields {
  memory_account account;
  int n, n_plus_1, mtype, phase, nrhs, maxfct, mnum;
  int part;        ///< of a solve: 0 all, 1 forward, 2 diagonal, 3 backward
  int fact_slots;  ///< length of the factor table
  int threads;
  bool sequential;  ///< one thread
  bool symmetric;   ///< even types
  bool scaled;      ///< the analysis has scaling vectors
  bool transposed;  ///< solves are with the transposed matrix
  bool parallel_matching;
  bool single;         ///< element precision of the handle
  bool must_factor;    ///< the iteration failed: a new factorisation is due
  int krylov;          ///< K of iparm(4)
  int scalar_words;    ///< 8-byte words of a scalar: 1 or 2
  int factor_control;  ///< iparm(26)
  int out_of_core;     ///< mode: 0 in core, 2 out of core
  int memory_factor;
  int64_t factor_size;
  int64_t nnz, off_diagonal, stored;
  int64_t nonzeros_l, nonzeros_u;
  double work;  ///< floating-point operations of the factorisation
  double norm_a;
  uint64_t pattern;                  ///< fingerprint of ia, ja at the analysis; 0: not taken
  double control[4];                 ///< 10.0, 1.0, tolerance of the iteration, 1e-30
  int divergence_bound;              ///< of the iteration
  double final_residual, final_rhs;  ///< of a refinement that ended above its start
  double factor_seconds, solve_seconds;
  stage_times times;
  int slots[slot_count];
};

/// The block BASIC.
struct basic_record : basic_fields {
  char unused[1760 - sizeof(basic_fields)];
};
static_assert(sizeof(basic_record) == 1760 && std::is_trivially_copyable_v<basic_record>);

/// A record of a handle that has not seen a matrix.
void reset(basic_record& record);
/// 1 word for real types, 2 for complex ones.
constexpr int scalar_words(int mtype) { return mtype == 11 || (mtype <= 2 && mtype >= -2) ? 1 : 2; }

/// One record of the block FACT_ADR. The values belong to a factors<T>; kind tells T.
struct fact_record {
  void* values;  ///< null: empty
  int64_t mark;  ///< kNotSet
  int64_t kind;  ///< element_kind
  void* files;   ///< a factor_files<T> if the values are in files
  int64_t reserved[2];
};
static_assert(sizeof(fact_record) == 48);

enum element_kind : int { kind_float, kind_double, kind_complex8, kind_complex16 };
template <class T>
inline constexpr element_kind kind_of = __is_same(T, float)      ? kind_float
                                        : __is_same(T, double)   ? kind_double
                                        : __is_same(T, complex8) ? kind_complex8
                                                                 : kind_complex16;

/// Calls body with a value of the element type that a matrix type and precision select.
template <class Body>
decltype(auto) with_element(bool complex_type, bool single, const Body& body) {
  if (complex_type) return single ? body(complex8{}) : body(complex16{});
  return single ? body(float{}) : body(double{});
}

}  // namespace qel::pardiso
