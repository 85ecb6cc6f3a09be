// SPDX-License-Identifier: BSD-3-Clause
// Tasks: creation, edits, sticky status, the order of tests, deletion, memory.
#include "conv/task.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "qel/conv.h"
#include "service/serv.h"

namespace qel::test {
namespace {

using namespace conv;
using task_record = conv::vsl_cc_task;

int held;
void* counting_malloc(std::size_t size) {
  ++held;
  return std::malloc(size);
}
void counting_free(void* pointer) {
  held -= pointer != nullptr;
  std::free(pointer);
}

class ConvTask : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("QEL_DISABLE_FAST_MM", "1", 1);
    serv_platform_malloc = counting_malloc;
    serv_platform_free = counting_free;
  }
  void SetUp() override { held = 0; }
  void TearDown() override {
    vsl_cc_delete(&task);
    EXPECT_EQ(held, 0);
  }
  const double x[4] = {1, 2, 3, 4}, y[3] = {1, -1, 2};
  double z[16] = {};
  task_record* task = nullptr;

  int create(cc_kind kind = {kConvolution, kReal, kDouble, kDouble, 1}, int nx = 4, int ny = 3, int nz = 6) {
    return vsl_cc_create(&task, kind, kDirectMode, &nx, &ny, &nz, x, nullptr);
  }
  int execute(int zstride = 1) { return vsl_cc_execute(task, x, nullptr, y, nullptr, z, &zstride); }
};

TEST_F(ConvTask, Edits) {
  ASSERT_EQ(create(), 0);
  const int two = 2;
  const struct {
    int parameter, status;
  } rows[] = {{3, 0},      {4, 0},      {5, 0},     {6, 0},      {9, 0},
              {1, -2212},  {2, -2212},  {7, -2212}, {8, -2212},  {10, -2212},
              {19, -2212}, {20, -2211}, {0, -2211}, {-1, -2211}, {99, -2211}};
  for (const auto& row : rows) {
    task->status = 0;
    task->committed = 1;
    EXPECT_EQ(vsl_cc_set(task, row.parameter, &two), row.status) << row.parameter;
    EXPECT_EQ(task->committed, 0);
    EXPECT_EQ(task->status, row.status);
  }
  EXPECT_EQ(task->mode, 2);
  EXPECT_EQ(task->parameter_4, 2);
  EXPECT_EQ(task->internal_precision, 2);
  EXPECT_EQ(*task->start, 2);
  EXPECT_EQ(*task->decimation, 2);
  task->status = 0;
  EXPECT_EQ(vsl_cc_set(task, 3, nullptr), -5);
  EXPECT_EQ(vsl_cc_set(nullptr, 3, &two), -5);
}

TEST_F(ConvTask, AFailedTaskStaysFailed) {
  ASSERT_EQ(create(), 0);
  const int one = 1;
  EXPECT_EQ(vsl_cc_set(task, 2, &one), -2212);
  EXPECT_EQ(vsl_cc_set(task, 3, &one), -2212);
  EXPECT_EQ(execute(), -2212);
  EXPECT_EQ(vsl_cc_delete(&task), 0);
  EXPECT_EQ(task, nullptr);
  EXPECT_EQ(vsl_cc_delete(&task), 0);
  EXPECT_EQ(vsl_cc_delete(nullptr), -5);
  EXPECT_EQ(vsl_cc_execute(nullptr, x, nullptr, y, nullptr, z, nullptr), -5);
}

TEST_F(ConvTask, TheEntriesFix) {
  EXPECT_EQ(vsldConvNewTaskX1D(nullptr, 0, 1, 1, 1, x, 1), -5);
  ::vsl_cc_task* made = nullptr;
  EXPECT_EQ(vslcCorrNewTaskX1D(&made, 7, 4, 3, 6, nullptr, 2), 0);
  auto* record = reinterpret_cast<task_record*>(made);
  EXPECT_EQ(record->job, kCorrelation);
  EXPECT_EQ(record->kind, 1);
  EXPECT_EQ(record->mode, 7);
  EXPECT_EQ(record->type, kComplex);
  EXPECT_EQ(record->external_precision, kSingle);
  EXPECT_EQ(record->internal_precision, kSingle);
  EXPECT_EQ(*record->xstride, 2);
  EXPECT_EQ(record->start, nullptr);
  EXPECT_EQ(vslConvSetInternalPrecision(made, 2), 0);
  EXPECT_EQ(record->internal_precision, 2);
  // One deletes the other's as well.
  EXPECT_EQ(vslConvDeleteTask(&made), 0);
}

