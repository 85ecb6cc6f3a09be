// SPDX-License-Identifier: BSD-3-Clause
// What belongs to the caller stays as it was, whatever entry or class runs and with however many threads:
// settings of OpenMP, processor affinity, control bits of the floating-point units, signals and their
// handlers, limit of the stack, file mask, locale. The caller's settings are unusual ones, so that a return
// to defaults would show.
#include <gtest/gtest.h>
#include <immintrin.h>
#include <omp.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <clocale>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "qel/qel.h"
#include "tests/support/entry_table.h"
#include "tests/support/sanitized.h"
#include "tests/support/stateful_calls.h"

namespace qel::test {
namespace {

struct caller_state {
  int threads, dynamic, levels, limit, device, schedule, chunk;
  unsigned sse_control;
  uint16_t x87_control;
  cpu_set_t affinity;
  sigset_t signals;
  std::vector<void*> handlers;
  rlimit stack;
  mode_t mask;
  std::string locale;
};
caller_state state_now() {
  caller_state now{};
  now.threads = omp_get_max_threads();
  now.dynamic = omp_get_dynamic();
  now.levels = omp_get_max_active_levels();
  now.limit = omp_get_thread_limit();
  now.device = omp_get_default_device();
  omp_sched_t kind{};
  omp_get_schedule(&kind, &now.chunk);
  now.schedule = static_cast<int>(kind);
  constexpr unsigned kFlags = 0x3F;  // what has happened so far; arithmetic may set these
  now.sse_control = _mm_getcsr() & ~kFlags;
  asm volatile("fnstcw %0" : "=m"(now.x87_control));
  sched_getaffinity(0, sizeof now.affinity, &now.affinity);
  sigprocmask(SIG_SETMASK, nullptr, &now.signals);
  for (int number = 1; number < 32; ++number) {
    struct sigaction action {};
    sigaction(number, nullptr, &action);
    now.handlers.push_back(reinterpret_cast<void*>(action.sa_handler));
  }
  getrlimit(RLIMIT_STACK, &now.stack);
  umask(now.mask = umask(0));
  now.locale = std::setlocale(LC_ALL, nullptr);
  return now;
}
void expect_same(const caller_state& before, const char* what) {
  const caller_state after = state_now();
  EXPECT_EQ(after.threads, before.threads) << what;
  EXPECT_EQ(after.dynamic, before.dynamic) << what;
  EXPECT_EQ(after.levels, before.levels) << what;
  EXPECT_EQ(after.limit, before.limit) << what;
  EXPECT_EQ(after.device, before.device) << what;
  EXPECT_EQ(after.schedule, before.schedule) << what;
  EXPECT_EQ(after.chunk, before.chunk) << what;
  EXPECT_EQ(after.sse_control, before.sse_control) << what;
  EXPECT_EQ(after.x87_control, before.x87_control) << what;
  EXPECT_TRUE(CPU_EQUAL(&after.affinity, &before.affinity)) << what;
  EXPECT_EQ(std::memcmp(&after.signals, &before.signals, sizeof after.signals), 0) << what;
  EXPECT_EQ(after.handlers, before.handlers) << what;
  EXPECT_EQ(after.stack.rlim_cur, before.stack.rlim_cur) << what;
  EXPECT_EQ(after.mask, before.mask) << what;
  EXPECT_EQ(after.locale, before.locale) << what;
}

/// Large enough for regions of several threads.
void run_with_threads() {
  const int n = 600, nrhs = 60, one = 1;
  const double plus = 1;
  const auto size = static_cast<size_t>(n);
  std::vector<double> a(size * size), b(size * nrhs, 1), c(size * size), work(size * 64), tau(size);
  for (size_t i = 0; i < a.size(); ++i) a[i] = static_cast<double>(i * 7919 % 1009) / 1009;
  for (size_t i = 0; i < size; ++i) a[i * (size + 1)] += 600;
  std::vector<int> pivots(size);
  const int lwork = n * 64;
  int info = 0;
  dgemm("N", "T", &n, &n, &n, &plus, a.data(), &n, a.data(), &n, &plus, c.data(), &n);
  dgemv("T", &n, &n, &plus, a.data(), &n, b.data(), &one, &plus, tau.data(), &one);
  dgeqrf(&n, &n, c.data(), &n, tau.data(), work.data(), &lwork, &info);
  dgetrf(&n, &n, a.data(), &n, pivots.data(), &info);
  dgetrs("N", &n, &nrhs, a.data(), &n, pivots.data(), b.data(), &n, &info);
  dgetri(&n, a.data(), &n, pivots.data(), work.data(), &lwork, &info);
  dpptrs("L", &n, &nrhs, c.data(), b.data(), &n, &info);
}

TEST(caller_state, survives_every_entry_and_class) {
  setenv("QEL_DYNAMIC", "FALSE", 1);  // three threads, whatever the machine has
  qel_set_num_threads(3);
  omp_set_num_threads(5);
  omp_set_dynamic(0);
  omp_set_max_active_levels(kWithThreadSanitizer ? 1 : 2);
  omp_set_schedule(omp_sched_guided, 7);
  sigset_t blocked;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGUSR2);
  sigprocmask(SIG_BLOCK, &blocked, nullptr);
  const unsigned usual = _mm_getcsr();
  for (const unsigned control : {0u, 0x8040u, 0x6000u}) {  // plain; tiny numbers are zero; rounding to zero
    _mm_setcsr(usual | control);
    const caller_state before = state_now();
    for (const entry_row& row : entry_rows()) {
      for (const char* letter = row.letters; *letter != '\0'; ++letter) {
        entry_call(row, *letter, 40).make();
        expect_same(before, row.name);
      }
    }
    for (const life_row& row : life_rows()) {
      life one(40);
      row.run(one);
      expect_same(before, row.name);
    }
    run_with_threads();
    expect_same(before, "regions");
  }
  _mm_setcsr(usual);
}

}  // namespace
}  // namespace qel::test
