// SPDX-License-Identifier: BSD-3-Clause
// Products of a triangle that stands for its mirrored one, too: a row's entries go into its own sum and,
// times the row's element of x, to the rows of their columns. Part of csr_vector.inl.h.

namespace qel::QEL_LEVEL {
namespace {

template <class T>
[[gnu::noinline, gnu::cold]] void zero_block(const far_rows<T>& far, core_int block) {
  far.touched[block] = 1;
  T* const start = far.far + (block << kFarBlockBits);
  for (int k = 0; k < 1 << kFarBlockBits; ++k) start[k] = T{};
}
/// The accumulator's element for row j, whose block is zeroed at its first use.
template <class T>
[[gnu::always_inline]] inline T& far_row(const far_rows<T>& far, core_int j) {
  const core_int block = j >> kFarBlockBits;
  if (!far.touched[block]) [[unlikely]]
    zero_block(far, block);
  return far.far[j];
}

template <csr_mirror kMirror, class T>
[[gnu::always_inline]] inline T mirror(T value) {
  if constexpr (kMirror == kOpposite) return negative(value);
  if constexpr (kMirror == kConjugated) return stored<true>(value);
  return value;
}

#ifdef QEL_CSR_FUSED
constexpr bool kTwoSums = true;
#else
constexpr bool kTwoSums = false;  // these levels add in order
#endif

#ifdef __AVX2__
constexpr core_int kMostFarRows = core_int{1} << kFarBlockBits;

/// The result that elements first .. last - 1 of a run's first rows belong to: own rows, or the accumulator;
/// null if both. limit, of rows, sinks to what the same result serves, and the accumulator gets the blocks
/// that so many rows need.
template <int kWay>
[[gnu::always_inline]] inline double* result_for(const csr_slice* m, double* y, const far_rows<double>* far,
                                                 core_int first, core_int last, core_int rows,
                                                 core_int& limit) {
  // Rows go away from the triangle: what they add to comes nearer to the slice and stays inside of it.
  if (first >= m->first && last <= m->last) return y;
  if (first < m->last && last > m->first) return nullptr;
  const core_int distance = kWay > 0 ? m->first - last : first - m->last;
  if (limit > rows + distance) limit = rows + distance;
  if (limit > kMostFarRows) limit = kMostFarRows;
  (kWay > 0 ? last : first) += kWay * (limit - rows);
  for (core_int block = first >> kFarBlockBits; block <= (last - 1) >> kFarBlockBits; ++block)
    if (!far->touched[block]) zero_block(*far, block);
  return far->far;
}

/// Takes the run that begins at row i, in the triangle's order of rows, if there is one. Returns its rows.
template <csr_mirror kMirror, csr_part kPart>
[[gnu::noinline]] core_int mirror_runs(const run_product& product, const far_rows<double>* far, core_int i,
                                       core_int left, run_search& search) {
  constexpr bool kIsLower = kPart == kLower || kPart == kLowerUnit;
  constexpr int kWay = kIsLower ? 1 : -1;
  constexpr csr_part kTaken = kMirror != kOpposite ? kPart : kIsLower ? kLowerUnit : kUpperUnit;
  const row_run found = find_run<run_use::kMirror, kTaken, kWay>(product, i, left, search);
  if (found.rows == 0) return 0;
  core_int limit = search.in_blocks ? left : found.rows;
  const auto place = [&](const run_target& target) {
    const core_int first = found.row + target.offset, last = first + found.rows;
    return result_for<kWay>(product.m, product.y, far, target.after >= 0 ? first - 1 : first,
                            target.before >= 0 ? last + 1 : last, found.rows, limit);
  };
  if (far != nullptr) {
    bool placed = place(search.shape.own) != nullptr;
    for (int t = 0; t < search.shape.targets && placed; ++t) {
      double* const result = place(search.shape.at[t]);
      placed = result != nullptr;
      if (placed) search.y_at[t] = result + search.shape.at[t].offset;
    }
    if (!placed) {
      search.pause = found.rows;
      return 0;
    }
  }
  if (search.in_blocks) {
    const auto take_blocks =
        (product.m->streams ? kMirrorBlocks<kWay, true> : kMirrorBlocks<kWay, false>)[search.length - 2];
    const core_int rows = take_blocks(product, search, i, limit);
    search.run_end = i + kWay * rows;
    return rows;
  }
  kScatterRun<kWay, true>[kernel_of(search.shape)](product, search, found);
  return found.rows;
}
#endif

/// Of mirrored rows, which are half as long as others; where lengths differ, leaving two loops costs more
/// than a sum.
constexpr core_int kLongMirroredRow = 32;

/// Rows of a mirrored triangle. far is what rows outside of the slice add to.
template <csr_mirror kMirror, csr_part kPart, bool kConjugate, bool kFar, class T>
struct mirrored_rows {
  static constexpr bool kIsLower = kPart == kLower || kPart == kLowerUnit;
  static constexpr bool kHasDiagonal = kMirror != kOpposite && !is_unit(kPart);
  static constexpr bool kAddsX = kMirror != kOpposite && is_unit(kPart);

