// SPDX-License-Identifier: BSD-3-Clause
// Factorisation into whatever store there is for the panels.
#pragma once

#include "sparse/pardiso/numeric/panel_store.h"

namespace qel::pardiso {

/// As factorise(); lnz, unz and store of the result stay as they are.
template <class T>
stage_status factorise_into(const csr_view<T>& a, const analysis& analysed, const factor_options& options,
                            panel_store<T>& store, memory_account& account, factors<T>& result);

}  // namespace qel::pardiso
