/* SPDX-License-Identifier: BSD-3-Clause
 * Exponential decay fitted to measurements: y = a exp(-b t). The solver asks, the program answers.
 */
#include <qel/qel.h>

#include "check.h"

enum { kPoints = 20, kParameters = 2 };

static void residuals(const double* x, double* f) {
  for (int i = 0; i < kPoints; ++i) f[i] = x[0] * exp(-x[1] * i) - 5 * exp(-0.3 * i); /* model less data */
}

static void jacobian(const double* x, double* j) {
  for (int i = 0; i < kPoints; ++i) {
    j[i] = exp(-x[1] * i);
    j[i + kPoints] = -i * x[0] * exp(-x[1] * i);
  }
}

int main(void) {
  const int n = kParameters, m = kPoints, most_steps = 100, most_rounds = 100;
  const double first_radius = 100;
  const double eps[6] = {1e-10, 1e-10, 1e-10, 1e-10, 1e-10, 1e-10};
  double x[kParameters] = {1, 1}, f[kPoints] = {0}, j[kPoints * kParameters] = {0};
  void* run = NULL;
  if (dtrnlsp_init(&run, &n, &m, x, eps, &most_steps, &most_rounds, &first_radius) != QEL_NLS_SUCCESS)
    return 1;
  int request = 0;
  while (dtrnlsp_solve(&run, f, j, &request) == QEL_NLS_SUCCESS && request >= 0) {
    if (request == 1) residuals(x, f);
    if (request == 2) jacobian(x, j);
  }
  int steps = 0, reason = 0;
  double before = 0, after = 0;
  dtrnlsp_get(&run, &steps, &reason, &before, &after);
  dtrnlsp_delete(&run);
  printf("a = %g, b = %g after %d steps: %s\n", x[0], x[1], steps, qel_nls_reason(&reason));
  check("a", x[0], 5, 1e-7);
  check("b", x[1], 0.3, 1e-7);
  return 0;
}
