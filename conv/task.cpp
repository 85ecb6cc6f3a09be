// SPDX-License-Identifier: BSD-3-Clause
#include "conv/task.h"

#include <algorithm>
#include <new>

#include "service/serv.h"

namespace qel::conv {
namespace {

enum cc_parameter : int { kMode = 3, kParameter4 = 4, kStart = 5, kDecimation = 6, kInternalPrecision = 9 };

bool is_read_only(int parameter) {
  return parameter == 1 || parameter == 2 || parameter == 7 || parameter == 8 ||
         (parameter >= 10 && parameter <= 19);
}

/// Copies dims values; to stays null if there are none.
void copy_values(int dims, const int* from, int* values, int** to) {
  if (from == nullptr) return;
  std::copy_n(from, std::clamp(dims, 0, kMaxDims), values);
  *to = values;
}

int apply(vsl_cc_task& task, int parameter, const int* value) {
  switch (parameter) {
    case kMode:
      task.mode = *value;
      return kOk;
    case kParameter4:
      task.parameter_4 = *value;
      return kOk;
    case kStart:
      copy_values(task.dims, value, task.start_values, &task.start);
      return kOk;
    case kDecimation:
      copy_values(task.dims, value, task.decimation_values, &task.decimation);
      return kOk;
    case kInternalPrecision:
      task.internal_precision = *value;
      return kOk;
    default:
      return is_read_only(parameter) ? kEditProhibited : kEditFailure;
  }
}

}  // namespace

int vsl_cc_create(vsl_cc_task** task, const cc_kind& kind, int mode, const int* xshape, const int* yshape,
                  const int* zshape, const void* x, const int* xstride) {
  if (task == nullptr) return kNullPointer;
  void* memory = serv_malloc(sizeof(vsl_cc_task), 0);
  if (memory == nullptr) return kNoMemory;
  auto* made = new (memory) vsl_cc_task{};
  made->job = kind.job;
  made->kind = 1;
  made->mode = mode;
  made->type = kind.type;
  made->external_precision = kind.external_precision;
  made->internal_precision = kind.internal_precision;
  made->dims = kind.dims;
  copy_values(kind.dims, xshape, made->xshape_values, &made->xshape);
  copy_values(kind.dims, yshape, made->yshape_values, &made->yshape);
  copy_values(kind.dims, zshape, made->zshape_values, &made->zshape);
  copy_values(kind.dims, xstride, made->xstride_values, &made->xstride);
  made->x = x;
  *task = made;
  return kOk;
}

int vsl_cc_set(vsl_cc_task* task, int parameter, const int* value) {
  if (task == nullptr) return kNullPointer;
  if (task->status != kOk) return task->status;
  task->status = value == nullptr ? kNullPointer : apply(*task, parameter, value);
  task->committed = 0;
  return task->status;
}

int drop_plan(vsl_cc_task& task) {
  if (task.plan_data == nullptr) return kOk;
  const int released = task.plan_release != nullptr ? task.plan_release(task.plan_data) : kCommitFailure;
  serv_free(task.plan_data);
  task.plan_data = nullptr;
  task.plan_release = nullptr;
  return released;
}

int vsl_cc_delete(vsl_cc_task** task) {
  if (task == nullptr) return kNullPointer;
  if (*task == nullptr) return kOk;
  const int released = drop_plan(**task);
  serv_free(*task);
  *task = nullptr;
  return released == kOk ? kOk : kDeleteFailure;
}

}  // namespace qel::conv
