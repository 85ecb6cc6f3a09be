/* SPDX-License-Identifier: BSD-3-Clause
 * The library from plain C: public headers compile as C, calls go through their prototypes, and the Fortran
 * names answer calls as a Fortran compiler makes them, with letter lengths behind the arguments.
 */
#include <complex.h>
#include <math.h>
#include <stddef.h>
#include <stdio.h>

#include "qel/qel.h"

double ddot_(const int*, const double*, const int*, const double*, const int*);
double complex zdotc_(const int*, const double complex*, const int*, const double complex*, const int*);
float complex cdotu_(const int*, const float complex*, const int*, const float complex*, const int*);
void dgesv_(const int*, const int*, double*, const int*, int*, double*, const int*, int*);
void dgemv_(const char*, const int*, const int*, const double*, const double*, const int*, const double*,
            const int*, const double*, double*, const int*, size_t);
double dlange_(const char*, const int*, const int*, const double*, const int*, double*, size_t);

static int failures = 0;

static void expect(int holds, const char* what) {
  if (!holds) {
    printf("failed: %s\n", what);
    ++failures;
  }
}

static void plain_names(void) {
  const int n = 2, one = 1, minus = -1;
  const double x[2] = {1, 2}, y[2] = {10, 100};
  expect(ddot(&n, x, &one, y, &minus) == 120, "ddot with a negative stride");
  const _QEL_Complex16 u[2] = {{1, 2}, {3, 4}};
  _QEL_Complex16 result;
  zdotc(&result, &n, u, &one, u, &one);
  expect(result.real == 30 && result.imag == 0, "zdotc");
  double a[4] = {2, 1, 1, 3}, b[2] = {5, 10}, c[4] = {0, 0, 0, 0};
  const double alpha = 1, beta = 0;
  dgemm("n", "T", &n, &n, &n, &alpha, a, &n, a, &n, &beta, c, &n);
  expect(c[0] == 5 && c[1] == 5 && c[3] == 10, "dgemm");
  int pivots[2], info = 77;
  expect(dgesv(&n, &one, a, &n, pivots, b, &n, &info) == 0 && info == 0, "dgesv info");
  expect(fabs(b[0] - 1) < 1e-15 && fabs(b[1] - 3) < 1e-15, "dgesv solution");
  expect(pivots[0] == 1 && pivots[1] == 2, "dgesv pivots");
  const int at[2] = {2, 1};
  expect(ddoti(&n, x, at, y) == 120, "ddoti");
  QEL_Domatcopy('C', 'T', 1, 2, 2.0, x, 1, c, 2);
  expect(c[0] == 2 && c[1] == 4, "QEL_Domatcopy");
  QEL_FreeBuffers();
}

static void fortran_names(void) {
  const int n = 2, one = 1;
  const double x[2] = {1, 2}, alpha = 1, beta = 0;
  expect(ddot_(&n, x, &one, x, &one) == 5, "ddot_");
  const double complex u[2] = {1 + 2 * I, 3 - I};
  expect(zdotc_(&n, u, &one, u, &one) == 15, "zdotc_");
  const float complex v[2] = {1 + 2 * I, 3 - I};
  expect(cdotu_(&n, v, &one, v, &one) == 5 - 2 * I, "cdotu_");
  double a[4] = {2, 1, 1, 3}, b[2] = {5, 10}, y[2];
  dgemv_("T", &n, &n, &alpha, a, &n, x, &one, &beta, y, &one, 1);
  expect(y[0] == 4 && y[1] == 7, "dgemv_");
  expect(dlange_("1", &n, &n, a, &n, NULL, 1) == 4, "dlange_");
  int pivots[2], info = 77;
  dgesv_(&n, &one, a, &n, pivots, b, &n, &info);
  expect(info == 0 && fabs(b[1] - 3) < 1e-15, "dgesv_");
}

int main(void) {
  plain_names();
  fortran_names();
  return failures != 0;
}
