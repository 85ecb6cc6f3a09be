// SPDX-License-Identifier: BSD-3-Clause
// The exceptions of the class library that kernel classes throw.
#pragma once

#include <stdexcept>

#include "tavik/core/export.h"

namespace Tavik::Core {

/// A failure that has no type of its own.
class TAVIK_API Exception : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A failure that the class library tells in its own words.
class TAVIK_API TavikException : public Exception {
 public:
  using Exception::Exception;
};

/// A bad argument that a kernel class finds itself.
class TAVIK_API ArgumentException : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

}  // namespace Tavik::Core
