/* SPDX-License-Identifier: BSD-3-Clause
 * A noisy tone: its spectrum, all but the strongest frequency removed, and back.
 */
#include <qel/qel.h>

#include "check.h"

enum { kLength = 480 };

static void must(int status) {
  if (status == DFTI_NO_ERROR) return;
  fprintf(stderr, "transform: %s\n", qel_dfti_message(status));
  exit(1);
}

int main(void) {
  static double signal[kLength], cleaned[kLength];
  static _QEL_Complex16 spectrum[kLength / 2 + 1];
  const double step = 2 * acos(-1.0) * 12 / kLength; /* 12 periods */
  unsigned noise = 1;
  for (int k = 0; k < kLength; ++k) {
    noise = noise * 1664525u + 1013904223u;
    signal[k] = sin(step * k) + 0.2 * (noise / 4294967296.0 - 0.5);
  }

  DFTI_DESCRIPTOR_HANDLE plan = NULL;
  must(DftiCreateDescriptor(&plan, DFTI_DOUBLE, DFTI_REAL, 1, kLength));
  must(DftiSetValue(plan, DFTI_PLACEMENT, DFTI_NOT_INPLACE));
  must(DftiSetValue(plan, DFTI_CONJUGATE_EVEN_STORAGE, DFTI_COMPLEX_COMPLEX)); /* h + 1 complex numbers */
  must(DftiSetValue(plan, DFTI_BACKWARD_SCALE, 1.0 / kLength));                /* backward undoes forward */
  must(DftiCommitDescriptor(plan));
  must(DftiComputeForward(plan, signal, spectrum));

  int strongest = 1;
  for (int f = 1; f <= kLength / 2; ++f) {
    if (hypot(spectrum[f].real, spectrum[f].imag) > hypot(spectrum[strongest].real, spectrum[strongest].imag))
      strongest = f;
  }
  for (int f = 0; f <= kLength / 2; ++f) {
    if (f != strongest) spectrum[f].real = spectrum[f].imag = 0;
  }
  must(DftiComputeBackward(plan, spectrum, cleaned));
  must(DftiFreeDescriptor(&plan));

  check("the strongest frequency", strongest, 12, 0);
  check("the cleaned signal at its first crest", cleaned[10], 1, 0.05);
  printf("strongest frequency: %d periods, amplitude %.3f\n", strongest, cleaned[10]);
  return 0;
}
