// SPDX-License-Identifier: BSD-3-Clause
// Householder reflectors H = I - tau v v**H, one by one and in blocks H1 H2 .. Hk = I - V T V**H (R.
// Schreiber, C. Van Loan, SIAM J. Sci. Stat. Comput. 10 (1989) 53). V lies below the diagonal of a matrix,
// its ones and zeros are not stored there; so blocks carry a dense copy of V's top square.
#pragma once

#include "service/core_types.h"

namespace qel::lapack {

template <class T>
struct reflector_block {
  core_int rows, width;
  const T* v;  ///< rows x width, read below the diagonal square
  core_int ldv;
  const T *top, *t;  ///< width x width: V's top square, and T, upper triangular
  core_int ld;       ///< of both
};

/// A reflector that turns (alpha, x), x of n elements, into (beta, 0) with a real beta: v's other elements
/// take x's place, beta takes alpha's. Returns tau; 0 means no reflection.
template <class T>
T make_reflector(core_int n, T* alpha, T* x);

/// Fills `top` and `t` for the reflectors in v, whose factors are tau.
template <class T>
void form_block(core_int rows, core_int width, const T* v, core_int ldv, const T* tau, T* top, T* t,
                core_int ld);

/// C = H C, or H**H C; work has room for width x columns.
template <class T>
void apply_from_left(const reflector_block<T>& h, bool turned, core_int columns, T* c, core_int ldc, T* work);
/// C = C H, or C H**H; work has room for rows x width.
template <class T>
void apply_from_right(const reflector_block<T>& h, bool turned, core_int rows, T* c, core_int ldc, T* work);

}  // namespace qel::lapack
