// SPDX-License-Identifier: BSD-3-Clause
// Passes over long transforms as pairs: leaves without twiddles, joins with them. Elements of a sub-block go
// through registers side by side, those that fill no register one by one; each element's operations are the
// same in both.
#pragma once

#include "fft/kernels/shared/straight.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// One register of the radix from source to target.
template <class V, bool kBackward, int radix, class C>
[[gnu::always_inline]] inline void join_one(const C* source, C* target, core_int stride, const C* twiddles,
                                            core_int twiddle_stride) {
  reg_of<V> x[radix];
  x[0] = V::load(source);
#pragma GCC unroll 16
  for (int p = 1; p < radix; ++p) {
    x[p] = turned<V, kBackward>(V::load(source + p * stride), V::load(twiddles + (p - 1) * twiddle_stride));
  }
  dft<V, kBackward, radix>::run(x);
#pragma GCC unroll 16
  for (int p = 0; p < radix; ++p) V::store(target + p * stride, x[p]);
}

template <class R, bool kBackward, int radix>
[[gnu::always_inline]] inline void join_run(const complex_type<R>* source, complex_type<R>* target,
                                            core_int stride, core_int count, const complex_type<R>* twiddles,
                                            core_int twiddle_stride) {
  using V = widest<R>;
  core_int k = 0;
  for (; k + V::kCount <= count; k += V::kCount) {
    join_one<V, kBackward, radix>(source + k, target + k, stride, twiddles + k, twiddle_stride);
  }
  for (; k < count; ++k) {
    join_one<single<R>, kBackward, radix>(source + k, target + k, stride, twiddles + k, twiddle_stride);
  }
}

template <class R, bool kBackward, int radix>
void join_pass(const complex_type<R>* source, complex_type<R>* target, core_int blocks, core_int m,
               const complex_type<R>* twiddles) {
  for (core_int b = 0; b < blocks; ++b) {
    join_run<R, kBackward, radix>(source + b * radix * m, target + b * radix * m, m, m, twiddles, m);
  }
}

/// One register of the radix, then twiddles: the transpose of join_one.
template <class V, bool kBackward, int radix, class C>
[[gnu::always_inline]] inline void split_one(const C* source, C* target, core_int stride, const C* twiddles,
                                             core_int twiddle_stride) {
  reg_of<V> x[radix];
#pragma GCC unroll 16
  for (int p = 0; p < radix; ++p) x[p] = V::load(source + p * stride);
  dft<V, kBackward, radix>::run(x);
  V::store(target, x[0]);
#pragma GCC unroll 16
  for (int p = 1; p < radix; ++p) {
    V::store(target + p * stride, turned<V, kBackward>(x[p], V::load(twiddles + (p - 1) * twiddle_stride)));
  }
}

template <class R, bool kBackward, int radix>
[[gnu::always_inline]] inline void split_run(const complex_type<R>* source, complex_type<R>* target,
                                             core_int stride, core_int count, const complex_type<R>* twiddles,
                                             core_int twiddle_stride) {
  using V = widest<R>;
  core_int k = 0;
  for (; k + V::kCount <= count; k += V::kCount) {
    split_one<V, kBackward, radix>(source + k, target + k, stride, twiddles + k, twiddle_stride);
  }
  for (; k < count; ++k) {
    split_one<single<R>, kBackward, radix>(source + k, target + k, stride, twiddles + k, twiddle_stride);
  }
}

template <class R, bool kBackward, int radix>
void split_pass(const complex_type<R>* source, complex_type<R>* target, core_int blocks, core_int m,
                const complex_type<R>* twiddles) {
  for (core_int b = 0; b < blocks; ++b) {
    split_run<R, kBackward, radix>(source + b * radix * m, target + b * radix * m, m, m, twiddles, m);
  }
}

