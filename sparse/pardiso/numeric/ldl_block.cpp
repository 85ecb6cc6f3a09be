// SPDX-License-Identifier: BSD-3-Clause
#include <algorithm>
#include <cmath>

#include "sparse/pardiso/numeric/diagonal_block.h"
#include "sparse/pardiso/numeric/modulus.h"

namespace qel::pardiso {

namespace {

/// 0.6403882032022076 balances the growth of single pivots and of pairs (J. R. Bunch, L. Kaufman,
/// Math. Comp. 31 (1977) 163).
constexpr double kAlpha = 0.6403882032022076;

template <class T>
struct symmetric_block {
  using R = real_of<T>;

  bool hermitian;
  int w;
  T* a;
  core_int lda;

  T& at(int i, int j) const { return a[i + j * lda]; }
  T turned(T x) const { return hermitian ? conj(x) : x; }
  void make_real(int k) const {
    if (hermitian) at(k, k) = from_real<T>(real_part(at(k, k)));
  }

  /// The largest element of column k below row k, and its row; k if there is none or none is a number.
  R largest_below(int k, int& row) const {
    R most = 0;
    row = k;
    for (int i = k + 1; i < w; ++i) {
      if (const R size = modulus(at(i, k)); size > most) most = size, row = i;
    }
    return most;
  }
  /// The largest element of row r beside the diagonal, columns from k on.
  R largest_beside(int r, int k) const {
    R most = 0;
    for (int j = k; j < r; ++j) most = std::max(most, modulus(at(r, j)));
    for (int i = r + 1; i < w; ++i) most = std::max(most, modulus(at(i, r)));
    return most;
  }

  /// Rows and columns k < p, in the finished columns too.
  void swap(int k, int p) const {
    if (k == p) return;
    for (int j = 0; j < k; ++j) std::swap(at(k, j), at(p, j));
    for (int i = p + 1; i < w; ++i) std::swap(at(i, k), at(i, p));
    for (int i = k + 1; i < p; ++i) {
      const T kept = turned(at(i, k));
      at(i, k) = turned(at(p, i));
      at(p, i) = kept;
    }
    at(p, k) = turned(at(p, k));
    std::swap(at(k, k), at(p, p));
  }

  void eliminate_one(int k) const {
    const T pivot = at(k, k);
    for (int j = k + 1; j < w; ++j) {
      const T factor = turned(at(j, k)) / pivot;
      for (int i = j; i < w; ++i) at(i, j) = at(i, j) - at(i, k) * factor;
      make_real(j);
    }
    for (int i = k + 1; i < w; ++i) at(i, k) = at(i, k) / pivot;
  }

  /// Columns k and k + 1; D's third element moves above the diagonal.
  void eliminate_two(int k) const {
    // With the pivot's third element taken out of both columns the numbers stay near one another.
    const T d21 = at(k + 1, k);
    const T d11 = at(k + 1, k + 1) / d21, d22 = at(k, k) / turned(d21);
    const T t = from_real<T>(1) / (d11 * d22 - from_real<T>(1));
    for (int j = k + 2; j < w; ++j) {
      const T first = at(j, k), second = at(j, k + 1);
      const T left = t * ((d11 * first) - second) / turned(d21);
      const T right = t * ((d22 * second) - first) / d21;
      const T left_turned = turned(left), right_turned = turned(right);
      for (int i = j; i < w; ++i) {
        at(i, j) = at(i, j) - at(i, k) * left_turned - at(i, k + 1) * right_turned;
      }
      make_real(j);
      at(j, k) = left;
      at(j, k + 1) = right;
    }
    at(k, k + 1) = d21;
    at(k + 1, k) = T{};
  }
};

}  // namespace

template <class T>
void factor_ldl_block(bool hermitian, bool search, int w, T* a, core_int lda, real_of<T> threshold,
                      int* interchanges, pivot_counts& counts) {
  using R = real_of<T>;
  const symmetric_block<T> block{hermitian, w, a, lda};
  const bool has_inertia = !is_complex<T> || hermitian;
  const auto count_sign = [&](R value) {
    if (!has_inertia) return;
    counts.positive += value > 0 ? 1 : 0;
    counts.negative += value < 0 ? 1 : 0;
  };
  for (int k = 0; k < w;) {
    block.make_real(k);
    int row = k;
    const R diagonal = modulus(block.at(k, k)), below = search ? block.largest_below(k, row) : R{0};
    const R alpha = static_cast<R>(kAlpha);
    int pivot = k;
    bool two = false;
    if (std::max(diagonal, below) <= threshold) {
      block.at(k, k) = perturbed_pivot(block.at(k, k), threshold);
      ++counts.perturbed;
    } else if (row > k && !(diagonal >= alpha * below)) {
      const R beside = block.largest_beside(row, k);
      if (diagonal >= alpha * below * (below / beside)) {
        pivot = k;
      } else if (modulus(block.at(row, row)) >= alpha * beside) {
        pivot = row;
      } else {
        pivot = row;
        two = true;
      }
    }
    if (!two) {
      block.swap(k, pivot);
      interchanges[k] = pivot + 1;
      count_sign(real_part(block.at(k, k)));
      block.eliminate_one(k);
      ++k;
      continue;
    }
    block.swap(k + 1, pivot);
    interchanges[k] = -(k + 1);
    interchanges[k + 1] = -(pivot + 1);
    const R off = modulus(block.at(k + 1, k));
    const R first = real_part(block.at(k, k)) / off, second = real_part(block.at(k + 1, k + 1)) / off;
    if (first * second < 1) {  // a negative determinant: one of each
      count_sign(1);
      count_sign(-1);
    } else {
      count_sign(first);
      count_sign(second);
    }
    block.eliminate_two(k);
    k += 2;
  }
}

#define QEL_INSTANTIATE(T) \
  template void factor_ldl_block(bool, bool, int, T*, core_int, real_of<T>, int*, pivot_counts&);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel::pardiso
