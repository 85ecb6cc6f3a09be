// SPDX-License-Identifier: BSD-3-Clause
// Correlation of one-dimensional sequences: z[r] = sum over i of x[i] y[i + r + 1 - nx]; nothing is
// conjugated. Indices outside an array where an operand begins throw std::out_of_range; shapes are tested
// when a task is executed.
#pragma once

#include "tavik/core/convolution.h"

namespace Tavik::Kernel {

using namespace Core;

/// Correlation through tasks (qel/conv.h has the entries).
class TAVIK_API Correlation {
 public:
  /// Creates a task with a fixed x, which must stay where it is while the task lives. A stride other than 1
  /// replaces xshape by the elements of that stride from xoffset to the end of x. A status is dropped; the
  /// handle is then null.
  static TaskHandle NewCorrTaskX1d(CorrelationMode mode, int xshape, int yshape, int zshape,
                                   const Array<double>& x, int xstride, int xoffset);
  static TaskHandle NewCorrTaskX1s(CorrelationMode mode, int xshape, int yshape, int zshape,
                                   const Array<float>& x, int xstride, int xoffset);
  static TaskHandle NewCorrTaskX1z(CorrelationMode mode, int xshape, int yshape, int zshape,
                                   const Array<DoubleComplex>& x, int xstride, int xoffset);
  static TaskHandle NewCorrTaskX1c(CorrelationMode mode, int xshape, int yshape, int zshape,
                                   const Array<FloatComplex>& x, int xstride, int xoffset);

  /// Computes z. Offsets are of the first elements; for a negative stride they are moved to the lowest
  /// address by the shapes of the task that was created last, in whatever thread. Returns the status.
  static int ExecuteX1DCorrTask(TaskHandle task, const Array<double>& y, int ystride, int yoffset,
                                const Array<double>& z, int zstride, int zoffset);
  static int ExecuteX1DCorrTasks(TaskHandle task, const Array<float>& y, int ystride, int yoffset,
                                 const Array<float>& z, int zstride, int zoffset);
  static int ExecuteX1DCorrTaskz(TaskHandle task, const Array<DoubleComplex>& y, int ystride, int yoffset,
                                 const Array<DoubleComplex>& z, int zstride, int zoffset);
  static int ExecuteX1DCorrTaskc(TaskHandle task, const Array<FloatComplex>& y, int ystride, int yoffset,
                                 const Array<FloatComplex>& z, int zstride, int zoffset);

  /// A task without x, which every execution brings. xoffset is of the lowest address, whatever xstride is.
  static TaskHandle NewCorrTask1d(CorrelationMode mode, int xshape, int yshape, int zshape);
  static int Execute1DCorrTask(TaskHandle task, const Array<double>& x, int xstride, int xoffset,
                               const Array<double>& y, int ystride, int yoffset, const Array<double>& z,
                               int zstride, int zoffset);

  /// Deletes a task and returns the status; a null handle gives 0.
  static int CorrDeleteTask(TaskHandle task);

 private:
  // Of the task that was created last, of whatever type: executions with negative strides read them.
  static int yshape_, zshape_;
};

}  // namespace Tavik::Kernel
