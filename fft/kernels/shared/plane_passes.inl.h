// SPDX-License-Identifier: BSD-3-Clause
// Passes over lines as planes. The first pass reads pairs and the last one writes pairs; sub-blocks are
// multiples of a block of planes, so that passes between move no number from its lane.
#pragma once

#include "fft/kernels/shared/plane_lanes.inl.h"

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

/// Addresses of elements that lie a stride apart, a pointer for every four of them: so few registers that
/// loops keep them.
template <class C, int radix>
struct strided {
  C* base[(radix + 3) / 4];
  core_int stride, thrice;
  [[gnu::always_inline]] strided(C* data, core_int step) : stride(step), thrice(3 * step) {
#pragma GCC unroll 4
    for (int i = 0; i < (radix + 3) / 4; ++i) base[i] = data + 4 * i * step;
  }
  [[gnu::always_inline]] C* operator[](int p) const {
    return base[p / 4] + (p % 4 == 3 ? thrice : p % 4 * stride);
  }
  [[gnu::always_inline]] void advance(core_int count) {
#pragma GCC unroll 4
    for (int i = 0; i < (radix + 3) / 4; ++i) base[i] += count;
  }
};

/// radix outputs of kCount groups, register by register, to the groups' places.
template <class V, int radix, class C>
[[gnu::always_inline]] inline void store_groups(C* target, const int* places, core_int count, reg_of<V>* y) {
#pragma GCC unroll 8
  for (int k = 0; k < radix; k += V::kCount) {
    V::transpose(y + k);
#pragma GCC unroll 4
    for (int i = 0; i < V::kCount; ++i) {
      if (i < count) V::store(target + places[i] + k, y[k + i]);
    }
  }
}

/// Group q < count of radix elements, step apart in the input, its elements stride apart, to target +
/// places[q].
template <class R, bool kBackward, int radix>
void first_planes(const complex_type<R>* input, core_int step, core_int stride, complex_type<R>* target,
                  const int* places, core_int count) {
  using V = planes<R>;
  strided<const complex_type<R>, radix> from(input, stride);
  // The step between groups; absent ones are the first one again.
  const auto groups = [&](core_int present, auto load) QEL_BODY {
    reg_of<V> y[radix];
    dft_between<V, kBackward, radix>(load, [&](int k, reg_of<V> v) QEL_BODY { y[k] = v; });
    store_groups<V, radix>(target, places, present, y);
    from.advance(present * step);
    places += present;
  };
  core_int left = count;
  if (step == 1) {
    for (; left >= V::kCount; left -= V::kCount)
      groups(V::kCount, [&](int p) QEL_BODY { return V::load_pairs(from[p]); });
  } else {
    for (; left >= V::kCount; left -= V::kCount)
      groups(V::kCount, [&](int p) QEL_BODY { return V::gather(from[p], step); });
  }
  for (; left > 0; --left) groups(1, [&](int p) QEL_BODY { return V::gather(from[p], 0); });
}

/// Elements in reversed order that lie group by group; in place.
template <class R, bool kBackward, int radix>
void first_reversed(complex_type<R>* data, core_int groups) {
  using V = planes<R>;
  constexpr int kPlaces[] = {0, radix, 2 * radix, 3 * radix};
  for (core_int b = 0; b < groups; b += V::kCount, data += V::kCount * radix) {
    reg_of<V> y[radix];
    dft_between<V, kBackward, radix>([&](int p)
                                         QEL_BODY { return V::gather(data + reversed(p, radix), radix); },
                                     [&](int k, reg_of<V> v) QEL_BODY { y[k] = v; });
    store_groups<V, radix>(data, kPlaces, V::kCount, y);
  }
}

/// Its transpose.
template <class R, bool kBackward, int radix>
void last_reversed(complex_type<R>* data, core_int groups) {
  using V = planes<R>;
  for (core_int b = 0; b < groups; b += V::kCount, data += V::kCount * radix) {
    reg_of<V> x[radix];
#pragma GCC unroll 8
    for (int k = 0; k < radix; k += V::kCount) {
#pragma GCC unroll 4
      for (int i = 0; i < V::kCount; ++i) x[k + i] = V::load(data + i * radix + k);
      V::transpose(x + k);
    }
    dft<V, kBackward, radix>::run(x);
#pragma GCC unroll 8
    for (int p = 0; p < radix; ++p) V::scatter(data + reversed(p, radix), radix, x[p]);
  }
}

