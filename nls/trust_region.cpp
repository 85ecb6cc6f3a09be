// SPDX-License-Identifier: BSD-3-Clause
#include "nls/trust_region.h"

#include <initializer_list>
#include <new>

#include "service/serv.h"

namespace qel::nls {
namespace {

constexpr int kAlignment = 64;
constexpr double kDefaultBound = 100.0;

/// Takes count doubles; false if there is no memory.
bool take(double*& array, core_int count) {
  array = static_cast<double*>(serv_malloc(static_cast<size_t>(count) * sizeof(double), kAlignment));
  return array != nullptr;
}

bool take_arrays(trust_region& run) {
  const core_int n = run.n, m = run.m;
  bool all = take(run.step, n) && take(run.saved_x, n) && take(run.trial_x, n) && take(run.fsave, m) &&
             take(run.ftrial, m) && take(run.h, n * n) && take(run.l, n * n);
  for (double*& array : run.scratch) all = all && take(array, n);
  if (!run.bounded()) return all;
  all = all && take(run.scaled_jacobian, m * n);
  for (double*& array : run.bounded_m) all = all && take(array, m);
  for (double*& array : run.bounded_n) all = all && take(array, n);
  return all;
}

}  // namespace

bool valid_options(int n, int m, const double* eps, int iter1, int iter2, double rs) {
  for (int i = 0; i < 6; ++i)
    if (!(eps[i] > 0)) return false;
  return n > 0 && m >= n && iter1 > 0 && iter2 > 0 && rs >= 0 && rs <= kDefaultBound;
}

int create_trust_region(trust_region** made, int n, int m, double* x, const double* lower,
                        const double* upper, const double* eps, int iter1, int iter2, double rs) {
  void* memory = serv_malloc(sizeof(trust_region), kAlignment);
  if (memory == nullptr) return kOutOfMemory;
  auto* run = new (memory) trust_region{};
  run->first = true;
  run->n = n;
  run->m = m;
  run->x = x;
  run->lower = lower;
  run->upper = upper;
  run->eps = eps;
  run->iter1 = iter1;
  run->iter2 = iter2;
  run->rs = rs == 0 ? kDefaultBound : rs;
  if (!take_arrays(*run)) {
    delete_trust_region(run);
    return kOutOfMemory;
  }
  *made = run;
  return kSuccess;
}

void delete_trust_region(trust_region* run) {
  for (double* array :
       {run->step, run->saved_x, run->trial_x, run->fsave, run->ftrial, run->h, run->l, run->scaled_jacobian})
    serv_free(array);
  for (double* array : run->scratch) serv_free(array);
  for (double* array : run->bounded_m) serv_free(array);
  for (double* array : run->bounded_n) serv_free(array);
  serv_free(run);
}

const char* stop_reason(int st_cr) {
  switch (st_cr) {
    case kRunning:
      return "running";
    case kIterationLimit:
      return "the limit of iterations was reached";
    case kSmallRadius:
      return "the trust radius fell below its limit";
    case kSmallResidual:
      return "the residual is at or below its limit";
    case kZeroJacobian:
      return "all columns of the Jacobian are zero";
    case kSmallStep:
      return "the step is at or below its limit";
    case kNoProgress:
      return "the linear model gives no more progress";
    case kStoppedByCaller1:
    case kStoppedByCaller2:
      return "stopped by the caller";
    case kFailedStep:
      return "no trial step could be formed: F or its Jacobian is not finite";
    default:
      return "unknown";
  }
}

}  // namespace qel::nls
