// SPDX-License-Identifier: BSD-3-Clause
// Looks for runs of rows, and the walk over rows that takes them. Part of row_runs.inl.h.

namespace qel::QEL_LEVEL {
namespace {

constexpr core_int kNoLook = INTPTR_MAX;

/// Where looking for runs stands in a walk over rows.
struct run_search {
  core_int pause = 1;      ///< rows to take before the next look
  int failures = 0;        ///< looks since the last run
  core_int gap = 0;        ///< rows between the last two runs: in grids the next are as many
  core_int run_end = -1;   ///< the row behind the last run, in the walk's order; -1: it was cut
  bool in_blocks = false;  ///< what was found are the first rows, their kernel looks on
  int length = 0;          ///< the pattern of the last run, whose shape is kept
  alignas(32) int offsets[kLargestRunRow + 1];
  run_shape shape;
  double* y_at[kLargestRunRow];  ///< the result, moved by the offsets of the shape's targets
};

/// A product with runs.
struct run_product {
  const csr_slice* m;
  const double* a;
  double alpha, scatter_alpha;  ///< the second one for what is added outside of the row
  const double* x;
  double* y;
  bool adds_x;  ///< to the sums, as ones on the diagonal
};

/// A run that is served: its lowest row, from 0, and how many; or none.
struct row_run {
  core_int row = 0, rows = 0;
};

[[gnu::always_inline]] inline __m256i eight(const int* p) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(p));
}

/// Rows from `row` on (kStep = 1), or back from it (-1), that have as many entries and stand close together.
template <int kStep>
[[gnu::always_inline]] inline core_int equally_long(const csr_slice* m, core_int row, int length,
                                                    core_int limit) {
  const bool one_array = m->end == m->begin + 1;  // then a row's end is the begin of the next
  const __m256i steps = _mm256_mullo_epi32(_mm256_set1_epi32(length),
                                           kStep > 0 ? _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7)
                                                     : _mm256_setr_epi32(-7, -6, -5, -4, -3, -2, -1, 0));
  const __m256i further = _mm256_set1_epi32(kStep * 8 * length);
  __m256i begins = _mm256_add_epi32(_mm256_set1_epi32(m->begin[row]), steps);
  __m256i ends = _mm256_add_epi32(_mm256_set1_epi32(m->end[row]), steps);
  for (core_int rows = 0; rows + 8 <= limit; rows += 8) {
    const core_int lowest = kStep > 0 ? row + rows : row - rows - 7;
    __m256i same = kStep > 0 ? _mm256_cmpeq_epi32(ends, eight(m->end + lowest))
                             : _mm256_cmpeq_epi32(begins, eight(m->begin + lowest));
    if (!one_array) [[unlikely]]
      same = _mm256_and_si256(same, kStep > 0 ? _mm256_cmpeq_epi32(begins, eight(m->begin + lowest))
                                              : _mm256_cmpeq_epi32(ends, eight(m->end + lowest)));
    const unsigned others = static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(same))) ^ 255;
    if (others != 0) return rows + (kStep > 0 ? __builtin_ctz(others) : __builtin_clz(others << 24));
    begins = _mm256_add_epi32(begins, further);
    ends = _mm256_add_epi32(ends, further);
  }
  return limit / 8 * 8;
}

/// How many of count places, from the first (kStep = 1) or from the last (-1), have q[k] = p[k] + 1.
template <int kStep>
[[gnu::always_inline]] inline core_int one_more(const int* p, const int* q, core_int count) {
  const __m256i one = _mm256_set1_epi32(1);
  const auto differences = [=](core_int k, core_int width) {
    const core_int at = kStep > 0 ? k : count - k - width;
    __m256i wrong = _mm256_setzero_si256();
    for (core_int part = 0; part < width; part += 8)
      wrong = _mm256_or_si256(
          wrong, _mm256_xor_si256(_mm256_sub_epi32(eight(q + at + part), eight(p + at + part)), one));
    return _mm256_testz_si256(wrong, wrong) == 0;
  };
  core_int k = 0;
  while (k + 32 <= count && !differences(k, 32)) k += 32;
  while (k + 8 <= count && !differences(k, 8)) k += 8;
  if (k + 8 > count && count >= 8 && !differences(count - 8, 8)) return count;
  for (; k < count; ++k) {
    const core_int at = kStep > 0 ? k : count - k - 1;
    if (q[at] - p[at] != 1) break;
  }
  return k;
}

/// Whether the kernels take a run whose first row has these columns. The shape of the last pattern is kept:
/// in grids the next run has the same one. What is compared behind a short row are the next rows of the run.
template <run_use kUse, csr_part kPart>
[[gnu::always_inline]] inline bool is_served(run_search& search, double* y, const int* columns, int length,
                                             int diagonal) {
  const __m256i subtracted = _mm256_set1_epi32(diagonal);
  bool same = length == search.length;
  for (int k = 0; k < length; k += 8) {
    __m256i* const kept = reinterpret_cast<__m256i*>(search.offsets + k);
    const __m256i offsets = _mm256_sub_epi32(eight(columns + k), subtracted);
    const __m256i changed = _mm256_xor_si256(offsets, _mm256_load_si256(kept));
    same &= _mm256_testz_si256(changed, changed) != 0;
    _mm256_store_si256(kept, offsets);
  }
  if (!same) {
    search.length = length;
    search.shape = shape_of_run(kUse, kPart, search.offsets, length);
    for (int t = 0; t < search.shape.targets; ++t) search.y_at[t] = y + search.shape.at[t].offset;
  }
  return search.shape.served;
}

