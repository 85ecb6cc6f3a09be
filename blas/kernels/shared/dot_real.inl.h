// SPDX-License-Identifier: BSD-3-Clause
// Real dot products for SSE3 and later.
//
// Order of summation: two accumulator registers a and b. Element i belongs to class i mod 4 (single: mod 8);
// each class has its own lane and is summed in order of i. At the end the classes are added, neighbours
// first: (class 0 + class 1) + (class 2 + class 3), and so on for single.
// Every alignment keeps to this order, so the result does not depend on where the vectors lie:
//   equal alignment     the elements before the boundary are peeled into the upper lanes of b, so that the
//                       classes are rotated among the lanes; the registers go alternately to a and b
//   different           the second vector is the aligned one (they are exchanged if need be, a product does
//                       not care) or is peeled; the other is rebuilt from aligned loads
//   not a whole number of elements off, or too short: unaligned loads
#pragma once

#include "blas/kernels/shared/dot_strided.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R, class X, class Y>
struct contiguous_dot {
  X x;
  Y y;
  typename lanes<R>::reg a, b;
  bool next_is_b = false;  // only a tier of one register leaves the turn with b
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
#pragma GCC unroll 16
    for (int k = 0; k < kRegisters; k += 2) {
      a = lanes<R>::add(a, lanes<R>::mul(x.get(k), y.get(k)));
      if (k + 1 < kRegisters) b = lanes<R>::add(b, lanes<R>::mul(x.get(k + 1), y.get(k + 1)));
    }
    next_is_b = kRegisters == 1;
    x.advance(kRegisters);
    y.advance(kRegisters);
  }
};

/// The lanes of a, then those of b, neighbours first.
inline double tree_sum_of(__m128d a, __m128d b) {
  const __m128d pairs = _mm_hadd_pd(a, b);
  return _mm_cvtsd_f64(_mm_hadd_pd(pairs, pairs));
}
inline float tree_sum_of(__m128 a, __m128 b) {
  const __m128 pairs = _mm_hadd_ps(a, b), halves = _mm_hadd_ps(pairs, pairs);
  return _mm_cvtss_f32(_mm_hadd_ps(halves, halves));
}

/// The sum of the dot's accumulators, `peeled` lanes rotated, and of the `left` elements from its streams'
/// positions.
template <class R, class Dot>
[[gnu::noinline]] R sum_with_rest(const Dot& dot, core_int left, core_int peeled) {
  constexpr int kLanes = lanes<R>::kCount, kClasses = 2 * kLanes;
  R sum[kClasses], by_class[kClasses];
  lanes<R>::storeu(sum, dot.a);
  lanes<R>::storeu(sum + kLanes, dot.b);
  const core_int lane = dot.next_is_b ? kLanes : 0;
  for (core_int i = 0; i < left; ++i)
    sum[(lane + i) % kClasses] += element_at(dot.x.at + i) * element_at(dot.y.at + i);
  if (peeled == 0) return tree_sum<kClasses>(sum);
  for (core_int c = 0; c < kClasses; ++c) by_class[c] = sum[(kClasses - peeled + c) % kClasses];
  return tree_sum<kClasses>(by_class);
}

/// The sum over `peeled` products, which are taken already, and `left` elements from the streams' positions.
template <class R, class X, class Y>
inline R dot_streams(core_int left, X x, Y y, const R* product, core_int peeled) {
  constexpr int kLanes = lanes<R>::kCount, kClasses = 2 * kLanes;
  // Cleared by registers: g++ would call for clearing memory, which costs more than a short product.
  R sum[kClasses];
  lanes<R>::storeu(sum, lanes<R>::zero());
  lanes<R>::storeu(sum + kLanes, lanes<R>::zero());
  for (core_int i = 0; i < peeled; ++i) sum[kClasses - peeled + i] = product[i];
  contiguous_dot<R, X, Y> dot{x, y, lanes<R>::loadu(sum), lanes<R>::loadu(sum + kLanes)};
  left = run_tiers<16, 8, 4, 2, 1>(dot, left, kLanes, X::kKeepBack);
  return sum_with_rest<R>(dot, left, peeled);
}

template <class R>
[[gnu::noinline]] R dot_misaligned(core_int n, const R* x, const R* y) {
  constexpr int kLanes = lanes<R>::kCount;
  if (misalignment(x) == 0) {
    const R* aligned = x;
    x = y;
    y = aligned;
  }
  const core_int peeled = elements_to_boundary(y);
  if (peeled < 0 || n < peeled + 2 * kLanes) {
    return dot_streams<R>(n, unaligned_stream<R>{x}, unaligned_stream<R>{y}, nullptr, 0);
  }
  R product[kLanes], result = 0;
  for (core_int i = 0; i < peeled; ++i) product[i] = element_at(x + i) * y[i];
  with_stream_beside_aligned(x + peeled, [&](auto stream) {
    result = dot_streams<R>(n - peeled, stream, aligned_stream<R>{y + peeled}, product, peeled);
  });
  return result;
}

// Aligned vectors go without a call and without memory for the accumulators: a short product takes little
// longer than that.
template <class R>
inline R dot_contiguous(core_int n, const R* x, const R* y) {
  if ((misalignment(x) | misalignment(y)) != 0) return dot_misaligned(n, x, y);
  contiguous_dot<R, aligned_stream<R>, aligned_stream<R>> dot{{y}, {x}, lanes<R>::zero(), lanes<R>::zero()};
  const core_int left = run_tiers<16, 8, 4, 2, 1>(dot, n, lanes<R>::kCount, 0);
  if (left == 0) return tree_sum_of(dot.a, dot.b);
  return sum_with_rest<R>(dot, left, 0);
}

template <class R>
inline R dot_real(core_int n, const R* x, core_int incx, const R* y, core_int incy) {
  if (n <= 0) return 0;
  // Both strides 1 or both -1 pair the same elements.
  if (incx * incy == 1) return dot_contiguous(n, x, y);
  return dot_strided(n, x, incx, y, incy);
}

}  // namespace
}  // namespace qel::QEL_LEVEL

#include "blas/kernels/shared/dot_real_exports.inl.h"
