// SPDX-License-Identifier: BSD-3-Clause
// Passes that sort as they go: with m = points left / radix and s elements side by side, a pass takes
// x[q + s (p + m j)] to y[q + s (radix p + k)] = exp(-2 pi i p k / (radix m)) sum_j x_j exp(-2 pi i j k /
// radix), p < m, q < s. The first pass reads pairs and the last one writes pairs, backward with parts
// exchanged on both ways; those between know one direction only.
#pragma once

#include "fft/kernels/shared/planar_lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// From k registers of consecutive p to consecutive k for each p.
template <class V, int radix>
[[gnu::always_inline]] inline void store_transposed(typename V::real* re, typename V::real* im,
                                                    const reg_of<V>* x) {
  using R = typename V::real;
  using part = typename V::part;
  if constexpr (V::kCount == 1) {
#pragma GCC unroll 16
    for (int k = 0; k < radix; ++k) V::store(re + k, im + k, x[k]);
  } else if constexpr (radix % 4 == 0 && V::kCount >= 4) {
    constexpr int kEights = V::kCount == 16 ? radix / 8 * 8 : 0;
    if constexpr (kEights > 0) {
      const typename V::lane a[8] = {x[0].re, x[1].re, x[2].re, x[3].re, x[4].re, x[5].re, x[6].re, x[7].re};
      const typename V::lane b[8] = {x[0].im, x[1].im, x[2].im, x[3].im, x[4].im, x[5].im, x[6].im, x[7].im};
      part::store_eight_columns(re, radix, a);
      part::store_eight_columns(im, radix, b);
    }
#pragma GCC unroll 4
    for (int k = kEights; k < radix; k += 4) {
      const typename V::lane a[4] = {x[k].re, x[k + 1].re, x[k + 2].re, x[k + 3].re};
      const typename V::lane b[4] = {x[k].im, x[k + 1].im, x[k + 2].im, x[k + 3].im};
      part::store_columns(re + k, radix, a);
      part::store_columns(im + k, radix, b);
    }
  } else {
    alignas(64) R a[radix * V::kCount], b[radix * V::kCount];
#pragma GCC unroll 16
    for (int k = 0; k < radix; ++k) V::store(a + k * V::kCount, b + k * V::kCount, x[k]);
    for (int p = 0; p < V::kCount; ++p) {
#pragma GCC unroll 16
      for (int k = 0; k < radix; ++k) {
        re[p * radix + k] = a[k * V::kCount + p];
        im[p * radix + k] = b[k * V::kCount + p];
      }
    }
  }
}

/// s = 1: the first pass of a line, p < count.
/// twiddles: real parts of k = 1 for all p, imaginary parts, k = 2 ...
template <class R, bool kBackward, int radix>
void first_of_line(const complex_type<R>* input, core_int count, R* re, R* im, core_int m,
                   const R* twiddles) {
  by_registers<R>(count, [&]<class V>(core_int p) QEL_BODY {
    reg_of<V> x[radix];
#pragma GCC unroll 16
    for (int j = 0; j < radix; ++j) x[j] = V::template load_pairs<kBackward>(input + p + j * m);
    dft<V, false, radix>::run(x);
#pragma GCC unroll 16
    for (int k = 1; k < radix; ++k) {
      const R* w = twiddles + 2 * (k - 1) * m + p;
      x[k] = V::turn(x[k], V::load(w, w + m));
    }
    store_transposed<V, radix>(re + p * radix, im + p * radix, x);
  });
}

template <class V, int radix, class C>
[[gnu::always_inline]] inline void turn_all(reg_of<V>* x, core_int p, const C* twiddles) {
  if (p == 0) return;
#pragma GCC unroll 16
  for (int k = 1; k < radix; ++k) x[k] = V::turn(x[k], V::all(twiddles[p * (radix - 1) + k - 1]));
}

/// Asks for the count elements at p: far rows are none that the processor foresees. The last byte of each
/// cache line's length, because the first one is a neighbour's if the elements straddle lines.
template <int kCount, class C>
[[gnu::always_inline]] inline void ask_for(const C* p) {
  constexpr int kBytes = kCount * static_cast<int>(sizeof(C)), kLine = 64;
  const auto* at = reinterpret_cast<const char*>(p);
#pragma GCC unroll 4
  for (int i = kLine; i < kBytes + kLine; i += kLine) {
    _mm_prefetch(at + (i < kBytes ? i : kBytes) - 1, _MM_HINT_T1);
  }
}

