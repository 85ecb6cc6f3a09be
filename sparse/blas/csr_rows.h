// SPDX-License-Identifier: BSD-3-Clause
// Rows of CSR matrices that count from 1: sorting in place, and the transpose with a copy of its own.
#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstdint>
#include <utility>

#include "blas/plain/scratch.h"
#include "service/complex_arithmetic.h"
#include "sparse/blas/csr_vector_plan.h"

namespace qel::sparse {

/// A matrix whose rows are read.
template <class T>
struct csr_matrix {
  core_int rows, columns;
  const T* values;
  const int* ja;
  const int* ia;
};

/// Insertion sort of count entries by column, values with them; equal columns keep their order. values may be
/// null.
template <class T>
void sort_row(int* columns, T* values, core_int count) {
  for (core_int p = 1; p < count; ++p) {
    for (core_int q = p; q > 0 && columns[q - 1] > columns[q]; --q) {
      std::swap(columns[q - 1], columns[q]);
      if (values != nullptr) std::swap(values[q - 1], values[q]);
    }
  }
}

/// Sorts all rows of a matrix as sort_row does.
template <class T>
void sort_rows(core_int rows, T* values, int* ja, const int* ia) {
  for (core_int i = 0; i < rows; ++i)
    sort_row(ja + (ia[i] - 1), values + (ia[i] - 1), core_int{ia[i + 1]} - ia[i]);
}

/// The transpose, its rows sorted by column, conjugated if wanted; entries of one place keep their order.
/// Without values it is the transposed pattern.
template <class T>
class transposed_copy {
 public:
  transposed_copy(const csr_matrix<T>& a, bool conjugated)
      : ia_(a.columns + 1),
        ja_(count(a)),
        values_(a.values != nullptr ? count(a) : 1),
        rows_(a.columns),
        columns_(a.rows) {
    if (!there()) return;
    int* const start = ia_.get();
    std::fill_n(start, rows_ + 1, 0);
    for (core_int i = 0; i < a.rows; ++i)
      for (core_int p = a.ia[i] - 1; p < a.ia[i + 1] - 1; ++p) ++start[a.ja[p] - 1];
    int sum = 1;
    for (core_int j = 0; j <= rows_; ++j) sum += std::exchange(start[j], sum);
    for (core_int i = 0; i < a.rows; ++i) {
      for (core_int p = a.ia[i] - 1; p < a.ia[i + 1] - 1; ++p) {
        const int to = start[a.ja[p] - 1]++ - 1;
        ja_.get()[to] = static_cast<int>(i) + 1;
        if (a.values != nullptr) values_.get()[to] = conjugated ? conj(a.values[p]) : a.values[p];
      }
    }
    // Each start has moved on to the next row's.
    std::copy_backward(start, start + rows_, start + rows_ + 1);
    start[0] = 1;
  }
  /// False if memory is out.
  bool there() const { return ia_.get() != nullptr && ja_.get() != nullptr && values_.get() != nullptr; }
  csr_matrix<T> matrix() const { return {rows_, columns_, values_.get(), ja_.get(), ia_.get()}; }

 private:
  static core_int count(const csr_matrix<T>& a) {
    return std::max<core_int>(core_int{a.ia[a.rows]} - a.ia[0], 1);
  }
  plain::scratch<int> ia_, ja_;
  plain::scratch<T> values_;
  core_int rows_, columns_;
};

/// Turns the counts of rows 0 .. m - 1, in ic[1 .. m], into their starts, counted from 1, two rows per pass.
inline void starts_from_counts(core_int m, int* ic) {
  ic[0] = 1;
  core_int i = 0;
  for (; i + 1 < m; i += 2) {
    const int first = ic[i] + ic[i + 1];
    ic[i + 2] += first;
    ic[i + 1] = first;
  }
  if (i < m) ic[i + 1] += ic[i];
}

/// Builds rows of a sparse result out of multiples of other rows: the sums of a row stand by column, a mark
/// by column names the last row that has it. Marks need no clearing, and none waits for its neighbour's, as
/// bits of one word would. Each finished row is sorted by column.
template <class T>
class row_builder {
 public:
  /// Up to limit entries fit at jc and values. Only for counting if jc is null.
  row_builder(core_int columns, int* jc, T* values, core_int limit)
      : marks_(std::max<core_int>(columns, 1)),
        places_(jc != nullptr ? (columns >> 6) + 1 : 1),
        sums_(jc != nullptr ? std::max<core_int>(columns, 1) : 1),
        jc_(jc),
        values_(values),
        limit_(limit) {
    if (!there()) return;
    std::fill_n(marks_.get(), columns, 0);
    if (jc != nullptr) std::fill_n(places_.get(), (columns >> 6) + 1, 0);
  }
  bool there() const { return marks_.get() != nullptr && places_.get() != nullptr && sums_.get() != nullptr; }

