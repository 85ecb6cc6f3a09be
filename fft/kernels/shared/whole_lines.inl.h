// SPDX-License-Identifier: BSD-3-Clause
// Whole lines of up to some hundred elements: r m of them in two steps through a buffer, an odd number of
// them by sums.
#pragma once

#include "fft/kernels/shared/planar_lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// body.template operator()<V>(at) for blocks of V::kCount that cover 0 .. count; the last one overlaps the
/// one before if it must.
template <class R, class Body>
[[gnu::always_inline]] inline void by_blocks(core_int count, Body body) {
  using V = widest<R>;
  const auto cover = [&]<class W>() QEL_BODY {
    for (core_int at = 0; at + W::kCount <= count; at += W::kCount) body.template operator()<W>(at);
    if (count % W::kCount != 0) body.template operator()<W>(count - W::kCount);
  };
  if (count >= V::kCount) {
    cover.template operator()<V>();
  } else if (V::kCount > 2 && count >= 2) {
    cover.template operator()<cx<R, 2>>();
  } else {
    cover.template operator()<single<R>>();
  }
}

/// Element j of rows p, p + pitch, ...
template <class V>
[[gnu::always_inline]] inline reg_of<V> column_of(const complex_type<typename V::real>* p, core_int pitch) {
  if constexpr (V::kCount == 1) {
    return V::load(p);
  } else if constexpr (sizeof(typename V::real) == 8) {
    const auto* at = reinterpret_cast<const double*>(p);
    return _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(at)), _mm_loadu_pd(at + 2 * pitch), 1);
  } else {
    const auto pair = [&](const complex8* q) QEL_BODY {
      const __m128i low = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(q));
      return _mm_castps_pd(_mm_loadh_pi(_mm_castsi128_ps(low), reinterpret_cast<const __m64*>(q + pitch)));
    };
    if constexpr (V::kCount == 2) {
      return _mm_castpd_ps(pair(p));
    } else {
      return _mm256_castpd_ps(_mm256_insertf128_pd(_mm256_castpd128_pd256(pair(p)), pair(p + 2 * pitch), 1));
    }
  }
}

/// Transforms of r elements m apart, times twiddles[k m + j]: column j to buffer[k m + j].
template <class R, bool kBackward, int r>
void line_columns(const complex_type<R>* input, core_int m, complex_type<R>* buffer,
                  const complex_type<R>* twiddles) {
  by_blocks<R>(m, [&]<class V>(core_int j) QEL_BODY {
    reg_of<V> x[r];
#pragma GCC unroll 16
    for (int i = 0; i < r; ++i) x[i] = V::load(input + i * m + j);
    dft<V, kBackward, r>::run(x);
    V::store(buffer + j, x[0]);
#pragma GCC unroll 16
    for (int k = 1; k < r; ++k) {
      V::store(buffer + k * m + j, turned<V, kBackward>(x[k], V::load(twiddles + k * m + j)));
    }
  });
}

/// Transforms of the r rows of m elements; element j of row k to output[k + r j].
template <class R, bool kBackward, int m>
void line_rows(const complex_type<R>* buffer, core_int r, complex_type<R>* output) {
  by_blocks<R>(r, [&]<class V>(core_int k) QEL_BODY {
    constexpr int kTiled = m / V::kCount * V::kCount;
    const complex_type<R>* rows = buffer + k * m;
    reg_of<V> z[m];
    if constexpr (V::kCount > 1) {
#pragma GCC unroll 16
      for (int j = 0; j < kTiled; j += V::kCount) {
#pragma GCC unroll 4
        for (int i = 0; i < V::kCount; ++i) z[j + i] = V::load(rows + i * m + j);
        V::transpose(z + j);
      }
    }
#pragma GCC unroll 16
    for (int j = V::kCount > 1 ? kTiled : 0; j < m; ++j) z[j] = column_of<V>(rows + j, m);
    dft<V, kBackward, m>::run(z);
#pragma GCC unroll 16
    for (int j = 0; j < m; ++j) V::store(output + k + r * j, z[j]);
  });
}

