// SPDX-License-Identifier: BSD-3-Clause
// Triangles of small order with few right-hand sides, without packing. Rows go by vectors: a vector gets all
// that is known already, then its own triangle in registers. What is known comes column by column of the
// triangle; of a turned one, by sums along its columns, and the blocks on its diagonal are turned beforehand.
#pragma once

#include "blas/kernels/native/triangle.inl.h"
#include "blas/kernels/native/turn.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// A triangle as it is stored, its diagonal blocks as they are used, and sides in whole vectors,
/// kTriangleOrder apart.
template <class T>
struct narrow_triangle {
  using R = typename reals<T>::type;
  static constexpr core_int kParts = reals<T>::kCount, kLanes = tile_shape<T>::kLanes;
  /// Rows of a turned block, which are columns of `turned_blocks`.
  static constexpr core_int kBlock = kLanes > 4 ? kLanes : 4;

  core_int n;
  const T* t;
  core_int ldt;
  bool unit, turned;
  const T* turned_blocks;
  T* sides;
  const R *real, *imag;  ///< of the pivots' reciprocals, for each (real, real) and (-imag, imag)

  const R* at(core_int i, core_int k) const { return reinterpret_cast<const R*>(t + i + k * ldt); }
  R* side(core_int i, int s) const { return reinterpret_cast<R*>(sides + i + s * core_int{kTriangleOrder}); }
  /// The block of a vector's rows on the diagonal.
  const R* block(core_int i) const {
    return reinterpret_cast<const R*>(turned ? turned_blocks + i % kBlock + i * kBlock : t + i * (ldt + 1));
  }
  core_int block_step() const { return (turned ? kBlock : ldt) * kParts; }
};

/// The diagonal blocks' transposes, both triangles.
template <class T>
inline void turn_blocks(core_int n, const T* t, core_int ldt, T* to) {
  constexpr core_int kBlock = narrow_triangle<T>::kBlock, kGroup = 4;
  for (core_int b = 0; b < n; b += kBlock) {
    const core_int order = n - b < kBlock ? n - b : kBlock, whole = order / kGroup * kGroup;
    const T* const own = t + b * (ldt + 1);
    T* const turned = to + b * kBlock;
    for (core_int j = 0; j < whole; j += kGroup) {
      for (core_int i = 0; i < whole; i += kGroup) {
        transpose4(own + i + j * ldt, ldt, turned + j + i * kBlock, kBlock);
      }
    }
    for (core_int j = 0; j < order; ++j) {
      for (core_int i = j < whole ? whole : 0; i < order; ++i) {
        set_element(turned + j + i * kBlock, element_at(own + i + j * ldt));
      }
    }
  }
}

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

/// The first `count` of a vector's lanes, all of them if kWhole.
template <class R, bool kWhole>
inline typename vec<R>::reg load_rows(const R* p, [[maybe_unused]] int count) {
  if constexpr (kWhole) {
    return vec<R>::load(p);
  } else {
    return vec<R>::load_part(p, count);
  }
}

/// Rows i .. i + rows - 1 among themselves, an element of each side after the other. A column is multiplied
/// by its pivot's reciprocal beforehand, so that an element waits for one product only.
template <class T, int kSides, bool kUpper, bool kWhole, int kStep>
[[gnu::always_inline]] inline void solve_steps(const narrow_triangle<T>& what, core_int i, int rows,
                                               typename finish<T>::reg (&x)[kSides]) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  constexpr int kParts = reals<T>::kCount, kLanes = tile_shape<T>::kLanes;
  if constexpr (kStep + 1 < kLanes) {
    constexpr int kRow = kUpper ? kLanes - 1 - kStep : kStep;
    constexpr int kBegin = kUpper ? 0 : (kRow + 1) * kParts, kEnd = kUpper ? kRow * kParts : V::kLanes;
    if (kWhole || kRow < rows) {
      reg y = V::template only<kBegin, kEnd>(
          load_rows<R, kWhole>(what.block(i) + kRow * what.block_step(), rows * kParts));
      if (!what.unit) {
        const reg scaled = V::mul(y, V::all(what.real[(i + kRow) * kParts]));
        if constexpr (kParts == 2) {
          const reg imag = V::mul(V::swapped(y), V::pairs(-1, 1));
          y = V::fma(imag, V::all(what.imag[(i + kRow) * kParts + 1]), scaled);
        } else {
          y = scaled;
        }
      }
      const multiplied<T> column(y);
#pragma GCC unroll 4
      for (int s = 0; s < kSides; ++s) {
        const reg f = V::template lane<kRow * kParts>(x[s]);
        if constexpr (kParts == 1) {
          x[s] = column.from(x[s], f, f);
        } else {
          x[s] = column.from(x[s], f, V::template lane<kRow * kParts + 1>(x[s]));
        }
      }
    }
    solve_steps<T, kSides, kUpper, kWhole, kStep + 1>(what, i, rows, x);
  }
}