/// The first pass of s lines side by side, an element of all of them every pitch. ahead: how far away those
/// lie that are asked for meanwhile, in elements; 0: none.
template <class R, bool kBackward, int radix>
void first_of_columns(const complex_type<R>* input, core_int pitch, core_int s, R* re, R* im, core_int m,
                      const complex_type<R>* twiddles, core_int ahead) {
  for (core_int p = 0; p < m; ++p) {
    by_registers<R>(s, [&]<class V>(core_int q) QEL_BODY {
      const complex_type<R>* const from = input + p * pitch + q;
      if (ahead != 0) {
#pragma GCC unroll 1
        for (int j = 0; j < radix; ++j) ask_for<V::kCount>(from + j * m * pitch + ahead);
      }
      reg_of<V> x[radix];
#pragma GCC unroll 16
      for (int j = 0; j < radix; ++j) x[j] = V::template load_mixed<kBackward>(from + j * m * pitch);
      dft<V, false, radix>::run(x);
      turn_all<V, radix>(x, p, twiddles);
#pragma GCC unroll 16
      for (int k = 0; k < radix; ++k) {
        const core_int at = q + s * (radix * p + k);
        V::store(re + at, im + at, x[k]);
      }
    });
  }
}

template <class R, int radix>
void middle_pass(const R* re, const R* im, R* to_re, R* to_im, const pass_part& part,
                 const complex_type<R>* twiddles) {
  const core_int m = part.m, s = part.s, to_s = part.to_s;
  for (core_int p = part.from; p < part.to; ++p) {
    by_registers<R>(part.count, [&]<class V>(core_int q) QEL_BODY {
      reg_of<V> x[radix];
#pragma GCC unroll 16
      for (int j = 0; j < radix; ++j) {
        const core_int at = q + s * (p + j * m);
        x[j] = V::load(re + at, im + at);
      }
      dft<V, false, radix>::run(x);
      turn_all<V, radix>(x, p + part.origin, twiddles);
#pragma GCC unroll 16
      for (int k = 0; k < radix; ++k) {
        const core_int at = q + to_s * (radix * p + k);
        V::store(to_re + at, to_im + at, x[k]);
      }
    });
  }
}

/// body.template operator()<V>(at) over 0 .. count by registers of one width, the last of which overlaps the
/// one before it: for passes that cost more than what is done twice.
template <class R, class Body>
[[gnu::always_inline]] inline void by_even_registers(core_int count, Body body) {
  using V = widest_parts<R>;
  const auto cover = [&]<class W>() QEL_BODY {
    core_int at = 0;
    for (; at + W::kCount <= count; at += W::kCount) body.template operator()<W>(at);
    if (at < count) body.template operator()<W>(count - W::kCount);
  };
  constexpr int kLeast = 16 / static_cast<int>(sizeof(R));
  if (count >= V::kCount) {
    cover.template operator()<V>();
  } else if (count >= V::kCount / 2) {
    cover.template operator()<px<R, V::kCount / 2>>();
  } else if (V::kCount / 2 > kLeast && count >= kLeast) {
    cover.template operator()<px<R, kLeast>>();
  } else if (kLeast > 2 && count >= 2) {
    cover.template operator()<px<R, 2>>();
  } else {
    cover.template operator()<px<R, 1>>();
  }
}

/// Any odd radix n; roots[j] = exp(-2 pi i j / n). work: 2 n + 2 registers.
template <class R>
void middle_of_any(const R* re, const R* im, R* to_re, R* to_im, const pass_part& part,
                   const complex_type<R>* twiddles, int n, const complex_type<R>* roots, R* work) {
  const int half = n / 2;
  const core_int m = part.m, s = part.s, to_s = part.to_s;
  for (core_int p = part.from; p < part.to; ++p) {
    by_even_registers<R>(part.count, [&]<class V>(core_int q) QEL_BODY {
      const auto of = [&](core_int j) {
        const core_int at = q + s * (p + j * m);
        return V::load(re + at, im + at);
      };
      const auto put = [&](core_int k, reg_of<V> value) {
        const core_int w = p + part.origin;
        if (w > 0 && k > 0) value = V::turn(value, V::all(twiddles[w * (n - 1) + k - 1]));
        const core_int at = q + to_s * (n * p + k);
        V::store(to_re + at, to_im + at, value);
      };
      const reg_of<V> first = of(0);
      reg_of<V> zeroth = first;
      for (int j = 1; j <= half; ++j) {
        const auto a = of(j), b = of(n - j), sum = V::add(a, b);
        zeroth = V::add(zeroth, sum);
        V::store(work + 4 * j * V::kCount, work + (4 * j + 1) * V::kCount, sum);
        V::store(work + (4 * j + 2) * V::kCount, work + (4 * j + 3) * V::kCount, V::sub(a, b));
      }
      put(0, zeroth);
      for (int k = 1; k <= half; ++k) {
        reg_of<V> even = first, odd{};
        const R* term = work + 4 * V::kCount;
        for (int j = 1, at = k; j <= half; ++j, term += 4 * V::kCount) {
          even = V::mul_add(V::load(term, term + V::kCount), roots[at].real, even);
          odd = V::mul_add(V::load(term + 2 * V::kCount, term + 3 * V::kCount), -roots[at].imag, odd);
          at += k;
          if (at >= n) at -= n;
        }
        odd = quarter<V, false>(odd);
        put(k, V::add(even, odd));
        put(n - k, V::sub(even, odd));
      }
    });
  }
}

