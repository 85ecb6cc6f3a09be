// SPDX-License-Identifier: BSD-3-Clause
// LU factors of a few rows and columns that all stand in registers. Rows stay where they are until the end; a
// row that becomes a pivot row is picked out by lane numbers. For vectors of 64 bytes: 32 registers, masks.
#pragma once

#include "blas/kernels/native/small_lu.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// Lane numbers, and what is done by them.
template <class R>
struct lane_picker;
template <>
struct lane_picker<double> {
  using reg = __m512d;
  using mask = __mmask8;
  static __m512i all(int lane) { return _mm512_set1_epi64(lane); }
  /// Eight numbers, one in each byte.
  static __m512i widened(__m128i bytes) { return _mm512_maskz_cvtepu8_epi64(0xFF, bytes); }
  static __m512i pairs(__m512i element) {
    return _mm512_add_epi64(_mm512_add_epi64(element, element), _mm512_set_epi64(1, 0, 1, 0, 1, 0, 1, 0));
  }
  static reg pick(reg low, __m512i lanes, reg high) {
    return _mm512_maskz_permutex2var_pd(0xFF, low, lanes, high);
  }
  static mask equal(reg a, reg b) { return _mm512_cmp_pd_mask(a, b, _CMP_EQ_OQ); }
  static reg only(mask m, reg v) { return _mm512_maskz_mov_pd(m, v); }
  static reg choose(mask m, reg yes, reg no) { return _mm512_mask_blend_pd(m, no, yes); }
  /// The largest lane in all lanes; those of a complex element are the same already.
  template <int kParts>
  static reg largest(reg v) {
    using V = vec<double>;
    if (kParts == 1) v = V::larger(v, V::swapped(v));
    v = V::larger(v, _mm512_maskz_shuffle_f64x2(0xFF, v, v, 0xB1));
    return V::larger(v, _mm512_maskz_shuffle_f64x2(0xFF, v, v, 0x4E));
  }
};
template <>
struct lane_picker<float> {
  using reg = __m512;
  using mask = __mmask16;
  static __m512i all(int lane) { return _mm512_set1_epi32(lane); }
  static __m512i widened(__m128i bytes) { return _mm512_maskz_cvtepu8_epi32(0xFFFF, bytes); }
  static __m512i pairs(__m512i element) {
    return _mm512_add_epi32(_mm512_add_epi32(element, element),
                            _mm512_set_epi32(1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0));
  }
  static reg pick(reg low, __m512i lanes, reg high) {
    return _mm512_maskz_permutex2var_ps(0xFFFF, low, lanes, high);
  }
  static mask equal(reg a, reg b) { return _mm512_cmp_ps_mask(a, b, _CMP_EQ_OQ); }
  static reg only(mask m, reg v) { return _mm512_maskz_mov_ps(m, v); }
  static reg choose(mask m, reg yes, reg no) { return _mm512_mask_blend_ps(m, no, yes); }
  template <int kParts>
  static reg largest(reg v) {
    using V = vec<float>;
    if (kParts == 1) v = V::larger(v, V::swapped(v));
    v = V::larger(v, _mm512_maskz_permute_ps(0xFFFF, v, 0x4E));
    v = V::larger(v, _mm512_maskz_shuffle_f32x4(0xFFFF, v, v, 0xB1));
    return V::larger(v, _mm512_maskz_shuffle_f32x4(0xFFFF, v, v, 0x4E));
  }
};

/// Which row stands where after the exchanges so far, a byte for each of eight rows.
struct byte_order {
  unsigned long long place = 0x0706050403020100, at = 0x0706050403020100;

  static int byte(unsigned long long of, int i) { return static_cast<int>(of >> 8 * i & 0xFF); }
  /// Exchanges two bytes that differ in these bits.
  static void exchange(unsigned long long& of, int i, int k, int bits) {
    const auto b = static_cast<unsigned long long>(bits);
    of ^= b << 8 * i ^ b << 8 * k;
  }
  /// The row becomes the one at place j; where it stood before.
  int move(int row, int j) {
    const int before = byte(place, row), other = byte(at, j);
    exchange(at, before, j, row ^ other);
    exchange(place, row, other, before ^ j);
    return before;
  }
};

template <class T>
struct register_lu {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  using pick = lane_picker<R>;
  static constexpr int kParts = reals<T>::kCount, kElements = V::kLanes / kParts,
                       kOrder = static_cast<int>(kRegisterOrder),
                       kVectors = kElements < kOrder ? kOrder / kElements : 1;

  reg a[kOrder][kVectors];
  typename pick::mask open[kVectors];  ///< lanes of rows that are not pivots yet
  byte_order order;
  core_int first_zero = 0;

