// SPDX-License-Identifier: BSD-3-Clause
// Panels: a few columns of a matrix in any storage, each with the rows of it that count, and the loops of
// level2_columns.inl.h over them. The rows that all columns share are taken together, what sticks out of a
// band one column at a time. Vectors may have any stride: those that aren't contiguous pass through a stretch
// of stack memory, so that the results are the same bits as for contiguous ones.
#pragma once

#include "blas/kernels/shared/level2_columns.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// Element i at at[i * inc].
template <class T>
struct vector_view {
  T* at;
  core_int inc;
  auto get(core_int i) const { return element_at(at + i * inc); }
  template <class V>
  void set(core_int i, V value) const {
    set_element(at + i * inc, value);
  }
};
template <class T>
inline vector_view<T> view_of(T* lowest, core_int n, core_int inc) {
  return {first_element(lowest, n, inc), inc};
}

/// Rows of a stretch: 16 KiB, half of a first-level cache.
template <class T>
constexpr core_int kStretch = 16384 / sizeof(T);

/// Calls work(row, m) for the stretches of rows first .. last - 1.
template <class T, class Work>
inline void for_stretches(core_int first, core_int last, Work work) {
  for (core_int row = first; row < last; row += kStretch<T>) {
    work(row, last - row < kStretch<T> ? last - row : kStretch<T>);
  }
}

/// A stretch of x as contiguous memory.
template <class T>
struct stretch_of {
  T copy[kStretch<T>];
  const T* read(vector_view<const T> x, core_int row, core_int m) {
    if (x.inc == 1) return x.at + row;
    for (core_int i = 0; i < m; ++i) copy[i] = x.get(row + i);
    return copy;
  }
  T* open(vector_view<T> y, core_int row, core_int m) {
    if (y.inc == 1) return y.at + row;
    for (core_int i = 0; i < m; ++i) copy[i] = y.get(row + i);
    return copy;
  }
  void close(vector_view<T> y, core_int row, core_int m) const {
    if (y.inc == 1) return;
    for (core_int i = 0; i < m; ++i) y.set(row + i, copy[i]);
  }
};

constexpr int kPanel = 8;

/// Element i of column k at column[k][i]; its rows are first[k] .. last[k] - 1. E is T or const T.
template <class E, class T, int kFactors = 1>
struct panel {
  int count = 0;
  E* column[kPanel];
  T factor[kPanel * kFactors];
  core_int first[kPanel], last[kPanel];

  void add(E* c, core_int first_row, core_int last_row) {
    column[count] = c;
    first[count] = first_row;
    last[count++] = last_row;
  }
  void add(E* c, core_int first_row, core_int last_row, T f) {
    factor[count] = f;
    add(c, first_row, last_row);
  }
};

/// Calls work(k, columns, first, last) for ranges of rows that `columns` columns from k on share.
template <class P, class Work>
inline void for_shared_rows(const P& p, Work work) {
  core_int first = p.first[0], last = p.last[0];
  bool even = true;
  for (int k = 1; k < p.count; ++k) {
    even = even && p.first[k] == p.first[0] && p.last[k] == p.last[0];
    if (p.first[k] > first) first = p.first[k];
    if (p.last[k] < last) last = p.last[k];
  }
  if (first < last) work(0, p.count, first, last);
  if (even) return;
  for (int k = 0; k < p.count; ++k) {
    if (first >= last) {
      if (p.first[k] < p.last[k]) work(k, 1, p.first[k], p.last[k]);
      continue;
    }
    if (p.first[k] < first) work(k, 1, p.first[k], first);
    if (last < p.last[k]) work(k, 1, last, p.last[k]);
  }
}

/// y += the columns times their factors.
template <class T>
inline void add_panel(const panel<const T, T>& p, vector_view<T> y) {
  for_shared_rows(p, [&](int k, int columns, core_int first, core_int last) {
    if (y.inc == 1)
      return add_columns(columns, last - first, first, p.column + k, p.factor + k, y.at + first);
    stretch_of<T> ys;
    for_stretches<T>(first, last, [&](core_int row, core_int m) {
      add_columns(columns, m, row, p.column + k, p.factor + k, ys.open(y, row, m));
      ys.close(y, row, m);
    });
  });
}

/// total[k] = the product of column k, conjugated if asked, with x.
template <bool kConjugate, class T>
inline void sum_panel(const panel<const T, T>& p, vector_view<const T> x, T* total) {
  for (int k = 0; k < p.count; ++k) total[k] = real_element<T>(0);
  stretch_of<T> xs;
  for_shared_rows(p, [&](int k, int columns, core_int first, core_int last) {
    for_stretches<T>(first, last, [&](core_int row, core_int m) {
      T sums[kPanel];
      column_sums<kConjugate>(columns, m, row, p.column + k, xs.read(x, row, m), sums);
      for (int c = 0; c < columns; ++c) total[k + c] = sum_of(total[k + c], sums[c]);
    });
  });
}

/// Both from one read of the columns.
template <bool kConjugate, class T>
inline void add_and_sum_panel(const panel<const T, T>& p, vector_view<const T> x, vector_view<T> y,
                              T* total) {
  for (int k = 0; k < p.count; ++k) total[k] = real_element<T>(0);
  stretch_of<T> xs, ys;
  for_shared_rows(p, [&](int k, int columns, core_int first, core_int last) {
    for_stretches<T>(first, last, [&](core_int row, core_int m) {
      T sums[kPanel];
      add_and_sum_columns<kConjugate>(columns, m, row, p.column + k, p.factor + k, xs.read(x, row, m),
                                      ys.open(y, row, m), sums);
      ys.close(y, row, m);
      for (int c = 0; c < columns; ++c) total[k + c] = sum_of(total[k + c], sums[c]);
    });
  });
}

/// The columns += their factors times the vectors.
template <int kVectors, class T>
inline void update_panel(const panel<T, T, kVectors>& p, const vector_view<const T> (&x)[kVectors]) {
  stretch_of<T> copies[kVectors];
  for_shared_rows(p, [&](int k, int columns, core_int first, core_int last) {
    for_stretches<T>(first, last, [&](core_int row, core_int m) {
      const T* xs[kVectors];
      for (int v = 0; v < kVectors; ++v) xs[v] = copies[v].read(x[v], row, m);
      update_columns<kVectors>(columns, m, row, p.column + k, p.factor + k * kVectors, xs);
    });
  });
}

/// y = t y; t = 0 stores zeros without reading, t = 1 changes nothing.
template <class T>
inline void scale(core_int n, T t, vector_view<T> y) {
  if (equals_real(t, 1)) return;
  if (equals_real(t, 0)) {
    for (core_int i = 0; i < n; ++i) y.set(i, real_element<T>(0));
  } else {
    for (core_int i = 0; i < n; ++i) y.set(i, product_of(t, y.get(i)));
  }
}

}  // namespace
}  // namespace qel::QEL_LEVEL
