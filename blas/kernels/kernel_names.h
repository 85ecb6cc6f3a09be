// SPDX-License-Identifier: BSD-3-Clause
// Function types of the kernels and the declarations of every level's own ones, for the dispatch rows and the
// level tests. A level declares a routine only where it has a kernel of its own.
#pragma once

#include "service/core_types.h"

namespace qel {

template <class R>
using dot_fn = R(const core_int* n, const R* x, const core_int* incx, const R* y, const core_int* incy);
template <class C>
using complex_dot_fn = void(C* result, const core_int* n, const C* x, const core_int* incx, const C* y,
                            const core_int* incy);
template <class T>
using axpy_fn = void(const core_int* n, const T* alpha, const T* x, const core_int* incx, T* y,
                     const core_int* incy);
template <class T>
using copy_fn = void(const core_int* n, const T* x, const core_int* incx, T* y, const core_int* incy);
/// Factor of type F, vector of type T.
template <class F, class T>
using scal_fn = void(const core_int* n, const F* alpha, T* x, const core_int* incx);
/// A sum or norm of type R over a vector of type T.
template <class R, class T>
using norm_fn = R(const core_int* n, const T* x, const core_int* incx);
template <class T>
using index_fn = core_int(const core_int* n, const T* x, const core_int* incx);
using ddot_fn = dot_fn<double>;
template <class T>
using swap_fn = void(const core_int* n, T* x, const core_int* incx, T* y, const core_int* incy);
/// Rotation by c and s of type R of vectors of type T.
template <class R, class T>
using rot_fn = void(const core_int* n, T* x, const core_int* incx, T* y, const core_int* incy, const R* c,
                    const R* s);
template <class R>
using rotm_fn = void(const core_int* n, R* x, const core_int* incx, R* y, const core_int* incy,
                     const R* param);

namespace l0_generic {
dot_fn<float> sdot;
dot_fn<double> ddot;
complex_dot_fn<complex8> cdotu, cdotc;
complex_dot_fn<complex16> zdotu, zdotc;
axpy_fn<float> saxpy;
axpy_fn<double> daxpy;
axpy_fn<complex8> caxpy;
axpy_fn<complex16> zaxpy;
copy_fn<float> scopy;
copy_fn<double> dcopy;
copy_fn<complex8> ccopy;
copy_fn<complex16> zcopy;
scal_fn<float, float> sscal;
scal_fn<double, double> dscal;
scal_fn<complex8, complex8> cscal;
scal_fn<complex16, complex16> zscal;
scal_fn<float, complex8> csscal;
scal_fn<double, complex16> zdscal;
norm_fn<float, float> sasum, snrm2;
norm_fn<double, double> dasum, dnrm2;
norm_fn<float, complex8> scasum, scnrm2;
norm_fn<double, complex16> dzasum, dznrm2;
index_fn<float> isamax, isamin;
index_fn<double> idamax, idamin;
index_fn<complex8> icamax, icamin;
index_fn<complex16> izamax, izamin;
}  // namespace l0_generic

namespace l1_sse3 {
dot_fn<float> sdot;
dot_fn<double> ddot;
complex_dot_fn<complex8> cdotu, cdotc;
complex_dot_fn<complex16> zdotu, zdotc;
axpy_fn<float> saxpy;
axpy_fn<double> daxpy;
axpy_fn<complex8> caxpy;
axpy_fn<complex16> zaxpy;
}  // namespace l1_sse3

namespace l2_ssse3 {
dot_fn<float> sdot;
dot_fn<double> ddot;
complex_dot_fn<complex8> cdotu, cdotc;
complex_dot_fn<complex16> zdotu, zdotc;
axpy_fn<float> saxpy;
axpy_fn<double> daxpy;
axpy_fn<complex8> caxpy;
axpy_fn<complex16> zaxpy;
copy_fn<float> scopy;
copy_fn<double> dcopy;
copy_fn<complex8> ccopy;
copy_fn<complex16> zcopy;
}  // namespace l2_ssse3

// Native: everything, fused.
namespace l5_avx2 {
dot_fn<float> sdot;
dot_fn<double> ddot;
complex_dot_fn<complex8> cdotu, cdotc;
complex_dot_fn<complex16> zdotu, zdotc;
axpy_fn<float> saxpy;
axpy_fn<double> daxpy;
axpy_fn<complex8> caxpy;
axpy_fn<complex16> zaxpy;
copy_fn<float> scopy;
copy_fn<double> dcopy;
copy_fn<complex8> ccopy;
copy_fn<complex16> zcopy;
scal_fn<float, float> sscal;
scal_fn<double, double> dscal;
scal_fn<complex8, complex8> cscal;
scal_fn<complex16, complex16> zscal;
scal_fn<float, complex8> csscal;
scal_fn<double, complex16> zdscal;
norm_fn<float, float> sasum, snrm2;
norm_fn<double, double> dasum, dnrm2;
norm_fn<float, complex8> scasum, scnrm2;
norm_fn<double, complex16> dzasum, dznrm2;
index_fn<float> isamax, isamin;
index_fn<double> idamax, idamin;
index_fn<complex8> icamax, icamin;
index_fn<complex16> izamax, izamin;
swap_fn<float> sswap;
swap_fn<double> dswap;
swap_fn<complex8> cswap;
swap_fn<complex16> zswap;
rot_fn<float, float> srot;
rot_fn<double, double> drot;
rot_fn<float, complex8> csrot;
rot_fn<double, complex16> zdrot;
rotm_fn<float> srotm;
rotm_fn<double> drotm;
index_fn<float> isamax_slice, isamin_slice;
index_fn<double> idamax_slice, idamin_slice;
index_fn<complex8> icamax_slice, icamin_slice;
index_fn<complex16> izamax_slice, izamin_slice;
}  // namespace l5_avx2

}  // namespace qel