/// Blocks of radix sub-blocks, which lie stride apart in either array, count elements of each of them;
/// twiddles lie register by register: radix - 1 of the first, radix - 1 of the next.
template <class R, bool kBackward, int radix, bool kReversed, bool kToPairs>
void plane_join(const complex_type<R>* source, core_int stride, complex_type<R>* target, core_int to_stride,
                core_int count, core_int blocks, const complex_type<R>* twiddles) {
  using V = planes<R>;
  for (core_int b = 0; b < blocks; ++b, source += radix * stride, target += radix * to_stride) {
    strided<const complex_type<R>, radix> from(source, stride);
    strided<complex_type<R>, radix> to(target, to_stride);
    const complex_type<R>* w = twiddles;
    for (core_int k = 0; k < count; k += V::kCount) {
      dft_between<V, kBackward, radix>(
          [&](int p) QEL_BODY {
            const auto x = V::load(from[place<radix, kReversed>(p)]);
            return p == 0 ? x : V::template turn<kBackward>(x, V::load_aligned(w + (p - 1) * V::kCount));
          },
          [&](int p, reg_of<V> v) QEL_BODY {
            if constexpr (kToPairs) {
              V::store_pairs(to[p], v);
            } else {
              V::store(to[p], v);
            }
          });
      from.advance(V::kCount);
      to.advance(V::kCount);
      w += (radix - 1) * V::kCount;
    }
  }
}

/// Its transpose.
template <class R, bool kBackward, int radix, bool kFromPairs>
void plane_split(const complex_type<R>* source, core_int stride, complex_type<R>* target, core_int to_stride,
                 core_int count, core_int blocks, const complex_type<R>* twiddles) {
  using V = planes<R>;
  for (core_int b = 0; b < blocks; ++b, source += radix * stride, target += radix * to_stride) {
    strided<const complex_type<R>, radix> from(source, stride);
    strided<complex_type<R>, radix> to(target, to_stride);
    const complex_type<R>* w = twiddles;
    for (core_int k = 0; k < count; k += V::kCount) {
      dft_between<V, kBackward, radix>(
          [&](int p) QEL_BODY { return kFromPairs ? V::load_pairs(from[p]) : V::load(from[p]); },
          [&](int p, reg_of<V> v) QEL_BODY {
            if (p > 0) v = V::template turn<kBackward>(v, V::load_aligned(w + (p - 1) * V::kCount));
            V::store(to[reversed(p, radix)], v);
          });
      from.advance(V::kCount);
      to.advance(V::kCount);
      w += (radix - 1) * V::kCount;
    }
  }
}

/// The join of an odd radix n, which is kRadix if that is not 0; roots: exp(-2 pi i j / n).
template <class R, bool kBackward, int kRadix, bool kToPairs>
[[gnu::always_inline]] inline void odd_plane_join(const complex_type<R>* source, core_int stride,
                                                  complex_type<R>* target, core_int to_stride, core_int count,
                                                  const complex_type<R>* twiddles, int radix,
                                                  const complex_type<R>* roots) {
  using V = planes<R>;
  using P = plane<R>;
  const int n = kRadix == 0 ? radix : kRadix, half = n / 2;
  reg_of<V> sum[kLargestRadix / 2 + 1], difference[kLargestRadix / 2 + 1];
  for (core_int k = 0; k < count; k += V::kCount, twiddles += (n - 1) * V::kCount) {
    const auto element = [&](int p) QEL_BODY {
      return V::template turn<kBackward>(V::load(source + k + p * stride),
                                         V::load_aligned(twiddles + (p - 1) * V::kCount));
    };
    const auto put = [&](int p, reg_of<V> v) QEL_BODY {
      complex_type<R>* const at = target + k + p * to_stride;
      if constexpr (kToPairs) {
        V::store_pairs(at, v);
      } else {
        V::store(at, v);
      }
    };
    const reg_of<V> first = V::load(source + k);
    reg_of<V> zeroth = first;
    for (int j = 1; j <= half; ++j) {
      const auto a = element(j), b = element(n - j);
      sum[j] = V::add(a, b);
      difference[j] = V::sub(a, b);
      zeroth = V::add(zeroth, sum[j]);
    }
    put(0, zeroth);
    const auto outputs = [&]<int kCount>(int q) QEL_BODY {
      reg_of<V> even[kCount], odd[kCount];
      int at[kCount];
#pragma GCC unroll 2
      for (int i = 0; i < kCount; ++i) {
        at[i] = q + i;
        even[i] = V::add(V::times(sum[1], P::all(roots[at[i]].real)), first);
        odd[i] = V::times(difference[1], P::all(-roots[at[i]].imag));
      }
#pragma GCC unroll 8
      for (int j = 2; j <= half; ++j) {
#pragma GCC unroll 2
        for (int i = 0; i < kCount; ++i) {
          at[i] += q + i;
          at[i] -= at[i] >= n ? n : 0;
          even[i] = V::add(V::times(sum[j], P::all(roots[at[i]].real)), even[i]);
          odd[i] = V::add(V::times(difference[j], P::all(-roots[at[i]].imag)), odd[i]);
        }
      }
#pragma GCC unroll 2
      for (int i = 0; i < kCount; ++i) {
        const auto turned_odd = quarter<V, kBackward>(odd[i]);
        put(q + i, V::add(even[i], turned_odd));
        put(n - q - i, V::sub(even[i], turned_odd));
      }
    };
    int q = 1;
    for (; q + 1 <= half; q += 2) outputs.template operator()<2>(q);
    for (; q <= half; ++q) outputs.template operator()<1>(q);
  }
}

