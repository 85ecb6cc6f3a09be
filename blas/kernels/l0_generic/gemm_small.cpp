// SPDX-License-Identifier: BSD-3-Clause
// Matrix product without work memory, for small problems and for rows and columns that fill no tile; and the
// scaling of C. Each element: one sum over the depth in order, from zero, then C += alpha sum.
#include "blas/kernels/gemm_kernels.h"
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/shared/gemm_lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class T>
using lanes_of = lane_set<typename parts<T>::real>;
template <class T>
inline constexpr int kInRegister = lanes_of<T>::kCount / parts<T>::kCount;

/// A register of rows of op(A), not conjugated.
template <class T, bool kTransposed>
inline typename lanes_of<T>::reg rows_of(const T* a, core_int lda) {
  if constexpr (kTransposed) {
    return gathered(a, lda);
  } else {
    return lanes_of<T>::loadu(reals(a));
  }
}

template <class T>
struct factors {
  const T* a;
  core_int a_row, a_step;
  const T* b;
  core_int b_step, b_column;
  T alpha;
  T* c;
  core_int ldc;
};

/// One element, with the rounding of a tile: a complex sum in four parts.
template <class T>
inline T product_at(const factors<T>& f, core_int k, bool conj_a, bool conj_b, core_int i, core_int j) {
  T straight{}, crossed{};  // sums of a re(b) and of a im(b)
  const T *a = f.a + i * f.a_row, *b = f.b + j * f.b_column;
  for (core_int l = 0; l < k; ++l, a += f.a_step, b += f.b_step) {
    T left = element_at(a), right = element_at(b);
    if (conj_a) left = conjugate(left);
    if (conj_b) right = conjugate(right);
    if constexpr (parts<T>::kCount == 1) {
      straight += left * right;
    } else {
      straight.real += left.real * right.real;
      straight.imag += left.imag * right.real;
      crossed.real += left.real * right.imag;
      crossed.imag += left.imag * right.imag;
    }
  }
  if constexpr (parts<T>::kCount == 1) {
    return straight;
  } else {
    return {straight.real - crossed.imag, straight.imag + crossed.real};
  }
}

template <class T>
inline void add_to(T* c, T alpha, T sum) {
  set_element(c, plus(element_at(c), times(alpha, sum)));
}

/// kRegisters registers of rows by kColumns columns at row i, column j.
template <int kRegisters, int kColumns, bool kTransposed, bool kConjA, bool kConjB, class T>
inline void small_tile(const factors<T>& f, core_int k, core_int i, core_int j) {
  using R = typename parts<T>::real;
  using L = lanes_of<T>;
  using reg = typename L::reg;
  constexpr int kParts = parts<T>::kCount;
  reg sum[kColumns][kParts][kRegisters];
#pragma GCC unroll 16
  for (int q = 0; q < kColumns * kParts * kRegisters; ++q) {
    sum[q / (kParts * kRegisters)][q / kRegisters % kParts][q % kRegisters] = L::zero();
  }
  const T *a = f.a + i * f.a_row, *b = f.b + j * f.b_column;
  for (core_int l = 0; l < k; ++l, a += f.a_step, b += f.b_step) {
    reg left[kRegisters];
#pragma GCC unroll 4
    for (int r = 0; r < kRegisters; ++r) {
      left[r] = rows_of<T, kTransposed>(a + r * kInRegister<T> * f.a_row, f.a_row);
      if constexpr (kConjA) left[r] = L::conjugated(left[r]);
    }
#pragma GCC unroll 4
    for (int q = 0; q < kColumns; ++q) {
      const R* number = reals(b + q * f.b_column);
#pragma GCC unroll 2
      for (int p = 0; p < kParts; ++p) {
        const R v = element_at(number + p);
        const reg right = L::all(kConjB && p == 1 ? -v : v);
#pragma GCC unroll 4
        for (int r = 0; r < kRegisters; ++r) sum[q][p][r] = L::add(sum[q][p][r], L::mul(left[r], right));
      }
    }
  }
#pragma GCC unroll 4
  for (int q = 0; q < kColumns; ++q) {
#pragma GCC unroll 4
    for (int r = 0; r < kRegisters; ++r) {
      R* c = reals(f.c + i + r * kInRegister<T> + (j + q) * f.ldc);
      reg total = sum[q][0][r];
      if constexpr (kParts == 1) {
        total = L::mul(L::all(f.alpha), total);
      } else {
        total = L::crosswise_sum(total, L::exchanged(sum[q][1][r]));
        total = L::crosswise_sum(L::mul(L::all(f.alpha.real), total),
                                 L::mul(L::all(f.alpha.imag), L::exchanged(total)));
      }
      L::storeu(c, L::add(L::loadu(c), total));
    }
  }
}

template <int kColumns, bool kTransposed, bool kConjA, bool kConjB, class T>
inline void small_columns(const factors<T>& f, core_int m, core_int k, core_int j) {
  constexpr int kWide = parts<T>::kCount == 1 ? 2 : 1;
  core_int i = 0;
  for (; i + kWide * kInRegister<T> <= m; i += kWide * kInRegister<T>)
    small_tile<kWide, kColumns, kTransposed, kConjA, kConjB>(f, k, i, j);
  for (; kWide > 1 && i + kInRegister<T> <= m; i += kInRegister<T>)
    small_tile<1, kColumns, kTransposed, kConjA, kConjB>(f, k, i, j);
  for (; i < m; ++i) {
    for (core_int q = 0; q < kColumns; ++q) {
      add_to(f.c + i + (j + q) * f.ldc, f.alpha, product_at(f, k, kConjA, kConjB, i, j + q));
    }
  }
}

