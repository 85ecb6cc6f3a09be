// SPDX-License-Identifier: BSD-3-Clause
// Products of a CSR matrix and a vector, compiled once per level. Rows of kLongRow entries and more are
// summed in four accumulators, entry p of the row in number p mod 4, added as (0 + 1) + (2 + 3), then the
// tail in order; shorter ones in order. Of a mirrored triangle rows are summed in order. Where QEL_CSR_FUSED
// is defined, multiply and add are one rounding, and mirrored rows of kLongMirroredRow entries have two sums.

#include "sparse/kernels/shared/csr_elements.inl.h"
#ifdef __AVX2__
#include "sparse/kernels/shared/row_runs.inl.h"
#endif
#include "sparse/kernels/shared/mirrored_rows.inl.h"

namespace qel::QEL_LEVEL {
namespace {

// Below, the start and the end of four sums cost more than they save.
constexpr core_int kLongRow = 10;

/// The sum of a[p] * x[columns[p]] over a row's entries.
template <bool kConjugate, class T>
[[gnu::always_inline]] inline T row_sum(const T* a, const int* columns, core_int count, const T* x) {
  T sum{};
  core_int p = 0;
  if (count < kLongRow) {
    for (; p < count; ++p) sum = multiple(stored<kConjugate>(a[p]), x[columns[p]], sum);
    return sum;
  }
  T sum1{}, sum2{}, sum3{};
  for (; p + 4 <= count; p += 4) {
    sum = multiple(stored<kConjugate>(a[p]), x[columns[p]], sum);
    sum1 = multiple(stored<kConjugate>(a[p + 1]), x[columns[p + 1]], sum1);
    sum2 = multiple(stored<kConjugate>(a[p + 2]), x[columns[p + 2]], sum2);
    sum3 = multiple(stored<kConjugate>(a[p + 3]), x[columns[p + 3]], sum3);
  }
  sum = plus(plus(sum, sum1), plus(sum2, sum3));
  for (; p < count; ++p) sum = multiple(stored<kConjugate>(a[p]), x[columns[p]], sum);
  return sum;
}

#ifdef __AVX2__
/// (0 + 1) + (2 + 3), as row_sum adds.
inline double total(__m256d sums) {
  const __m128d low = _mm256_castpd256_pd128(sums), high = _mm256_extractf128_pd(sums, 1);
  const __m128d pairs = _mm_add_pd(_mm_unpacklo_pd(low, high), _mm_unpackhi_pd(low, high));
  return _mm_cvtsd_f64(_mm_add_sd(pairs, _mm_unpackhi_pd(pairs, pairs)));
}

/// x at four columns, loaded one by one: columns k and k + 1 in one number each.
[[gnu::always_inline]] inline __m256d elements_of(const double* x, int64_t first, int64_t second) {
  return _mm256_setr_pd(x[static_cast<int>(first)], x[first >> 32], x[static_cast<int>(second)],
                        x[second >> 32]);
}
[[gnu::always_inline]] inline int64_t two_columns(const int* columns) {
  int64_t two;
  __builtin_memcpy(&two, columns, sizeof(two));
  return two;
}

/// What a long row, whose elements of x come from all over it, will read. From memory: far ahead into the
/// second cache, and near from there into the first one, which can wait for too few lines at a time to keep
/// memory busy. From a cache: near, as the processor's own asking does not keep up.
template <bool kStreams>
[[gnu::always_inline]] inline void ask_in_long_row(const double* a, const int* columns) {
  constexpr intptr_t kNear = kStreams ? 1024 : 512, kFar = 8192;
  ask_for_lines<_MM_HINT_T0>(a, kNear, 1);
  ask_for_lines<_MM_HINT_T0>(columns, kNear / 2, 1);
  if constexpr (kStreams) {
    ask_for_lines<_MM_HINT_T1>(a, kFar, 1);
    ask_for_lines<_MM_HINT_T1>(columns, kFar / 2, 1);
  }
}

/// The bits of row_sum for a long row. One instruction that gathers four elements takes longer on Zen 4, up
/// to twice where x lies beyond the second cache.
template <bool kStreams>
[[gnu::always_inline]] inline double long_sum(const double* a, const int* columns, core_int count,
                                              const double* x) {
  __m256d sums = _mm256_setzero_pd();
  const auto add_four = [&] {
    if constexpr (kStreams) ask_in_long_row<kStreams>(a, columns);
    sums = _mm256_fmadd_pd(_mm256_loadu_pd(a), elements_of(x, two_columns(columns), two_columns(columns + 2)),
                           sums);
    a += 4;
    columns += 4;
    count -= 4;
    asm("" : "+r"(count));  // the compiler must not work out where the loop ends, with more than it saves
  };
  do {
    if constexpr (!kStreams) ask_in_long_row<kStreams>(a, columns);  // the last few need none
    add_four();
    add_four();
  } while (count >= 8);
  if (count >= 4) add_four();
  double sum = total(sums);
  for (core_int p = 0; p < count; ++p) sum = multiple(a[p], x[columns[p]], sum);
  return sum;
}

/// Which of the first eight columns take part, of count; a bit each. Reads all eight if count is above 0.
template <csr_part kPart>
[[gnu::always_inline]] inline unsigned parts_of_eight(core_int diagonal_column, const int* columns,
                                                      core_int count) {
  if (count <= 0) return 0;
  const __m256i diagonal = _mm256_set1_epi32(static_cast<int>(diagonal_column)), j = eight(columns);
  // Of the parts with a diagonal, what lies outside.
  const __m256i compared = kPart == kLower || kPart == kUpperUnit ? _mm256_cmpgt_epi32(j, diagonal)
                                                                  : _mm256_cmpgt_epi32(diagonal, j);
  const unsigned found = static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(compared)));
  return (is_unit(kPart) ? found : ~found) & 255U >> (count < 8 ? 8 - count : 0);
}

