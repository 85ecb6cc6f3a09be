// SPDX-License-Identifier: BSD-3-Clause
// Index of the element of largest or smallest |re| + |im|. The best so far is replaced only when the
// comparison that would keep it fails; so the first of equal elements wins, a NaN always replaces the best,
// and the element after a NaN always replaces the NaN. Contiguous vectors are passed in blocks, looked at one
// by one only if one of a block's comparisons fails.
#include "blas/plain/level1.h"

namespace qel::plain {

namespace {

struct keeps_largest {
  template <class R>
  static bool keeps(R best, R next) {
    return best >= next;
  }
};
struct keeps_smallest {
  template <class R>
  static bool keeps(R best, R next) {
    return next >= best;
  }
};

template <class Rule, class T>
core_int extreme_index(core_int n, const T* x, core_int incx) {
  if (n <= 0 || incx <= 0) return 0;
  constexpr core_int kBlock = 16;
  core_int index = 0;
  real_of<T> best = abs1(x[0]);
  const auto look_at = [&](core_int i) {
    const real_of<T> next = abs1(x[i * incx]);
    if (!Rule::keeps(best, next)) {
      best = next;
      index = i;
    }
  };
  core_int i = 1;
  if (incx == 1) {
    for (; i + kBlock <= n; i += kBlock) {
      int replacing = 0;
      for (core_int l = 0; l < kBlock; ++l) replacing |= static_cast<int>(!Rule::keeps(best, abs1(x[i + l])));
      if (replacing == 0) continue;
      for (core_int l = 0; l < kBlock; ++l) look_at(i + l);
    }
  }
  for (; i < n; ++i) look_at(i);
  return index + 1;
}

}  // namespace

template <class T>
core_int amax(core_int n, const T* x, core_int incx) {
  return extreme_index<keeps_largest>(n, x, incx);
}

template <class T>
core_int amin(core_int n, const T* x, core_int incx) {
  return extreme_index<keeps_smallest>(n, x, incx);
}

template core_int amax(core_int, const float*, core_int);
template core_int amax(core_int, const double*, core_int);
template core_int amax(core_int, const complex8*, core_int);
template core_int amax(core_int, const complex16*, core_int);
template core_int amin(core_int, const float*, core_int);
template core_int amin(core_int, const double*, core_int);
template core_int amin(core_int, const complex8*, core_int);
template core_int amin(core_int, const complex16*, core_int);

}  // namespace qel::plain
