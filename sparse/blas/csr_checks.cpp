// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/blas/csr_checks.h"

#include <cctype>
#include <cstring>

namespace qel::sparse {
namespace {

bool is_one_of(const char* letters, char c) {
  const int upper = std::toupper(static_cast<unsigned char>(c));
  return upper != 0 && std::strchr(letters, upper) != nullptr;
}
bool is_op(const char* transa) { return is_one_of("NTC", *transa); }

/// The letters that mean something for the matrix's class.
bool is_description(const char* matdescra) {
  const char kind = matdescra[0];
  return is_one_of("GSHTAD", kind) && (!is_one_of("TSHA", kind) || is_one_of("LU", matdescra[1])) &&
         (!is_one_of("TSHD", kind) || is_one_of("NU", matdescra[2]));
}

}  // namespace

int csrgemv_bad_argument(const char* transa, core_int m) {
  if (!is_op(transa)) return 1;
  return m < 0 ? 2 : 0;
}

int csrmv_bad_argument(const char* transa, core_int m, core_int k, const char* matdescra) {
  if (!is_op(transa)) return 1;
  if (m < 0) return 2;
  if (k < 0) return 3;
  return is_description(matdescra) ? 0 : 5;
}

int csradd_bad_argument(const char* transa, core_int request, core_int m, core_int n, core_int nzmax) {
  return csrmultcsr_bad_argument(transa, request, m, n, 0, nzmax);
}

int csrmultcsr_bad_argument(const char* transa, core_int request, core_int m, core_int n, core_int k,
                            core_int nzmax) {
  if (!is_op(transa)) return 1;
  if (request < 0 || request > 2) return 2;
  if (m < 0) return 4;
  if (n < 0) return 5;
  if (k < 0) return 6;
  return request == 0 && nzmax < 0 ? 16 : 0;
}

int csrmultd_bad_argument(const char* transa, core_int m, core_int n, core_int k, core_int ldc) {
  if (!is_op(transa)) return 1;
  if (m < 0) return 2;
  if (n < 0) return 3;
  if (k < 0) return 4;
  return ldc < 0 ? 12 : 0;
}

int dnscsr_bad_argument(const int* job, core_int m, core_int n, core_int lda) {
  for (int i = 0; i < 3; ++i)
    if (job[i] != 0 && job[i] != 1) return 1;
  if (job[3] < 0 || job[3] > 2 || job[4] < 0 || job[5] < 0) return 1;
  if (m < 0) return 2;
  if (n < 0) return 3;
  return lda < 0 ? 5 : 0;
}

}  // namespace qel::sparse
