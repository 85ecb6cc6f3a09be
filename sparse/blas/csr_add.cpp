// SPDX-License-Identifier: BSD-3-Clause
// C = A + beta op(B) for CSR matrices that count from 1.
#include "service/serv.h"
#include "sparse/blas/csr.h"
#include "sparse/blas/csr_rows.h"

namespace qel::sparse {
namespace {

constexpr char kName[2][13] = {"QEL_DCSRADD", "QEL_ZCSRADD"};
constexpr int kNameLength = 11;

template <class T>
struct csr_sum {
  csr_matrix<T> a, b;
  // For sorting, which is done in the caller's arrays; null if not wanted.
  int *sorted_ja, *sorted_jb;
  T *sorted_a, *sorted_b;
  T beta;
  int* jc;
  T* c;
};

template <class T>
struct row_view {
  const int* columns;
  const T* values;
  core_int count;
};
template <class T>
row_view<T> row_of(const csr_matrix<T>& matrix, core_int i) {
  const core_int start = matrix.ia[i] - 1;
  return {matrix.ja + start, matrix.values + start, matrix.ia[i + 1] - 1 - start};
}

/// Walks a row of each matrix, which must be sorted.
template <class T>
class merging_worker {
 public:
  merging_worker(const csr_sum<T>& sum, core_int limit) : sum_(sum), limit_(limit) {}
  bool there() const { return true; }

  core_int count(core_int i) const {
    sort(i);
    const row_view<T> a = row_of(sum_.a, i), b = row_of(sum_.b, i);
    core_int p = 0, q = 0, entries = 0;
    for (; p < a.count && q < b.count; ++entries) {
      const int left = a.columns[p], right = b.columns[q];
      p += left <= right;
      q += right <= left;
    }
    return entries + (a.count - p) + (b.count - q);
  }

  core_int build(core_int i, core_int position) const {
    sort(i);
    const row_view<T> a = row_of(sum_.a, i), b = row_of(sum_.b, i);
    core_int p = 0, q = 0;
    for (; p < a.count && q < b.count; ++position) {
      if (position >= limit_) return -1;
      const int left = a.columns[p], right = b.columns[q];
      if (left < right) {
        sum_.c[position] = a.values[p++];
      } else if (right < left) {
        sum_.c[position] = sum_.beta * b.values[q++];
      } else {
        sum_.c[position] = a.values[p++] + sum_.beta * b.values[q++];
      }
      sum_.jc[position] = std::min(left, right);
    }
    if (position + (a.count - p) + (b.count - q) > limit_) return -1;
    for (; p < a.count; ++p, ++position) {
      sum_.jc[position] = a.columns[p];
      sum_.c[position] = a.values[p];
    }
    for (; q < b.count; ++q, ++position) {
      sum_.jc[position] = b.columns[q];
      sum_.c[position] = sum_.beta * b.values[q];
    }
    return position;
  }

 private:
  void sort(core_int i) const {
    sort_one(sum_.sorted_ja, sum_.sorted_a, sum_.a, i);
    sort_one(sum_.sorted_jb, sum_.sorted_b, sum_.b, i);
  }
  static void sort_one(int* columns, T* values, const csr_matrix<T>& matrix, core_int i) {
    if (columns == nullptr) return;
    const core_int start = matrix.ia[i] - 1;
    sort_row(columns + start, values != nullptr ? values + start : nullptr, matrix.ia[i + 1] - 1 - start);
  }
  const csr_sum<T>& sum_;
  core_int limit_;
};

/// Adds up the entries by column, in whatever order they come: for the transpose of B, which is the caller's
/// neither in storage nor in order.
template <class T>
class marking_worker {
 public:
  marking_worker(const csr_sum<T>& sum, bool counts, core_int limit)
      : sum_(sum), builder_(sum.a.columns, counts ? nullptr : sum.jc, sum.c, limit) {}
  bool there() const { return builder_.there(); }

  core_int count(core_int i) {
    builder_.begin(0);
    for (const csr_matrix<T>* matrix : {&sum_.a, &sum_.b}) {
      const row_view<T> row = row_of(*matrix, i);
      for (core_int p = 0; p < row.count; ++p) builder_.note(row.columns[p]);
    }
    return builder_.finish_count();
  }
  core_int build(core_int i, core_int position) {
    const row_view<T> a = row_of(sum_.a, i), b = row_of(sum_.b, i);
    builder_.begin(position);
    for (core_int p = 0; p < a.count; ++p)
      if (!builder_.add(a.columns[p], a.values[p])) return -1;
    for (core_int q = 0; q < b.count; ++q)
      if (!builder_.add(b.columns[q], sum_.beta * b.values[q])) return -1;
    return builder_.finish();
  }

 private:
  const csr_sum<T>& sum_;
  row_builder<T> builder_;
};

template <class T>
void csradd(const char* transa, core_int request, core_int sort, core_int m, core_int n, T* a, int* ja,
            const int* ia, T beta, T* b, int* jb, const int* ib, T* c, int* jc, int* ic, core_int nzmax,
            int* info) {
  const char letter = static_cast<char>(*transa & ~0x20);
  const char* name = kName[is_complex<T>];
  const bool sort_a = sort == 1 || sort == 3, sort_b = sort == 2 || sort == 3;
  csr_sum<T> sum = {
      {m, n, a, ja, ia}, {m, n, b, jb, ib}, sort_a ? ja : nullptr, sort_b ? jb : nullptr, a, b, beta, jc, c};
  if (letter == 'N') {
    const int threads =
        threads_of_rows(serv_in_parallel() ? 1 : serv_threads_all(), request, /*transposed=*/false, m);
    return run_request(name, kNameLength, request, m, threads, ic, nzmax, info,
                       [&](core_int limit) { return merging_worker<T>(sum, limit); });
  }
  if (sort_a) sort_rows(m, a, ja, ia);
  if (sort_b) sort_rows(n, b, jb, ib);
  const transposed_copy<T> op_b({n, m, request == kCount ? nullptr : b, jb, ib}, letter == 'C');
  if (!op_b.there()) return report_no_memory(name, kNameLength, info);
  sum.b = op_b.matrix();
  run_request(name, kNameLength, request, m, 1, ic, nzmax, info,
              [&](core_int limit) { return marking_worker<T>(sum, request == kCount, limit); });
}

}  // namespace
}  // namespace qel::sparse

namespace qel::core {

void dcsradd(const char* transa, const core_int* request, const core_int* sort, const core_int* m,
             const core_int* n, double* a, int* ja, const int* ia, const double* beta, double* b, int* jb,
             const int* ib, double* c, int* jc, int* ic, const core_int* nzmax, int* info) {
  sparse::csradd(transa, *request, *sort, *m, *n, a, ja, ia, *beta, b, jb, ib, c, jc, ic, *nzmax, info);
}
void zcsradd(const char* transa, const core_int* request, const core_int* sort, const core_int* m,
             const core_int* n, complex16* a, int* ja, const int* ia, const complex16* beta, complex16* b,
             int* jb, const int* ib, complex16* c, int* jc, int* ic, const core_int* nzmax, int* info) {
  sparse::csradd(transa, *request, *sort, *m, *n, a, ja, ia, *beta, b, jb, ib, c, jc, ic, *nzmax, info);
}

}  // namespace qel::core
