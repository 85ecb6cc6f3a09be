// SPDX-License-Identifier: BSD-3-Clause
// Options and reports of one call of the C interface. The row-major flag is only written on the way to a
// report: it is the process's, and calls on several threads would fight for it.
#include "dropin/cblas_call.h"

namespace qel::dropin {

cblas_call::cblas_call(const char* name, CBLAS_LAYOUT layout) : name_(name), layout_(layout) {
  if (layout == CblasRowMajor || layout == CblasColMajor) return;
  failed_ = true;
  cblas_xerbla(1, name_, "Illegal layout setting, %d\n", static_cast<int>(layout));
}

char cblas_call::chosen(int position, char letter, const char* option, int value) {
  if (letter == '\0' && !failed_) {
    failed_ = true;
    RowMajorStrg = row_major() ? 1 : 0;
    cblas_xerbla(position, name_, "Illegal %s setting, %d\n", option, value);
    RowMajorStrg = 0;
  }
  return letter;
}

char cblas_call::letter(int position, CBLAS_TRANSPOSE trans) {
  const char letter = trans == CblasNoTrans     ? 'N'
                      : trans == CblasTrans     ? 'T'
                      : trans == CblasConjTrans ? 'C'
                                                : '\0';
  return chosen(position, letter, "transposition", trans);
}
char cblas_call::letter(int position, CBLAS_UPLO uplo) {
  return chosen(position, uplo == CblasUpper ? 'U' : uplo == CblasLower ? 'L' : '\0', "triangle", uplo);
}
char cblas_call::letter(int position, CBLAS_DIAG diag) {
  return chosen(position, diag == CblasUnit ? 'U' : diag == CblasNonUnit ? 'N' : '\0', "diagonal", diag);
}
char cblas_call::letter(int position, CBLAS_SIDE side) {
  return chosen(position, side == CblasLeft ? 'L' : side == CblasRight ? 'R' : '\0', "side", side);
}

bool cblas_call::refused(int fortran_position) {
  if (failed_) return true;
  if (fortran_position == 0) return false;
  RowMajorStrg = row_major() ? 1 : 0;
  cblas_xerbla(fortran_position + 1, name_, "%s", "");
  RowMajorStrg = 0;
  return true;
}

void cblas_call::report_no_memory() const {
  cblas_xerbla(0, name_, "%s: no memory for the conjugate of a vector\n", name_);
}

}  // namespace qel::dropin
