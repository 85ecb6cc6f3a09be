// SPDX-License-Identifier: BSD-3-Clause
// Matrix product over packed blocks: a k-slice of B (kInner x kColumnBlock) is packed into column panels for
// the last cache, a block of A (kRowBlock x kInner) into row panels for the second, and register tiles run
// over them. Transposes, conjugates and mirrored triangles are settled in packing. Small products and a
// refused allocation take plain loops. Method: K. Goto, R. A. van de Geijn, ACM TOMS 34 (2008) 12.
#include "blas/plain/packed_product.h"

#include <algorithm>

#include "blas/plain/register_tile.h"
#include "blas/plain/scratch.h"
#include "blas/plain/strided_loops.h"

namespace qel::plain {

namespace {

// Block sizes in elements. A's block is about half a second-level cache of 512 KiB, one panel of B about half
// of a first-level cache of 32 KiB.
template <class T>
struct block_sizes;
template <>
struct block_sizes<float> {
  static constexpr core_int kInner = 384, kRowBlock = 192, kColumnBlock = 2048;
};
template <>
struct block_sizes<double> {
  static constexpr core_int kInner = 256, kRowBlock = 128, kColumnBlock = 2048;
};
template <>
struct block_sizes<complex8> {
  static constexpr core_int kInner = 256, kRowBlock = 128, kColumnBlock = 1024;
};
template <>
struct block_sizes<complex16> {
  static constexpr core_int kInner = 192, kRowBlock = 96, kColumnBlock = 1024;
};

/// Multiplications below which packing costs more than it gains; read from timings of 4 to 32 cubed.
constexpr double kPackedFrom = 1000;
/// Columns of C up to which A is better read in place, since a packed A would be used so few times.
constexpr core_int kThinColumns = 2;

core_int round_up(core_int n, core_int step) { return (n + step - 1) / step * step; }

/// One step of a panel: width elements of s, row_step apart, then zeros up to kWidth.
template <int kWidth, bool kConjugate, class T>
void pack_step(int width, const T* s, core_int row_step, real_of<T>* out) {
  for (int l = 0; l < width; ++l) {
    const T value = conj_if<kConjugate>(s[l * row_step]);
    out[l] = real_part(value);
    if constexpr (is_complex<T>) out[kWidth + l] = value.imag;
  }
  for (int l = width; l < kWidth; ++l) {
    out[l] = 0;
    if constexpr (is_complex<T>) out[kWidth + l] = 0;
  }
}

/// k steps of one panel of a general factor, starting at s.
template <int kWidth, bool kConjugate, class T>
void pack_steps(int width, core_int k, const T* s, core_int row_step, core_int column_step, real_of<T>* out) {
  constexpr core_int kStep = kWidth * kRealsOf<T>;
  if (width == kWidth && row_step == 1) {
    for (; k > 0; --k, s += column_step, out += kStep) pack_step<kWidth, kConjugate>(kWidth, s, 1, out);
  } else if (width == kWidth) {
    for (; k > 0; --k, s += column_step, out += kStep)
      pack_step<kWidth, kConjugate>(kWidth, s, row_step, out);
  } else {
    for (; k > 0; --k, s += column_step, out += kStep) pack_step<kWidth, kConjugate>(width, s, row_step, out);
  }
}

/// Rows [i, i + width), steps [p, p + k) of a factor into one panel.
template <int kWidth, class T>
void pack_panel(const operand<T>& a, core_int i, int width, core_int p, core_int k, real_of<T>* out) {
  constexpr core_int kStep = kWidth * kRealsOf<T>;
  if (a.kind == matrix_kind::kGeneral) {
    if (is_complex<T> && a.conjugated) {
      pack_steps<kWidth, true>(width, k, a.address(i, p), a.row_step, a.column_step, out);
    } else {
      pack_steps<kWidth, false>(width, k, a.address(i, p), a.row_step, a.column_step, out);
    }
    return;
  }
  // Steps before the panel's rows lie on one side of the diagonal, steps behind them on the other.
  const core_int end = p + k;
  const core_int near = std::clamp(i, p, end), far = std::clamp(i + width, p, end);
  const operand<T> before = a.upper ? a.mirrored() : a.direct(), behind = a.upper ? a.direct() : a.mirrored();
  pack_panel<kWidth>(before, i, width, p, near - p, out);
  for (core_int q = near; q < far; ++q) {
    T crossing[kWidth];
    for (int l = 0; l < width; ++l) crossing[l] = a.at(i + l, q);
    pack_step<kWidth, false>(width, crossing, 1, out + (q - p) * kStep);
  }
  pack_panel<kWidth>(behind, i, width, far, end - far, out + (far - p) * kStep);
}

template <int kWidth, class T>
void pack(const operand<T>& a, core_int i, core_int rows, core_int p, core_int k, real_of<T>* out) {
  for (core_int r = 0; r < rows; r += kWidth, out += k * kWidth * kRealsOf<T>) {
    pack_panel<kWidth>(a, i + r, static_cast<int>(std::min<core_int>(kWidth, rows - r)), p, k, out);
  }
}

/// C tile += alpha tile
template <class T>
void add_tile(core_int rows, core_int columns, T alpha, const T* tile, T* c, core_int ldc) {
  constexpr int kRows = tile_shape<T>::kRows, kColumns = tile_shape<T>::kColumns;
  if (rows == kRows && columns == kColumns) {
    for (int j = 0; j < kColumns; ++j) {
      for (int i = 0; i < kRows; ++i) c[i + j * ldc] += alpha * tile[i + j * kRows];
    }
    return;
  }
  for (core_int j = 0; j < columns; ++j) {
    for (core_int i = 0; i < rows; ++i) c[i + j * ldc] += alpha * tile[i + j * kRows];
  }
}

/// C += alpha (packed block of A) (packed slice of B)
template <class T>
void multiply_blocks(core_int m, core_int n, core_int k, T alpha, const real_of<T>* a, const real_of<T>* b,
                     T* c, core_int ldc) {
  using shape = tile_shape<T>;
  alignas(16) T tile[shape::kSize];
  for (core_int j = 0; j < n; j += shape::kColumns) {
    const real_of<T>* b_panel = b + j * k * kRealsOf<T>;
    for (core_int i = 0; i < m; i += shape::kRows) {
      tile_product<T>(k, a + i * k * kRealsOf<T>, b_panel, tile);
      add_tile(std::min<core_int>(shape::kRows, m - i), std::min<core_int>(shape::kColumns, n - j), alpha,
               tile, c + i + j * ldc, ldc);
    }
  }
}

/// The next slice of k: whole ones first, the rest in two even parts so that none is thin.
core_int slice_size(core_int left, core_int whole) {
  return left >= 2 * whole ? whole : left > whole ? (left + 1) / 2 : left;
}

template <class T>
void multiply_packed(core_int m, core_int n, core_int k, T alpha, const operand<T>& a, const operand<T>& b,
                     T* c, core_int ldc, real_of<T>* a_panels, real_of<T>* b_panels) {
  using shape = tile_shape<T>;
  using sizes = block_sizes<T>;
  const operand<T> b_rows = b.transposed();
  for (core_int j = 0; j < n; j += sizes::kColumnBlock) {
    const core_int columns = std::min(sizes::kColumnBlock, n - j);
    for (core_int p = 0, slice = 0; p < k; p += slice) {
      slice = slice_size(k - p, sizes::kInner);
      pack<shape::kColumns>(b_rows, j, columns, p, slice, b_panels);
      for (core_int i = 0; i < m; i += sizes::kRowBlock) {
        const core_int rows = std::min(sizes::kRowBlock, m - i);
        pack<shape::kRows>(a, i, rows, p, slice, a_panels);
        multiply_blocks(rows, columns, slice, alpha, a_panels, b_panels, c + i + j * ldc, ldc);
      }
    }
  }
}

/// Column form, for A with contiguous columns: columns of A are added to those of C, four at a time.
template <class T>
void multiply_by_columns(core_int m, core_int n, core_int k, T alpha, const operand<T>& a,
                         const operand<T>& b, T* c, core_int ldc) {
  constexpr core_int kGroup = 4;
  for (core_int j = 0; j < n; ++j) {
    for (core_int l = 0; l < k; l += kGroup) {
      const core_int count = std::min(kGroup, k - l);
      T factors[kGroup];
      for (core_int q = 0; q < count; ++q) factors[q] = alpha * b.at(l + q, j);
      add_columns(m, count, factors, a.address(0, l), a.column_step, c + j * ldc);
    }
  }
}

/// Product form, for A with contiguous rows and an unconjugated general B.
template <class T>
void multiply_by_products(core_int m, core_int n, core_int k, T alpha, const operand<T>& a,
                          const operand<T>& b, T* c, core_int ldc) {
  for (core_int j = 0; j < n; ++j) {
    for (core_int i = 0; i < m; ++i) {
      const T *row = a.address(i, 0), *column = b.address(0, j);
      const T sum = a.conjugated ? inner_product<true>(k, row, 1, column, b.row_step)
                                 : inner_product<false>(k, row, 1, column, b.row_step);
      c[i + j * ldc] += alpha * sum;
    }
  }
}

/// Any factors, element by element.
template <class T>
void multiply_by_elements(core_int m, core_int n, core_int k, T alpha, const operand<T>& a,
                          const operand<T>& b, T* c, core_int ldc) {
  for (core_int j = 0; j < n; ++j) {
    for (core_int i = 0; i < m; ++i) {
      T sum{};
      for (core_int l = 0; l < k; ++l) sum += a.at(i, l) * b.at(l, j);
      c[i + j * ldc] += alpha * sum;
    }
  }
}

template <class T>
void multiply_unpacked(core_int m, core_int n, core_int k, T alpha, const operand<T>& a, const operand<T>& b,
                       T* c, core_int ldc) {
  const bool general = a.kind == matrix_kind::kGeneral;
  if (general && a.row_step == 1 && !a.conjugated) {
    multiply_by_columns(m, n, k, alpha, a, b, c, ldc);
  } else if (general && a.column_step == 1 && b.kind == matrix_kind::kGeneral && !b.conjugated) {
    multiply_by_products(m, n, k, alpha, a, b, c, ldc);
  } else {
    multiply_by_elements(m, n, k, alpha, a, b, c, ldc);
  }
}

template <class T>
bool gains_from_packing(core_int m, core_int n, core_int k, const operand<T>& a, const operand<T>& b) {
  if (static_cast<double>(m) * static_cast<double>(n) * static_cast<double>(k) < kPackedFrom) return false;
  const bool in_place = a.kind == matrix_kind::kGeneral && b.kind == matrix_kind::kGeneral &&
                        (a.row_step == 1 ? !a.conjugated : a.column_step == 1 && !b.conjugated);
  return n > kThinColumns || !in_place;
}

}  // namespace

template <class T>
void multiply_add(core_int m, core_int n, core_int k, T alpha, const operand<T>& a, const operand<T>& b, T* c,
                  core_int ldc) {
  using shape = tile_shape<T>;
  using sizes = block_sizes<T>;
  static_assert(sizes::kRowBlock % shape::kRows == 0 && sizes::kColumnBlock % shape::kColumns == 0);
  if (m <= 0 || n <= 0 || k <= 0) return;
  if (gains_from_packing(m, n, k, a, b)) {
    const core_int slice = std::min(sizes::kInner, k);
    const core_int a_size = round_up(std::min(sizes::kRowBlock, m), shape::kRows) * slice * kRealsOf<T>;
    const core_int b_size = round_up(std::min(sizes::kColumnBlock, n), shape::kColumns) * slice * kRealsOf<T>;
    // A's panels end on a multiple of 16 bytes, B's are read one number at a time.
    const scratch<real_of<T>> panels(a_size + b_size);
    if (panels.get() != nullptr) {
      multiply_packed(m, n, k, alpha, a, b, c, ldc, panels.get(), panels.get() + a_size);
      return;
    }
  }
  multiply_unpacked(m, n, k, alpha, a, b, c, ldc);
}

template void multiply_add(core_int, core_int, core_int, float, const operand<float>&, const operand<float>&,
                           float*, core_int);
template void multiply_add(core_int, core_int, core_int, double, const operand<double>&,
                           const operand<double>&, double*, core_int);
template void multiply_add(core_int, core_int, core_int, complex8, const operand<complex8>&,
                           const operand<complex8>&, complex8*, core_int);
template void multiply_add(core_int, core_int, core_int, complex16, const operand<complex16>&,
                           const operand<complex16>&, complex16*, core_int);

}  // namespace qel::plain
