// SPDX-License-Identifier: BSD-3-Clause
// The core BLAS by element type.
#pragma once

#include "blas/level1/level1.h"
#include "blas/level2/level2.h"
#include "blas/level3/level3.h"
#include "service/complex_arithmetic.h"

namespace qel::cli::selftest {

template <class T>
struct core_calls;

#define QEL_CALLS_OF_ALL(t)                       \
  static constexpr auto axpy = core::t##axpy;     \
  static constexpr auto copy = core::t##copy;     \
  static constexpr auto swap = core::t##swap;     \
  static constexpr auto scal = core::t##scal;     \
  static constexpr auto iamax = core::i##t##amax; \
  static constexpr auto iamin = core::i##t##amin; \
  static constexpr auto gemv = core::t##gemv;     \
  static constexpr auto gbmv = core::t##gbmv;     \
  static constexpr auto trmv = core::t##trmv;     \
  static constexpr auto trsv = core::t##trsv;     \
  static constexpr auto gemm = core::t##gemm;     \
  static constexpr auto symm = core::t##symm;     \
  static constexpr auto syrk = core::t##syrk;     \
  static constexpr auto syr2k = core::t##syr2k;   \
  static constexpr auto trmm = core::t##trmm;     \
  static constexpr auto trsm = core::t##trsm;

#define QEL_CALLS_OF_REAL(T, t)                                                            \
  template <>                                                                              \
  struct core_calls<T> {                                                                   \
    QEL_CALLS_OF_ALL(t)                                                                    \
    static constexpr auto asum = core::t##asum;                                            \
    static constexpr auto nrm2 = core::t##nrm2;                                            \
    static constexpr auto rot = core::t##rot;                                              \
    static constexpr auto hemv = core::t##symv;                                            \
    static constexpr auto hpmv = core::t##spmv;                                            \
    static constexpr auto geru = core::t##ger;                                             \
    static constexpr auto gerc = core::t##ger;                                             \
    static constexpr auto her = core::t##syr;                                              \
    static constexpr auto her2 = core::t##syr2;                                            \
    static constexpr auto hemm = core::t##symm;                                            \
    static constexpr auto herk = core::t##syrk;                                            \
    static constexpr auto her2k = core::t##syr2k;                                          \
    static T dot(bool, core_int n, const T* x, core_int incx, const T* y, core_int incy) { \
      return core::t##dot(&n, x, &incx, y, &incy);                                         \
    }                                                                                      \
  };
QEL_CALLS_OF_REAL(float, s)
QEL_CALLS_OF_REAL(double, d)
#undef QEL_CALLS_OF_REAL

#define QEL_CALLS_OF_COMPLEX(T, t, asum_name, nrm2_name, rot_name)                                    \
  template <>                                                                                         \
  struct core_calls<T> {                                                                              \
    QEL_CALLS_OF_ALL(t)                                                                               \
    static constexpr auto asum = core::asum_name;                                                     \
    static constexpr auto nrm2 = core::nrm2_name;                                                     \
    static constexpr auto rot = core::rot_name;                                                       \
    static constexpr auto hemv = core::t##hemv;                                                       \
    static constexpr auto hpmv = core::t##hpmv;                                                       \
    static constexpr auto geru = core::t##geru;                                                       \
    static constexpr auto gerc = core::t##gerc;                                                       \
    static constexpr auto her = core::t##her;                                                         \
    static constexpr auto her2 = core::t##her2;                                                       \
    static constexpr auto hemm = core::t##hemm;                                                       \
    static constexpr auto herk = core::t##herk;                                                       \
    static constexpr auto her2k = core::t##her2k;                                                     \
    static T dot(bool conjugated, core_int n, const T* x, core_int incx, const T* y, core_int incy) { \
      T result;                                                                                       \
      (conjugated ? core::t##dotc : core::t##dotu)(&result, &n, x, &incx, y, &incy);                  \
      return result;                                                                                  \
    }                                                                                                 \
  };
QEL_CALLS_OF_COMPLEX(complex8, c, scasum, scnrm2, csrot)
QEL_CALLS_OF_COMPLEX(complex16, z, dzasum, dznrm2, zdrot)
#undef QEL_CALLS_OF_COMPLEX
#undef QEL_CALLS_OF_ALL

/// Calls body.template operator()<T>() for the four element types.
template <class Body>
void for_each_type(const Body& body) {
  body.template operator()<float>();
  body.template operator()<double>();
  body.template operator()<complex8>();
  body.template operator()<complex16>();
}

}  // namespace qel::cli::selftest
