/* SPDX-License-Identifier: BSD-3-Clause
 * One sequence convolved with several others: a task keeps the first.
 */
#include <qel/qel.h>

#include "check.h"

enum { kFilter = 5, kSignal = 1000, kResult = kFilter + kSignal - 1 };

int main(void) {
  const double filter[kFilter] = {0.1, 0.2, 0.4, 0.2, 0.1}; /* smooths */
  static double signal[kSignal], smooth[kResult];
  VSLConvTaskPtr task = NULL;
  int status = vsldConvNewTaskX1D(&task, VSL_CONV_MODE_AUTO, kFilter, kSignal, kResult, filter, 1);
  for (int height = 1; height <= 3 && status == VSL_STATUS_OK; ++height) {
    for (int k = 0; k < kSignal; ++k) signal[k] = k < kSignal / 2 ? 0 : height; /* a step */
    status = vsldConvExecX1D(task, signal, 1, smooth, 1);
    check("before the step", smooth[kSignal / 2 - 1], 0, 0);
    check("in the middle of it", smooth[kSignal / 2 + 2], 0.7 * height, 1e-14);
    check("after it", smooth[kSignal / 2 + 4], height, 1e-14);
  }
  if (status != VSL_STATUS_OK) return 1;
  printf("three steps smoothed\n");
  return vslConvDeleteTask(&task) == VSL_STATUS_OK ? 0 : 1;
}