  const int* columns;
  const T *a, *x;
  T* y;
  T alpha;
  const far_rows<T>* far;
  core_int base, slice_first, slice_last;

  [[gnu::always_inline]] static bool inside(core_int row, core_int column) {
    return kIsLower ? column < row : column > row;
  }
  [[gnu::always_inline]] T add_inside(T value, core_int j, T factor, T sum) const {
    T* target = y + j;
    if constexpr (kFar) {
      if (kIsLower ? j < slice_first : j >= slice_last) target = &far_row(*far, j - base);
    }
    value = stored<kConjugate>(value);
    sum = multiple(value, x[j], sum);
    *target = multiple(mirror<kMirror>(value), factor, *target);
    return sum;
  }
  [[gnu::always_inline]] T add_diagonal(T value, core_int row, T sum) const {
    return kHasDiagonal ? multiple(stored<kConjugate>(value), x[row], sum) : sum;
  }
  /// Entries p to last, in any order of columns.
  [[gnu::always_inline]] T some_of_row(core_int row, core_int p, core_int last, T factor, T sum) const {
    for (; p < last; ++p) {
      const core_int j = columns[p];
      if (inside(row, j))
        sum = add_inside(a[p], j, factor, sum);
      else if (j == row)
        sum = add_diagonal(a[p], row, sum);
    }
    return sum;
  }
  [[gnu::noinline]] T rest_of_row(core_int row, core_int p, core_int last, T sum) const {
    return some_of_row(row, p, last, times(alpha, x[row]), sum);
  }
  /// All of a row, four entries at a time as long as all four lie inside the triangle.
  [[gnu::noinline]] T long_row(core_int row, core_int p, core_int last) const {
    const T factor = times(alpha, x[row]);
    T sum{}, other = negative(T{});  // which changes no sum
    T& odd = kTwoSums ? other : sum;
    for (; p + 4 <= last; p += 4) {
      const core_int j0 = columns[p], j1 = columns[p + 1], j2 = columns[p + 2], j3 = columns[p + 3];
      if (!(inside(row, j0) && inside(row, j1) && inside(row, j2) && inside(row, j3))) break;
      sum = add_inside(a[p], j0, factor, sum);
      odd = add_inside(a[p + 1], j1, factor, odd);
      sum = add_inside(a[p + 2], j2, factor, sum);
      odd = add_inside(a[p + 3], j3, factor, odd);
    }
    if (kTwoSums) sum = plus(sum, other);
    return some_of_row(row, p, last, factor, sum);
  }
};

/// How many of count rows from row i on come before a long one.
template <int kWay>
[[gnu::always_inline]] inline core_int short_mirrored_rows(const int* begin, const int* end, core_int i,
                                                           core_int count) {
  if (!kTwoSums) return count;  // all are summed in one way
  core_int rows = 0;
#ifdef __AVX2__
  for (; rows + 8 <= count; rows += 8) {
    const core_int lowest = kWay > 0 ? i + rows : i - rows - 7;
    const __m256i lengths = _mm256_sub_epi32(eight(end + lowest), eight(begin + lowest));
    const __m256i longer = _mm256_cmpgt_epi32(lengths, _mm256_set1_epi32(kLongMirroredRow - 1));
    const unsigned found = static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(longer)));
    if (found != 0) return rows + (kWay > 0 ? __builtin_ctz(found) : __builtin_clz(found << 24));
  }
#endif
  while (rows < count && end[i + kWay * rows] - begin[i + kWay * rows] < kLongMirroredRow) ++rows;
  return rows;
}

/// Each row is met before any other one adds to it: rows go away from the triangle. Where lengths differ, the
/// end of a row is foreseen wrongly, and what must be done to find that out makes most of its time: entries
/// are counted, as in sorted triangles the diagonal is the last entry or the first one, but which column is
/// the diagonal's is known later; and nothing else is decided row by row. Whole rows and unsorted ones end
/// that for some time.
template <csr_mirror kMirror, csr_part kPart, bool kConjugate, bool kFar, bool kStreams, bool kOverwrites,
          class T>
