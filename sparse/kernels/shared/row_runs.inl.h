// SPDX-License-Identifier: BSD-3-Clause
// Runs of rows of real matrices, four rows at a time: entry k of the four makes a vector, x at its columns
// and what it adds to stand in order. Orders of summation are those of single rows, and every element of a
// result gets its rows in the same order, so that runs change no bit. Part of csr_vector.inl.h.

#include "sparse/kernels/shared/run_search.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// Entries k and k + 1 of four rows.
struct entry_pair {
  __m256d first, second;
};
[[gnu::always_inline]] inline entry_pair two_entries(const double* a, core_int length) {
  const __m256d even =
      _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(a)), _mm_loadu_pd(a + 2 * length), 1);
  const __m256d odd =
      _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(a + length)), _mm_loadu_pd(a + 3 * length), 1);
  return {_mm256_unpacklo_pd(even, odd), _mm256_unpackhi_pd(even, odd)};
}
[[gnu::always_inline]] inline __m256d one_entry(const double* a, core_int length) {
  return _mm256_setr_pd(a[0], a[length], a[2 * length], a[3 * length]);
}

/// All entries of four rows of kLength.
template <int kLength>
struct row_block {
  __m256d entry[kLength];
};
template <int kLength>
[[gnu::always_inline]] inline row_block<kLength> block_at(const double* a) {
  row_block<kLength> block;
  if constexpr (kLength == 4) {
    const __m256d row0 = _mm256_loadu_pd(a), row1 = _mm256_loadu_pd(a + 4), row2 = _mm256_loadu_pd(a + 8),
                  row3 = _mm256_loadu_pd(a + 12);
    const __m256d even01 = _mm256_unpacklo_pd(row0, row1), odd01 = _mm256_unpackhi_pd(row0, row1),
                  even23 = _mm256_unpacklo_pd(row2, row3), odd23 = _mm256_unpackhi_pd(row2, row3);
    block.entry[0] = _mm256_permute2f128_pd(even01, even23, 0x20);
    block.entry[1] = _mm256_permute2f128_pd(odd01, odd23, 0x20);
    block.entry[2] = _mm256_permute2f128_pd(even01, even23, 0x31);
    block.entry[3] = _mm256_permute2f128_pd(odd01, odd23, 0x31);
    return block;
  }
#pragma GCC unroll 8
  for (int k = 0; k + 2 <= kLength; k += 2) {
    const entry_pair pair = two_entries(a + k, kLength);
    block.entry[k] = pair.first;
    block.entry[k + 1] = pair.second;
  }
  if constexpr (kLength % 2 != 0) block.entry[kLength - 1] = one_entry(a + kLength - 1, kLength);
  return block;
}

/// Whether the four rows behind a block (kWay = 1), or before it (-1), go on as it does: its first column,
/// its rows' ends or, backwards, begins. Row starts and ends stand in one array.
template <int kLength, int kWay>
[[gnu::always_inline]] inline bool goes_on(const int* columns, const int* bounds) {
  constexpr int kBlock = kRunWidth * kLength;
  const auto four = [](const int* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(p)); };
  const auto wrong = [four](const int* p, int step, int want) {
    return _mm_xor_si128(_mm_sub_epi32(four(p + step), four(p)), _mm_set1_epi32(want));
  };
  const __m128i lengths = wrong(bounds, kWay * kRunWidth, kWay * kBlock);
  if (_mm_testz_si128(lengths, lengths) == 0) return false;  // there may be no columns to look at
  static_assert(kBlock >= 8, "vectors of eight, the last one up to the end");
  const __m256i step = _mm256_set1_epi32(kWay * kRunWidth);
  __m256i all = _mm256_setzero_si256();
#pragma GCC unroll 8
  for (int k = 0; k < kBlock; k += 8) {
    const int* const p = columns + (k + 8 <= kBlock ? k : kBlock - 8);
    const __m256i differences = _mm256_sub_epi32(eight(p + kWay * kBlock), eight(p));
    all = _mm256_or_si256(all, _mm256_xor_si256(differences, step));
  }
  return _mm256_testz_si256(all, all) != 0;
}

