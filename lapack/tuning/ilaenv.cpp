// SPDX-License-Identifier: BSD-3-Clause
// The tuning routine under the name by which plain LAPACK calls it.
#include "lapack/lapack.h"
#include "lapack/tuning/block_sizes.h"

namespace qel::core {
extern "C" {

core_int qel_core_iparmq_(const core_int* ispec, const char* name, const char* opts, const core_int* n,
                          const core_int* ilo, const core_int* ihi, const core_int* lwork, size_t name_length,
                          size_t opts_length);

core_int qel_core_ilaenv_(const core_int* ispec, const char* name, const char* opts, const core_int* n1,
                          const core_int* n2, const core_int* n3, const core_int* n4, size_t name_length,
                          size_t opts_length) {
  const core_int answer =
      lapack::tuned_block_size({*ispec, {name, name_length}, {opts, opts_length}, *n1, *n2, *n3, *n4},
                               lapack::this_tuning_processor());
  if (answer != lapack::kPlainRule) return answer;
  return qel_core_iparmq_(ispec, name, opts, n1, n2, n3, n4, name_length, opts_length);
}

}  // extern "C"
}  // namespace qel::core
