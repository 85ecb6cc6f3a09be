// SPDX-License-Identifier: BSD-3-Clause
// Native search for the element of largest (amax) or smallest (amin) magnitude, |re| + |im| if complex: index
// from 1, 0 if n or incx is not above 0. The rule is that of the other levels: the best so far is replaced
// when the comparison that would keep it fails, so the first of equal elements wins, a NaN always replaces
// the best, and the element after a NaN always replaces the NaN.
// Stride 1: blocks of registers. A block that has no NaN and nothing better than the best is passed over; one
// with something better only hands on its extreme, and where that stands is looked for at the end, in the
// last such block. A block with a NaN is walked element by element. The forms that end in _slice take
// n >= 1, incx >= 1 and give a negative index if they met a NaN: then the result owes nothing to what stands
// before the slice.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/l5_avx2/wide.inl.h"

namespace qel::QEL_LEVEL {
namespace {

inline float magnitude(complex8 v) { return magnitude(v.real) + magnitude(v.imag); }
inline double magnitude(complex16 v) { return magnitude(v.real) + magnitude(v.imag); }
using reals = __m256d;
using singles = __m256;

inline bool any(reals mask) { return _mm256_movemask_pd(mask) != 0; }
inline bool any(singles mask) { return _mm256_movemask_ps(mask) != 0; }
inline double low_lane(reals v) { return _mm256_cvtsd_f64(v); }
inline float low_lane(singles v) { return _mm256_cvtss_f32(v); }
inline reals either(reals a, reals b) { return _mm256_or_pd(a, b); }
inline singles either(singles a, singles b) { return _mm256_or_ps(a, b); }
inline reals unordered(reals a, reals b) { return _mm256_cmp_pd(a, b, _CMP_UNORD_Q); }
inline singles unordered(singles a, singles b) { return _mm256_cmp_ps(a, b, _CMP_UNORD_Q); }
inline reals equal(reals a, reals b) { return _mm256_cmp_pd(a, b, _CMP_EQ_OQ); }
inline singles equal(singles a, singles b) { return _mm256_cmp_ps(a, b, _CMP_EQ_OQ); }

struct largest {
  template <class R>
  static bool keeps(R best, R next) {
    return best >= next;
  }
  static reals better(reals a, reals b) { return _mm256_max_pd(a, b); }
  static singles better(singles a, singles b) { return _mm256_max_ps(a, b); }
  static reals beats(reals a, reals best) { return _mm256_cmp_pd(a, best, _CMP_GT_OQ); }
  static singles beats(singles a, singles best) { return _mm256_cmp_ps(a, best, _CMP_GT_OQ); }
};
struct smallest {
  template <class R>
  static bool keeps(R best, R next) {
    return next >= best;
  }
  static reals better(reals a, reals b) { return _mm256_min_pd(a, b); }
  static singles better(singles a, singles b) { return _mm256_min_ps(a, b); }
  static reals beats(reals a, reals best) { return _mm256_cmp_pd(a, best, _CMP_LT_OQ); }
  static singles beats(singles a, singles best) { return _mm256_cmp_ps(a, best, _CMP_LT_OQ); }
};

/// The magnitudes of a register's worth of elements, complex ones in an order of their own.
template <class T>
inline auto magnitudes(const T* x) {
  using W = wide<typename parts<T>::real>;
  const auto* at = reinterpret_cast<const typename parts<T>::real*>(x);
  const auto first = W::magnitude(W::load(at));
  if constexpr (parts<T>::kCount == 1) {
    return first;
  } else if constexpr (sizeof(T) == 16) {
    return _mm256_hadd_pd(first, W::magnitude(W::load(at + W::kCount)));
  } else {
    return _mm256_hadd_ps(first, W::magnitude(W::load(at + W::kCount)));
  }
}

// Halves, quarters, and for singles eighths of a register exchanged.
template <int kDistance>
inline reals exchanged_lanes(reals v) {
  return kDistance == 2 ? _mm256_permute2f128_pd(v, v, 1) : _mm256_permute_pd(v, 5);
}
template <int kDistance>
inline singles exchanged_lanes(singles v) {
  if (kDistance == 4) return _mm256_permute2f128_ps(v, v, 1);
  return kDistance == 2 ? _mm256_permute_ps(v, _MM_SHUFFLE(1, 0, 3, 2))
                        : _mm256_permute_ps(v, _MM_SHUFFLE(2, 3, 0, 1));
}

template <class Rule, class T>
struct search {
  using R = typename parts<T>::real;
  using W = wide<R>;
  using reg = typename W::reg;
  static constexpr core_int kWidth = W::kCount;
  static constexpr int kExtremes = 4;