template <bool kTransposed, bool kConjA, bool kConjB, class T>
void small_product(const factors<T>& f, core_int m, core_int n, core_int k) {
  core_int j = 0;
  for (; j + 4 <= n; j += 4) small_columns<4, kTransposed, kConjA, kConjB>(f, m, k, j);
  for (; j < n; ++j) small_columns<1, kTransposed, kConjA, kConjB>(f, m, k, j);
}

template <class T>
inline void small(int op_a, int op_b, core_int m, core_int n, core_int k, T alpha, const T* a, core_int lda,
                  const T* b, core_int ldb, T* c, core_int ldc) {
  const bool turned_a = op_a != kNoTranspose, turned_b = op_b != kNoTranspose;
  const factors<T> f{
      a, turned_a ? lda : 1, turned_a ? 1 : lda, b, turned_b ? ldb : 1, turned_b ? 1 : ldb, alpha, c, ldc};
  if constexpr (parts<T>::kCount == 2) {
    const bool conj_a = op_a == kConjugateTranspose;
    if (op_b == kConjugateTranspose) {
      if (conj_a) return small_product<true, true, true>(f, m, n, k);
      return turned_a ? small_product<true, false, true>(f, m, n, k)
                      : small_product<false, false, true>(f, m, n, k);
    }
    if (conj_a) return small_product<true, true, false>(f, m, n, k);
  }
  turned_a ? small_product<true, false, false>(f, m, n, k) : small_product<false, false, false>(f, m, n, k);
}

inline bool is_zero(float a) { return a == 0; }
inline bool is_zero(double a) { return a == 0; }
template <class C>
inline bool is_zero(C a) {
  return a.real == 0 && a.imag == 0;
}

template <class T>
inline typename lanes_of<T>::reg multiple_of(T beta, typename lanes_of<T>::reg v) {
  using L = lanes_of<T>;
  if constexpr (parts<T>::kCount == 1) {
    return L::mul(L::all(beta), v);
  } else {
    return L::crosswise_sum(L::mul(L::all(beta.real), v), L::mul(L::all(beta.imag), L::exchanged(v)));
  }
}

template <int kColumns, bool kZero, class T>
inline void scale_columns(core_int m, T beta, T* c, core_int ldc) {
  using L = lanes_of<T>;
  core_int i = 0;
  for (; i + kInRegister<T> <= m; i += kInRegister<T>) {
#pragma GCC unroll 4
    for (int j = 0; j < kColumns; ++j) {
      auto* at = reals(c + i + j * ldc);
      if (kZero) {
        L::storeu(at, L::zero());
      } else {
        L::storeu(at, multiple_of(beta, L::loadu(at)));
      }
    }
  }
  for (; i < m; ++i) {
    for (int j = 0; j < kColumns; ++j) {
      T* at = c + i + j * ldc;
      set_element(at, kZero ? T{} : times(beta, element_at(at)));
    }
  }
}

template <bool kZero, class T>
void scale_matrix(core_int m, core_int n, T beta, T* c, core_int ldc) {
  for (; n >= 4; n -= 4, c += 4 * ldc) scale_columns<4, kZero>(m, beta, c, ldc);
  for (; n > 0; --n, c += ldc) scale_columns<1, kZero>(m, beta, c, ldc);
}

template <class T>
inline void scale(core_int m, core_int n, T beta, T* c, core_int ldc) {
  is_zero(beta) ? scale_matrix<true>(m, n, beta, c, ldc) : scale_matrix<false>(m, n, beta, c, ldc);
}

}  // namespace

void sgemm_small(int op_a, int op_b, core_int m, core_int n, core_int k, const float* alpha, const float* a,
                 core_int lda, const float* b, core_int ldb, float* c, core_int ldc) {
  small(op_a, op_b, m, n, k, *alpha, a, lda, b, ldb, c, ldc);
}
void dgemm_small(int op_a, int op_b, core_int m, core_int n, core_int k, const double* alpha, const double* a,
                 core_int lda, const double* b, core_int ldb, double* c, core_int ldc) {
  small(op_a, op_b, m, n, k, *alpha, a, lda, b, ldb, c, ldc);
}
void cgemm_small(int op_a, int op_b, core_int m, core_int n, core_int k, const complex8* alpha,
                 const complex8* a, core_int lda, const complex8* b, core_int ldb, complex8* c,
                 core_int ldc) {
  small(op_a, op_b, m, n, k, *alpha, a, lda, b, ldb, c, ldc);
}
void zgemm_small(int op_a, int op_b, core_int m, core_int n, core_int k, const complex16* alpha,
                 const complex16* a, core_int lda, const complex16* b, core_int ldb, complex16* c,
                 core_int ldc) {
  small(op_a, op_b, m, n, k, *alpha, a, lda, b, ldb, c, ldc);
}

void sgemm_scale(core_int m, core_int n, const float* beta, float* c, core_int ldc) {
  scale(m, n, *beta, c, ldc);
}
void dgemm_scale(core_int m, core_int n, const double* beta, double* c, core_int ldc) {
  scale(m, n, *beta, c, ldc);
}
void cgemm_scale(core_int m, core_int n, const complex8* beta, complex8* c, core_int ldc) {
  scale(m, n, *beta, c, ldc);
}
void zgemm_scale(core_int m, core_int n, const complex16* beta, complex16* c, core_int ldc) {
  scale(m, n, *beta, c, ldc);
}

}  // namespace qel::QEL_LEVEL
