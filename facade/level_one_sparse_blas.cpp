// SPDX-License-Identifier: BSD-3-Clause
#include "tavik/kernel/level_one_sparse_blas.h"

#include "facade/calls.h"
#include "qel/blas.h"
#include "qel/sparse.h"

namespace Tavik::Kernel {
namespace {

/// Element offset of a full vector. One checked access.
template <class T>
auto* at(const Core::Array<T>& array, int offset) {
  return &array[offset];
}

}  // namespace

void LevelOneSparseBlas::axpyi(int n, float alpha, const Core::Array<float>& x, const Core::Array<int>& indx,
                               const Core::Array<float>& y, int yOffset) {
  call(saxpyi, n, alpha, array_pointer(x), &indx[0], at(y, yOffset));
}
void LevelOneSparseBlas::axpyi(int n, double alpha, const Core::Array<double>& x,
                               const Core::Array<int>& indx, const Core::Array<double>& y, int yOffset) {
  call(daxpyi, n, alpha, array_pointer(x), &indx[0], at(y, yOffset));
}
void LevelOneSparseBlas::axpyi(int n, Core::DoubleComplex alpha, const Core::Array<Core::DoubleComplex>& x,
                               const Core::Array<int>& indx, const Core::Array<Core::DoubleComplex>& y,
                               int yOffset) {
  call(zaxpyi, n, alpha, array_pointer(x), &indx[0], at(y, yOffset));
}

void LevelOneSparseBlas::scal(int n, float alpha, const Core::Array<float>& x, int incx) {
  call(sscal, n, alpha, array_pointer(x), incx);
}
void LevelOneSparseBlas::scal(int n, double alpha, const Core::Array<double>& x, int incx) {
  call(dscal, n, alpha, array_pointer(x), incx);
}
void LevelOneSparseBlas::scal(int n, Core::DoubleComplex alpha, const Core::Array<Core::DoubleComplex>& x,
                              int incx) {
  call(zscal, n, alpha, array_pointer(x), incx);
}

double LevelOneSparseBlas::doti(int n, const Core::Array<double>& x, const Core::Array<int>& indx,
                                const Core::Array<double>& y, int yOffset) {
  return call(ddoti, n, array_pointer(x), &indx[0], at(y, yOffset));
}
Core::DoubleComplex LevelOneSparseBlas::doti(int n, const Core::Array<Core::DoubleComplex>& x,
                                             const Core::Array<int>& indx,
                                             const Core::Array<Core::DoubleComplex>& y, int yOffset) {
  Core::DoubleComplex result(0, 0);
  call(zdotui, &result, n, array_pointer(x), &indx[0], at(y, yOffset));
  return result;
}

void LevelOneSparseBlas::gthr(int n, const Core::Array<double>& y, int yOffset, const Core::Array<double>& x,
                              const Core::Array<int>& indx) {
  call(dgthr, n, at(y, yOffset), array_pointer(x), &indx[0]);
}
void LevelOneSparseBlas::gthr(int n, const Core::Array<Core::DoubleComplex>& y, int yOffset,
                              const Core::Array<Core::DoubleComplex>& x, const Core::Array<int>& indx) {
  call(zgthr, n, at(y, yOffset), array_pointer(x), &indx[0]);
}

void LevelOneSparseBlas::gthrz(int n, const Core::Array<double>& y, int yOffset, const Core::Array<double>& x,
                               const Core::Array<int>& indx) {
  call(dgthrz, n, at(y, yOffset), array_pointer(x), &indx[0]);
}
void LevelOneSparseBlas::gthrz(int n, const Core::Array<Core::DoubleComplex>& y, int yOffset,
                               const Core::Array<Core::DoubleComplex>& x, const Core::Array<int>& indx) {
  call(zgthrz, n, at(y, yOffset), array_pointer(x), &indx[0]);
}

void LevelOneSparseBlas::sctr(int n, const Core::Array<double>& x, const Core::Array<int>& indx,
                              const Core::Array<double>& y) {
  call(dsctr, n, array_pointer(x), &indx[0], array_pointer(y));
}
void LevelOneSparseBlas::sctr(int n, const Core::Array<Core::DoubleComplex>& x, const Core::Array<int>& indx,
                              const Core::Array<Core::DoubleComplex>& y) {
  call(zsctr, n, array_pointer(x), &indx[0], array_pointer(y));
}

}  // namespace Tavik::Kernel
