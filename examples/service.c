/* SPDX-License-Identifier: BSD-3-Clause
 * Native kernels, threads, a report of a bad argument read back, and memory given back.
 */
#include <qel/qel.h>
#include <string.h>

#include "check.h"

int main(void) {
  printf("native kernels: %s\n", qel_enable_native(1) ? "on" : "chosen otherwise"); /* before anything else */
  qel_set_num_threads(2);

  const int n = 4, too_small = 2, one = 1;
  const double alpha = 1, beta = 0;
  double a[16] = {0}, x[4] = {0}, y[4] = {7, 7, 7, 7};
  dgemv("N", &n, &n, &alpha, a, &too_small, x, &one, &beta, y, &one); /* prints a line, changes nothing */
  const qel_error_record* report = qel_last_error();
  check("the position of the leading dimension", report->argument, 6, 0);
  check("y", y[0], 7, 0);
  printf("%s: %s\n", report->routine, report->text);
  qel_clear_last_error();

  int64_t blocks = 0;
  const int64_t bytes = qel_memory_stats(&blocks);
  printf("%lld bytes in %lld blocks are kept for the next call\n", (long long)bytes, (long long)blocks);
  QEL_FreeBuffers();
  check("the bytes afterwards", (double)qel_memory_stats(&blocks), 0, 0);
  return 0;
}