/// Whether the run that begins at a row is one for kernels of blocks, which look on by themselves: the first
/// rows tell. Row starts and ends must stand in one array.
template <run_use kUse, csr_part kPart, int kStep>
[[gnu::always_inline]] inline bool begins_blocks(const run_product& product, core_int row, int length,
                                                 run_search& search) {
  const csr_slice* const m = product.m;
  const core_int lowest = kStep > 0 ? row : row - (kFirstLook - 1);
  if (m->end != m->begin + 1 || equally_long<kStep>(m, row, length, kFirstLook) < kFirstLook) return false;
  const int* const columns = m->columns + (m->begin[lowest] - m->base);
  const core_int others = (kFirstLook - 1) * length;
  return one_more<kStep>(columns, columns + length, others) == others &&
         is_served<kUse, kPart>(search, product.y, columns, length, static_cast<int>(lowest) + m->base) &&
         search.shape.in_blocks;
}

/// Looks for a run that begins at a row, of at most limit rows.
template <run_use kUse, csr_part kPart, int kStep>
row_run find_run(const run_product& product, core_int row, core_int limit, run_search& search) {
  const csr_slice* const m = product.m;
  const run_limits limits = limits_of_runs(kUse, kPart, m->streams);
  if (limits.least == 0 || limit < limits.least) {
    search.pause = kNoLook;
    return {};
  }
  const int begin = m->begin[row], length = m->end[row] - begin;
  if (may_come_in_blocks(kUse, length, m->streams) &&
      begins_blocks<kUse, kPart, kStep>(product, row, length, search)) {
    if (search.run_end >= 0) search.gap = gap_to_next(kStep * (row - search.run_end));
    search.pause = search.gap;
    search.failures = 0;
    search.in_blocks = true;
    return {kStep > 0 ? row : row - (kFirstLook - 1), kFirstLook};
  }
  core_int rows = 0;
  if (limits.largest > 0 && length > 0 && length <= kLargestRunRow &&
      m->begin[row + kStep * (limits.least - 1)] - begin ==
          kStep * static_cast<int>(limits.least - 1) * length) {
    rows = equally_long<kStep>(m, row, length, limit < limits.largest ? limit : limits.largest);
    if (rows >= limits.least) {
      const int* columns = m->columns + (begin - m->base);
      const core_int others = (rows - 1) * length;
      const int* const lowest = kStep > 0 ? columns : columns - others;
      const core_int alike = one_more<kStep>(lowest, lowest + length, others);
      if (alike != others) rows = 1 + static_cast<unsigned>(alike) / static_cast<unsigned>(length);
      const core_int first = kStep > 0 ? row : row - rows + 1;
      if (kStep < 0) columns -= (rows - 1) * length;
      if (rows >= limits.least &&
          is_served<kUse, kPart>(search, product.y, columns, length, static_cast<int>(first) + m->base)) {
        if (search.run_end >= 0) search.gap = gap_to_next(kStep * (row - search.run_end));
        const bool cut = rows == limits.largest;
        search.run_end = cut ? -1 : row + kStep * rows;
        search.pause = cut ? 0 : search.gap;
        search.failures = 0;
        search.in_blocks = false;
        return {first, rows};
      }
    } else {
      rows = 0;
    }
  }
  search.pause = pause_after(++search.failures);
  if (rows > search.pause) search.pause = rows;
  return {};
}

/// Whether a run may begin at a row with as many rows behind it as the first look takes: it ends where they
/// would end if they were equally long.
template <int kWay>
[[gnu::always_inline]] inline bool may_begin_run(const csr_slice* m, core_int row) {
  constexpr core_int kRows = kWay * (kFirstLook - 1);
  const int begin = m->begin[row], length = m->end[row] - begin;
  return m->begin[row + kRows] - begin == kRows * length;
}

/// A walk over count rows, of which the first `limit` may be in runs: take_run(at, search) takes the run that
/// begins at a row, if there is one, and returns its rows; the others go to take(at, how many). may_begin(at)
/// spares looks that cannot find anything, and calls for few rows.
template <class Take, class TakeRun, class MayBegin>
[[gnu::always_inline]] inline void walk_rows(core_int count, core_int limit, Take take, TakeRun take_run,
                                             MayBegin may_begin) {
  run_search search;
  core_int at = 0, next = search.pause;  // rows taken, and where to look
  while (next + kFirstLook <= limit) {
    if (!may_begin(next)) {
      next += pause_after(++search.failures);
      continue;
    }
    if (next > at) take(at, next - at);
    at = next + take_run(next, search);
    next = limit - at > search.pause ? at + search.pause : limit;
  }
  if (at < count) take(at, count - at);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
