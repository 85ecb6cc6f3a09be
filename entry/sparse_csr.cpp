// SPDX-License-Identifier: BSD-3-Clause
// Entries of the operations on CSR matrices. Index arrays stay as the caller has them.
#include <algorithm>
#include <cstring>
#include <new>
#include <string>

#include "entry/shapes.h"
#include "qel/sparse.h"
#include "sparse/blas/csr.h"
#include "sparse/blas/csr_check.h"
#include "sparse/blas/csr_checks.h"

using qel::complex16;
using qel::core_int;
using qel::entry::call_checked;
using qel::entry::index_array;
namespace core = qel::core;
namespace sparse = qel::sparse;

namespace {

// The checks get a call's letters and sizes in their order, those that aren't tested, too.
int csradd_bad_argument(const char* transa, core_int request, core_int, core_int m, core_int n,
                        core_int nzmax) {
  return sparse::csradd_bad_argument(transa, request, m, n, nzmax);
}
int csrmultcsr_bad_argument(const char* transa, core_int request, core_int, core_int m, core_int n,
                            core_int k, core_int nzmax) {
  return sparse::csrmultcsr_bad_argument(transa, request, m, n, k, nzmax);
}

}  // namespace

extern "C" {

void qel_dcsrgemv(const char* transa, const int* m, const double* a, const int* ia, const int* ja,
                  const double* x, double* y) {
  call_checked(__func__, core::dcsrgemv, sparse::csrgemv_bad_argument, transa, m, a, index_array{ia},
               index_array{ja}, x, y);
}
void qel_zcsrgemv(const char* transa, const int* m, const complex16* a, const int* ia, const int* ja,
                  const complex16* x, complex16* y) {
  call_checked(__func__, core::zcsrgemv, sparse::csrgemv_bad_argument, transa, m, a, index_array{ia},
               index_array{ja}, x, y);
}
void qel_dcsrmv(const char* transa, const int* m, const int* k, const double* alpha, const char* matdescra,
                const double* val, const int* indx, const int* pntrb, const int* pntre, const double* x,
                const double* beta, double* y) {
  call_checked(__func__, core::dcsrmv, sparse::csrmv_bad_argument, transa, m, k, alpha, matdescra, val,
               index_array{indx}, index_array{pntrb}, index_array{pntre}, x, beta, y);
}
void qel_zcsrmv(const char* transa, const int* m, const int* k, const complex16* alpha, const char* matdescra,
                const complex16* val, const int* indx, const int* pntrb, const int* pntre, const complex16* x,
                const complex16* beta, complex16* y) {
  call_checked(__func__, core::zcsrmv, sparse::csrmv_bad_argument, transa, m, k, alpha, matdescra, val,
               index_array{indx}, index_array{pntrb}, index_array{pntre}, x, beta, y);
}
void qel_dcsradd(const char* transa, const int* request, const int* sort, const int* m, const int* n,
                 double* a, int* ja, const int* ia, const double* beta, double* b, int* jb, const int* ib,
                 double* c, int* jc, int* ic, const int* nzmax, int* info) {
  call_checked(__func__, core::dcsradd, csradd_bad_argument, transa, request, sort, m, n, a, ja,
               index_array{ia}, beta, b, jb, index_array{ib}, c, jc, ic, nzmax, info);
}
void qel_zcsradd(const char* transa, const int* request, const int* sort, const int* m, const int* n,
                 complex16* a, int* ja, const int* ia, const complex16* beta, complex16* b, int* jb,
                 const int* ib, complex16* c, int* jc, int* ic, const int* nzmax, int* info) {
  call_checked(__func__, core::zcsradd, csradd_bad_argument, transa, request, sort, m, n, a, ja,
               index_array{ia}, beta, b, jb, index_array{ib}, c, jc, ic, nzmax, info);
}
void qel_dcsrmultcsr(const char* transa, const int* request, const int* sort, const int* m, const int* n,
                     const int* k, double* a, int* ja, const int* ia, double* b, int* jb, const int* ib,
                     double* c, int* jc, int* ic, const int* nzmax, int* info) {
  call_checked(__func__, core::dcsrmultcsr, csrmultcsr_bad_argument, transa, request, sort, m, n, k, a, ja,
               index_array{ia}, b, jb, index_array{ib}, c, jc, ic, nzmax, info);
}
void qel_zcsrmultcsr(const char* transa, const int* request, const int* sort, const int* m, const int* n,
                     const int* k, complex16* a, int* ja, const int* ia, complex16* b, int* jb, const int* ib,
                     complex16* c, int* jc, int* ic, const int* nzmax, int* info) {
  call_checked(__func__, core::zcsrmultcsr, csrmultcsr_bad_argument, transa, request, sort, m, n, k, a, ja,
               index_array{ia}, b, jb, index_array{ib}, c, jc, ic, nzmax, info);
}
void qel_dcsrmultd(const char* transa, const int* m, const int* n, const int* k, const double* a,
                   const int* ja, const int* ia, const double* b, const int* jb, const int* ib, double* c,
                   const int* ldc) {
  call_checked(__func__, core::dcsrmultd, sparse::csrmultd_bad_argument, transa, m, n, k, a, index_array{ja},
               index_array{ia}, b, index_array{jb}, index_array{ib}, c, ldc);
}
void qel_zcsrmultd(const char* transa, const int* m, const int* n, const int* k, const complex16* a,
                   const int* ja, const int* ia, const complex16* b, const int* jb, const int* ib,
                   complex16* c, const int* ldc) {
  call_checked(__func__, core::zcsrmultd, sparse::csrmultd_bad_argument, transa, m, n, k, a, index_array{ja},
               index_array{ia}, b, index_array{jb}, index_array{ib}, c, ldc);
}
void qel_ddnscsr(const int* job, const int* m, const int* n, double* adns, const int* lda, double* acsr,
                 int* ja, int* ia, int* info) {
  const auto bad_argument = [job](core_int rows, core_int columns, core_int ld) {
    return sparse::dnscsr_bad_argument(job, rows, columns, ld);
  };
  call_checked(__func__, core::ddnscsr, bad_argument, index_array{job}, m, n, adns, lda, acsr, ja, ia, info);
}

int qel_csr_check(const int* m, const int* n, const int* ia, const int* ja, const int* nnz, const int* base,
                  char* text, const int* size) {
  const sparse::csr_findings findings = sparse::check_csr(*m, *n, ia, ja, *nnz, *base);
  if (text != nullptr && *size > 0) {
    std::string words;
    try {
      words = sparse::word_findings(findings, *base);
    } catch (const std::bad_alloc&) {  // the bits tell all the same
    }
    const std::size_t length = std::min(words.size(), static_cast<std::size_t>(*size) - 1);
    std::memcpy(text, words.data(), length);
    text[length] = 0;
  }
  return findings.bits();
}

// The Fortran names.
QEL_API decltype(qel_dcsrgemv) qel_dcsrgemv_ __attribute__((alias("qel_dcsrgemv")));
QEL_API decltype(qel_zcsrgemv) qel_zcsrgemv_ __attribute__((alias("qel_zcsrgemv")));
QEL_API decltype(qel_dcsrmv) qel_dcsrmv_ __attribute__((alias("qel_dcsrmv")));
QEL_API decltype(qel_zcsrmv) qel_zcsrmv_ __attribute__((alias("qel_zcsrmv")));
QEL_API decltype(qel_dcsradd) qel_dcsradd_ __attribute__((alias("qel_dcsradd")));
QEL_API decltype(qel_zcsradd) qel_zcsradd_ __attribute__((alias("qel_zcsradd")));
QEL_API decltype(qel_dcsrmultcsr) qel_dcsrmultcsr_ __attribute__((alias("qel_dcsrmultcsr")));
QEL_API decltype(qel_zcsrmultcsr) qel_zcsrmultcsr_ __attribute__((alias("qel_zcsrmultcsr")));
QEL_API decltype(qel_dcsrmultd) qel_dcsrmultd_ __attribute__((alias("qel_dcsrmultd")));
QEL_API decltype(qel_zcsrmultd) qel_zcsrmultd_ __attribute__((alias("qel_zcsrmultd")));
QEL_API decltype(qel_ddnscsr) qel_ddnscsr_ __attribute__((alias("qel_ddnscsr")));

}  // extern "C"
