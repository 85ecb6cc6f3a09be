// SPDX-License-Identifier: BSD-3-Clause
// The core routines by operation and element type, for typed tests: core_of<double>::gemm is core::dgemm.
// Real types take the symmetric routine for a Hermitian operation, so that each routine is met under its own
// name. call() passes values where a core routine wants addresses.
#pragma once

#include <type_traits>

#include "blas/level1/level1.h"
#include "blas/level2/level2.h"
#include "blas/level3/level3.h"

namespace qel::test {

/// One argument of a core routine: an address as it is, a value by the address of a copy.
template <class P>
class argument {
 public:
  using value_type = std::remove_const_t<std::remove_pointer_t<P>>;
  argument(value_type value) : value_(value), pointer_(&value_) {}
  argument(P pointer) : pointer_(pointer) {}
  argument(const argument&) = delete;
  argument& operator=(const argument&) = delete;
  P get() const { return pointer_; }

 private:
  value_type value_{};
  P pointer_;
};

template <class R, class... P>
R call(R (*routine)(P...), std::type_identity_t<const argument<P>&>... arguments) {
  return routine(arguments.get()...);
}

template <class T>
struct core_of;

// clang-format off
template <>
struct core_of<float> {
  static constexpr auto dotu = core::sdot;
  static constexpr auto dotc = core::sdot;
  static constexpr auto axpy = core::saxpy;
  static constexpr auto copy = core::scopy;
  static constexpr auto swap = core::sswap;
  static constexpr auto scal = core::sscal;
  static constexpr auto real_scal = core::sscal;
  static constexpr auto asum = core::sasum;
  static constexpr auto nrm2 = core::snrm2;
  static constexpr auto amax = core::isamax;
  static constexpr auto amin = core::isamin;
  static constexpr auto rot = core::srot;
  static constexpr auto gemv = core::sgemv;
  static constexpr auto gbmv = core::sgbmv;
  static constexpr auto hemv = core::ssymv;
  static constexpr auto hbmv = core::ssbmv;
  static constexpr auto hpmv = core::sspmv;
  static constexpr auto trmv = core::strmv;
  static constexpr auto tbmv = core::stbmv;
  static constexpr auto tpmv = core::stpmv;
  static constexpr auto trsv = core::strsv;
  static constexpr auto tbsv = core::stbsv;
  static constexpr auto tpsv = core::stpsv;
  static constexpr auto geru = core::sger;
  static constexpr auto gerc = core::sger;
  static constexpr auto her = core::ssyr;
  static constexpr auto hpr = core::sspr;
  static constexpr auto her2 = core::ssyr2;
  static constexpr auto hpr2 = core::sspr2;
  static constexpr auto gemm = core::sgemm;
  static constexpr auto symm = core::ssymm;
  static constexpr auto hemm = core::ssymm;
  static constexpr auto syrk = core::ssyrk;
  static constexpr auto herk = core::ssyrk;
  static constexpr auto syr2k = core::ssyr2k;
  static constexpr auto her2k = core::ssyr2k;
  static constexpr auto trmm = core::strmm;
  static constexpr auto trsm = core::strsm;
};
template <>
struct core_of<double> {
  static constexpr auto dotu = core::ddot;
  static constexpr auto dotc = core::ddot;
  static constexpr auto axpy = core::daxpy;
  static constexpr auto copy = core::dcopy;
  static constexpr auto swap = core::dswap;
  static constexpr auto scal = core::dscal;
  static constexpr auto real_scal = core::dscal;
  static constexpr auto asum = core::dasum;
  static constexpr auto nrm2 = core::dnrm2;
  static constexpr auto amax = core::idamax;
  static constexpr auto amin = core::idamin;
  static constexpr auto rot = core::drot;
  static constexpr auto gemv = core::dgemv;
  static constexpr auto gbmv = core::dgbmv;
  static constexpr auto hemv = core::dsymv;
  static constexpr auto hbmv = core::dsbmv;
  static constexpr auto hpmv = core::dspmv;
  static constexpr auto trmv = core::dtrmv;
  static constexpr auto tbmv = core::dtbmv;
  static constexpr auto tpmv = core::dtpmv;
  static constexpr auto trsv = core::dtrsv;
  static constexpr auto tbsv = core::dtbsv;
  static constexpr auto tpsv = core::dtpsv;
  static constexpr auto geru = core::dger;
  static constexpr auto gerc = core::dger;
  static constexpr auto her = core::dsyr;
  static constexpr auto hpr = core::dspr;
  static constexpr auto her2 = core::dsyr2;
  static constexpr auto hpr2 = core::dspr2;
  static constexpr auto gemm = core::dgemm;
  static constexpr auto symm = core::dsymm;
  static constexpr auto hemm = core::dsymm;
  static constexpr auto syrk = core::dsyrk;
  static constexpr auto herk = core::dsyrk;
  static constexpr auto syr2k = core::dsyr2k;
  static constexpr auto her2k = core::dsyr2k;
  static constexpr auto trmm = core::dtrmm;
  static constexpr auto trsm = core::dtrsm;
};
template <>
struct core_of<complex8> {
  static constexpr auto dotu = core::cdotu;
  static constexpr auto dotc = core::cdotc;
  static constexpr auto axpy = core::caxpy;
  static constexpr auto copy = core::ccopy;
  static constexpr auto swap = core::cswap;
  static constexpr auto scal = core::cscal;
  static constexpr auto real_scal = core::csscal;
  static constexpr auto asum = core::scasum;
  static constexpr auto nrm2 = core::scnrm2;
  static constexpr auto amax = core::icamax;
  static constexpr auto amin = core::icamin;
  static constexpr auto rot = core::csrot;
  static constexpr auto gemv = core::cgemv;
  static constexpr auto gbmv = core::cgbmv;
  static constexpr auto hemv = core::chemv;
  static constexpr auto hbmv = core::chbmv;
  static constexpr auto hpmv = core::chpmv;
  static constexpr auto trmv = core::ctrmv;
  static constexpr auto tbmv = core::ctbmv;
  static constexpr auto tpmv = core::ctpmv;
  static constexpr auto trsv = core::ctrsv;
  static constexpr auto tbsv = core::ctbsv;
  static constexpr auto tpsv = core::ctpsv;
  static constexpr auto geru = core::cgeru;
  static constexpr auto gerc = core::cgerc;
  static constexpr auto her = core::cher;
  static constexpr auto hpr = core::chpr;
  static constexpr auto her2 = core::cher2;
  static constexpr auto hpr2 = core::chpr2;
  static constexpr auto gemm = core::cgemm;
  static constexpr auto symm = core::csymm;
  static constexpr auto hemm = core::chemm;
  static constexpr auto syrk = core::csyrk;
  static constexpr auto herk = core::cherk;
  static constexpr auto syr2k = core::csyr2k;
  static constexpr auto her2k = core::cher2k;
  static constexpr auto trmm = core::ctrmm;
  static constexpr auto trsm = core::ctrsm;
};
template <>
struct core_of<complex16> {
  static constexpr auto dotu = core::zdotu;
  static constexpr auto dotc = core::zdotc;
  static constexpr auto axpy = core::zaxpy;
  static constexpr auto copy = core::zcopy;
  static constexpr auto swap = core::zswap;
  static constexpr auto scal = core::zscal;
  static constexpr auto real_scal = core::zdscal;
  static constexpr auto asum = core::dzasum;
  static constexpr auto nrm2 = core::dznrm2;
  static constexpr auto amax = core::izamax;
  static constexpr auto amin = core::izamin;
  static constexpr auto rot = core::zdrot;
  static constexpr auto gemv = core::zgemv;
  static constexpr auto gbmv = core::zgbmv;
  static constexpr auto hemv = core::zhemv;
  static constexpr auto hbmv = core::zhbmv;
  static constexpr auto hpmv = core::zhpmv;
  static constexpr auto trmv = core::ztrmv;
  static constexpr auto tbmv = core::ztbmv;
  static constexpr auto tpmv = core::ztpmv;
  static constexpr auto trsv = core::ztrsv;
  static constexpr auto tbsv = core::ztbsv;
  static constexpr auto tpsv = core::ztpsv;
  static constexpr auto geru = core::zgeru;
  static constexpr auto gerc = core::zgerc;
  static constexpr auto her = core::zher;
  static constexpr auto hpr = core::zhpr;
  static constexpr auto her2 = core::zher2;
  static constexpr auto hpr2 = core::zhpr2;
  static constexpr auto gemm = core::zgemm;
  static constexpr auto symm = core::zsymm;
  static constexpr auto hemm = core::zhemm;
  static constexpr auto syrk = core::zsyrk;
  static constexpr auto herk = core::zherk;
  static constexpr auto syr2k = core::zsyr2k;
  static constexpr auto her2k = core::zher2k;
  static constexpr auto trmm = core::ztrmm;
  static constexpr auto trsm = core::ztrsm;
};
// clang-format on

}  // namespace qel::test