constexpr core_int kVectorAhead = 128;  ///< elements of x and y
[[gnu::always_inline]] inline void ask_for(const double* p) {
  _mm_prefetch(reinterpret_cast<const char*>(p), _MM_HINT_T0);
}
template <int kHint>  // clang has no type for hints
[[gnu::always_inline]] inline void ask_for_lines(const void* p, intptr_t step, core_int bytes) {
  const auto from = reinterpret_cast<intptr_t>(p) + step;
  for (core_int at = 0; at < bytes; at += 64)
    __builtin_prefetch(reinterpret_cast<const char*>(from + at), 0, kHint);
}
/// What the next blocks of a run will read: far ahead into the second cache, and near from there into the
/// first one, which can wait for too few lines at a time to keep memory busy.
template <int kWay>
[[gnu::always_inline]] inline void ask_ahead_for_block(const double* a, const int* columns, core_int count) {
  constexpr intptr_t kNear = kWay * 2048, kFar = kWay * 16384;
  const core_int bytes = count * core_int{sizeof(double)};
  ask_for_lines<_MM_HINT_T0>(a, kNear, bytes);
  ask_for_lines<_MM_HINT_T0>(columns, kNear / 2, bytes / 2);
  ask_for_lines<_MM_HINT_T1>(a, kFar, bytes);
  ask_for_lines<_MM_HINT_T1>(columns, kFar / 2, bytes / 2);
}

/// The last block of a run begins with rows that the block before has done. Lanes done upwards from place
/// 4 - n, downwards from n on, for n rows.
alignas(64) constexpr int64_t kLanesDone[] = {0, 0, 0, 0, -1, -1, -1, -1, 0, 0, 0, 0};

/// kCount is the count of the entries that take part in short rows, 0 for any.
template <int kCount>
[[gnu::noinline]] void gather_run(const run_product& product, const run_search& search, row_run run) {
  const core_int count = kCount > 0 ? kCount : search.shape.last - search.shape.first;
  const core_int length = search.length, block = kRunWidth * length;
  const core_int start = product.m->begin[run.row] - product.m->base + search.shape.first;
  const double* a = product.a + start;
  const double* x[kCount > 0 ? kCount : kLargestRunRow];
  for (core_int k = 0; k < count; ++k) x[k] = product.x + search.offsets[search.shape.first + k];
  double* const y = product.y;
  const __m256d alpha = _mm256_set1_pd(product.alpha);
  const bool overwrites = product.m->overwrites, adds_x = product.adds_x;
  const core_int in_order_from =
      kCount == 0 && count > kSummedInOrder ? count - count % 4 : 0;  // four sums up to here
  const core_int end = run.row + run.rows;
  __m256d done = _mm256_setzero_pd();
  for (core_int i = run.row;;) {
    __m256d sum = _mm256_setzero_pd();
    core_int k = 0;
    if (kCount == 0 && in_order_from > 0) {
      __m256d sum1 = sum, sum2 = sum, sum3 = sum;
      for (; k < in_order_from; k += 4) {
        const entry_pair v = two_entries(a + k, length), w = two_entries(a + k + 2, length);
        sum = _mm256_fmadd_pd(v.first, _mm256_loadu_pd(x[k] + i), sum);
        sum1 = _mm256_fmadd_pd(v.second, _mm256_loadu_pd(x[k + 1] + i), sum1);
        sum2 = _mm256_fmadd_pd(w.first, _mm256_loadu_pd(x[k + 2] + i), sum2);
        sum3 = _mm256_fmadd_pd(w.second, _mm256_loadu_pd(x[k + 3] + i), sum3);
      }
      sum = _mm256_add_pd(_mm256_add_pd(sum, sum2), _mm256_add_pd(sum1, sum3));
    }
#pragma GCC unroll 8
    for (; k + 2 <= count; k += 2) {
      const entry_pair v = two_entries(a + k, length);
      sum = _mm256_fmadd_pd(v.first, _mm256_loadu_pd(x[k] + i), sum);
      sum = _mm256_fmadd_pd(v.second, _mm256_loadu_pd(x[k + 1] + i), sum);
    }
    if (k < count) sum = _mm256_fmadd_pd(one_entry(a + k, length), _mm256_loadu_pd(x[k] + i), sum);
    if (adds_x) sum = _mm256_add_pd(sum, _mm256_loadu_pd(product.x + i));
    if (overwrites) {
      _mm256_storeu_pd(y + i, _mm256_mul_pd(alpha, sum));
    } else {
      const __m256d before = _mm256_loadu_pd(y + i);
      _mm256_storeu_pd(y + i, _mm256_blendv_pd(_mm256_fmadd_pd(alpha, sum, before), before, done));
    }
    i += kRunWidth;
    a += block;
    if (i + kRunWidth <= end) continue;
    const core_int back = i + kRunWidth - end;
    if (back == kRunWidth) break;
    i -= back;
    a -= back * length;
    done = _mm256_loadu_pd(reinterpret_cast<const double*>(kLanesDone + 8 - back));
  }
}
constexpr decltype(&gather_run<0>) kGatherRun[] = {gather_run<0>, gather_run<1>, gather_run<2>,
                                                   gather_run<3>, gather_run<4>, gather_run<5>,
                                                   gather_run<6>, gather_run<7>, gather_run<8>};

