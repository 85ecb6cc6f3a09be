// SPDX-License-Identifier: BSD-3-Clause
// The inner loops of the level-2 kernels: a few columns of a matrix at a time with contiguous vectors.
// Rows go through registers of 4, 2, 1 and a part of one; that never shows in a result that stands for one
// row, since every lane does the same operations. Orders of summation:
//   add_columns    y_i + f_0 a_i0 + f_1 a_i1 + ... from the left, real; complex: the products with the real
//                  parts of the factors so, those with the imaginary parts likewise from zero, then their sum
//   column_sums    real: registers of rows alternately to two accumulators, the last odd one and the part to
//                  the first; the two are added, then the lanes, neighbours first. Complex: one accumulator
//                  for products of like parts, one for those of unlike parts. The same for every number of
//                  columns taken together.
#pragma once

#include "blas/kernels/shared/level2_registers.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// Columns that the loops take at once, at most: as many as leave registers for the rows.
template <class T>
constexpr int kAddedAtOnce = kIsComplex<T> || sizeof(typename wide<typename parts<T>::real>::reg) == 16 ? 4
                                                                                                        : 8;
constexpr int kSummedAtOnce = 4;
template <class T>
constexpr int kBothAtOnce = kIsComplex<T> ? 2 : 4;
constexpr int kUpdatedAtOnce = 4;

/// A register at p, whole or its first `count` lanes.
template <bool kWhole, class R>
inline typename wide<R>::reg load_lanes(const R* p, core_int count) {
  if constexpr (kWhole) return wide<R>::loadu(p);
  return wide<R>::load_part(p, count);
}
template <bool kWhole, class R>
inline void store_lanes(R* p, core_int count, typename wide<R>::reg v) {
  if constexpr (kWhole) return wide<R>::storeu(p, v);
  wide<R>::store_part(p, count, v);
}

/// A column's lanes, read once where they are used twice.
template <bool kWhole, bool kTwice, class R>
inline typename wide<R>::reg column_lanes(const R* p, core_int count) {
  if constexpr (kTwice) return in_register(load_lanes<kWhole>(p, count));
  return load_lanes<kWhole>(p, count);
}

/// A factor in all lanes: the registers that a column times it takes.
template <class T>
struct spread {
  using W = wide<typename parts<T>::real>;
  typename W::reg real, imag;
  spread() = default;
  explicit spread(T f) {
    if constexpr (kIsComplex<T>) {
      real = W::all(f.real);
      imag = W::all(f.imag);
    } else {
      real = imag = W::all(f);
    }
  }
};

template <int K, class T>
struct column_adder {
  using R = typename parts<T>::real;
  using W = wide<R>;
  const R* at[K];
  spread<T> factor[K];
  R* y;

  template <int kRegisters, bool kWhole>
  void rows(core_int i, core_int count) const {
    typename W::reg sum[kRegisters];
    [[maybe_unused]] typename W::reg crossed[kRegisters];
#pragma GCC unroll 4
    for (int r = 0; r < kRegisters; ++r) {
      sum[r] = load_lanes<kWhole>(y + i + r * W::kCount, count);
    }
#pragma GCC unroll 8
    for (int k = 0; k < K; ++k) {
#pragma GCC unroll 4
      for (int r = 0; r < kRegisters; ++r) {
        const auto a = column_lanes<kWhole, kIsComplex<T>>(at[k] + i + r * W::kCount, count);
        sum[r] = W::mul_add(factor[k].real, a, sum[r]);
        if constexpr (!kIsComplex<T>) continue;
        crossed[r] = k == 0 ? W::mul(factor[k].imag, a) : W::mul_add(factor[k].imag, a, crossed[r]);
      }
    }
#pragma GCC unroll 4
    for (int r = 0; r < kRegisters; ++r) {
      if constexpr (kIsComplex<T>) {
        sum[r] = W::add(sum[r], with_real_negated<R>(W::exchanged(crossed[r])));
      }
      store_lanes<kWhole>(y + i + r * W::kCount, count, sum[r]);
    }
  }
};

