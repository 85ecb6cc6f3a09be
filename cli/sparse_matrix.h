// SPDX-License-Identifier: BSD-3-Clause
// A matrix file in the form of the direct sparse solver.
#pragma once

#include <complex>
#include <vector>

#include "cli/matrix_market.h"

namespace qel::cli {

/// Types of the solver to try, one after the other: by the file's header and the signs on the diagonal, or
/// the given one, if it suits the matrix. Throws file_error with name if it does not.
std::vector<int> types_to_try(const matrix_file& matrix, int given_type, const std::string& name);

/// "real symmetric positive definite" and the like.
const char* describe_type(int type);
bool is_complex_type(int type);

/// Compressed rows counted from 1, columns rising, each diagonal place written out; the upper triangle for
/// symmetric types. Entries that the file has twice are added.
struct sparse_matrix {
  int n = 0;
  std::vector<int> ia, ja;
  std::vector<double> values;  ///< pairs for complex types
};
/// Throws file_error with name if the structure is not what the solver takes.
sparse_matrix sparse_form(const matrix_file& matrix, int type, const std::string& name);

}  // namespace qel::cli
