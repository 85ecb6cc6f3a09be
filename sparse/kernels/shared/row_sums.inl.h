// SPDX-License-Identifier: BSD-3-Clause
// Sums over the entries of one CSR row. Rows of kLongRow entries and more are summed in four accumulators,
// entry p of the row in number p mod 4, added as (0 + 2) + (1 + 3), then the tail in order; shorter ones in
// order. Part of csr_vector.inl.h.

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
  sum = plus(plus(sum, sum2), plus(sum1, sum3));
  for (; p < count; ++p) sum = multiple(stored<kConjugate>(a[p]), x[columns[p]], sum);
  return sum;
}

#ifdef __AVX2__
/// (0 + 2) + (1 + 3), as row_sum adds.
[[gnu::always_inline]] inline double total(__m256d sums) {
  const __m128d pairs = _mm_add_pd(_mm256_castpd256_pd128(sums), _mm256_extractf128_pd(sums, 1));
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
[[gnu::always_inline]] inline __m256d elements_of(const double* x, const int* columns) {
  return elements_of(x, two_columns(columns), two_columns(columns + 2));
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
    sums = _mm256_fmadd_pd(_mm256_loadu_pd(a), elements_of(x, columns), sums);
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
#endif

template <bool kConjugate, asking kAsks, class T>
[[gnu::always_inline]] inline T whole_sum(const T* a, const int* columns, core_int count, const T* x) {
  if constexpr (kHasVectors<T>) {
    if (count >= kLongRow) return long_sum<kAsks != kAsksNothing>(a, columns, count, x);
  }
  ask_ahead<kAsks>(a, columns, count);
  return row_sum<kConjugate>(a, columns, count, x);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
