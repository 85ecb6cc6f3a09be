// SPDX-License-Identifier: BSD-3-Clause
// Complex numbers as planes: a block of planes<R>::kCount neighbours keeps the real parts first, then the
// imaginary ones, in the place of the same numbers as pairs. Products need no moves between lanes, and each
// number sees the operations that pairs see.
#pragma once

#include "fft/kernels/shared/straight.inl.h"

namespace qel::QEL_LEVEL {
namespace {

#define QEL_LANES [[gnu::always_inline]] static inline

template <class R>
struct plane;

template <>
struct plane<double> {
  using lane = __m128d;
  static constexpr int kCount = 2;
  QEL_LANES lane all(double v) { return _mm_set1_pd(v); }
  QEL_LANES lane load(const double* p) { return _mm_loadu_pd(p); }
  QEL_LANES lane load_aligned(const double* p) { return _mm_load_pd(p); }
  QEL_LANES void store(double* p, lane v) { _mm_storeu_pd(p, v); }
  QEL_LANES void gather(const complex16* p, core_int pitch, lane& re, lane& im) {
    const lane a = load(&p->real), b = load(&p[pitch].real);
    re = _mm_unpacklo_pd(a, b);
    im = _mm_unpackhi_pd(a, b);
  }
  QEL_LANES void scatter(complex16* p, core_int pitch, lane re, lane im) {
    store(&p->real, _mm_unpacklo_pd(re, im));
    store(&p[pitch].real, _mm_unpackhi_pd(re, im));
  }
  QEL_LANES void load_pairs(const complex16* p, lane& re, lane& im) { gather(p, 1, re, im); }
  QEL_LANES void store_pairs(complex16* p, lane re, lane im) { scatter(p, 1, re, im); }
  /// One pair in all places.
  QEL_LANES void spread(lane pair, lane& re, lane& im) {
    re = _mm_unpacklo_pd(pair, pair);
    im = _mm_unpackhi_pd(pair, pair);
  }
  QEL_LANES void transpose(lane* x) {
    const lane low = _mm_unpacklo_pd(x[0], x[1]);
    x[1] = _mm_unpackhi_pd(x[0], x[1]);
    x[0] = low;
  }
};

template <>
struct plane<float> {
  using lane = __m128;
  static constexpr int kCount = 4;
  QEL_LANES lane all(float v) { return _mm_set1_ps(v); }
  QEL_LANES lane load(const float* p) { return _mm_loadu_ps(p); }
  QEL_LANES lane load_aligned(const float* p) { return _mm_load_ps(p); }
  QEL_LANES void store(float* p, lane v) { _mm_storeu_ps(p, v); }
  QEL_LANES lane two(const complex8* p, core_int pitch) {
    const __m128i low = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
    return _mm_loadh_pi(_mm_castsi128_ps(low), reinterpret_cast<const __m64*>(p + pitch));
  }
  QEL_LANES void gather(const complex8* p, core_int pitch, lane& re, lane& im) {
    part(two(p, pitch), two(p + 2 * pitch, pitch), re, im);
  }
  QEL_LANES void scatter(complex8* p, core_int pitch, lane re, lane im) {
    const lane low = _mm_unpacklo_ps(re, im), high = _mm_unpackhi_ps(re, im);
    _mm_storel_pi(reinterpret_cast<__m64*>(p), low);
    _mm_storeh_pi(reinterpret_cast<__m64*>(p + pitch), low);
    _mm_storel_pi(reinterpret_cast<__m64*>(p + 2 * pitch), high);
    _mm_storeh_pi(reinterpret_cast<__m64*>(p + 3 * pitch), high);
  }
  QEL_LANES void part(lane a, lane b, lane& re, lane& im) {
    re = _mm_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0));
    im = _mm_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1));
  }
  QEL_LANES void load_pairs(const complex8* p, lane& re, lane& im) {
    part(load(&p->real), load(&p[2].real), re, im);
  }
  QEL_LANES void store_pairs(complex8* p, lane re, lane im) {
    store(&p->real, _mm_unpacklo_ps(re, im));
    store(&p[2].real, _mm_unpackhi_ps(re, im));
  }
  QEL_LANES void spread(lane pair, lane& re, lane& im) {
    re = _mm_shuffle_ps(pair, pair, _MM_SHUFFLE(0, 0, 0, 0));
    im = _mm_shuffle_ps(pair, pair, _MM_SHUFFLE(1, 1, 1, 1));
  }
  QEL_LANES void transpose(lane* x) {
    const lane a = _mm_unpacklo_ps(x[0], x[1]), b = _mm_unpackhi_ps(x[0], x[1]);
    const lane c = _mm_unpacklo_ps(x[2], x[3]), d = _mm_unpackhi_ps(x[2], x[3]);
    x[0] = _mm_movelh_ps(a, c);
    x[1] = _mm_movehl_ps(c, a);
    x[2] = _mm_movelh_ps(b, d);
    x[3] = _mm_movehl_ps(d, b);
  }
};