/// The last pass of a line: m = 1, q < count.
template <class R, bool kBackward, int radix>
void last_of_line(const R* re, const R* im, core_int count, core_int s, complex_type<R>* out, core_int to_s) {
  by_registers<R>(count, [&]<class V>(core_int q) QEL_BODY {
    reg_of<V> x[radix];
#pragma GCC unroll 16
    for (int j = 0; j < radix; ++j) x[j] = V::load(re + q + j * s, im + q + j * s);
    dft<V, false, radix>::run(x);
#pragma GCC unroll 16
    for (int k = 0; k < radix; ++k) V::template store_pairs<kBackward>(out + q + k * to_s, x[k]);
  });
}

/// The last pass of s lines side by side, of count * radix elements: element k count + i of all of them at
/// out
/// + (k count + i) pitch.
template <class R, bool kBackward, int radix>
void last_of_columns(const R* re, const R* im, core_int s, core_int count, complex_type<R>* out,
                     core_int pitch) {
  for (core_int i = 0; i < count; ++i) {
    by_registers<R>(s, [&]<class V>(core_int q) QEL_BODY {
      const core_int from = i * s + q;
      reg_of<V> x[radix];
#pragma GCC unroll 16
      for (int j = 0; j < radix; ++j) x[j] = V::load(re + from + j * count * s, im + from + j * count * s);
      dft<V, false, radix>::run(x);
      complex_type<R>* const to = out + i * pitch + q;
#pragma GCC unroll 16
      for (int k = 0; k < radix; ++k) V::template store_mixed<kBackward>(to + k * count * pitch, x[k]);
    });
  }
}

/// The end of the first half of a long line: block k0, of width w, of the result takes columns first .. first
/// + count of lines that lie side by side, element (k, l) at k * count + l, times bases[k] powers[k *
/// kLongBlock + l], and keeps them at k0 columns + (first + l) w + k - k0.
template <class R, bool kBackward>
void turn_and_deal(const complex_type<R>* lines, core_int rows, core_int count, const complex_type<R>* bases,
                   const complex_type<R>* powers, complex_type<R>* result, core_int columns, core_int first) {
  using V = widest<R>;
  using S = single<R>;
  constexpr int kTile = V::kCount;
  constexpr core_int kBlock = kLongBlock<R>;
  for (core_int k0 = 0; k0 < rows; k0 += kBlock) {
    const core_int width = rows - k0 < kBlock ? rows - k0 : kBlock;
    complex_type<R>* block = result + k0 * columns + first * width;
    const auto one = [&](core_int k, core_int l) {
      const auto w = turned<S, false>(S::load(powers + kBlock * k + l), S::load(bases + k));
      S::store(block + l * width + k - k0, turned<S, kBackward>(S::load(lines + k * count + l), w));
    };
    core_int k = k0;
    for (; k + kTile <= k0 + width; k += kTile) {
      core_int l = 0;
      for (; l + kTile <= count; l += kTile) {
        reg_of<V> x[kTile];
#pragma GCC unroll 8
        for (int i = 0; i < kTile; ++i) {
          const auto w = turned<V, false>(V::load(powers + kBlock * (k + i) + l), V::repeated(bases + k + i));
          x[i] = turned<V, kBackward>(V::load(lines + (k + i) * count + l), w);
        }
        V::transpose(x);
#pragma GCC unroll 8
        for (int i = 0; i < kTile; ++i) V::store(block + (l + i) * width + k - k0, x[i]);
      }
      for (; l < count; ++l) {
        for (int i = 0; i < kTile; ++i) one(k + i, l);
      }
    }
    for (; k < k0 + width; ++k) {
      for (core_int l = 0; l < count; ++l) one(k, l);
    }
  }
}

/// Lines of a short length side by side, from pitch to pitch.
template <class R, bool kBackward, int n>
void short_columns(const complex_type<R>* input, core_int pitch, complex_type<R>* output, core_int out_pitch,
                   core_int s, core_int ahead) {
  const auto run = [&]<class V>(core_int q) QEL_BODY {
    if (ahead != 0) {
#pragma GCC unroll 1
      for (int j = 0; j < n; ++j) ask_for<V::kCount>(input + j * pitch + q + ahead);
    }
    reg_of<V> x[n];
#pragma GCC unroll 16
    for (int j = 0; j < n; ++j) x[j] = V::load(input + j * pitch + q);
    dft<V, kBackward, n>::run(x);
#pragma GCC unroll 16
    for (int k = 0; k < n; ++k) V::store(output + k * out_pitch + q, x[k]);
  };
  core_int q = 0;
  for (; q + widest<R>::kCount <= s; q += widest<R>::kCount) run.template operator()<widest<R>>(q);
  for (; q < s; ++q) run.template operator()<single<R>>(q);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
