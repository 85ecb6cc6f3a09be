// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tavik/core/interfaces.h"

namespace Tavik::Kernel {

/// Element-wise arithmetic over plain arrays, from element 0 of each. y may be a or b. Errors are those of
/// qel/vml.h: a division by exact zeros gives infinities or NaN and raises the calling thread's status; n < 0
/// is reported on standard output. An empty array throws std::out_of_range.
class TAVIK_API VectorMathFunctions : public Core::IVectorMathKernel {
 public:
  /// y_i := a_i / b_i for n elements; long ones on several threads where that pays.
  void div(int n, const Core::Array<double>& a, const Core::Array<double>& b,
           const Core::Array<double>& y) override;
  /// y_i := a_i b_i.
  void mul(int n, const Core::Array<double>& a, const Core::Array<double>& b,
           const Core::Array<double>& y) override;
  /// y_i := a_i - b_i.
  void sub(int n, const Core::Array<double>& a, const Core::Array<double>& b,
           const Core::Array<double>& y) override;
};

}  // namespace Tavik::Kernel
