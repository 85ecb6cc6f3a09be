// SPDX-License-Identifier: BSD-3-Clause
// Sums of |x_i|, of |re| + |im| if complex, for all levels; the sign bit is cleared.
//
// Order of summation, strides 1 and -1: four accumulators as four_sums.inl.h tells; 16 registers a step, then
// 8, 4, 2, 1. A complex vector is twice as many reals. A vector that no peeling aligns takes the same steps
// with unaligned loads and no peel.
// Other strides: registers of gathered elements go alternately to accumulators 0 and 1, then one more to 0;
// what fills no register and the end are as before. Stride 0 adds the one element n times in a row.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/shared/four_sums.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R, class Stream>
struct magnitude_sum {
  four_sums<R> sum;
  Stream x;
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
#pragma GCC unroll 16
    for (int k = 0; k < kRegisters; ++k) sum.add(k, lanes<R>::magnitude(x.get(k)));
    x.advance(kRegisters);
  }
};

template <class R, class Stream>
inline R sum_registers(core_int left, Stream x, const R* peeled, core_int peeled_count) {
  magnitude_sum<R, Stream> asum{four_sums<R>(peeled, peeled_count), x};
  left = run_tiers<16, 8, 4, 2, 1>(asum, left, lanes<R>::kCount, 0);
  return asum.sum.total(left, [&](core_int i) { return magnitude(element_at(asum.x.at + i)); });
}

template <class R>
inline R sum_contiguous(core_int n, const R* x) {
  core_int peeled = elements_to_boundary(x);
  if (peeled < 0) return sum_registers<R>(n, unaligned_stream<R>{x}, nullptr, 0);
  if (peeled > n) peeled = n;
  R start[lanes<R>::kCount];
  for (core_int i = 0; i < peeled; ++i) start[i] = magnitude(x[i]);
  return sum_registers<R>(n - peeled, aligned_stream<R>{x + peeled}, start, peeled);
}

template <class R, class T>
inline R sum_strided(core_int n, const T* x, core_int inc) {
  using stream = strided_stream<T>;
  magnitude_sum<R, stream> asum{four_sums<R>(nullptr, 0), {first_element(x, n, inc), inc}};
  const core_int left = run_tiers<2, 1>(asum, n, stream::kElements, 0);
  return asum.sum.total(left * parts<T>::kCount, [&](core_int i) {
    const T* element = asum.x.at + i / parts<T>::kCount * inc;
    return magnitude(element_at(reinterpret_cast<const R*>(element) + i % parts<T>::kCount));
  });
}

template <class R, class T>
inline R sum_repeated(core_int n, const T* x) {
  const R* part = reinterpret_cast<const R*>(x);
  R each = magnitude(element_at(part)), sum = 0;
  if (parts<T>::kCount == 2) each += magnitude(element_at(part + 1));
  for (core_int i = 0; i < n; ++i) sum += each;
  return sum;
}

template <class R, class T>
inline R asum(core_int n, const T* x, core_int inc) {
  if (n <= 0) return 0;
  if (inc == 1 || inc == -1) return sum_contiguous(n * parts<T>::kCount, reinterpret_cast<const R*>(x));
  if (inc == 0) return sum_repeated<R>(n, x);
  return sum_strided<R>(n, x, inc);
}

}  // namespace
}  // namespace qel::QEL_LEVEL

#include "blas/kernels/shared/asum_exports.inl.h"