/// Which of the kernels for short rows.
[[gnu::always_inline]] inline int kernel_of(const run_shape& shape) {
  const int count = shape.last - shape.first;
  return count <= 8 ? count : 0;
}

/// Rows of kLength entries from memory, of which those from kFirst to kLast take part: block after block, as
/// long as the rows go on, limit rows at most. Returns how many.
template <int kLength, int kFirst, int kLast>
[[gnu::noinline]] core_int gather_blocks(const run_product& product, const run_search& search, core_int row,
                                         core_int limit) {
  constexpr int kCount = kLast - kFirst, kBlock = kRunWidth * kLength;
  const csr_slice* const m = product.m;
  const core_int start = m->begin[row] - m->base;
  const double* a = product.a + start;
  const int *columns = m->columns + start, *const ends = m->end;
  const double* x_at[kCount];
#pragma GCC unroll 16
  for (int k = 0; k < kCount; ++k) x_at[k] = product.x + search.offsets[kFirst + k];
  double* const y = product.y;
  const __m256d alpha = _mm256_set1_pd(product.alpha);
  const bool overwrites = m->overwrites, adds_x = product.adds_x;
  core_int i = row, left = limit;
  do {
    ask_ahead_for_block<1>(a, columns, kBlock);
    __m256d sum = _mm256_setzero_pd();
#pragma GCC unroll 16
    for (int k = 0; k + 2 <= kCount; k += 2) {
      const entry_pair v = two_entries(a + kFirst + k, kLength);
      sum = _mm256_fmadd_pd(v.first, _mm256_loadu_pd(x_at[k] + i), sum);
      sum = _mm256_fmadd_pd(v.second, _mm256_loadu_pd(x_at[k + 1] + i), sum);
    }
    if constexpr (kCount % 2 != 0)
      sum = _mm256_fmadd_pd(one_entry(a + kLast - 1, kLength), _mm256_loadu_pd(x_at[kCount - 1] + i), sum);
    if (adds_x) sum = _mm256_add_pd(sum, _mm256_loadu_pd(product.x + i));
    _mm256_storeu_pd(
        y + i, overwrites ? _mm256_mul_pd(alpha, sum) : _mm256_fmadd_pd(alpha, sum, _mm256_loadu_pd(y + i)));
    if (left < 2 * kRunWidth || !goes_on<kLength, 1>(columns, ends + i)) {
      i += kRunWidth;
      break;
    }
    i += kRunWidth;
    left -= kRunWidth;
    a += kBlock;
    columns += kBlock;
  } while (true);
  return i - row;
}
/// For whole rows, and for either triangle of rows with as many entries on both sides of the diagonal, with
/// and without it.
constexpr decltype(&gather_blocks<2, 0, 2>) kGatherBlocks[][kSummedInOrder + 1] = {
    {nullptr, nullptr, gather_blocks<2, 0, 2>, gather_blocks<3, 0, 3>, gather_blocks<4, 0, 4>,
     gather_blocks<5, 0, 5>, gather_blocks<6, 0, 6>, gather_blocks<7, 0, 7>, gather_blocks<8, 0, 8>,
     gather_blocks<9, 0, 9>},
    {nullptr, nullptr, nullptr, gather_blocks<3, 0, 2>, nullptr, gather_blocks<5, 0, 3>, nullptr,
     gather_blocks<7, 0, 4>, nullptr, gather_blocks<9, 0, 5>},
    {nullptr, nullptr, nullptr, gather_blocks<3, 0, 1>, nullptr, gather_blocks<5, 0, 2>, nullptr,
     gather_blocks<7, 0, 3>, nullptr, gather_blocks<9, 0, 4>},
    {nullptr, nullptr, nullptr, gather_blocks<3, 1, 3>, nullptr, gather_blocks<5, 2, 5>, nullptr,
     gather_blocks<7, 3, 7>, nullptr, gather_blocks<9, 4, 9>},
    {nullptr, nullptr, nullptr, gather_blocks<3, 2, 3>, nullptr, gather_blocks<5, 3, 5>, nullptr,
     gather_blocks<7, 4, 7>, nullptr, gather_blocks<9, 5, 9>}};

