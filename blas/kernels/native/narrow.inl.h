// SPDX-License-Identifier: BSD-3-Clause
// Triangles of small order with few right-hand sides, without packing. Rows go by vectors: a vector gets all
// that is known already, column by column of the triangle, then its own triangle in registers. A turned
// triangle is turned into a copy first.
#pragma once

#include "blas/kernels/native/triangle.inl.h"
#include "blas/kernels/native/turn.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// A triangle by its columns, and sides in whole vectors, kTriangleOrder apart.
template <class T>
struct narrow_triangle {
  using R = typename reals<T>::type;
  core_int n;
  const T* t;
  core_int ldt;
  bool unit;
  T* sides;
  const R *real, *imag;  ///< of the pivots' reciprocals, for each (real, real) and (-imag, imag)

  const R* at(core_int i, core_int k) const { return reinterpret_cast<const R*>(t + i + k * ldt); }
  R* side(core_int i, int s) const { return reinterpret_cast<R*>(sides + i + s * core_int{kTriangleOrder}); }
};

/// A vector of which multiples by elements are taken from others: x - y f.
template <class T>
class multiplied {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  static constexpr int kParts = reals<T>::kCount;

 public:
  explicit multiplied(reg y) : y_(y), turned_(y) {
    if constexpr (kParts == 2) turned_ = V::mul(V::swapped(y), V::pairs(-1, 1));
  }
  reg from(reg x, reg real, [[maybe_unused]] reg imag) const {
    x = V::minus_fma(y_, real, x);
    if constexpr (kParts == 2) x = V::minus_fma(turned_, imag, x);
    return x;
  }
  reg from(reg x, const R* f) const { return from(x, V::all(f[0]), V::all(f[kParts - 1])); }

 private:
  reg y_, turned_;  ///< turned: (-imaginary, real)
};

/// Rows i .. i + rows - 1 among themselves, an element of each side after the other.
template <class T, int kSides, bool kUpper, int kStep>
[[gnu::always_inline]] inline void solve_steps(const narrow_triangle<T>& what, core_int i, int rows,
                                               typename finish<T>::reg (&x)[kSides]) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  constexpr int kParts = reals<T>::kCount, kLanes = tile_shape<T>::kLanes;
  if constexpr (kStep < kLanes) {
    constexpr int kRow = kUpper ? kLanes - 1 - kStep : kStep;
    if (kRow < rows) {
      const lanes_from<R> behind((kUpper ? kRow : kRow + 1) * kParts);
      const multiplied<T> column(V::load_part(what.at(i, i + kRow), rows * kParts));
#pragma GCC unroll 4
      for (int s = 0; s < kSides; ++s) {
        reg real = V::template lane<kRow * kParts>(x[s]), imag = real;
        if constexpr (kParts == 2) imag = V::template lane<kRow * kParts + 1>(x[s]);
        if (!what.unit) {
          const reg by_real = V::all(what.real[(i + kRow) * kParts]);
          if constexpr (kParts == 1) {
            real = V::mul(real, by_real);
          } else {
            const reg by_imag = V::all(what.imag[(i + kRow) * kParts + 1]), first = real;
            real = V::minus_fma(imag, by_imag, V::mul(real, by_real));
            imag = V::fma(first, by_imag, V::mul(imag, by_real));
          }
        }
        const reg less = column.from(x[s], real, imag);
        x[s] = kUpper ? behind.choose(x[s], less) : behind.choose(less, x[s]);
      }
    }
    solve_steps<T, kSides, kUpper, kStep + 1>(what, i, rows, x);
  }
}

template <class T, int kSides, bool kUpper>
void solve_rows(const narrow_triangle<T>& what, core_int i) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  constexpr int kParts = reals<T>::kCount, kLanes = tile_shape<T>::kLanes;
  const int rows = static_cast<int>(what.n - i < kLanes ? what.n - i : kLanes);
  reg x[kSides], more[kSides];  // two sums, as one would wait for itself
