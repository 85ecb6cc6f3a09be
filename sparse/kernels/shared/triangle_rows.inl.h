// SPDX-License-Identifier: BSD-3-Clause
// Products of a real triangle, row by row. No branch foresees where the diagonal cuts a row: of long sorted
// rows what takes part is counted, from the columns alone and a row ahead, and summed without a look at them.
// Rows of less than kLongRow entries are summed in order, as runs of them are. Part of csr_vector.inl.h.

#include "sparse/kernels/shared/columns_below.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// A product whose rows and columns count from the matrix's base.
struct based_product {
  const int *columns, *begin, *end;
  const double *a, *x;
  double* y;
  double alpha;
  core_int ones_end;  ///< rows from here on have no one on a unit diagonal
};

template <csr_part kPart, bool kOverwrites>
struct triangle {
  static constexpr bool kIsLower = kPart == kLower || kPart == kLowerUnit;

  /// In sorted rows the columns below this one come first, and take part or, of an upper triangle, do not.
  static int cut(core_int row) { return static_cast<int>(row) + (kPart == kLower || kPart == kUpperUnit); }

  [[gnu::always_inline]] static void finish(const based_product& m, core_int row, double sum) {
    if (is_unit(kPart) && row < m.ones_end) sum = plus(sum, m.x[row]);
    m.y[row] = kOverwrites ? times(m.alpha, sum) : multiple(m.alpha, sum, m.y[row]);
  }

  /// Entries in any order of columns.
  [[gnu::always_inline]] static double part_sum(core_int row, const double* a, const int* columns,
                                                core_int count, const double* x) {
    double sum = 0;
#pragma GCC unroll 16
    for (core_int p = 0; p < count; ++p)
      if (takes_part<kPart>(row, columns[p])) sum = multiple(a[p], x[columns[p]], sum);
    return sum;
  }

  /// The same of a short row: its length is better foreseen than where a loop ends. Arrays of a matrix
  /// without entries may be null.
  template <int kAtLeast>
  [[gnu::always_inline]] static double sum_of_some(const based_product& m, core_int row, core_int start,
                                                   core_int count) {
    if constexpr (kAtLeast + 1 < kLongRow) {
      if (count > kAtLeast) return sum_of_some<kAtLeast + 1>(m, row, start, count);
    }
    if constexpr (kAtLeast == 0) return 0;
    return part_sum(row, m.a + start, m.columns + start, kAtLeast, m.x);
  }
  [[gnu::always_inline]] static double short_sum(const based_product& m, core_int row, core_int start,
                                                 core_int count) {
    if (count > 6) return sum_of_some<7>(m, row, start, count);
    if (count > 4) return sum_of_some<5>(m, row, start, count);
    return count > 2 ? sum_of_some<3>(m, row, start, count) : sum_of_some<0>(m, row, start, count);
  }

  /// All ones in the first of four lanes or in the last ones: all but so many others, three at most.
  template <bool kFirst>
  [[gnu::always_inline]] static __m256d lanes_but(core_int others) {
    alignas(64) static constexpr int64_t kLanes[] = {-1, -1, -1, -1, 0, 0, 0, -1, -1, -1, -1};
    return _mm256_loadu_pd(reinterpret_cast<const double*>(kFirst ? kLanes + others : kLanes + 7 - others));
  }
  /// Products of entries that may take no part are masked, not their factors: zero times infinity is no zero.
  [[gnu::always_inline]] static __m256d four_products(const double* a, const int* columns, const double* x) {
    return _mm256_mul_pd(_mm256_loadu_pd(a), elements_of(x, columns));
  }