/// An odd number n of elements. With h = n / 2, outputs k and n - k are x_0 + sum_j (x_j + x_(n-j)) cos(2 pi
/// j k / n)
/// -+ i sum_j (x_j - x_(n-j)) sin(2 pi j k / n), j = 1 .. h. cosines and sines have a row of `pitch` k's, k =
/// 1 first, for each j; pitch: h filled up to whole registers. work: 4 h + 4 pitch.
template <class R, bool kBackward>
void line_by_sums(const complex_type<R>* input, complex_type<R>* output, core_int n, core_int pitch,
                  const R* cosines, const R* sines, R* work) {
  using V = widest_parts<R>;
  using part = typename V::part;
  using lane = typename V::lane;
  const core_int h = n / 2;
  const complex_type<R> first = input[0];
  complex_type<R> zeroth = first;
  R* const terms = work;  // for each j: sum, difference, two parts each
  for (core_int j = 1; j <= h; ++j) {
    const complex_type<R> a = input[j], b = input[n - j];
    R* const t = terms + 4 * (j - 1);
    t[0] = a.real + b.real, t[1] = a.imag + b.imag;
    t[2] = a.real - b.real, t[3] = a.imag - b.imag;
    zeroth.real += t[0], zeroth.imag += t[1];
  }
  R* const even = work + 4 * h;
  R* const odd = even + 2 * pitch;
  const auto block = [&]<int kWidth>(core_int k) QEL_BODY {
    lane a[4 * kWidth];
#pragma GCC unroll 4
    for (int i = 0; i < kWidth; ++i) {
      a[4 * i] = part::all(first.real), a[4 * i + 1] = part::all(first.imag);
      a[4 * i + 2] = a[4 * i + 3] = part::all(R{0});
    }
    const R *t = terms, *cosine = cosines + k, *sine = sines + k;
    for (core_int j = 0; j < h; ++j, t += 4, cosine += pitch, sine += pitch) {
      const lane sum_re = part::all(t[0]), sum_im = part::all(t[1]), dif_re = part::all(t[2]),
                 dif_im = part::all(t[3]);
#pragma GCC unroll 4
      for (int i = 0; i < kWidth; ++i) {
        const lane c = part::load(cosine + i * V::kCount), s = part::load(sine + i * V::kCount);
        a[4 * i] = part::plus(sum_re, c, a[4 * i]);
        a[4 * i + 1] = part::plus(sum_im, c, a[4 * i + 1]);
        a[4 * i + 2] = part::plus(dif_re, s, a[4 * i + 2]);
        a[4 * i + 3] = part::plus(dif_im, s, a[4 * i + 3]);
      }
    }
#pragma GCC unroll 4
    for (int i = 0; i < kWidth; ++i) {
      const core_int at = k + i * V::kCount;
      part::store(even + at, a[4 * i]);
      part::store(even + pitch + at, a[4 * i + 1]);
      part::store(odd + at, a[4 * i + 2]);
      part::store(odd + pitch + at, a[4 * i + 3]);
    }
  };
  constexpr int kWide = kPartBytes == 64 ? 4 : 2;
  core_int k = 0;
  for (; k + kWide * V::kCount <= pitch; k += kWide * V::kCount) block.template operator()<kWide>(k);
  for (; k < pitch; k += V::kCount) block.template operator()<1>(k);
  output[0] = zeroth;
  for (core_int i = 0; i < h; ++i) {
    // -i odd
    const R re = even[i], im = even[pitch + i], odd_re = odd[pitch + i], odd_im = -odd[i];
    output[kBackward ? n - 1 - i : 1 + i] = {re + odd_re, im + odd_im};
    output[kBackward ? 1 + i : n - 1 - i] = {re - odd_re, im - odd_im};
  }
}

}  // namespace
}  // namespace qel::QEL_LEVEL
