// SPDX-License-Identifier: BSD-3-Clause
// Transforms of a fixed length in registers, unrolled at compile time: dft<V, backward, n>::run(x) replaces
// the n registers of x by their transform, lane by lane. Odd lengths fold their input into sums and
// differences; other lengths are products of two of the base lengths.
#pragma once

#include "fft/kernels/shared/complex_lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// Bodies of loops over registers must be part of the loop, or their operands travel through memory.
#define QEL_BODY __attribute__((always_inline))

constexpr long double kPi = 3.141592653589793238462643383279502884L;

/// cos and sin of 2 pi j / n, reduced to an eighth of the circle, where the series lose nothing.
struct circle_point {
  long double c, s;
};
constexpr circle_point point_on_circle(int j, int n) {
  j %= n;
  if (2 * j > n) {
    const circle_point p = point_on_circle(n - j, n);
    return {p.c, -p.s};
  }
  if (4 * j > n) {  // half a circle less
    const circle_point p = point_on_circle(n - 2 * j, 2 * n);
    return {-p.c, p.s};
  }
  if (8 * j > n) {
    const circle_point p = point_on_circle(n - 4 * j, 4 * n);
    return {p.s, p.c};
  }
  const long double x = 2 * kPi * j / n;
  long double c = 0, s = 0, term = 1;
  for (int i = 0; i < 30; ++i) {
    const long double part = i % 4 < 2 ? term : -term;
    (i % 2 == 0 ? c : s) += part;
    term *= x / (i + 1);
  }
  return {c, s};
}

template <class R, int n>
struct circle {
  R c[n]{}, s[n]{};
  constexpr circle() {
    for (int j = 0; j < n; ++j) {
      const circle_point p = point_on_circle(j, n);
      c[j] = static_cast<R>(p.c);
      s[j] = static_cast<R>(p.s);
    }
  }
};

/// a exp(-+ 2 pi i j / n) with constants of the program.
template <class V, bool kBackward, int j, int n>
[[gnu::always_inline]] inline reg_of<V> turned_by(reg_of<V> a) {
  constexpr circle_point p = point_on_circle(j, n);
  using R = typename V::real;
  if constexpr (j % n == 0) {
    return a;
  } else if constexpr (4 * (j % n) == n) {
    return quarter<V, kBackward>(a);
  } else if constexpr (8 * (j % n) == n) {
    return V::times(V::add(a, quarter<V, kBackward>(a)), static_cast<R>(p.c));
  } else if constexpr (8 * (j % n) == 3 * n) {
    return V::times(V::sub(quarter<V, kBackward>(a), a), static_cast<R>(p.s));
  } else {
    return times_plus<V>(quarter<V, kBackward>(a), static_cast<R>(p.s), V::times(a, static_cast<R>(p.c)));
  }
}

/// Odd n, by folding.
template <class V, bool kBackward, int n>
struct dft {
  static_assert(n % 2 == 1);
  static constexpr circle<typename V::real, n> kCircle{};
  [[gnu::always_inline]] static inline void run(reg_of<V>* x) {
    if constexpr (n > 1) {
      constexpr int kHalf = n / 2;
      reg_of<V> sum[kHalf + 1], difference[kHalf + 1];
      reg_of<V> zeroth = x[0];
#pragma GCC unroll 16
      for (int j = 1; j <= kHalf; ++j) {
        sum[j] = V::add(x[j], x[n - j]);
        difference[j] = V::sub(x[j], x[n - j]);
        zeroth = V::add(zeroth, sum[j]);
      }
#pragma GCC unroll 16
      for (int k = 1; k <= kHalf; ++k) {
        reg_of<V> even = times_plus<V>(sum[1], kCircle.c[k], x[0]);
        reg_of<V> odd = V::times(difference[1], kCircle.s[k]);
#pragma GCC unroll 16
        for (int j = 2; j <= kHalf; ++j) {
          even = times_plus<V>(sum[j], kCircle.c[j * k % n], even);
          odd = times_plus<V>(difference[j], kCircle.s[j * k % n], odd);
        }
        odd = quarter<V, kBackward>(odd);
        x[k] = V::add(even, odd);
        x[n - k] = V::sub(even, odd);
      }
      x[0] = zeroth;
    }
  }
};

template <class V, bool kBackward>
struct dft<V, kBackward, 2> {
  [[gnu::always_inline]] static inline void run(reg_of<V>* x) {
    const auto sum = V::add(x[0], x[1]);
    x[1] = V::sub(x[0], x[1]);
    x[0] = sum;
  }
};

template <class V, bool kBackward>
struct dft<V, kBackward, 4> {
  [[gnu::always_inline]] static inline void run(reg_of<V>* x) {
    const auto a = V::add(x[0], x[2]), b = V::sub(x[0], x[2]), c = V::add(x[1], x[3]);
    const auto d = quarter<V, kBackward>(V::sub(x[1], x[3]));
    x[0] = V::add(a, c);
    x[1] = V::add(b, d);
    x[2] = V::sub(a, c);
    x[3] = V::sub(b, d);
  }
};

