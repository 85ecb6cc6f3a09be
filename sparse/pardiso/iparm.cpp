// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/iparm.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace qel::pardiso {
namespace {

void store_type_defaults(matrix_type type, parameters iparm) {
  const bool general = type.number == 11 || type.number == 13;
  const int perturbation = type.unsymmetric() ? 13 : type.indefinite() ? 8 : 0;
  iparm(p_perturbation) = perturbation;
  iparm(p_scaling) = general;
  iparm(p_matching) = general;
  iparm(p_factor_nonzeros) = -1;
  iparm(p_factor_work) = -1;
  iparm(p_pivoting) = type.indefinite();
}

}  // namespace

void store_defaults(matrix_type type, parameters iparm) {
  iparm(p_ordering) = 2;
  for (const parameter zero : {p_hybrid, p_permutation, p_solution_in_b, p_steps_done, p_steps, parameter(9),
                               p_transposed, p_perturbed, p_iteration, p_positive, p_negative, p_reserved_24,
                               p_reserved_25, p_subgraph_exponent, p_out_of_core}) {
    iparm(zero) = 0;
  }
  store_type_defaults(type, iparm);
}

void initialise(matrix_type type, void** pt, parameters iparm) {
  std::fill_n(pt, 64, nullptr);
  std::fill_n(&iparm(p_user_values), 64, 0);
  iparm(p_user_values) = 1;
  iparm(p_ordering) = 2;
  store_type_defaults(type, iparm);
}

hybrid_choice choose_hybrid(int iparm4, double default_tolerance) {
  hybrid_choice choice{0, default_tolerance};
  const int64_t digits = std::abs(int64_t{iparm4});
  const int64_t exponent = digits / 10;
  choice.krylov = static_cast<int>(iparm4 < 0 ? -(digits % 10) : digits % 10);
  if (exponent > 0) choice.tolerance = std::exp(static_cast<double>(exponent) * -2.302585092994046);
  return choice;
}

}  // namespace qel::pardiso