/// What the rows begin .. end - 1 that are known take from the vector at row i, by columns.
template <class T, int kSides, bool kWhole>
[[gnu::always_inline]] inline void take_columns(const narrow_triangle<T>& what, core_int i, int rows,
                                                core_int begin, core_int end,
                                                typename finish<T>::reg (&x)[kSides]) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  constexpr int kParts = reals<T>::kCount;
  reg more[kSides];  // two sums, as one would wait for itself
#pragma GCC unroll 4
  for (int s = 0; s < kSides; ++s) more[s] = V::zero();
  core_int k = begin;
  const auto take = [&](core_int from, reg(&sum)[kSides]) {
    const multiplied<T> column(load_rows<R, kWhole>(what.at(i, from), rows * kParts));
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
}

/// The same for a turned triangle, by sums along its columns, which begin on a vector of the sides. A real
/// number of x takes one sum, so a complex one two: of real parts' products less imaginary ones', and of
/// mixed ones.
template <class T, int kSides, bool kWhole>
[[gnu::always_inline]] inline void take_sums(const narrow_triangle<T>& what, core_int i, int rows,
                                             core_int begin, core_int end,
                                             typename finish<T>::reg (&x)[kSides]) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  constexpr int kParts = reals<T>::kCount, kLanes = tile_shape<T>::kLanes;
  if (begin >= end) return;
  for (int s = 0; s < kSides; ++s) {
    reg sum[V::kLanes];
#pragma GCC unroll 16
    for (int c = 0; c < V::kLanes; ++c) sum[c] = V::zero();
    const auto add_rows = [&](core_int k, const auto& load) {
      const reg side = V::load(what.side(k, s));
#pragma GCC unroll 16
      for (int c = 0; c < kLanes; ++c) {
        // Columns that are not there are others once more; their sums are not used.
        const reg column = load(what.at(k, i + (kWhole || c < rows ? c : 0)));
        if constexpr (kParts == 1) {
          sum[c] = V::fma(column, side, sum[c]);
        } else {
          sum[2 * c] = V::fma(column, V::mul(side, V::pairs(1, -1)), sum[2 * c]);
          sum[2 * c + 1] = V::fma(column, V::swapped(side), sum[2 * c + 1]);
        }
      }
    };
    core_int k = begin;
    for (; k + kLanes <= end; k += kLanes) add_rows(k, [](const R* p) { return V::load(p); });
    if (k < end) {
      const int left = static_cast<int>(end - k) * kParts;
      add_rows(k, [left](const R* p) { return V::load_part(p, left); });
    }
    x[s] = V::minus(x[s], V::sums(sum));
  }
}

template <class T, int kSides, bool kUpper, bool kWhole>
void solve_rows(const narrow_triangle<T>& what, core_int i) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  constexpr int kParts = reals<T>::kCount, kLanes = tile_shape<T>::kLanes;
  const int rows = kWhole ? kLanes : static_cast<int>(what.n - i);
  const core_int begin = kUpper ? i + kLanes : 0, end = kUpper ? what.n : i;
  reg x[kSides];
