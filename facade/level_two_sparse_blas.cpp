// SPDX-License-Identifier: BSD-3-Clause
#include "tavik/kernel/level_two_sparse_blas.h"

#include "facade/calls.h"
#include "qel/sparse.h"

namespace Tavik::Kernel {
namespace {

/// Element 0, or null of an empty array: a result that the request does not fill.
template <class T>
auto* optional_pointer(const Core::Array<T>& array) {
  return array.Length() > 0 ? &array[0] : nullptr;
}

}  // namespace

void LevelTwoSparseBlas::csrgemv(char transa, int m, const Core::Array<double>& a, const Core::Array<int>& ia,
                                 const Core::Array<int>& ja, const Core::DataBlock<double>& x,
                                 const Core::Array<double>& y) {
  call(qel_dcsrgemv, transa, m, array_pointer(a), &ia[0], &ja[0], &x.Data[x.Offset], array_pointer(y));
}
void LevelTwoSparseBlas::csrgemv(char transa, int m, const Core::Array<Core::DoubleComplex>& a,
                                 const Core::Array<int>& ia, const Core::Array<int>& ja,
                                 const Core::DataBlock<Core::DoubleComplex>& x,
                                 const Core::Array<Core::DoubleComplex>& y) {
  call(qel_zcsrgemv, transa, m, array_pointer(a), &ia[0], &ja[0], &x.Data[x.Offset], array_pointer(y));
}

void LevelTwoSparseBlas::csrmv(char transa, int m, int k, double alpha, const Core::Array<char>& matdescra,
                               const Core::Array<double>& val, const Core::Array<int>& indx,
                               const Core::Array<int>& rowPointers, const Core::Array<double>& x,
                               int indxOffset, double beta, const Core::Array<double>& y) {
  call(qel_dcsrmv, transa, m, k, alpha, &matdescra[0], array_pointer(val), &indx[indxOffset], &rowPointers[0],
       &rowPointers[1], array_pointer(x), beta, array_pointer(y));
}
void LevelTwoSparseBlas::csrmv(char transa, int m, int k, Core::DoubleComplex alpha,
                               const Core::Array<char>& matdescra,
                               const Core::Array<Core::DoubleComplex>& val, const Core::Array<int>& indx,
                               const Core::Array<int>& rowPointers, const Core::Array<Core::DoubleComplex>& x,
                               int indxOffset, Core::DoubleComplex beta,
                               const Core::Array<Core::DoubleComplex>& y) {
  call(qel_zcsrmv, transa, m, k, alpha, &matdescra[0], array_pointer(val), &indx[indxOffset], &rowPointers[0],
       &rowPointers[1], array_pointer(x), beta, array_pointer(y));
}

int LevelTwoSparseBlas::csradd(char transa, int request, int sort, int m, int n, const Core::Array<double>& a,
                               const Core::Array<int>& ja, const Core::Array<int>& ia, double beta,
                               const Core::Array<double>& b, const Core::Array<int>& jb,
                               const Core::Array<int>& ib, const Core::Array<double>& c,
                               const Core::Array<int>& jc, const Core::Array<int>& ic, int nzmax) {
  int info = 0;
  call(qel_dcsradd, transa, request, sort, m, n, array_pointer(a), &ja[0], &ia[0], beta, array_pointer(b),
       &jb[0], &ib[0], optional_pointer(c), optional_pointer(jc), &ic[0], nzmax, &info);
  return info;
}
int LevelTwoSparseBlas::csradd(char transa, int request, int sort, int m, int n,
                               const Core::Array<Core::DoubleComplex>& a, const Core::Array<int>& ja,
                               const Core::Array<int>& ia, Core::DoubleComplex beta,
                               const Core::Array<Core::DoubleComplex>& b, const Core::Array<int>& jb,
                               const Core::Array<int>& ib, const Core::Array<Core::DoubleComplex>& c,
                               const Core::Array<int>& jc, const Core::Array<int>& ic, int nzmax) {
  int info = 0;
  call(qel_zcsradd, transa, request, sort, m, n, array_pointer(a), &ja[0], &ia[0], beta, array_pointer(b),
       &jb[0], &ib[0], optional_pointer(c), optional_pointer(jc), &ic[0], nzmax, &info);
  return info;
}

int LevelTwoSparseBlas::csrmultcsr(char transa, int request, int sort, int m, int n, int k,
                                   const Core::Array<double>& a, const Core::Array<int>& ja,
                                   const Core::Array<int>& ia, const Core::Array<double>& b,
                                   const Core::Array<int>& jb, const Core::Array<int>& ib,
                                   const Core::Array<double>& c, const Core::Array<int>& jc,
                                   const Core::Array<int>& ic, int nzmax) {
  int info = 0;
  call(qel_dcsrmultcsr, transa, request, sort, m, n, k, array_pointer(a), &ja[0], &ia[0], array_pointer(b),
       &jb[0], &ib[0], optional_pointer(c), optional_pointer(jc), &ic[0], nzmax, &info);
  return info;
}
int LevelTwoSparseBlas::csrmultcsr(char transa, int request, int sort, int m, int n, int k,
                                   const Core::Array<Core::DoubleComplex>& a, const Core::Array<int>& ja,
                                   const Core::Array<int>& ia, const Core::Array<Core::DoubleComplex>& b,
                                   const Core::Array<int>& jb, const Core::Array<int>& ib,
                                   const Core::Array<Core::DoubleComplex>& c, const Core::Array<int>& jc,
                                   const Core::Array<int>& ic, int nzmax) {
  int info = 0;
  call(qel_zcsrmultcsr, transa, request, sort, m, n, k, array_pointer(a), &ja[0], &ia[0], array_pointer(b),
       &jb[0], &ib[0], optional_pointer(c), optional_pointer(jc), &ic[0], nzmax, &info);
  return info;
}

void LevelTwoSparseBlas::csrmultd(char transa, int m, int n, int k, const Core::Array<double>& a,
                                  const Core::Array<int>& ja, const Core::Array<int>& ia,
                                  const Core::Array<double>& b, const Core::Array<int>& jb,
                                  const Core::Array<int>& ib, const Core::Array<double>& c, int ldc) {
  call(qel_dcsrmultd, transa, m, n, k, array_pointer(a), &ja[0], &ia[0], array_pointer(b), &jb[0], &ib[0],
       array_pointer(c), ldc);
}
void LevelTwoSparseBlas::csrmultd(char transa, int m, int n, int k, const Core::Array<Core::DoubleComplex>& a,
                                  const Core::Array<int>& ja, const Core::Array<int>& ia,
                                  const Core::Array<Core::DoubleComplex>& b, const Core::Array<int>& jb,
                                  const Core::Array<int>& ib, const Core::Array<Core::DoubleComplex>& c,
                                  int ldc) {
  call(qel_zcsrmultd, transa, m, n, k, array_pointer(a), &ja[0], &ia[0], array_pointer(b), &jb[0], &ib[0],
       array_pointer(c), ldc);
}

int LevelTwoSparseBlas::ddnscsr(const Core::Array<int>& job, int m, int n, const Core::Array<double>& adns,
                                int lda, const Core::Array<double>& acsr, const Core::Array<int>& ja,
                                const Core::Array<int>& ia) {
  int info = 0;
  call(qel_ddnscsr, &job[0], m, n, array_pointer(adns), lda, optional_pointer(acsr), optional_pointer(ja),
       &ia[0], &info);
  return info;
}

}  // namespace Tavik::Kernel