template <class R, bool kBackward, bool kToPairs>
void any_plane_join(const complex_type<R>* source, core_int stride, complex_type<R>* target,
                    core_int to_stride, core_int count, core_int blocks, const complex_type<R>* twiddles,
                    int radix, const complex_type<R>* roots) {
  for (core_int b = 0; b < blocks; ++b, source += radix * stride, target += radix * to_stride) {
    if (radix == 13) {
      odd_plane_join<R, kBackward, 13, kToPairs>(source, stride, target, to_stride, count, twiddles, radix,
                                                 roots);
    } else {
      odd_plane_join<R, kBackward, 0, kToPairs>(source, stride, target, to_stride, count, twiddles, radix,
                                                roots);
    }
  }
}

/// An odd number n of elements. With h = n / 2, outputs k and n - k are x_0 + sum_j (x_j + x_(n-j)) c_jk -+ i
/// sum_j (x_j - x_(n-j)) s_jk, j = 1 .. h in this order. factors: a row for each j, in whole blocks, of c_jk
/// and s_jk instead of real and imaginary parts for k = 1 .. h.
template <class R, bool kBackward>
void direct_sums(const complex_type<R>* input, complex_type<R>* output, int n,
                 const complex_type<R>* factors) {
  using V = planes<R>;
  using S = single<R>;
  const int half = n / 2;
  const core_int pitch = (half + V::kCount - 1) / V::kCount * V::kCount;
  struct {
    reg_of<V> sum, difference;
  } terms[kLargestRadix / 2];
  const auto first = S::load(input);
  auto zeroth = first;
  for (int j = 1; j <= half; ++j) {
    const auto a = S::load(input + j), b = S::load(input + n - j), sum = S::add(a, b);
    zeroth = S::add(zeroth, sum);
    terms[j - 1] = {V::spread(sum), V::spread(S::sub(a, b))};
  }
  const auto everywhere = V::spread(first);
  const auto blocks = [&]<int kBlocks>(core_int k) QEL_BODY {
    reg_of<V> even[kBlocks], odd[kBlocks];
    const complex_type<R>* f = factors + k;
#pragma GCC unroll 3
    for (int i = 0; i < kBlocks; ++i) {
      const auto factor = V::load_aligned(f + i * V::kCount);
      even[i] = V::add(V::times(terms[0].sum, factor.re), everywhere);
      odd[i] = V::times(terms[0].difference, factor.im);
    }
    for (int j = 1; j < half; ++j) {
      f += pitch;
#pragma GCC unroll 3
      for (int i = 0; i < kBlocks; ++i) {
        const auto factor = V::load_aligned(f + i * V::kCount);
        even[i] = V::add(V::times(terms[j].sum, factor.re), even[i]);
        odd[i] = V::add(V::times(terms[j].difference, factor.im), odd[i]);
      }
    }
#pragma GCC unroll 3
    for (int i = 0; i < kBlocks; ++i) {
      const core_int at = k + i * V::kCount;
      const auto turned_odd = quarter<V, kBackward>(odd[i]);
      const auto low = V::add(even[i], turned_odd), high = V::sub(even[i], turned_odd);
      if (at + V::kCount <= half) {
        V::store_pairs(output + 1 + at, low);
        V::scatter(output + n - 1 - at, -1, high);
      } else {
        complex_type<R> rest[2 * V::kCount];
        V::store_pairs(rest, low);
        V::store_pairs(rest + V::kCount, high);
        for (core_int l = 0; at + l < half; ++l) {
          S::store(output + 1 + at + l, S::load(rest + l));
          S::store(output + n - 1 - at - l, S::load(rest + V::kCount + l));
        }
      }
    }
  };
  core_int k = 0;
  for (; k + 3 * V::kCount <= pitch; k += 3 * V::kCount) blocks.template operator()<3>(k);
  for (; k < pitch; k += V::kCount) blocks.template operator()<1>(k);
  S::store(output, zeroth);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
