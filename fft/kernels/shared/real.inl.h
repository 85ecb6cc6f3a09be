// SPDX-License-Identifier: BSD-3-Clause
// Real lines: short ones in registers, odd ones as sums, and the step between the transform of half as many
// complex numbers and the spectrum. Spectra are R0, Rh, R1, I1, R2, I2, ...; an odd length has no Rh.
#pragma once

#include "fft/kernels/shared/straight.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// A real at any address.
template <class R>
[[gnu::always_inline]] inline R real_at(const R* p) {
  R value;
  __builtin_memcpy(&value, p, sizeof value);
  return value;
}
template <class R>
[[gnu::always_inline]] inline void set_real(R* p, R value) {
  __builtin_memcpy(p, &value, sizeof value);
}

/// The number as a register, and back; through memory, which the compiler sees through.
template <class R>
[[gnu::always_inline]] inline reg_of<single<R>> joined(R real, R imag) {
  const complex_type<R> z{real, imag};
  return single<R>::load(&z);
}
template <class R>
[[gnu::always_inline]] inline complex_type<R> parted(reg_of<single<R>> a) {
  complex_type<R> z;
  single<R>::store(&z, a);
  return z;
}

/// X[k] and X[half - k] from Z[k] and Z[half - k], or back: a and b become s + t and conj(s - t).
template <class V, bool kBackward>
[[gnu::always_inline]] inline void end_pair(reg_of<V>& a, reg_of<V>& b, reg_of<V> root) {
  using R = typename V::real;
  const auto other = V::minus_imag(b);
  auto sum = V::add(a, other), difference = V::sub(a, other);
  if constexpr (kBackward) {
    difference = V::add(difference, difference);
  } else {
    sum = V::times(sum, R{0.5});
  }
  const auto t = turned<V, kBackward>(difference, root);
  a = V::add(sum, t);
  b = V::minus_imag(V::sub(sum, t));
}

template <class V, bool kBackward, class C>
[[gnu::always_inline]] inline core_int end_run(C* data, core_int half, const C* roots, core_int k) {
  for (; 2 * (k + V::kCount) <= half + 1; k += V::kCount) {
    C* back = data + half - k - V::kCount + 1;
    auto a = V::load(data + k), b = V::reversed(V::load(back));
    end_pair<V, kBackward>(a, b, V::load(roots + k));
    V::store(data + k, a);
    V::store(back, V::reversed(b));
  }
  return k;
}

template <class R, bool kBackward>
void real_ends(complex_type<R>* data, core_int half, const complex_type<R>* roots) {
  using V = single<R>;
  const auto zeroth = parted<R>(V::load(data));
  V::store(data, joined<R>(zeroth.real + zeroth.imag, zeroth.real - zeroth.imag));
  const core_int done = end_run<widest<R>, kBackward>(data, half, roots, 1);
  end_run<V, kBackward>(data, half, roots, done);
  if (half % 2 == 0) {
    auto middle = V::minus_imag(V::load(data + half / 2));
    if (kBackward) middle = V::add(middle, middle);
    V::store(data + half / 2, middle);
  }
}

template <class R, int n>
struct end_roots {
  complex_type<R> of[n / 4 + 1]{};
  constexpr end_roots() {
    for (int k = 0; k <= n / 4; ++k) {
      const circle_point p = point_on_circle(k, n);
      of[k] = {static_cast<R>(-p.s / 2), static_cast<R>(-p.c / 2)};
    }
  }
};

template <class R, bool kBackward, int n>
[[gnu::always_inline]] inline void ends_in_registers(reg_of<single<R>>* x) {
  using V = single<R>;
  constexpr int kHalf = n / 2;
  static constexpr end_roots<R, n> kRoots{};
  const auto zeroth = parted<R>(x[0]);
  x[0] = joined<R>(zeroth.real + zeroth.imag, zeroth.real - zeroth.imag);
#pragma GCC unroll 16
  for (int k = 1; 2 * k < kHalf; ++k) end_pair<V, kBackward>(x[k], x[kHalf - k], V::load(&kRoots.of[k]));
  if constexpr (kHalf % 2 == 0) {
    x[kHalf / 2] = V::minus_imag(x[kHalf / 2]);
    if (kBackward) x[kHalf / 2] = V::add(x[kHalf / 2], x[kHalf / 2]);
  }
}

