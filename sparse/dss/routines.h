// SPDX-License-Identifier: BSD-3-Clause
// The routines of the simpler interface. Each returns a status, unless its severity ends the process.
#pragma once

namespace qel::dss {

int create(void** handle, int options);
int define_structure(void** handle, int options, const int* row_index, int rows, int columns,
                     const int* column_index, int nonzeros);
int reorder(void** handle, int options, int* perm);
/// data: real_data or complex_data, of values.
int factor(void** handle, int options, const void* values, int data);
int solve(void** handle, int options, const void* rhs, int nrhs, void* solution);
int destroy(void** handle, int options);
/// result: the values of the keys, one after the other.
int statistics(void** handle, int options, const char* keys, double* result);

}  // namespace qel::dss