/// Takes the run that begins at row i, if there is one. Returns its rows.
template <csr_part kPart>
[[gnu::noinline]] core_int gather_runs(const run_product& product, core_int i, core_int last,
                                       run_search& search) {
  const row_run found = find_run<run_use::kGather, kPart, 1>(product, i, last - i, search);
  if (search.in_blocks && found.rows != 0) {
    const core_int rows = kGatherBlocks[gathered_part(search.shape, search.length)][search.length](
        product, search, i, last - i);
    search.run_end = i + rows;
    return rows;
  }
  if (found.rows != 0) kGatherRun[kernel_of(search.shape)](product, search, found);
  return found.rows;
}

/// A vector of elements that are loaded apart, which the compiler must not join.
[[gnu::always_inline]] inline __m256d one_by_one(const double* p) {
  const volatile double* const apart = p;
  const double first = apart[0], second = apart[1], third = apart[2], fourth = apart[3];
  return _mm256_setr_pd(first, second, third, fourth);
}

template <bool kValue>
struct constant {
  static constexpr bool value = kValue;
};

constexpr int kBefore = 0x90;  ///< lanes 0 0 1 2
constexpr int kAfter = 0xF9;   ///< lanes 1 2 3 3

/// What entries add outside of their rows; with sums also the product of the rows themselves, before that.
/// kWay = 1: rows upwards, -1: downwards.
template <int kCount, int kWay, bool kSums>
[[gnu::noinline]] void scatter_run(const run_product& product, const run_search& search, row_run run) {
  constexpr int kPlaces = kCount > 0 ? kCount : kLargestRunRow;
  const run_shape& shape = search.shape;
  const core_int count = kCount > 0 ? kCount : shape.last - shape.first, row_end = run.row + run.rows;
  const core_int length = search.length, block = kRunWidth * length;
  const core_int start = product.m->begin[run.row] - product.m->base + shape.first;
  const core_int to_first_block = kWay > 0 ? 0 : (run.rows - kRunWidth) * length;
  const double* a = product.a + start + to_first_block;
  const int* columns = product.m->columns + start + to_first_block;
  const double* x[kPlaces];
  if constexpr (kSums)
    for (core_int k = 0; k < count; ++k) x[k] = product.x + search.offsets[shape.first + k];
  const double *const own_x = product.x, scatter_one = product.scatter_alpha;
  const __m256d alpha = _mm256_set1_pd(product.alpha), scatter_alpha = _mm256_set1_pd(scatter_one);
  const bool streams = product.m->streams;

  // What the run's first row adds before the run's targets, and its last row behind them.
  const auto add_one = [&](double* y, int entry, core_int row, core_int to) {
    if (entry >= 0)
      y[to] =
          __builtin_fma(product.a[start + (row - run.row) * length + entry], scatter_one * own_x[row], y[to]);
  };
  const auto add_ends = [&](bool after) {
    const core_int row = after ? run.row : row_end - 1, to = after ? row - 1 : row + 1;
    for (int t = shape.single_targets; t < shape.targets; ++t)
      add_one(search.y_at[t], after ? shape.at[t].after : shape.at[t].before, row, to);
    if constexpr (kSums) add_one(product.y, after ? shape.own.after : shape.own.before, row, to);
  };

  alignas(32) double values[kPlaces][kRunWidth];
  __m256d done = _mm256_setzero_pd();
  bool partial = false;
  add_ends(kWay > 0);
  const core_int first_block = kWay > 0 ? run.row : row_end - kRunWidth;
  for (core_int i = first_block;;) {
    if (streams) {
      ask_ahead_for_block<kWay>(a, columns, block);
      ask_for(product.y + i + kWay * kVectorAhead);
      ask_for(own_x + i + kWay * kVectorAhead);
    }
    const __m256d x_of_rows = _mm256_loadu_pd(own_x + i), factor = _mm256_mul_pd(scatter_alpha, x_of_rows);
    const bool is_inside = i != run.row && i + kRunWidth != row_end;
    __m256d sum = _mm256_setzero_pd();
    const auto take = [&](core_int k, __m256d v) {
      _mm256_store_pd(values[k], v);
      if constexpr (kSums) sum = _mm256_fmadd_pd(v, _mm256_loadu_pd(x[k] + i), sum);
    };
    core_int k = 0;
#pragma GCC unroll 8
    for (; k + 2 <= count; k += 2) {
      const entry_pair v = two_entries(a + k, length);
      take(k, v.first);
      take(k + 1, v.second);
    }
    if (k < count) take(k, one_entry(a + k, length));

    const auto add_targets = [&](auto inside) {
      // Beside the first and the last block are rows that are none of the run's, what they add to stays;
      // and what was stored in other widths a moment ago would make a vector wait.
      constexpr bool kInside = decltype(inside)::value;
      const auto load = [&](const double* y, bool was_stored) {
        return !kInside && was_stored ? one_by_one(y) : _mm256_loadu_pd(y);
      };
      const auto store = [&](double* y, __m256d result) {
        if (!kInside && partial) result = _mm256_blendv_pd(result, one_by_one(y), done);
        _mm256_storeu_pd(y, result);
      };
      const auto add_before = [&](int entry, __m256d y) {
        const __m256d v = _mm256_permute4x64_pd(_mm256_load_pd(values[entry]), kBefore);
        if (!kInside && i == run.row)
          return _mm256_blend_pd(_mm256_fmadd_pd(v, _mm256_permute4x64_pd(factor, kBefore), y), y, 1);
        return _mm256_fmadd_pd(_mm256_blend_pd(v, _mm256_broadcast_sd(a + entry - length), 1),
                               _mm256_mul_pd(scatter_alpha, _mm256_loadu_pd(own_x + i - 1)), y);
      };
      const auto add_after = [&](int entry, __m256d y) {
        const __m256d v = _mm256_permute4x64_pd(_mm256_load_pd(values[entry]), kAfter);
        if (!kInside && i + kRunWidth == row_end)
          return _mm256_blend_pd(_mm256_fmadd_pd(v, _mm256_permute4x64_pd(factor, kAfter), y), y, 8);
        return _mm256_fmadd_pd(_mm256_blend_pd(v, _mm256_broadcast_sd(a + entry + block), 8),
                               _mm256_mul_pd(scatter_alpha, _mm256_loadu_pd(own_x + i + 1)), y);
      };
      const auto add_all = [&](const run_target& target, __m256d y) {
        if (kWay > 0 && target.before >= 0) y = add_before(target.before, y);
        if (kWay < 0 && target.after >= 0) y = add_after(target.after, y);
        if (target.same >= 0) y = _mm256_fmadd_pd(_mm256_load_pd(values[target.same]), factor, y);
        if (kWay > 0 && target.after >= 0) y = add_after(target.after, y);
        if (kWay < 0 && target.before >= 0) y = add_before(target.before, y);
        return y;
      };
      if constexpr (kSums) {
        double* const y = product.y + i;
        const __m256d of_rows =
            product.m->overwrites ? _mm256_mul_pd(alpha, sum) : _mm256_fmadd_pd(alpha, sum, load(y, partial));
        store(y, add_all(shape.own, of_rows));
      }
      int t = 0;
      for (; t < shape.single_targets; ++t) {
        double* const y = search.y_at[t] + i;
        store(y, _mm256_fmadd_pd(_mm256_load_pd(values[shape.at[t].same]), factor, load(y, partial)));
      }
      for (; t < shape.targets; ++t) {
        double* const y = search.y_at[t] + i;
        store(y, add_all(shape.at[t], load(y, partial || i == first_block)));
      }
    };
    if constexpr (kSums) {
      if (product.adds_x) sum = _mm256_add_pd(sum, x_of_rows);
    }
    if (is_inside) [[likely]]
      add_targets(constant<true>());
    else
      add_targets(constant<false>());

    i += kWay * kRunWidth;
    a += kWay * block;
    columns += kWay * block;
    const core_int left = kWay > 0 ? row_end - i : i + kRunWidth - run.row;
    if (left >= kRunWidth) continue;
    if (left == 0 || partial) break;
    const core_int back = kRunWidth - left;
    i -= kWay * back;
    a -= kWay * back * length;
    columns -= kWay * back * length;
    done = _mm256_loadu_pd(reinterpret_cast<const double*>(kLanesDone + (kWay > 0 ? 8 - back : back)));
    partial = true;
  }
  add_ends(kWay < 0);
}
template <int kWay, bool kSums>
constexpr decltype(&scatter_run<0, 1, false>) kScatterRun[] = {
    scatter_run<0, kWay, kSums>, scatter_run<1, kWay, kSums>, scatter_run<2, kWay, kSums>,
    scatter_run<3, kWay, kSums>, scatter_run<4, kWay, kSums>, scatter_run<5, kWay, kSums>,
    scatter_run<6, kWay, kSums>, scatter_run<7, kWay, kSums>, scatter_run<8, kWay, kSums>};

