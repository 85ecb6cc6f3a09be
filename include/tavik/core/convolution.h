// SPDX-License-Identifier: BSD-3-Clause
// The class library's side of convolution and correlation.
#pragma once

#include <cstdint>

#include "tavik/core/array.h"
#include "tavik/core/complex.h"
#include "tavik/core/exceptions.h"
#include "tavik/core/export.h"

namespace Tavik::Core {

/// Auto and Fft take transforms where both sequences are long enough, Direct always takes sums.
enum class ConvolutionMode : int { Auto = 0, Direct = 1, Fft = 2 };
/// As ConvolutionMode.
enum class CorrelationMode : int { Auto = 0, Direct = 1, Fft = 2 };

/// A task as callers hold it; null is no task.
using TaskHandle = std::intptr_t;

}  // namespace Tavik::Core
