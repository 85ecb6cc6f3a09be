// SPDX-License-Identifier: BSD-3-Clause
#include <algorithm>
#include <cmath>

#include "service/native_level.h"
#include "service/serv.h"
#include "sparse/kernels/pivot_kernels.h"
#include "sparse/pardiso/numeric/diagonal_block.h"
#include "sparse/pardiso/numeric/modulus.h"
#include "sparse/pardiso/symbolic/structure.h"

namespace qel::pardiso {

namespace {

/// Moduli to compare with one another: complex ones squared, on a scale on which they stay in range.
template <class T>
struct measure {
  real_of<T> scale = 1;

  real_of<T> operator()(T x) const {
    if constexpr (is_complex<T>) {
      const real_of<T> re = x.real * scale, im = x.imag * scale;
      return re * re + im * im;
    } else {
      return x < 0 ? -x : x;
    }
  }
};

template <class T>
real_of<T> largest_of(const measure<T>& size, int m, const T* x) {
  real_of<T> most = -1;
  for (int i = 0; i < m; ++i) most = std::max(most, size(x[i]));
  return most;
}

/// y -= l u; returns the largest of y.
template <class T>
real_of<T> subtract_and_measure(const measure<T>& size, int m, const T* l, T u, T* y) {
  real_of<T> most[4] = {-1, -1, -1, -1};
  int i = 0;
  for (; i + 4 <= m; i += 4) {
    for (int lane = 0; lane < 4; ++lane) {
      y[i + lane] = y[i + lane] - l[i + lane] * u;
      most[lane] = std::max(most[lane], size(y[i + lane]));
    }
  }
  for (; i < m; ++i) {
    y[i] = y[i] - l[i] * u;
    most[0] = std::max(most[0], size(y[i]));
  }
  return std::max(std::max(most[0], most[1]), std::max(most[2], most[3]));
}

template <class T>
struct trailing_block {
  using R = real_of<T>;

  int w;
  T* a;
  core_int lda;
  measure<T> size{};
  R largest[kWidestSupernode]{};  ///< of the trailing rows of a column

  T* column(int j) const { return a + j * lda; }

  /// Measures all columns from k on; complex elements on a scale near the largest of them.
  void measure_from(int k) {
    if constexpr (is_complex<T>) {
      R most = 0;
      for (int j = k; j < w; ++j) {
        for (int i = k; i < w; ++i) {
          most = std::max(most, std::max(std::fabs(column(j)[i].real), std::fabs(column(j)[i].imag)));
        }
      }
      constexpr int kRange = sizeof(R) == 4 ? 120 : 1000;
      size.scale = 1;
      if (most > 0 && std::isfinite(most)) {
        size.scale = std::ldexp(R{1}, -std::clamp(std::ilogb(most), -kRange, kRange));
      }
    }
    for (int j = k; j < w; ++j) largest[j] = largest_of(size, w - k, column(j) + k);
  }
  /// Column of the next pivot.
  int pivot_column(int k) {
    int chosen = k;
    for (int j = k; j < w; ++j) {
      if (largest[j] >= largest[chosen]) chosen = j;
    }
    return chosen;
  }
  int pivot_row(int k, int j) const {
    for (int i = w - 1; i > k; --i) {
      if (size(column(j)[i]) >= largest[j]) return i;
    }
    return k;
  }
  void eliminate(int k, int below) {
    const T* const l = column(k) + k + 1;
    if (k + 1 == w) return;
    T* const upper = column(k + 1) + k;
    if constexpr (is_complex<T>) {
      for (int j = 0; j < below; ++j) {
        T* const u = upper + j * lda;
        largest[k + 1 + j] = subtract_and_measure(size, below, l, *u, u + 1);
      }
    } else {
      update({below, below, lda, l, upper, upper + 1, largest + k + 1});
    }
  }
  static void update(const pivot_step<R>& step) {
    const bool native = serv_cpu_level() >= kFirstNativeLevel;
    if constexpr (sizeof(R) == sizeof(float)) {
      (native ? l5_avx2::pivot_update_s : l0_generic::pivot_update_s)(&step);
    } else {
      (native ? l5_avx2::pivot_update_d : l0_generic::pivot_update_d)(&step);
    }
  }
  void swap_rows(int i, int k) const {
    for (int j = 0; i != k && j < w; ++j) std::swap(column(j)[i], column(j)[k]);
  }
  void swap_columns(int j, int k) const {
    if (j != k) std::swap_ranges(column(j), column(j) + w, column(k));
  }
};

}  // namespace

template <class T>
void factor_lu_block(int w, T* a, core_int lda, real_of<T> threshold, int* columns, int* rows,
                     pivot_counts& counts) {
  trailing_block<T> block{w, a, lda};
  block.measure_from(0);
  // Squares below this have lost digits.
  constexpr real_of<T> kTiny =
      sizeof(real_of<T>) == 4 ? static_cast<real_of<T>>(1e-30) : static_cast<real_of<T>>(1e-250);
  for (int k = 0; k < w; ++k) {
    int q = block.pivot_column(k);
    if (is_complex<T> && block.largest[q] < kTiny) {
      block.measure_from(k);
      q = block.pivot_column(k);
    }
    const int p = block.pivot_row(k, q);
    block.swap_rows(p, k);
    block.swap_columns(q, k);
    std::swap(block.largest[q], block.largest[k]);
    columns[k] = q + 1;
    rows[k] = p + 1;
    T* const pivot = block.column(k) + k;
    if (threshold >= modulus(*pivot)) {
      *pivot = perturbed_pivot(*pivot, threshold);
      rows[k] = -rows[k];
      ++counts.perturbed;
    }
    const int below = w - k - 1;
    for (int i = 1; i <= below; ++i) pivot[i] = pivot[i] / *pivot;
    block.eliminate(k, below);
  }
}

#define QEL_INSTANTIATE(T) \
  template void factor_lu_block(int, T*, core_int, real_of<T>, int*, int*, pivot_counts&);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel::pardiso
