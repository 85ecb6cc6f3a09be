/* SPDX-License-Identifier: BSD-3-Clause
 * Heat in a square plate, step by step: the pattern is analysed once, values are factored when the time step
 * changes, and each step is a solve.
 */
#include <qel/qel.h>

#include "check.h"

enum { kSide = 40, kOrder = kSide * kSide };

static double a[3 * kOrder];
static int ja[3 * kOrder], ia[kOrder + 1];

/* I + step times the five-point Laplacian: positive definite, so the upper triangle is all there is to give.
 */
static void assemble(double step) {
  int entries = 0;
  for (int i = 0; i < kOrder; ++i) {
    ia[i] = entries + 1;
    ja[entries] = i + 1;
    a[entries++] = 1 + 4 * step;
    if (i % kSide + 1 < kSide) ja[entries] = i + 2, a[entries++] = -step;
    if (i + kSide < kOrder) ja[entries] = i + kSide + 1, a[entries++] = -step;
  }
  ia[kOrder] = entries + 1;
}

int main(void) {
  void* handle[64] = {0}; /* zero before the first call */
  int iparm[64] = {0};    /* the defaults */
  const int maxfct = 1, mnum = 1, mtype = 2, n = kOrder, nrhs = 1, silent = 0;
  static double heat[kOrder], next[kOrder];
  heat[kOrder / 2 + kSide / 2] = 1;

  int error = 0, phase = 11;
  assemble(0.1);
  pardiso(handle, &maxfct, &mnum, &mtype, &phase, &n, a, ia, ja, NULL, &nrhs, iparm, &silent, NULL, NULL,
          &error);
  for (int stretch = 0; stretch < 2 && error == 0; ++stretch) {
    assemble(stretch == 0 ? 0.1 : 0.4); /* other values, the same pattern */
    phase = 22;
    pardiso(handle, &maxfct, &mnum, &mtype, &phase, &n, a, ia, ja, NULL, &nrhs, iparm, &silent, NULL, NULL,
            &error);
    for (int step = 0; step < 5 && error == 0; ++step) {
      phase = 33;
      pardiso(handle, &maxfct, &mnum, &mtype, &phase, &n, a, ia, ja, NULL, &nrhs, iparm, &silent, heat, next,
              &error);
      const int one = 1;
      dcopy(&n, next, &one, heat, &one);
    }
  }
  check("error", error, 0, 0);

  qel_pardiso_quality quality;
  qel_pardiso_report(handle, mnum, a, ia, ja, 0, NULL, NULL, NULL, &quality);
  printf("%d unknowns, %d entries in the factor; %s\n", n, iparm[17], quality.text);
  double total = 0;
  for (int i = 0; i < kOrder; ++i) total += heat[i];
  check("the heat that is left", total, 1, 0.01); /* little has reached the edge */

  phase = -1; /* gives the memory back */
  pardiso(handle, &maxfct, &mnum, &mtype, &phase, &n, NULL, NULL, NULL, NULL, &nrhs, iparm, &silent, NULL,
          NULL, &error);
  return error;
}
