// SPDX-License-Identifier: BSD-3-Clause
// Entries whose copy of an integer array can't be had, for the k-th array of each: the printed line, the
// info, no array touched, every block given back. And the printed line of a bad argument. Work memory is
// taken without its cache here, so that each request reaches the platform's allocator.
#include <algorithm>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <string>

#include "service/serv.h"
#include "tests/entry/support.h"

namespace qel::test {
namespace {

std::size_t failing;
int held;
std::vector<std::size_t> requests;
std::mutex allocator;  // threads of a region ask, too

void* failing_malloc(std::size_t size) {
  const std::lock_guard guard(allocator);
  requests.push_back(size);
  if (requests.size() == failing) return nullptr;
  ++held;
  return std::malloc(size);
}
void counting_free(void* pointer) {
  const std::lock_guard guard(allocator);
  held -= pointer != nullptr;
  std::free(pointer);
}

class NoMemory : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("QEL_DISABLE_FAST_MM", "1", 1);
    serv_platform_malloc = failing_malloc;
    serv_platform_free = counting_free;
  }
};

constexpr int n = 40, one = 1, size = 2048;
constexpr double half = 0.5;

/// What the entries below work on, of order n: large enough that lengths show through the allocator's
/// padding.
struct data {
  std::vector<double> a, b, c, d;
  std::vector<int> i, j;
  data() : a(2048), b(2048, 2), c(2048, 3), d(2048, 4), i(256, 1), j(512) {
    for (std::size_t k = 0; k < n; ++k) {
      a[k * (n + 1)] = 4 + static_cast<double>(k);
      i[k] = static_cast<int>(k) + 1;
    }
    a[1] = 99;  // makes a factorisation exchange rows
  }
  bool operator==(const data&) const = default;
};

struct memory_case {
  const char* routine;
  std::vector<int> lengths;  ///< of the integer arrays that need a copy, shortest first
  bool has_info;
  std::function<void(data&, int* info)> entry;
};

const memory_case kMemoryCases[] = {
    {"DGETRF", {n}, true, [](data& x, int* info) { dgetrf(&n, &n, x.a.data(), &n, x.i.data(), info); }},
    {"DGESV",
     {n},
     true,
     [](data& x, int* info) { dgesv(&n, &one, x.a.data(), &n, x.i.data(), x.b.data(), &n, info); }},
    {"DGETRI",
     {n},
     true,
     [](data& x, int* info) { dgetri(&n, x.a.data(), &n, x.i.data(), x.b.data(), &size, info); }},
    {"DGECON",
     {n},
     true,
     [](data& x, int* info) {
       dgecon("1", &n, x.a.data(), &n, &half, x.b.data(), x.c.data(), x.j.data(), info);
     }},
    {"DGEQP3",
     {n},
     true,
     [](data& x, int* info) {
       dgeqp3(&n, &n, x.a.data(), &n, x.i.data(), x.b.data(), x.c.data(), &size, info);
     }},
    {"DGBCON",
     {n, n},
     true,
     [](data& x, int* info) {
       dgbcon("1", &n, &one, &one, x.a.data(), &n, x.i.data(), &half, x.b.data(), x.c.data(), x.j.data(),
              info);
     }},
    {"DSPCON",
     {n, n},
     true,
     [](data& x, int* info) {
       dspcon("U", &n, x.a.data(), x.i.data(), &half, x.b.data(), x.c.data(), x.j.data(), info);
     }},
    {"DSPEVX",
     {n, 5 * n},
     true,
     [](data& x, int* info) {
       dspevx("V", "A", "U", &n, x.a.data(), &half, &half, &one, &one, &half, &x.j[500], x.b.data(),
              x.c.data(), &n, x.d.data(), x.i.data(), x.j.data(), info);
     }},
    {"DGESDD",
     {8 * n},
     true,
     [](data& x, int* info) {
       dgesdd("N", &n, &n, x.a.data(), &n, x.b.data(), x.c.data(), &one, x.c.data(), &one, x.d.data(), &size,
              x.j.data(), info);
     }},
    {"DGEEVX",
     {2 * n - 2},
     true,
     [](data& x, int* info) {
       int *ilo = &x.j[500], *ihi = &x.j[501];
       dgeevx("B", "N", "N", "N", &n, x.a.data(), &n, &x.b[0], &x.b[n], &x.c[0], &one, &x.c[0], &one, ilo,
              ihi, &x.b[2 * n], &x.b[3 * n], nullptr, nullptr, x.d.data(), &size, x.j.data(), info);
     }},
    {"DDOTI",
     {n},
     false,
     [](data& x, int*) {
       EXPECT_EQ(0, ddoti(&n, x.b.data(), x.i.data(), x.c.data()) - (failing ? 0 : 6 * n));
     }},
    {"DAXPYI", {n}, false, [](data& x, int*) { daxpyi(&n, &half, x.b.data(), x.i.data(), x.c.data()); }},
    {"DGTHRZ", {n}, false, [](data& x, int*) { dgthrz(&n, x.b.data(), x.c.data(), x.i.data()); }},
};

TEST_F(NoMemory, IsReportedAndLeavesEverythingAlone) {
  for (const memory_case& c : kMemoryCases) {
    // First with memory: a request of its length for each array, nothing kept.
    data good;
    int info = 77;
    requests.clear();
    failing = 0;
    held = 0;
    c.entry(good, &info);
    EXPECT_EQ(c.has_info ? 0 : 77, info) << c.routine;
    EXPECT_EQ(0, held) << c.routine;
    EXPECT_FALSE(good == data() && std::string(c.routine) != "DDOTI") << c.routine << " must do something";
    ASSERT_GE(requests.size(), c.lengths.size()) << c.routine;
    requests.resize(c.lengths.size());
    std::sort(requests.begin(), requests.end());
    for (std::size_t k = 0; k < requests.size(); ++k) {
      EXPECT_GE(requests[k], 8 * static_cast<std::size_t>(c.lengths[k])) << c.routine;
    }
    for (std::size_t k = 1; k <= c.lengths.size(); ++k) {
      data x;
      info = 77;
      requests.clear();
      held = 0;
      failing = k;
      testing::internal::CaptureStdout();
      c.entry(x, &info);
      const std::string line = testing::internal::GetCapturedStdout();
      EXPECT_EQ(std::string("\nQEL ERROR: Parameter 1079 was incorrect on entry to ") + c.routine + "\n",
                line);
      EXPECT_EQ(c.has_info ? -1023 : 77, info) << c.routine;
      EXPECT_EQ(0, held) << c.routine << " leaks when request " << k << " fails";
      EXPECT_TRUE(x == data()) << c.routine << " touches an array";
    }
  }
  failing = 0;
}

TEST(Reports, BadArgumentsArePrinted) {
  double c = 5;
  const double x = 1;
  testing::internal::CaptureStdout();
  dgemm("X", "N", &one, &one, &one, &x, &x, &one, &x, &one, &x, &c, &one);
  EXPECT_EQ("\nQEL ERROR: Parameter 1 was incorrect on entry to DGEMM \n",
            testing::internal::GetCapturedStdout());
  EXPECT_EQ(5, c);
  testing::internal::CaptureStdout();
  const int minus = -1;
  int info = 0;
  dpptrf("U", &minus, &c, &info);
  EXPECT_EQ("\nQEL ERROR: Parameter 2 was incorrect on entry to DPPTRF\n",
            testing::internal::GetCapturedStdout());
  EXPECT_EQ(-2, info);
}

}  // namespace
}  // namespace qel::test
