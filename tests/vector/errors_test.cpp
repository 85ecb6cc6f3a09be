// SPDX-License-Identifier: BSD-3-Clause
// What vector math says about elements and arguments: statuses, every reaction, the global index of a
// threaded division, the rule of the mode.
#include <gtest/gtest.h>

#include <cerrno>
#include <cfenv>
#include <cmath>
#include <functional>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "qel/qel.h"
#include "service/serv.h"
#include "vector/kernels/vector_kernels.h"
#include "vector/vml/state.h"

namespace qel {
namespace {

std::mutex events_lock;
std::vector<qel_vml_event> events;
int note_event(qel_vml_event* event) {
  const std::lock_guard guard(events_lock);
  events.push_back(*event);
  return 0;
}
int replace_result(qel_vml_event* event) {
  event->r1 = 7;
  return 0;
}
int replace_and_stop(qel_vml_event* event) {
  event->r1 = 7;
  return 1;
}

class VectorErrors : public testing::Test {
 protected:
  void SetUp() override {
    events.clear();
    mode(VML_HA | VML_ERRMODE_IGNORE);
    qel_vml_set_callback(nullptr);
    qel_vml_set_status(VML_STATUS_OK);
    errno = 0;
    std::feclearexcept(FE_ALL_EXCEPT);
  }
  static void mode(unsigned m) { qel_vml_set_mode(m); }
};

TEST_F(VectorErrors, OnlyAnExactZeroRaisesAStatus) {
  const struct {
    double a, b;
    int status;
  } cases[] = {{1, 0, 2}, {1, -0.0, 2}, {0, 0, 2},        {1, 5e-324, 0},    {1e-300, 1e300, 0},
               {1, 2, 0}, {1, NAN, 0},  {1, INFINITY, 0}, {1e300, 1e-300, 0}};
  for (const auto& c : cases) {
    for (const int place : {3, 16, 18}) {  // in a block, in the tail
      std::vector<double> a(19, 1.0), b(19, 2.0), r(19);
      a[static_cast<size_t>(place)] = c.a;
      b[static_cast<size_t>(place)] = c.b;
      qel_vml_set_status(VML_STATUS_OK);
      vdDiv(19, a.data(), b.data(), r.data());
      EXPECT_EQ(qel_vml_get_status(), c.status) << c.a << '/' << c.b;
      const double want = c.a / c.b;
      EXPECT_TRUE(r[static_cast<size_t>(place)] == want || std::isnan(want)) << c.a << '/' << c.b;
      EXPECT_EQ(r[0], 0.5);
    }
  }
}

TEST_F(VectorErrors, EveryAccuracyReports) {
  const double one = 1, zero = 0;
  double r;
  for (const unsigned accuracy : {VML_LA, VML_HA, VML_EP}) {
    mode(accuracy);
    qel_vml_set_status(VML_STATUS_OK);
    vdDiv(1, &one, &zero, &r);
    EXPECT_EQ(qel_vml_get_status(), VML_STATUS_SING);
    EXPECT_EQ(r, INFINITY);
  }
}

TEST_F(VectorErrors, ErrnoFollowsTheStatus) {
  const struct {
    int status, error_number;
  } cases[] = {{-2, 13}, {-1, 22}, {0, 14}, {1, 33}, {2, 34}, {3, 34}, {4, 34}, {99, 14}};
  mode(VML_ERRMODE_ERRNO);
  double values[] = {1, 2, 3};
  for (const auto& c : cases) {
    vml_error(c.status, 1, values, values, values, values, "f");
    EXPECT_EQ(errno, c.error_number) << c.status;
    EXPECT_EQ(vml_state().status, c.status);
  }
}

TEST_F(VectorErrors, PrintsTheRowAndTheValues) {
  const struct {
    int status;
    double a, b, r1, r2;
    const char* text;
  } cases[] = {
      {-1, 0, 0, 0, 0, "Error (VML_STATUS_BADSIZE) in vdX: array size 1 is not positive.\n"},
      {-2, 0, 0, 0, 0, "Error (VML_STATUS_BADMEM) in vdX: NULL pointer is passed.\n"},
      {1, 5, 5, 3, 3, "Error (VML_STATUS_ERRDOM) in vdX: argument is out of domain.\na(1)=5\nr(1)=3\n"},
      {2, 5, 0, 3, 0, "Error (VML_STATUS_SING) in vdX: argument caused singularity.\na(1)=5\nr(1)=3\n"},
      {3, 5, 2, 3, 4,
       "Error (VML_STATUS_OVERFLOW) in vdX: argument caused overflow.\na(1)=5\nb(1)=2\ny(1)=3\nz(1)=4\n"},
      {4, 5, 0, NAN, NAN,
       "Error (VML_STATUS_UNDERFLOW) in vdX: argument caused underflow.\na(1)=5\nr(1)=nan\n"},
      {9, 5, 5, 3, 3, "Unknown error in vdX.\na(1)=5\nr(1)=3\n"},
  };
  mode(VML_ERRMODE_PRINT);
  for (const auto& c : cases) {
    const double a[] = {0, c.a}, b[] = {0, c.b};
    double r1[] = {0, c.r1}, r2[] = {0, c.r2};
    testing::internal::CaptureStdout();
    vml_error(c.status, 1, a, b, r1, r2, "vdX");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), c.text);
  }
}