/// Mirrored rows of a grid: two entries at the diagonal, the others far apart. Begins at the run's first row
/// in the walk's order and takes blocks as long as the rows go on, limit rows at most; returns how many. What
/// the first row adds to the row before comes first; the last block has no row behind that it counts on.
template <int kCount, int kWay, bool kStreams>
[[gnu::noinline]] core_int mirror_blocks(const run_product& product, const run_search& search, core_int row,
                                         core_int limit) {
  constexpr int kSingle = kCount - 2, kFirstSingle = kWay > 0 ? 0 : 2, kBlock = kRunWidth * kCount;
  constexpr int kNeighbour = kWay > 0 ? kCount - 2 : 1;
  const csr_slice* const m = product.m;
  const bool overwrites = m->overwrites;
  const double *const x = product.x, one_alpha = product.alpha;
  double* const y = product.y;
  const __m256d alpha = _mm256_set1_pd(one_alpha);
  const core_int first = kWay > 0 ? row : row - (kRunWidth - 1), start = m->begin[first] - m->base;
  const double* a = product.a + start;
  const int *columns = m->columns + start, *const bounds = kWay > 0 ? m->end : m->begin;
  const double* x_at[kCount];
  double* y_at[kCount];
#pragma GCC unroll 8
  for (int t = 0; t < kSingle; ++t) {
    x_at[t] = x + search.offsets[t + kFirstSingle];
    y_at[t] = search.y_at[t];
  }
  const auto take = [&](core_int i, auto is_last) {
    if constexpr (kStreams) {
      ask_ahead_for_block<kWay>(a, columns, kBlock);
      ask_for(y + i + kWay * kVectorAhead);
      ask_for(x + i + kWay * kVectorAhead);
    }
    const row_block<kCount> block = block_at<kCount>(a);
    const __m256d x_of_rows = _mm256_loadu_pd(x + i), factor = _mm256_mul_pd(alpha, x_of_rows);
    __m256d sum = _mm256_setzero_pd();
#pragma GCC unroll 8
    for (int k = 0; k < kCount; ++k) {
      const int t = k - kFirstSingle;
      const __m256d factors = t >= 0 && t < kSingle ? _mm256_loadu_pd(x_at[t] + i)
                              : k == kNeighbour     ? _mm256_loadu_pd(x + i - kWay)
                                                    : x_of_rows;
      sum = _mm256_fmadd_pd(block.entry[k], factors, sum);
    }
    const __m256d of_rows =
        overwrites ? _mm256_mul_pd(alpha, sum) : _mm256_fmadd_pd(alpha, sum, _mm256_loadu_pd(y + i));
    // Entries beside the diagonal of the rows behind.
    __m256d behind = _mm256_permute4x64_pd(block.entry[kNeighbour], kWay > 0 ? kAfter : kBefore);
    constexpr int kOutside = kWay > 0 ? 8 : 1;
    if constexpr (is_last.value) {
      const __m256d factors = _mm256_permute4x64_pd(factor, kWay > 0 ? kAfter : kBefore);
      _mm256_storeu_pd(y + i, _mm256_blend_pd(_mm256_fmadd_pd(behind, factors, of_rows), of_rows, kOutside));
    } else {
      behind = _mm256_blend_pd(behind, _mm256_broadcast_sd(a + kNeighbour + (kWay > 0 ? kBlock : -kCount)),
                               kOutside);
      const __m256d factors = _mm256_mul_pd(alpha, _mm256_loadu_pd(x + i + kWay));
      _mm256_storeu_pd(y + i, _mm256_fmadd_pd(behind, factors, of_rows));
    }
#pragma GCC unroll 8
    for (int t = 0; t < kSingle; ++t) {
      double* const to = y_at[t] + i;
      _mm256_storeu_pd(to, _mm256_fmadd_pd(block.entry[t + kFirstSingle], factor, _mm256_loadu_pd(to)));
    }
  };
  const int first_in_walk = kWay > 0 ? kNeighbour : (kRunWidth - 1) * kCount + kNeighbour;
  y[row - kWay] = __builtin_fma(a[first_in_walk], one_alpha * x[row], y[row - kWay]);
  core_int i = first, left = limit - kRunWidth;
  for (; left >= kRunWidth && goes_on<kCount, kWay>(columns, bounds + i); left -= kRunWidth) {
    take(i, constant<false>());
    i += kWay * kRunWidth;
    a += kWay * kBlock;
    columns += kWay * kBlock;
  }
  take(i, constant<true>());
  return kWay * (i - first) + kRunWidth;
}
template <int kWay, bool kStreams>
constexpr decltype(&mirror_blocks<2, kWay, kStreams>) kMirrorBlocks[kLargestMirroredGridRow - 1] = {
    mirror_blocks<2, kWay, kStreams>, mirror_blocks<3, kWay, kStreams>, mirror_blocks<4, kWay, kStreams>};

