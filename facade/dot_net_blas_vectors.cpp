// SPDX-License-Identifier: BSD-3-Clause
// Operations over level-1 entries.
#include "facade/data_block.h"
#include "qel/blas.h"
#include "tavik/kernel/dot_net_blas.h"

namespace Tavik::Kernel {
namespace {

using namespace Core;

/// A real dot entry returns its value.
template <class T, class Entry>
T real_dot(Entry entry, int n, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {
  return entry(&n, vector_pointer(n, x, incx), &incx, vector_pointer(n, y, incy), &incy);
}

/// A complex dot entry stores its value into a prepared result.
template <class T, class Entry>
T complex_dot(Entry entry, int n, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {
  T result(0, 0);
  entry(entry_pointer(&result), &n, vector_pointer(n, x, incx), &incx, vector_pointer(n, y, incy), &incy);
  return result;
}

}  // namespace

double DotNetBlas::dot(int n, const DoubleDataBlock& x, int incx, const DoubleDataBlock& y, int incy) {
  return real_dot(ddot, n, x, incx, y, incy);
}
float DotNetBlas::dot(int n, const FloatDataBlock& x, int incx, const FloatDataBlock& y, int incy) {
  return real_dot(sdot, n, x, incx, y, incy);
}
DoubleComplex DotNetBlas::dot(int n, const DoubleComplexDataBlock& x, int incx,
                              const DoubleComplexDataBlock& y, int incy) {
  return complex_dot(zdotu, n, x, incx, y, incy);
}
FloatComplex DotNetBlas::dot(int n, const FloatComplexDataBlock& x, int incx, const FloatComplexDataBlock& y,
                             int incy) {
  return complex_dot(cdotu, n, x, incx, y, incy);
}

}  // namespace Tavik::Kernel