/// A long row of a real triangle. Fours that lie inside of a lower triangle are plain ones, as long as they
/// come first, and fours that come first and lie outside of an upper one are none: where the triangle cuts a
/// sorted row, which no branch foresees, is met once. The other fours have no branch: what takes no part has
/// zeros for both factors, and the diagonal's element of x, which rows inside the matrix have, is read in its
/// place.
template <csr_part kPart>
[[gnu::noinline]] double long_part_sum(core_int diagonal_column, const double* a, const int* columns,
                                       core_int count, core_int readable, const double* x) {
  constexpr bool kIsLower = kPart == kLower || kPart == kLowerUnit;
  // A comparison has all ones or, for the parts with a diagonal, zeros where an entry takes part.
  constexpr bool kNegated = kPart == kLower || kPart == kUpper;
  constexpr bool kGreater = kPart == kLower || kPart == kUpperUnit;
  const __m128i diagonal = _mm_set1_epi32(static_cast<int>(diagonal_column));
  const auto four = [columns](core_int p) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(columns + p));
  };
  const auto compared = [diagonal](__m128i j) {
    return kGreater ? _mm_cmpgt_epi32(j, diagonal) : _mm_cmpgt_epi32(diagonal, j);
  };
  const auto taken = [compared](__m128i j) {  // a bit each
    return _mm_movemask_ps(_mm_castsi128_ps(compared(j))) ^ (kNegated ? 15 : 0);
  };
  const auto kept = [](__m256d mask, __m256d v) {
    return kNegated ? _mm256_andnot_pd(mask, v) : _mm256_and_pd(mask, v);
  };
  __m256d sums = _mm256_setzero_pd();
  const auto add_four = [&](core_int p) {
    const __m128i j = four(p);
    const __m256d mask = _mm256_castsi256_pd(_mm256_cvtepi32_epi64(compared(j)));
    const __m128i read = kIsLower ? _mm_min_epi32(j, diagonal) : _mm_max_epi32(j, diagonal);
    const __m256d elements = elements_of(x, _mm_cvtsi128_si64(read), _mm_extract_epi64(read, 1));
    sums = _mm256_fmadd_pd(kept(mask, _mm256_loadu_pd(a + p)), kept(mask, elements), sums);
  };
  core_int p = 0;
  if constexpr (kIsLower) {
    for (; p + 4 <= count && taken(four(p)) == 15; p += 4)
      sums = _mm256_fmadd_pd(_mm256_loadu_pd(a + p),
                             elements_of(x, two_columns(columns + p), two_columns(columns + p + 2)), sums);
    if (p + 4 <= count) {
      add_four(p);
      p += 4;
      const auto sixteen = [=](core_int q, core_int n) {
        return parts_of_eight<kPart>(diagonal_column, columns + q, n) |
               parts_of_eight<kPart>(diagonal_column, columns + q + 8, n - 8);
      };
      while (p + 16 < count && sixteen(p, 16) == 0) p += 16;
      if (count - p <= 16 && count + 7 <= readable && sixteen(p, count - p) == 0) [[likely]]
        return total(sums);
    }
  } else {
    while (p + 4 <= count && taken(four(p)) == 0) p += 4;
  }
  for (; p + 4 <= count; p += 4) add_four(p);
  double sum = total(sums);
  for (; p < count; ++p)
    if (takes_part<kPart>(diagonal_column, columns[p])) sum = multiple(a[p], x[columns[p]], sum);
  return sum;
}
#endif