/// Scattered rows of a grid, as mirror_blocks takes them: three entries at the diagonal, the others far
/// apart.
template <int kCount>
[[gnu::noinline]] core_int scatter_blocks(const run_product& product, const run_search& search, core_int row,
                                          core_int limit) {
  constexpr int kMiddle = (kCount - 3) / 2, kSingle = kCount - 3, kBlock = kRunWidth * kCount;
  const csr_slice* const m = product.m;
  const double *const x = product.x, one_alpha = product.scatter_alpha;
  const __m256d alpha = _mm256_set1_pd(one_alpha);
  const core_int start = m->begin[row] - m->base;
  const double* a = product.a + start;
  const int *columns = m->columns + start, *const ends = m->end;
  double* const y = search.y_at[kSingle];
  double* y_at[kCount];
#pragma GCC unroll 8
  for (int t = 0; t < kSingle; ++t) y_at[t] = search.y_at[t];
  const auto take = [&](core_int i, auto is_first, auto is_last) {
    const row_block<kCount> block = block_at<kCount>(a);
    const __m256d factor = _mm256_mul_pd(alpha, _mm256_loadu_pd(x + i));
    // The row before the run has just stored single elements, which would make a vector wait.
    __m256d sum = is_first.value ? one_by_one(y + i) : _mm256_loadu_pd(y + i);
    const __m256d before = _mm256_permute4x64_pd(block.entry[kMiddle + 2], kBefore);
    if constexpr (is_first.value) {
      sum = _mm256_blend_pd(_mm256_fmadd_pd(before, _mm256_permute4x64_pd(factor, kBefore), sum), sum, 1);
    } else {
      sum = _mm256_fmadd_pd(_mm256_blend_pd(before, _mm256_broadcast_sd(a + kMiddle + 2 - kCount), 1),
                            _mm256_mul_pd(alpha, _mm256_loadu_pd(x + i - 1)), sum);
    }
    sum = _mm256_fmadd_pd(block.entry[kMiddle + 1], factor, sum);
    const __m256d after = _mm256_permute4x64_pd(block.entry[kMiddle], kAfter);
    if constexpr (is_last.value) {
      sum = _mm256_blend_pd(_mm256_fmadd_pd(after, _mm256_permute4x64_pd(factor, kAfter), sum), sum, 8);
    } else {
      sum = _mm256_fmadd_pd(_mm256_blend_pd(after, _mm256_broadcast_sd(a + kMiddle + kBlock), 8),
                            _mm256_mul_pd(alpha, _mm256_loadu_pd(x + i + 1)), sum);
    }
    _mm256_storeu_pd(y + i, sum);
#pragma GCC unroll 8
    for (int t = 0; t < kSingle; ++t) {
      double* const to = y_at[t] + i;
      _mm256_storeu_pd(to,
                       _mm256_fmadd_pd(block.entry[t < kMiddle ? t : t + 3], factor, _mm256_loadu_pd(to)));
    }
  };
  y[row - 1] = __builtin_fma(a[kMiddle], one_alpha * x[row], y[row - 1]);
  core_int i = row, left = limit - 2 * kRunWidth;
  const auto step = [&] {
    i += kRunWidth;
    a += kBlock;
    columns += kBlock;
  };
  take(i, constant<true>(), constant<false>());
  step();
  for (; left >= kRunWidth && goes_on<kCount, 1>(columns, ends + i); left -= kRunWidth) {
    take(i, constant<false>(), constant<false>());
    step();
  }
  take(i, constant<false>(), constant<true>());
  const core_int end = i + kRunWidth;
  y[end] = __builtin_fma(a[kBlock - kCount + kMiddle + 2], one_alpha * x[end - 1], y[end]);
  return end - row;
}
constexpr decltype(&scatter_blocks<3>) kScatterBlocks[] = {scatter_blocks<3>, scatter_blocks<5>,
                                                           scatter_blocks<7>};

template <csr_part kPart>
[[gnu::noinline]] core_int scatter_runs(const run_product& product, core_int i, core_int last,
                                        run_search& search) {
  const row_run found = find_run<run_use::kScatter, kPart, 1>(product, i, last - i, search);
  if (found.rows == 0) return 0;
  if (search.in_blocks) {
    const core_int rows = kScatterBlocks[(search.length - 3) / 2](product, search, i, last - i);
    search.run_end = i + rows;
    return rows;
  }
  kScatterRun<1, false>[kernel_of(search.shape)](product, search, found);
  return found.rows;
}

}  // namespace
}  // namespace qel::QEL_LEVEL
