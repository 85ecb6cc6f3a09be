// SPDX-License-Identifier: BSD-3-Clause
// Narrow panels of factorisations, column by column: each finished column is taken from the columns behind it
// a few at a time, vectors of rows at once.
#pragma once

#ifdef __AVX512F__
#include "blas/kernels/native/register_lu.inl.h"
#else
#include "blas/kernels/native/small_lu.inl.h"
#endif
#include "blas/kernels/shared/lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

inline core_int place_of_largest(core_int n, const float* x) {
  const core_int one = 1;
  return l5_avx2::isamax(&n, x, &one);
}
inline core_int place_of_largest(core_int n, const double* x) {
  const core_int one = 1;
  return l5_avx2::idamax(&n, x, &one);
}
inline core_int place_of_largest(core_int n, const complex8* x) {
  const core_int one = 1;
  return l5_avx2::icamax(&n, x, &one);
}
inline core_int place_of_largest(core_int n, const complex16* x) {
  const core_int one = 1;
  return l5_avx2::izamax(&n, x, &one);
}

/// Calls step(i, load, store) for the vectors that cover reals begin .. end - 1 of a column. Vectors stand at
/// multiples of their length from the column's top, so that a step finds whole what the step before wrote;
/// store(p, v, old) leaves `old` before begin.
template <class R, class Step>
[[gnu::always_inline]] inline void over_rows(core_int begin, core_int end, const Step& step) {
  using V = vec<R>;
  using reg = typename V::reg;
  const auto load = [](const R* p) { return V::load(p); };
  const auto store = [](R* p, reg v, reg) { V::store(p, v); };
  core_int i = begin / V::kLanes * V::kLanes;
  if (begin > i) {
    const lanes_from<R> own(begin - i);
    const int there = static_cast<int>(end - i);
    if (there >= V::kLanes) {
      step(i, load, [own](R* p, reg v, reg old) { V::store(p, own.choose(v, old)); });
    } else {
      step(
          i, [there](const R* p) { return V::load_part(p, there); },
          [own, there](R* p, reg v, reg old) { V::store_part(p, there, own.choose(v, old)); });
    }
    i += V::kLanes;
  }
  for (; i + V::kLanes <= end; i += V::kLanes) step(i, load, store);
  if (i >= end) return;
  const int left = static_cast<int>(end - i);
  step(
      i, [left](const R* p) { return V::load_part(p, left); },
      [left](R* p, reg v, reg) { V::store_part(p, left, v); });
}

/// Rows begin .. end - 1 of kColumns columns from c on get factors[j] times those of l added.
template <int kColumns, class T>
inline void add_multiples(core_int begin, core_int end, const T* l, const T* factors, T* c, core_int ldc) {
  using R = typename reals<T>::type;
  constexpr int kParts = reals<T>::kCount;
  using V = vec<R>;
  const R *const from = reinterpret_cast<const R*>(l), *const factor = reinterpret_cast<const R*>(factors);
  R* const to = reinterpret_cast<R*>(c);
  const core_int step = ldc * kParts;
  typename V::reg real[kColumns], imag[kColumns];
  for (int j = 0; j < kColumns; ++j) {
    real[j] = V::all(factor[j * kParts]);
    imag[j] = V::all(factor[j * kParts + kParts - 1]);
  }
  over_rows<R>(begin * kParts, end * kParts, [&](core_int i, const auto& load, const auto& store) {
    const typename V::reg v = load(from + i);
    typename V::reg turned = v;
    if constexpr (kParts == 2) turned = V::mul(V::swapped(v), V::pairs(-1, 1));
#pragma GCC unroll 4
    for (int j = 0; j < kColumns; ++j) {
      R* const at = to + i + j * step;
      const typename V::reg old = load(at);
      typename V::reg sum = V::fma(v, real[j], old);
      if constexpr (kParts == 2) sum = V::fma(turned, imag[j], sum);
      store(at, sum, old);
    }
  });
}
/// All columns from c on, each with its element of a row of factors, turned by `factor`.
template <class T, class Factor>
inline void add_multiples(core_int begin, core_int end, const T* l, core_int columns, T* c, core_int ldc,
                          const Factor& factor) {
  T factors[4];
  core_int j = 0;
  for (; j + 4 <= columns; j += 4) {
    for (int k = 0; k < 4; ++k) factors[k] = factor(j + k);
    add_multiples<4>(begin, end, l, factors, c + j * ldc, ldc);
  }
  for (int k = 0; k < columns - j; ++k) factors[k] = factor(j + k);
  if (columns - j == 3) add_multiples<3>(begin, end, l, factors, c + j * ldc, ldc);
  if (columns - j == 2) add_multiples<2>(begin, end, l, factors, c + j * ldc, ldc);
  if (columns - j == 1) add_multiples<1>(begin, end, l, factors, c + j * ldc, ldc);
}
template <class T>
inline void scale_rows(core_int begin, core_int end, T factor, T* x) {
  using R = typename reals<T>::type;
  constexpr int kParts = reals<T>::kCount;
  R* const at = reinterpret_cast<R*>(x);
  over_rows<R>(begin * kParts, end * kParts, [&](core_int i, const auto& load, const auto& store) {
    const typename vec<R>::reg old = load(at + i);
    store(at + i, finish<T>::multiple(factor, old), old);
  });
}