#pragma GCC unroll 4
  for (int s = 0; s < kSides; ++s) x[s] = V::load(what.side(i, s));
  if (what.turned) {
    take_sums<T, kSides, kWhole>(what, i, rows, begin, end, x);
  } else {
    take_columns<T, kSides, kWhole>(what, i, rows, begin, end, x);
  }
  solve_steps<T, kSides, kUpper, kWhole, 0>(what, i, rows, x);
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
  const core_int whole = what.n / kLanes * kLanes;
  if (upper) {
    if (whole < what.n) solve_rows<T, kSides, true, false>(what, whole);
    for (core_int i = whole - kLanes; i >= 0; i -= kLanes) solve_rows<T, kSides, true, true>(what, i);
  } else {
    for (core_int i = 0; i < whole; i += kLanes) solve_rows<T, kSides, false, true>(what, i);
    if (whole < what.n) solve_rows<T, kSides, false, false>(what, whole);
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

/// By division, for pivots whose reciprocals may overflow. A zero of x leaves its column and its pivot out: a
/// singular matrix with a side of zeros is solved by zeros, and no NaN behind a zero is met. Not so if
/// turned.
template <class T>
void solve_by_division(const narrow_triangle<T>& what, bool upper, T* x) {
  using R = typename reals<T>::type;
  for (core_int step = 0; step < what.n; ++step) {
    const core_int k = upper ? what.n - 1 - step : step;
    const T* const column = what.t + k * what.ldt;
    const core_int begin = upper == what.turned ? k + 1 : 0, end = upper == what.turned ? what.n : k;
    const R* const value = reinterpret_cast<const R*>(x + k);
    if (what.turned) {
      for (core_int i = begin; i < end; ++i)
        x[k] = difference_of(x[k], product_of(element_at(column + i), x[i]));
    } else if (value[0] == 0 && value[reals<T>::kCount - 1] == 0) {
      continue;
    }
    if (!what.unit) x[k] = divided(x[k], element_at(column + k));
    if (what.turned) continue;
    for (core_int i = begin; i < end; ++i)
      x[i] = difference_of(x[i], product_of(element_at(column + i), x[k]));
  }
}

template <int...>
struct places {};
/// Places 0 .. kCount - 1.
template <int kCount, int... kBehind>
struct first_places : first_places<kCount - 1, kCount - 1, kBehind...> {};
template <int... kAll>
struct first_places<0, kAll...> {
  using type = places<kAll...>;
};

/// A vector of elements that lie `step` apart. Not by way of memory: what is stored element by element can't
/// be read as a vector at once.
template <class T, int... kLane>
inline typename finish<T>::reg elements_apart(const T* first, core_int step, places<kLane...>) {
  constexpr int kParts = reals<T>::kCount;
  const auto* const p = reinterpret_cast<const typename reals<T>::type*>(first);
  return typename finish<T>::reg{p[kLane / kParts * step * kParts + kLane % kParts]...};
}

/// The reciprocals of all pivots; false if one could overflow or vanish on the way.
template <class T>
bool reciprocal_pivots(core_int n, const T* t, core_int ldt, typename reals<T>::type* real,
                       typename reals<T>::type* imag) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  constexpr int kParts = reals<T>::kCount, kLanes = tile_shape<T>::kLanes;
  constexpr auto kHigh = static_cast<R>(sizeof(R) == 4 ? 0x1p60 : 0x1p500);
  constexpr R kLow = 1 / kHigh;
  bool safe = true;
  for (core_int i = 0; i < n; i += kLanes) {
    const T* const first = t + i * (ldt + 1);
    reg v;
    if (i + kLanes <= n) {
      v = elements_apart(first, ldt + 1, typename first_places<V::kLanes>::type());
    } else {
      alignas(64) T pivots[kLanes];
      for (core_int j = 0; j < kLanes; ++j) {
        R* const pivot = reinterpret_cast<R*>(pivots + j);
        pivot[0] = pivot[kParts - 1] = 1;
        if (i + j < n) set_element(pivots + j, element_at(first + j * (ldt + 1)));
      }
      v = V::load(reinterpret_cast<const R*>(pivots));
    }
    const reg parts = V::magnitude(v), size = kParts == 1 ? parts : V::larger(parts, V::swapped(parts));
    safe = safe && V::all_between(size, kLow, kHigh);
    if constexpr (kParts == 1) {
      V::store(real + i, V::div(V::all(1), v));
    } else {
      const reg squares = V::mul(v, v);
      const reg turned = V::div(V::mul(v, V::pairs(1, -1)), V::add(squares, V::swapped(squares)));
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

/// A triangle as it is worked on.
template <class T>
struct narrow_stage {
  narrow_triangle<T> triangle;
  bool upper, conjugated;
};

/// All stages over the first kSides sides.
template <class T, int kSides>
void solve_stages(core_int n, const narrow_stage<T>* stages, int count, T* sides) {
  for (int k = 0; k < count; ++k) {
    if (k > 0 && stages[k].conjugated != stages[k - 1].conjugated) {
      for (int s = 0; s < kSides; ++s) {
        T* const side = sides + s * kTriangleOrder;
        move_side(n, true, side, side, true);
      }
    }
    solve_sides<T, kSides>(stages[k].triangle, stages[k].upper);
  }
}
template <class T>
void solve_stages_by_division(core_int n, const narrow_stage<T>* stages, int count, T* side) {
  for (int k = 0; k < count; ++k) {
    if (k > 0 && stages[k].conjugated != stages[k - 1].conjugated) move_side(n, true, side, side, true);
    solve_by_division(stages[k].triangle, stages[k].upper, side);
  }
}

template <class T>
void solve_narrow(const narrow_solve<T>& what) {
  using R = typename reals<T>::type;
  constexpr int kSides = 4, kParts = reals<T>::kCount;
  alignas(64) T sides[kSides * kTriangleOrder], turned[kTriangleOrder * narrow_triangle<T>::kBlock];
  alignas(64) R real[kTriangleOrder * kParts], imag[kTriangleOrder * kParts];
  const core_int n = what.order;
  narrow_stage<T> stages[2];
  bool divides = false;
  for (int k = 0; k < what.triangles; ++k) {
    const triangle_use& own = what.triangle[k];
    divides = divides || !own.unit;
    stages[k] = {{n, what.t, what.ldt, own.unit, own.turned, turned, sides, real, imag},
                 own.upper != own.turned,
                 own.conjugated};
  }
  if (what.triangle[0].turned || (what.triangles == 2 && what.triangle[1].turned)) {
    turn_blocks(n, what.t, what.ldt, turned);
  }
  const bool safe = !divides || reciprocal_pivots(n, what.t, what.ldt, real, imag);
  const bool conjugated_first = stages[0].conjugated, conjugated_last = stages[what.triangles - 1].conjugated;
  for (core_int j = 0; j < what.count; j += kSides) {
    const int count = static_cast<int>(what.count - j < kSides ? what.count - j : kSides);
    T* const b = what.b + j * what.ldb;
    const auto take_side = [&](int s) {
      move_side(n, conjugated_first, b + s * what.ldb, sides + s * kTriangleOrder, true);
    };
    for (int s = 0; s < count; ++s) take_side(s);
    switch (safe ? count : 0) {
      case 1:
        solve_stages<T, 1>(n, stages, what.triangles, sides);
        break;
      case 2:
        solve_stages<T, 2>(n, stages, what.triangles, sides);
        break;
      case 3:
        solve_stages<T, 3>(n, stages, what.triangles, sides);
        break;
      case 4:
        solve_stages<T, 4>(n, stages, what.triangles, sides);
        break;
      default:
        break;
    }
    for (int s = 0; s < count; ++s) {
      T* const side = sides + s * kTriangleOrder;
      if (!safe || !is_finite(n, side)) {
        take_side(s);
        solve_stages_by_division(n, stages, what.triangles, side);
      }
      move_side<T>(n, conjugated_last, side, b + s * what.ldb, false);
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
