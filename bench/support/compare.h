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

/// Registers one case, e.g. "ddot/n:1000", for every contender that has the symbol. body(fn, state) gets
/// the contender's function and must loop over the state.
template <class Fn>
void compare(const std::string& case_name, const char* symbol, work_per_call work,
             const std::function<void(Fn*, benchmark::State&)>& body) {
  remember_case(case_name);
  for (const contender& one : contenders()) {
    Fn* function = one.find<Fn>(symbol);
    if (function == nullptr) continue;
    benchmark::RegisterBenchmark((case_name + "/" + one.name()).c_str(), [=](benchmark::State& state) {
      body(function, state);
      const auto rate = benchmark::Counter::kIsIterationInvariantRate;
      if (work.flops > 0) state.counters["flop/s"] = benchmark::Counter(work.flops, rate);
      if (work.bytes > 0) state.counters["byte/s"] = benchmark::Counter(work.bytes, rate);
    })->UseRealTime();
  }
}

/// main of every benchmark: sets the defaults (9 repetitions, random interleaving), runs, prints the table of
/// ratios. Usual Google Benchmark flags work.
int run_comparison(int argc, char** argv);

}  // namespace qel::bench