/// Runs op.rows over n reals: steps of kStep registers, single ones, the rest.
template <int kStep, class R, class Op>
inline void for_rows(core_int n, Op& op) {
  constexpr core_int kLanes = wide<R>::kCount;
  core_int i = 0;
  for (; i + kStep * kLanes <= n; i += kStep * kLanes) op.template rows<kStep, true>(i, kLanes);
  if constexpr (kStep > 1) {
    for (; i + kLanes <= n; i += kLanes) op.template rows<1, true>(i, kLanes);
  }
  if (i < n) op.template rows<1, false>(i, n - i);
}

/// y += sum of factor[k] column[k] over m rows from `row` on; y is the address of that row's element.
template <int K, class T>
[[gnu::always_inline]] inline void add_columns(core_int m, core_int row, const T* const* column,
                                               const T* factor, T* y) {
  using R = typename parts<T>::real;
  column_adder<K, T> op;
#pragma GCC unroll 8
  for (int k = 0; k < K; ++k) {
    op.at[k] = reinterpret_cast<const R*>(column[k] + row);
    op.factor[k] = spread<T>(factor[k]);
  }
  op.y = reinterpret_cast<R*>(y);
  for_rows<kIsComplex<T> ? 2 : 4, R>(m * parts<T>::kCount, op);
}
template <class T>
[[gnu::noinline]] void add_columns(int count, core_int m, core_int row, const T* const* column,
                                   const T* factor, T* y) {
  for (; count >= kAddedAtOnce<T>; count -= kAddedAtOnce<T>) {
    add_columns<kAddedAtOnce<T>>(m, row, column, factor, y);
    column += kAddedAtOnce<T>;
    factor += kAddedAtOnce<T>;
  }
  if (kAddedAtOnce<T> == 8 && (count & 4) != 0) {
    add_columns<4>(m, row, column, factor, y);
    column += 4;
    factor += 4;
  }
  if (count & 2) {
    add_columns<2>(m, row, column, factor, y);
    column += 2;
    factor += 2;
  }
  if (count & 1) add_columns<1>(m, row, column, factor, y);
}

template <int K, class T>
struct column_summer {
  using R = typename parts<T>::real;
  using W = wide<R>;
  const R* at[K];
  const R* x;
  typename W::reg sum[K], other[K];  // other: the second accumulator, or products of unlike parts

  template <int kRegisters, bool kWhole>
  void rows(core_int i, core_int count) {
#pragma GCC unroll 2
    for (int r = 0; r < kRegisters; ++r) {
      const auto xs = load_lanes<kWhole>(x + i + r * W::kCount, count);
      [[maybe_unused]] const auto exchanged = W::exchanged(xs);
#pragma GCC unroll 4
      for (int k = 0; k < K; ++k) {
        const auto a = column_lanes<kWhole, kIsComplex<T>>(at[k] + i + r * W::kCount, count);
        if constexpr (kIsComplex<T>) {
          sum[k] = W::mul_add(a, xs, sum[k]);
          other[k] = W::mul_add(a, exchanged, other[k]);
        } else if (r == 0) {
          sum[k] = W::mul_add(a, xs, sum[k]);
        } else {
          other[k] = W::mul_add(a, xs, other[k]);
        }
      }
    }
  }
};

/// The complex or real totals of K columns from their accumulators, conjugating the columns if asked.
template <bool kConjugate, int K, class T>
inline void totals(const typename wide<typename parts<T>::real>::reg* sum,
                   const typename wide<typename parts<T>::real>::reg* other, T* total) {
  using R = typename parts<T>::real;
  using W = wide<R>;
  constexpr int kPerStep = kIsComplex<T> ? 2 : 4;
  for (int k = 0; k < K; k += kPerStep) {
    typename W::reg v[4];
    R result[4];
#pragma GCC unroll 4
    for (int l = 0; l < kPerStep; ++l) {
      const int from = k + l < K ? k + l : k;
      if constexpr (kIsComplex<T>) {
        v[2 * l] = kConjugate ? sum[from] : with_imag_negated<R>(sum[from]);
        v[2 * l + 1] = kConjugate ? with_imag_negated<R>(other[from]) : other[from];
      } else {
        v[l] = sum[from];
      }
    }
    W::four_sums(v, result);
    for (int l = 0; l < kPerStep && k + l < K; ++l) {
      if constexpr (kIsComplex<T>) {
        total[k + l] = {result[2 * l], result[2 * l + 1]};
      } else {
        total[k + l] = result[l];
      }
    }
  }
}

