// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/fitness.h"

#include <algorithm>
#include <cmath>

#include "lapack/factor/elements.h"
#include "lapack/four_types.h"

namespace qel::lapack {
namespace {

template <class T>
core_int reals_of(core_int elements) {
  return elements * static_cast<core_int>(sizeof(T) / sizeof(real_of<T>));
}
template <class T>
core_int rows_above(core_int rows, core_int column, bool hessenberg) {
  return hessenberg ? std::min(rows, column + 2) : rows;
}

}  // namespace

template <class T>
fitness fitness_of(core_int rows, core_int columns, const T* a, core_int lda, bool hessenberg) {
  using R = real_of<T>;
  // Squares of smaller numbers have room for sums of them.
  const R large = 1 / kCalming<T>;
  fitness found = fitness::fit;
  for (core_int j = 0; j < columns; ++j) {
    const auto* const column = reinterpret_cast<const R*>(a + j * lda);
    const core_int count = reals_of<T>(rows_above<T>(rows, j, hessenberg));
    for (core_int i = 0; i < count; ++i) {
      const R size = std::fabs(element(column + i));
      if (!std::isfinite(size)) return fitness::not_finite;
      if (size > large) found = fitness::overflows;
    }
  }
  return found;
}

template <class T>
bool is_calm(core_int count, const T* ap) {
  using R = real_of<T>;
  constexpr R large = sizeof(R) == sizeof(float) ? R(0x1p32) : R(0x1p256);
  const auto* const reals = reinterpret_cast<const R*>(ap);
  for (core_int i = 0; i < reals_of<T>(count); ++i) {
    const R size = std::fabs(element(reals + i));
    if (size != 0 && !(size <= large && size >= 1 / large)) return false;
  }
  return true;
}

template <class T>
void scale_hessenberg(core_int n, T* h, core_int ldh, real_of<T> factor) {
  for (core_int j = 0; j < n; ++j) {
    auto* const column = reinterpret_cast<real_of<T>*>(h + j * ldh);
    const core_int count = reals_of<T>(rows_above<T>(n, j, true));
    for (core_int i = 0; i < count; ++i) set(column + i, element(column + i) * factor);
  }
}

#define QEL_INSTANTIATE(T)                                                   \
  template fitness fitness_of(core_int, core_int, const T*, core_int, bool); \
  template bool is_calm(core_int, const T*);                                 \
  template void scale_hessenberg(core_int, T*, core_int, real_of<T>);
QEL_FOUR_TYPES(QEL_INSTANTIATE)
#undef QEL_INSTANTIATE

}  // namespace qel::lapack
