// SPDX-License-Identifier: BSD-3-Clause
// Entries of the simpler interface to the direct solver.
#include "qel/dss.h"

#include "sparse/dss/record.h"
#include "sparse/dss/routines.h"

namespace dss = qel::dss;

extern "C" {

int dss_create(void** handle, const int* options) { return dss::create(handle, *options); }
int dss_define_structure(void** handle, const int* options, const int* rowIndex, const int* nRows,
                         const int* nCols, const int* columns, const int* nNonZeros) {
  return dss::define_structure(handle, *options, rowIndex, *nRows, *nCols, columns, *nNonZeros);
}
int dss_reorder(void** handle, const int* options, int* perm) { return dss::reorder(handle, *options, perm); }
int dss_factor_real(void** handle, const int* options, const void* values) {
  return dss::factor(handle, *options, values, dss::real_data);
}
int dss_factor_complex(void** handle, const int* options, const void* values) {
  return dss::factor(handle, *options, values, dss::complex_data);
}
int dss_factor(void** handle, const int* options, const void* values, const int* dataKind) {
  return dss::factor(handle, *options, values, *dataKind);
}
int dss_solve_real(void** handle, const int* options, const void* rhs, const int* nrhs, void* solution) {
  return dss::solve(handle, *options, rhs, *nrhs, solution);
}
int dss_delete(void** handle, const int* options) { return dss::destroy(handle, *options); }
int dss_statistics(void** handle, const int* options, const char* keys, double* result) {
  return dss::statistics(handle, *options, keys, result);
}

// The other spellings. A solve is the same for both kinds of data, which the factors tell.
QEL_API decltype(dss_solve_real) dss_solve_complex __attribute__((alias("dss_solve_real")));
QEL_API decltype(dss_create) dss_create_ __attribute__((alias("dss_create")));
QEL_API decltype(dss_define_structure) dss_define_structure_ __attribute__((alias("dss_define_structure")));
QEL_API decltype(dss_reorder) dss_reorder_ __attribute__((alias("dss_reorder")));
QEL_API decltype(dss_factor_real) dss_factor_real_ __attribute__((alias("dss_factor_real")));
QEL_API decltype(dss_factor_complex) dss_factor_complex_ __attribute__((alias("dss_factor_complex")));
QEL_API decltype(dss_factor) dss_factor_ __attribute__((alias("dss_factor")));
QEL_API decltype(dss_solve_real) dss_solve_real_ __attribute__((alias("dss_solve_real")));
QEL_API decltype(dss_solve_real) dss_solve_complex_ __attribute__((alias("dss_solve_real")));
QEL_API decltype(dss_delete) dss_delete_ __attribute__((alias("dss_delete")));
QEL_API decltype(dss_statistics) dss_statistics_ __attribute__((alias("dss_statistics")));

}  // extern "C"