template <bool kConjugate, bool kStreams, class T>
[[gnu::always_inline]] inline T whole_sum(const T* a, const int* columns, core_int count, const T* x) {
  if constexpr (kHasVectors<T>) {
    if (count >= kLongRow) return long_sum<kStreams>(a, columns, count, x);
  }
  if constexpr (kStreams) ask_ahead(a, columns, count);
  return row_sum<kConjugate>(a, columns, count, x);
}
/// Longer rows of triangles ask for nothing: much of them may lie outside, whose values are not read.
constexpr core_int kLongestAsked = 64;

/// The sum over the entries that take part; the diagonal's column counts from the base, as columns do;
/// columns are readable up to a number of them.
template <csr_part kPart, bool kConjugate, bool kStreams, class T>
[[gnu::always_inline]] inline T part_sum(core_int diagonal_column, const T* a, const int* columns,
                                         core_int count, [[maybe_unused]] core_int readable, const T* x) {
  if constexpr (kStreams) {
    if (count < kLongestAsked) ask_ahead(a, columns, count);
  }
#ifdef __AVX2__
  if constexpr (kHasVectors<T> && kPart != kDiagonal) {
    if (count >= kLongRow) return long_part_sum<kPart>(diagonal_column, a, columns, count, readable, x);
  }
#endif
  T sum{};
  for (core_int p = 0; p < count; ++p)
    if (takes_part<kPart>(diagonal_column, columns[p]))
      sum = multiple(stored<kConjugate>(a[p]), x[columns[p]], sum);
  return sum;
}

template <csr_part kPart, bool kConjugate, bool kStreams, class T>
[[gnu::noinline]] void gather_rows(const csr_slice* rows, core_int first, core_int last, const T* a, T alpha,
                                   const T* x, T* y) {
  constexpr bool kIsUpper = kPart == kUpper || kPart == kUpperUnit;
  const core_int base = rows->base;
  [[maybe_unused]] const core_int with_diagonal = rows->column_count;
  const T* const based_x = rebased(x, base);
  const int *const columns = rows->columns, *const begin = rows->begin, *const end = rows->end;
  const bool overwrites = rows->overwrites;
  [[maybe_unused]] const core_int readable = first < last ? end[rows->last - 1] - base : 0;
  for (core_int i = first; i < last; ++i) {
    const core_int start = begin[i] - base, count = end[i] - base - start;
    T sum{};
    if constexpr (kPart == kWhole) {
      sum = whole_sum<kConjugate, kStreams>(a + start, columns + start, count, based_x);
    } else {
      if (kPart != kDiagonalUnit && (!kIsUpper || i < with_diagonal))
        sum = part_sum<kPart, kConjugate, kStreams>(i + base, a + start, columns + start, count,
                                                    readable - start, based_x);
      if (is_unit(kPart) && i < with_diagonal) sum = plus(sum, x[i]);
    }
    y[i] = overwrites ? times(alpha, sum) : multiple(alpha, sum, y[i]);
  }
}
template <csr_part kPart, bool kConjugate, class T>
void gather(const csr_slice* rows, const T* a, const T* alpha, const T* x, T* y) {
  const auto take_rows =
      rows->streams ? gather_rows<kPart, kConjugate, true, T> : gather_rows<kPart, kConjugate, false, T>;
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

template <csr_part kPart, bool kConjugate, bool kStreams, class T>
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
      if constexpr (kStreams) ask_ahead(a + p, columns + p, last - p);
      if ((kPart == kWhole || !kStreams) && last - p >= kLongRow) {
        for (; p + 4 <= last; p += 4) {
          if constexpr (kStreams) {
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
  const auto take_rows =
      rows->streams ? scatter_rows<kPart, kConjugate, true, T> : scatter_rows<kPart, kConjugate, false, T>;
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
