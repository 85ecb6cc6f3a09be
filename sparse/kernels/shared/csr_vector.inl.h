// SPDX-License-Identifier: BSD-3-Clause
// Products of a CSR matrix and a vector, compiled once per level. Of a mirrored triangle rows are summed in
// order. Where QEL_CSR_FUSED is defined, multiply and add are one rounding, and mirrored rows of
// kLongMirroredRow entries have two sums.

#include "sparse/kernels/shared/csr_elements.inl.h"
#ifdef __AVX2__
#include "sparse/kernels/shared/row_runs.inl.h"
#endif
#include "sparse/kernels/shared/row_sums.inl.h"
#ifdef __AVX2__
#include "sparse/kernels/shared/triangle_rows.inl.h"
#endif
#include "sparse/kernels/shared/mirrored_rows.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// The sum over the entries that take part; the diagonal's column counts from the base, as columns do.
template <csr_part kPart, bool kConjugate, asking kAsks, class T>
[[gnu::always_inline]] inline T part_sum(core_int diagonal_column, const T* a, const int* columns,
                                         core_int count, const T* x) {
  // Of longer rows much may lie outside, whose values are not read.
  constexpr core_int kLongestAsked = 64;
  if (count < kLongestAsked) ask_ahead<kAsks>(a, columns, count);
  T sum{};
  for (core_int p = 0; p < count; ++p)
    if (takes_part<kPart>(diagonal_column, columns[p]))
      sum = multiple(stored<kConjugate>(a[p]), x[columns[p]], sum);
  return sum;
}

template <csr_part kPart, bool kConjugate, asking kAsks, class T>
[[gnu::noinline]] void gather_rows(const csr_slice* rows, core_int first, core_int last, const T* a, T alpha,
                                   const T* x, T* y) {
  constexpr bool kIsUpper = kPart == kUpper || kPart == kUpperUnit;
  const core_int base = rows->base;
  [[maybe_unused]] const core_int with_diagonal = rows->column_count;
  const T* const based_x = rebased(x, base);
  const int *const columns = rows->columns, *const begin = rows->begin, *const end = rows->end;
  const bool overwrites = rows->overwrites;
  for (core_int i = first; i < last; ++i) {
    const core_int start = begin[i] - base, count = end[i] - base - start;
    T sum{};
    if constexpr (kPart == kWhole) {
      sum = whole_sum<kConjugate, kAsks>(a + start, columns + start, count, based_x);
    } else {
      if (kPart != kDiagonalUnit && (!kIsUpper || i < with_diagonal))
        sum = part_sum<kPart, kConjugate, kAsks>(i + base, a + start, columns + start, count, based_x);
      if (is_unit(kPart) && i < with_diagonal) sum = plus(sum, x[i]);
    }
    y[i] = overwrites ? times(alpha, sum) : multiple(alpha, sum, y[i]);
  }
}
template <csr_part kPart, bool kConjugate, asking kAsks, class T>
[[gnu::always_inline]] inline auto gather_rows_for([[maybe_unused]] const csr_slice* rows) {
#ifdef __AVX2__
  if constexpr (kHasVectors<T> && kPart != kWhole && kPart != kDiagonal && kPart != kDiagonalUnit)
    return rows->overwrites ? triangle_rows<kPart, kAsks, true> : triangle_rows<kPart, kAsks, false>;
  else
#endif
    return gather_rows<kPart, kConjugate, kAsks, T>;
}
template <csr_part kPart, bool kConjugate, class T>
void gather(const csr_slice* rows, const T* a, const T* alpha, const T* x, T* y) {
  const asking asks = asking_of(rows);
  const auto take_rows = asks == kAsksInSteps ? gather_rows_for<kPart, kConjugate, kAsksInSteps, T>(rows)
                         : asks == kAsksAhead ? gather_rows_for<kPart, kConjugate, kAsksAhead, T>(rows)
                                              : gather_rows_for<kPart, kConjugate, kAsksNothing, T>(rows);
#ifdef __AVX2__
  if constexpr (kHasVectors<T>) {
    const run_product product = {rows, a, *alpha, *alpha, x, y, is_unit(kPart)};
    const core_int limit =
        kPart == kWhole || rows->last < rows->column_count ? rows->last : rows->column_count;
    walk_rows(
        rows->last - rows->first, limit - rows->first,
        [&](core_int at, core_int n) {
          take_rows(rows, rows->first + at, rows->first + at + n, a, *alpha, x, y);
        },
        [&](core_int at, run_search& search) {
          return gather_runs<kPart>(product, rows->first + at, limit, search);
        },
        [&](core_int at) { return may_begin_run<1>(rows, rows->first + at); });
    return;
  }
#endif
  take_rows(rows, rows->first, rows->last, a, *alpha, x, y);
}