template <class R, bool kBackward, int radix>
void leaf_pass(const complex_type<R>* input, core_int stride, core_int step, complex_type<R>* output,
               core_int count) {
  using V = single<R>;
  for (core_int b = 0; b < count; ++b) {
    reg_of<V> x[radix];
#pragma GCC unroll 16
    for (int p = 0; p < radix; ++p) x[p] = V::load(input + b * step + p * stride);
    dft<V, kBackward, radix>::run(x);
#pragma GCC unroll 16
    for (int p = 0; p < radix; ++p) V::store(output + b * radix + p, x[p]);
  }
}

/// The transform of odd length n, which is kRadix if that is not 0, of folded input: register 0 of work is
/// the first element, register j the sum and register n - j the difference of elements j and n - j. Outputs
/// lie stride apart.
template <class V, bool kBackward, int kRadix, class C>
[[gnu::always_inline]] inline void unfold_of(C* output, core_int stride, int radix, const C* roots,
                                             const C* work) {
  const int n = kRadix == 0 ? radix : kRadix, half = n / 2;
  const auto folded = [&](int j) QEL_BODY { return V::load(work + j * V::kCount); };
  reg_of<V> zeroth = folded(0);
  for (int j = 1; j <= half; ++j) zeroth = V::add(zeroth, folded(j));
  // Several outputs at a time, because each sum waits for its terms.
  const auto outputs = [&]<int kCount>(int k) QEL_BODY {
    reg_of<V> even[kCount], odd[kCount];
    int at[kCount];
#pragma GCC unroll 4
    for (int i = 0; i < kCount; ++i) {
      even[i] = times_plus<V>(folded(1), roots[k + i].real, folded(0));
      odd[i] = V::times(folded(n - 1), -roots[k + i].imag);
      at[i] = k + i;
    }
#pragma GCC unroll 8
    for (int j = 2; j <= half; ++j) {
      const reg_of<V> sum = folded(j), difference = folded(n - j);
#pragma GCC unroll 4
      for (int i = 0; i < kCount; ++i) {
        at[i] += k + i;
        at[i] -= at[i] >= n ? n : 0;
        even[i] = times_plus<V>(sum, roots[at[i]].real, even[i]);
        odd[i] = times_plus<V>(difference, -roots[at[i]].imag, odd[i]);
      }
    }
#pragma GCC unroll 4
    for (int i = 0; i < kCount; ++i) {
      const reg_of<V> turned_odd = quarter<V, kBackward>(odd[i]);
      V::store(output + (k + i) * stride, V::add(even[i], turned_odd));
      V::store(output + (n - k - i) * stride, V::sub(even[i], turned_odd));
    }
  };
  int k = 1;
  for (; k + 3 <= half; k += 4) outputs.template operator()<4>(k);
  for (; k <= half; ++k) outputs.template operator()<1>(k);
  V::store(output, zeroth);
}
template <class V, bool kBackward, class C>
inline void unfold(C* output, core_int stride, int n, const C* roots, const C* work) {
  if (n == 13) {
    unfold_of<V, kBackward, 13>(output, stride, n, roots, work);
  } else {
    unfold_of<V, kBackward, 0>(output, stride, n, roots, work);
  }
}

template <class V, class C>
[[gnu::always_inline]] inline void fold(reg_of<V> a, reg_of<V> b, C* work, int j, int n) {
  V::store(work + j * V::kCount, V::add(a, b));
  V::store(work + (n - j) * V::kCount, V::sub(a, b));
}

/// body.template operator()<V>(k) over 0 .. count: by registers of 16 bytes of work an element, the rest one
/// by one.
template <class R, class Body>
[[gnu::always_inline]] inline void by_columns(core_int count, Body body) {
  using V = across<R>;
  core_int k = 0;
  for (; k + V::kCount <= count; k += V::kCount) body.template operator()<V>(k);
  for (; k < count; ++k) body.template operator()<single<R>>(k);
}

