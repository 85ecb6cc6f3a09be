/* SPDX-License-Identifier: BSD-3-Clause
 * A straight line through points by QR, singular values, and the eigenvalues of a packed symmetric matrix.
 */
#include <qel/qel.h>

#include "check.h"

static void fit_line(void) {
  /* columns: 1, t; measurements y = 2 + 0.5 t */
  double a[] = {1, 1, 1, 1, 0, 1, 2, 3};
  double y[] = {2.0, 2.5, 3.0, 3.5};
  const int m = 4, n = 2, nrhs = 1;
  int lwork = -1, info = 0;
  double best = 0;
  dgels("N", &m, &n, &nrhs, a, &m, y, &m, &best, &lwork, &info); /* the size query */
  lwork = (int)best;
  double* work = malloc(sizeof(double) * (size_t)lwork);
  if (work == NULL) exit(1);
  dgels("N", &m, &n, &nrhs, a, &m, y, &m, work, &lwork, &info);
  free(work);
  check("info of dgels", info, 0, 0);
  check("intercept", y[0], 2.0, 1e-14);
  check("slope", y[1], 0.5, 1e-14);
  printf("y = %g + %g t\n", y[0], y[1]);
}

static void singular_values(void) {
  double a[] = {3, 0, 4, 5}; /* [3 4; 0 5] */
  const int n = 2, lwork = 64;
  double s[2], work[64];
  int info = 0;
  dgesvd("N", "N", &n, &n, a, &n, s, NULL, &n, NULL, &n, work, &lwork, &info);
  check("info of dgesvd", info, 0, 0);
  check("their product, the determinant", s[0] * s[1], 15, 1e-13);
  check("their squares, the sum of squares", s[0] * s[0] + s[1] * s[1], 50, 1e-13);
  printf("singular values %g %g\n", s[0], s[1]);
}

static void eigenvalues(void) {
  double ap[] = {2, -1, 2, 0, -1, 2}; /* the upper triangle, column after column */
  const int n = 3, ldz = 1;
  double w[3], work[24];
  int info = 0;
  /* all of them, no vectors */
  const double low = 0, high = 0, tolerance = 0;
  const int first = 0, last = 0;
  int found = 0, iwork[15], fail[3];
  dspevx("N", "A", "U", &n, ap, &low, &high, &first, &last, &tolerance, &found, w, NULL, &ldz, work, iwork,
         fail, &info);
  check("info of dspevx", info, 0, 0);
  for (int k = 0; k < 3; ++k) check("an eigenvalue", w[k], 2 - 2 * cos((k + 1) * acos(-1.0) / 4), 1e-14);
  printf("eigenvalues %g %g %g\n", w[0], w[1], w[2]);
}

int main(void) {
  fit_line();
  singular_values();
  eigenvalues();
  return 0;
}
