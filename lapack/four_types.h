// SPDX-License-Identifier: BSD-3-Clause
// The four element types: the letter by which LAPACK names each, and a macro over all.
#pragma once

#include "service/core_types.h"

namespace qel::lapack {

template <class T>
inline constexpr char type_letter = 'D';
template <>
inline constexpr char type_letter<float> = 'S';
template <>
inline constexpr char type_letter<complex8> = 'C';
template <>
inline constexpr char type_letter<complex16> = 'Z';

constexpr core_int element_bytes(char type) { return type == 'S' ? 4 : type == 'Z' ? 16 : 8; }

}  // namespace qel::lapack

/// For explicit instantiations.
#define QEL_FOUR_TYPES(macro) macro(float) macro(double) macro(qel::complex8) macro(qel::complex16)
