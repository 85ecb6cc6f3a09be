// SPDX-License-Identifier: BSD-3-Clause
// Panels by halving the columns (E. Elmroth, F. G. Gustavson, IBM J. Res. Dev. 44 (2000) 605): most of a
// panel's work is products, too.
#include "lapack/orthogonal/qr.h"

#include <algorithm>

#include "blas/plain/scratch.h"
#include "lapack/factor/core_blas.h"
#include "lapack/factor/elements.h"
#include "lapack/factor/native_kernels.h"
#include "lapack/four_types.h"
#include "lapack/orthogonal/reflectors.h"
#include "service/serv.h"

namespace qel::lapack {

namespace {

/// Of halves of columns: whole narrow panels.
constexpr core_int kNarrow = 8;

/// Column by column; `products` has room for n elements.
template <class T>
void factor_columns(core_int m, core_int n, T* a, core_int lda, T* tau, T* products) {
  const factor_kernels<T>* const native = native_factor_kernels<T>();
  const core_int done = native != nullptr ? native->reflect(m, n, a, lda, tau) : 0;
  for (core_int i = done; i < std::min(m, n); ++i) {
    T *const diagonal = a + i * (lda + 1), *const right = diagonal + lda;
    const T factor = make_reflector(m - i - 1, diagonal, diagonal + std::min<core_int>(1, m - i - 1));
    set(tau + i, factor);
    if (i + 1 == n || factor == T{}) continue;
    const T kept = element(diagonal);
    set(diagonal, from_real<T>(1));
    turned_times(m - i, n - i - 1, right, lda, diagonal, products);
    add_outer(m - i, n - i - 1, -conj(factor), diagonal, products, right, lda);
    set(diagonal, kept);
  }
}

/// What a panel leaves behind for the columns to its right: V's top square and T.
template <class T>
struct block_store {
  T *top, *t;
  core_int ld;
  block_store from(core_int i) const { return {top + i * (ld + 1), t + i * (ld + 1), ld}; }
};

template <class T>
void factor_panel(core_int m, core_int n, T* a, core_int lda, T* tau, const block_store<T>& store, T* work) {
  if (n <= plan_qr_panel(type_letter<T>, m, serv_cpu_level())) {
    factor_columns(m, n, a, lda, tau, work);
    return form_block(m, n, a, lda, tau, store.top, store.t, store.ld);
  }
  const core_int left = (n / 2 + kNarrow - 1) / kNarrow * kNarrow, right = n - left, below = m - n;
  T *const beside = a + left * lda, *const across = store.t + left * store.ld;
  const block_store<T> second = store.from(left);
  factor_panel(m, left, a, lda, tau, store, work);
  apply_from_left({m, left, a, lda, store.top, store.t, store.ld}, true, right, beside, lda, work);
  factor_panel(m - left, right, beside + left, lda, tau + left, second, work);
  for (core_int j = 0; j < left; ++j) {
    for (core_int i = left; i < n; ++i) {
      store.top[i + j * store.ld] = element(a + i + j * lda);
      store.top[j + i * store.ld] = T{};
    }
  }
  // T between the halves: -T1 (V1**H V2) T2.
  const char turned = kTurnedLetter<T>;
  product(turned, 'N', left, right, right, 1, a + left, lda, second.top, store.ld, 0, across, store.ld);
  if (below > 0)
    product(turned, 'N', left, right, below, 1, a + n, lda, beside + n, lda, 1, across, store.ld);
  multiply_triangle('L', 'U', 'N', 'N', left, right, store.t, store.ld, across, store.ld, -1);
  multiply_triangle('R', 'U', 'N', 'N', left, right, second.t, store.ld, across, store.ld);
}

/// Reflectors one by one on few columns.
template <class T>
void multiply_one_by_one(bool turned, core_int m, core_int n, core_int k, const T* a, core_int lda,
                         const T* tau, T* c, core_int ldc) {
  for (core_int step = 0; step < k; ++step) {
    const core_int i = turned ? step : k - 1 - step, below = m - i - 1;
    const T factor = turned ? conj(element(tau + i)) : element(tau + i);
    if (factor == T{}) continue;
    const T* const v = a + i * (lda + 1) + 1;
    for (core_int j = 0; j < n; ++j) {
      T* const column = c + i + j * ldc;
      const T sum = below > 0 ? element(column) + dot(below, v, column + 1) : element(column);
      const T multiple = factor * sum;
      set(column, element(column) - multiple);
      if (below > 0) axpy(below, -multiple, v, column + 1);
    }
  }
}

}  // namespace

template <class T>
bool factor_qr_as_planned(const qr_plan& plan, core_int m, core_int n, T* a, core_int lda, T* tau) {
  const core_int order = std::min(m, n), block = plan.block;
  constexpr core_int kOnStack = 64;
  T products[kOnStack];
  if (block == 1 && n <= kOnStack) {
    factor_columns(m, n, a, lda, tau, products);
    return true;
  }
  const plain::scratch<T> memory(block * (2 * block + n));
  if (memory.get() == nullptr) return false;
  if (block == 1) {
    factor_columns(m, n, a, lda, tau, memory.get());
    return true;
  }
  const block_store<T> store{memory.get(), memory.get() + block * block, block};
  T* const work = store.t + block * block;
  for (core_int first = 0; first < order; first += block) {
    const core_int width = std::min(block, order - first), rows = m - first;
    T* const panel = a + first * (lda + 1);
    factor_panel(rows, width, panel, lda, tau + first, store, work);
    apply_from_left({rows, width, panel, lda, store.top, store.t, block}, true, n - first - width,
                    panel + width * lda, lda, work);
  }
  return true;
}

template <class T>
bool geqrf(core_int m, core_int n, T* a, core_int lda, T* tau) {
  return factor_qr_as_planned(plan_qr({type_letter<T>, m, n, this_tuning_processor()}), m, n, a, lda, tau);
}

template <class T>
bool multiply_q_as_planned(const q_product_plan& plan, bool left, bool turned, core_int m, core_int n,
                           core_int k, const T* a, core_int lda, const T* tau, T* c, core_int ldc) {
  if (plan.block == 1 && left) {
    multiply_one_by_one(turned, m, n, k, a, lda, tau, c, ldc);
    return true;
  }
  const core_int block = plan.block, blocks = (k + block - 1) / block, square = block * block;
  const core_int count = left ? n : m, order = left ? m : n;
  // Tops and Ts of all blocks, which all slices read, then each slice's own work.
  const plain::scratch<T> memory(blocks * 2 * square + block * count);
  if (memory.get() == nullptr) return false;
  T* const work = memory.get() + blocks * 2 * square;
  const auto block_at = [&](core_int b) {
    const core_int first = b * block;
    T* const top = memory.get() + b * 2 * square;
    return reflector_block<T>{
        order - first, std::min(block, k - first), a + first * (lda + 1), lda, top, top + square, block};
  };
  const auto form = [&](core_int b) {
    const reflector_block<T> h = block_at(b);
    T* const top = memory.get() + b * 2 * square;
    form_block(h.rows, h.width, h.v, lda, tau + b * block, top, top + square, block);
  };
  const auto apply_all = [&](int slice) {
    const core_int begin = count * slice / plan.slices, size = count * (slice + 1) / plan.slices - begin;
    for (core_int step = 0; step < blocks; ++step) {
      const core_int b = left == turned ? step : blocks - 1 - step, first = b * block;
      const reflector_block<T> h = block_at(b);
      if (left) {
        apply_from_left(h, turned, size, c + first + begin * ldc, ldc, work + block * begin);
      } else {
        apply_from_right(h, turned, size, c + begin + first * ldc, ldc, work + block * begin);
      }
    }
  };
  if (plan.slices == 1) {
    for (core_int b = 0; b < blocks; ++b) form(b);
    apply_all(0);
    return true;
  }
#pragma omp parallel num_threads(plan.slices)
  {
#pragma omp for schedule(static)
    for (core_int b = 0; b < blocks; ++b) form(b);
#pragma omp for schedule(static, 1)
    for (int slice = 0; slice < plan.slices; ++slice) apply_all(slice);
  }
  return true;
}

template <class T>
bool ormqr(bool left, bool turned, core_int m, core_int n, core_int k, const T* a, core_int lda, const T* tau,
           T* c, core_int ldc) {
  const q_product_plan plan =
      plan_q_product({type_letter<T>, left, m, n, k, serv_threads_all(), this_tuning_processor()});
  return multiply_q_as_planned(plan, left, turned, m, n, k, a, lda, tau, c, ldc);
}

#define QEL_INSTANTIATE(T)                                                                             \
  template bool factor_qr_as_planned(const qr_plan&, core_int, core_int, T*, core_int, T*);            \
  template bool geqrf(core_int, core_int, T*, core_int, T*);                                           \
  template bool multiply_q_as_planned(const q_product_plan&, bool, bool, core_int, core_int, core_int, \
                                      const T*, core_int, const T*, T*, core_int);                     \
  template bool ormqr(bool, bool, core_int, core_int, core_int, const T*, core_int, const T*, T*, core_int);
QEL_FOUR_TYPES(QEL_INSTANTIATE)
#undef QEL_INSTANTIATE

}  // namespace qel::lapack
