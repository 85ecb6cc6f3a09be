// SPDX-License-Identifier: BSD-3-Clause
// A threaded product as the schemes get it: the numbers of the choice and the routines that go with them.
#pragma once

#include "blas/level3/gemm_serial.h"

namespace qel {

/// Computes one part of C, beta included; with panels: C += alpha op(A) op(B) on what they hold.
template <class T>
using gemm_cell_fn = void(const gemm_call<T>& call, const gemm_blocks& blocks, const gemm_panels<T>& panels);

/// Every scheme reads only what it needs.
template <class T>
struct gemm_plan {
  core_int threads, grid_rows, grid_cols;
  core_int block_m, block_n, block_k;  ///< 0: left to `blocking`
  gemm_blocking_fn* blocking;
  gemm_pack_fn<T>*pack_a_n, *pack_a_t, *pack_a_c;
  gemm_pack_fn<T>*pack_b_n, *pack_b_t, *pack_b_c;
  gemm_cell_fn<T>* cell;

  gemm_pack_fn<T>* pack_a(int op) const {
    return op == kNoTranspose ? pack_a_n : op == kTranspose ? pack_a_t : pack_a_c;
  }
  gemm_pack_fn<T>* pack_b(int op) const {
    return op == kNoTranspose ? pack_b_n : op == kTranspose ? pack_b_t : pack_b_c;
  }
};

template <class T>
gemm_plan<T> plan_of(const gemm_choice& choice);
/// Carries a choice out.
template <class T>
void run_gemm(const gemm_choice& choice, const gemm_call<T>& call);
/// Decides and carries out.
template <class T>
void gemm_driver(const gemm_call<T>& call);

}  // namespace qel