TEST_F(VectorErrors, RaisesTheFlagOfTheStatus) {
  const struct {
    int status, flag;
  } cases[] = {{1, FE_INVALID}, {2, FE_DIVBYZERO}, {3, FE_OVERFLOW}, {4, FE_UNDERFLOW}, {9, 0}};
  mode(VML_ERRMODE_EXCEPT);
  double values[] = {1, 2};
  for (const auto& c : cases) {
    std::feclearexcept(FE_ALL_EXCEPT);
    vml_error(c.status, 0, values, values, values, values, "f");
    EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT & ~FE_INEXACT), c.flag) << c.status;
  }
}

TEST_F(VectorErrors, ACallbackMayReplaceTheResult) {
  const double a[] = {1, 1}, b[] = {0, 2};
  double r[2];
  mode(VML_ERRMODE_CALLBACK | VML_ERRMODE_ERRNO);
  qel_vml_set_callback(replace_result);
  vdDiv(2, a, b, r);
  EXPECT_EQ(r[0], 7);
  EXPECT_EQ(errno, 34);
  errno = 0;
  EXPECT_EQ(qel_vml_set_callback(replace_and_stop), replace_result);
  vdDiv(2, a, b, r);
  EXPECT_EQ(r[0], INFINITY) << "a result that is not 0 drops the change";
  EXPECT_EQ(errno, 0) << "and ends the other reactions";
  EXPECT_EQ(r[1], 0.5);
}

TEST_F(VectorErrors, IgnoringLeavesOnlyTheStatus) {
  const double one = 1, zero = 0;
  double r;
  qel_vml_set_callback(note_event);
  vdDiv(1, &one, &zero, &r);
  EXPECT_EQ(qel_vml_get_status(), VML_STATUS_SING);
  EXPECT_TRUE(events.empty());
  EXPECT_EQ(errno, 0);
}

TEST_F(VectorErrors, AThreadedDivisionReportsGlobalIndices) {
  const int n = 300001;
  std::vector<double> a(n, 3.0), b(n, 2.0), r(n);
  const std::set<int> zeros{0, 15, 16, 99999, 100000, 200000, 299990, n - 1};
  for (const int i : zeros) b[static_cast<size_t>(i)] = 0;
  serv_set_dynamic(0);
  for (const int threads : {1, 2, 3, 8}) {
    serv_set_num_threads(threads);
    events.clear();
    mode(VML_ERRMODE_CALLBACK);
    qel_vml_set_callback(note_event);
    qel_vml_set_status(VML_STATUS_OK);
    vdDiv(n, a.data(), b.data(), r.data());
    std::set<int> told;
    for (const qel_vml_event& event : events) {
      told.insert(event.index);
      EXPECT_EQ(event.a, 3.0);
      EXPECT_EQ(event.b, 0.0);
      EXPECT_STREQ(event.name, "vdDiv");
    }
    EXPECT_EQ(told, zeros) << threads;
    EXPECT_EQ(events.size(), zeros.size());
    EXPECT_EQ(qel_vml_get_status(), VML_STATUS_SING);
    for (int i = 0; i < n; ++i) {
      ASSERT_EQ(r[static_cast<size_t>(i)], zeros.count(i) ? INFINITY : 1.5) << i;
    }
    // A short one afterwards counts from its own start again.
    events.clear();
    qel_vml_set_callback(note_event);
    vdDiv(17, a.data() + 100, b.data(), r.data());
    EXPECT_EQ(events.size(), 3U);
    EXPECT_EQ(events.front().index, 0);
  }
}

