/* SPDX-License-Identifier: BSD-3-Clause */
/* A program of somebody else, in C: one call each of dense, transform and sparse entries. */
#include <qel/qel.h>
#include <stdio.h>
#include <string.h>

static double largest(double a, double b) { return a > b ? a : b; }

int main(void) {
  /* columns of A, one after another */
  double a[] = {2, 1, 0, 1, 3, 1, 0, 1, 4}, x[] = {3, 5, 5}, error = 0;
  int n = 3, one = 1, info = 0, ipiv[3];
  dgesv(&n, &one, a, &n, ipiv, x, &n, &info);
  for (int i = 0; i < 3; ++i) error = largest(error, x[i] > 1 ? x[i] - 1 : 1 - x[i]);

  double data[8] = {1, 0, 0, 0, 0, 0, 0, 0}; /* four complex numbers: an impulse, whose spectrum is ones */
  DFTI_DESCRIPTOR_HANDLE transform = NULL;
  int status = DftiCreateDescriptor(&transform, DFTI_DOUBLE, DFTI_COMPLEX, 1, 4);
  status |= DftiCommitDescriptor(transform);
  status |= DftiComputeForward(transform, data);
  status |= DftiFreeDescriptor(&transform);
  for (int i = 0; i < 8; ++i)
    error = largest(error, data[i] > (i % 2 == 0) ? data[i] - 1 : (i % 2 == 0) - data[i]);

  /* the same system, sparse: a general matrix in rows */
  double values[] = {2, 1, 1, 3, 1, 1, 4}, b[] = {3, 5, 5}, y[3];
  int rows[] = {1, 3, 6, 8}, columns[] = {1, 2, 1, 2, 3, 2, 3};
  void* pt[64];
  int iparm[64], type = 11, phase = 13, quiet = 0, fault = 0, none[3];
  memset(pt, 0, sizeof pt);
  memset(iparm, 0, sizeof iparm);
  pardiso(pt, &one, &one, &type, &phase, &n, values, rows, columns, none, &one, iparm, &quiet, b, y, &fault);
  for (int i = 0; i < 3; ++i) error = largest(error, y[i] > 1 ? y[i] - 1 : 1 - y[i]);
  int end = -1, released = 0;
  pardiso(pt, &one, &one, &type, &end, &n, values, rows, columns, none, &one, iparm, &quiet, b, y, &released);

  if (info != 0 || status != 0 || fault != 0 || released != 0 || !(error < 1e-14)) {
    printf("info %d, status %d, pardiso %d %d, error %g\n", info, status, fault, released, error);
    return 1;
  }
  puts("right");
  return 0;
}