template <class T>
inline void divide_rows(core_int begin, core_int end, T pivot, T* x) {
  using P = pivots_of<T>;
  // The smallest normal number: below it the reciprocal overflows.
  constexpr auto kSmallest = static_cast<typename P::R>(sizeof(typename P::R) == 4 ? 0x1p-126 : 0x1p-1022);
  if (P::size(pivot) >= kSmallest) return scale_rows(begin, end, reciprocal_of(pivot), x);
  for (core_int i = begin; i < end; ++i) set_element(x + i, divided(element_at(x + i), pivot));
}

/// The m rows of a panel; vectors go on to row `end`.
template <class T>
core_int factor_columns(core_int m, core_int end, core_int n, T* a, core_int lda, core_int* pivots) {
  core_int first_zero = 0;
  const core_int order = m < n ? m : n;
  for (core_int j = 0; j < order; ++j) {
    T* const column = a + j * lda;
    const core_int pivot = j + place_of_largest(m - j, column + j) - 1;
    pivots[j] = pivot + 1;
    const T value = element_at(column + pivot);
    if (pivots_of<T>::size(value) == 0) {
      if (first_zero == 0) first_zero = j + 1;
      continue;
    }
    if (pivot != j) {
      T *x = a + j, *y = a + pivot;
      for (core_int c = 0; c < n; ++c, x += lda, y += lda) {
        const T kept = element_at(x);
        set_element(x, element_at(y));
        set_element(y, kept);
      }
    }
    if (j + 1 == m) break;
    divide_rows(j + 1, end, value, column);
    const T* const row = a + j + (j + 1) * lda;
    add_multiples(j + 1, end, column, n - j - 1, column + lda, lda,
                  [&](core_int c) { return negative(element_at(row + c * lda)); });
  }
  return first_zero;
}

/// Rows first .. end - 1 of n columns exchanged with those that the pivots name.
template <class T>
inline void exchange_rows(core_int n, T* a, core_int lda, core_int first, core_int end,
                          const core_int* pivots) {
  for (core_int i = first; i < end; ++i) {
    if (pivots[i] == i + 1) continue;
    T *x = a + i, *y = a + pivots[i] - 1;
    for (core_int c = 0; c < n; ++c, x += lda, y += lda) {
      const T kept = element_at(x);
      set_element(x, element_at(y));
      set_element(y, kept);
    }
  }
}

