// SPDX-License-Identifier: BSD-3-Clause
// The names under which the private copy of plain LAPACK calls this library's BLAS and error reporter:
// Fortran calls with 64-bit integers. A routine has the type of the core routine it stands for, except
// complex functions, which return a pair in registers as a Fortran function does. Fortran passes the lengths
// of its option strings behind the last argument; they are left undeclared where nobody reads them, harmless
// with this platform's calling convention, in which the caller clears its own arguments. Defined in
// plain_names.cpp.
#pragma once

#include <stddef.h>

#include "blas/level1/level1.h"
#include "blas/level2/level2.h"
#include "blas/level3/level3.h"

namespace qel {

extern "C" {

void qel_core_xerbla_(const char* name, const core_int* info, size_t length);

complex8 qel_core_cdotu_(const core_int* n, const complex8* x, const core_int* incx, const complex8* y,
                         const core_int* incy);
complex16 qel_core_zdotu_(const core_int* n, const complex16* x, const core_int* incx, const complex16* y,
                          const core_int* incy);
complex8 qel_core_cdotc_(const core_int* n, const complex8* x, const core_int* incx, const complex8* y,
                         const core_int* incy);
complex16 qel_core_zdotc_(const core_int* n, const complex16* x, const core_int* incx, const complex16* y,
                          const core_int* incy);

decltype(core::sdot) qel_core_sdot_;
decltype(core::ddot) qel_core_ddot_;
decltype(core::saxpy) qel_core_saxpy_;
decltype(core::daxpy) qel_core_daxpy_;
decltype(core::caxpy) qel_core_caxpy_;
decltype(core::zaxpy) qel_core_zaxpy_;
decltype(core::scopy) qel_core_scopy_;
decltype(core::dcopy) qel_core_dcopy_;
decltype(core::ccopy) qel_core_ccopy_;
decltype(core::zcopy) qel_core_zcopy_;
decltype(core::sswap) qel_core_sswap_;
decltype(core::dswap) qel_core_dswap_;
decltype(core::cswap) qel_core_cswap_;
decltype(core::zswap) qel_core_zswap_;
decltype(core::sscal) qel_core_sscal_;
decltype(core::dscal) qel_core_dscal_;
decltype(core::cscal) qel_core_cscal_;
decltype(core::zscal) qel_core_zscal_;
decltype(core::csscal) qel_core_csscal_;
decltype(core::zdscal) qel_core_zdscal_;
decltype(core::sasum) qel_core_sasum_;
decltype(core::dasum) qel_core_dasum_;
decltype(core::scasum) qel_core_scasum_;
decltype(core::dzasum) qel_core_dzasum_;
decltype(core::snrm2) qel_core_snrm2_;
decltype(core::dnrm2) qel_core_dnrm2_;
decltype(core::scnrm2) qel_core_scnrm2_;
decltype(core::dznrm2) qel_core_dznrm2_;
decltype(core::isamax) qel_core_isamax_;
decltype(core::idamax) qel_core_idamax_;
decltype(core::icamax) qel_core_icamax_;
decltype(core::izamax) qel_core_izamax_;
decltype(core::srot) qel_core_srot_;
decltype(core::drot) qel_core_drot_;
decltype(core::csrot) qel_core_csrot_;
decltype(core::zdrot) qel_core_zdrot_;
decltype(core::srotm) qel_core_srotm_;
decltype(core::drotm) qel_core_drotm_;
decltype(core::sgemv) qel_core_sgemv_;
decltype(core::dgemv) qel_core_dgemv_;
decltype(core::cgemv) qel_core_cgemv_;
decltype(core::zgemv) qel_core_zgemv_;
decltype(core::sgbmv) qel_core_sgbmv_;
decltype(core::dgbmv) qel_core_dgbmv_;
decltype(core::cgbmv) qel_core_cgbmv_;
decltype(core::zgbmv) qel_core_zgbmv_;
decltype(core::ssymv) qel_core_ssymv_;
decltype(core::dsymv) qel_core_dsymv_;
decltype(core::chemv) qel_core_chemv_;
decltype(core::zhemv) qel_core_zhemv_;
decltype(core::ssbmv) qel_core_ssbmv_;
decltype(core::dsbmv) qel_core_dsbmv_;
decltype(core::chbmv) qel_core_chbmv_;
decltype(core::zhbmv) qel_core_zhbmv_;
decltype(core::sspmv) qel_core_sspmv_;
decltype(core::dspmv) qel_core_dspmv_;
decltype(core::chpmv) qel_core_chpmv_;
decltype(core::zhpmv) qel_core_zhpmv_;
decltype(core::strmv) qel_core_strmv_;
decltype(core::dtrmv) qel_core_dtrmv_;
decltype(core::ctrmv) qel_core_ctrmv_;
decltype(core::ztrmv) qel_core_ztrmv_;
decltype(core::stbmv) qel_core_stbmv_;
decltype(core::dtbmv) qel_core_dtbmv_;
decltype(core::ctbmv) qel_core_ctbmv_;
decltype(core::ztbmv) qel_core_ztbmv_;
decltype(core::stpmv) qel_core_stpmv_;
decltype(core::dtpmv) qel_core_dtpmv_;
decltype(core::ctpmv) qel_core_ctpmv_;
decltype(core::ztpmv) qel_core_ztpmv_;
decltype(core::strsv) qel_core_strsv_;
decltype(core::dtrsv) qel_core_dtrsv_;
decltype(core::ctrsv) qel_core_ctrsv_;
decltype(core::ztrsv) qel_core_ztrsv_;
decltype(core::stbsv) qel_core_stbsv_;
decltype(core::dtbsv) qel_core_dtbsv_;
decltype(core::ctbsv) qel_core_ctbsv_;
decltype(core::ztbsv) qel_core_ztbsv_;
decltype(core::stpsv) qel_core_stpsv_;
decltype(core::dtpsv) qel_core_dtpsv_;
decltype(core::ctpsv) qel_core_ctpsv_;
decltype(core::ztpsv) qel_core_ztpsv_;
decltype(core::sger) qel_core_sger_;
decltype(core::dger) qel_core_dger_;
decltype(core::cgeru) qel_core_cgeru_;
decltype(core::zgeru) qel_core_zgeru_;
decltype(core::cgerc) qel_core_cgerc_;
decltype(core::zgerc) qel_core_zgerc_;
decltype(core::ssyr) qel_core_ssyr_;
decltype(core::dsyr) qel_core_dsyr_;
decltype(core::cher) qel_core_cher_;
decltype(core::zher) qel_core_zher_;
decltype(core::sspr) qel_core_sspr_;
decltype(core::dspr) qel_core_dspr_;
decltype(core::chpr) qel_core_chpr_;
decltype(core::zhpr) qel_core_zhpr_;
decltype(core::ssyr2) qel_core_ssyr2_;
decltype(core::dsyr2) qel_core_dsyr2_;
decltype(core::cher2) qel_core_cher2_;
decltype(core::zher2) qel_core_zher2_;
decltype(core::sspr2) qel_core_sspr2_;
decltype(core::dspr2) qel_core_dspr2_;
decltype(core::chpr2) qel_core_chpr2_;
decltype(core::zhpr2) qel_core_zhpr2_;
decltype(core::sgemm) qel_core_sgemm_;
decltype(core::dgemm) qel_core_dgemm_;
decltype(core::cgemm) qel_core_cgemm_;
decltype(core::zgemm) qel_core_zgemm_;
decltype(core::ssymm) qel_core_ssymm_;
decltype(core::dsymm) qel_core_dsymm_;
decltype(core::chemm) qel_core_chemm_;
decltype(core::zhemm) qel_core_zhemm_;
decltype(core::ssyrk) qel_core_ssyrk_;
decltype(core::dsyrk) qel_core_dsyrk_;
decltype(core::cherk) qel_core_cherk_;
decltype(core::zherk) qel_core_zherk_;
decltype(core::ssyr2k) qel_core_ssyr2k_;
decltype(core::dsyr2k) qel_core_dsyr2k_;
decltype(core::cher2k) qel_core_cher2k_;
decltype(core::zher2k) qel_core_zher2k_;
decltype(core::strmm) qel_core_strmm_;
decltype(core::dtrmm) qel_core_dtrmm_;
decltype(core::ctrmm) qel_core_ctrmm_;
decltype(core::ztrmm) qel_core_ztrmm_;
decltype(core::strsm) qel_core_strsm_;
decltype(core::dtrsm) qel_core_dtrsm_;
decltype(core::ctrsm) qel_core_ctrsm_;
decltype(core::ztrsm) qel_core_ztrsm_;

}  // extern "C"

}  // namespace qel
