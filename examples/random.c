/* SPDX-License-Identifier: BSD-3-Clause
 * A stream of uniform numbers and its moments; a division whose zero divisor a callback answers.
 */
#include <qel/qel.h>

#include "check.h"

enum { kCount = 100000 };

static int answer(qel_vml_event* event) {
  printf("element %d: %g / %g\n", event->index, event->a, event->b);
  event->r1 = 0; /* takes the place of infinity */
  return 0;
}

int main(void) {
  static double r[kCount];
  qel_random_stream_handle stream = NULL;
  if (vslNewStream(&stream, QEL_BRNG_R250, 42) != QEL_RNG_OK) return 1;
  if (vdRngUniform(QEL_RNG_UNIFORM_PLAIN, stream, kCount, r, -1.0, 1.0) != QEL_RNG_OK) return 1;
  vslDeleteStream(&stream);
  double sum = 0, squares = 0;
  for (int k = 0; k < kCount; ++k) sum += r[k], squares += r[k] * r[k];
  check("the mean", sum / kCount, 0, 0.01);
  check("the variance", squares / kCount, 1.0 / 3, 0.01);
  printf("mean %.4f, variance %.4f\n", sum / kCount, squares / kCount);

  const double a[] = {1, 2, 3, 4}, b[] = {2, 0, 4, 5};
  double quotient[4];
  qel_vml_set_callback(answer);
  vdDiv(4, a, b, quotient);
  check("the quotient by 0", quotient[1], 0, 0);
  check("another one", quotient[3], 0.8, 0);
  check("the status", qel_vml_get_status(), VML_STATUS_SING, 0);
  return 0;
}
