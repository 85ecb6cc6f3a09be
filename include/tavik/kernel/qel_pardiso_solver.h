// SPDX-License-Identifier: BSD-3-Clause
// The direct solver of sparse systems (qel/pardiso.h) as an object.
#pragma once

#include <memory>

#include "tavik/core/export.h"
#include "tavik/matrix/sparse_interfaces.h"

namespace Tavik::Kernel {

/// One system at a time: Factor, then Solve as often as wanted. a, ia, ja: compressed rows counted from 1,
/// the upper triangle for symmetric types; Solve takes the arrays that were factored. Methods return error of
/// qel/pardiso.h, 0 if all went well; an empty array throws std::out_of_range.
class TAVIK_API QelPardisoSolver : public Matrix::IQelPardisoSolverKernel {
 public:
  /// For the factory, and to be assigned to by hand: sets nothing.
  QelPardisoSolver();
  /// mtype: the matrix type; msglvl 0 silent, 1 statistics and errors on standard output.
  QelPardisoSolver(int msglvl, int mtype);
  /// Gives the memory back, as Dispose does.
  ~QelPardisoSolver() override;
  QelPardisoSolver(const QelPardisoSolver&) = delete;
  QelPardisoSolver& operator=(const QelPardisoSolver&) = delete;
  /// A new solver, as the second constructor makes it.
  static std::unique_ptr<Matrix::IQelPardisoSolverKernel> GetInstance(int msglvl, int mtype);

  /// Analysis, then factorisation. A matrix of another order needs Dispose first.
  int Factor(int n, const Core::Array<double>& a, const Core::Array<int>& ia,
             const Core::Array<int>& ja) override;
  int Factor(int n, const Core::Array<Core::DoubleComplex>& a, const Core::Array<int>& ia,
             const Core::Array<int>& ja) override;
  int Factor(int n, const void* a, const int* ia, const int* ja);

  /// x = A^-1 b for nrhs columns of n. With Iparm[3] = 0 the solver says 0 once it has factors
  /// (qel/pardiso.h).
  int Solve(int n, const Core::Array<double>& a, const Core::Array<int>& ia, const Core::Array<int>& ja,
            int nrhs, const Core::Array<double>& b, const Core::Array<double>& x) override;
  int Solve(int n, const Core::Array<Core::DoubleComplex>& a, const Core::Array<int>& ia,
            const Core::Array<int>& ja, int nrhs, const Core::Array<Core::DoubleComplex>& b,
            const Core::Array<Core::DoubleComplex>& x) override;
  int Solve(int n, const void* a, const int* ia, const int* ja, int nrhs, void* b, void* x);

  /// Gives the memory back; may be called again.
  void Dispose() override;

  static constexpr int iparmSize = 64;  ///< length of both arrays
  void* Pt[iparmSize];                  ///< the handle
  /// Zeros: the defaults. Set Iparm[0] = 1 to choose all of them.
  int Iparm[iparmSize];
  int Msglvl;  ///< as given

 private:
  int Call(int phase, int n, const void* a, const int* ia, const int* ja, int nrhs, void* b, void* x);

  int maxfct_, mnum_, mtype_, n_;
};

}  // namespace Tavik::Kernel