#pragma GCC unroll 4
  for (int s = 0; s < kSides; ++s) {
    x[s] = V::load(what.side(i, s));
    more[s] = V::zero();
  }
  const core_int end = kUpper ? what.n : i;
  core_int k = kUpper ? i + kLanes : 0;
  const auto take = [&](core_int from, reg(&sum)[kSides]) {
    const multiplied<T> column(V::load_part(what.at(i, from), rows * kParts));
#pragma GCC unroll 4
    for (int s = 0; s < kSides; ++s) sum[s] = column.from(sum[s], what.side(from, s));
  };
  for (; k + 2 <= end; k += 2) {
    take(k, x);
    take(k + 1, more);
  }
  if (k < end) take(k, x);
#pragma GCC unroll 4
  for (int s = 0; s < kSides; ++s) x[s] = V::add(x[s], more[s]);
  solve_steps<T, kSides, kUpper, 0>(what, i, rows, x);
#pragma GCC unroll 4
  for (int s = 0; s < kSides; ++s) {
    reg done = x[s];
    if (!what.unit) {
      done = V::mul(x[s], V::load(what.real + i * kParts));
      if constexpr (kParts == 2) done = V::fma(V::swapped(x[s]), V::load(what.imag + i * kParts), done);
    }
    V::store(what.side(i, s), done);
  }
}

template <class T, int kSides>
void solve_sides(const narrow_triangle<T>& what, bool upper) {
  constexpr int kLanes = tile_shape<T>::kLanes;
  if (upper) {
    for (core_int i = (what.n - 1) / kLanes * kLanes; i >= 0; i -= kLanes)
      solve_rows<T, kSides, true>(what, i);
  } else {
    for (core_int i = 0; i < what.n; i += kLanes) solve_rows<T, kSides, false>(what, i);
  }
}

template <class T>
inline T product_of(T a, T b) {
  if constexpr (reals<T>::kCount == 1) {
    return a * b;
  } else {
    return {a.real * b.real - a.imag * b.imag, a.real * b.imag + a.imag * b.real};
  }
}
template <class T>
inline T difference_of(T a, T b) {
  if constexpr (reals<T>::kCount == 1) {
    return a - b;
  } else {
    return {a.real - b.real, a.imag - b.imag};
  }
}

/// By division, for pivots whose reciprocals may overflow. Unless told otherwise a zero of x leaves its
/// column and its pivot out: a singular matrix with a side of zeros is solved by zeros, and no NaN behind a
/// zero is met.
template <class T>
void solve_by_division(const narrow_triangle<T>& what, bool upper, bool skip_zeros, T* x) {
  using R = typename reals<T>::type;
  for (core_int step = 0; step < what.n; ++step) {
    const core_int k = upper ? what.n - 1 - step : step;
    const T* const column = what.t + k * what.ldt;
    const R* const value = reinterpret_cast<const R*>(x + k);
    if (skip_zeros && value[0] == 0 && value[reals<T>::kCount - 1] == 0) continue;
    if (!what.unit) x[k] = divided(x[k], element_at(column + k));
    const core_int begin = upper ? 0 : k + 1, end = upper ? k : what.n;
    for (core_int i = begin; i < end; ++i)
      x[i] = difference_of(x[i], product_of(element_at(column + i), x[k]));
  }
}

/// The reciprocals of all pivots; false if one could overflow or vanish on the way.
template <class T>
bool reciprocal_pivots(core_int n, const T* t, core_int ldt, typename reals<T>::type* real,
                       typename reals<T>::type* imag) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  constexpr int kParts = reals<T>::kCount, kLanes = tile_shape<T>::kLanes;
  constexpr auto kHigh = static_cast<R>(sizeof(R) == 4 ? 0x1p60 : 0x1p500);
  constexpr R kLow = 1 / kHigh;
  bool safe = true;
  for (core_int i = 0; i < n; i += kLanes) {
    alignas(64) T pivots[kLanes];
    for (core_int j = 0; j < kLanes; ++j) {
      R* const pivot = reinterpret_cast<R*>(pivots + j);
      pivot[0] = pivot[kParts - 1] = 1;
      if (i + j >= n) continue;
      pivots[j] = element_at(t + (i + j) * (ldt + 1));
      const R a = pivot[0] < 0 ? -pivot[0] : pivot[0],
              b = pivot[kParts - 1] < 0 ? -pivot[kParts - 1] : pivot[kParts - 1];
      const R size = a < b ? b : a;
      safe = safe && size >= kLow && size <= kHigh;
    }
    const typename V::reg v = V::load(reinterpret_cast<const R*>(pivots));
    if constexpr (kParts == 1) {
      V::store(real + i, V::div(V::all(1), v));
    } else {
      const typename V::reg squares = V::mul(v, v);
      const typename V::reg turned = V::div(V::mul(v, V::pairs(1, -1)), V::add(squares, V::swapped(squares)));
      V::store(real + i * kParts, V::evens(turned));
      V::store(imag + i * kParts, V::mul(V::odds(turned), V::pairs(-1, 1)));
    }
  }
  return safe;
}

