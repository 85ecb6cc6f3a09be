/* SPDX-License-Identifier: BSD-3-Clause
 * A matrix in compressed rows: its structure looked over, a product with a vector, and its square.
 */
#include <qel/qel.h>

#include "check.h"

enum { kOrder = 1000 };

int main(void) {
  /* second differences: -1 2 -1, counted from 1 */
  static double a[3 * kOrder];
  static int ja[3 * kOrder], ia[kOrder + 1];
  int entries = 0;
  for (int i = 0; i < kOrder; ++i) {
    ia[i] = entries + 1;
    for (int j = i > 0 ? i - 1 : 0; j <= i + 1 && j < kOrder; ++j) {
      a[entries] = i == j ? 2 : -1;
      ja[entries++] = j + 1;
    }
  }
  ia[kOrder] = entries + 1;

  const int n = kOrder, base = 1, size = 200;
  char text[200];
  const int faults = qel_csr_check(&n, &n, ia, ja, &entries, &base, text, &size);
  if (faults != 0) {
    printf("%s\n", text);
    return 1;
  }

  static double x[kOrder], y[kOrder];
  for (int i = 0; i < kOrder; ++i) x[i] = (double)i * i;
  qel_dcsrgemv("N", &n, a, ia, ja, x, y);
  check("a second difference of squares", y[500], -2, 0);

  /* A A: count first, then fill */
  static int square_ia[kOrder + 1];
  int count = 1, fill = 2, sorted = 0, unused = 0, info = 0;
  qel_dcsrmultcsr("N", &count, &sorted, &n, &n, &n, a, ja, ia, a, ja, ia, NULL, NULL, square_ia, &unused,
                  &info);
  const int square_entries = square_ia[kOrder] - 1;
  double* square = malloc(sizeof(double) * (size_t)square_entries);
  int* square_ja = malloc(sizeof(int) * (size_t)square_entries);
  if (square == NULL || square_ja == NULL) return 1;
  qel_dcsrmultcsr("N", &fill, &sorted, &n, &n, &n, a, ja, ia, a, ja, ia, square, square_ja, square_ia,
                  &unused, &info);
  check("the middle of a row of the square", square[square_ia[500] - 1 + 2], 6, 0);
  printf("%d entries, %d in the square\n", entries, square_entries);
  free(square);
  free(square_ja);
  return 0;
}
