// SPDX-License-Identifier: BSD-3-Clause
// Plane rotations and modified plane rotations: making and applying. Source: C. L. Lawson, R. J. Hanson,
// D. R. Kincaid, F. T. Krogh, ACM TOMS 5 (1979) 308-323; complex rotations as in J. Dongarra's later
// extension, which leaves a complex r and a real c.
#include <cmath>

#include "blas/plain/level1.h"
#include "blas/plain/strided_loops.h"

namespace qel::plain {

namespace {

/// Modified rotation matrix with the flag that says which of its entries are implied.
template <class R>
struct modified_rotation {
  R flag, h11, h21, h12, h22;

  /// Makes the implied entries explicit before the matrix is rescaled.
  void make_full() {
    if (flag == 0) {
      h11 = h22 = 1;
    } else if (flag > 0) {
      h21 = -1;
      h12 = 1;
    }
    flag = -1;
  }
  void store(R* param) const {
    param[0] = flag;
    if (flag < 0) {
      param[1] = h11;
      param[2] = h21;
      param[3] = h12;
      param[4] = h22;
    } else if (flag == 0) {
      param[2] = h21;
      param[3] = h12;
    } else {
      param[1] = h11;
      param[4] = h22;
    }
  }
};

template <class R>
inline constexpr R kGamma = 4096;

/// Keeps d1 and d2 between gamma^-2 and gamma^2 by moving powers of gamma into the matrix.
template <class R>
void rescale(R* d1, R* d2, R* x1, modified_rotation<R>& h) {
  constexpr R gamma = kGamma<R>, large = gamma * gamma, small = 1 / large;
  if (*d1 != 0) {
    while (*d1 <= small || *d1 >= large) {
      if (!std::isfinite(*d1)) break;
      h.make_full();
      const bool tiny = *d1 <= small;
      const R factor = tiny ? 1 / gamma : gamma;
      *d1 *= tiny ? large : small;
      *x1 *= factor;
      h.h11 *= factor;
      h.h12 *= factor;
    }
  }
  if (*d2 != 0) {
    while (std::fabs(*d2) <= small || std::fabs(*d2) >= large) {
      if (!std::isfinite(*d2)) break;
      h.make_full();
      const bool tiny = std::fabs(*d2) <= small;
      const R factor = tiny ? 1 / gamma : gamma;
      *d2 *= tiny ? large : small;
      h.h21 *= factor;
      h.h22 *= factor;
    }
  }
}

}  // namespace

template <class T>
void rot(core_int n, T* x, core_int incx, T* y, core_int incy, real_of<T> c, real_of<T> s) {
  if (n <= 0) return;
  T *x0 = first_element(x, n, incx), *y0 = first_element(y, n, incy);
  turn_forward(n, x0, incx, y0, incy);
  if (incx == 1 && incy == 1) {
    real_of<T>*xr = as_reals(x0), *yr = as_reals(y0);
    for (core_int i = 0; i < n * kRealsOf<T>; ++i) {
      const real_of<T> turned = c * xr[i] + s * yr[i];
      yr[i] = c * yr[i] - s * xr[i];
      xr[i] = turned;
    }
    return;
  }
  for (core_int i = 0; i < n; ++i) {
    const T xi = x0[i * incx], yi = y0[i * incy];
    x0[i * incx] = c * xi + s * yi;
    y0[i * incy] = c * yi - s * xi;
  }
}

template <class T>
void rotg(T* a, T* b, T* c, T* s) {
  const T abs_a = std::fabs(*a), abs_b = std::fabs(*b);
  const T scale = abs_a > abs_b ? abs_a : abs_b;
  if (scale == 0) {
    *c = 1;
    *s = 0;
    *b = 0;
    return;
  }
  const T sign = std::copysign(T{1}, abs_a > abs_b ? *a : *b);
  const T ratio_a = *a / scale, ratio_b = *b / scale;
  const T root = sign * std::sqrt(ratio_a * ratio_a + ratio_b * ratio_b);
  *c = ratio_a / root;
  *s = ratio_b / root;
  *a = scale * root;
  *b = abs_a > abs_b ? *s : *c != 0 ? 1 / *c : T{1};
}

template <class T>
void complex_rotg(T* a, T b, real_of<T>* c, T* s) {
  using R = real_of<T>;
  const R abs_a = std::hypot(a->real, a->imag);
  if (abs_a == 0) {
    *c = 0;
    *s = from_real<T>(1);
    *a = b;
    return;
  }
  const R norm = std::hypot(abs_a, std::hypot(b.real, b.imag));
  const T direction = {a->real / abs_a, a->imag / abs_a};
  *c = abs_a / norm;
  const T part = {b.real / norm, -b.imag / norm};
  *s = direction * part;
  *a = norm * direction;
}

template <class T>
void rotm(core_int n, T* x, core_int incx, T* y, core_int incy, const T* param) {
  const T flag = param[0];
  if (n <= 0 || flag == -2) return;
  const T h11 = flag == 0 ? 1 : param[1], h22 = flag == 0 ? 1 : param[4];
  const T h21 = flag > 0 ? -1 : param[2], h12 = flag > 0 ? 1 : param[3];
  T *x0 = first_element(x, n, incx), *y0 = first_element(y, n, incy);
  for (core_int i = 0; i < n; ++i) {
    const T xi = x0[i * incx], yi = y0[i * incy];
    x0[i * incx] = h11 * xi + h12 * yi;
    y0[i * incy] = h21 * xi + h22 * yi;
  }
}

template <class T>
void rotmg(T* d1, T* d2, T* x1, T y1, T* param) {
  modified_rotation<T> h{-1, 0, 0, 0, 0};
  const auto give_up = [&] { *d1 = *d2 = *x1 = 0; };
  const T p2 = *d2 * y1;
  if (*d1 < 0) {
    give_up();
  } else if (p2 == 0) {
    param[0] = -2;
    return;
  } else {
    const T p1 = *d1 * *x1, q2 = p2 * y1, q1 = p1 * *x1;
    if (std::fabs(q1) > std::fabs(q2)) {
      h = {0, 0, -y1 / *x1, p2 / p1, 0};
      const T u = 1 - h.h12 * h.h21;
      if (u > 0) {
        *d1 /= u;
        *d2 /= u;
        *x1 *= u;
      } else {  // only rounding can lead here
        h = {-1, 0, 0, 0, 0};
        give_up();
      }
    } else if (q2 < 0) {
      give_up();
    } else {
      h = {1, p1 / p2, 0, 0, *x1 / y1};
      const T u = 1 + h.h11 * h.h22;
      const T turned = *d2 / u;
      *d2 = *d1 / u;
      *d1 = turned;
      *x1 = y1 * u;
    }
    if (h.flag >= 0) rescale(d1, d2, x1, h);
  }
  h.store(param);
}

template void rot(core_int, float*, core_int, float*, core_int, float, float);
template void rot(core_int, double*, core_int, double*, core_int, double, double);
template void rot(core_int, complex8*, core_int, complex8*, core_int, float, float);
template void rot(core_int, complex16*, core_int, complex16*, core_int, double, double);
template void rotg(float*, float*, float*, float*);
template void rotg(double*, double*, double*, double*);
template void complex_rotg(complex8*, complex8, float*, complex8*);
template void complex_rotg(complex16*, complex16, double*, complex16*);
template void rotm(core_int, float*, core_int, float*, core_int, const float*);
template void rotm(core_int, double*, core_int, double*, core_int, const double*);
template void rotmg(float*, float*, float*, float, float*);
template void rotmg(double*, double*, double*, double, double*);

}  // namespace qel::plain
