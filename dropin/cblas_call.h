// SPDX-License-Identifier: BSD-3-Clause
// One call of the C interface on its way to the column-major core: translates the options to letters,
// reports bad arguments to cblas_xerbla, and holds the conjugated vectors that row-major complex calls need
// (a row-major Hermitian matrix is, read by columns, the conjugate one).
// A row-major call becomes the column-major call on the transposed matrices; positions reported are those of
// that call plus one for the layout, which is what handlers of cblas_xerbla expect.
#pragma once

#include <memory>
#include <new>

#include "dropin/cblas_names.h"
#include "service/complex_arithmetic.h"

namespace qel::dropin {

class cblas_call {
 public:
  /// Reports a layout that is neither.
  cblas_call(const char* name, CBLAS_LAYOUT layout);

  /// The option's letter; a wrong one is reported with its position, unless something was before.
  char letter(int position, CBLAS_TRANSPOSE trans);
  char letter(int position, CBLAS_UPLO uplo);
  char letter(int position, CBLAS_DIAG diag);
  char letter(int position, CBLAS_SIDE side);

  bool row_major() const { return layout_ == CblasRowMajor; }
  /// True if an option was wrong, or the argument test found the column-major call's position bad, which is
  /// then reported.
  bool refused(int fortran_position);
  void report_no_memory() const;

 private:
  char chosen(int position, char letter, const char* option, int value);

  const char* name_;
  CBLAS_LAYOUT layout_;
  bool failed_ = false;
};

/// The other triangle.
inline char flipped_uplo(char uplo) { return uplo == 'U' ? 'L' : 'U'; }
/// The other side.
inline char flipped_side(char side) { return side == 'L' ? 'R' : 'L'; }
/// op on the transposed matrix; C turns to N, where complex callers see to the conjugation.
inline char flipped_trans(char trans) { return trans == 'N' ? 'T' : 'N'; }

/// conj(x) in its order of elements, at stride 1; empty-handed if memory is out.
template <class T>
class conjugated {
 public:
  conjugated(int n, const T* x, int incx) : copy_(new (std::nothrow) T[n > 0 ? static_cast<size_t>(n) : 0]) {
    if (copy_ == nullptr || n <= 0) return;
    const T* first = incx < 0 ? x - static_cast<core_int>(n - 1) * incx : x;
    for (core_int i = 0; i < n; ++i) copy_[static_cast<size_t>(i)] = conj(first[i * incx]);
  }
  explicit operator bool() const { return copy_ != nullptr; }
  const T* data() const { return copy_.get(); }

 private:
  std::unique_ptr<T[]> copy_;
};
/// The stride of a conjugated copy.
inline constexpr int kCopyStride = 1;

/// x = conj(x) in place.
template <class T>
void conjugate(int n, T* x, int incx) {
  const core_int stride = incx < 0 ? -static_cast<core_int>(incx) : incx;
  for (core_int i = 0; i < n; ++i) x[i * stride] = conj(x[i * stride]);
}

}  // namespace qel::dropin