/// A column of the right-hand sides and back, conjugated if asked.
template <class T>
void move_side(core_int n, bool conjugated, const T* from, T* to, bool inwards) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  const R* const x = reinterpret_cast<const R*>(from);
  R* const y = reinterpret_cast<R*>(to);
  const core_int count = n * reals<T>::kCount;
  for (core_int i = 0; i < count; i += V::kLanes) {
    const int there = static_cast<int>(count - i < V::kLanes ? count - i : V::kLanes);
    typename V::reg v = inwards ? V::load_part(x + i, there) : V::load(x + i);
    if (reals<T>::kCount == 2 && conjugated) v = V::mul(v, V::pairs(1, -1));
    if (inwards || there == V::kLanes) {
      V::store(y + i, v);
    } else {
      V::store_part(y + i, there, v);
    }
  }
}

/// No infinity and no NaN among n elements, zeros behind them.
template <class T>
bool is_finite(core_int n, const T* x) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  typename V::reg sum = V::zero();
  for (core_int i = 0; i < n * reals<T>::kCount; i += V::kLanes) {
    const typename V::reg v = V::load(reinterpret_cast<const R*>(x) + i);
    sum = V::add(sum, V::minus(v, v));
  }
  return V::is_zero(sum);
}

template <class T>
void solve_narrow(const narrow_solve<T>& what) {
  using R = typename reals<T>::type;
  constexpr int kSides = 4, kParts = reals<T>::kCount, kLanes = tile_shape<T>::kLanes;
  alignas(64) T sides[kSides * kTriangleOrder], copy[kTriangleOrder * kTriangleOrder];
  alignas(64) R real[kTriangleOrder * kParts], imag[kTriangleOrder * kParts];
  const core_int n = what.order;
  narrow_triangle<T> triangle{n, what.t, what.ldt, what.unit, sides, real, imag};
  const bool upper = what.upper != what.turned;
  if (what.turned) {
    triangle.t = copy;
    triangle.ldt = (n + kLanes - 1) / kLanes * kLanes;
    turn_triangle(!what.upper, n, what.t, what.ldt, copy, triangle.ldt);
  }
  const bool safe = what.unit || reciprocal_pivots(n, what.t, what.ldt, real, imag);
  for (core_int j = 0; j < what.count; j += kSides) {
    const int count = static_cast<int>(what.count - j < kSides ? what.count - j : kSides);
    T* const b = what.b + j * what.ldb;
    const auto take_side = [&](int s) {
      move_side(n, what.conjugated, b + s * what.ldb, sides + s * kTriangleOrder, true);
    };
    for (int s = 0; s < count; ++s) take_side(s);
    switch (safe ? count : 0) {
      case 1:
        solve_sides<T, 1>(triangle, upper);
        break;
      case 2:
        solve_sides<T, 2>(triangle, upper);
        break;
      case 3:
        solve_sides<T, 3>(triangle, upper);
        break;
      case 4:
        solve_sides<T, 4>(triangle, upper);
        break;
      default:
        break;
    }
    for (int s = 0; s < count; ++s) {
      T* const side = sides + s * kTriangleOrder;
      if (!safe || !is_finite(n, side)) {
        take_side(s);
        solve_by_division(triangle, upper, !what.turned, side);
      }
      move_side<T>(n, what.conjugated, side, b + s * what.ldb, false);
    }
  }
}

template <class T>
constexpr level3_kernels<T> level3_table() {
  return {tile_shape<T>::kRows, tile_shape<T>::kColumns, tile_shape<T>::kLanes,
          pack_rows<T>,         pack_columns<T>,         multiply<T>,
          multiply_direct<T>,   triangle_rows<T>,        triangle_columns<T>,
          solve_narrow<T>};
}

}  // namespace
}  // namespace qel::QEL_LEVEL