  static reg picked(const reg (&column)[kVectors], __m512i lanes) {
    return pick::pick(column[0], lanes, column[kVectors - 1]);
  }
  static int rows_of(int v, core_int m) {
    const int left = static_cast<int>(m) - v * kElements;
    return left < 0 ? 0 : left < kElements ? left : kElements;
  }
  /// False if there is what is not finite.
  bool load(core_int m, core_int n, const T* from, core_int lda) {
    reg sum = V::zero();
#pragma GCC unroll 2
    for (int v = 0; v < kVectors; ++v) {
      const int lanes = rows_of(v, m) * kParts;
      open[v] = V::first(lanes);
#pragma GCC unroll 8
      for (int j = 0; j < kOrder; ++j) {
        a[j][v] = V::zero();
        if (j >= n) continue;
        a[j][v] = V::load_part(reinterpret_cast<const R*>(from + v * kElements + j * lda), lanes);
        sum = V::add(sum, V::minus(a[j][v], a[j][v]));
      }
    }
    return V::is_zero(sum);
  }
  void store(core_int m, core_int n, T* to, core_int lda) const {
    __m128i rows = _mm_cvtsi64_si128(static_cast<long long>(order.at));
    if constexpr (kParts == 2) rows = _mm_unpacklo_epi8(rows, rows);
#pragma GCC unroll 2
    for (int v = 0; v < kVectors; ++v) {
      __m512i lanes = pick::widened(v == 0 ? rows : _mm_srli_si128(rows, V::kLanes));
      if constexpr (kParts == 2) lanes = pick::pairs(lanes);
#pragma GCC unroll 8
      for (int j = 0; j < kOrder; ++j) {
        if (j >= n) break;
        V::store_part(reinterpret_cast<R*>(to + v * kElements + j * lda), rows_of(v, m) * kParts,
                      picked(a[j], lanes));
      }
    }
  }

  /// The row of the largest element among `sizes`, the one that stands first if there are several.
  int pivot_row(const reg (&sizes)[kVectors], reg largest) const {
    unsigned lanes = 0;
#pragma GCC unroll 2
    for (int v = 0; v < kVectors; ++v)
      lanes |= static_cast<unsigned>(pick::equal(sizes[v], largest) & open[v]) << (v * V::kLanes);
    if (lanes == 0) return -1;
    int best = __builtin_ctz(lanes) / kParts;
    for (lanes &= lanes - 1; lanes != 0; lanes &= lanes - 1) {
      const int row = __builtin_ctz(lanes) / kParts;
      if (byte_order::byte(order.place, row) < byte_order::byte(order.place, best)) best = row;
    }
    return best;
  }

  /// Column j; false if another way is to be taken.
  template <int j>
  bool eliminate(core_int* pivots) {
    constexpr auto kSmallest = static_cast<R>(sizeof(R) == 4 ? 0x1p-126 : 0x1p-1022);
    reg sizes[kVectors], largest = V::zero();
#pragma GCC unroll 2
    for (int v = 0; v < kVectors; ++v) {
      sizes[v] = V::magnitude(a[j][v]);
      if constexpr (kParts == 2) sizes[v] = V::add(sizes[v], V::swapped(sizes[v]));
      largest = V::larger(largest, pick::only(open[v], sizes[v]));
    }
    largest = pick::template largest<kParts>(largest);
    const R size = V::first_lane(largest);
    const int row = size > 0 ? pivot_row(sizes, largest) : byte_order::byte(order.at, j);
    if (row < 0) return false;
    pivots[j] = order.move(row, j) + 1;
#pragma GCC unroll 2
    for (int v = 0; v < kVectors; ++v) {
      const unsigned own = ((1U << kParts) - 1) << row * kParts >> v * V::kLanes;
      open[v] = static_cast<typename pick::mask>(open[v] & ~own);
    }
    if (size == 0) {
      if (first_zero == 0) first_zero = j + 1;
      return true;
    }
    if (size < kSmallest) return false;  // its reciprocal overflows
    const __m512i real = pick::all(row * kParts), imag = pick::all(row * kParts + kParts - 1);
    T pivot;
    if constexpr (kParts == 1) {
      pivot = V::first_lane(picked(a[j], real));
    } else {
      pivot = {V::first_lane(picked(a[j], real)), V::first_lane(picked(a[j], imag))};
    }
    const T reciprocal = reciprocal_of(pivot);
    reg l[kVectors];
#pragma GCC unroll 2
    for (int v = 0; v < kVectors; ++v) {
      l[v] = pick::only(open[v], finish<T>::multiple(reciprocal, a[j][v]));
      a[j][v] = pick::choose(open[v], l[v], a[j][v]);
    }
#pragma GCC unroll 8
    for (int c = j + 1; c < kOrder; ++c) {
      const reg u = picked(a[c], real), w = kParts == 2 ? picked(a[c], imag) : u;
#pragma GCC unroll 2
      for (int v = 0; v < kVectors; ++v) a[c][v] = multiplied<T>(l[v]).from(a[c][v], u, w);
    }
    return true;
  }
  template <int j = 0>
  bool eliminate_all(int count, core_int* pivots) {
    if constexpr (j < kOrder) {
      if (j >= count) return true;
      return eliminate<j>(pivots) && eliminate_all<j + 1>(count, pivots);
    }
    return true;
  }
};

/// A's factors in place; -1 if another way is to be taken, with nothing written but pivots, else the number
/// of the first zero pivot.
template <class T>
core_int factor_in_registers(core_int m, core_int n, T* a, core_int lda, core_int* pivots) {
  register_lu<T> lu;
  if (!lu.load(m, n, a, lda) || !lu.eliminate_all(static_cast<int>(m < n ? m : n), pivots)) return -1;
  lu.store(m, n, a, lda);
  return lu.first_zero;
}

}  // namespace
}  // namespace qel::QEL_LEVEL
