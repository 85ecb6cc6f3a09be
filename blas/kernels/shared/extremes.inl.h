// SPDX-License-Identifier: BSD-3-Clause
// Index from 1 of the element of largest (amax) or smallest (amin) magnitude, |re| + |im| if complex; 0 if n
// or incx is not above 0. The text of all levels; the registers are those of the file that includes it. The
// best so far is replaced when the comparison that would keep it fails. So the first of equal elements wins,
// a NaN always replaces the best, and the element after a NaN always replaces the NaN. Stride 1: blocks of
// registers. A block that has no NaN and nothing better than the best is passed over; one with something
// better only hands on its extreme, and where that stands is looked for at the end, in the last such block. A
// vector of few registers without a NaN is a single block. A block with a NaN is walked element by element,
// as are vectors of other strides.
#pragma once

#include "blas/kernels/shared/lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

inline float magnitude(complex8 v) { return magnitude(v.real) + magnitude(v.imag); }
inline double magnitude(complex16 v) { return magnitude(v.real) + magnitude(v.imag); }

struct largest {
  template <class R>
  static bool keeps(R best, R next) {
    return best >= next;
  }
  template <class W>
  static typename W::reg better(typename W::reg a, typename W::reg b) {
    return W::larger(a, b);
  }
  template <class W>
  static typename W::reg beats(typename W::reg a, typename W::reg best) {
    return W::above(a, best);
  }
};
struct smallest {
  template <class R>
  static bool keeps(R best, R next) {
    return next >= best;
  }
  template <class W>
  static typename W::reg better(typename W::reg a, typename W::reg b) {
    return W::smaller(a, b);
  }
  template <class W>
  static typename W::reg beats(typename W::reg a, typename W::reg best) {
    return W::above(best, a);
  }
};

/// The magnitudes of a register's worth of elements, complex ones in an order of their own.
template <class T>
inline auto magnitudes(const T* x) {
  using W = search_lanes<typename parts<T>::real>;
  const auto* at = reinterpret_cast<const typename parts<T>::real*>(x);
  const auto first = W::magnitude(W::loadu(at));
  if constexpr (parts<T>::kCount == 1) {
    return first;
  } else {
    return W::pair_sums(first, W::magnitude(W::loadu(at + W::kCount)));
  }
}

template <class Rule, class T>
struct search {
  using R = typename parts<T>::real;
  using W = search_lanes<R>;
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

  static bool any_lane(reg mask) { return W::lane_bits(mask) != 0; }

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

  /// The best lane of a register, in all its lanes.
  template <int kDistance>
  static reg in_all_lanes(reg v) {
    v = Rule::template better<W>(v, W::template exchanged_lanes<kDistance>(v));
    if constexpr (kDistance > 1) return in_all_lanes<kDistance / 2>(v);
    return v;
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
      nan = W::either(nan, W::unordered(extreme[k], extreme[k + 1 < kUsed ? k + 1 : k]));
    }
#pragma GCC unroll 8
    for (int r = kExtremes; r < kRegisters; r += kExtremes) {
      reg v[kExtremes];
#pragma GCC unroll 4
      for (int k = 0; k < kExtremes; ++k) v[k] = magnitudes(at + (r + k) * kWidth);
      nan = W::either(nan, W::either(W::unordered(v[0], v[1]), W::unordered(v[2], v[3])));
#pragma GCC unroll 4
      for (int k = 0; k < kUsed; ++k) extreme[k] = Rule::template better<W>(extreme[k], v[k]);
    }
#pragma GCC unroll 4
    for (int k = 1; k < kUsed; ++k) extreme[0] = Rule::template better<W>(extreme[0], extreme[k]);
    if (any_lane(W::either(nan, Rule::template beats<W>(extreme[0], W::all(best))))) {
      if (any_lane(nan)) return false;
      best = W::low_lane(in_all_lanes<kWidth / 2>(extreme[0]));
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
  /// The lanes of the register's worth of elements at i whose magnitude is the best.
  int places(core_int i) const { return W::lane_bits(W::equal(magnitudes(x + i), W::all(best))); }
  /// Whether the kExtremes registers' worth of elements at i have one.
  bool in_any(core_int i) const {
    const reg sought = W::all(best);
    reg found = W::zero();
#pragma GCC unroll 4
    for (int k = 0; k < kExtremes; ++k) {
      found = W::either(found, W::equal(magnitudes(x + i + k * kWidth), sought));
    }
    return any_lane(found);
  }
  /// The first of those in register `index`, which has some.
  void settle_in_register([[maybe_unused]] int found) {
    if constexpr (parts<T>::kCount == 1) {
      index += __builtin_ctz(static_cast<unsigned>(found));
    } else {
      while (magnitude(element_at(x + index)) != best) ++index;
    }
  }
  /// The best's place in its block.
  void settle() {
    if (!in_block) return;
    int found = places(index);
    while (found == 0) found = places(index += kWidth);
    settle_in_register(found);
  }

  /// A vector of some registers, by groups of them, the last group overlapping the one before, in one go: the
  /// extreme, then its place. False, with nothing changed, if there is a NaN.
  bool take_whole(core_int n) {
    const core_int last = n - kExtremes * kWidth;
    reg extreme[kExtremes];
#pragma GCC unroll 4
    for (int k = 0; k < kExtremes; ++k) extreme[k] = magnitudes(x + k * kWidth);
    reg nan = W::either(W::unordered(extreme[0], extreme[1]), W::unordered(extreme[2], extreme[3]));
    for (core_int i = kExtremes * kWidth; i < n; i += kExtremes * kWidth) {
      const T* at = x + (i < last ? i : last);
      reg v[kExtremes];
#pragma GCC unroll 4
      for (int k = 0; k < kExtremes; ++k) {
        v[k] = magnitudes(at + k * kWidth);
        extreme[k] = Rule::template better<W>(extreme[k], v[k]);
      }
      nan = W::either(nan, W::either(W::unordered(v[0], v[1]), W::unordered(v[2], v[3])));
    }
    if (any_lane(nan)) return false;
    extreme[0] = Rule::template better<W>(Rule::template better<W>(extreme[0], extreme[1]),
                                          Rule::template better<W>(extreme[2], extreme[3]));
    best = W::low_lane(in_all_lanes<kWidth / 2>(extreme[0]));
    core_int i = 0;
    while (i < last && !in_any(i)) i += kExtremes * kWidth;
    index = i < last ? i : last;
    int found = places(index);
    while (found == 0) found = places(index += kWidth);
    settle_in_register(found);
    return true;
  }
};

/// Negative if there was a NaN: the result then owes nothing to what stands before. Out of line, since native
/// levels have two kernels over it; so are the steps of long vectors, whose registers short ones need not
/// save.
template <class Rule, class T>
[[gnu::noinline]] core_int extreme_of_long_slice(core_int n, const T* x, core_int inc) {
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
[[gnu::noinline]] core_int extreme_of_slice(core_int n, const T* x, core_int inc) {
  constexpr int kWidth = search<Rule, T>::kWidth;
  if (inc == 1 && n >= 4 * kWidth && n < 64 * kWidth) {
    search<Rule, T> found{x, inc};
    if (found.take_whole(n)) return found.index + 1;
  }
  return extreme_of_long_slice<Rule>(n, x, inc);
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

}  // namespace qel::QEL_LEVEL
