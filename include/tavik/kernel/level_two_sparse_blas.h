// SPDX-License-Identifier: BSD-3-Clause
// Operations on matrices in compressed sparse row form: values a, their columns ja, row starts ia, counted
// from 1 (csrmv: from the base that matdescra names). transa is N, T or C of either case. A bad argument is
// reported on standard output and nothing is touched. An index outside of an array where an operand begins
// throws std::out_of_range. Structures are not checked: see qel_csr_check in qel/sparse.h.
#pragma once

#include "tavik/core/export.h"
#include "tavik/matrix/sparse_interfaces.h"

namespace Tavik::Kernel {

/// Sparse matrices (qel/sparse.h has the entries).
class TAVIK_API LevelTwoSparseBlas : public Matrix::ILevelTwoSparseBlasKernel {
 public:
  /// y = op(A) x for a square A of order m. x begins at x.Offset of its array.
  void csrgemv(char transa, int m, const Core::Array<double>& a, const Core::Array<int>& ia,
               const Core::Array<int>& ja, const Core::DataBlock<double>& x,
               const Core::Array<double>& y) override;
  void csrgemv(char transa, int m, const Core::Array<Core::DoubleComplex>& a, const Core::Array<int>& ia,
               const Core::Array<int>& ja, const Core::DataBlock<Core::DoubleComplex>& x,
               const Core::Array<Core::DoubleComplex>& y) override;

  /// y = alpha op(A) x + beta y, A m by k, described by the four letters of matdescra (qel_dcsrmv in
  /// qel/sparse.h). Row i has the entries rowPointers[i] .. rowPointers[i + 1] - 1 of val; their columns
  /// begin at element indxOffset of indx.
  void csrmv(char transa, int m, int k, double alpha, const Core::Array<char>& matdescra,
             const Core::Array<double>& val, const Core::Array<int>& indx,
             const Core::Array<int>& rowPointers, const Core::Array<double>& x, int indxOffset, double beta,
             const Core::Array<double>& y) override;
  void csrmv(char transa, int m, int k, Core::DoubleComplex alpha, const Core::Array<char>& matdescra,
             const Core::Array<Core::DoubleComplex>& val, const Core::Array<int>& indx,
             const Core::Array<int>& rowPointers, const Core::Array<Core::DoubleComplex>& x, int indxOffset,
             Core::DoubleComplex beta, const Core::Array<Core::DoubleComplex>& y) override;

  /// C = A + beta op(B), all m by n. request 0 builds C of at most nzmax entries, 1 fills only ic, 2 fills jc
  /// and c by ic; c and jc may be empty arrays for request 1. sort 1, 2, 3 sorts the rows of A, B, both in
  /// place. Returns 0 or the number, from 1, of the row that did not fit.
  int csradd(char transa, int request, int sort, int m, int n, const Core::Array<double>& a,
             const Core::Array<int>& ja, const Core::Array<int>& ia, double beta,
             const Core::Array<double>& b, const Core::Array<int>& jb, const Core::Array<int>& ib,
             const Core::Array<double>& c, const Core::Array<int>& jc, const Core::Array<int>& ic,
             int nzmax) override;
  int csradd(char transa, int request, int sort, int m, int n, const Core::Array<Core::DoubleComplex>& a,
             const Core::Array<int>& ja, const Core::Array<int>& ia, Core::DoubleComplex beta,
             const Core::Array<Core::DoubleComplex>& b, const Core::Array<int>& jb,
             const Core::Array<int>& ib, const Core::Array<Core::DoubleComplex>& c,
             const Core::Array<int>& jc, const Core::Array<int>& ic, int nzmax) override;

  /// C = op(A) B, A m by n, with request, sort and result as for csradd. N: B n by k, C m by k; T, C: B m by
  /// k, C n by k. The rows of C come sorted.
  int csrmultcsr(char transa, int request, int sort, int m, int n, int k, const Core::Array<double>& a,
                 const Core::Array<int>& ja, const Core::Array<int>& ia, const Core::Array<double>& b,
                 const Core::Array<int>& jb, const Core::Array<int>& ib, const Core::Array<double>& c,
                 const Core::Array<int>& jc, const Core::Array<int>& ic, int nzmax) override;
  int csrmultcsr(char transa, int request, int sort, int m, int n, int k,
                 const Core::Array<Core::DoubleComplex>& a, const Core::Array<int>& ja,
                 const Core::Array<int>& ia, const Core::Array<Core::DoubleComplex>& b,
                 const Core::Array<int>& jb, const Core::Array<int>& ib,
                 const Core::Array<Core::DoubleComplex>& c, const Core::Array<int>& jc,
                 const Core::Array<int>& ic, int nzmax) override;

  /// The same product into a dense column-major C with leading dimension ldc, which is zeroed first.
  void csrmultd(char transa, int m, int n, int k, const Core::Array<double>& a, const Core::Array<int>& ja,
                const Core::Array<int>& ia, const Core::Array<double>& b, const Core::Array<int>& jb,
                const Core::Array<int>& ib, const Core::Array<double>& c, int ldc) override;
  void csrmultd(char transa, int m, int n, int k, const Core::Array<Core::DoubleComplex>& a,
                const Core::Array<int>& ja, const Core::Array<int>& ia,
                const Core::Array<Core::DoubleComplex>& b, const Core::Array<int>& jb,
                const Core::Array<int>& ib, const Core::Array<Core::DoubleComplex>& c, int ldc) override;

  /// Between a dense array, element (i, j) at adns[i * lda + j], and CSR; job has the six options of
  /// qel_ddnscsr (qel/sparse.h). Returns 0 or the row that did not fit.
  int ddnscsr(const Core::Array<int>& job, int m, int n, const Core::Array<double>& adns, int lda,
              const Core::Array<double>& acsr, const Core::Array<int>& ja,
              const Core::Array<int>& ia) override;
};

}  // namespace Tavik::Kernel
