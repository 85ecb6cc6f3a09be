// SPDX-License-Identifier: BSD-3-Clause
// The letter by which LAPACK names an element type.
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

}  // namespace qel::lapack