/// A few columns of many at a time get all that the columns before them take away, then are factored.
template <class T>
core_int factor_blocks(core_int m, core_int end, core_int n, T* a, core_int lda, core_int* pivots) {
  constexpr core_int kBlock = 8, kAtOnce = 16;
  if (n <= kAtOnce) return factor_columns(m, end, n, a, lda, pivots);
  core_int first_zero = 0;
  for (core_int j = 0; j < n; j += kBlock) {
    const core_int width = n - j < kBlock ? n - j : kBlock, done = j < m ? j : m;
    T* const block = a + j * lda;
    exchange_rows(width, block, lda, 0, done, pivots);
    if (j > 0) solve_narrow<T>({done, width, a, lda, 1, {{false, true, false, false}, {}}, block, lda});
    if (done == m) continue;
    if (j > 0) {
      const T one = pivots_of<T>::one();
      multiply_direct<T>({end - j, width, j, negative(one), one, a + j, lda, block, 1, lda, false, false,
                          true, block + j, lda});
    }
    const core_int zero = factor_columns(m - j, end - j, width, block + j, lda, pivots + j);
    if (first_zero == 0 && zero != 0) first_zero = j + zero;
    const core_int behind = j + width < m ? j + width : m;
    for (core_int i = j; i < behind; ++i) pivots[i] += j;
    exchange_rows(j, a, lda, j, behind, pivots);
  }
  return first_zero;
}

/// Whole vectors from one column to another.
template <class T>
inline void move_column(core_int rows, const T* from, T* to, bool to_buffer) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  const R* const x = reinterpret_cast<const R*>(from);
  R* const y = reinterpret_cast<R*>(to);
  const core_int count = rows * reals<T>::kCount;
  core_int i = 0;
  for (; i + V::kLanes <= count; i += V::kLanes) V::store(y + i, V::load(x + i));
  if (i == count) return;
  const int left = static_cast<int>(count - i);
  if (to_buffer) {
    V::store(y + i, V::load_part(x + i, left));  // with zeros behind
  } else {
    V::store_part(y + i, left, V::load(x + i));
  }
}

/// Bytes of a panel that is worked on in a copy whose columns are whole vectors.
constexpr int kCopyBytes = 8192;

#ifdef __AVX512F__
// A vector of 64 bytes waits for the store before it, one of 32 does not: copies go by the latter.
inline const factor_kernels<float>& shorter_vectors(const float*) { return l5_avx2::sfactor; }
inline const factor_kernels<double>& shorter_vectors(const double*) { return l5_avx2::dfactor; }
#endif

/// The panel in the form that its size asks for; -1: by columns.
template <class T>
core_int small_panel(core_int m, core_int n, T* a, core_int lda, core_int* pivots) {
  using R = typename reals<T>::type;
  constexpr bool kComplex = reals<T>::kCount == 2;
  constexpr int kRegisterBytes = vec<R>::kLanes * static_cast<int>(sizeof(R));
  const lu_form form = lu_form_of(m, n, sizeof(R), kComplex, kRegisterBytes);
#ifdef __AVX512F__
  if (form == lu_form::in_registers) {
    if (const core_int done = factor_in_registers(m, n, a, lda, pivots); done >= 0) return done;
  }
  if constexpr (!kComplex) {
    if (form == lu_form::rows_stay) return shorter_vectors(a).lu(m, n, a, lda, pivots);
  }
#else
  if constexpr (!kComplex) {
    constexpr core_int kLanes = tile_shape<T>::kLanes;
    if (form != lu_form::rows_stay) return -1;
    if (m <= kLanes) return factor_small<T, 1>(m, n, a, lda, pivots);
    if (m <= 2 * kLanes) return factor_small<T, 2>(m, n, a, lda, pivots);
    return factor_small<T, 4>(m, n, a, lda, pivots);
  }
#endif
  return -1;
}

template <class T>
core_int lu_panel(core_int m, core_int n, T* a, core_int lda, core_int* pivots) {
  constexpr core_int kLanes = tile_shape<T>::kLanes;
  const core_int rows = (m + kLanes - 1) / kLanes * kLanes;
  if (const core_int small = small_panel(m, n, a, lda, pivots); small >= 0) return small;
  if (rows * n * static_cast<core_int>(sizeof(T)) > kCopyBytes) {
    return factor_blocks(m, m, n, a, lda, pivots);
  }
  alignas(64) T copy[kCopyBytes / sizeof(T)];
  for (core_int j = 0; j < n; ++j) move_column(m, a + j * lda, copy + j * rows, true);
  const core_int first_zero = factor_blocks(m, rows, n, copy, rows, pivots);
  for (core_int j = 0; j < n; ++j) move_column(m, copy + j * rows, a + j * lda, false);
  return first_zero;
}

}  // namespace
}  // namespace qel::QEL_LEVEL
