// SPDX-License-Identifier: BSD-3-Clause
// Diagonal blocks of triangular solves and products, from the right on rows of X: X T^-1 or X T in place.
// T is dense, column-major, op and conjugation applied; its columns are finished in the order in which none
// is needed after its change. Each element: the sum of the terms in order of k, from zero; a solve takes it
// off and then divides, a product adds it to the element times the pivot.
#pragma once

#include "blas/kernels/gemm_kernels.h"
#include "blas/kernels/shared/gemm_lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

inline float quotient(float a, float b) { return a / b; }
inline double quotient(double a, double b) { return a / b; }
/// R. L. Smith, Comm. ACM 5 (1962) 435: does not overflow early.
template <class C>
inline C quotient(C a, C b) {
  if (magnitude(b.real) < magnitude(b.imag)) {
    const auto ratio = b.real / b.imag, denominator = b.real * ratio + b.imag;
    return {(a.real * ratio + a.imag) / denominator, (a.imag * ratio - a.real) / denominator};
  }
  const auto ratio = b.imag / b.real, denominator = b.imag * ratio + b.real;
  return {(a.imag * ratio + a.real) / denominator, (a.imag - a.real * ratio) / denominator};
}

/// What a diagonal element does to a column. A complex division becomes a product with the inverse where that
/// can neither overflow nor underflow.
template <class T, bool kSolve>
struct pivot_of {
  T by;
  bool divides;
  explicit pivot_of(T pivot) : by(pivot), divides(kSolve) {
    if constexpr (kSolve && parts<T>::kCount == 2) {
      using R = typename parts<T>::real;
      constexpr R kLarge = 0x1p500;
      const R size = magnitude(pivot.real) + magnitude(pivot.imag);
      if (size > 1 / kLarge && size < kLarge) {
        by = quotient(T{1, 0}, pivot);
        divides = false;
      }
    }
  }
  T of(T v) const { return divides ? quotient(v, by) : times(by, v); }
  template <int kRegisters>
  void apply(typename lane_set<typename parts<T>::real>::reg (&v)[kRegisters]) const {
    using L = lane_set<typename parts<T>::real>;
#pragma GCC unroll 8
    for (int r = 0; r < kRegisters; ++r) {
      if constexpr (parts<T>::kCount == 1) {
        v[r] = kSolve ? v[r] / L::all(by) : L::mul(L::all(by), v[r]);
      } else if (!divides) {
        v[r] = L::crosswise_sum(L::mul(L::all(by.real), v[r]), L::mul(L::all(by.imag), L::exchanged(v[r])));
      } else {
        T element[L::kCount / 2];
        L::storeu(reals(element), v[r]);
        for (T& e : element) e = quotient(e, by);
        v[r] = L::loadu(reals(element));
      }
    }
  }
};

/// kRegisters registers of rows of one column: the sum of x_k t_kj over the given k, from zero.
template <class T, int kRegisters, bool kSolve>
struct column_of_rows {
  using R = typename parts<T>::real;
  using L = lane_set<R>;
  using reg = typename L::reg;
  static constexpr int kRows = kRegisters * L::kCount / parts<T>::kCount;
  reg sum[kRegisters];

