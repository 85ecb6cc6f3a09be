// SPDX-License-Identifier: BSD-3-Clause
// LU factorisation with row interchanges of a band matrix, block by block, in four types.
#pragma once

#include "lapack/tuning/block_sizes.h"

namespace qel::lapack {

struct band_lu_facts {
  char type;  ///< S, D, C, Z
  core_int m, n, kl, ku;
  int threads;
  tuning_processor processor;
};
struct band_lu_plan {
  core_int block;  ///< 0: the plain routine
  int slices;      ///< of the columns behind a panel, one thread each
  const char* reason;
};
band_lu_plan plan_band_lu(const band_lu_facts& facts);

/// Carries out a plan with blocks; m and n above 0. The band is stored as LAPACK has it, with kl rows above
/// it for fill-in. first_zero: the number of the first zero pivot, 0 if there is none. False without work
/// memory; nothing is done then.
template <class T>
bool factor_band_as_planned(const band_lu_plan& plan, core_int m, core_int n, core_int kl, core_int ku, T* ab,
                            core_int ldab, core_int* pivots, core_int* first_zero);
/// Plans for this process. False if the plain routine is to do it.
template <class T>
bool gbtrf(core_int m, core_int n, core_int kl, core_int ku, T* ab, core_int ldab, core_int* pivots,
           core_int* first_zero);

}  // namespace qel::lapack
