// SPDX-License-Identifier: BSD-3-Clause
// Drivers of triangular matrices: products by parts of x from a copy of the whole, solutions by blocks.
#pragma once

#include "blas/level2/drivers.h"

namespace qel::level2 {

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

/// x = op(A) x in parts part_of(t); false, with nothing done, without memory for the copy. in_lines: parts of
/// the result come into being in cache lines of their own, since a thread adds to its part again and again.
template <class T, class PartOf>
bool product_in_parts(const stored_triangle<const T>& a, matrix_op op, bool unit, T* x, core_int incx,
                      int threads, int copy_threads, bool in_lines, const PartOf& part_of) {
  constexpr core_int kLine = 128 / sizeof(T);
  const core_int padded = (a.n + kLine - 1) / kLine * kLine;
  T* copy = static_cast<T*>(serv_malloc(static_cast<size_t>(in_lines ? 2 * padded : a.n) * sizeof(T), 128));
  if (copy == nullptr) return false;
  copy_vector(a.n, x, incx, copy, copy_threads);
  const auto& kernels = triangular<T>();
  on_threads(threads, [&](int t) {
    const part_range part = part_of(t);
    if (!in_lines) {
      kernels.product_part(a, op, unit, copy, x, incx, part.first, part.last);
      return;
    }
    T* const result = copy + padded;
    std::copy(copy + part.first, copy + part.last, result + part.first);
    kernels.product_part(a, op, unit, copy, result, 1, part.first, part.last);
    T* const first = incx < 0 ? x + (1 - a.n) * incx : x;
    for (core_int i = part.first; i < part.last; ++i) first[i * incx] = result[i];
  });
  serv_free(copy);
  return true;
}

/// Of a full triangle; levels 2 and 3 cut those alone.
template <class T>
[[gnu::noinline]] void large_trmv(const stored_triangle<const T>& a, matrix_op op, bool unit, T* x,
                                  core_int incx) {
  const trmv_plan plan = choose_trmv_threads(a.upper, op != matrix_op::kNone, a.n, incx, sizeof(T),
                                             current_level2_facts(bytes_of(a)));
  const auto part_of = [&](int t) { return trmv_part(plan, a.n, t); };
  const bool in_lines = plan.first_zone == plan.threads;
  if (plan.threads > 1 &&
      product_in_parts(a, op, unit, x, incx, plan.threads, plan.copy_threads, in_lines, part_of)) {
    return;
  }
  triangular<T>().product(a, op, unit, x, incx);
}
/// Banded or packed.
template <class T>
[[gnu::noinline]] void large_triangular_product(const stored_triangle<const T>& a, matrix_op op, bool unit,
                                                T* x, core_int incx) {
  const bool grows = a.upper == (op != matrix_op::kNone);
  const triangle_plan plan = choose_triangle_threads(triangle_work::kProduct, grows, a.n, a.k, sizeof(T),
                                                     current_level2_facts(bytes_of(a)));
  const auto part_of = [&](int t) { return triangle_part(plan, a.n, t); };
  if (plan.threads > 1 && product_in_parts(a, op, unit, x, incx, plan.threads, 1, true, part_of)) return;
  triangular<T>().product(a, op, unit, x, incx);
}

/// Full or packed.
template <class T>
[[gnu::noinline]] void large_solution(const stored_triangle<const T>& a, matrix_op op, bool unit, T* x,
                                      core_int incx) {
  const auto& kernels = triangular<T>();
  const solution_plan plan = choose_solution_threads(a.n, sizeof(T), current_level2_facts(bytes_of(a)));
  if (plan.threads < 2) return kernels.solution(a, op, unit, x, incx);
  // Elements are counted in the order in which they become known.
  const bool forward = a.upper != (op == matrix_op::kNone);
  const auto elements = [&](core_int first, core_int last) {
    return forward ? part_range{first, last} : part_range{a.n - last, a.n - first};
  };
  const auto solve = [&](core_int first, core_int last) {
    const part_range block = elements(first, last);
    kernels.solution_part(a, op, unit, x, incx, block.first, block.last);
  };
  const auto reduce = [&](core_int known_first, core_int known_last, core_int first, core_int last) {
    const part_range known = elements(known_first, known_last), rest = elements(first, last);
    kernels.reduction_part(a, op, x, incx, known.first, known.last, rest.first, rest.last);
  };
  // Columns are read along: without a transpose the last block's reduce all that comes, with one all known
  // elements the block after next.
  const bool transposed = op != matrix_op::kNone;
  solve(0, plan.block);
#pragma omp parallel num_threads(plan.threads)
  for (core_int next = plan.block; next < a.n; next += plan.block) {
    const core_int last = next - plan.block, behind = std::min(next + plan.block, a.n);
    const core_int known = transposed ? 0 : last;
    const core_int rest = transposed ? std::min(plan.block, a.n - behind) : a.n - behind;
#pragma omp for schedule(static, 1)
    for (int t = 0; t < plan.threads; ++t) {
      if (t == 0) {
        reduce(last, next, next, behind);
        solve(next, behind);
      }
      const part_range part = solution_part(plan, next - known, rest, t);
      reduce(known, next, behind + part.first, behind + part.last);
    }
  }
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
inline void triangular_product(const stored_triangle<const T>& a, matrix_op op, char diag, T* x,
                               core_int incx) {
  const bool unit = blas::letter_is(diag, 'U');
  if (a.n < kSmallestForkingTrmv) return triangular<T>().product(a, op, unit, x, incx);
  large_triangular_product(a, op, unit, x, incx);
}
template <class T>
inline void tbmv(char uplo, char trans, char diag, core_int n, core_int k, const T* a, core_int lda, T* x,
                 core_int incx) {
  triangular_product<T>(banded_triangle(uplo, n, k, a, lda), op_of(trans), diag, x, incx);
}
template <class T>
inline void tpmv(char uplo, char trans, char diag, core_int n, const T* ap, T* x, core_int incx) {
  triangular_product<T>(packed_triangle(uplo, n, ap), op_of(trans), diag, x, incx);
}

template <class T>
inline void solution(const stored_triangle<const T>& a, matrix_op op, char diag, T* x, core_int incx) {
  const bool unit = blas::letter_is(diag, 'U');
  if (a.n < kSmallestForkingTrmv) return triangular<T>().solution(a, op, unit, x, incx);
  large_solution(a, op, unit, x, incx);
}
template <class T>
inline void trsv(char uplo, char trans, char diag, core_int n, const T* a, core_int lda, T* x,
                 core_int incx) {
  solution<T>(full_triangle(uplo, n, a, lda), op_of(trans), diag, x, incx);
}
template <class T>
inline void tpsv(char uplo, char trans, char diag, core_int n, const T* ap, T* x, core_int incx) {
  solution<T>(packed_triangle(uplo, n, ap), op_of(trans), diag, x, incx);
}
/// A block of a band meets little beside itself: on the calling thread.
template <class T>
inline void tbsv(char uplo, char trans, char diag, core_int n, core_int k, const T* a, core_int lda, T* x,
                 core_int incx) {
  triangular<T>().solution(banded_triangle(uplo, n, k, a, lda), op_of(trans), blas::letter_is(diag, 'U'), x,
                           incx);
}

}  // namespace qel::level2
