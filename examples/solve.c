/* SPDX-License-Identifier: BSD-3-Clause
 * Solves a 3 by 3 system and checks it with a dot product.
 *   cc solve.c -I PREFIX/include -L PREFIX/lib... -lqel
 */
#include <qel/qel.h>
#include <stdio.h>

int main(void) {
  /* columns of A, one after another */
  double a[] = {2, 1, 0, 1, 3, 1, 0, 1, 4};
  const double first_row[] = {2, 1, 0};
  double x[] = {3, 5, 5}; /* right-hand side, then solution */
  int n = 3, one = 1, info = 0, ipiv[3];
  if (dgesv(&n, &one, a, &n, ipiv, x, &n, &info) != 0) {
    printf("no solution: info %d\n", info);
    return 1;
  }
  printf("x = %g %g %g, first row times x = %g\n", x[0], x[1], x[2], ddot(&n, first_row, &one, x, &one));
  return 0;
}
