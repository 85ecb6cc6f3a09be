// SPDX-License-Identifier: BSD-3-Clause
// The pure parts of the trace: a record's line, to the letter, and the operations that a call stands for.
#include "service/verbose.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>

#include "service/flops.h"

namespace qel {
namespace {

/// A call from text: letters and numbers, separated by blanks.
traced_call call_of(const char* name, const std::string& arguments) {
  traced_call call;
  call.name = name;
  size_t at = 0;
  while ((at = arguments.find_first_not_of(' ', at)) != std::string::npos) {
    const size_t end = std::min(arguments.find(' ', at), arguments.size());
    const std::string word = arguments.substr(at, end - at);
    const bool is_number = word.find_first_of("0123456789") != std::string::npos;
    call.argument[call.argument_count++] =
        is_number ? traced_argument{'\0', std::stoll(word)} : traced_argument{word[0], 0};
    at = end;
  }
  return call;
}

traced_call call_of_numbers(const char* name, std::initializer_list<int> numbers) {
  traced_call call;
  call.name = name;
  for (const int number : numbers) call.argument[call.argument_count++] = {'\0', number};
  return call;
}

std::string line_of(const traced_call& call, size_t size = 512) {
  std::string text(size, '#');
  text.resize(format_traced_call(call, text.data(), size));
  EXPECT_LT(text.size(), size);
  return text;
}

TEST(TracedCall, Lines) {
  const struct {
    const char *name, *arguments;
    int level, threads;
    int64_t nanoseconds;
    double flops;
    bool refused;
    const char* want;
  } cases[] = {
      {"dgemm", "N t 1000 1000 1000 1000 1000 1000", 2, 8, 125000000, 2e9, false,
       "QEL_VERBOSE dgemm(N,t,1000,1000,1000,1000,1000,1000) level=2 threads=8 seconds=0.125000000 "
       "gflops=16.000\n"},
      {"ddot", "5 1 -2", 0, 1, 40, 10, false,
       "QEL_VERBOSE ddot(5,1,-2) level=0 threads=1 seconds=0.000000040 gflops=0.250\n"},
      {"dcopy", "-2147483648 2147483647 0", 6, 1, 3600000000001, 0, false,
       "QEL_VERBOSE dcopy(-2147483648,2147483647,0) level=6 threads=1 seconds=3600.000000001\n"},
      {"dgetrf", "-1 3 0", 4, 2, 1999, 0, true,
       "QEL_VERBOSE dgetrf(-1,3,0) level=4 threads=2 seconds=0.000001999 refused\n"},
      {"ddot", "5 1 1", 0, 1, 0, 10, false,
       "QEL_VERBOSE ddot(5,1,1) level=0 threads=1 seconds=0.000000000\n"},
      {"plain", "", 1, 1, 7, 0, false, "QEL_VERBOSE plain() level=1 threads=1 seconds=0.000000007\n"},
  };
  for (const auto& c : cases) {
    traced_call call = call_of(c.name, c.arguments);
    call.level = c.level;
    call.threads = c.threads;
    call.nanoseconds = c.nanoseconds;
    call.flops = c.flops;
    call.refused = c.refused;
    EXPECT_EQ(c.want, line_of(call));
  }
}

TEST(TracedCall, LettersThatBreakALineAreNotPrinted) {
  for (const char letter : {'\n', '\r', ' ', '\x7f', '\x80', '\xff'}) {
    traced_call call = call_of("dlange", "1 1");
    call.argument[0] = {letter, 0};
    EXPECT_EQ("QEL_VERBOSE dlange(?,1) level=0 threads=1 seconds=0.000000000\n", line_of(call));
  }
}

TEST(TracedCall, LinesAreCutToTheBufferAndEnded) {
  traced_call call = call_of("dgemm", "N N 1 2 3 4 5 6");
  const std::string whole = line_of(call);
  for (size_t size = 2; size <= whole.size() + 2; ++size) {
    const std::string cut = line_of(call, size);
    EXPECT_EQ(std::min(whole.size(), size - 1), cut.size());
    EXPECT_EQ(whole.substr(0, cut.size() - 1), cut.substr(0, cut.size() - 1));
    EXPECT_EQ('\n', cut.back());
  }
}

TEST(Flops, OfCalls) {
  const struct {
    const char *name, *arguments;
    double want;
  } cases[] = {
      {"sdot", "5 1 1", 10},
      {"zdotc", "5 1 1", 40},
      {"caxpy", "5 1 1", 40},
      {"dscal", "5 1", 5},
      {"zscal", "5 1", 20},
      {"csscal", "5 1", 10},
      {"zdscal", "5 1", 10},
      {"dasum", "5 1", 5},
      {"scasum", "5 1", 10},
      {"dzasum", "5 1", 10},
      {"dnrm2", "5 1", 10},
      {"dznrm2", "5 1", 20},
      {"daxpyi", "5", 10},
      {"zdotui", "5", 40},
      {"ddot", "-3 1 1", 0},
      {"dcopy", "5 1 1", 0},
      {"idamax", "5 1", 0},
      {"dgemv", "T 3 4 3 1 1", 24},
      {"cgemv", "n 3 4 3 1 1", 96},
      {"dsbmv", "U 4 1 2 1 1", 20},
      {"chbmv", "U 4 1 2 1 1", 80},
      {"dspmv", "L 3 1 1", 18},
      {"zspmv", "L 3 1 1", 72},
      {"zhpmv", "L 3 1 1", 72},
      {"dtrmv", "U N N 3 3 1", 9},
      {"stpmv", "U N N 3 1", 9},
      {"dgemm", "N T 2 3 4 2 3 2", 48},
      {"zgemm", "N T 2 3 4 2 3 2", 192},
      {"dtrsm", "l U N N 3 2 3 3", 18},
      {"dtrsm", "R U N N 3 2 2 3", 12},
      {"dgetrs", "N 3 2 3 3", 30},
      {"dgetri", "2 2 2", 10},
      {"dgetri", "2 2 -1", 0},
      {"dgesv", "3 2 3 3", 46},
      {"dposv", "U 2 1 2 2", 13},
      {"dgeqrf", "2 1 2 64", 11},
      {"dgeqrf", "1 2 2 64", 13},
      {"zgeqrf", "2 1 2 64", 44},
      {"dgeqrf", "2 1 2 -1", 0},
      {"dormqr", "L T 3 2 1 3 3 64", 26},
      {"dormqr", "R T 3 2 1 2 3 64", 26},
      {"zunmqr", "L C 3 2 1 3 3 64", 104},
      {"dorgqr", "3 2 1 3 64", 16},
      {"cungqr", "3 2 1 3 64", 64},
      {"dgels", "N 3 1 1 3 3 64", 28},
      {"dgels", "T 1 3 1 1 3 64", 28},
      {"dgels", "N 3 1 0 3 3 64", 0},
      {"dlange", "F 3 3 3", 0},
      {"QEL_Domatcopy", "C T 3 3 3 3", 0},
      {"gemm", "N N 2 3 4 2 3 2", 0},
      {"", "", 0},
      {"dgeqrf", "", 0},
  };
  for (const auto& c : cases) {
    EXPECT_NEAR(c.want, flops_of(call_of(c.name, c.arguments)), 1e-12 * c.want)
        << c.name << " " << c.arguments;
  }
}

TEST(Flops, OfABandAreItsCells) {
  for (int m = 1; m <= 6; ++m)
    for (int n = 1; n <= 6; ++n)
      for (int kl = 0; kl <= 7; ++kl)
        for (int ku = 0; ku <= 7; ++ku) {
          int cells = 0;
          for (int i = 0; i < m; ++i)
            for (int j = 0; j < n; ++j) cells += i - j <= kl && j - i <= ku;
          ASSERT_EQ(2 * cells, flops_of(call_of_numbers("dgbmv", {m, n, kl, ku})))
              << m << " " << n << " " << kl << " " << ku;
        }
}

/// Operations of plain loops: elimination with a reciprocal per column, and a factor by columns.
double counted_lu(int m, int n) {
  double count = 0;
  for (int k = 0; k < n; ++k) count += 1 + (m - k - 1) + 2.0 * (m - k - 1) * (n - k - 1);
  return count;
}
double counted_cholesky(int n) {
  double count = 0;
  for (int j = 0; j < n; ++j) count += 2.0 * j + 1 + (n - j - 1) * (2.0 * j + 1);
  return count;
}

TEST(Flops, OfFactorisationsAreThoseOfPlainLoops) {
  for (int n = 1; n <= 9; ++n) {
    for (int m = n; m <= 12; ++m)
      EXPECT_NEAR(counted_lu(m, n), flops_of(call_of_numbers("dgetrf", {m, n, m})), 1e-9);
    EXPECT_NEAR(counted_cholesky(n), flops_of(call_of_numbers("dposv", {n, 0, n, n})), 1e-9);
  }
}

}  // namespace
}  // namespace qel
