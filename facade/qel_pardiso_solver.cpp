// SPDX-License-Identifier: BSD-3-Clause
#include "tavik/kernel/qel_pardiso_solver.h"

#include "facade/calls.h"
#include "qel/pardiso.h"

namespace Tavik::Kernel {
namespace {

constexpr int kAnalysis = 11, kFactorization = 22, kSolve = 33, kRelease = -1;

}  // namespace

// The handle is empty even here, so that the destructor finds nothing to release.
QelPardisoSolver::QelPardisoSolver() : Pt{} {}  // NOLINT(cppcoreguidelines-pro-type-member-init)

QelPardisoSolver::QelPardisoSolver(int msglvl, int mtype)
    : Pt{}, Iparm{}, Msglvl(msglvl), maxfct_(1), mnum_(1), mtype_(mtype), n_(0) {}

QelPardisoSolver::~QelPardisoSolver() { QelPardisoSolver::Dispose(); }

std::unique_ptr<Matrix::IQelPardisoSolverKernel> QelPardisoSolver::GetInstance(int msglvl, int mtype) {
  return std::make_unique<QelPardisoSolver>(msglvl, mtype);
}

int QelPardisoSolver::Call(int phase, int n, const void* a, const int* ia, const int* ja, int nrhs, void* b,
                           void* x) {
  int perm = 0, error = 0;
  pardiso(Pt, &maxfct_, &mnum_, &mtype_, &phase, &n, a, ia, ja, &perm, &nrhs, Iparm, &Msglvl, b, x, &error);
  return error;
}

int QelPardisoSolver::Factor(int n, const void* a, const int* ia, const int* ja) {
  double b = 0, x = 0;
  const int error = Call(kAnalysis, n, a, ia, ja, 1, &b, &x);
  return error != 0 ? error : Call(kFactorization, n, a, ia, ja, 1, &b, &x);
}

int QelPardisoSolver::Solve(int n, const void* a, const int* ia, const int* ja, int nrhs, void* b, void* x) {
  return Call(kSolve, n, a, ia, ja, nrhs, b, x);
}

void QelPardisoSolver::Dispose() {
  if (Pt[0] == nullptr) return;
  double b = 0, x = 0;
  Call(kRelease, n_, nullptr, nullptr, nullptr, 1, &b, &x);
}

#define DEFINE(T)                                                                                           \
  int QelPardisoSolver::Factor(int n, const Core::Array<T>& a, const Core::Array<int>& ia,                  \
                               const Core::Array<int>& ja) {                                                \
    n_ = n;                                                                                                 \
    return Factor(n, static_cast<const void*>(array_pointer(a)), array_pointer(ia), array_pointer(ja));     \
  }                                                                                                         \
  int QelPardisoSolver::Solve(int n, const Core::Array<T>& a, const Core::Array<int>& ia,                   \
                              const Core::Array<int>& ja, int nrhs, const Core::Array<T>& b,                \
                              const Core::Array<T>& x) {                                                    \
    n_ = n;                                                                                                 \
    return Solve(n, static_cast<const void*>(array_pointer(a)), array_pointer(ia), array_pointer(ja), nrhs, \
                 static_cast<void*>(array_pointer(b)), static_cast<void*>(array_pointer(x)));               \
  }
DEFINE(double)
DEFINE(Core::DoubleComplex)
#undef DEFINE

}  // namespace Tavik::Kernel
