/* SPDX-License-Identifier: BSD-3-Clause
 * Products of matrices, on one thread and on all, and a triangular system with many right-hand sides.
 */
#include <qel/qel.h>

#include "check.h"

enum { kOrder = 300 };

int main(void) {
  double* a = malloc(sizeof(double) * kOrder * kOrder);
  double* b = malloc(sizeof(double) * kOrder * kOrder);
  double* c = malloc(sizeof(double) * kOrder * kOrder);
  if (a == NULL || b == NULL || c == NULL) return 1;
  for (int j = 0; j < kOrder; ++j) {
    for (int i = 0; i < kOrder; ++i) {
      a[i + j * kOrder] = i == j ? 2.0 : 0.0; /* A = 2 I, so that A B = 2 B */
      b[i + j * kOrder] = i + 0.001 * j;
    }
  }
  const int n = kOrder;
  const double one = 1.0, zero = 0.0;

  qel_set_num_threads_local(1); /* for this thread only */
  dgemm("N", "N", &n, &n, &n, &one, a, &n, b, &n, &zero, c, &n);
  check("an element of A B", c[7 + 9 * kOrder], 2.0 * (7 + 0.009), 1e-12);

  qel_set_num_threads_local(0); /* what the library takes by itself */
  dgemm("N", "T", &n, &n, &n, &one, a, &n, b, &n, &zero, c, &n);
  check("an element of A B^T", c[7 + 9 * kOrder], 2.0 * (9 + 0.007), 1e-12);

  dtrsm("L", "U", "N", "N", &n, &n, &one, a, &n, b, &n); /* B := inverse of A, times B */
  check("an element of the solution", b[7 + 9 * kOrder], 0.5 * (7 + 0.009), 1e-12);

  printf("products of order %d on up to %d threads\n", n, qel_get_num_threads(1));
  free(a);
  free(b);
  free(c);
  return 0;
}