  column_of_rows() {
#pragma GCC unroll 8
    for (int r = 0; r < kRegisters; ++r) sum[r] = L::zero();
  }
  void add(const T* x, T t) {
    if constexpr (parts<T>::kCount == 1) {
      const reg factor = L::all(t);
#pragma GCC unroll 8
      for (int r = 0; r < kRegisters; ++r) {
        sum[r] = L::add(sum[r], L::mul(factor, L::loadu(reals(x) + r * L::kCount)));
      }
    } else {
      const reg real = L::all(t.real), imag = L::all(t.imag);
#pragma GCC unroll 8
      for (int r = 0; r < kRegisters; ++r) {
        const reg v = L::loadu(reals(x) + r * L::kCount);
        sum[r] = L::add(sum[r], L::crosswise_sum(L::mul(real, v), L::mul(imag, L::exchanged(v))));
      }
    }
  }
  /// x = (x - sum) / pivot, or pivot x + sum; a null pivot is one.
  void finish(T* x, const T* pivot) {
    reg v[kRegisters];
#pragma GCC unroll 8
    for (int r = 0; r < kRegisters; ++r) v[r] = L::loadu(reals(x) + r * L::kCount);
    if (!kSolve && pivot != nullptr) pivot_of<T, kSolve>(*pivot).apply(v);
#pragma GCC unroll 8
    for (int r = 0; r < kRegisters; ++r) v[r] = kSolve ? v[r] - sum[r] : v[r] + sum[r];
    if (kSolve && pivot != nullptr) pivot_of<T, kSolve>(*pivot).apply(v);
#pragma GCC unroll 8
    for (int r = 0; r < kRegisters; ++r) L::storeu(reals(x) + r * L::kCount, v[r]);
  }
};

/// The rows of a column_of_rows through all columns.
template <class T, int kRegisters, bool kSolve>
inline void finish_rows(const triangle_block<T>& t, T* x, core_int ldx) {
  using Column = column_of_rows<T, kRegisters, kSolve>;
  const bool ascending = kSolve == t.upper;
  for (core_int step = 0; step < t.order; ++step) {
    const core_int j = ascending ? step : t.order - 1 - step;
    const T* factors = t.element + j * t.ld;
    const core_int first = t.upper ? 0 : j + 1, end = t.upper ? j : t.order;
    Column column;
    for (core_int k = first; k < end; ++k) column.add(x + k * ldx, factors[k]);
    column.finish(x + j * ldx, t.unit ? nullptr : factors + j);
  }
}

template <class T, bool kSolve>
inline void finish_row(const triangle_block<T>& t, T* x, core_int ldx) {
  const bool ascending = kSolve == t.upper;
  for (core_int step = 0; step < t.order; ++step) {
    const core_int j = ascending ? step : t.order - 1 - step;
    const T* factors = t.element + j * t.ld;
    T sum{}, v = element_at(x + j * ldx);
    for (core_int k = t.upper ? 0 : j + 1; k < (t.upper ? j : t.order); ++k) {
      sum = plus(sum, times(factors[k], element_at(x + k * ldx)));
    }
    if (!kSolve && !t.unit) v = pivot_of<T, kSolve>(factors[j]).of(v);
    v = plus(v, kSolve ? opposite(sum) : sum);
    if (kSolve && !t.unit) v = pivot_of<T, kSolve>(factors[j]).of(v);
    set_element(x + j * ldx, v);
  }
}

template <class T, bool kSolve>
inline void finish_all_rows(const triangle_block<T>& t, core_int rows, T* x, core_int ldx) {
  constexpr int kWide = 6;
  constexpr core_int kInRegister = lane_set<typename parts<T>::real>::kCount / parts<T>::kCount;
  for (; rows >= kWide * kInRegister; rows -= kWide * kInRegister, x += kWide * kInRegister) {
    finish_rows<T, kWide, kSolve>(t, x, ldx);
  }
  for (; rows >= kInRegister; rows -= kInRegister, x += kInRegister) finish_rows<T, 1, kSolve>(t, x, ldx);
  for (; rows > 0; --rows, ++x) finish_row<T, kSolve>(t, x, ldx);
}

template <class T>
void triangle_rows(bool solve, const triangle_block<T>& t, core_int rows, T* x, core_int ldx) {
  solve ? finish_all_rows<T, true>(t, rows, x, ldx) : finish_all_rows<T, false>(t, rows, x, ldx);
}

}  // namespace

void dtriangle_rows(bool solve, const triangle_block<double>& t, core_int rows, double* x, core_int ldx) {
  triangle_rows(solve, t, rows, x, ldx);
}
void ztriangle_rows(bool solve, const triangle_block<complex16>& t, core_int rows, complex16* x,
                    core_int ldx) {
  triangle_rows(solve, t, rows, x, ldx);
}

}  // namespace qel::QEL_LEVEL