template <csr_part kPart, bool kConjugate, asking kAsks, class T>
[[gnu::noinline]] void scatter_rows(const csr_slice* rows, core_int first, core_int rows_end, const T* a,
                                    T alpha, const T* x, T* y) {
  const core_int base = rows->base, with_diagonal = rows->column_count;
  T* const based_y = rebased(y, base);
  const int *const columns = rebased(rows->columns, base), *const begin = rows->begin, *const end = rows->end;
  a = rebased(a, base);
  for (core_int i = first; i < rows_end; ++i) {
    const T factor = times(alpha, x[i]);
    if constexpr (kPart != kDiagonalUnit) {
      const auto add = [=](core_int p) {
        const core_int j = columns[p];
        if (takes_part<kPart>(i + base, j))
          based_y[j] = multiple(stored<kConjugate>(a[p]), factor, based_y[j]);
      };
      core_int p = begin[i];
      const core_int last = end[i];
      if constexpr (kAsks != kAsksNothing) ask_ahead<kAsks>(a + p, columns + p, last - p);
      if ((kPart == kWhole || kAsks == kAsksNothing) && last - p >= kLongRow) {
        for (; p + 4 <= last; p += 4) {
          if constexpr (kAsks != kAsksNothing) {
            // The result comes from far away, too: no load of four different elements waits for a store.
            const core_int j0 = columns[p], j1 = columns[p + 1], j2 = columns[p + 2], j3 = columns[p + 3];
            if ((j0 < j1) & (j1 < j2) & (j2 < j3)) [[likely]] {
              const T y0 = based_y[j0], y1 = based_y[j1], y2 = based_y[j2], y3 = based_y[j3];
              based_y[j0] = multiple(stored<kConjugate>(a[p]), factor, y0);
              based_y[j1] = multiple(stored<kConjugate>(a[p + 1]), factor, y1);
              based_y[j2] = multiple(stored<kConjugate>(a[p + 2]), factor, y2);
              based_y[j3] = multiple(stored<kConjugate>(a[p + 3]), factor, y3);
              continue;
            }
          }
          add(p);
          add(p + 1);
          add(p + 2);
          add(p + 3);
        }
      }
      for (; p < last; ++p) add(p);
    }
    if (is_unit(kPart) && i < with_diagonal) y[i] = plus(y[i], factor);
  }
}
template <csr_part kPart, bool kConjugate, class T>
void scatter(const csr_slice* rows, const T* a, const T* alpha, const T* x, T* y) {
  const asking asks = asking_of(rows);
  const auto take_rows = asks == kAsksInSteps ? scatter_rows<kPart, kConjugate, kAsksInSteps, T>
                         : asks == kAsksAhead ? scatter_rows<kPart, kConjugate, kAsksAhead, T>
                                              : scatter_rows<kPart, kConjugate, kAsksNothing, T>;
#ifdef __AVX2__
  if constexpr (kHasVectors<T>) {
    const run_product product = {rows, a, 0, *alpha, x, y, false};
    const core_int count = rows->last - rows->first;
    walk_rows(
        count, count,
        [&](core_int at, core_int n) {
          take_rows(rows, rows->first + at, rows->first + at + n, a, *alpha, x, y);
        },
        [&](core_int at, run_search& search) {
          return scatter_runs<kPart>(product, rows->first + at, rows->last, search);
        },
        [&](core_int at) { return may_begin_run<1>(rows, rows->first + at); });
    return;
  }
#endif
  take_rows(rows, rows->first, rows->last, a, *alpha, x, y);
}

// Real tables have the plain kernels in the places of the conjugating ones.
template <class T>
inline constexpr bool kHasConjugates = false;
template <>
inline constexpr bool kHasConjugates<complex16> = true;

#define QEL_CSR_BOTH(kernel, ...) \
  { kernel<__VA_ARGS__, false, T>, kernel<__VA_ARGS__, kHasConjugates<T>, T> }
#define QEL_CSR_PARTS(kernel)                                                                            \
  {                                                                                                      \
    QEL_CSR_BOTH(kernel, kWhole), QEL_CSR_BOTH(kernel, kLower), QEL_CSR_BOTH(kernel, kLowerUnit),        \
        QEL_CSR_BOTH(kernel, kUpper), QEL_CSR_BOTH(kernel, kUpperUnit), QEL_CSR_BOTH(kernel, kDiagonal), \
        QEL_CSR_BOTH(kernel, kDiagonalUnit)                                                              \
  }
#define QEL_CSR_TRIANGLES(mirror)                                                            \
  {                                                                                          \
    QEL_CSR_BOTH(symmetric, mirror, kLower), QEL_CSR_BOTH(symmetric, mirror, kLowerUnit),    \
        QEL_CSR_BOTH(symmetric, mirror, kUpper), QEL_CSR_BOTH(symmetric, mirror, kUpperUnit) \
  }
template <class T>
constexpr csr_kernels<T> csr_table() {
  return {QEL_CSR_PARTS(gather),
          QEL_CSR_PARTS(scatter),
          {QEL_CSR_TRIANGLES(kSame), QEL_CSR_TRIANGLES(kHasConjugates<T> ? kConjugated : kSame),
           QEL_CSR_TRIANGLES(kOpposite)}};
}
#undef QEL_CSR_TRIANGLES
#undef QEL_CSR_PARTS
#undef QEL_CSR_BOTH

}  // namespace

constexpr csr_kernels<double> csr_d = csr_table<double>();
constexpr csr_kernels<complex16> csr_z = csr_table<complex16>();

}  // namespace qel::QEL_LEVEL
