// SPDX-License-Identifier: BSD-3-Clause
#include "tavik/kernel/trust_region_kernel.h"

#include <string>
#include <vector>

#include "qel/nls.h"

namespace Tavik::Kernel {
namespace {

using Analysis::TrustRegionFunction;

void require_success(int code, const char* routine) {
  if (code != QEL_NLS_SUCCESS) throw Core::Exception(std::string("Error in ") + routine);
}

/// Frees a run when its scope is left by an exception; else its end is called by name.
template <int (*kDelete)(void**)>
class run_handle {
 public:
  run_handle() = default;
  ~run_handle() { kDelete(&run_); }
  run_handle(const run_handle&) = delete;
  run_handle& operator=(const run_handle&) = delete;
  operator void**() { return &run_; }

 private:
  void* run_ = nullptr;
};

/// What differs between the solvers.
struct solver_routines {
  int (*solve)(void**, double*, double*, int*);
  int (*get)(void**, int*, int*, double*, double*);
  int (*end)(void**);
  const char *in_solve, *in_get, *in_delete;
};
constexpr solver_routines kUnbounded = {TrustRegionKernel::tavik_dtrnlsp_solve,
                                        TrustRegionKernel::tavik_dtrnlsp_get,
                                        dtrnlsp_delete,
                                        "dtrnlsp_solve",
                                        "dtrnlsp_get",
                                        "dtrnlsp_delete"};
constexpr solver_routines kBounded = {TrustRegionKernel::tavik_dtrnlspbc_solve,
                                      TrustRegionKernel::tavik_dtrnlspbc_get,
                                      dtrnlspbc_delete,
                                      "dtrnlspbc_solve",
                                      "dtrnlspbc_get",
                                      "dtrnlspbc_delete"};

/// The first element of a vector of n in array from offset on; both its ends are checked. An n that the
/// solvers will refuse is left to them.
double* checked_vector(const Core::Array<double>& array, int offset, int n) {
  if (n < 1) return nullptr;
  static_cast<void>(array[offset + n - 1]);
  return &array[offset];
}

/// Copies a user's result, all of whose values must be there.
void take_values(const Core::Array<double>& values, std::vector<double>& into) {
  if (into.empty()) return;
  static_cast<void>(values[static_cast<int>(into.size()) - 1]);
  const double* first = &values[0];
  into.assign(first, first + into.size());
}

std::vector<double> zeros(int count, int times = 1) {
  return std::vector<double>(
      count > 0 && times > 0 ? static_cast<std::size_t>(count) * static_cast<std::size_t>(times) : 0);
}

const double kDifferenceStep = 6.0554544523933429e-6;  // cube root of 2^-52

/// Fills fjac at the n elements of x from at on; the function sees all of x.
void jacobian_by_differences(int n, int m, const TrustRegionFunction& f, const Core::Array<double>& x,
                             double* at, double* fjac, double step) {
  std::vector<double> f1 = zeros(m), f2 = zeros(m);
  run_handle<TrustRegionKernel::tavik_djacobi_delete> run;
  require_success(djacobi_init(run, &n, &m, at, fjac, &step), "djacobi_init");
  int request = 0;
  do {
    require_success(TrustRegionKernel::tavik_djacobi_solve(run, f1.data(), f2.data(), &request),
                    "djacobi_solve");
    if (request == 1) take_values(f(x), f1);
    if (request == 2) take_values(f(x), f2);
  } while (request != 0);
  require_success(djacobi_delete(run), "djacobi_delete");
}

struct problem {
  int n, m;
  const TrustRegionFunction& f;
  const TrustRegionFunction& jacobian;
  const Core::Array<double>& x;
  double* at;   ///< the unknowns in x
  double step;  ///< of differences, where there is no Jacobian
};
struct outcome {
  int &iterations, &stop;
  double &first, &last;
};

/// Answers the run's requests to its end.
void run_to_end(const solver_routines& call, void** run, const problem& p, const outcome& result) {
  std::vector<double> fvec = zeros(p.m), fjac = zeros(p.m, p.n);
  for (int request = 0;;) {
    require_success(call.solve(run, fvec.data(), fjac.data(), &request), call.in_solve);
    if (request >= -6 && request <= -1) break;
    // With bounds only the stop code tells a failed trial step, which would be asked for again and again.
    require_success(call.get(run, &result.iterations, &result.stop, &result.first, &result.last),
                    call.in_get);
    if (result.stop < 0) require_success(QEL_NLS_INVALID_OPTION, call.in_solve);
    if (request == 1) take_values(p.f(p.x), fvec);
    if (request != 2) continue;
    if (p.jacobian) {
      take_values(p.jacobian(p.x), fjac);
    } else {
      jacobian_by_differences(p.n, p.m, p.f, p.x, p.at, fjac.data(), p.step);
    }
  }
  require_success(call.get(run, &result.iterations, &result.stop, &result.first, &result.last), call.in_get);
  require_success(call.end(run), call.in_delete);
}

void choose_rules(void** run, bool modern) {
  constexpr int kAll = QEL_NLS_MODERN, kOn = 1;
  if (modern) qel_dtrnlsp_option(run, &kAll, &kOn);
}

}  // namespace

void TrustRegionKernel::Solve(int n, int m, const TrustRegionFunction& objective_function,
                              const Core::Array<double>& x, int xOffset,
                              const TrustRegionFunction& jacobian_function, const Core::Array<double>& eps,
                              int max_iterations, int max_trial_step_iterations, double initial_step_bound,
                              int& num_iterations, int& stop_criterion, double& initial_residual,
                              double& final_residual) {
  double* const at = checked_vector(x, xOffset, n);
  const double* const tolerances = checked_vector(eps, 0, 6);
  run_handle<tavik_dtrnlsp_delete> run;
  require_success(dtrnlsp_init(run, &n, &m, at, tolerances, &max_iterations, &max_trial_step_iterations,
                               &initial_step_bound),
                  "dtrnlsp_init");
  choose_rules(run, UseModernRules);
  run_to_end(
      kUnbounded, run,
      {n, m, objective_function, jacobian_function, x, at, UseModernRules ? kDifferenceStep : tolerances[0]},
      {num_iterations, stop_criterion, initial_residual, final_residual});
}

void TrustRegionKernel::SolveWithBoundaryContraints(
    int n, int m, const TrustRegionFunction& objective_function, const Core::Array<double>& x,
    const Core::Array<double>& lower_bounds, const Core::Array<double>& upper_bounds,
    const TrustRegionFunction& jacobian_function, const Core::Array<double>& eps, int max_iterations,
    int max_trial_step_iterations, double initial_step_bound, int& num_iterations, int& stop_criterion,
    double& initial_residual, double& final_residual) {
  double* const at = checked_vector(x, 0, n);
  const double *const lower = checked_vector(lower_bounds, 0, n), *const upper =
                                                                      checked_vector(upper_bounds, 0, n);
  const double* const tolerances = checked_vector(eps, 0, 6);
  run_handle<tavik_dtrnlspbc_delete> run;
  require_success(dtrnlspbc_init(run, &n, &m, at, lower, upper, tolerances, &max_iterations,
                                 &max_trial_step_iterations, &initial_step_bound),
                  "dtrnlspbc_init");
  choose_rules(run, UseModernRules);
  run_to_end(
      kBounded, run,
      {n, m, objective_function, jacobian_function, x, at, UseModernRules ? kDifferenceStep : tolerances[0]},
      {num_iterations, stop_criterion, initial_residual, final_residual});
}

void TrustRegionKernel::ComputeJacobian(int n, int m, const TrustRegionFunction& objective_function,
                                        const Core::Array<double>& x, const Core::Array<double>& jacx,
                                        double tolerance) {
  if (n > 0 && m > 0) static_cast<void>(jacx[static_cast<int>(static_cast<long>(n) * m - 1)]);
  jacobian_by_differences(n, m, objective_function, x, checked_vector(x, 0, n),
                          n > 0 && m > 0 ? &jacx[0] : nullptr, tolerance);
}
void TrustRegionKernel::ComputeJacobian(int n, int m, const TrustRegionFunction& objective_function,
                                        const Core::Array<double>& x, const Core::Array<double>& jacx) {
  ComputeJacobian(n, m, objective_function, x, jacx, kDifferenceStep);
}

int TrustRegionKernel::tavik_dtrnlsp_init(void** handle, const int* n, const int* m, double* x,
                                          const double* eps, const int* iter1, const int* iter2,
                                          const double* rs) {
  return dtrnlsp_init(handle, n, m, x, eps, iter1, iter2, rs);
}
int TrustRegionKernel::tavik_dtrnlsp_solve(void** handle, double* fvec, double* fjac, int* RCI_Request) {
  return dtrnlsp_solve(handle, fvec, fjac, RCI_Request);
}
int TrustRegionKernel::tavik_dtrnlsp_get(void** handle, int* iter, int* st_cr, double* r1, double* r2) {
  return dtrnlsp_get(handle, iter, st_cr, r1, r2);
}
int TrustRegionKernel::tavik_dtrnlsp_delete(void** handle) { return dtrnlsp_delete(handle); }
int TrustRegionKernel::tavik_dtrnlspbc_init(void** handle, const int* n, const int* m, double* x,
                                            const double* LW, const double* UP, const double* eps,
                                            const int* iter1, const int* iter2, const double* rs) {
  return dtrnlspbc_init(handle, n, m, x, LW, UP, eps, iter1, iter2, rs);
}
int TrustRegionKernel::tavik_dtrnlspbc_solve(void** handle, double* fvec, double* fjac, int* RCI_Request) {
  return dtrnlspbc_solve(handle, fvec, fjac, RCI_Request);
}
int TrustRegionKernel::tavik_dtrnlspbc_get(void** handle, int* iter, int* st_cr, double* r1, double* r2) {
  return dtrnlspbc_get(handle, iter, st_cr, r1, r2);
}
int TrustRegionKernel::tavik_dtrnlspbc_delete(void** handle) { return dtrnlspbc_delete(handle); }
int TrustRegionKernel::tavik_djacobi_init(void** handle, const int* n, const int* m, double* x, double* fjac,
                                          const double* eps) {
  return djacobi_init(handle, n, m, x, fjac, eps);
}
int TrustRegionKernel::tavik_djacobi_solve(void** handle, double* f1, double* f2, int* RCI_Request) {
  return djacobi_solve(handle, f1, f2, RCI_Request);
}
int TrustRegionKernel::tavik_djacobi_delete(void** handle) { return djacobi_delete(handle); }
int TrustRegionKernel::tavik_djacobi(void (*fcn)(int* m, int* n, double* x, double* f), const int* n,
                                     const int* m, double* fjac, double* x, const double* eps) {
  return djacobi(fcn, n, m, fjac, x, eps);
}

}  // namespace Tavik::Kernel
