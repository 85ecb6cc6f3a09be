// SPDX-License-Identifier: BSD-3-Clause
// Products of CSR matrices that count from 1, with a CSR or a dense result.
#include "service/serv.h"
#include "sparse/blas/csr.h"
#include "sparse/blas/csr_rows.h"

namespace qel::sparse {
namespace {

constexpr char kName[2][16] = {"QEL_DCSRMULTCSR", "QEL_ZCSRMULTCSR"};
constexpr int kNameLength = 15;

/// Row i of A B: the rows of B that A's entries name, times these entries.
template <class T>
class product_worker {
 public:
  product_worker(const csr_matrix<T>& a, const csr_matrix<T>& b, bool counts, int* jc, T* c, core_int limit)
      : a_(a), b_(b), builder_(b.columns, counts ? nullptr : jc, c, limit) {}
  bool there() const { return builder_.there(); }

  core_int count(core_int i) {
    builder_.begin(0);
    for_each_pair(i, [&](core_int, core_int q) {
      builder_.note(b_.ja[q]);
      return true;
    });
    return builder_.finish_count();
  }
  core_int build(core_int i, core_int position) {
    builder_.begin(position);
    const bool fits = for_each_pair(
        i, [&](core_int p, core_int q) { return builder_.add(b_.ja[q], a_.values[p] * b_.values[q]); });
    return fits ? builder_.finish() : -1;
  }

 private:
  template <class Work>
  bool for_each_pair(core_int i, const Work& work) {
    for (core_int p = a_.ia[i] - 1; p < a_.ia[i + 1] - 1; ++p) {
      const core_int j = a_.ja[p] - 1;
      for (core_int q = b_.ia[j] - 1; q < b_.ia[j + 1] - 1; ++q)
        if (!work(p, q)) return false;
    }
    return true;
  }
  const csr_matrix<T> a_, b_;
  row_builder<T> builder_;
};

template <class T>
void csrmultcsr(const char* transa, core_int request, core_int sort, core_int m, core_int n, core_int k, T* a,
                int* ja, const int* ia, T* b, int* jb, const int* ib, T* c, int* jc, int* ic, core_int nzmax,
                int* info) {
  const char letter = static_cast<char>(*transa & ~0x20);
  const bool transposed = letter != 'N';
  const core_int b_rows = transposed ? m : n, c_rows = transposed ? n : m;
  const char* name = kName[is_complex<T>];
  if (sort == 1 || sort == 3) sort_rows(m, a, ja, ia);
  if (sort == 2 || sort == 3) sort_rows(b_rows, b, jb, ib);
  const csr_matrix<T> right = {b_rows, k, b, jb, ib};
  const auto run = [&](const csr_matrix<T>& left) {
    const int threads =
        threads_of_rows(serv_in_parallel() ? 1 : serv_threads_all(), request, transposed, c_rows);
    run_request(name, kNameLength, request, c_rows, threads, ic, nzmax, info, [&](core_int limit) {
      return product_worker<T>(left, right, request == kCount, jc, c, limit);
    });
  };
  if (!transposed) return run({m, n, a, ja, ia});
  const transposed_copy<T> op_a({m, n, request == kCount ? nullptr : a, ja, ia}, letter == 'C');
  if (!op_a.there()) return report_no_memory(name, kNameLength, info);
  run(op_a.matrix());
}

template <class T>
void csrmultd(const char* transa, core_int m, core_int n, core_int k, const T* a, const int* ja,
              const int* ia, const T* b, const int* jb, const int* ib, T* c, core_int ldc) {
  const char letter = static_cast<char>(*transa & ~0x20);
  const bool transposed = letter != 'N';
  for (core_int l = 0; l < k; ++l) std::fill_n(c + l * ldc, transposed ? n : m, T{});
  for (core_int i = 0; i < m; ++i) {
    for (core_int p = ia[i] - 1; p < ia[i + 1] - 1; ++p) {
      const core_int j = ja[p] - 1, row_of_b = transposed ? i : j, row_of_c = transposed ? j : i;
      const T factor = letter == 'C' ? conj(a[p]) : a[p];
      for (core_int q = ib[row_of_b] - 1; q < ib[row_of_b + 1] - 1; ++q)
        c[row_of_c + (jb[q] - 1) * ldc] += factor * b[q];
    }
  }
}

}  // namespace
}  // namespace qel::sparse

namespace qel::core {

void dcsrmultcsr(const char* transa, const core_int* request, const core_int* sort, const core_int* m,
                 const core_int* n, const core_int* k, double* a, int* ja, const int* ia, double* b, int* jb,
                 const int* ib, double* c, int* jc, int* ic, const core_int* nzmax, int* info) {
  sparse::csrmultcsr(transa, *request, *sort, *m, *n, *k, a, ja, ia, b, jb, ib, c, jc, ic, *nzmax, info);
}
void zcsrmultcsr(const char* transa, const core_int* request, const core_int* sort, const core_int* m,
                 const core_int* n, const core_int* k, complex16* a, int* ja, const int* ia, complex16* b,
                 int* jb, const int* ib, complex16* c, int* jc, int* ic, const core_int* nzmax, int* info) {
  sparse::csrmultcsr(transa, *request, *sort, *m, *n, *k, a, ja, ia, b, jb, ib, c, jc, ic, *nzmax, info);
}

void dcsrmultd(const char* transa, const core_int* m, const core_int* n, const core_int* k, const double* a,
               const int* ja, const int* ia, const double* b, const int* jb, const int* ib, double* c,
               const core_int* ldc) {
  sparse::csrmultd(transa, *m, *n, *k, a, ja, ia, b, jb, ib, c, *ldc);
}
void zcsrmultd(const char* transa, const core_int* m, const core_int* n, const core_int* k,
               const complex16* a, const int* ja, const int* ia, const complex16* b, const int* jb,
               const int* ib, complex16* c, const core_int* ldc) {
  sparse::csrmultd(transa, *m, *n, *k, a, ja, ia, b, jb, ib, c, *ldc);
}

}  // namespace qel::core
