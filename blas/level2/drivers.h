// SPDX-License-Identifier: BSD-3-Clause
// From the arguments of the core routines to kernels, one template per routine: threads where a plan says so,
// else the kernel on the calling thread. Included by the routines' files of this folder.
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
/// Lowest address of some elements of a vector of n elements with base x.
template <class T>
T* part_base(T* x, core_int n, core_int inc, part_range part) {
  return slice_base(x, n, inc, {part.first, part.last - part.first});
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
  on_threads(plan.threads, [&](int t) {
    const part_range part = gemv_part(plan, transposed ? n : m, t);
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

template <class T>
inline void gbmv(char trans, core_int m, core_int n, core_int kl, core_int ku, T alpha, const T* a,
                 core_int lda, const T* x, core_int incx, T beta, T* y, core_int incy) {
  general<T>().gbmv(op_of(trans), m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
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

// Hermitian, for real types symmetric, matrices.

template <class T>
inline void hemv(char uplo, core_int n, T alpha, const T* a, core_int lda, const T* x, core_int incx, T beta,
                 T* y, core_int incy) {
  hermitian<T>().product(full_triangle(uplo, n, a, lda), false, alpha, x, incx, beta, y, incy);
}
template <class T>
inline void hbmv(char uplo, core_int n, core_int k, T alpha, const T* a, core_int lda, const T* x,
                 core_int incx, T beta, T* y, core_int incy) {
  hermitian<T>().product(banded_triangle(uplo, n, k, a, lda), false, alpha, x, incx, beta, y, incy);
}
template <class T>
inline void hpmv(char uplo, core_int n, T alpha, const T* ap, const T* x, core_int incx, T beta, T* y,
                 core_int incy) {
  hermitian<T>().product(packed_triangle(uplo, n, ap), false, alpha, x, incx, beta, y, incy);
}
/// Symmetric, also for complex types.
template <class T>
inline void spmv(char uplo, core_int n, T alpha, const T* ap, const T* x, core_int incx, T beta, T* y,
                 core_int incy) {
  hermitian<T>().product(packed_triangle(uplo, n, ap), true, alpha, x, incx, beta, y, incy);
}
template <class T>
inline void her(char uplo, core_int n, real_of<T> alpha, const T* x, core_int incx, T* a, core_int lda) {
  hermitian<T>().update(full_triangle(uplo, n, a, lda), alpha, x, incx);
}
template <class T>
inline void hpr(char uplo, core_int n, real_of<T> alpha, const T* x, core_int incx, T* ap) {
  hermitian<T>().update(packed_triangle(uplo, n, ap), alpha, x, incx);
}
template <class T>
inline void her2(char uplo, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy, T* a,
                 core_int lda) {
  hermitian<T>().update2(full_triangle(uplo, n, a, lda), alpha, x, incx, y, incy);
}
template <class T>
inline void hpr2(char uplo, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy,
                 T* ap) {
  hermitian<T>().update2(packed_triangle(uplo, n, ap), alpha, x, incx, y, incy);
}

// Triangular matrices.

/// Copies x, which threads overwrite part by part while others read it.
template <class T>
void copy_vector(core_int n, const T* x, core_int incx, T* copy, int threads) {
  const T* first = incx < 0 ? x + (1 - n) * incx : x;
  if (threads < 2) {
    for (core_int i = 0; i < n; ++i) copy[i] = first[i * incx];
    return;
  }
  const gemv_plan slices{threads, n / threads, ""};
  on_threads(threads, [&](int t) {
    const part_range part = gemv_part(slices, n, t);
    std::copy(x + part.first, x + part.last, copy + part.first);
  });
}

template <class T>
[[gnu::noinline]] void large_trmv(const stored_triangle<const T>& a, matrix_op op, bool unit, T* x,
                                  core_int incx) {
  const auto& kernels = triangular<T>();
  const trmv_plan plan =
      choose_trmv_threads(a.upper, op != matrix_op::kNone, a.n, incx, sizeof(T),
                          current_level2_facts(a.n * a.n / 2 * static_cast<core_int>(sizeof(T))));
  T* copy = nullptr;
  if (plan.threads > 1) copy = static_cast<T*>(serv_malloc(static_cast<size_t>(a.n) * sizeof(T), 128));
  if (copy == nullptr) return kernels.product(a, op, unit, x, incx);
  copy_vector(a.n, x, incx, copy, plan.copy_threads);
  on_threads(plan.threads, [&](int t) {
    const part_range part = trmv_part(plan, a.n, t);
    kernels.product_part(a, op, unit, copy, x, incx, part.first, part.last);
  });
  serv_free(copy);
}
template <class T>
inline void trmv(char uplo, char trans, char diag, core_int n, const T* a, core_int lda, T* x,
                 core_int incx) {
  const auto triangle = full_triangle(uplo, n, a, lda);
  const bool unit = blas::letter_is(diag, 'U');
  if (n < kSmallestForkingTrmv) return triangular<T>().product(triangle, op_of(trans), unit, x, incx);
  large_trmv(triangle, op_of(trans), unit, x, incx);
}
template <class T>
inline void tbmv(char uplo, char trans, char diag, core_int n, core_int k, const T* a, core_int lda, T* x,
                 core_int incx) {
  triangular<T>().product(banded_triangle(uplo, n, k, a, lda), op_of(trans), blas::letter_is(diag, 'U'), x,
                          incx);
}
template <class T>
inline void tpmv(char uplo, char trans, char diag, core_int n, const T* ap, T* x, core_int incx) {
  triangular<T>().product(packed_triangle(uplo, n, ap), op_of(trans), blas::letter_is(diag, 'U'), x, incx);
}
template <class T>
inline void trsv(char uplo, char trans, char diag, core_int n, const T* a, core_int lda, T* x,
                 core_int incx) {
  triangular<T>().solution(full_triangle(uplo, n, a, lda), op_of(trans), blas::letter_is(diag, 'U'), x, incx);
}
template <class T>
inline void tbsv(char uplo, char trans, char diag, core_int n, core_int k, const T* a, core_int lda, T* x,
                 core_int incx) {
  triangular<T>().solution(banded_triangle(uplo, n, k, a, lda), op_of(trans), blas::letter_is(diag, 'U'), x,
                           incx);
}
template <class T>
inline void tpsv(char uplo, char trans, char diag, core_int n, const T* ap, T* x, core_int incx) {
  triangular<T>().solution(packed_triangle(uplo, n, ap), op_of(trans), blas::letter_is(diag, 'U'), x, incx);
}

}  // namespace qel::level2
