// SPDX-License-Identifier: BSD-3-Clause
// A supernode's part of a substitution with one right-hand side, by processor level: block and rows below in
// one go, since most supernodes are too narrow for calls of dense routines. The results are the same bits on
// all levels.
#pragma once

#include "service/core_types.h"

namespace qel {

/// z has an element for each of the supernode's rows: first those of its columns, which are solved for, then
/// those below. Panels are column-major, rows by width, without gaps.
template <class T>
struct panel_substitution {
  int rows, width;
  const T* block;  ///< panel of which the first width rows are the diagonal block
  const T* panel;  ///< panel of the rows below
  bool unit;       ///< the triangle's diagonal is one
  T* z;
};

/// The lower triangle L or the upper one U of the block. Forward passes solve with L or U' and subtract the
/// panel's products from the rows below; backward ones subtract the rows below first and solve with L' or U.
template <class T>
struct substitution_kernels {
  using step = void(const panel_substitution<T>*);
  step *forward_lower, *forward_upper, *backward_lower, *backward_upper;
};

#define QEL_SUBSTITUTION_LEVEL(level)                       \
  namespace level {                                         \
  extern const substitution_kernels<float> substitution_s;  \
  extern const substitution_kernels<double> substitution_d; \
  }
QEL_SUBSTITUTION_LEVEL(l0_generic)
QEL_SUBSTITUTION_LEVEL(l5_avx2)
#undef QEL_SUBSTITUTION_LEVEL

}  // namespace qel