  const T* x;
  core_int inc;
  R best;
  core_int index = 0;
  bool in_block = false;  // the best is the first of its size in the block that starts at index
  bool nan_seen;

  search(const T* first, core_int stride)
      : x(first), inc(stride), best(magnitude(element_at(first))), nan_seen(best != best) {}

  void look_at(core_int i) {
    const R next = magnitude(element_at(x + i * inc));
    if (Rule::keeps(best, next)) return;
    nan_seen |= next != next;
    best = next;
    index = i;
    in_block = false;
  }
  void walk(core_int first, core_int last) {
    for (core_int i = first; i < last; ++i) look_at(i);
  }

  /// Elements first .. first + kRegisters * kWidth - 1. False, with nothing changed, if there is a NaN.
  template <int kRegisters>
  bool take_block(core_int first) {
    constexpr int kUsed = kRegisters < kExtremes ? kRegisters : kExtremes;
    const T* at = x + first;
    reg extreme[kUsed], nan = W::zero();
#pragma GCC unroll 4
    for (int k = 0; k < kUsed; ++k) extreme[k] = magnitudes(at + k * kWidth);
#pragma GCC unroll 4
    for (int k = 0; k < kUsed; k += 2) {
      nan = either(nan, unordered(extreme[k], extreme[k + 1 < kUsed ? k + 1 : k]));
    }
#pragma GCC unroll 8
    for (int r = kExtremes; r < kRegisters; r += kExtremes) {
      reg v[kExtremes];
#pragma GCC unroll 4
      for (int k = 0; k < kExtremes; ++k) v[k] = magnitudes(at + (r + k) * kWidth);
      nan = either(nan, either(unordered(v[0], v[1]), unordered(v[2], v[3])));
#pragma GCC unroll 4
      for (int k = 0; k < kUsed; ++k) extreme[k] = Rule::better(extreme[k], v[k]);
    }
#pragma GCC unroll 4
    for (int k = 1; k < kUsed; ++k) extreme[0] = Rule::better(extreme[0], extreme[k]);
    if (any(either(nan, Rule::beats(extreme[0], W::all(best))))) {
      if (any(nan)) return false;
      reg lanes_best = extreme[0];
      if constexpr (kWidth == 8) lanes_best = Rule::better(lanes_best, exchanged_lanes<4>(lanes_best));
      lanes_best = Rule::better(lanes_best, exchanged_lanes<2>(lanes_best));
      lanes_best = Rule::better(lanes_best, exchanged_lanes<1>(lanes_best));
      best = low_lane(lanes_best);
      index = first;
      in_block = true;
    }
    return true;
  }
  /// From element i on, as many whole blocks as there are up to n; returns where that ends.
  template <int kRegisters>
  core_int take_blocks(core_int i, core_int n) {
    for (; i + kRegisters * kWidth <= n; i += kRegisters * kWidth) {
      if (best != best) look_at(i);  // only the element after a NaN can replace it, whatever its size
      if (best != best || !take_block<kRegisters>(i)) walk(i, i + kRegisters * kWidth);
    }
    return i;
  }
  /// The last elements, fewer than a register has: its other lanes are filled with elements that were seen
  /// before and can't be better than the best.
  void take_rest(core_int i, core_int n) {
    if (i >= n) return;
    if (i < kWidth || best != best || !take_block<1>(n - kWidth)) walk(i, n);
  }
  /// The best's place in its block.
  void settle() {
    if (!in_block) return;
    const reg wanted = W::all(best);
    while (!any(equal(magnitudes(x + index), wanted))) index += kWidth;
    while (magnitude(element_at(x + index)) != best) ++index;
  }
};

/// Negative if there was a NaN. Out of line, since two kernels share it.
template <class Rule, class T>
[[gnu::noinline]] core_int extreme_of_slice(core_int n, const T* x, core_int inc) {
  search<Rule, T> found{x, inc};
  if (inc == 1) {
    core_int i = found.template take_blocks<32>(0, n);
    i = found.template take_blocks<8>(i, n);
    i = found.template take_blocks<2>(i, n);
    i = found.template take_blocks<1>(i, n);
    found.take_rest(i, n);
    found.settle();
  } else {
    found.walk(1, n);
  }
  return found.nan_seen ? -found.index - 1 : found.index + 1;
}
template <class Rule, class T>
inline core_int extreme_index(core_int n, const T* x, core_int inc) {
  if (n <= 0 || inc <= 0) return 0;
  const core_int index = extreme_of_slice<Rule>(n, x, inc);
  return index < 0 ? -index : index;
}

}  // namespace

core_int isamax(const core_int* n, const float* x, const core_int* incx) {
  return extreme_index<largest>(*n, x, *incx);
}
core_int idamax(const core_int* n, const double* x, const core_int* incx) {
  return extreme_index<largest>(*n, x, *incx);
}
core_int icamax(const core_int* n, const complex8* x, const core_int* incx) {
  return extreme_index<largest>(*n, x, *incx);
}
core_int izamax(const core_int* n, const complex16* x, const core_int* incx) {
  return extreme_index<largest>(*n, x, *incx);
}
core_int isamin(const core_int* n, const float* x, const core_int* incx) {
  return extreme_index<smallest>(*n, x, *incx);
}
core_int idamin(const core_int* n, const double* x, const core_int* incx) {
  return extreme_index<smallest>(*n, x, *incx);
}
core_int icamin(const core_int* n, const complex8* x, const core_int* incx) {
  return extreme_index<smallest>(*n, x, *incx);
}
core_int izamin(const core_int* n, const complex16* x, const core_int* incx) {
  return extreme_index<smallest>(*n, x, *incx);
}

core_int isamax_slice(const core_int* n, const float* x, const core_int* incx) {
  return extreme_of_slice<largest>(*n, x, *incx);
}
core_int idamax_slice(const core_int* n, const double* x, const core_int* incx) {
  return extreme_of_slice<largest>(*n, x, *incx);
}
core_int icamax_slice(const core_int* n, const complex8* x, const core_int* incx) {
  return extreme_of_slice<largest>(*n, x, *incx);
}
core_int izamax_slice(const core_int* n, const complex16* x, const core_int* incx) {
  return extreme_of_slice<largest>(*n, x, *incx);
}
core_int isamin_slice(const core_int* n, const float* x, const core_int* incx) {
  return extreme_of_slice<smallest>(*n, x, *incx);
}
core_int idamin_slice(const core_int* n, const double* x, const core_int* incx) {
  return extreme_of_slice<smallest>(*n, x, *incx);
}
core_int icamin_slice(const core_int* n, const complex8* x, const core_int* incx) {
  return extreme_of_slice<smallest>(*n, x, *incx);
}
core_int izamin_slice(const core_int* n, const complex16* x, const core_int* incx) {
  return extreme_of_slice<smallest>(*n, x, *incx);
}

}  // namespace qel::QEL_LEVEL