  /// The next row begins at entry position, from 0.
  void begin(core_int position) {
    start_ = end_ = position;
    ++row_;
  }
  /// Adds to a column, from 1; false if there is no room for one more entry.
  bool add(int column, T value) {
    T& sum = sums_.get()[column - 1];
    if (had(column)) {
      sum += value;
      return true;
    }
    if (end_ == limit_) return false;
    jc_[end_++] = column;
    sum = value;
    return true;
  }
  /// Ends the row; returns where the next one begins.
  core_int finish() {
    sort_columns();
    for (core_int p = start_; p < end_; ++p) values_[p] = sums_.get()[jc_[p] - 1];
    return end_;
  }

  /// Counting: notes a column of the row.
  void note(int column) { end_ += !had(column); }
  /// Ends a counted row; returns the number of its columns.
  core_int finish_count() const { return end_; }

 private:
  /// Whether the row has the column already; it has it from now on.
  bool had(int column) { return std::exchange(marks_.get()[column - 1], row_) == row_; }
  /// Sorts the row's columns: by way of a bit for each, unless those lie too far apart.
  void sort_columns() {
    constexpr core_int kWordsPerEntry = 4;
    if (start_ == end_) return;
    const auto [least, greatest] = std::minmax_element(jc_ + start_, jc_ + end_);
    const core_int first = (*least - 1) >> 6, last = (*greatest - 1) >> 6;
    if (last - first > kWordsPerEntry * (end_ - start_)) {
      std::sort(jc_ + start_, jc_ + end_);
      return;
    }
    for (core_int p = start_; p < end_; ++p) {
      places_.get()[(jc_[p] - 1) >> 6] |= uint64_t{1} << ((jc_[p] - 1) & 63);
    }
    int* next = jc_ + start_;
    for (core_int w = first; w <= last; ++w) {
      for (uint64_t word = std::exchange(places_.get()[w], 0); word != 0; word &= word - 1)
        *next++ = static_cast<int>(w << 6) + std::countr_zero(word) + 1;
    }
  }

  plain::scratch<int> marks_;
  plain::scratch<uint64_t> places_;
  plain::scratch<T> sums_;
  int* jc_;
  T* values_;
  core_int limit_, start_ = 0, end_ = 0;
  int row_ = 0;
};

/// No memory for a copy or a marker: reported like a refused copy in the entries; info tells it, too.
inline void report_no_memory(const char* name, int length, int* info) {
  constexpr int kNoMemoryCode = 1079, kNoMemoryInfo = -1023;
  serv_xerbla(name, &kNoMemoryCode, length);
  *info = kNoMemoryInfo;
}

/// The three uses of an operation with a sparse result.
enum csr_request : int { kBuild = 0, kCount = 1, kFill = 2 };
inline constexpr core_int kUnlimited = core_int{1} << 62;

/// Threads for rows that can be worked apart: not for request 0, where each row starts at the end of the one
/// before, nor for a transposed operand.
constexpr int threads_of_rows(int threads, core_int request, bool transposed, core_int rows) {
  const core_int useful = threads < rows ? threads : rows;
  return request == 0 || transposed || useful < 2 ? 1 : static_cast<int>(useful);
}

/// Carries out a request over the rows of a result. worker(limit) gives an object with
///   there()                 false if it has no memory
///   count(row)              the number of entries of a row, from 0
///   build(row, position)    writes the row from entry position on; where the next begins, or -1 without room
template <class Worker>
void run_request(const char* name, int name_length, core_int request, core_int rows, int threads, int* ic,
                 core_int nzmax, int* info, const Worker& worker) {
  *info = 0;
  if (request == kBuild) {
    auto one = worker(nzmax);
    if (!one.there()) return report_no_memory(name, name_length, info);
    core_int position = 0;
    ic[0] = 1;
    for (core_int i = 0; i < rows; ++i) {
      position = one.build(i, position);
      if (position < 0) {
        *info = static_cast<int>(i) + 1;
        return;
      }
      ic[i + 1] = static_cast<int>(position) + 1;
    }
    return;
  }
  std::atomic<bool> memory{true};
  const auto run_block = [&](int t) {
    auto one = worker(kUnlimited);
    if (!one.there()) return memory.store(false, std::memory_order_relaxed);
    const row_range own = rows_of(rows, threads, t);
    for (core_int i = own.first; i < own.last; ++i) {
      if (request == kCount) {
        ic[i + 1] = static_cast<int>(one.count(i));
      } else {
        one.build(i, ic[i] - 1);
      }
    }
  };
  if (threads < 2) {
    run_block(0);
  } else {
#pragma omp parallel for num_threads(threads) schedule(static, 1)
    for (int t = 0; t < threads; ++t) run_block(t);
  }
  if (!memory.load(std::memory_order_relaxed)) return report_no_memory(name, name_length, info);
  if (request == kCount) starts_from_counts(rows, ic);
}

}  // namespace qel::sparse
