// SPDX-License-Identifier: BSD-3-Clause
// Packing for the matrix product. A line is a row of A or a column of B; lines lie together (one step of all
// lines is contiguous) or apart (each line is). A panel has kWidth lines side by side for each step.
#pragma once

#include "blas/kernels/gemm_kernels.h"
#include "blas/kernels/shared/gemm_lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// Every element as it is or conjugated, times a factor if there is one.
template <class T, bool kConjugate, bool kScale>
struct packed_value {
  using R = typename parts<T>::real;
  using L = lane_set<R>;
  T factor;
  typename L::reg real, imag;
  explicit packed_value(const T* f) : factor(f == nullptr ? T{} : *f) {
    if constexpr (parts<T>::kCount == 1) {
      real = L::all(factor);
      imag = real;
    } else {
      real = L::all(factor.real);
      imag = L::all(factor.imag);
    }
  }
  T of(T v) const {
    if (kConjugate) v = conjugate(v);
    return kScale ? times(factor, v) : v;
  }
  /// A register of unconjugated elements.
  typename L::reg of_register(typename L::reg v) const {
    static_assert(!kConjugate);
    if constexpr (!kScale) {
      return v;
    } else if constexpr (parts<T>::kCount == 1) {
      return L::mul(real, v);
    } else {
      return L::crosswise_sum(L::mul(real, v), L::mul(imag, L::exchanged(v)));
    }
  }
};

template <int kWidth, bool kConjugate, bool kScale, class T>
inline void pack_together(core_int depth, const T* s, core_int ld,
                          const packed_value<T, kConjugate, kScale>& value, T* out) {
  constexpr int kLanes = lane_set<typename parts<T>::real>::kCount, kReals = kWidth * parts<T>::kCount;
  for (core_int l = 0; l < depth; ++l, s += ld, out += kWidth) {
    if constexpr (!kConjugate && kReals % kLanes == 0) {
      using L = lane_set<typename parts<T>::real>;
#pragma GCC unroll 8
      for (int i = 0; i < kReals; i += kLanes)
        L::storeu(reals(out) + i, value.of_register(L::loadu(reals(s) + i)));
    } else {
#pragma GCC unroll 8
      for (int i = 0; i < kWidth; ++i) out[i] = value.of(element_at(s + i));
    }
  }
}

template <int kWidth, bool kConjugate, bool kScale, class T>
inline void pack_apart(core_int depth, const T* s, core_int ld,
                       const packed_value<T, kConjugate, kScale>& value, T* out) {
  for (core_int l = 0; l < depth; ++l, ++s, out += kWidth) {
#pragma GCC unroll 16
    for (int i = 0; i < kWidth; ++i) out[i] = value.of(element_at(s + i * ld));
  }
}

template <int kWidth, bool kTogether, bool kConjugate, bool kScale, class T>
inline void pack_lines(core_int lines, core_int depth, core_int padded, const T* source, core_int ld,
                       const T* factor, T* panels, core_int panel_stride) {
  const packed_value<T, kConjugate, kScale> value(factor);
  const core_int line_step = kTogether ? 1 : ld, depth_step = kTogether ? ld : 1;
  for (; lines > 0; lines -= kWidth, source += kWidth * line_step, panels += panel_stride) {
    if (lines >= kWidth) {
      if constexpr (kTogether) {
        pack_together<kWidth>(depth, source, ld, value, panels);
      } else {
        pack_apart<kWidth>(depth, source, ld, value, panels);
      }
    } else {
      for (core_int l = 0; l < depth; ++l) {
        for (core_int i = 0; i < kWidth; ++i) {
          panels[l * kWidth + i] =
              i < lines ? value.of(element_at(source + i * line_step + l * depth_step)) : T{};
        }
      }
    }
    for (core_int i = depth * kWidth; i < padded * kWidth; ++i) panels[i] = T{};
  }
}

inline bool is_one(float a) { return a == 1; }
inline bool is_one(double a) { return a == 1; }
template <class C>
inline bool is_one(C a) {
  return a.real == 1 && a.imag == 0;
}

template <class T, int kWidth, bool kTogether, bool kConjugate>
void pack(core_int lines, core_int depth, core_int padded, const T* source, core_int ld, const T* factor,
          T* panels, core_int panel_stride) {
  if (factor == nullptr || is_one(*factor)) {
    pack_lines<kWidth, kTogether, kConjugate, false>(lines, depth, padded, source, ld, factor, panels,
                                                     panel_stride);
  } else {
    pack_lines<kWidth, kTogether, kConjugate, true>(lines, depth, padded, source, ld, factor, panels,
                                                    panel_stride);
  }
}

// By op: rows of A lie together unless A is transposed, columns of B the other way round.
template <class T, int kWidth>
inline constexpr gemm_pack_fn<T>* kPackRows[kGemmOps] = {pack<T, kWidth, true, false>,
                                                         pack<T, kWidth, false, false>,
                                                         pack<T, kWidth, false, parts<T>::kCount == 2>};
template <class T, int kWidth>
inline constexpr gemm_pack_fn<T>* kPackColumns[kGemmOps] = {pack<T, kWidth, false, false>,
                                                            pack<T, kWidth, true, false>,
                                                            pack<T, kWidth, true, parts<T>::kCount == 2>};

}  // namespace
}  // namespace qel::QEL_LEVEL