/// total[k] = sum of column[k]_i x_i, columns conjugated if asked; rows as for add_columns.
template <bool kConjugate, int K, class T>
[[gnu::always_inline]] inline void column_sums(core_int m, core_int row, const T* const* column, const T* x,
                                               T* total) {
  using R = typename parts<T>::real;
  using W = wide<R>;
  column_summer<K, T> op;
#pragma GCC unroll 4
  for (int k = 0; k < K; ++k) {
    op.at[k] = reinterpret_cast<const R*>(column[k] + row);
    op.sum[k] = op.other[k] = W::zero();
  }
  op.x = reinterpret_cast<const R*>(x);
  for_rows<kIsComplex<T> ? 1 : 2, R>(m * parts<T>::kCount, op);
  if constexpr (!kIsComplex<T>) {
    for (int k = 0; k < K; ++k) op.sum[k] = W::add(op.sum[k], op.other[k]);
  }
  totals<kConjugate, K, T>(op.sum, op.other, total);
}
template <bool kConjugate, class T>
[[gnu::noinline]] void column_sums(int count, core_int m, core_int row, const T* const* column, const T* x,
                                   T* total) {
  for (; count >= kSummedAtOnce; count -= kSummedAtOnce) {
    column_sums<kConjugate, kSummedAtOnce>(m, row, column, x, total);
    column += kSummedAtOnce;
    total += kSummedAtOnce;
  }
  if (count & 2) {
    column_sums<kConjugate, 2>(m, row, column, x, total);
    column += 2;
    total += 2;
  }
  if (count & 1) column_sums<kConjugate, 1>(m, row, column, x, total);
}

template <int K, class T>
struct column_adder_and_summer {
  using R = typename parts<T>::real;
  using W = wide<R>;
  const R* at[K];
  spread<T> factor[K];
  const R* x;
  R* y;
  typename W::reg sum[K], other[K];

  template <int kRegisters, bool kWhole>
  void rows(core_int i, core_int count) {
    const auto xs = load_lanes<kWhole>(x + i, count);
    [[maybe_unused]] const auto exchanged = W::exchanged(xs);
    auto ys = load_lanes<kWhole>(y + i, count);
    [[maybe_unused]] auto crossed = W::zero();
#pragma GCC unroll 4
    for (int k = 0; k < K; ++k) {
      const auto a = column_lanes<kWhole, true>(at[k] + i, count);
      ys = W::mul_add(factor[k].real, a, ys);
      sum[k] = W::mul_add(a, xs, sum[k]);
      if constexpr (kIsComplex<T>) {
        crossed = W::mul_add(factor[k].imag, a, crossed);
        other[k] = W::mul_add(a, exchanged, other[k]);
      }
    }
    if constexpr (kIsComplex<T>) ys = W::add(ys, with_real_negated<R>(W::exchanged(crossed)));
    store_lanes<kWhole>(y + i, count, ys);
  }
};

