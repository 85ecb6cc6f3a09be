// SPDX-License-Identifier: BSD-3-Clause
// The kernels of factorisations for this process's level.
#pragma once

#include "blas/kernels/factor_native.h"
#include "service/dispatch.h"

namespace qel::lapack {

template <class T>
struct factor_row;
#define QEL_ROW(T, letter)                                                                                  \
  template <>                                                                                               \
  struct factor_row<T> {                                                                                    \
    static constexpr const factor_kernels<T>* kernels[kLevels] = {                                          \
        nullptr, nullptr, nullptr, nullptr, nullptr, &l5_avx2::letter##factor, &l6_avx512::letter##factor}; \
  };
QEL_ROW(float, s)
QEL_ROW(double, d)
QEL_ROW(complex8, c)
QEL_ROW(complex16, z)
#undef QEL_ROW

/// Null below the native levels.
template <class T>
inline const factor_kernels<T>* native_factor_kernels() {
  return factor_row<T>::kernels[serv_cpu_level()];
}

}  // namespace qel::lapack
