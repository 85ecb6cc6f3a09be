// SPDX-License-Identifier: BSD-3-Clause
// Packing into panels of the native levels. A source whose width is contiguous is copied step by step; one
// whose depth is contiguous is transposed in registers, 4 x 4 elements of 4, 8 or 16 bytes at a time.
#pragma once

#include "blas/kernels/native/product.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class T>
inline T conjugate(T v) {
  return v;
}
inline complex8 conjugate(complex8 v) { return {v.real, -v.imag}; }
inline complex16 conjugate(complex16 v) { return {v.real, -v.imag}; }

/// Copies 4 rows of 4 elements, transposed.
inline void transpose4(const float* from, core_int from_step, float* to, core_int to_step) {
  __m128 r0 = _mm_loadu_ps(from), r1 = _mm_loadu_ps(from + from_step),
         r2 = _mm_loadu_ps(from + 2 * from_step), r3 = _mm_loadu_ps(from + 3 * from_step);
  _MM_TRANSPOSE4_PS(r0, r1, r2, r3);
  _mm_storeu_ps(to, r0);
  _mm_storeu_ps(to + to_step, r1);
  _mm_storeu_ps(to + 2 * to_step, r2);
  _mm_storeu_ps(to + 3 * to_step, r3);
}
inline void transpose4(const double* from, core_int from_step, double* to, core_int to_step) {
  const __m256d r0 = _mm256_loadu_pd(from), r1 = _mm256_loadu_pd(from + from_step),
                r2 = _mm256_loadu_pd(from + 2 * from_step), r3 = _mm256_loadu_pd(from + 3 * from_step);
  const __m256d low01 = _mm256_unpacklo_pd(r0, r1), high01 = _mm256_unpackhi_pd(r0, r1);
  const __m256d low23 = _mm256_unpacklo_pd(r2, r3), high23 = _mm256_unpackhi_pd(r2, r3);
  _mm256_storeu_pd(to, _mm256_permute2f128_pd(low01, low23, 0x20));
  _mm256_storeu_pd(to + to_step, _mm256_permute2f128_pd(high01, high23, 0x20));
  _mm256_storeu_pd(to + 2 * to_step, _mm256_permute2f128_pd(low01, low23, 0x31));
  _mm256_storeu_pd(to + 3 * to_step, _mm256_permute2f128_pd(high01, high23, 0x31));
}
inline void transpose4(const complex8* from, core_int from_step, complex8* to, core_int to_step) {
  transpose4(reinterpret_cast<const double*>(from), from_step, reinterpret_cast<double*>(to), to_step);
}
inline void transpose4(const complex16* from, core_int from_step, complex16* to, core_int to_step) {
#pragma GCC unroll 4
  for (int i = 0; i < 4; ++i) {
#pragma GCC unroll 4
    for (int p = 0; p < 4; ++p) {
      _mm_storeu_pd(reinterpret_cast<double*>(to + p * to_step + i),
                    _mm_loadu_pd(reinterpret_cast<const double*>(from + i * from_step + p)));
    }
  }
}

/// kWidth contiguous elements.
template <int kWidth, class T>
inline void copy_elements(const T* from, T* to) {
  using R = typename reals<T>::type;
  constexpr int kReals = kWidth * reals<T>::kCount, kLanes = vec<R>::kLanes;
  const R* source = reinterpret_cast<const R*>(from);
  R* target = reinterpret_cast<R*>(to);
  int i = 0;
#pragma GCC unroll 8
  for (; i + kLanes <= kReals; i += kLanes) vec<R>::store(target + i, vec<R>::load(source + i));
  constexpr int kRest = kReals % kLanes;
  if constexpr (kRest > 0) {
    vec<R>::store_part(target + i, kRest, vec<R>::load_part(source + i, kRest));
  }
}

/// One whole panel of kWidth.
template <int kWidth, class T>
void pack_whole(core_int depth, const panel_source<T>& from, T* out) {
  const T* data = from.data;
  if (from.width_step == 1) {
    for (core_int p = 0; p < depth; ++p) copy_elements<kWidth>(data + p * from.depth_step, out + p * kWidth);
    return;
  }
  core_int p = 0;
  if (from.depth_step == 1) {
    constexpr int kGroups = kWidth / 4 * 4;
    for (; p + 4 <= depth; p += 4) {
#pragma GCC unroll 12
      for (int i = 0; i < kGroups; i += 4) {
        transpose4(data + i * from.width_step + p, from.width_step, out + p * kWidth + i, kWidth);
      }
      for (int i = kGroups; i < kWidth; ++i) {
        for (int q = 0; q < 4; ++q) out[(p + q) * kWidth + i] = data[i * from.width_step + p + q];
      }
    }
  }
  for (; p < depth; ++p) {
    for (int i = 0; i < kWidth; ++i) {
      out[p * kWidth + i] = data[i * from.width_step + p * from.depth_step];
    }
  }
}

