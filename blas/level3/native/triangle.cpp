// SPDX-License-Identifier: BSD-3-Clause
// trmm and trsm: the triangle is halved until a diagonal block fits the kernels; between the halves stands a
// product. Right-hand sides do not depend on one another, so threads share them out where there are enough;
// otherwise the products fork. Only the stored triangle is read, its diagonal only if it is not of ones.
#include <algorithm>

#include "blas/level3/native/copies.h"
#include "blas/level3/native/level3_native.h"
#include "blas/level3/native/plan.h"
#include "blas/level3/native/product.h"

namespace qel::native {

namespace {

/// op(A) as a view; upper says which triangle op(A) has.
template <class T>
struct triangle {
  operand<T> a;
  bool unit;

  triangle from(core_int i) const { return {a.from(i, i), unit}; }
  triangle transposed() const { return {a.transposed(), unit}; }
};

/// Neither the pivot nor its reciprocal comes near overflow or underflow.
template <class R>
bool safe_to_invert(R pivot) {
  constexpr R kLow = sizeof(R) == 4 ? R(0x1p-100) : R(0x1p-1000), kHigh = 1 / kLow;
  return std::fabs(pivot) >= kLow && std::fabs(pivot) <= kHigh;
}
template <class T>
bool reciprocal_is_safe(T pivot) {
  if constexpr (is_complex<T>) {
    return safe_to_invert(std::max(std::fabs(pivot.real), std::fabs(pivot.imag)));
  } else {
    return safe_to_invert(pivot);
  }
}

/// A diagonal block, dense in its triangle, with what the kernel wants to know of it.
template <class T>
struct diagonal_block {
  T element[kTriangleOrder * kTriangleOrder];
  bool divide = false;

  void take(const triangle<T>& t, core_int order, bool solve) {
    for (core_int j = 0; j < order; ++j) {
      T* out = element + j * kTriangleOrder;
      const core_int first = t.a.upper ? 0 : j + 1, end = t.a.upper ? j : order;
      const T* from = t.a.address(0, j);
      for (core_int i = first; i < end; ++i) {
        out[i] = t.a.conjugated ? conj(from[i * t.a.row_step]) : from[i * t.a.row_step];
      }
      out[j] = t.unit ? from_real<T>(1) : t.a.at(j, j);
      if (solve && !reciprocal_is_safe(out[j])) divide = true;
    }
    if (!solve || divide || t.unit) return;
    for (core_int j = 0; j < order; ++j) {
      T& pivot = element[j * kTriangleOrder + j];
      pivot = from_real<T>(1) / pivot;
    }
  }
};

/// What the recursion hands down: which side, solve or product, and the threads of the products.
struct how {
  bool left, solve;
  int threads;
};

template <class T>
void apply_block(const how& way, const triangle<T>& t, core_int order, core_int count, T* b, core_int ldb) {
  diagonal_block<T> block;
  const triangle<T> shown = way.left ? t.transposed() : t;  // from the left: B**T T**T
  block.take(shown, order, way.solve);
  const triangle_product<T> what{order, count, block.element, shown.a.upper, t.unit, block.divide, b, ldb};
  const level3_kernels<T>& kernels = *native_kernels<T>();
  (way.left ? kernels.triangle_columns : kernels.triangle_rows)(what, way.solve);
}

/// One half of B, the target, depends on the other, the source, through the block of op(A) off its diagonal:
/// a solve finishes the source first, a product reads it before it changes.
template <class T>
void apply_triangle(const how& way, const triangle<T>& t, core_int order, core_int count, T* b,
                    core_int ldb) {
  if (order <= kTriangleOrder) return apply_block(way, t, order, count, b, ldb);
  const core_int blocks = (order + kTriangleOrder - 1) / kTriangleOrder;
  const core_int half = blocks / 2 * kTriangleOrder, rest = order - half;
  T* const second = b + half * (way.left ? 1 : ldb);
  const bool target_first = way.left == t.a.upper;
  T *const target = target_first ? b : second, *const source = target_first ? second : b;
  const core_int target_size = target_first ? half : rest, source_size = order - target_size;
  const operand<T> off = t.a.upper ? t.a.from(0, half) : t.a.from(half, 0);
  const operand<T> source_view = general_operand('N', static_cast<const T*>(source), ldb);
  const auto recurse = [&](bool first) {
    apply_triangle(way, first ? t : t.from(half), first ? half : rest, count, first ? b : second, ldb);
  };

  recurse(way.solve ? !target_first : target_first);
  const T sign = from_real<T>(way.solve ? -1 : 1), one = from_real<T>(1);
  if (way.left) {
    multiply<T>({target_size, count, source_size, sign, off, source_view, one, target, ldb}, way.threads);
  } else {
    multiply<T>({count, target_size, source_size, sign, source_view, off, one, target, ldb}, way.threads);
  }
  recurse(way.solve ? target_first : !target_first);
}

template <class T>
void scaled_triangle(bool solve, char side, char uplo, char transa, char diag, core_int m, core_int n,
                     T alpha, const T* a, core_int lda, T* b, core_int ldb) {
  if (m <= 0 || n <= 0) return;
  const bool left = blas::letter_is(side, 'L');
  operand<T> view = general_operand(transa, a, lda);
  view.upper = blas::letter_is(uplo, 'U') == blas::letter_is(transa, 'N');
  const triangle<T> t{view, blas::letter_is(diag, 'U')};
  const core_int order = left ? m : n, count = left ? n : m;
  const bool nothing_to_read = alpha == T{};
  if (!nothing_to_read && fills_triangle(solve, m, n) &&
      multiply_by_filled_triangle(left, view, t.unit, m, n, alpha, b, ldb, *native_kernels<T>())) {
    return;
  }

  // A slab of right-hand sides, scaled and then worked on while it is in the cache.
  const auto work = [&](core_int first, core_int size, int threads) {
    T* slab = b + first * (left ? ldb : 1);
    if (!(alpha == from_real<T>(1))) {
      multiply<T>({left ? m : size, left ? size : n, 0, alpha, view, view, alpha, slab, ldb}, 1);
    }
    if (!nothing_to_read) apply_triangle({left, solve, threads}, t, order, size, slab, ldb);
  };

  const int threads = may_fork(order, count, order / 2, kProductWeight<T>) ? serv_threads_for_domain(1) : 1;
  const int slabs = plan_slabs(order, count, kProductWeight<T>, threads);
  if (slabs <= 1) return work(0, count, threads);
#pragma omp parallel for num_threads(slabs) schedule(static, 1)
  for (int s = 0; s < slabs; ++s) {
    const panel_range part = even_slab(count, slabs, s);
    if (part.end > part.begin) work(part.begin, part.end - part.begin, 1);
  }
}

}  // namespace

template <class T>
void trmm(char side, char uplo, char transa, char diag, core_int m, core_int n, T alpha, const T* a,
          core_int lda, T* b, core_int ldb) {
  scaled_triangle(false, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}

template <class T>
void trsm(char side, char uplo, char transa, char diag, core_int m, core_int n, T alpha, const T* a,
          core_int lda, T* b, core_int ldb) {
  scaled_triangle(true, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}

#define QEL_INSTANTIATE(T)                                                                             \
  template void trmm(char, char, char, char, core_int, core_int, T, const T*, core_int, T*, core_int); \
  template void trsm(char, char, char, char, core_int, core_int, T, const T*, core_int, T*, core_int);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel::native