  /// Four entries and more in any order of columns. In place of what lies outside the diagonal's element of x
  /// is read, which rows that have both inside and outside have.
  [[gnu::noinline]] static double masked_sum(core_int row, const double* a, const int* columns,
                                             core_int count, const double* x) {
    const __m128i cuts = _mm_set1_epi32(cut(row)), diagonal = _mm_set1_epi32(static_cast<int>(row));
    const auto part_of_four = [=](core_int p) {
      const __m128i j = _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(columns + p));
      const __m256d below = _mm256_castsi256_pd(_mm256_cvtepi32_epi64(_mm_cmpgt_epi32(cuts, j)));
      const __m128i read = kIsLower ? _mm_min_epi32(j, diagonal) : _mm_max_epi32(j, diagonal);
      const __m256d products = _mm256_mul_pd(
          _mm256_loadu_pd(a + p), elements_of(x, _mm_cvtsi128_si64(read), _mm_extract_epi64(read, 1)));
      return kIsLower ? _mm256_and_pd(below, products) : _mm256_andnot_pd(below, products);
    };
    __m256d sums = _mm256_setzero_pd();
    core_int p = 0;
    for (; p + 4 <= count; p += 4) sums = _mm256_add_pd(sums, part_of_four(p));
    if (p < count)
      sums = _mm256_add_pd(sums, _mm256_and_pd(lanes_but<false>(p + 4 - count), part_of_four(count - 4)));
    return total(sums);
  }

  /// A sorted row of four entries and more, of which n take part, the first or the last ones: one four, of
  /// which one to four lanes count, and then whole ones.
  [[gnu::always_inline]] static double counted_sum(const double* a, const int* columns, core_int count,
                                                   core_int n, const double* x) {
    if (n == 0) return 0;
    core_int q = (4 - n) & -4;  // minus what comes in whole fours
    const core_int four = kIsLower ? 0 : count - 4;
    __m256d sums =
        _mm256_and_pd(lanes_but<kIsLower>((4 - n) & 3), four_products(a + four, columns + four, x));
    if (q != 0) {
      const core_int end = kIsLower ? n : count - n - q;
      a += end;
      columns += end;
      const int* further = columns + 2;
      asm("" : "+r"(a), "+r"(columns), "+r"(further));  // each is addressed with q, nothing else is added
      do {
        sums = _mm256_fmadd_pd(_mm256_loadu_pd(a + q),
                               elements_of(x, two_columns(columns + q), two_columns(further + q)), sums);
        q += 4;
      } while (q != 0);
    }
    return total(sums);
  }

  /// Rows from one on as long as they have less than kLongRow entries. Returns the next one.
  template <asking kAsks>
  [[gnu::noinline]] static core_int short_rows(const based_product* product, core_int i, core_int last) {
    const based_product m = *product;
    for (; i < last; ++i) {
      const core_int start = m.begin[i], count = m.end[i] - start;
      if (count >= kLongRow) break;
      if constexpr (kAsks != kAsksNothing) ask_ahead<kAsks>(m.a + start, m.columns + start, count);
      finish(m, i, short_sum(m, i, start, count));
    }
    return i;
  }

  /// In place of a count of columns: not a row for counted_rows.
  static constexpr core_int kOtherLength = -2;

  /// Rows from one on as long as they have kLongRow to kMostCounted entries. Returns the next one.
  template <asking kAsks>
  [[gnu::noinline]] static core_int counted_rows(const based_product* product, core_int i, core_int last) {
    const based_product m = *product;
    struct row {
      core_int start, count, below;  ///< below: of columns, kUnsorted or kOtherLength
    };
    const auto look = [&m](core_int at, __m256i cut_there) -> row {
      const core_int start = m.begin[at], count = m.end[at] - start;
      if (count < kLongRow || count > kMostCounted) return {start, count, kOtherLength};
      if constexpr (kAsks != kAsksNothing) ask_in_steps(m.a + start, m.columns + start, count);
      return {start, count, columns_below(cut_there, m.columns + start, count)};
    };
    __m256i cuts = _mm256_set1_epi32(cut(i));
    row now = look(i, cuts);
    while (now.below != kOtherLength) {
      cuts = _mm256_sub_epi32(cuts, _mm256_set1_epi32(-1));
      row next{0, 0, kOtherLength};
      if (i + 1 < last) next = look(i + 1, cuts);
      const double* const a = m.a + now.start;
      const int* const columns = m.columns + now.start;
      if (now.below == kUnsorted) [[unlikely]]
        finish(m, i, masked_sum(i, a, columns, now.count, m.x));
      else
        finish(m, i, counted_sum(a, columns, now.count, kIsLower ? now.below : now.count - now.below, m.x));
      now = next;
      ++i;
    }
    return i;
  }

  /// A row of more than kMostCounted entries.
  [[gnu::noinline]] static void long_row(const based_product* m, core_int i) {
    const core_int start = m->begin[i], count = m->end[i] - start;
    const double* const a = m->a + start;
    const int* const columns = m->columns + start;
    const core_int below = many_columns_below(_mm256_set1_epi32(cut(i)), columns, count);
    const core_int n = kIsLower ? below : count - below;
    finish(*m, i,
           below >= 0 ? counted_sum(a, columns, count, n, m->x) : masked_sum(i, a, columns, count, m->x));
  }
};

template <csr_part kPart, asking kAsks, bool kOverwrites>
void triangle_rows(const csr_slice* rows, core_int first, core_int last, const double* a, double alpha,
                   const double* x, double* y) {
  using part = triangle<kPart, kOverwrites>;
  const core_int base = rows->base;
  const based_product m{rebased(rows->columns, base),
                        rebased(rows->begin, base),
                        rebased(rows->end, base),
                        rebased(a, base),
                        rebased(x, base),
                        rebased(y, base),
                        alpha,
                        rows->column_count + base};
  last += base;
  if (last > INT32_MAX) {  // no cut behind this row can be told
    --last;
    const core_int start = m.begin[last];
    part::finish(m, last, part::part_sum(last, m.a + start, m.columns + start, m.end[last] - start, m.x));
  }
  for (core_int i = first + base; i < last;) {
    const core_int count = m.end[i] - m.begin[i];
    if (count > kMostCounted)
      part::long_row(&m, i++);
    else if (count >= kLongRow)
      i = part::template counted_rows<kAsks>(&m, i, last);
    else
      i = part::template short_rows<kAsks>(&m, i, last);
  }
}

}  // namespace
}  // namespace qel::QEL_LEVEL