/// A panel of `count` rows, filled up with zeros to `width`.
template <class T>
void pack_part(int count, int width, core_int depth, const panel_source<T>& from, T* out) {
  const int groups = from.depth_step == 1 ? count / 4 * 4 : 0;
  core_int p = 0;
  for (; groups > 0 && p + 4 <= depth; p += 4) {
    for (int i = 0; i < groups; i += 4) {
      transpose4(from.data + i * from.width_step + p, from.width_step, out + p * width + i, width);
    }
    for (core_int q = p; q < p + 4; ++q) {
      for (int i = groups; i < count; ++i) out[q * width + i] = from.data[i * from.width_step + q];
      for (int i = count; i < width; ++i) out[q * width + i] = T{};
    }
  }
  for (; p < depth; ++p) {
    for (int i = 0; i < count; ++i) {
      out[p * width + i] = from.data[i * from.width_step + p * from.depth_step];
    }
    for (int i = count; i < width; ++i) out[p * width + i] = T{};
  }
}

template <class T>
void conjugate_all(core_int count, T* values) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  R* const parts = reinterpret_cast<R*>(values);
  const typename V::reg signs = V::pairs(1, -1);
  const core_int all = count * reals<T>::kCount;
  core_int i = 0;
  for (; i + V::kLanes <= all; i += V::kLanes) V::store(parts + i, V::mul(V::load(parts + i), signs));
  const int left = static_cast<int>(all - i);
  V::store_part(parts + i, left, V::mul(V::load_part(parts + i, left), signs));
}

/// kPanels whole panels of a source whose width is contiguous, side by side: long runs of each column are
/// read, which neighbouring columns' pages and lines reward.
template <int kWidth, int kPanels, class T>
void pack_side_by_side(core_int depth, const panel_source<T>& from, T* out) {
  constexpr int kLine = 64 / static_cast<int>(sizeof(T)), kAhead = 4;
  for (core_int p = 0; p < depth; ++p) {
    const T* step = from.data + p * from.depth_step;
    for (int i = 0; i < kPanels * kWidth; i += kLine)
      _mm_prefetch(step + kAhead * from.depth_step + i, _MM_HINT_T0);
    for (int i = 0; i < kPanels; ++i)
      copy_elements<kWidth>(step + i * kWidth, out + (i * depth + p) * kWidth);
  }
}

/// Panels of at most kWidth; a lower one is rounded up to a multiple of kRound.
template <int kWidth, int kRound, class T>
void pack(core_int count, core_int depth, panel_source<T> from, T* out) {
  constexpr int kGroup = 8;
  while (from.width_step == 1 && count >= (kGroup + 2) * kWidth) {
    pack_side_by_side<kWidth, kGroup>(depth, from, out);
    if (reals<T>::kCount == 2 && from.conjugated) conjugate_all(kGroup * kWidth * depth, out);
    from.data += kGroup * kWidth;
    out += kGroup * kWidth * depth;
    count -= kGroup * kWidth;
  }
  core_int size = 0;
  for (core_int i = 0; i < count; i += size, from.data += size * from.width_step) {
    size = kRound > 1 ? panel_rows(count - i, kWidth, kRound) : panel_columns(count - i, kWidth);
    const core_int width = (size + kRound - 1) / kRound * kRound;
    if (size == kWidth) {
      pack_whole<kWidth>(depth, from, out);
    } else {
      pack_part(static_cast<int>(size), static_cast<int>(width), depth, from, out);
    }
    if (reals<T>::kCount == 2 && from.conjugated) conjugate_all(width * depth, out);
    out += width * depth;
  }
}

template <class T>
void pack_rows(core_int count, core_int depth, const panel_source<T>& from, T* out) {
  pack<tile_shape<T>::kRows, tile_shape<T>::kLanes>(count, depth, from, out);
}
template <class T>
void pack_columns(core_int count, core_int depth, const panel_source<T>& from, T* out) {
  pack<tile_shape<T>::kColumns, 1>(count, depth, from, out);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
