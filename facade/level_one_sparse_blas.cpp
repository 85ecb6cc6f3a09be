// SPDX-License-Identifier: BSD-3-Clause
#include "tavik/kernel/level_one_sparse_blas.h"

#include "facade/data_block.h"
#include "qel/blas.h"
#include "qel/sparse.h"

namespace Tavik::Kernel {
namespace {

/// Element offset of a full vector. One checked access.
template <class T>
auto* at(const Core::Array<T>& array, int offset) {
  return entry_pointer(&array[offset]);
}

}  // namespace

void LevelOneSparseBlas::axpyi(int n, float alpha, const Core::Array<float>& x, const Core::Array<int>& indx,
                               const Core::Array<float>& y, int yOffset) {
  saxpyi(&n, &alpha, array_pointer(x), &indx[0], at(y, yOffset));
}
void LevelOneSparseBlas::axpyi(int n, double alpha, const Core::Array<double>& x,
                               const Core::Array<int>& indx, const Core::Array<double>& y, int yOffset) {
  daxpyi(&n, &alpha, array_pointer(x), &indx[0], at(y, yOffset));
}
void LevelOneSparseBlas::axpyi(int n, Core::DoubleComplex alpha, const Core::Array<Core::DoubleComplex>& x,
                               const Core::Array<int>& indx, const Core::Array<Core::DoubleComplex>& y,
                               int yOffset) {
  zaxpyi(&n, entry_pointer(&alpha), array_pointer(x), &indx[0], at(y, yOffset));
}

void LevelOneSparseBlas::scal(int n, float alpha, const Core::Array<float>& x, int incx) {
  sscal(&n, &alpha, array_pointer(x), &incx);
}
void LevelOneSparseBlas::scal(int n, double alpha, const Core::Array<double>& x, int incx) {
  dscal(&n, &alpha, array_pointer(x), &incx);
}
void LevelOneSparseBlas::scal(int n, Core::DoubleComplex alpha, const Core::Array<Core::DoubleComplex>& x,
                              int incx) {
  zscal(&n, entry_pointer(&alpha), array_pointer(x), &incx);
}

double LevelOneSparseBlas::doti(int n, const Core::Array<double>& x, const Core::Array<int>& indx,
                                const Core::Array<double>& y, int yOffset) {
  return ddoti(&n, array_pointer(x), &indx[0], at(y, yOffset));
}
Core::DoubleComplex LevelOneSparseBlas::doti(int n, const Core::Array<Core::DoubleComplex>& x,
                                             const Core::Array<int>& indx,
                                             const Core::Array<Core::DoubleComplex>& y, int yOffset) {
  Core::DoubleComplex result(0, 0);
  zdotui(entry_pointer(&result), &n, array_pointer(x), &indx[0], at(y, yOffset));
  return result;
}

void LevelOneSparseBlas::gthr(int n, const Core::Array<double>& y, int yOffset, const Core::Array<double>& x,
                              const Core::Array<int>& indx) {
  dgthr(&n, at(y, yOffset), array_pointer(x), &indx[0]);
}
void LevelOneSparseBlas::gthr(int n, const Core::Array<Core::DoubleComplex>& y, int yOffset,
                              const Core::Array<Core::DoubleComplex>& x, const Core::Array<int>& indx) {
  zgthr(&n, at(y, yOffset), array_pointer(x), &indx[0]);
}

void LevelOneSparseBlas::gthrz(int n, const Core::Array<double>& y, int yOffset, const Core::Array<double>& x,
                               const Core::Array<int>& indx) {
  dgthrz(&n, at(y, yOffset), array_pointer(x), &indx[0]);
}
void LevelOneSparseBlas::gthrz(int n, const Core::Array<Core::DoubleComplex>& y, int yOffset,
                               const Core::Array<Core::DoubleComplex>& x, const Core::Array<int>& indx) {
  zgthrz(&n, at(y, yOffset), array_pointer(x), &indx[0]);
}

void LevelOneSparseBlas::sctr(int n, const Core::Array<double>& x, const Core::Array<int>& indx,
                              const Core::Array<double>& y) {
  dsctr(&n, array_pointer(x), &indx[0], array_pointer(y));
}
void LevelOneSparseBlas::sctr(int n, const Core::Array<Core::DoubleComplex>& x, const Core::Array<int>& indx,
                              const Core::Array<Core::DoubleComplex>& y) {
  zsctr(&n, array_pointer(x), &indx[0], array_pointer(y));
}

}  // namespace Tavik::Kernel
