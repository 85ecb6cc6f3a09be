// SPDX-License-Identifier: BSD-3-Clause
// Passes over long transforms: leaves without twiddles, joins with them; in natural order of the sub-blocks
// or, for powers of two, bit-reversed. Elements of a sub-block go through registers side by side, those that
// fill no register one by one; each element's operations are the same in both.
#pragma once

#include "fft/kernels/shared/straight.inl.h"

namespace qel::QEL_LEVEL {
namespace {

constexpr int reversed(int p, int radix) {
  int result = 0;
  for (int bit = 1; bit < radix; bit *= 2) result = 2 * result + (p & bit ? 1 : 0);
  return result;
}

/// Where sub-block p lies.
template <int radix, bool kReversed>
constexpr int place(int p) {
  return kReversed ? reversed(p, radix) : p;
}

/// One register of the radix from source to target.
template <class V, bool kBackward, int radix, bool kReversed, class C>
[[gnu::always_inline]] inline void join_one(const C* source, C* target, core_int stride, const C* twiddles,
                                            core_int twiddle_stride) {
  reg_of<V> x[radix];
  x[0] = V::load(source);
#pragma GCC unroll 16
  for (int p = 1; p < radix; ++p) {
    x[p] = turned<V, kBackward>(V::load(source + place<radix, kReversed>(p) * stride),
                                V::load(twiddles + (p - 1) * twiddle_stride));
  }
  dft<V, kBackward, radix>::run(x);
#pragma GCC unroll 16
  for (int p = 0; p < radix; ++p) V::store(target + p * stride, x[p]);
}

template <class R, bool kBackward, int radix, bool kReversed>
[[gnu::always_inline]] inline void join_run(const complex_type<R>* source, complex_type<R>* target,
                                            core_int stride, core_int count, const complex_type<R>* twiddles,
                                            core_int twiddle_stride) {
  using V = widest<R>;
  core_int k = 0;
  for (; k + V::kCount <= count; k += V::kCount) {
    join_one<V, kBackward, radix, kReversed>(source + k, target + k, stride, twiddles + k, twiddle_stride);
  }
  for (; k < count; ++k) {
    join_one<single<R>, kBackward, radix, kReversed>(source + k, target + k, stride, twiddles + k,
                                                     twiddle_stride);
  }
}

template <class R, bool kBackward, int radix, bool kReversed>
void join_pass(const complex_type<R>* source, complex_type<R>* target, core_int blocks, core_int m,
               const complex_type<R>* twiddles) {
  for (core_int b = 0; b < blocks; ++b) {
    join_run<R, kBackward, radix, kReversed>(source + b * radix * m, target + b * radix * m, m, m, twiddles,
                                             m);
  }
}

template <class R, bool kBackward, int radix>
void column_pass(complex_type<R>* data, core_int stride, core_int count, const complex_type<R>* twiddles,
                 core_int twiddle_stride) {
  join_run<R, kBackward, radix, true>(data, data, stride, count, twiddles, twiddle_stride);
}

/// One register of the radix, then twiddles: the transpose of join_one.
template <class V, bool kBackward, int radix, bool kReversed, class C>
[[gnu::always_inline]] inline void split_one(const C* source, C* target, core_int stride, const C* twiddles,
                                             core_int twiddle_stride) {
  reg_of<V> x[radix];
#pragma GCC unroll 16
  for (int p = 0; p < radix; ++p) x[p] = V::load(source + p * stride);
  dft<V, kBackward, radix>::run(x);
  V::store(target, x[0]);
#pragma GCC unroll 16
  for (int p = 1; p < radix; ++p) {
    V::store(target + place<radix, kReversed>(p) * stride,
             turned<V, kBackward>(x[p], V::load(twiddles + (p - 1) * twiddle_stride)));
  }
}

template <class R, bool kBackward, int radix, bool kReversed>
[[gnu::always_inline]] inline void split_run(const complex_type<R>* source, complex_type<R>* target,
                                             core_int stride, core_int count, const complex_type<R>* twiddles,
                                             core_int twiddle_stride) {
  using V = widest<R>;
  core_int k = 0;
  for (; k + V::kCount <= count; k += V::kCount) {
    split_one<V, kBackward, radix, kReversed>(source + k, target + k, stride, twiddles + k, twiddle_stride);
  }
  for (; k < count; ++k) {
    split_one<single<R>, kBackward, radix, kReversed>(source + k, target + k, stride, twiddles + k,
                                                      twiddle_stride);
  }
}

template <class R, bool kBackward, int radix, bool kReversed>
void split_pass(const complex_type<R>* source, complex_type<R>* target, core_int blocks, core_int m,
                const complex_type<R>* twiddles) {
  for (core_int b = 0; b < blocks; ++b) {
    split_run<R, kBackward, radix, kReversed>(source + b * radix * m, target + b * radix * m, m, m, twiddles,
                                              m);
  }
}

template <class R, bool kBackward, int radix>
void column_split(complex_type<R>* data, core_int stride, core_int count, const complex_type<R>* twiddles,
                  core_int twiddle_stride) {
  split_run<R, kBackward, radix, true>(data, data, stride, count, twiddles, twiddle_stride);
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

/// From bit-reversed to natural order in every block, or back.
template <class R, bool kBackward, int radix, bool kToReversed>
void block_pass(complex_type<R>* data, core_int blocks) {
  using V = single<R>;
  for (core_int b = 0; b < blocks; ++b, data += radix) {
    reg_of<V> x[radix];
#pragma GCC unroll 16
    for (int p = 0; p < radix; ++p) x[p] = V::load(data + (kToReversed ? p : reversed(p, radix)));
    dft<V, kBackward, radix>::run(x);
#pragma GCC unroll 16
    for (int p = 0; p < radix; ++p) V::store(data + (kToReversed ? reversed(p, radix) : p), x[p]);
  }
}

/// The transform of odd length n of folded input: work[0] is the first element, work[j] the sum and
/// work[n - j] the difference of elements j and n - j. Outputs lie stride apart.
template <class R, bool kBackward>
inline void unfold(complex_type<R>* output, core_int stride, int n, const complex_type<R>* roots,
                   const complex_type<R>* work) {
  using V = single<R>;
  const int half = n / 2;
  reg_of<V> zeroth = V::load(work);
  for (int j = 1; j <= half; ++j) zeroth = V::add(zeroth, V::load(work + j));
  // Several outputs at a time, because each sum waits for its terms.
  const auto outputs = [&]<int kCount>(int k) __attribute__((always_inline)) {
    reg_of<V> even[kCount], odd[kCount];
    int at[kCount];
#pragma GCC unroll 4
    for (int i = 0; i < kCount; ++i) {
      even[i] = times_plus<V>(V::load(work + 1), roots[k + i].real, V::load(work));
      odd[i] = V::times(V::load(work + n - 1), -roots[k + i].imag);
      at[i] = k + i;
    }
    for (int j = 2; j <= half; ++j) {
      const reg_of<V> sum = V::load(work + j), difference = V::load(work + n - j);
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

template <class V, class C>
[[gnu::always_inline]] inline void fold(reg_of<V> a, reg_of<V> b, C* work, int j, int n) {
  V::store(work + j, V::add(a, b));
  V::store(work + n - j, V::sub(a, b));
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
    unfold<R, kBackward>(output + b * n, 1, n, roots, work);
  }
}

template <class R, bool kBackward>
void generic_join(const complex_type<R>* source, complex_type<R>* target, core_int blocks, core_int m,
                  const complex_type<R>* twiddles, int n, const complex_type<R>* roots,
                  complex_type<R>* work) {
  using V = single<R>;
  const auto element = [&](const complex_type<R>* x, core_int k, int p) {
    return turned<V, kBackward>(V::load(x + k + p * m), V::load(twiddles + (p - 1) * m + k));
  };
  for (core_int b = 0; b < blocks; ++b) {
    const complex_type<R>* x = source + b * n * m;
    for (core_int k = 0; k < m; ++k) {
      V::store(work, V::load(x + k));
      for (int j = 1; j <= n / 2; ++j) fold<V>(element(x, k, j), element(x, k, n - j), work, j, n);
      unfold<R, kBackward>(target + b * n * m + k, m, n, roots, work);
    }
  }
}

template <class R, bool kBackward>
void generic_split(const complex_type<R>* source, complex_type<R>* target, core_int blocks, core_int m,
                   const complex_type<R>* twiddles, int n, const complex_type<R>* roots,
                   complex_type<R>* work) {
  using V = single<R>;
  for (core_int b = 0; b < blocks; ++b) {
    for (core_int k = 0; k < m; ++k) {
      const complex_type<R>* x = source + b * n * m + k;
      complex_type<R>* y = target + b * n * m + k;
      V::store(work, V::load(x));
      for (int j = 1; j <= n / 2; ++j) fold<V>(V::load(x + j * m), V::load(x + (n - j) * m), work, j, n);
      unfold<R, kBackward>(y, m, n, roots, work);
      for (int p = 1; p < n; ++p) {
        V::store(y + p * m, turned<V, kBackward>(V::load(y + p * m), V::load(twiddles + (p - 1) * m + k)));
      }
    }
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
