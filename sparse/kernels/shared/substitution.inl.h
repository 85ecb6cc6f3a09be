// SPDX-License-Identifier: BSD-3-Clause
// Body of the substitutions with one right-hand side: four columns at a time, in vectors of 32 bytes, which
// lower levels take in halves. Multiplies and adds in two roundings on every level.
#include "sparse/kernels/substitution_kernels.h"

namespace qel::QEL_LEVEL {

namespace {

constexpr int kColumns = 4;

// Of the element's alignment in memory.
template <class T>
struct vectors {
  static constexpr int kLanes = 32 / sizeof(T), kHalf = kLanes / 2;
  using type [[gnu::vector_size(32), gnu::aligned(sizeof(T)), gnu::may_alias]] = T;
  using half [[gnu::vector_size(16), gnu::aligned(sizeof(T)), gnu::may_alias]] = T;
};

/// z -= p c: rows elements, count columns.
template <int count, class T>
[[gnu::always_inline]] inline void subtract_columns(int rows, const T* p, int64_t ld, const T* c, T* z) {
  using vector = typename vectors<T>::type;
  using half = typename vectors<T>::half;
  int i = 0;
  for (; i + vectors<T>::kLanes <= rows; i += vectors<T>::kLanes) {
    vector sum = *reinterpret_cast<const vector*>(p + i) * c[0];
    for (int k = 1; k < count; ++k) sum += *reinterpret_cast<const vector*>(p + i + k * ld) * c[k];
    *reinterpret_cast<vector*>(z + i) -= sum;
  }
  if (i + vectors<T>::kHalf <= rows) {
    half sum = *reinterpret_cast<const half*>(p + i) * c[0];
    for (int k = 1; k < count; ++k) sum += *reinterpret_cast<const half*>(p + i + k * ld) * c[k];
    *reinterpret_cast<half*>(z + i) -= sum;
    i += vectors<T>::kHalf;
  }
  for (; i < rows; ++i) {
    T sum = p[i] * c[0];
    for (int k = 1; k < count; ++k) sum += p[i + k * ld] * c[k];
    z[i] -= sum;
  }
}

/// Both halves added: lanes l and l + kHalf.
template <class T>
[[gnu::always_inline]] inline void fold(const T* lanes, T* folded) {
  using half = typename vectors<T>::half;
  *reinterpret_cast<half*>(folded) =
      *reinterpret_cast<const half*>(lanes) + *reinterpret_cast<const half*>(lanes + vectors<T>::kHalf);
}

/// c -= p' z.
template <int count, class T>
[[gnu::always_inline]] inline void subtract_dots(int rows, const T* p, int64_t ld, const T* z, T* c) {
  using vector = typename vectors<T>::type;
  using half = typename vectors<T>::half;
  constexpr int kLanes = vectors<T>::kLanes, kHalf = vectors<T>::kHalf;
  vector sums[count] = {};
  int i = 0;
  for (; i + kLanes <= rows; i += kLanes) {
    const vector factors = *reinterpret_cast<const vector*>(z + i);
    for (int k = 0; k < count; ++k) sums[k] += *reinterpret_cast<const vector*>(p + i + k * ld) * factors;
  }
  half folded[count];
  for (int k = 0; k < count; ++k)
    fold(reinterpret_cast<const T*>(&sums[k]), reinterpret_cast<T*>(&folded[k]));
  if (i + kHalf <= rows) {
    const half factors = *reinterpret_cast<const half*>(z + i);
    for (int k = 0; k < count; ++k) folded[k] += *reinterpret_cast<const half*>(p + i + k * ld) * factors;
    i += kHalf;
  }
  T total[count];
  for (int k = 0; k < count; ++k) {
    if constexpr (kHalf == 2) {
      total[k] = folded[k][0] + folded[k][1];
    } else {
      total[k] = (folded[k][0] + folded[k][2]) + (folded[k][1] + folded[k][3]);
    }
  }
  for (; i < rows; ++i)
    for (int k = 0; k < count; ++k) total[k] += p[i + k * ld] * z[i];
  for (int k = 0; k < count; ++k) c[k] -= total[k];
}

/// Calls run with the number of columns as a constant.
template <class Run>
[[gnu::always_inline]] inline void with_count(int count, const Run& run) {
  if (count == kColumns) return run.template operator()<kColumns>();
  if (count == 3) return run.template operator()<3>();
  if (count == 2) return run.template operator()<2>();
  run.template operator()<1>();
}

/// Visits the columns in groups from the left, or from the right: groups begin at multiples of four.
template <bool kFromRight, class Visit>
[[gnu::always_inline]] inline void for_groups(int width, const Visit& visit) {
  const int groups = (width + kColumns - 1) / kColumns;
  for (int g = 0; g < groups; ++g) {
    const int k = kColumns * (kFromRight ? groups - 1 - g : g), left = width - k;
    with_count(left < kColumns ? left : kColumns, [&]<int count>() { visit.template operator()<count>(k); });
  }
}

template <class T>
void forward_lower(const panel_substitution<T>* s) {
  const int rows = s->rows, width = s->width;
  const int64_t ld = rows;
  const bool unit = s->unit, apart = s->panel != s->block;
  T* const z = s->z;
  for_groups<false>(width, [&]<int count>(int k) {
    const T* const d = s->block + k + k * ld;
    for (int j = 0; j < count; ++j) {
      if (!unit) z[k + j] = z[k + j] / d[j + j * ld];
      for (int i = j + 1; i < count; ++i) z[k + i] -= d[i + j * ld] * z[k + j];
    }
    const int next = k + count;
    subtract_columns<count>((apart ? width : rows) - next, d + count, ld, z + k, z + next);
    if (apart) subtract_columns<count>(rows - width, s->panel + width + k * ld, ld, z + k, z + width);
  });
}

template <class T>
void forward_upper(const panel_substitution<T>* s) {
  const int rows = s->rows, width = s->width;
  const int64_t ld = rows;
  const bool unit = s->unit;
  T* const z = s->z;
  for_groups<false>(width, [&]<int count>(int k) {
    const T* const column = s->block + k * ld;
    const T* const d = column + k;
    subtract_dots<count>(k, column, ld, z, z + k);
    for (int j = 0; j < count; ++j) {
      for (int i = 0; i < j; ++i) z[k + j] -= d[i + j * ld] * z[k + i];
      if (!unit) z[k + j] = z[k + j] / d[j + j * ld];
    }
    subtract_columns<count>(rows - width, s->panel + width + k * ld, ld, z + k, z + width);
  });
}

template <class T>
void backward_lower(const panel_substitution<T>* s) {
  const int rows = s->rows, width = s->width;
  const int64_t ld = rows;
  const bool unit = s->unit, apart = s->panel != s->block;
  T* const z = s->z;
  for_groups<true>(width, [&]<int count>(int k) {
    const T* const d = s->block + k + k * ld;
    const int next = k + count;
    if (apart) subtract_dots<count>(rows - width, s->panel + width + k * ld, ld, z + width, z + k);
    subtract_dots<count>((apart ? width : rows) - next, d + count, ld, z + next, z + k);
    for (int j = count - 1; j >= 0; --j) {
      for (int i = j + 1; i < count; ++i) z[k + j] -= d[i + j * ld] * z[k + i];
      if (!unit) z[k + j] = z[k + j] / d[j + j * ld];
    }
  });
}

template <class T>
void backward_upper(const panel_substitution<T>* s) {
  const int rows = s->rows, width = s->width;
  const int64_t ld = rows;
  const bool unit = s->unit;
  T* const z = s->z;
  for_groups<true>(width, [&]<int count>(int k) {
    const T* const column = s->block + k * ld;
    const T* const d = column + k;
    subtract_dots<count>(rows - width, s->panel + width + k * ld, ld, z + width, z + k);
    for (int j = count - 1; j >= 0; --j) {
      if (!unit) z[k + j] = z[k + j] / d[j + j * ld];
      for (int i = 0; i < j; ++i) z[k + i] -= d[i + j * ld] * z[k + j];
    }
    subtract_columns<count>(k, column, ld, z + k, z);
  });
}

template <class T>
constexpr substitution_kernels<T> substitution_table() {
  return {forward_lower<T>, forward_upper<T>, backward_lower<T>, backward_upper<T>};
}

}  // namespace

constexpr substitution_kernels<float> substitution_s = substitution_table<float>();
constexpr substitution_kernels<double> substitution_d = substitution_table<double>();

}  // namespace qel::QEL_LEVEL
