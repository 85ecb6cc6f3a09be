// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "qel/dfti.h"

namespace qel::test {

/// A descriptor that goes with its scope.
struct owned_descriptor {
  DFTI_DESCRIPTOR_HANDLE handle = nullptr;
  owned_descriptor() = default;
  owned_descriptor(int precision, int domain, const std::vector<int>& lengths) {
    const int dimension = static_cast<int>(lengths.size());
    const int status = dimension == 1
                           ? DftiCreateDescriptor(&handle, precision, domain, 1, lengths[0])
                           : DftiCreateDescriptor(&handle, precision, domain, dimension, lengths.data());
    EXPECT_EQ(status, DFTI_NO_ERROR);
  }
  owned_descriptor(const owned_descriptor&) = delete;
  owned_descriptor& operator=(const owned_descriptor&) = delete;
  ~owned_descriptor() {
    if (handle != nullptr) DftiFreeDescriptor(&handle);
  }
  int get(int parameter) const {
    int value = -999;
    EXPECT_EQ(DftiGetValue(handle, parameter, &value), DFTI_NO_ERROR) << parameter;
    return value;
  }
  std::vector<int> get_all(int parameter, std::size_t count) const {
    std::vector<int> values(count, -999);
    EXPECT_EQ(DftiGetValue(handle, parameter, values.data()), DFTI_NO_ERROR) << parameter;
    return values;
  }
  template <class R = double>
  R scale(int parameter) const {
    R value = -999;
    EXPECT_EQ(DftiGetValue(handle, parameter, &value), DFTI_NO_ERROR) << parameter;
    return value;
  }
};

}  // namespace qel::test
