// SPDX-License-Identifier: BSD-3-Clause
// Which trans letters a rank-k or rank-2k update takes, read off its types: T is the matrices' element, Beta
// the type of beta, which is real exactly for the Hermitian ones.
#pragma once

#include "blas/checks.h"
#include "service/complex_arithmetic.h"

namespace qel::dropin {

template <class T, class Beta>
inline constexpr blas::update_letters letters_of = !is_complex<T>     ? blas::update_letters::kNtc
                                                   : is_complex<Beta> ? blas::update_letters::kNt
                                                                      : blas::update_letters::kNc;

}  // namespace qel::dropin
