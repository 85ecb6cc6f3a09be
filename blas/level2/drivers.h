// SPDX-License-Identifier: BSD-3-Clause
// From the arguments of the core routines to kernels, one template per routine: threads where a plan says so,
// else the kernel on the calling thread. Here what all of them share, and the general matrices. Included by
// the routines' files of this folder.
#pragma once

#include <algorithm>

#include "blas/level1/slices.h"
#include "blas/level2/level2_rows.h"
#include "blas/level2/thread_plans.h"
#include "blas/level2/triangles.h"
#include "service/complex_arithmetic.h"

namespace qel::level2 {

template <class T>
const auto& general() {
  return bound_table<level2_rows<T>::general>();
}
template <class T>
const auto& hermitian() {
  return bound_table<level2_rows<T>::hermitian>();
}
template <class T>
const auto& triangular() {
  return bound_table<level2_rows<T>::triangular>();
}

/// Calls work(t) for each of the threads.
template <class Work>
void on_threads(int threads, const Work& work) {
#pragma omp parallel for num_threads(threads) schedule(static, 1)
  for (int t = 0; t < threads; ++t) work(t);
}
/// Bytes of the elements that a triangle stores.
template <class E>
core_int bytes_of(const stored_triangle<E>& a) {
  const core_int elements = a.k < a.n ? a.n * (a.k + 1) : a.n * a.n / 2;
  return elements * static_cast<core_int>(sizeof(E));
}
/// Lowest address of some elements of a vector of n elements with base x.
template <class T>
T* part_base(T* x, core_int n, core_int inc, part_range part) {
  return slice_base(x, n, inc, {part.first, part.last - part.first});
}

/// Elements between the last cache line's start before x and x; 0 if lines don't start with elements.
template <class T>
core_int past_line(const T* x) {
  const auto past = reinterpret_cast<uintptr_t>(x) % 64;
  return past % sizeof(T) == 0 ? static_cast<core_int>(past / sizeof(T)) : 0;
}

// General matrices.

template <class T>
[[gnu::noinline]] void large_gemv(matrix_op op, core_int m, core_int n, T alpha, const T* a, core_int lda,
                                  const T* x, core_int incx, T beta, T* y, core_int incy) {
  const bool transposed = op != matrix_op::kNone;
  const gemv_plan plan = choose_gemv_threads(transposed, m, n, sizeof(T),
                                             current_level2_facts(m * n * static_cast<core_int>(sizeof(T))));
  const auto& kernels = general<T>();
  if (plan.threads < 2) return kernels.gemv(op, m, n, alpha, a, lda, x, incx, beta, y, incy);
  const core_int past = plan.by_lines && incy == 1 ? past_line(y) : 0;
  on_threads(plan.threads, [&](int t) {
    const part_range part = gemv_part(plan, transposed ? n : m, t, past);
    const core_int size = part.last - part.first;
    if (transposed) {
      kernels.gemv(op, m, size, alpha, a + part.first * lda, lda, x, incx, beta, part_base(y, n, incy, part),
                   incy);
    } else {
      kernels.gemv(op, size, n, alpha, a + part.first, lda, x, incx, beta, part_base(y, m, incy, part), incy);
    }
  });
}
template <class T>
inline void gemv(char trans, core_int m, core_int n, T alpha, const T* a, core_int lda, const T* x,
                 core_int incx, T beta, T* y, core_int incy) {
  if (m < 1 || n < 1) return;
  if (m < kSmallestForkingGemv && n < kSmallestForkingGemv) {
    return general<T>().gemv(op_of(trans), m, n, alpha, a, lda, x, incx, beta, y, incy);
  }
  large_gemv(op_of(trans), m, n, alpha, a, lda, x, incx, beta, y, incy);
}

/// Rows or columns of a band are a band of their own, whose main diagonal lies elsewhere.
template <class T>
[[gnu::noinline]] void large_gbmv(matrix_op op, core_int m, core_int n, core_int kl, core_int ku, T alpha,
                                  const T* a, core_int lda, const T* x, core_int incx, T beta, T* y,
                                  core_int incy) {
  const bool transposed = op != matrix_op::kNone;
  const core_int bytes = std::min(n, m + ku) * std::min(m, kl + ku + 1) * static_cast<core_int>(sizeof(T));
  const gemv_plan plan =
      choose_gbmv_threads(transposed, m, n, kl, ku, sizeof(T), current_level2_facts(bytes));
  const auto& kernels = general<T>();
  if (plan.threads < 2) return kernels.gbmv(op, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
  const core_int from = transposed ? m : n, above = transposed ? ku : kl, below = transposed ? kl : ku;
  on_threads(plan.threads, [&](int t) {
    const part_range own = gemv_part(plan, transposed ? n : m, t);
    // What of x the part meets. Nothing: y is scaled all the same.
    const part_range met{std::max<core_int>(0, own.first - above), std::min(from, own.last + below)};
    const bool none = met.first >= met.last;
    const core_int size = none ? 1 : met.last - met.first, shift = none ? 0 : own.first - met.first;
    const core_int column = transposed ? own.first : met.first;
    T* ys = part_base(y, transposed ? n : m, incy, own);
    const T* xs = none ? x : part_base(x, from, incx, met);
    const T factor = none ? T{} : alpha;
    if (transposed) {
      kernels.gbmv(op, size, own.last - own.first, kl + shift, ku - shift, factor, a + column * lda, lda, xs,
                   incx, beta, ys, incy);
    } else {
      kernels.gbmv(op, own.last - own.first, size, kl - shift, ku + shift, factor, a + column * lda, lda, xs,
                   incx, beta, ys, incy);
    }
  });
}
template <class T>
inline void gbmv(char trans, core_int m, core_int n, core_int kl, core_int ku, T alpha, const T* a,
                 core_int lda, const T* x, core_int incx, T beta, T* y, core_int incy) {
  if (m < 1 || n < 1) return;
  if (std::max(m, n) < kSmallestForkingGbmv) {
    return general<T>().gbmv(op_of(trans), m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
  }
  large_gbmv(op_of(trans), m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}

template <class T>
void ger(bool conjugated, core_int m, core_int n, T alpha, const T* x, core_int incx, const T* y,
         core_int incy, T* a, core_int lda) {
  if (m < 1 || n < 1) return;
  const auto& kernels = general<T>();
  if (m < kSmallestForkingGemv && n < kSmallestForkingGemv) {
    return kernels.ger(conjugated, m, n, alpha, x, incx, y, incy, a, lda);
  }
  const gemv_plan plan =
      choose_ger_threads(m, n, sizeof(T), current_level2_facts(m * n * static_cast<core_int>(sizeof(T))));
  if (plan.threads < 2) return kernels.ger(conjugated, m, n, alpha, x, incx, y, incy, a, lda);
  on_threads(plan.threads, [&](int t) {
    const part_range part = gemv_part(plan, n, t);
    kernels.ger(conjugated, m, part.last - part.first, alpha, x, incx, part_base(y, n, incy, part), incy,
                a + part.first * lda, lda);
  });
}
template <class T>
inline void geru(core_int m, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy, T* a,
                 core_int lda) {
  ger(false, m, n, alpha, x, incx, y, incy, a, lda);
}
template <class T>
inline void gerc(core_int m, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy, T* a,
                 core_int lda) {
  ger(true, m, n, alpha, x, incx, y, incy, a, lda);
}

}  // namespace qel::level2
