// SPDX-License-Identifier: BSD-3-Clause
#include "tavik/kernel/convolution.h"

#include <string>

#include "facade/convolution_tasks.h"

namespace Tavik::Kernel {

int Convolution::yshape_ = 0;
int Convolution::zshape_ = 0;

TaskHandle Convolution::NewConvTaskX1d(ConvolutionMode mode, int xshape, int yshape, int zshape,
                                       const Array<double>& x, int xstride, int xoffset) {
  static_cast<void>(x[xoffset]);
  zshape_ = zshape;
  yshape_ = yshape;
  vsl_cc_task* task = nullptr;
  ProcessStatus(create_task(vsldConvNewTaskX1D, &task, mode, xshape, yshape, zshape, x, xstride, xoffset));
  return handle_of(task);
}
TaskHandle Convolution::NewConvTaskX1z(ConvolutionMode mode, int xshape, int yshape, int zshape,
                                       const Array<DoubleComplex>& x, int xstride, int xoffset) {
  static_cast<void>(x[xoffset]);
  zshape_ = zshape;
  yshape_ = yshape;
  vsl_cc_task* task = nullptr;
  ProcessStatus(create_task(vslzConvNewTaskX1D, &task, mode, xshape, yshape, zshape, x, xstride, xoffset));
  return handle_of(task);
}
TaskHandle Convolution::NewConvTaskX1s(ConvolutionMode mode, int xshape, int yshape, int zshape,
                                       const Array<float>& x, int xstride, int xoffset) {
  static_cast<void>(x[xoffset]);
  zshape_ = zshape;
  yshape_ = yshape;
  vsl_cc_task* task = nullptr;
  ProcessStatus(create_task(vslsConvNewTaskX1D, &task, mode, xshape, yshape, zshape, x, xstride, xoffset));
  return handle_of(task);
}
TaskHandle Convolution::NewConvTaskX1c(ConvolutionMode mode, int xshape, int yshape, int zshape,
                                       const Array<FloatComplex>& x, int xstride, int xoffset) {
  static_cast<void>(x[xoffset]);
  zshape_ = zshape;
  yshape_ = yshape;
  vsl_cc_task* task = nullptr;
  ProcessStatus(create_task(vslcConvNewTaskX1D, &task, mode, xshape, yshape, zshape, x, xstride, xoffset));
  return handle_of(task);
}

void Convolution::ExecuteX1DConvTask(TaskHandle task, const Array<double>& y, int ystride, int yoffset,
                                     const Array<double>& z, int zstride, int zoffset) {
  ProcessStatus(
      execute_task(vsldConvExecX1D, task, y, ystride, yoffset, yshape_, z, zstride, zoffset, zshape_));
}
void Convolution::ExecuteX1DConvTaskz(TaskHandle task, const Array<DoubleComplex>& y, int ystride,
                                      int yoffset, const Array<DoubleComplex>& z, int zstride, int zoffset) {
  ProcessStatus(
      execute_task(vslzConvExecX1D, task, y, ystride, yoffset, yshape_, z, zstride, zoffset, zshape_));
}
void Convolution::sExecuteX1DConvTask(TaskHandle task, const Array<float>& y, int ystride, int yoffset,
                                      const Array<float>& z, int zstride, int zoffset) {
  ProcessStatus(
      execute_task(vslsConvExecX1D, task, y, ystride, yoffset, yshape_, z, zstride, zoffset, zshape_));
}
void Convolution::sExecuteX1DConvTaskc(TaskHandle task, const Array<FloatComplex>& y, int ystride,
                                       int yoffset, const Array<FloatComplex>& z, int zstride, int zoffset) {
  ProcessStatus(
      execute_task(vslcConvExecX1D, task, y, ystride, yoffset, yshape_, z, zstride, zoffset, zshape_));
}

int Convolution::ConvDeleteTask(TaskHandle handle) {
  vsl_cc_task* task = task_of(handle);
  return task == nullptr ? 0 : vslConvDeleteTask(&task);
}
int Convolution::SetPrecisionHigh(TaskHandle task) {
  return vslConvSetInternalPrecision(task_of(task), VSL_CONV_PRECISION_DOUBLE);
}
int Convolution::SetPrecisionLow(TaskHandle task) {
  return vslConvSetInternalPrecision(task_of(task), VSL_CONV_PRECISION_SINGLE);
}
void Convolution::ProcessStatus(int status) {
  if (status != 0)
    throw TavikException("Convolution Kernel Exception, error code = " + std::to_string(status));
}

}  // namespace Tavik::Kernel