TEST_F(VectorErrors, ThreadedProductsAndDifferencesAreThoseOfOneThread) {
  const int n = 300001;
  std::vector<double> a(n), b(n), r(n);
  for (size_t i = 0; i < a.size(); ++i) {
    a[i] = static_cast<double>(i) / 3;
    b[i] = 1e5 / (static_cast<double>(i) + 1);
  }
  serv_set_dynamic(0);
  serv_set_num_threads(3);
  vdMul(n, a.data(), b.data(), r.data());
  for (size_t i = 0; i < a.size(); ++i) ASSERT_EQ(r[i], a[i] * b[i]) << i;
  vdSub(n, a.data(), b.data(), a.data());
  for (size_t i = 0; i < a.size(); ++i) ASSERT_EQ(a[i], static_cast<double>(i) / 3 - b[i]) << i;
}

TEST_F(VectorErrors, StateBelongsToTheThread) {
  mode(VML_LA | VML_ERRMODE_PRINT);
  unsigned first = 0;
  std::thread([&] { first = qel_vml_get_mode(); }).join();
  EXPECT_EQ(first, 0x1a02U);
  EXPECT_EQ(qel_vml_get_mode() & 0xffffU, VML_LA | VML_ERRMODE_PRINT);
}

TEST_F(VectorErrors, SettingTheModeReplacesByGroups) {
  const struct {
    unsigned before, request, after;
  } cases[] = {
      {0x1a02, 0, 0x1a02},       {0x1a02, 1, 0x1a01},        {0x1a02, 0x100, 0x0102},
      {0x1a02, 0x403, 0x0403},   {0x1a02, 0x10000, 0x10002}, {0x11a02, 0x20400, 0x20402},
      {0x21a02, 0x400, 0x20402}, {0x1a02, 0x30001, 0x30001}, {0x1a02, 0xf0, 0x1a02},
  };
  for (const auto& c : cases)
    EXPECT_EQ(changed_vml_mode(c.before, c.request), c.after) << std::hex << c.request;
}

TEST_F(VectorErrors, BadArgumentsAreReportedUnderTheEntrysName) {
  double x[1] = {4}, y[1] = {2}, r[1] = {-77};
  const int minus = -1;
  const struct {
    const char* text;
    int status;
    std::function<void()> call;
  } cases[] = {
      {"Parameter 1 was incorrect on entry to vdDiv", -1, [&] { vdDiv(-1, nullptr, y, r); }},
      {"Parameter 1 was incorrect on entry to vdDiv", -1, [&] { vddiv(&minus, x, y, r); }},
      {"Parameter 2 was incorrect on entry to vdDiv", -2, [&] { vdDiv(1, nullptr, nullptr, r); }},
      {"Parameter 3 was incorrect on entry to vdMul", -2, [&] { vdMul(1, x, nullptr, r); }},
      {"Parameter 4 was incorrect on entry to vdSub", -2, [&] { vdSub(1, x, y, nullptr); }},
      {"Parameter 1 was incorrect on entry to vdSub", -1, [&] { vdSub(-5, x, y, r); }},
  };
  for (const auto& c : cases) {
    qel_vml_set_status(VML_STATUS_OK);
    testing::internal::CaptureStdout();
    c.call();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string("\nQEL ERROR: ") + c.text + "\n");
    EXPECT_EQ(qel_vml_get_status(), c.status) << c.text;
    EXPECT_EQ(r[0], -77);
  }
  qel_vml_set_status(VML_STATUS_OK);
  vdDiv(0, nullptr, nullptr, nullptr);
  vdMul(0, nullptr, nullptr, nullptr);
  vdSub(0, nullptr, nullptr, nullptr);
  EXPECT_EQ(qel_vml_get_status(), VML_STATUS_OK);
}

void* no_memory(size_t) { return nullptr; }

TEST_F(VectorErrors, WithoutMemoryForTheStateThreadsShareOne) {
  const auto allocate = serv_platform_malloc;
  serv_platform_malloc = no_memory;
  double r = 0;
  testing::internal::CaptureStdout();
  std::thread([&] {
    const double one = 1, zero = 0;
    vdDiv(1, &one, &zero, &r);
    EXPECT_EQ(qel_vml_get_status(), VML_STATUS_SING);
  }).join();
  serv_platform_malloc = allocate;
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "QEL FATAL ERROR: memory allocation error.\n");
  EXPECT_EQ(r, INFINITY);
}

}  // namespace
}  // namespace qel
