// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/orthogonal/reflectors.h"

#include <cmath>
#include <limits>

#include "lapack/factor/core_blas.h"
#include "lapack/factor/elements.h"
#include "lapack/four_types.h"

namespace qel::lapack {

namespace {

template <class T>
real_of<T> imaginary_part(T a) {
  if constexpr (is_complex<T>) {
    return a.imag;
  } else {
    return 0;
  }
}
template <class T>
T with_parts(real_of<T> re, real_of<T> im) {
  if constexpr (is_complex<T>) {
    return {re, im};
  } else {
    return re;
  }
}

/// The length of (first, x), |x| known, with the sign opposite to that of first's real part.
template <class T>
real_of<T> reflected(T first, real_of<T> length) {
  const real_of<T> whole = is_complex<T> ? std::hypot(real_part(first), imaginary_part(first), length)
                                         : std::hypot(real_part(first), length);
  return -std::copysign(whole, real_part(first));
}

}  // namespace

template <class T>
T make_reflector(core_int n, T* alpha, T* x) {
  using R = real_of<T>;
  // Below it the reciprocal of beta would lose accuracy or overflow.
  constexpr R kSmall = std::numeric_limits<R>::min() / (std::numeric_limits<R>::epsilon() / 2);
  R length = norm(n, x);
  T first = element(alpha);
  if (length == 0 && imaginary_part(first) == 0) return T{};
  R beta = reflected(first, length);
  int scalings = 0;
  if (std::fabs(beta) < kSmall) {
    constexpr R kLarge = 1 / kSmall;
    do {
      ++scalings;
      scal(n, from_real<T>(kLarge), x);
      first = from_real<T>(kLarge) * first;
      beta *= kLarge;
    } while (std::fabs(beta) < kSmall && scalings < 20);
    length = norm(n, x);
    beta = reflected(first, length);
  }
  const T tau = with_parts<T>((beta - real_part(first)) / beta, -imaginary_part(first) / beta);
  scal(n, from_real<T>(1) / (first - from_real<T>(beta)), x);
  for (; scalings > 0; --scalings) beta *= kSmall;
  set(alpha, from_real<T>(beta));
  return tau;
}

template <class T>
void form_block(core_int rows, core_int width, const T* v, core_int ldv, const T* tau, T* top, T* t,
                core_int ld) {
  for (core_int j = 0; j < width; ++j) {
    for (core_int i = 0; i < width; ++i) {
      top[i + j * ld] = i > j ? element(v + i + j * ldv) : from_real<T>(i == j ? 1 : 0);
    }
  }
  // The products of the vectors, of which the upper triangle becomes T.
  const char turned = kTurnedLetter<T>;
  product(turned, 'N', width, width, width, 1, top, ld, top, ld, 0, t, ld);
  if (rows > width) {
    product(turned, 'N', width, width, rows - width, 1, v + width, ldv, v + width, ldv, 1, t, ld);
  }
  for (core_int j = 0; j < width; ++j) {
    T* const column = t + j * ld;
    const T factor = element(tau + j);
    for (core_int i = 0; i < j; ++i) column[i] = -(factor * column[i]);
    for (core_int i = 0; i < j; ++i) {
      T sum{};
      for (core_int k = i; k < j; ++k) sum += t[i + k * ld] * column[k];
      column[i] = sum;
    }
    column[j] = factor;
    for (core_int i = j + 1; i < width; ++i) column[i] = T{};
  }
}

template <class T>
void apply_from_left(const reflector_block<T>& h, bool turned, core_int columns, T* c, core_int ldc,
                     T* work) {
  if (columns <= 0) return;
  const core_int k = h.width, below = h.rows - k;
  product(kTurnedLetter<T>, 'N', k, columns, k, 1, h.top, h.ld, c, ldc, 0, work, k);
  if (below > 0) {
    product(kTurnedLetter<T>, 'N', k, columns, below, 1, h.v + k, h.ldv, c + k, ldc, 1, work, k);
  }
  multiply_triangle('L', 'U', turned ? kTurnedLetter<T> : 'N', 'N', k, columns, h.t, h.ld, work, k);
  subtract_product('N', 'N', k, columns, k, h.top, h.ld, work, k, c, ldc);
  if (below > 0) subtract_product('N', 'N', below, columns, k, h.v + k, h.ldv, work, k, c + k, ldc);
}

template <class T>
void apply_from_right(const reflector_block<T>& h, bool turned, core_int rows, T* c, core_int ldc, T* work) {
  if (rows <= 0) return;
  const core_int k = h.width, behind = h.rows - k;
  T* const rest = c + k * ldc;
  product('N', 'N', rows, k, k, 1, c, ldc, h.top, h.ld, 0, work, rows);
  if (behind > 0) product('N', 'N', rows, k, behind, 1, rest, ldc, h.v + k, h.ldv, 1, work, rows);
  multiply_triangle('R', 'U', turned ? kTurnedLetter<T> : 'N', 'N', rows, k, h.t, h.ld, work, rows);
  subtract_product('N', kTurnedLetter<T>, rows, k, k, work, rows, h.top, h.ld, c, ldc);
  if (behind > 0) {
    subtract_product('N', kTurnedLetter<T>, rows, behind, k, work, rows, h.v + k, h.ldv, rest, ldc);
  }
}

#define QEL_INSTANTIATE(T)                                                                      \
  template T make_reflector(core_int, T*, T*);                                                  \
  template void form_block(core_int, core_int, const T*, core_int, const T*, T*, T*, core_int); \
  template void apply_from_left(const reflector_block<T>&, bool, core_int, T*, core_int, T*);   \
  template void apply_from_right(const reflector_block<T>&, bool, core_int, T*, core_int, T*);
QEL_FOUR_TYPES(QEL_INSTANTIATE)
#undef QEL_INSTANTIATE

}  // namespace qel::lapack
