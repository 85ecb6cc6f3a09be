// SPDX-License-Identifier: BSD-3-Clause
// The record of a convolution or correlation, and its life. A task that has failed once stays failed until it
// is deleted: every call that finds a status returns it.
#pragma once

#include "service/core_types.h"

namespace qel::conv {

inline constexpr int kMaxDims = 7;

enum cc_status : int {
  kOk = 0,
  kNoMemory = -4,
  kNullPointer = -5,
  kNotImplemented = -2000,
  kAllocationFailure = -2001,
  kEditFailure = -2211,
  kEditProhibited = -2212,
  kCommitFailure = -2220,
  kDeleteFailure = -2240,
  kBadDims = -2301,
  kBadStart = -2302,
  kBadDecimation = -2303,
  kBadXShape = -2311,
  kBadYShape = -2312,
  kBadZShape = -2313,
  kBadZStride = -2323,
  kNullX = -2331,
  kNullY = -2332,
  kNullZ = -2333,
  kKernelFailure = -2800,
};

enum cc_job : int { kConvolution = 1, kCorrelation = 2 };
enum cc_type : int { kReal = 1, kComplex = 2 };
enum cc_precision : int { kSingle = 1, kDouble = 2 };
inline constexpr int kDirectMode = 1;

struct vsl_cc_task {
  int status;
  int job;
  int kind;  ///< 1
  int mode;
  int parameter_4;  ///< kept for its setter; nothing reads it
  int* start;       ///< null until set, then start_values
  int* decimation;
  int type;
  int external_precision, internal_precision;
  int dims;
  int *xshape, *yshape, *zshape, *xstride;  ///< null or the arrays below
  const void* x;                            ///< the fixed x; the caller's
  int start_values[kMaxDims], decimation_values[kMaxDims];
  int xshape_values[kMaxDims], yshape_values[kMaxDims], zshape_values[kMaxDims], xstride_values[kMaxDims];
  int committed;    ///< 1 from the first execution to the next edit
  void* plan_data;  ///< what a native execution keeps for the next one
  int (*plan_release)(void*);
};

/// The constants of an entry.
struct cc_kind {
  int job, type, external_precision, internal_precision, dims;
};

/// Shapes and strides have dims values, or are null; nothing is tested before the first execution.
int vsl_cc_create(vsl_cc_task** task, const cc_kind& kind, int mode, const int* xshape, const int* yshape,
                  const int* zshape, const void* x, const int* xstride);
/// Sets parameter 3 mode, 4, 5 start, 6 decimation, 9 internal precision.
int vsl_cc_set(vsl_cc_task* task, int parameter, const int* value);
int vsl_cc_delete(vsl_cc_task** task);
/// Frees the plan of a task, if it has one; kOk or what the release noted.
int drop_plan(vsl_cc_task& task);

/// Computes z from the task, x (the task's own unless the entry brings one) and y. Strides have dims values
/// or are null for dense data, whose first dimension is the fastest. Pointers are to the lowest address:
/// element i of n with a stride s below 0 lies at |s| (n - 1 - i).
int vsl_cc_execute(vsl_cc_task* task, const void* x, const int* xstride, const void* y, const int* ystride,
                   void* z, const int* zstride);

}  // namespace qel::conv
