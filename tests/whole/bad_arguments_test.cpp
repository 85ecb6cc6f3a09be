// SPDX-License-Identifier: BSD-3-Clause
// What ends the process, and what does not. This program defines exit and its like itself, so that it sees
// every call of them. Each size of each entry and class is -1 once and each letter '?', and data are not
// finite: all calls return, in time. And the few places that do end the process.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <limits>

#include "qel/qel.h"
#include "tests/support/entry_table.h"
#include "tests/support/stateful_calls.h"

namespace {

bool watching = false;
constexpr int kTrapped = 90, kGood = 0;

[[noreturn]] void leave(int status) {
  syscall(SYS_exit_group, status);
  __builtin_unreachable();
}
[[noreturn]] void caught(const char* what, int status) {
  std::fflush(nullptr);
  dprintf(STDERR_FILENO, "%s(%d)\n", what, status);
  leave(kTrapped);
}

}  // namespace

#define QEL_SEEN_BY_ALL extern "C" __attribute__((visibility("default")))
#define QEL_NO_RETURN __attribute__((noreturn))
#define QEL_TRAP(name, exceptions)                                \
  QEL_SEEN_BY_ALL QEL_NO_RETURN void name(int status) exceptions; \
  void name(int status) exceptions {                              \
    if (watching) caught(#name, status);                          \
    std::fflush(nullptr);                                         \
    leave(status);                                                \
  }
QEL_TRAP(exit, noexcept)
QEL_TRAP(_exit, )
QEL_TRAP(quick_exit, noexcept)
#undef QEL_TRAP
QEL_SEEN_BY_ALL QEL_NO_RETURN void abort() noexcept;
void abort() noexcept {
  if (watching) caught("abort", 0);
  leave(134);
}
QEL_SEEN_BY_ALL int raise(int signal) noexcept;
int raise(int signal) noexcept {
  if (watching) caught("raise", signal);
  return kill(getpid(), signal);
}
QEL_SEEN_BY_ALL QEL_NO_RETURN void __assert_fail(const char* text, const char* file, unsigned line,
                                                 const char* function) noexcept;
void __assert_fail(const char* text, const char*, unsigned line, const char*) noexcept {
  caught(text, static_cast<int>(line));
}

namespace qel::test {
namespace {

#ifdef QEL_SLOW_BUILD
constexpr int kLargest = 40, kSeconds = 10;
#else
constexpr int kLargest = 200, kSeconds = 1;
#endif

/// How a child that ran body ended: exit status, or minus the signal.
template <class Body>
int ending_of(int seconds, const Body& body) {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    const rlimit limit{static_cast<rlim_t>(seconds), static_cast<rlim_t>(seconds)};
    setrlimit(RLIMIT_CPU, &limit);  // of this process's own time: other load makes no difference
    if (std::freopen("/dev/null", "w", stdout) == nullptr) leave(91);
    watching = true;
    body();
    leave(kGood);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

// First: the processor's type is decided only once.
TEST(EndOfTheProcess, ComesWhereItIsPromised) {
  const struct {
    const char* what;
    void (*run)();
  } rows[] = {
      {"an error of the simple solver without a termination level",
       [] {
         void* handle = nullptr;
         const int levels = 0, data = 1;
         dss_create(&handle, &levels);
         dss_factor(&handle, &levels, nullptr, &data);
       }},
      {"an unknown name in its statistics",
       [] {
         void* handle = nullptr;
         const int levels = QEL_DSS_TERM_LVL_FATAL;
         double value = 0;
         dss_create(&handle, &levels);
         dss_statistics(&handle, &levels, "colour", &value);
       }},
      {"a forced processor type without kernels",
       [] {
         setenv("QEL_DEBUG_VECTOR_TYPE", ".", 1);
         const double one = 1;
         double r = 0;
         vdDiv(1, &one, &one, &r);
       }},
  };
  for (const auto& row : rows) EXPECT_EQ(ending_of(kSeconds, row.run), kTrapped) << row.what;
}

TEST(BadArguments, ReturnFromEveryEntry) {
  int told = 0;
  for (const entry_row& row : entry_rows()) {
    for (const char* letter = row.letters; *letter != '\0'; ++letter) {
      const size_t scalars = entry_call(row, *letter, 12).scalars();
      for (size_t k = 0; k < scalars; ++k) {
        const int ending = ending_of(kSeconds, [&] {
          entry_call call(row, *letter, 12);
          call.spoil(k);
          call.make();
          if (call.info() < 0 || qel_last_error()->code != 0) leave(1);
        });
        EXPECT_TRUE(ending == kGood || ending == 1)
            << row.name << ' ' << *letter << ": size or letter " << k << ' ' << ending;
        told += ending == 1;
      }
    }
  }
  EXPECT_GT(told, 900) << "most bad arguments are reported";
}

TEST(BadArguments, ReturnFromHandlesAndClasses) {
  for (const life_row& row : life_rows()) {
    life counting(12);
    testing::internal::CaptureStdout();
    row.run(counting);
    testing::internal::GetCapturedStdout();
    for (int k = 0; k < counting.scalars(); ++k) {
      const int ending = ending_of(10 * kSeconds, [&] {
        life one(12);
        one.spoil(k);
        row.run(one);
      });
      EXPECT_EQ(ending, kGood) << row.name << ": size or option " << k;
    }
  }
}

const struct {
  const char* name;
  number_source numbers;
} kUnfit[] = {
    {"NaN everywhere", [](size_t) { return std::numeric_limits<double>::quiet_NaN(); }},
    {"infinity everywhere", [](size_t) { return INFINITY; }},
    {"a NaN in front", [](size_t k) { return k % 100003 == 0 ? NAN : usual_number(k); }},
    {"a few infinities",
     [](size_t k) { return k % 211 == 5   ? INFINITY
                           : k % 307 == 9 ? -INFINITY
                                          : usual_number(k); }},
    {"numbers that overflow", [](size_t k) { return usual_number(k) * 1e308; }},
};

TEST(NotFinite, EveryEntryEndsInTime) {
  for (const entry_row& row : entry_rows()) {
    for (const char* letter = row.letters; *letter != '\0'; ++letter) {
      for (const auto& unfit : kUnfit) {
        const int ending =
            ending_of(kSeconds, [&] { entry_call(row, *letter, kLargest, unfit.numbers).make(); });
        EXPECT_EQ(ending, kGood) << row.name << ' ' << *letter << ": " << unfit.name;
      }
    }
  }
}

TEST(NotFinite, EveryHandleAndClassEndsInTime) {
  for (const life_row& row : life_rows()) {
    for (const auto& unfit : kUnfit) {
      const int ending = ending_of(kSeconds, [&] {
        life one(kLargest, unfit.numbers);
        row.run(one);
      });
      EXPECT_EQ(ending, kGood) << row.name << ": " << unfit.name;
    }
  }
}

}  // namespace
}  // namespace qel::test
