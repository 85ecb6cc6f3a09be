// SPDX-License-Identifier: BSD-3-Clause
// From a descriptor's creation to its release.
#pragma once

#include "fft/descriptor/dfti_node.h"

namespace qel::fft {

/// What a descriptor is made for.
struct transform_shape {
  int precision;
  int domain;
  int dimension;
  const int* lengths;  ///< in the caller's order
};

/// Creates a descriptor; a status. handle is tested by the callers, which differ in what they test first.
int create_descriptor(dfti_node** handle, const transform_shape& shape);
int copy_descriptor(const dfti_node* source, dfti_node** handle);
int free_descriptor(dfti_node** handle);

/// The statuses of single arguments: 0, or what a bad one gives.
int check_precision(int precision);
int check_domain(int domain);
int check_dimension(int dimension);

}  // namespace qel::fft
