// SPDX-License-Identifier: BSD-3-Clause
// Substitution with factors in whatever store.
#pragma once

#include "sparse/pardiso/numeric/panel_store.h"

namespace qel::pardiso {

/// As substitute(). False if a transfer failed; x is not valid then.
template <class T>
bool substitute_from(matrix_type type, const analysis& analysed, const factors<T>& f, panel_store<T>& store,
                     const solve_options& options, int nrhs, const T* b, T* x, T* work);

}  // namespace qel::pardiso
