// SPDX-License-Identifier: BSD-3-Clause
// Comparison of contenders on Google Benchmark: a case is registered once per contender, runs are repeated
// and interleaved at random, and a table of the medians with QEL's ratio to each peer follows the runs.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

#include "bench/support/contenders.h"

namespace qel::bench {

/// What one call of a case moves or computes; the table shows the rates.
struct work_per_call {
  double flops = 0;
  double bytes = 0;
};

/// Notes a case for the table, which keeps the order of registration.
void remember_case(const std::string& case_name);

/// Whether the case takes part: QEL_BENCH_CASES is a regular expression that its name must match somewhere.
/// Programs that make data when they register ask first; add_run asks in any case.
bool is_wanted_case(const std::string& case_name);

using run_body = std::function<void(benchmark::State&)>;
/// Registers one contender's run of a case, unless either is not wanted. body must loop over the state.
/// Null if nothing was registered.
benchmark::internal::Benchmark* add_run(const std::string& case_name, const std::string& contender_name,
                                        const run_body& body);

/// Registers one case, e.g. "ddot/n:1000", for every contender that has the symbol. body(fn, state) gets
/// the contender's function and must loop over the state.
template <class Fn>
void compare(const std::string& case_name, const char* symbol, work_per_call work,
             const std::function<void(Fn*, benchmark::State&)>& body) {
  if (!is_wanted_case(case_name)) return;
  remember_case(case_name);
  for (const contender& one : contenders()) {
    Fn* function = one.find<Fn>(symbol);
    if (function == nullptr) continue;
    add_run(case_name, one.name(), [=](benchmark::State& state) {
      body(function, state);
      const auto rate = benchmark::Counter::kIsIterationInvariantRate;
      if (work.flops > 0) state.counters["flop/s"] = benchmark::Counter(work.flops, rate);
      if (work.bytes > 0) state.counters["byte/s"] = benchmark::Counter(work.bytes, rate);
    });
  }
}

/// main of every benchmark: sets the defaults (9 repetitions, random interleaving), runs, prints the table of
/// ratios. Usual Google Benchmark flags work. With QEL_BENCH_REPORT set it tells a program that reads its
/// standard output, in lines that begin with kReportMark: first a record of what is planned, a line for
/// every run that starts, in the end a record for each case and contender.
inline constexpr char kReportMark = '\x1e';
int run_comparison(int argc, char** argv);

}  // namespace qel::bench
