// SPDX-License-Identifier: BSD-3-Clause
// Small triangles turned into their transposes.
#pragma once

#include "blas/kernels/native/pack.inl.h"
#include "blas/kernels/shared/lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// The part of `from` on one side of its diagonal, or on it, to the other side of `to`'s.
template <class T>
inline void turn_triangle(bool below, core_int n, const T* from, core_int from_step, T* to,
                          core_int to_step) {
  constexpr core_int kGroup = 4;
  const core_int whole = n / kGroup * kGroup;
  const auto by_elements = [=](core_int i_begin, core_int i_end, core_int j_begin, core_int j_end) {
    for (core_int j = j_begin; j < j_end; ++j) {
      for (core_int i = i_begin; i < i_end; ++i) {
        if (below ? i >= j : i <= j) set_element(to + j + i * to_step, element_at(from + i + j * from_step));
      }
    }
  };
  for (core_int j = 0; j < whole; j += kGroup) {
    by_elements(j, j + kGroup, j, j + kGroup);
    const core_int begin = below ? j + kGroup : 0, end = below ? whole : j;
    for (core_int i = begin; i < end; i += kGroup) {
      transpose4(from + i + j * from_step, from_step, to + j + i * to_step, to_step);
    }
  }
  by_elements(below ? whole : 0, n, below ? 0 : whole, below ? whole : n);
  if (below) by_elements(whole, n, whole, n);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