template <class R, int n>
void real_forward(const R* input, R* output, R scale) {
  using V = single<R>;
  using C = complex_type<R>;
  reg_of<V> x[n];
  if constexpr (n % 2 == 0) {
    constexpr int kHalf = n / 2;
#pragma GCC unroll 16
    for (int j = 0; j < kHalf; ++j) x[j] = V::load(reinterpret_cast<const C*>(input) + j);
    dft<V, false, kHalf>::run(x);
    ends_in_registers<R, false, n>(x);
#pragma GCC unroll 16
    for (int k = 0; k < kHalf; ++k) V::store(reinterpret_cast<C*>(output) + k, V::times(x[k], scale));
  } else {
#pragma GCC unroll 16
    for (int j = 0; j < n; ++j) x[j] = joined<R>(real_at(input + j), R{0});
    dft<V, false, n>::run(x);
    set_real(output, parted<R>(x[0]).real * scale);
#pragma GCC unroll 16
    for (int k = 1; k <= n / 2; ++k) {
      V::store(reinterpret_cast<C*>(output + 1) + k - 1, V::times(x[k], scale));
    }
  }
}

template <class R, int n>
void real_backward(const R* input, R* output, R scale) {
  using V = single<R>;
  using C = complex_type<R>;
  reg_of<V> x[n];
  if constexpr (n % 2 == 0) {
    constexpr int kHalf = n / 2;
#pragma GCC unroll 16
    for (int k = 0; k < kHalf; ++k) x[k] = V::load(reinterpret_cast<const C*>(input) + k);
    ends_in_registers<R, true, n>(x);
    dft<V, true, kHalf>::run(x);
#pragma GCC unroll 16
    for (int j = 0; j < kHalf; ++j) V::store(reinterpret_cast<C*>(output) + j, V::times(x[j], scale));
  } else {
    x[0] = joined<R>(real_at(input), R{0});
#pragma GCC unroll 16
    for (int k = 1; k <= n / 2; ++k) {
      x[k] = V::load(reinterpret_cast<const C*>(input + 1) + k - 1);
      x[n - k] = V::minus_imag(x[k]);
    }
    dft<V, true, n>::run(x);
#pragma GCC unroll 16
    for (int j = 0; j < n; ++j) set_real(output + j, parted<R>(x[j]).real * scale);
  }
}

/// roots[j] = exp(-2 pi i j / n)
template <class R>
void direct_forward(const R* input, R* output, int n, const complex_type<R>* roots, R* work) {
  const int half = n / 2;
  work[0] = real_at(input);
  R zeroth = work[0];
  for (int j = 1; j <= half; ++j) {
    const R a = real_at(input + j), b = real_at(input + n - j);
    work[j] = a + b;
    work[n - j] = a - b;
    zeroth += work[j];
  }
  set_real(output, zeroth);
  for (int k = 1; k <= half; ++k) {
    R real = work[0], imag = 0;
    for (int j = 1, at = k; j <= half; ++j) {
      real += work[j] * roots[at].real;
      imag += work[n - j] * roots[at].imag;
      at += k;
      if (at >= n) at -= n;
    }
    set_real(output + 2 * k - 1, real);
    set_real(output + 2 * k, imag);
  }
}
template <class R>
void direct_backward(const R* input, R* output, int n, const complex_type<R>* roots, R* work) {
  const int half = n / 2;
  R zeroth = work[0] = real_at(input);
  for (int k = 1; k <= half; ++k) {
    work[k] = 2 * real_at(input + 2 * k - 1);
    work[n - k] = 2 * real_at(input + 2 * k);
    zeroth += work[k];
  }
  set_real(output, zeroth);
  for (int j = 1; j <= half; ++j) {
    R even = work[0], odd = 0;
    for (int k = 1, at = j; k <= half; ++k) {
      even += work[k] * roots[at].real;
      odd += work[n - k] * roots[at].imag;
      at += j;
      if (at >= n) at -= n;
    }
    // exp(+ ...) has the opposite imaginary part, and i times it turns the sign once more.
    set_real(output + j, even + odd);
    set_real(output + n - j, even - odd);
  }
}

}  // namespace
}  // namespace qel::QEL_LEVEL