template <class R>
struct planes {
  using real = R;
  using C = complex_type<R>;
  using lane = typename plane<R>::lane;
  static constexpr int kCount = plane<R>::kCount;
  struct reg {
    lane re, im;
  };
  QEL_LANES reg load(const C* p) { return {plane<R>::load(&p->real), plane<R>::load(&p->real + kCount)}; }
  /// Of a table.
  QEL_LANES reg load_aligned(const C* p) {
    return {plane<R>::load_aligned(&p->real), plane<R>::load_aligned(&p->real + kCount)};
  }
  QEL_LANES void store(C* p, reg a) {
    plane<R>::store(&p->real, a.re);
    plane<R>::store(&p->real + kCount, a.im);
  }
  QEL_LANES reg load_pairs(const C* p) {
    reg a;
    plane<R>::load_pairs(p, a.re, a.im);
    return a;
  }
  QEL_LANES void store_pairs(C* p, reg a) { plane<R>::store_pairs(p, a.re, a.im); }
  /// Pairs that lie pitch apart.
  QEL_LANES reg gather(const C* p, core_int pitch) {
    reg a;
    plane<R>::gather(p, pitch, a.re, a.im);
    return a;
  }
  QEL_LANES void scatter(C* p, core_int pitch, reg a) { plane<R>::scatter(p, pitch, a.re, a.im); }
  QEL_LANES reg spread(reg_of<single<R>> pair) {
    reg a;
    plane<R>::spread(pair, a.re, a.im);
    return a;
  }
  /// Rows and columns of kCount registers change places.
  QEL_LANES void transpose(reg* x) {
    lane re[kCount], im[kCount];
#pragma GCC unroll 4
    for (int i = 0; i < kCount; ++i) re[i] = x[i].re, im[i] = x[i].im;
    plane<R>::transpose(re);
    plane<R>::transpose(im);
#pragma GCC unroll 4
    for (int i = 0; i < kCount; ++i) x[i] = {re[i], im[i]};
  }
  QEL_LANES reg add(reg a, reg b) { return {a.re + b.re, a.im + b.im}; }
  QEL_LANES reg sub(reg a, reg b) { return {a.re - b.re, a.im - b.im}; }
  QEL_LANES reg times(reg a, R f) { return {a.re * plane<R>::all(f), a.im * plane<R>::all(f)}; }
  QEL_LANES reg times(reg a, lane f) { return {a.re * f, a.im * f}; }
  QEL_LANES reg swapped(reg a) { return {a.im, a.re}; }
  QEL_LANES reg minus_real(reg a) { return {-a.re, a.im}; }
  QEL_LANES reg minus_imag(reg a) { return {a.re, -a.im}; }
#ifdef __FMA__
  // Only levels without fused products run these passes.
  QEL_LANES reg mul_add(reg a, R f, reg c) { return add(times(a, f), c); }
#endif
  /// a w forward, a conj(w) backward.
  template <bool kBackward>
  QEL_LANES reg turn(reg a, reg w) {
    const lane re = a.im * w.im, im = a.re * w.im;
    return kBackward ? reg{a.re * w.re + re, a.im * w.re - im} : reg{a.re * w.re - re, a.im * w.re + im};
  }
};
#undef QEL_LANES

}  // namespace
}  // namespace qel::QEL_LEVEL
