// SPDX-License-Identifier: BSD-3-Clause
// Index from 1 of the element of largest (amax) or smallest (amin) magnitude, |re| + |im| if complex, for all
// levels; 0 if n or incx is not above 0.
// The best so far is replaced when the comparison that would keep it fails. So the first of equal elements
// wins, a NaN always replaces the best, and the element after a NaN always replaces the NaN.
// Real vectors are walked in pairs with a last odd element, complex ones one by one. At stride 1 blocks of
// which every element leaves the best as it is are passed over with vector comparisons.
#include "blas/kernels/kernel_prelude.h"
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
  template <class R>
  static typename lanes<R>::reg keeping(typename lanes<R>::reg best, typename lanes<R>::reg next) {
    return lanes<R>::at_least(best, next);
  }
};
struct smallest {
  template <class R>
  static bool keeps(R best, R next) {
    return next >= best;
  }
  template <class R>
  static typename lanes<R>::reg keeping(typename lanes<R>::reg best, typename lanes<R>::reg next) {
    return lanes<R>::at_least(next, best);
  }
};

constexpr int kBlockRegisters = 8;

/// The magnitudes that fill register k of a block.
template <class T>
inline auto magnitudes(const T* x, int k) {
  using R = typename parts<T>::real;
  using L = lanes<R>;
  const R* at = reinterpret_cast<const R*>(x) + k * L::kCount * parts<T>::kCount;
  if constexpr (parts<T>::kCount == 1) {
    return L::magnitude(L::loadu(at));
  } else {
    return L::pair_sums(L::magnitude(L::loadu(at)), L::magnitude(L::loadu(at + L::kCount)));
  }
}

template <class Rule, class T>
struct search {
  using R = typename parts<T>::real;
  static constexpr core_int kBlock = kBlockRegisters * lanes<R>::kCount;
  const T* x;
  core_int inc;
  R best;
  core_int index = 0;

  void look_at(core_int i) {
    const R next = magnitude(element_at(x + i * inc));
    if (!Rule::keeps(best, next)) {
      best = next;
      index = i;
    }
  }
  void walk(core_int first, core_int last) {
    core_int i = first;
    if (parts<T>::kCount == 1) {
      for (; i + 2 <= last; i += 2) {
        look_at(i);
        look_at(i + 1);
      }
    }
    for (; i < last; ++i) look_at(i);
  }
  bool block_keeps_best(core_int first) const {
    using L = lanes<R>;
    const auto all_best = L::all(best);
    auto kept = Rule::template keeping<R>(all_best, magnitudes(x + first, 0));
#pragma GCC unroll 8
    for (int k = 1; k < kBlockRegisters; ++k) {
      kept = L::both(kept, Rule::template keeping<R>(all_best, magnitudes(x + first, k)));
    }
    return L::in_all_lanes(kept);
  }
};

template <class Rule, class T>
inline core_int extreme(core_int n, const T* x, core_int inc) {
  if (n <= 0 || inc <= 0) return 0;
  search<Rule, T> found{x, inc, magnitude(element_at(x))};
  core_int i = 1;
  if (inc == 1) {
    for (; i + found.kBlock <= n; i += found.kBlock) {
      if (!found.block_keeps_best(i)) found.walk(i, i + found.kBlock);
    }
  }
  found.walk(i, n);
  return found.index + 1;
}

}  // namespace

core_int isamax(const core_int* n, const float* x, const core_int* incx) {
  return extreme<largest>(*n, x, *incx);
}
core_int idamax(const core_int* n, const double* x, const core_int* incx) {
  return extreme<largest>(*n, x, *incx);
}
core_int icamax(const core_int* n, const complex8* x, const core_int* incx) {
  return extreme<largest>(*n, x, *incx);
}
core_int izamax(const core_int* n, const complex16* x, const core_int* incx) {
  return extreme<largest>(*n, x, *incx);
}
core_int isamin(const core_int* n, const float* x, const core_int* incx) {
  return extreme<smallest>(*n, x, *incx);
}
core_int idamin(const core_int* n, const double* x, const core_int* incx) {
  return extreme<smallest>(*n, x, *incx);
}
core_int icamin(const core_int* n, const complex8* x, const core_int* incx) {
  return extreme<smallest>(*n, x, *incx);
}
core_int izamin(const core_int* n, const complex16* x, const core_int* incx) {
  return extreme<smallest>(*n, x, *incx);
}

}  // namespace qel::QEL_LEVEL