[[gnu::noinline]] void symmetric_rows(const csr_slice* rows, core_int first, core_int left, const T* a,
                                      const T* alpha, const T* x, T* y, const far_rows<T>* far) {
  using triangle = mirrored_rows<kMirror, kPart, kConjugate, kFar, T>;
  constexpr bool kIsLower = triangle::kIsLower, kEndsInDiagonal = kIsLower && kMirror != kOpposite;
  constexpr int kWay = kIsLower ? 1 : -1;
  constexpr core_int kMostAtOnce = 512;
  const core_int base = rows->base;
  const int *const begin = rebased(rows->begin, base), *const end = rebased(rows->end, base);
  const bool overwrites = kOverwrites || rows->overwrites;
  const triangle m{
      rebased(rows->columns, base), rebased(a, base), rebased(x, base), rebased(y, base), *alpha, far, base,
      rows->first + base,           rows->last + base};
  const auto ask = [&](core_int row) {
    if constexpr (kStreams)
      ask_for_next_rows<kWay>(m.a + begin[row], m.columns + begin[row], end[row] - begin[row]);
  };
  const auto finish = [&](core_int row, T sum) {
    if constexpr (triangle::kAddsX) sum = plus(sum, m.x[row]);
    m.y[row] = overwrites ? times(m.alpha, sum) : multiple(m.alpha, sum, m.y[row]);
  };
  const auto take_sorted = [&](core_int i, core_int stop) {
    for (; i != stop; i += kWay) {
      ask(i);
      const T factor = times(m.alpha, m.x[i]);
      T sum{};
      core_int p = begin[i];
      const core_int last = kEndsInDiagonal ? end[i] - 1 : end[i];
      if (!kIsLower && p < last && m.columns[p] == i) [[likely]] {
        sum = m.add_diagonal(m.a[p], i, sum);
        ++p;
      }
      for (; p < last; ++p) {
        const core_int j = m.columns[p];
        if (!m.inside(i, j)) [[unlikely]]
          break;
        sum = m.add_inside(m.a[p], j, factor, sum);
      }
      asm("" : "+r"(p), "+r"(i));  // the compiler would make addresses of both in every step of the loop
      if (p != last || (kEndsInDiagonal && m.columns[p] != i)) [[unlikely]] {
        finish(i, triangle(m).rest_of_row(i, p, end[i], sum));
        return i + kWay;
      }
      if (kEndsInDiagonal) sum = m.add_diagonal(m.a[p], i, sum);
      finish(i, sum);
    }
    return i;
  };
  const auto take_any = [&](core_int i, core_int stop) {
    for (; i != stop; i += kWay) {
      ask(i);
      finish(i, m.some_of_row(i, begin[i], end[i], times(m.alpha, m.x[i]), T{}));
    }
  };
  core_int i = first + base;
  while (left > 0) {
    const core_int most = left < kMostAtOnce ? left : kMostAtOnce;
    const core_int count = short_mirrored_rows<kWay>(begin, end, i, most), stop = i + kWay * count;
    take_any(take_sorted(i, stop), stop);
    i = stop;
    left -= count;
    if (count == most) continue;
    ask(i);
    finish(i, triangle(m).long_row(i, begin[i], end[i]));
    i += kWay;
    --left;
  }
}

/// Real products that overwrite, the most common ones, have kernels of their own.
template <csr_mirror kMirror, csr_part kPart, bool kConjugate, bool kFar, bool kStreams, class T>
[[gnu::always_inline]] inline auto symmetric_rows_for(const csr_slice* rows) {
  if constexpr (sizeof(T) == sizeof(double)) {
    if (rows->overwrites) return symmetric_rows<kMirror, kPart, kConjugate, kFar, kStreams, true, T>;
  }
  return symmetric_rows<kMirror, kPart, kConjugate, kFar, kStreams, false, T>;
}
template <csr_mirror kMirror, csr_part kPart, bool kConjugate, class T>
void symmetric(const csr_slice* rows, const T* a, const T* alpha, const T* x, T* y, const far_rows<T>* far) {
  constexpr bool kIsLower = kPart == kLower || kPart == kLowerUnit;
  [[maybe_unused]] constexpr int kWay = kIsLower ? 1 : -1;
  const auto take_rows =
      rows->streams    ? (far != nullptr ? symmetric_rows_for<kMirror, kPart, kConjugate, true, true, T>(rows)
                                         : symmetric_rows_for<kMirror, kPart, kConjugate, false, true, T>(rows))
      : far != nullptr ? symmetric_rows_for<kMirror, kPart, kConjugate, true, false, T>(rows)
                       : symmetric_rows_for<kMirror, kPart, kConjugate, false, false, T>(rows);
  const core_int count = rows->last - rows->first;
  const auto row_at = [=](core_int at) { return kIsLower ? rows->first + at : rows->last - 1 - at; };
#ifdef __AVX2__
  if constexpr (kHasVectors<T>) {
    const run_product product = {rows,
                                 a,
                                 *alpha,
                                 kMirror == kOpposite ? -*alpha : *alpha,
                                 x,
                                 y,
                                 kMirror != kOpposite && is_unit(kPart)};
    walk_rows(
        count, count, [&](core_int at, core_int n) { take_rows(rows, row_at(at), n, a, alpha, x, y, far); },
        [&](core_int at, run_search& search) {
          return mirror_runs<kMirror, kPart>(product, far, row_at(at), count - at, search);
        },
        [&](core_int at) { return may_begin_run<kWay>(rows, row_at(at)); });
    return;
  }
#endif
  take_rows(rows, row_at(0), count, a, alpha, x, y, far);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
