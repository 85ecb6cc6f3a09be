// SPDX-License-Identifier: BSD-3-Clause
// Conversion between a dense array, addressed row after row, and CSR.
#include <algorithm>

#include "sparse/blas/csr.h"

namespace qel::core {
namespace {

struct conversion {
  bool to_dense;
  int csr_base;
  int part;  ///< 0 lower triangle, 1 upper triangle, 2 whole
  core_int nzmax;
  bool fills_entries;  ///< else only ia
};

struct column_range {
  core_int first, last;
};
/// The columns of row i that belong to the part.
column_range columns_of(int part, core_int i, core_int n) {
  if (part == 0) return {0, std::min(i + 1, n)};
  return {part == 1 ? std::min(i, n) : 0, n};
}

void to_csr(const conversion& job, core_int m, core_int n, const double* adns, core_int lda, double* acsr,
            int* ja, int* ia, int* info) {
  core_int count = 0;
  for (core_int i = 0; i < m; ++i) {
    ia[i] = static_cast<int>(count) + job.csr_base;
    const column_range range = columns_of(job.part, i, n);
    for (core_int j = range.first; j < range.last; ++j) {
      const double value = adns[i * lda + j];
      if (value == 0) continue;
      if (job.fills_entries) {
        if (count >= job.nzmax) {
          *info = static_cast<int>(i) + job.csr_base;
          return;
        }
        acsr[count] = value;
        ja[count] = static_cast<int>(j) + job.csr_base;
      }
      ++count;
    }
  }
  ia[m] = static_cast<int>(count) + job.csr_base;
}

void to_dense(const conversion& job, core_int m, core_int n, double* adns, core_int lda, const double* acsr,
              const int* ja, const int* ia) {
  for (core_int i = 0; i < m; ++i) {
    const column_range range = columns_of(job.part, i, n);
    std::fill(adns + i * lda + range.first, adns + i * lda + std::max(range.first, range.last), 0.0);
    for (core_int p = ia[i] - job.csr_base; p < ia[i + 1] - job.csr_base; ++p) {
      const core_int j = ja[p] - job.csr_base;
      if (j >= range.first && j < range.last) adns[i * lda + j] = acsr[p];
    }
  }
}

}  // namespace

void ddnscsr(const int* job, const core_int* m, const core_int* n, double* adns, const core_int* lda,
             double* acsr, int* ja, int* ia, int* info) {
  const conversion decoded = {job[0] == 1, job[2], job[3], job[4], job[5] != 0};
  *info = 0;
  if (decoded.to_dense) return to_dense(decoded, *m, *n, adns, *lda, acsr, ja, ia);
  to_csr(decoded, *m, *n, adns, *lda, acsr, ja, ia, info);
}

}  // namespace qel::core