TEST_F(ConvTask, TestsComeInTheirOrder) {
  const int bad = -1, far = 6, zero = 0;
  struct row {
    int nx, ny, nz;
    const double *x, *y;
    double* z;
    int zstride;
    const int *start, *decimation;
    int job, status;
  };
  const int before = -4, last = 2;
  const row rows[] = {
      {0, 0, 0, nullptr, nullptr, nullptr, 0, &bad, &zero, 1, -2331},
      {0, 0, 0, x, nullptr, nullptr, 0, &bad, &zero, 1, -2311},
      {4, 0, 0, x, nullptr, nullptr, 0, &bad, &zero, 1, -2332},
      {4, 0, 0, x, y, nullptr, 0, &bad, &zero, 1, -2312},
      {4, 3, 0, x, y, nullptr, 0, &bad, &zero, 1, -2333},
      {4, 3, 0, x, y, z, 0, &bad, &zero, 1, -2313},
      {4, 3, 6, x, y, z, 0, &bad, &zero, 1, -2323},
      {4, 3, 6, x, y, z, 1, &bad, &zero, 1, -2302},
      {4, 3, 6, x, y, z, 1, &far, &zero, 1, -2302},
      {4, 3, 6, x, y, z, 1, nullptr, &zero, 1, -2303},
      {4, 3, 7, x, y, z, 1, nullptr, nullptr, 1, -2303},
      {4, 3, 6, x, y, z, 1, nullptr, nullptr, 1, 0},
      {4, 3, 1, x, y, z, 1, &before, nullptr, 2, -2302},
      {4, 3, 2, x, y, z, 1, &last, nullptr, 2, -2303},
      {4, 3, 1, x, y, z, 1, &last, nullptr, 2, 0},
      {4, 3, 6, x, y, z, 1, nullptr, nullptr, 2, 0},
  };
  for (const row& r : rows) {
    for (const int mode : {1, 2}) {
      const cc_kind kind = {r.job, kReal, kDouble, kDouble, 1};
      ASSERT_EQ(vsl_cc_create(&task, kind, mode, &r.nx, &r.ny, &r.nz, r.x, nullptr), 0);
      if (r.start != nullptr) vsl_cc_set(task, 5, r.start);
      if (r.decimation != nullptr) vsl_cc_set(task, 6, r.decimation);
      EXPECT_EQ(vsl_cc_execute(task, r.x, nullptr, r.y, nullptr, r.z, &r.zstride), r.status) << &r - rows;
      EXPECT_EQ(task->status, r.status);
      EXPECT_EQ(task->committed, 1);
      vsl_cc_delete(&task);
    }
  }
}

TEST_F(ConvTask, RanksAndPrecisions) {
  const int shape[8] = {1, 1, 1, 1, 1, 1, 1, 1};
  for (const int dims : {0, -1, 8, 7}) {
    ASSERT_EQ(vsl_cc_create(&task, {1, kReal, kDouble, kDouble, dims}, 0, shape, shape, shape, x, nullptr),
              0);
    EXPECT_EQ(vsl_cc_execute(task, x, nullptr, y, nullptr, z, nullptr), dims == 7 ? 0 : -2301) << dims;
    vsl_cc_delete(&task);
  }
  // Before every test of the data.
  ASSERT_EQ(create(), 0);
  const int single = 1;
  EXPECT_EQ(vsl_cc_set(task, 9, &single), 0);
  EXPECT_EQ(vsl_cc_execute(task, nullptr, nullptr, y, nullptr, z, nullptr), -2000);
}

TEST_F(ConvTask, XAtExecution) {
  ::vsl_cc_task* made = nullptr;
  ASSERT_EQ(vsldCorrNewTask1D(&made, 0, 4, 3, 6), 0);
  EXPECT_EQ(vsldCorrExec1D(made, x, 1, y, 1, z, 1), 0);
  const double want[] = {4, -1, 7, 5, 3, 2};
  for (int k = 0; k < 6; ++k) EXPECT_EQ(z[k], want[k]) << k;
  vslCorrDeleteTask(&made);
}

}  // namespace
}  // namespace qel::test
