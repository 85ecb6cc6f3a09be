// SPDX-License-Identifier: BSD-3-Clause
// The record of the last report beside the printed line, for every kind of report. checks_test.cpp has what a
// program with its own error entry gets.
#include <string>
#include <thread>

#include "service/serv.h"
#include "tests/entry/support.h"
#include "tests/support/in_child.h"

namespace qel::test {
namespace {

template <int kCode>
void core_report() {
  const int code = kCode;
  serv_set_xerbla(&xerbla);
  serv_xerbla("DGETRF  XYZ", &code, 8);
}

void bad_product() {
  double c = 0;
  call(dgemm, 'X', 'N', 1, 1, 1, 1.0, 1.0, 1, 1.0, 1, 0.0, c, 1);
}
void bad_solve() {
  double a[4] = {}, b[2] = {};
  int pivots[2], info;
  call(dgesv, 2, 1, a, 2, pivots, b, 1, info);
}

struct report_case {
  void (*entry)();
  const char* routine;
  int code, argument;
};
const report_case kReportCases[] = {
    {bad_product, "DGEMM", 1, 1},
    {bad_solve, "DGESV", 7, 7},
    {[] { QEL_Domatcopy('U', 'T', 1, 1, 1.0, nullptr, 1, nullptr, 1); }, "QEL_DOMATCOPY", 1, 1},
    {[] {
       const complex8 x[4] = {}, one = {1, 0};
       complex8 y[2] = {};
       call(cspmv, 'U', 2, one, x, x, 0, one, y, 1);
     },
     "CSPMV", 6, 6},
    {core_report<999>, "DGETRF", 999, 999},
    {core_report<1000>, "DGETRF", 1000, 0},
    {core_report<1001>, "DGETRF", 1001, 0},
    {core_report<0>, "DGETRF", 0, 0},
    {core_report<-5>, "DGETRF", -5, 0},
    {[] {
       const int code = 2;
       serv_xerbla("ABCDEFGHIJKLMNOPQRSTUVWXYZ", &code, 26);
     },
     "ABCDEFGHIJKLMNOPQRST", 2, 2},
};

void expect_record(const std::string& printed, const char* routine, int code, int argument) {
  const qel_error_record* record = qel_last_error();
  EXPECT_STREQ(routine, record->routine);
  EXPECT_EQ(code, record->code) << routine;
  EXPECT_EQ(argument, record->argument) << routine;
  EXPECT_EQ(printed, std::string("\n").append(record->text).append("\n"));
}

void expect_empty() {
  const qel_error_record* record = qel_last_error();
  EXPECT_EQ('\0', record->routine[0]);
  EXPECT_EQ('\0', record->text[0]);
  EXPECT_TRUE(record->code == 0 && record->argument == 0);
}

TEST(LastError, IsTheLineThatIsPrinted) {
  for (const report_case& c : kReportCases) {
    testing::internal::CaptureStdout();
    c.entry();
    expect_record(testing::internal::GetCapturedStdout(), c.routine, c.code, c.argument);
  }
}

TEST(LastError, OfIntegersWithoutMemory) {
  const child_result child = in_child([] {
    QEL_FreeBuffers();  // of the tests before
    serv_platform_malloc = [](size_t) -> void* { return nullptr; };
    bad_solve();  // the copy comes before the check
    const qel_error_record* record = qel_last_error();
    std::printf("%s %d %d\n%s", record->routine, record->code, record->argument, record->text);
    call(ddoti, 1, 2.0, 1, 2.0);
    std::printf("%s\n", record->routine);
    return 0;
  });
  const std::string text = "QEL ERROR: Parameter 1079 was incorrect on entry to ";
  EXPECT_EQ("\n" + text + "DGESV\nDGESV 1079 0\n" + text + "DGESV\n" + text + "DDOTI\nDDOTI\n", child.output);
}

TEST(LastError, StaysUntilItIsClearedAndBelongsToItsThread) {
  testing::internal::CaptureStdout();
  bad_solve();
  EXPECT_EQ(0, call(ddot, 0, nullptr, 1, nullptr, 1));
  EXPECT_STREQ("DGESV", qel_last_error()->routine) << "a good call leaves it alone";
  std::thread([] {
    expect_empty();
    bad_product();
    EXPECT_STREQ("DGEMM", qel_last_error()->routine);
  }).join();
  EXPECT_STREQ("DGESV", qel_last_error()->routine);
  qel_clear_last_error();
  expect_empty();
  testing::internal::GetCapturedStdout();
}

}  // namespace
}  // namespace qel::test
