// SPDX-License-Identifier: BSD-3-Clause
// The shapes of the entries over core routines of the test's own, which look at what reaches them.
#include "entry/shapes.h"

#include <climits>
#include <string>

#include "tests/entry/support.h"

namespace qel::test {
namespace {

using namespace qel::entry;

struct seen {
  core_int n, m, first, second, length_sum;
  bool reached;
} last;
int reports;

void count_report(const char*, const int*, int) { ++reports; }

core_int plain_core(const core_int* n, const double*, const core_int* m) {
  last = {*n, *m, 0, 0, 0, true};
  return *n + *m;
}

/// As Fortran: letters' lengths last. Finds a count and an info that does not fit in 32 bits.
void fortran_core(const char*, const core_int* n, core_int* array, const char*, core_int* count,
                  core_int* info, size_t first_length, size_t second_length) {
  last = {*n, 0, array[0], array[1], static_cast<core_int>(first_length * 10 + second_length), true};
  array[0] = -(core_int{1} << 31);
  array[1] = 5;
  *count = 3;
  *info = (core_int{1} << 32) + 7;
  const int code = 1;
  serv_xerbla("CORE", &code, 4);
}

int hooked_core(const char*, const core_int* n, size_t length) {
  return static_cast<int>(*n) * static_cast<int>(length);
}

TEST(Shapes, PlainKeepsSigns) {
  const int low = INT_MIN, minus = -3;
  const double x = 0;
  EXPECT_EQ(core_int{INT_MIN} - 3, call_widened("plain", plain_core, &low, &x, &minus));
  EXPECT_EQ(core_int{INT_MIN}, last.n);
  EXPECT_EQ(-3, last.m);
}

TEST(Shapes, InfoWithArrays) {
  const int n = -2;
  int array[3] = {-1, 2, 99}, count[2] = {0, 99}, info[2] = {0, 99};
  EXPECT_EQ(7, call_info("core", fortran_core, info, "a", &n, in_out_ints(array, 2), "b", out_int(count)));
  EXPECT_TRUE(last.n == -2 && last.first == -1 && last.second == 2);
  EXPECT_EQ(11, last.length_sum) << "each letter has length 1";
  EXPECT_TRUE(array[0] == INT_MIN && array[1] == 5 && array[2] == 99);
  EXPECT_TRUE(count[0] == 3 && count[1] == 99);
  EXPECT_TRUE(info[0] == 7 && info[1] == 99);
}

TEST(Shapes, DirectionsOfArrays) {
  const int n = 1;
  int input[2] = {4, 6}, count = 0, info = 0;
  call_info("core", fortran_core, &info, "a", &n, in_ints(input, 2), "b", out_int(&count));
  EXPECT_TRUE(last.first == 4 && last.second == 6);
  EXPECT_TRUE(input[0] == 4 && input[1] == 6) << "what the core only reads doesn't come back";
  call_info("core", fortran_core, &info, "a", &n, out_ints(input, 1), "b", out_int(&count));
  EXPECT_TRUE(input[0] == INT_MIN && input[1] == 6) << "the length bounds the way back";
}

// Routines of the LAPACK shapes lead the core's reports to the public error entry, anew in each call.
TEST(Shapes, InstallTheErrorEntry) {
  const int n = 1, m = 3;
  int count = 0, info = 0;
  reports = 0;
  serv_set_xerbla(count_report);
  testing::internal::CaptureStdout();
  call_info("core", fortran_core, &info, "a", &n, work_ints(2), "b", out_int(&count));
  EXPECT_NE(std::string(), testing::internal::GetCapturedStdout());
  serv_set_xerbla(count_report);
  EXPECT_EQ(3, call_hooked("hooked", hooked_core, "a", &m));
  testing::internal::CaptureStdout();
  const int code = 2;
  serv_xerbla("CORE", &code, 4);
  EXPECT_NE(std::string(), testing::internal::GetCapturedStdout());
  serv_set_xerbla(count_report);
  const double x = 0;
  call_widened("plain", plain_core, &n, &x, &m);
  serv_xerbla("CORE", &code, 4);
  EXPECT_EQ(1, reports) << "plain entries install nothing";
}

}  // namespace
}  // namespace qel::test
