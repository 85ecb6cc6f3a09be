// SPDX-License-Identifier: BSD-3-Clause
// A step of complete pivoting: the update of what is left of a block, which looks for the next pivot on the
// way. By processor level; the results are the same bits on all of them.
#pragma once

#include "service/core_types.h"

namespace qel {

/// For each of n columns j: y[j] -= l u[j], m elements, and largest[j] becomes the largest modulus of the
/// result, -1 if there is none. Column j of y, and element j of u, stand ld elements behind those before.
template <class T>
struct pivot_step {
  core_int m, n, ld;
  const T *l, *u;
  T* y;
  T* largest;
};

#define QEL_PIVOT_LEVEL(level)                           \
  namespace level {                                      \
  extern void pivot_update_s(const pivot_step<float>*);  \
  extern void pivot_update_d(const pivot_step<double>*); \
  }
QEL_PIVOT_LEVEL(l0_generic)
QEL_PIVOT_LEVEL(l5_avx2)
#undef QEL_PIVOT_LEVEL

}  // namespace qel
