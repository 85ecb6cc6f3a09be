// SPDX-License-Identifier: BSD-3-Clause
// The interfaces of the class library that the sparse kernel classes implement.
#pragma once

#include "tavik/core/data_block.h"
#include "tavik/core/export.h"

namespace Tavik::Matrix {

/// Operations on compressed vectors.
class TAVIK_API ILevelOneSparseBlasKernel {
 public:
  virtual ~ILevelOneSparseBlasKernel() = default;
  /// Kernel::LevelOneSparseBlas says what each does.
  virtual void axpyi(int n, float alpha, const Core::Array<float>& x, const Core::Array<int>& indx,
                     const Core::Array<float>& y, int yOffset) = 0;
  virtual void axpyi(int n, double alpha, const Core::Array<double>& x, const Core::Array<int>& indx,
                     const Core::Array<double>& y, int yOffset) = 0;
  virtual void axpyi(int n, Core::DoubleComplex alpha, const Core::Array<Core::DoubleComplex>& x,
                     const Core::Array<int>& indx, const Core::Array<Core::DoubleComplex>& y,
                     int yOffset) = 0;
  virtual void scal(int n, float alpha, const Core::Array<float>& x, int incx) = 0;
  virtual void scal(int n, double alpha, const Core::Array<double>& x, int incx) = 0;
  virtual void scal(int n, Core::DoubleComplex alpha, const Core::Array<Core::DoubleComplex>& x,
                    int incx) = 0;
  virtual double doti(int n, const Core::Array<double>& x, const Core::Array<int>& indx,
                      const Core::Array<double>& y, int yOffset) = 0;
  virtual Core::DoubleComplex doti(int n, const Core::Array<Core::DoubleComplex>& x,
                                   const Core::Array<int>& indx, const Core::Array<Core::DoubleComplex>& y,
                                   int yOffset) = 0;
  virtual void gthr(int n, const Core::Array<double>& y, int yOffset, const Core::Array<double>& x,
                    const Core::Array<int>& indx) = 0;
  virtual void gthr(int n, const Core::Array<Core::DoubleComplex>& y, int yOffset,
                    const Core::Array<Core::DoubleComplex>& x, const Core::Array<int>& indx) = 0;
  virtual void gthrz(int n, const Core::Array<double>& y, int yOffset, const Core::Array<double>& x,
                     const Core::Array<int>& indx) = 0;
  virtual void gthrz(int n, const Core::Array<Core::DoubleComplex>& y, int yOffset,
                     const Core::Array<Core::DoubleComplex>& x, const Core::Array<int>& indx) = 0;
  virtual void sctr(int n, const Core::Array<double>& x, const Core::Array<int>& indx,
                    const Core::Array<double>& y) = 0;
  virtual void sctr(int n, const Core::Array<Core::DoubleComplex>& x, const Core::Array<int>& indx,
                    const Core::Array<Core::DoubleComplex>& y) = 0;
};

/// Operations on matrices in compressed sparse row form.
class TAVIK_API ILevelTwoSparseBlasKernel {
 public:
  virtual ~ILevelTwoSparseBlasKernel() = default;
  /// Kernel::LevelTwoSparseBlas says what each does.
  virtual void csrgemv(char transa, int m, const Core::Array<double>& a, const Core::Array<int>& ia,
                       const Core::Array<int>& ja, const Core::DataBlock<double>& x,
                       const Core::Array<double>& y) = 0;
  virtual void csrgemv(char transa, int m, const Core::Array<Core::DoubleComplex>& a,
                       const Core::Array<int>& ia, const Core::Array<int>& ja,
                       const Core::DataBlock<Core::DoubleComplex>& x,
                       const Core::Array<Core::DoubleComplex>& y) = 0;
  virtual void csrmv(char transa, int m, int k, double alpha, const Core::Array<char>& matdescra,
                     const Core::Array<double>& val, const Core::Array<int>& indx,
                     const Core::Array<int>& rowPointers, const Core::Array<double>& x, int indxOffset,
                     double beta, const Core::Array<double>& y) = 0;
  virtual void csrmv(char transa, int m, int k, Core::DoubleComplex alpha, const Core::Array<char>& matdescra,
                     const Core::Array<Core::DoubleComplex>& val, const Core::Array<int>& indx,
                     const Core::Array<int>& rowPointers, const Core::Array<Core::DoubleComplex>& x,
                     int indxOffset, Core::DoubleComplex beta, const Core::Array<Core::DoubleComplex>& y) = 0;
  virtual int csradd(char transa, int request, int sort, int m, int n, const Core::Array<double>& a,
                     const Core::Array<int>& ja, const Core::Array<int>& ia, double beta,
                     const Core::Array<double>& b, const Core::Array<int>& jb, const Core::Array<int>& ib,
                     const Core::Array<double>& c, const Core::Array<int>& jc, const Core::Array<int>& ic,
                     int nzmax) = 0;
  virtual int csradd(char transa, int request, int sort, int m, int n,
                     const Core::Array<Core::DoubleComplex>& a, const Core::Array<int>& ja,
                     const Core::Array<int>& ia, Core::DoubleComplex beta,
                     const Core::Array<Core::DoubleComplex>& b, const Core::Array<int>& jb,
                     const Core::Array<int>& ib, const Core::Array<Core::DoubleComplex>& c,
                     const Core::Array<int>& jc, const Core::Array<int>& ic, int nzmax) = 0;
  virtual int csrmultcsr(char transa, int request, int sort, int m, int n, int k,
                         const Core::Array<double>& a, const Core::Array<int>& ja, const Core::Array<int>& ia,
                         const Core::Array<double>& b, const Core::Array<int>& jb, const Core::Array<int>& ib,
                         const Core::Array<double>& c, const Core::Array<int>& jc, const Core::Array<int>& ic,
                         int nzmax) = 0;
  virtual int csrmultcsr(char transa, int request, int sort, int m, int n, int k,
                         const Core::Array<Core::DoubleComplex>& a, const Core::Array<int>& ja,
                         const Core::Array<int>& ia, const Core::Array<Core::DoubleComplex>& b,
                         const Core::Array<int>& jb, const Core::Array<int>& ib,
                         const Core::Array<Core::DoubleComplex>& c, const Core::Array<int>& jc,
                         const Core::Array<int>& ic, int nzmax) = 0;
  virtual void csrmultd(char transa, int m, int n, int k, const Core::Array<double>& a,
                        const Core::Array<int>& ja, const Core::Array<int>& ia, const Core::Array<double>& b,
                        const Core::Array<int>& jb, const Core::Array<int>& ib, const Core::Array<double>& c,
                        int ldc) = 0;
  virtual void csrmultd(char transa, int m, int n, int k, const Core::Array<Core::DoubleComplex>& a,
                        const Core::Array<int>& ja, const Core::Array<int>& ia,
                        const Core::Array<Core::DoubleComplex>& b, const Core::Array<int>& jb,
                        const Core::Array<int>& ib, const Core::Array<Core::DoubleComplex>& c, int ldc) = 0;
  virtual int ddnscsr(const Core::Array<int>& job, int m, int n, const Core::Array<double>& adns, int lda,
                      const Core::Array<double>& acsr, const Core::Array<int>& ja,
                      const Core::Array<int>& ia) = 0;
};

/// The direct solver of sparse systems.
class TAVIK_API IQelPardisoSolverKernel {
 public:
  virtual ~IQelPardisoSolverKernel() = default;
  /// Kernel::QelPardisoSolver says what each does.
  virtual int Factor(int n, const Core::Array<double>& a, const Core::Array<int>& ia,
                     const Core::Array<int>& ja) = 0;
  virtual int Factor(int n, const Core::Array<Core::DoubleComplex>& a, const Core::Array<int>& ia,
                     const Core::Array<int>& ja) = 0;
  virtual int Solve(int n, const Core::Array<double>& a, const Core::Array<int>& ia,
                    const Core::Array<int>& ja, int nrhs, const Core::Array<double>& b,
                    const Core::Array<double>& x) = 0;
  virtual int Solve(int n, const Core::Array<Core::DoubleComplex>& a, const Core::Array<int>& ia,
                    const Core::Array<int>& ja, int nrhs, const Core::Array<Core::DoubleComplex>& b,
                    const Core::Array<Core::DoubleComplex>& x) = 0;
  virtual void Dispose() = 0;
};

}  // namespace Tavik::Matrix
