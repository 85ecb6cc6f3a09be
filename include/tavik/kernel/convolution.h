// SPDX-License-Identifier: BSD-3-Clause
// Convolution of one-dimensional sequences: z[r] = sum over i of x[i] y[r - i]. Indices outside an array
// where an operand begins throw std::out_of_range; shapes are tested when a task is executed (qel/conv.h).
#pragma once

#include "tavik/core/convolution.h"

namespace Tavik::Kernel {

using namespace Core;

/// Convolution through tasks (qel/conv.h has the entries).
class TAVIK_API Convolution {
 public:
  /// Creates a task with a fixed x, which must stay where it is while the task lives. A stride other than 1
  /// replaces xshape by the elements of that stride from xoffset to the end of x. Throws TavikException on a
  /// status.
  static TaskHandle NewConvTaskX1d(ConvolutionMode mode, int xshape, int yshape, int zshape,
                                   const Array<double>& x, int xstride, int xoffset);
  static TaskHandle NewConvTaskX1z(ConvolutionMode mode, int xshape, int yshape, int zshape,
                                   const Array<DoubleComplex>& x, int xstride, int xoffset);
  static TaskHandle NewConvTaskX1s(ConvolutionMode mode, int xshape, int yshape, int zshape,
                                   const Array<float>& x, int xstride, int xoffset);
  static TaskHandle NewConvTaskX1c(ConvolutionMode mode, int xshape, int yshape, int zshape,
                                   const Array<FloatComplex>& x, int xstride, int xoffset);

  /// Computes z. Offsets are of the first elements; for a negative stride they are moved to the lowest
  /// address by the shapes of the task that was created last, in whatever thread. Throws TavikException on a
  /// status.
  static void ExecuteX1DConvTask(TaskHandle task, const Array<double>& y, int ystride, int yoffset,
                                 const Array<double>& z, int zstride, int zoffset);
  static void ExecuteX1DConvTaskz(TaskHandle task, const Array<DoubleComplex>& y, int ystride, int yoffset,
                                  const Array<DoubleComplex>& z, int zstride, int zoffset);
  static void sExecuteX1DConvTask(TaskHandle task, const Array<float>& y, int ystride, int yoffset,
                                  const Array<float>& z, int zstride, int zoffset);
  static void sExecuteX1DConvTaskc(TaskHandle task, const Array<FloatComplex>& y, int ystride, int yoffset,
                                   const Array<FloatComplex>& z, int zstride, int zoffset);

  /// Deletes a task and returns the status; a null handle gives 0.
  static int ConvDeleteTask(TaskHandle task);
  /// Sums in double or single precision; single for double data makes the next execution throw.
  static int SetPrecisionHigh(TaskHandle task);
  static int SetPrecisionLow(TaskHandle task);
  /// Throws TavikException "Convolution Kernel Exception, error code = CODE" unless status is 0.
  static void ProcessStatus(int status);

 private:
  // Of the task that was created last, of whatever type: executions with negative strides read them.
  static int yshape_, zshape_;
};

}  // namespace Tavik::Kernel
