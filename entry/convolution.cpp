// SPDX-License-Identifier: BSD-3-Clause
// Entries of convolution and correlation: the constants of each, around the shared routines.
#include "qel/conv.h"

#include "conv/task.h"

namespace {

using namespace qel::conv;

constexpr int kConvInternalPrecision = 9;

qel::conv::vsl_cc_task* record(::vsl_cc_task* task) {
  return reinterpret_cast<qel::conv::vsl_cc_task*>(task);
}
qel::conv::vsl_cc_task** record(::vsl_cc_task** task) {
  return reinterpret_cast<qel::conv::vsl_cc_task**>(task);
}

int create(::vsl_cc_task** task, int job, int type, int precision, int mode, int xshape, int yshape,
           int zshape, const void* x, const int* xstride) {
  return vsl_cc_create(record(task), {job, type, precision, precision, 1}, mode, &xshape, &yshape, &zshape, x,
                       xstride);
}
int execute_x(::vsl_cc_task* task, const void* y, int ystride, void* z, int zstride) {
  const auto* fixed = record(task);
  if (fixed == nullptr) return kNullPointer;
  return vsl_cc_execute(record(task), fixed->x, fixed->xstride, y, &ystride, z, &zstride);
}

}  // namespace

extern "C" {

int vslsConvNewTaskX1D(VSLConvTaskPtr* task, int mode, int xshape, int yshape, int zshape, const float* x,
                       int xstride) {
  return create(task, kConvolution, kReal, kSingle, mode, xshape, yshape, zshape, x, &xstride);
}
int vsldConvNewTaskX1D(VSLConvTaskPtr* task, int mode, int xshape, int yshape, int zshape, const double* x,
                       int xstride) {
  return create(task, kConvolution, kReal, kDouble, mode, xshape, yshape, zshape, x, &xstride);
}
int vslcConvNewTaskX1D(VSLConvTaskPtr* task, int mode, int xshape, int yshape, int zshape,
                       const _QEL_Complex8* x, int xstride) {
  return create(task, kConvolution, kComplex, kSingle, mode, xshape, yshape, zshape, x, &xstride);
}
int vslzConvNewTaskX1D(VSLConvTaskPtr* task, int mode, int xshape, int yshape, int zshape,
                       const _QEL_Complex16* x, int xstride) {
  return create(task, kConvolution, kComplex, kDouble, mode, xshape, yshape, zshape, x, &xstride);
}
int vslsConvExecX1D(VSLConvTaskPtr task, const float* y, int ystride, float* z, int zstride) {
  return execute_x(task, y, ystride, z, zstride);
}
int vsldConvExecX1D(VSLConvTaskPtr task, const double* y, int ystride, double* z, int zstride) {
  return execute_x(task, y, ystride, z, zstride);
}
int vslcConvExecX1D(VSLConvTaskPtr task, const _QEL_Complex8* y, int ystride, _QEL_Complex8* z, int zstride) {
  return execute_x(task, y, ystride, z, zstride);
}
int vslzConvExecX1D(VSLConvTaskPtr task, const _QEL_Complex16* y, int ystride, _QEL_Complex16* z,
                    int zstride) {
  return execute_x(task, y, ystride, z, zstride);
}

int vslsCorrNewTaskX1D(VSLCorrTaskPtr* task, int mode, int xshape, int yshape, int zshape, const float* x,
                       int xstride) {
  return create(task, kCorrelation, kReal, kSingle, mode, xshape, yshape, zshape, x, &xstride);
}
int vsldCorrNewTaskX1D(VSLCorrTaskPtr* task, int mode, int xshape, int yshape, int zshape, const double* x,
                       int xstride) {
  return create(task, kCorrelation, kReal, kDouble, mode, xshape, yshape, zshape, x, &xstride);
}
int vslcCorrNewTaskX1D(VSLCorrTaskPtr* task, int mode, int xshape, int yshape, int zshape,
                       const _QEL_Complex8* x, int xstride) {
  return create(task, kCorrelation, kComplex, kSingle, mode, xshape, yshape, zshape, x, &xstride);
}
int vslzCorrNewTaskX1D(VSLCorrTaskPtr* task, int mode, int xshape, int yshape, int zshape,
                       const _QEL_Complex16* x, int xstride) {
  return create(task, kCorrelation, kComplex, kDouble, mode, xshape, yshape, zshape, x, &xstride);
}
int vslsCorrExecX1D(VSLCorrTaskPtr task, const float* y, int ystride, float* z, int zstride) {
  return execute_x(task, y, ystride, z, zstride);
}
int vsldCorrExecX1D(VSLCorrTaskPtr task, const double* y, int ystride, double* z, int zstride) {
  return execute_x(task, y, ystride, z, zstride);
}
int vslcCorrExecX1D(VSLCorrTaskPtr task, const _QEL_Complex8* y, int ystride, _QEL_Complex8* z, int zstride) {
  return execute_x(task, y, ystride, z, zstride);
}
int vslzCorrExecX1D(VSLCorrTaskPtr task, const _QEL_Complex16* y, int ystride, _QEL_Complex16* z,
                    int zstride) {
  return execute_x(task, y, ystride, z, zstride);
}

int vsldCorrNewTask1D(VSLCorrTaskPtr* task, int mode, int xshape, int yshape, int zshape) {
  return create(task, kCorrelation, kReal, kDouble, mode, xshape, yshape, zshape, nullptr, nullptr);
}
int vsldCorrExec1D(VSLCorrTaskPtr task, const double* x, int xstride, const double* y, int ystride, double* z,
                   int zstride) {
  return vsl_cc_execute(record(task), x, &xstride, y, &ystride, z, &zstride);
}

int vslConvSetInternalPrecision(VSLConvTaskPtr task, int precision) {
  return vsl_cc_set(record(task), kConvInternalPrecision, &precision);
}
int vslConvDeleteTask(VSLConvTaskPtr* task) { return vsl_cc_delete(record(task)); }
int vslCorrDeleteTask(VSLCorrTaskPtr* task) { return vsl_cc_delete(record(task)); }

}  // extern "C"