/// add_columns and column_sums from one read of the columns.
template <bool kConjugate, int K, class T>
[[gnu::always_inline]] inline void add_and_sum_columns(core_int m, core_int row, const T* const* column,
                                                       const T* factor, const T* x, T* y, T* total) {
  using R = typename parts<T>::real;
  using W = wide<R>;
  column_adder_and_summer<K, T> op;
#pragma GCC unroll 4
  for (int k = 0; k < K; ++k) {
    op.at[k] = reinterpret_cast<const R*>(column[k] + row);
    op.factor[k] = spread<T>(factor[k]);
    op.sum[k] = op.other[k] = W::zero();
  }
  op.x = reinterpret_cast<const R*>(x);
  op.y = reinterpret_cast<R*>(y);
  for_rows<1, R>(m * parts<T>::kCount, op);
  totals<kConjugate, K, T>(op.sum, op.other, total);
}
template <bool kConjugate, class T>
[[gnu::noinline]] void add_and_sum_columns(int count, core_int m, core_int row, const T* const* column,
                                           const T* factor, const T* x, T* y, T* total) {
  for (; count >= kBothAtOnce<T>; count -= kBothAtOnce<T>) {
    add_and_sum_columns<kConjugate, kBothAtOnce<T>>(m, row, column, factor, x, y, total);
    column += kBothAtOnce<T>;
    factor += kBothAtOnce<T>;
    total += kBothAtOnce<T>;
  }
  for (; count > 0; --count) {
    add_and_sum_columns<kConjugate, 1>(m, row, column++, factor++, x, y, total++);
  }
}

/// Adds multiples of kVectors vectors to each of K columns.
template <int K, int kVectors, class T>
struct column_updater {
  using R = typename parts<T>::real;
  using W = wide<R>;
  R* at[K];
  const R* x[kVectors];
  spread<T> factor[K][kVectors];

  template <int kRegisters, bool kWhole>
  void rows(core_int i, core_int count) const {
    typename W::reg xs[kVectors], exchanged[kVectors];
#pragma GCC unroll 2
    for (int v = 0; v < kVectors; ++v) {
      xs[v] = load_lanes<kWhole>(x[v] + i, count);
      exchanged[v] = W::exchanged(xs[v]);
    }
#pragma GCC unroll 4
    for (int k = 0; k < K; ++k) {
      auto a = load_lanes<kWhole>(static_cast<const R*>(at[k] + i), count);
#pragma GCC unroll 2
      for (int v = 0; v < kVectors; ++v) {
        // Imaginary parts first: the other order turns a last bit of an ill-conditioned case of the LAPACK
        // suites (xeigtstc, clustered singular values) over its threshold.
        if constexpr (kIsComplex<T>) a = W::mul_add(factor[k][v].imag, exchanged[v], a);
        a = W::mul_add(factor[k][v].real, xs[v], a);
      }
      store_lanes<kWhole>(at[k] + i, count, a);
    }
  }
};

/// column[k] += factor[k kVectors + v] x[v], summed over v, on m rows; x as for add_columns.
template <int K, int kVectors, class T>
[[gnu::always_inline]] inline void update_columns(core_int m, core_int row, T* const* column, const T* factor,
                                                  const T* const* x) {
  using R = typename parts<T>::real;
  column_updater<K, kVectors, T> op;
#pragma GCC unroll 4
  for (int k = 0; k < K; ++k) {
    op.at[k] = reinterpret_cast<R*>(column[k] + row);
    for (int v = 0; v < kVectors; ++v) {
      const T f = factor[k * kVectors + v];
      op.factor[k][v] = spread<T>(f);
      if constexpr (kIsComplex<T>) op.factor[k][v].imag = wide<R>::opposite(f.imag);
    }
  }
  for (int v = 0; v < kVectors; ++v) op.x[v] = reinterpret_cast<const R*>(x[v]);
  for_rows<1, R>(m * parts<T>::kCount, op);
}
template <int kVectors, class T>
[[gnu::noinline]] void update_columns(int count, core_int m, core_int row, T* const* column, const T* factor,
                                      const T* const* x) {
  constexpr int kAtOnce = kIsComplex<T> ? kUpdatedAtOnce / kVectors : kUpdatedAtOnce;
  for (; count >= kAtOnce; count -= kAtOnce) {
    update_columns<kAtOnce, kVectors>(m, row, column, factor, x);
    column += kAtOnce;
    factor += kAtOnce * kVectors;
  }
  for (; count > 0; --count, factor += kVectors) {
    update_columns<1, kVectors>(m, row, column++, factor, x);
  }
}

}  // namespace
}  // namespace qel::QEL_LEVEL
