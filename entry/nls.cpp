// SPDX-License-Identifier: BSD-3-Clause
// Entries of nonlinear least squares: arguments are tested here, handles turned into runs.
#include "qel/nls.h"

#include <algorithm>

#include "nls/jacobian.h"
#include "nls/trust_region.h"
#include "service/serv.h"

namespace {

using namespace qel::nls;

trust_region* run_of(void** handle) { return static_cast<trust_region*>(*handle); }

template <class Record, class Make>
int make_run(void** handle, const Make& make) {
  Record* made = nullptr;
  const int status = make(&made);
  if (status == kSuccess) *handle = made;
  return status;
}

int solve(void** handle, double* fvec, const double* fjac, int* request) {
  if (*handle == nullptr) return kInvalidOption;
  trust_region& run = *run_of(handle);
  advance(run, fvec, fjac, request);
  // Kept: a failed trial step is an error only without bounds.
  return run.st_cr == kFailedStep && !run.bounded() ? kInvalidOption : kSuccess;
}

int get(void** handle, int* iter, int* st_cr, double* r1, double* r2) {
  if (*handle == nullptr) return kInvalidOption;
  const trust_region& run = *run_of(handle);
  *iter = run.iter;
  *st_cr = run.st_cr;
  *r1 = run.r1;
  *r2 = run.r2;
  return kSuccess;
}

int end(void** handle) {
  if (*handle != nullptr) delete_trust_region(run_of(handle));
  *handle = nullptr;
  return kSuccess;
}

}  // namespace

extern "C" {

int dtrnlsp_init(void** handle, const int* n, const int* m, double* x, const double* eps, const int* iter1,
                 const int* iter2, const double* rs) {
  if (!valid_options(*n, *m, eps, *iter1, *iter2, *rs)) return kInvalidOption;
  return make_run<trust_region>(handle, [&](trust_region** made) {
    return create_trust_region(made, *n, *m, x, nullptr, nullptr, eps, *iter1, *iter2, *rs);
  });
}
int dtrnlsp_solve(void** handle, double* fvec, double* fjac, int* RCI_Request) {
  return solve(handle, fvec, fjac, RCI_Request);
}
int dtrnlsp_get(void** handle, int* iter, int* st_cr, double* r1, double* r2) {
  return get(handle, iter, st_cr, r1, r2);
}
int dtrnlsp_delete(void** handle) { return end(handle); }

int dtrnlspbc_init(void** handle, const int* n, const int* m, double* x, const double* LW, const double* UP,
                   const double* eps, const int* iter1, const int* iter2, const double* rs) {
  if (!valid_options(*n, *m, eps, *iter1, *iter2, *rs)) return kInvalidOption;
  return make_run<trust_region>(handle, [&](trust_region** made) {
    return create_trust_region(made, *n, *m, x, LW, UP, eps, *iter1, *iter2, *rs);
  });
}
int dtrnlspbc_solve(void** handle, double* fvec, double* fjac, int* RCI_Request) {
  return solve(handle, fvec, fjac, RCI_Request);
}
int dtrnlspbc_get(void** handle, int* iter, int* st_cr, double* r1, double* r2) {
  return get(handle, iter, st_cr, r1, r2);
}
int dtrnlspbc_delete(void** handle) { return end(handle); }

int qel_dtrnlsp_option(void** handle, const int* option, const int* value) {
  if (*handle == nullptr || *option < QEL_NLS_MODERN || *option > QEL_NLS_UNIT_FREE_RADIUS ||
      (*value != 0 && *value != 1))
    return kInvalidOption;
  modern_rules& rules = run_of(handle)->modern;
  const bool on = *value == 1, all = *option == QEL_NLS_MODERN;
  if (all || *option == QEL_NLS_RADIUS_GROWS) rules.radius_grows = on;
  if (all || *option == QEL_NLS_SCALED_NORM) rules.scaled_norm = on;
  if (all || *option == QEL_NLS_UNIT_FREE_RADIUS) rules.unit_free_radius = on;
  return kSuccess;
}

int qel_dtrnlsp_evaluations(void** handle, int* residuals, int* jacobians) {
  if (*handle == nullptr) return kInvalidOption;
  *residuals = run_of(handle)->f_calls;
  *jacobians = run_of(handle)->j_calls;
  return kSuccess;
}

const char* qel_nls_reason(const int* st_cr) { return stop_reason(*st_cr); }

int djacobi_init(void** handle, const int* n, const int* m, double* x, double* fjac, const double* eps) {
  if (*n < 1 || *m < 1 || !(*eps > 0)) return kInvalidOption;
  return make_run<jacobian_run>(
      handle, [&](jacobian_run** made) { return create_jacobian(made, *n, *m, x, fjac, *eps); });
}
int djacobi_solve(void** handle, double* f1, double* f2, int* RCI_Request) {
  if (*handle == nullptr) return kInvalidOption;
  advance_jacobian(*static_cast<jacobian_run*>(*handle), f1, f2, RCI_Request);
  return kSuccess;
}
int djacobi_delete(void** handle) {
  delete_jacobian(static_cast<jacobian_run*>(*handle));
  *handle = nullptr;
  return kSuccess;
}

int djacobi(qel_residual_function fcn, const int* n, const int* m, double* fjac, double* x,
            const double* eps) {
  if (*n < 1 || !(*eps > 0)) return kInvalidOption;
  // Kept: only the failure on one thread is told.
  return jacobian_by_calls(fcn, *n, *m, fjac, x, *eps, qel::serv_threads_all()) == -1 ? kOutOfMemory
                                                                                      : kSuccess;
}
int qel_djacobi(qel_residual_function fcn, const int* n, const int* m, double* fjac, double* x,
                const double* eps, const int* max_threads) {
  if (*n < 1 || *m < 1 || !(*eps > 0) || *max_threads < 1) return kInvalidOption;
  const int threads = std::min({qel::serv_threads_all(), *max_threads, *n});
  return jacobian_by_calls(fcn, *n, *m, fjac, x, *eps, threads) == 0 ? kSuccess : kOutOfMemory;
}

// The Fortran names.
QEL_API decltype(dtrnlsp_init) dtrnlsp_init_ __attribute__((alias("dtrnlsp_init")));
QEL_API decltype(dtrnlsp_solve) dtrnlsp_solve_ __attribute__((alias("dtrnlsp_solve")));
QEL_API decltype(dtrnlsp_get) dtrnlsp_get_ __attribute__((alias("dtrnlsp_get")));
QEL_API decltype(dtrnlsp_delete) dtrnlsp_delete_ __attribute__((alias("dtrnlsp_delete")));
QEL_API decltype(dtrnlspbc_init) dtrnlspbc_init_ __attribute__((alias("dtrnlspbc_init")));
QEL_API decltype(dtrnlspbc_solve) dtrnlspbc_solve_ __attribute__((alias("dtrnlspbc_solve")));
QEL_API decltype(dtrnlspbc_get) dtrnlspbc_get_ __attribute__((alias("dtrnlspbc_get")));
QEL_API decltype(dtrnlspbc_delete) dtrnlspbc_delete_ __attribute__((alias("dtrnlspbc_delete")));
QEL_API decltype(djacobi_init) djacobi_init_ __attribute__((alias("djacobi_init")));
QEL_API decltype(djacobi_solve) djacobi_solve_ __attribute__((alias("djacobi_solve")));
QEL_API decltype(djacobi_delete) djacobi_delete_ __attribute__((alias("djacobi_delete")));
QEL_API decltype(djacobi) djacobi_ __attribute__((alias("djacobi")));

}  // extern "C"
