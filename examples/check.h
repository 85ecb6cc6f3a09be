/* SPDX-License-Identifier: BSD-3-Clause
 * What the examples share: an example checks its own result and fails if it is not what it should be.
 */
#ifndef QEL_EXAMPLES_CHECK_H
#define QEL_EXAMPLES_CHECK_H

#include <math.h>
#include <stdio.h>
#include <stdlib.h>

/* Ends the program if got is farther than tolerance from wanted. */
static inline void check(const char* what, double got, double wanted, double tolerance) {
  if (fabs(got - wanted) <= tolerance) return;
  fprintf(stderr, "%s is %.17g, not %.17g\n", what, got, wanted);
  exit(1);
}

#endif
