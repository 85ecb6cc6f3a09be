// SPDX-License-Identifier: BSD-3-Clause
// The trace from outside: what a program gets to see with the library's variables set. Each case is a process
// of its own, since the environment is asked once and the table comes at the process's end.
#include <regex.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/entry/support.h"
#include "tests/support/in_child.h"

namespace qel::test {
namespace {

/// Runs body with the variables set (null: absent) up to its process's orderly end.
template <class Body>
child_result traced(const char* verbose, const char* file, Body body) {
  return in_child([&]() -> int {
    unsetenv("QEL_VERBOSE");
    unsetenv("QEL_VERBOSE_FILE");
    if (verbose != nullptr) setenv("QEL_VERBOSE", verbose, 1);
    if (file != nullptr) setenv("QEL_VERBOSE_FILE", file, 1);
    setenv("QEL_DEBUG_CPU_TYPE", "1", 1);
    body();
    std::exit(0);
  });
}

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// The groups of an extended regular expression, from 1, for each line that it matches whole.
using groups = std::vector<std::string>;
std::vector<groups> matches(const char* pattern, const std::string& output) {
  constexpr size_t kGroups = 5;
  regex_t compiled;
  EXPECT_EQ(0, regcomp(&compiled, pattern, REG_EXTENDED)) << pattern;
  std::vector<groups> found;
  for (const std::string& line : lines_of(output)) {
    regmatch_t at[kGroups];
    if (regexec(&compiled, line.c_str(), kGroups, at, 0) != 0) continue;
    groups texts;
    for (size_t i = 1; i < kGroups; ++i) {
      const auto start = static_cast<size_t>(at[i].rm_so);
      texts.push_back(at[i].rm_so < 0 ? "" : line.substr(start, static_cast<size_t>(at[i].rm_eo) - start));
    }
    found.push_back(texts);
  }
  regfree(&compiled);
  return found;
}

/// The call lines' part before the measured figures, with what comes after them.
std::vector<std::string> calls_in(const std::string& output) {
  std::vector<std::string> calls;
  for (const groups& line : matches("^QEL_VERBOSE ([^ ]+[)]) level=1 threads=[0-9]+ seconds=[0-9]+[.][0-9]{9}"
                                    "( gflops)?(=[0-9]+[.][0-9]{3})?( refused)?$",
                                    output)) {
    calls.push_back(line[0] + line[1] + line[3]);
  }
  return calls;
}

struct table_line {
  long calls;
  double seconds;
  std::string rate, name;
};
std::vector<table_line> table_in(const std::string& output) {
  std::vector<table_line> table;
  for (const groups& line :
       matches("^QEL_VERBOSE +([0-9]+) +([0-9]+[.][0-9]{9}) +(-|[0-9]+[.][0-9]{3})  ([^ ]+)$", output)) {
    table.push_back({std::stol(line[0]), std::stod(line[1]), line[2], line[3]});
  }
  return table;
}

double dot_of_three() {
  const double x[3] = {1, 2, 3};
  return call(ddot, 3, x, 1, x, 1);
}

TEST(Verbose, IsOffUnlessAskedFor) {
  for (const char* value : {static_cast<const char*>(nullptr), "", "0"}) {
    EXPECT_EQ("", traced(value, nullptr, dot_of_three).output) << (value != nullptr ? value : "absent");
  }
  for (const char* value : {"1", "yes", "00"}) {
    EXPECT_EQ(std::vector<std::string>{"ddot(3,1,1) gflops"},
              calls_in(traced(value, nullptr, dot_of_three).output))
        << value;
  }
}

struct shape_case {
  const char* want;
  void (*entry)();
};
const shape_case kShapeCases[] = {
    {"zdotc(2,1,-1) gflops",
     [] {
       complex16 result;
       const complex16 x[2] = {};
       call(zdotc, result, 2, x, 1, x, -1);
     }},
    {"idamax(1,1)", [] { call(idamax, 1, 2.0, 1); }},
    {"dgemv(t,2,1,3,1,-2) gflops",
     [] {
       const double a[8] = {};
       double y[8] = {};
       call(dgemv, 't', 2, 1, 1.0, a, 3, a, 1, 0.0, y, -2);
     }},
    {"dgemm(X,N,1,1,1,1,1,1) refused",
     [] {
       double c = 0;
       call(dgemm, 'X', 'N', 1, 1, 1, 1.0, 1.0, 1, 1.0, 1, 0.0, c, 1);
     }},
    {"cspmv(u,2,0,1) refused",
     [] {
       const complex8 x[4] = {}, one = {1, 0};
       complex8 y[2] = {};
       call(cspmv, 'u', 2, one, x, x, 0, one, y, 1);
     }},
    {"dlange(F,1,1,1)", [] { call(dlange, 'F', 1, 1, 2.0, 1, nullptr); }},
    {"QEL_Domatcopy(C,T,2,1,2,3)",
     [] {
       const double a[2] = {};
       double b[6] = {};
       QEL_Domatcopy('C', 'T', 2, 1, 1.0, a, 2, b, 3);
     }},
    {"dgesv(1,1,2,3) gflops",
     [] {
       double a[2] = {2}, b[3] = {1};
       int pivot, info;
       call(dgesv, 1, 1, a, 2, pivot, b, 3, info);
     }},
    {"dposv(L,1,-1,1,1) refused",
     [] {
       double a = 1, b = 1;
       int info;
       call(dposv, 'L', 1, -1, a, 1, b, 1, info);
     }},
    {"dgeqrf(2,1,2,-1)",
     [] {
       double a[2] = {}, tau, work;
       int info;
       call(dgeqrf, 2, 1, a, 2, tau, work, -1, info);
     }},
    {"dspevx(N,A,U,1,1,1,1)",
     [] {
       double ap = 1, w, z, work[8];
       int m, iwork[5], ifail, info;
       call(dspevx, 'N', 'A', 'U', 1, ap, 0.0, 0.0, 1, 1, 0.0, m, w, z, 1, work, iwork, ifail, info);
     }},
    {"ddoti(1) gflops", [] { call(ddoti, 1, 2.0, 1, 2.0); }},
    {"zdotui(0)",
     [] {
       complex16 result, x = {};
       call(zdotui, result, 0, x, 1, x);
     }},
};

TEST(Verbose, TellsTheArgumentsOfEveryShape) {
  for (const shape_case& c : kShapeCases) {
    const child_result child = traced("1", nullptr, c.entry);
    EXPECT_EQ(0, child.exit_status) << c.want;
    EXPECT_EQ(std::vector<std::string>{c.want}, calls_in(child.output)) << child.output;
  }
}

TEST(Verbose, TellsTheThreadsThatTheCallMayUse) {
  const child_result child = traced("1", nullptr, [] {
    qel_set_num_threads_local(1);
    dot_of_three();
  });
  EXPECT_NE(std::string::npos, child.output.find(" threads=1 ")) << child.output;
}

TEST(Verbose, IsSwitchedByACall) {
  const child_result child = traced("0", nullptr, [] {
    int seen = qel_verbose(5);
    dot_of_three();
    seen = 10 * seen + qel_verbose(0);
    call(dnrm2, 1, 2.0, 1);
    seen = 10 * seen + qel_verbose(1);
    call(dasum, 1, 2.0, 1);
    seen = 10 * seen + qel_verbose(1);
    std::printf("former states %03d\n", seen);
  });
  EXPECT_EQ((std::vector<std::string>{"ddot(3,1,1) gflops", "dasum(1,1) gflops"}), calls_in(child.output));
  EXPECT_EQ(2u, table_in(child.output).size()) << child.output;
  EXPECT_NE(std::string::npos, child.output.find("former states 101\n")) << "off, on, off, on: 0 1 0 1";
}

TEST(Verbose, EndsWithATableBySeconds) {
  const child_result child = traced("1", nullptr, [] {
    const std::vector<double> a(120 * 120, 1.0);
    std::vector<double> c(120 * 120);
    call(dnrm2, 1, 2.0, 1);
    for (int i = 0; i < 3; ++i) dot_of_three();
    call(idamax, 1, 2.0, 1);
    for (int i = 0; i < 2; ++i)
      call(dgemm, 'N', 'N', 120, 120, 120, 1.0, a.data(), 120, a.data(), 120, 0.0, c.data(), 120);
    call(dgemm, 'N', 'N', -1, 120, 120, 1.0, a.data(), 120, a.data(), 120, 0.0, c.data(), 120);
  });
  const std::vector<table_line> table = table_in(child.output);
  ASSERT_EQ(4u, table.size()) << child.output;
  EXPECT_EQ("dgemm", table[0].name) << "the dearest first";
  EXPECT_GT(std::stod(table[0].rate), 0.0);
  for (size_t i = 1; i < table.size(); ++i) EXPECT_GE(table[i - 1].seconds, table[i].seconds);
  for (const table_line& row : table) {
    EXPECT_EQ(row.name == "dgemm" || row.name == "ddot" ? 3 : 1, row.calls) << row.name;
    EXPECT_EQ(row.name == "idamax", row.rate == "-") << row.name;
  }
}

class VerboseFile : public testing::Test {
 protected:
  VerboseFile() {
    const int descriptor = mkstemp(path);
    if (descriptor >= 0) close(descriptor);
  }
  ~VerboseFile() override { unlink(path); }
  std::string content() const {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  char path[32] = "/tmp/qel_verbose_XXXXXX";
};

TEST_F(VerboseFile, IsAppendedTo) {
  std::ofstream(path) << "mine\n";
  for (size_t run = 1; run <= 2; ++run) {
    EXPECT_EQ("", traced("1", path, dot_of_three).output);
    EXPECT_EQ("mine\n", content().substr(0, 5));
    EXPECT_EQ(run, calls_in(content()).size());
    EXPECT_EQ(run, table_in(content()).size());
  }
}

TEST_F(VerboseFile, HasTheLinesOfAProcessThatIsKilled) {
  const child_result child = in_child([this] {
    setenv("QEL_VERBOSE_FILE", path, 1);
    setenv("QEL_DEBUG_CPU_TYPE", "1", 1);
    qel_verbose(1);
    dot_of_three();
    std::abort();
    return 0;
  });
  EXPECT_EQ(-1, child.exit_status);
  EXPECT_EQ(1u, calls_in(content()).size());
}

TEST_F(VerboseFile, ThatCannotBeOpenedLeavesStandardOutput) {
  EXPECT_EQ(1u, calls_in(traced("1", "/nonexistent/trace", dot_of_three).output).size());
}

TEST(Verbose, LinesOfManyThreadsStayWhole) {
  constexpr int kThreads = 8, kCalls = 200;
  const child_result child = traced("1", nullptr, [] {
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
      threads.emplace_back([t] {
        const std::vector<double> x(16, 1.0);
        for (int i = 0; i < kCalls; ++i) {
          if (t % 2 == 0) call(ddot, t, x.data(), 1, x.data(), 1);
          if (t % 2 == 1) call(dasum, t, x.data(), 1);
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
  });
  EXPECT_EQ(0, child.exit_status);
  EXPECT_EQ(size_t{kThreads * kCalls}, calls_in(child.output).size());
  const std::vector<table_line> table = table_in(child.output);
  EXPECT_EQ(size_t{kThreads * kCalls} + table.size() + 1, lines_of(child.output).size()) << "and the heading";
  ASSERT_EQ(2u, table.size());
  for (const table_line& row : table) EXPECT_EQ(kThreads * kCalls / 2, row.calls) << row.name;
}

}  // namespace
}  // namespace qel::test
