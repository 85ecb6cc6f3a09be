// SPDX-License-Identifier: BSD-3-Clause
#include "tavik/kernel/correlation.h"

#include "facade/convolution_tasks.h"

namespace Tavik::Kernel {

int Correlation::yshape_ = 0;
int Correlation::zshape_ = 0;

TaskHandle Correlation::NewCorrTaskX1d(CorrelationMode mode, int xshape, int yshape, int zshape,
                                       const Array<double>& x, int xstride, int xoffset) {
  static_cast<void>(x[xoffset]);
  zshape_ = zshape;
  yshape_ = yshape;
  vsl_cc_task* task = nullptr;
  create_task(vsldCorrNewTaskX1D, &task, mode, xshape, yshape, zshape, x, xstride, xoffset);
  return handle_of(task);
}
TaskHandle Correlation::NewCorrTaskX1s(CorrelationMode mode, int xshape, int yshape, int zshape,
                                       const Array<float>& x, int xstride, int xoffset) {
  static_cast<void>(x[xoffset]);
  zshape_ = zshape;
  yshape_ = yshape;
  vsl_cc_task* task = nullptr;
  create_task(vslsCorrNewTaskX1D, &task, mode, xshape, yshape, zshape, x, xstride, xoffset);
  return handle_of(task);
}
TaskHandle Correlation::NewCorrTaskX1z(CorrelationMode mode, int xshape, int yshape, int zshape,
                                       const Array<DoubleComplex>& x, int xstride, int xoffset) {
  static_cast<void>(x[xoffset]);
  zshape_ = zshape;
  yshape_ = yshape;
  vsl_cc_task* task = nullptr;
  create_task(vslzCorrNewTaskX1D, &task, mode, xshape, yshape, zshape, x, xstride, xoffset);
  return handle_of(task);
}
TaskHandle Correlation::NewCorrTaskX1c(CorrelationMode mode, int xshape, int yshape, int zshape,
                                       const Array<FloatComplex>& x, int xstride, int xoffset) {
  static_cast<void>(x[xoffset]);
  zshape_ = zshape;
  yshape_ = yshape;
  vsl_cc_task* task = nullptr;
  create_task(vslcCorrNewTaskX1D, &task, mode, xshape, yshape, zshape, x, xstride, xoffset);
  return handle_of(task);
}

int Correlation::ExecuteX1DCorrTask(TaskHandle task, const Array<double>& y, int ystride, int yoffset,
                                    const Array<double>& z, int zstride, int zoffset) {
  return execute_task(vsldCorrExecX1D, task, y, ystride, yoffset, yshape_, z, zstride, zoffset, zshape_);
}
int Correlation::ExecuteX1DCorrTasks(TaskHandle task, const Array<float>& y, int ystride, int yoffset,
                                     const Array<float>& z, int zstride, int zoffset) {
  return execute_task(vslsCorrExecX1D, task, y, ystride, yoffset, yshape_, z, zstride, zoffset, zshape_);
}
int Correlation::ExecuteX1DCorrTaskz(TaskHandle task, const Array<DoubleComplex>& y, int ystride, int yoffset,
                                     const Array<DoubleComplex>& z, int zstride, int zoffset) {
  return execute_task(vslzCorrExecX1D, task, y, ystride, yoffset, yshape_, z, zstride, zoffset, zshape_);
}
int Correlation::ExecuteX1DCorrTaskc(TaskHandle task, const Array<FloatComplex>& y, int ystride, int yoffset,
                                     const Array<FloatComplex>& z, int zstride, int zoffset) {
  return execute_task(vslcCorrExecX1D, task, y, ystride, yoffset, yshape_, z, zstride, zoffset, zshape_);
}

TaskHandle Correlation::NewCorrTask1d(CorrelationMode mode, int xshape, int yshape, int zshape) {
  vsl_cc_task* task = nullptr;
  vsldCorrNewTask1D(&task, static_cast<int>(mode), xshape, yshape, zshape);
  yshape_ = yshape;
  zshape_ = zshape;
  return handle_of(task);
}
int Correlation::Execute1DCorrTask(TaskHandle task, const Array<double>& x, int xstride, int xoffset,
                                   const Array<double>& y, int ystride, int yoffset, const Array<double>& z,
                                   int zstride, int zoffset) {
  return vsldCorrExec1D(task_of(task), &x[xoffset], xstride, &y[lowest_offset(yoffset, ystride, yshape_)],
                        ystride, &z[lowest_offset(zoffset, zstride, zshape_)], zstride);
}

int Correlation::CorrDeleteTask(TaskHandle handle) {
  vsl_cc_task* task = task_of(handle);
  return task == nullptr ? 0 : vslCorrDeleteTask(&task);
}

}  // namespace Tavik::Kernel
