// SPDX-License-Identifier: BSD-3-Clause
// Drivers of Hermitian, for real types symmetric, matrices. An update is shared out by columns. In a product
// each stored element takes part twice, so threads sum into vectors of their own, and add them to y in the
// order of the threads once all have met.
#pragma once

#include "blas/level2/drivers.h"

namespace qel::level2 {

/// y = beta y + the sums of the threads, in elements first .. last - 1; sums(t) and touched(t) say where
/// thread t's are and which of them it has.
template <class T, class Sums, class Touched>
void add_sums(int threads, part_range rows, T beta, T* y, core_int incy, Sums sums, Touched touched) {
  T one{};
  reinterpret_cast<real_of<T>&>(one) = 1;
  if (beta == T{}) {
    for (core_int i = rows.first; i < rows.last; ++i) y[i * incy] = T{};
  } else if (!(beta == one)) {
    for (core_int i = rows.first; i < rows.last; ++i) y[i * incy] = beta * y[i * incy];
  }
  for (int t = 0; t < threads; ++t) {
    const T* const from = sums(t);
    const part_range part = touched(t);
    for (core_int i = std::max(rows.first, part.first); i < std::min(rows.last, part.last); ++i) {
      y[i * incy] = y[i * incy] + from[i];
    }
  }
}

template <class T>
[[gnu::noinline]] void large_hermitian_product(const stored_triangle<const T>& a, bool symmetric, T alpha,
                                               const T* x, core_int incx, T beta, T* y, core_int incy) {
  const auto& kernels = hermitian<T>();
  const triangle_plan plan = choose_triangle_threads(triangle_work::kMirroredProduct, a.upper, a.n, a.k,
                                                     sizeof(T), current_level2_facts(bytes_of(a)));
  T* all_sums = nullptr;
  if (plan.threads > 1) {
    all_sums = static_cast<T*>(serv_malloc(static_cast<size_t>(plan.threads * a.n) * sizeof(T), 128));
  }
  if (all_sums == nullptr) return kernels.product(a, symmetric, alpha, x, incx, beta, y, incy);
  const auto sums = [&](int t) { return all_sums + t * a.n; };
  // The columns of a part reach the rows above or below them.
  const auto touched = [&](int t) -> part_range {
    const part_range part = triangle_part(plan, a.n, t);
    if (a.upper) return {std::max<core_int>(0, part.first - a.k), part.last};
    return {part.first, std::min(a.n, part.last + a.k)};
  };
  const gemv_plan slices{plan.threads, a.n / plan.threads, ""};
  T* const first = incy < 0 ? y + (1 - a.n) * incy : y;
#pragma omp parallel num_threads(plan.threads)
  {
#pragma omp for schedule(static, 1)
    for (int t = 0; t < plan.threads; ++t) {
      const part_range part = triangle_part(plan, a.n, t), rows = touched(t);
      std::fill(sums(t) + rows.first, sums(t) + rows.last, T{});
      kernels.product_part(a, symmetric, alpha, x, incx, sums(t), part.first, part.last);
    }
#pragma omp for schedule(static, 1)
    for (int t = 0; t < plan.threads; ++t) {
      add_sums(plan.threads, gemv_part(slices, a.n, t), beta, first, incy, sums, touched);
    }
  }
  serv_free(all_sums);
}
template <class T>
inline void hermitian_product(const stored_triangle<const T>& a, bool symmetric, T alpha, const T* x,
                              core_int incx, T beta, T* y, core_int incy) {
  if (a.n < kSmallestForkingTrmv || alpha == T{}) {
    return hermitian<T>().product(a, symmetric, alpha, x, incx, beta, y, incy);
  }
  large_hermitian_product(a, symmetric, alpha, x, incx, beta, y, incy);
}

/// Calls work(first, last) for columns of a triangle that is updated.
template <class T, class Work>
[[gnu::noinline]] void on_many_columns(const stored_triangle<T>& a, const Work& work) {
  const triangle_plan plan = choose_triangle_threads(triangle_work::kUpdate, a.upper, a.n, a.k, sizeof(T),
                                                     current_level2_facts(bytes_of(a)));
  if (plan.threads < 2) return work(0, a.n);
  on_threads(plan.threads, [&](int t) {
    const part_range part = triangle_part(plan, a.n, t);
    work(part.first, part.last);
  });
}
template <class T, class Work>
inline void on_columns(const stored_triangle<T>& a, const Work& work) {
  if (a.n < kSmallestForkingTrmv) return work(0, a.n);
  on_many_columns(a, work);
}
template <class T>
inline void update(const stored_triangle<T>& a, real_of<T> alpha, const T* x, core_int incx) {
  on_columns(a,
             [&](core_int first, core_int last) { hermitian<T>().update(a, alpha, x, incx, first, last); });
}
template <class T>
inline void update2(const stored_triangle<T>& a, T alpha, const T* x, core_int incx, const T* y,
                    core_int incy) {
  on_columns(a, [&](core_int first, core_int last) {
    hermitian<T>().update2(a, alpha, x, incx, y, incy, first, last);
  });
}

template <class T>
inline void hemv(char uplo, core_int n, T alpha, const T* a, core_int lda, const T* x, core_int incx, T beta,
                 T* y, core_int incy) {
  hermitian_product<T>(full_triangle(uplo, n, a, lda), false, alpha, x, incx, beta, y, incy);
}
template <class T>
inline void hbmv(char uplo, core_int n, core_int k, T alpha, const T* a, core_int lda, const T* x,
                 core_int incx, T beta, T* y, core_int incy) {
  hermitian_product<T>(banded_triangle(uplo, n, k, a, lda), false, alpha, x, incx, beta, y, incy);
}
template <class T>
inline void hpmv(char uplo, core_int n, T alpha, const T* ap, const T* x, core_int incx, T beta, T* y,
                 core_int incy) {
  hermitian_product<T>(packed_triangle(uplo, n, ap), false, alpha, x, incx, beta, y, incy);
}
/// Symmetric, also for complex types.
template <class T>
inline void spmv(char uplo, core_int n, T alpha, const T* ap, const T* x, core_int incx, T beta, T* y,
                 core_int incy) {
  hermitian_product<T>(packed_triangle(uplo, n, ap), true, alpha, x, incx, beta, y, incy);
}
template <class T>
inline void her(char uplo, core_int n, real_of<T> alpha, const T* x, core_int incx, T* a, core_int lda) {
  update(full_triangle(uplo, n, a, lda), alpha, x, incx);
}
template <class T>
inline void hpr(char uplo, core_int n, real_of<T> alpha, const T* x, core_int incx, T* ap) {
  update(packed_triangle(uplo, n, ap), alpha, x, incx);
}
template <class T>
inline void her2(char uplo, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy, T* a,
                 core_int lda) {
  update2(full_triangle(uplo, n, a, lda), alpha, x, incx, y, incy);
}
template <class T>
inline void hpr2(char uplo, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy,
                 T* ap) {
  update2(packed_triangle(uplo, n, ap), alpha, x, incx, y, incy);
}

}  // namespace qel::level2