/// n = r m: m transforms of length r over every m-th element, twiddles, r transforms of length m.
template <class V, bool kBackward, int r, int m>
struct product_dft {
  template <int j, int k>
  [[gnu::always_inline]] static inline void turn_rest(reg_of<V>* column) {
    if constexpr (k < r) {
      column[k] = turned_by<V, kBackward, j * k, r * m>(column[k]);
      turn_rest<j, k + 1>(column);
    }
  }
  template <int j, class Load>
  [[gnu::always_inline]] static inline void columns(reg_of<V>* x, Load load) {
    if constexpr (j < m) {
      reg_of<V> column[r];
#pragma GCC unroll 16
      for (int i = 0; i < r; ++i) column[i] = load(j + i * m);
      dft<V, kBackward, r>::run(column);
      turn_rest<j, 1>(column);
#pragma GCC unroll 16
      for (int i = 0; i < r; ++i) x[j + i * m] = column[i];
      columns<j + 1>(x, load);
    }
  }
  /// From load(j) to store(k, value): few registers live at a time.
  template <class Load, class Store>
  [[gnu::always_inline]] static inline void between(Load load, Store store) {
    reg_of<V> x[r * m];
    columns<0>(x, load);
#pragma GCC unroll 16
    for (int k = 0; k < r; ++k) {
      reg_of<V> row[m];
#pragma GCC unroll 16
      for (int j = 0; j < m; ++j) row[j] = x[k * m + j];
      dft<V, kBackward, m>::run(row);
#pragma GCC unroll 16
      for (int j = 0; j < m; ++j) store(k + r * j, row[j]);
    }
  }
  [[gnu::always_inline]] static inline void run(reg_of<V>* x) {
    reg_of<V> result[r * m];
    between([&](int j) QEL_BODY { return x[j]; }, [&](int k, reg_of<V> v) QEL_BODY { result[k] = v; });
#pragma GCC unroll 16
    for (int k = 0; k < r * m; ++k) x[k] = result[k];
  }
};
template <class V, bool kBackward>
struct dft<V, kBackward, 6> : product_dft<V, kBackward, 2, 3> {};
template <class V, bool kBackward>
struct dft<V, kBackward, 8> : product_dft<V, kBackward, 2, 4> {};
template <class V, bool kBackward>
struct dft<V, kBackward, 9> : product_dft<V, kBackward, 3, 3> {};
template <class V, bool kBackward>
struct dft<V, kBackward, 10> : product_dft<V, kBackward, 2, 5> {};
template <class V, bool kBackward>
struct dft<V, kBackward, 12> : product_dft<V, kBackward, 4, 3> {};
template <class V, bool kBackward>
struct dft<V, kBackward, 14> : product_dft<V, kBackward, 2, 7> {};
template <class V, bool kBackward>
struct dft<V, kBackward, 15> : product_dft<V, kBackward, 3, 5> {};
template <class V, bool kBackward>
struct dft<V, kBackward, 16> : product_dft<V, kBackward, 4, 4> {};

/// The transform of load(j), j < n, to store(k, value), k < n. All loads come before all stores.
template <class V, bool kBackward, int n, class Load, class Store>
[[gnu::always_inline]] inline void dft_between(Load load, Store store) {
  using transform = dft<V, kBackward, n>;
  if constexpr (requires { transform::between(load, store); }) {
    transform::between(load, store);
  } else {
    reg_of<V> x[n];
#pragma GCC unroll 16
    for (int j = 0; j < n; ++j) x[j] = load(j);
    transform::run(x);
#pragma GCC unroll 16
    for (int k = 0; k < n; ++k) store(k, x[k]);
  }
}

/// A whole transform of n elements at unit stride.
template <class R, bool kBackward, bool kScaled, int n>
void straight(const complex_type<R>* input, complex_type<R>* output, [[maybe_unused]] R scale) {
  using V = single<R>;
  reg_of<V> x[n];
#pragma GCC unroll 16
  for (int j = 0; j < n; ++j) x[j] = V::load(input + j);
  dft<V, kBackward, n>::run(x);
#pragma GCC unroll 16
  for (int j = 0; j < n; ++j) V::store(output + j, kScaled ? V::times(x[j], scale) : x[j]);
}

/// Of the columns of n = r m: exp(-2 pi i j k / n) at k m + j.
template <class R, int r, int m>
struct step_twiddles {
  complex_type<R> w[r * m]{};
  constexpr step_twiddles() {
    constexpr circle<R, r * m> kCircle{};
    for (int k = 0; k < r; ++k)
      for (int j = 0; j < m; ++j) w[k * m + j] = {kCircle.c[j * k], -kCircle.s[j * k]};
  }
};

/// n = r m beyond what registers hold: columns through a buffer, several of them at a time, then rows.
template <class R, bool kBackward, int r, int m>
void buffered(const complex_type<R>* input, complex_type<R>* output, R) {
  using V = widest<R>;
  using W = across<R>;
  static constexpr step_twiddles<R, r, m> kTwiddles{};
  alignas(32) complex_type<R> buffer[r * m];
  for (int j = 0; j < m; j += V::kCount) {
    reg_of<V> x[r];
#pragma GCC unroll 16
    for (int i = 0; i < r; ++i) x[i] = V::load(input + j + i * m);
    dft<V, kBackward, r>::run(x);
    V::store(buffer + j, x[0]);
#pragma GCC unroll 16
    for (int k = 1; k < r; ++k) {
      V::store(buffer + k * m + j, turned<V, kBackward>(x[k], V::load(kTwiddles.w + k * m + j)));
    }
  }
  for (int k = 0; k < r; k += W::kCount) {
    reg_of<W> x[m];
#pragma GCC unroll 16
    for (int j = 0; j < m; ++j) x[j] = W::load_across(buffer + k * m + j, m);
    dft<W, kBackward, m>::run(x);
#pragma GCC unroll 16
    for (int j = 0; j < m; ++j) W::store(output + k + r * j, x[j]);
  }
}

}  // namespace
}  // namespace qel::QEL_LEVEL
