// SPDX-License-Identifier: BSD-3-Clause
#include "nls/jacobian.h"

#include <algorithm>
#include <cmath>

#include "blas/plain/scratch.h"
#include "nls/dense.h"
#include "nls/trust_region.h"

namespace qel::nls {
namespace {

/// The points of a column's difference quotient and its divisor, which has the sign of x.
struct difference {
  double forward, backward, divisor;
};
difference difference_at(double x, double eps) {
  if (eps >= std::fabs(x)) return {x + eps, x - eps, 2 * eps};
  return {x * (1 + eps), x * (1 - eps), 2 * eps * x};
}

/// column = (f1 - f2) / divisor; f1 is overwritten.
void store_quotient(core_int m, double* f1, const double* f2, double divisor, double* column) {
  axpy(m, -1.0, f2, f1);
  scale(m, 1 / divisor, f1);
  copy(m, f1, column);
}

void column_by_calls(residual_function fcn, int n, int m, int j, double eps, double* x, double* f1,
                     double* f2, double* fjac) {
  const double saved = x[j];
  const difference d = difference_at(saved, eps);
  x[j] = d.forward;
  fcn(&m, &n, x, f1);
  x[j] = d.backward;
  fcn(&m, &n, x, f2);
  x[j] = saved;
  store_quotient(m, f1, f2, d.divisor, fjac + static_cast<core_int>(j) * m);
}

}  // namespace

int create_jacobian(jacobian_run** made, int n, int m, double* x, double* fjac, double eps) {
  auto* run = static_cast<jacobian_run*>(serv_malloc(sizeof(jacobian_run), 64));
  if (run == nullptr) return kOutOfMemory;
  *run = {n, m, x, fjac, eps, 1, 0, 0};
  *made = run;
  return kSuccess;
}

void delete_jacobian(jacobian_run* run) { serv_free(run); }

void advance_jacobian(jacobian_run& run, double* f1, const double* f2, int* rci) {
  if (run.column > run.n) {
    *rci = kCallAgain;
    return;
  }
  double* x = run.x + run.column - 1;
  if (*rci == 1) {
    const difference d = difference_at(run.saved, run.eps);
    *x = d.backward;
    run.h = d.divisor;
    *rci = 2;
    return;
  }
  if (*rci == 2) {
    *x = run.saved;
    store_quotient(run.m, f1, f2, run.h, run.fjac + static_cast<core_int>(run.column - 1) * run.m);
    if (++run.column > run.n) {
      *rci = kCallAgain;
      return;
    }
    ++x;
  }
  run.saved = *x;
  *x = difference_at(run.saved, run.eps).forward;
  *rci = 1;
}

int jacobian_by_calls(residual_function fcn, int n, int m, double* fjac, double* x, double eps, int threads) {
  constexpr int kAlignment = 128;
  const core_int values = m;
  if (threads < 2) {
    const plain::scratch<double> f1(values, kAlignment), f2(values, kAlignment);
    if (f1.get() == nullptr || f2.get() == nullptr) return -1;
    for (int j = 0; j < n; ++j) column_by_calls(fcn, n, m, j, eps, x, f1.get(), f2.get(), fjac);
    return 0;
  }
  const plain::scratch<double> points(core_int{threads} * n, kAlignment);
  const plain::scratch<double> f1(threads * values, kAlignment), f2(threads * values, kAlignment);
  if (points.get() == nullptr || f1.get() == nullptr || f2.get() == nullptr) return kOutOfMemory;
#pragma omp parallel for num_threads(threads) schedule(static, 1)
  for (int t = 0; t < threads; ++t) {
    double* const own = points.get() + core_int{t} * n;
    copy(n, x, own);
    for (int j = t; j < n; j += threads)
      column_by_calls(fcn, n, m, j, eps, own, f1.get() + t * values, f2.get() + t * values, fjac);
  }
  return 0;
}

}  // namespace qel::nls