template <class R, bool kBackward>
void generic_leaf(const complex_type<R>* input, core_int stride, core_int step, complex_type<R>* output,
                  core_int count, int n, const complex_type<R>* roots, complex_type<R>* work) {
  using V = single<R>;
  for (core_int b = 0; b < count; ++b) {
    const complex_type<R>* x = input + b * step;
    V::store(work, V::load(x));
    for (int j = 1; j <= n / 2; ++j) {
      fold<V>(V::load(x + j * stride), V::load(x + (n - j) * stride), work, j, n);
    }
    unfold<V, kBackward>(output + b * n, 1, n, roots, work);
  }
}

template <class R, bool kBackward>
void generic_join(const complex_type<R>* source, complex_type<R>* target, core_int blocks, core_int m,
                  const complex_type<R>* twiddles, int n, const complex_type<R>* roots,
                  complex_type<R>* work) {
  for (core_int b = 0; b < blocks; ++b) {
    by_columns<R>(m, [&]<class V>(core_int k) QEL_BODY {
      const complex_type<R>* x = source + b * n * m + k;
      const auto element = [&](int p) QEL_BODY {
        return turned<V, kBackward>(V::load(x + p * m), V::load(twiddles + (p - 1) * m + k));
      };
      V::store(work, V::load(x));
      for (int j = 1; j <= n / 2; ++j) fold<V>(element(j), element(n - j), work, j, n);
      unfold<V, kBackward>(target + b * n * m + k, m, n, roots, work);
    });
  }
}

template <class R, bool kBackward>
void generic_split(const complex_type<R>* source, complex_type<R>* target, core_int blocks, core_int m,
                   const complex_type<R>* twiddles, int n, const complex_type<R>* roots,
                   complex_type<R>* work) {
  for (core_int b = 0; b < blocks; ++b) {
    by_columns<R>(m, [&]<class V>(core_int k) QEL_BODY {
      const complex_type<R>* x = source + b * n * m + k;
      complex_type<R>* y = target + b * n * m + k;
      V::store(work, V::load(x));
      for (int j = 1; j <= n / 2; ++j) fold<V>(V::load(x + j * m), V::load(x + (n - j) * m), work, j, n);
      unfold<V, kBackward>(y, m, n, roots, work);
      for (int p = 1; p < n; ++p) {
        V::store(y + p * m, turned<V, kBackward>(V::load(y + p * m), V::load(twiddles + (p - 1) * m + k)));
      }
    });
  }
}

template <class V, bool kBackward, class C>
inline core_int turn_run(C* data, core_int from, core_int n, C factor, const C* powers) {
  const auto all = V::repeated(&factor);
  for (; from + V::kCount <= n; from += V::kCount) {
    V::store(data + from,
             turned<V, kBackward>(V::load(data + from), turned<V, false>(V::load(powers + from), all)));
  }
  return from;
}
template <class R, bool kBackward>
void turn_row(complex_type<R>* data, core_int n, complex_type<R> factor, const complex_type<R>* powers) {
  const core_int done = turn_run<widest<R>, kBackward>(data, 0, n, factor, powers);
  turn_run<single<R>, kBackward>(data, done, n, factor, powers);
}

template <class V, bool kBackward, class C>
inline core_int multiply_run(const C* source, const C* factor, C* target, core_int from, core_int n) {
  for (; from + V::kCount <= n; from += V::kCount) {
    V::store(target + from, turned<V, kBackward>(V::load(source + from), V::load(factor + from)));
  }
  return from;
}
template <class R, bool kBackward>
void multiply(const complex_type<R>* source, const complex_type<R>* factor, complex_type<R>* target,
              core_int n) {
  const core_int done = multiply_run<widest<R>, kBackward>(source, factor, target, 0, n);
  multiply_run<single<R>, kBackward>(source, factor, target, done, n);
}

template <class V, class C>
inline core_int scale_run(C* data, core_int from, core_int n, typename V::real factor) {
  for (; from + V::kCount <= n; from += V::kCount)
    V::store(data + from, V::times(V::load(data + from), factor));
  return from;
}
template <class R>
void scale(complex_type<R>* data, core_int n, R factor) {
  scale_run<single<R>>(data, scale_run<widest<R>>(data, 0, n, factor), n, factor);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
