/* SPDX-License-Identifier: BSD-3-Clause
 * Complex results by value and Fortran strings as a C compiler sees them: no header of the library is used,
 * the prototypes are those that C programs write for a Fortran BLAS and LAPACK. Brings its own error handler,
 * which both libraries must call.
 */
#include <complex.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>

float _Complex cdotu_(const int* n, const float _Complex* x, const int* incx, const float _Complex* y,
                      const int* incy);
float _Complex cdotc_(const int* n, const float _Complex* x, const int* incx, const float _Complex* y,
                      const int* incy);
double _Complex zdotu_(const int* n, const double _Complex* x, const int* incx, const double _Complex* y,
                       const int* incy);
double _Complex zdotc_(const int* n, const double _Complex* x, const int* incx, const double _Complex* y,
                       const int* incy);
void dtrsv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
            const int* lda, double* x, const int* incx, size_t, size_t, size_t);
void dpotrf_(const char* uplo, const int* n, double* a, const int* lda, int* info, size_t);
/* visible to the libraries even where everything else is compiled as hidden */
__attribute__((visibility("default"))) void xerbla_(const char* name, const int* position,
                                                    size_t name_length);

static char reported_name[16];
static int reported_position;

void xerbla_(const char* name, const int* position, size_t name_length) {
  memset(reported_name, 0, sizeof reported_name);
  memcpy(reported_name, name, name_length < sizeof reported_name ? name_length : sizeof reported_name - 1);
  reported_position = *position;
}

static int failures;

static void expect(int good, const char* what) {
  if (good) return;
  printf("wrong: %s\n", what);
  ++failures;
}

int main(void) {
  const int n = 2, one = 1, minus_one = -1, short_ld = 1;
  const float _Complex cx[2] = {1 + 2 * I, 3 - 1 * I}, cy[2] = {2 - 1 * I, -1 + 4 * I};
  const double _Complex zx[2] = {1 + 2 * I, 3 - 1 * I}, zy[2] = {2 - 1 * I, -1 + 4 * I};
  double a[4] = {1, 0, 0, 1}, x[2] = {5, 6};
  int info = 0;

  expect(cdotu_(&n, cx, &one, cy, &one) == 5 + 16 * I, "cdotu_");
  expect(cdotc_(&n, cx, &one, cy, &one) == -7 + 6 * I, "cdotc_");
  expect(zdotu_(&n, zx, &one, zy, &one) == 5 + 16 * I, "zdotu_");
  expect(zdotc_(&n, zx, &one, zy, &one) == -7 + 6 * I, "zdotc_");
  expect(zdotu_(&n, zx, &minus_one, zy, &one) == (3 - I) * (2 - I) + (1 + 2 * I) * (-1 + 4 * I),
         "zdotu_ back");

  dtrsv_("U", "N", "N", &n, a, &short_ld, x, &one, 1, 1, 1);
  expect(strcmp(reported_name, "DTRSV ") == 0 && reported_position == 6, "report of dtrsv_");
  expect(x[0] == 5 && x[1] == 6, "dtrsv_ went on with a bad argument");
  dpotrf_("X", &n, a, &n, &info, 1);
  expect(strcmp(reported_name, "DPOTRF") == 0 && reported_position == 1 && info == -1, "report of dpotrf_");
  return failures != 0;
}
