// SPDX-License-Identifier: BSD-3-Clause
// A transform's descriptor that goes with its scope; statuses as exceptions.
#pragma once

#include <stdexcept>

#include "qel/dfti.h"

namespace qel::cli {

inline void expect_done(int status) {
  if (status != DFTI_NO_ERROR) throw std::invalid_argument(qel_dfti_message(status));
}

struct descriptor {
  DFTI_DESCRIPTOR_HANDLE handle = nullptr;
  descriptor() = default;
  descriptor(const descriptor&) = delete;
  descriptor& operator=(const descriptor&) = delete;
  ~descriptor() {
    if (handle != nullptr) DftiFreeDescriptor(&handle);
  }
};

}  // namespace qel::cli
