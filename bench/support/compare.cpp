// SPDX-License-Identifier: BSD-3-Clause
#include "bench/support/compare.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <regex>
#include <vector>

namespace qel::bench {
namespace {

std::vector<std::string>& case_order() {
  static std::vector<std::string> order;
  return order;
}

int& registered_runs() {
  static int count = 0;
  return count;
}

bool reports() {
  static const bool asked = std::getenv("QEL_BENCH_REPORT") != nullptr;
  return asked;
}

void tell(const std::string& text) {
  fmt::print("{}{}\n", kReportMark, text);
  std::fflush(stdout);
}

/// Collects every repetition's time; the console shows progress as it is wont to.
class ratio_reporter : public benchmark::ConsoleReporter {
 public:
  ratio_reporter() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
      // "ddot/n:1000/QEL/real_time"
      std::string name = run.run_name.function_name;
      const size_t cut = name.rfind('/');
      samples& one = cases_[name.substr(0, cut)].by_contender[name.substr(cut + 1)];
      one.seconds.push_back(run.GetAdjustedRealTime() * 1e-9);
      one.iterations = run.iterations;
      for (const auto& [counter, value] : run.counters) one.rates[counter].push_back(value);
    }
  }

  void print_table() const {
    fmt::print("\n{:<34}{:>12}{:>16}   ratio to (above 1: {} is faster)\n", "case", "median", "rate",
               kSubject);
    for (const std::string& name : case_order()) {
      if (cases_.contains(name)) print_case(name, cases_.at(name));
    }
  }

  void tell_results() const {
    for (const std::string& name : case_order()) {
      if (!cases_.contains(name)) continue;
      for (const auto& [contender, found] : cases_.at(name).by_contender) {
        if (found.disturbed()) continue;
        const auto [least, most] = std::minmax_element(found.seconds.begin(), found.seconds.end());
        std::string rates;
        for (const auto& [counter, values] : found.rates)
          rates += fmt::format(",\"{}\":{:.6g}", counter, median(values));
        tell(
            fmt::format(R"({{"case":"{}","contender":"{}","seconds":{:.6g},"least":{:.6g},"most":{:.6g}{}}})",
                        name, contender, median(found.seconds), *least, *most, rates));
      }
    }
  }

 private:
  static double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<long>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
  }

  struct samples {
    std::vector<double> seconds;
    std::map<std::string, std::vector<double>> rates;
    benchmark::IterationCount iterations = 0;

    /// The one call by which the number of iterations was found stood still for much longer than a call
    /// takes, so that every repetition is a single cold call.
    bool disturbed() const {
      return iterations == 1 && median(seconds) < 0.1 * *std::max_element(seconds.begin(), seconds.end());
    }
  };
  struct one_case {
    std::map<std::string, samples> by_contender;
  };

  static void print_case(const std::string& name, const one_case& found) {
    const auto subject = found.by_contender.find(kSubject);
    if (subject == found.by_contender.end()) return;
    const double own = median(subject->second.seconds);
    std::string rate;
    for (const auto& [counter, values] : subject->second.rates) {
      rate = fmt::format("{:.2f} G{}", median(values) * 1e-9, counter);
    }
    fmt::print("{:<34}{:>9.3f} us{:>16}  ", name, own * 1e6, rate);
    for (const auto& [contender, values] : found.by_contender) {
      if (contender != kSubject) fmt::print(" {} {:.2f}", contender, median(values.seconds) / own);
    }
    fmt::print("\n");
  }

  std::map<std::string, one_case> cases_;
};

}  // namespace

void remember_case(const std::string& case_name) { case_order().push_back(case_name); }

bool is_wanted_case(const std::string& case_name) {
  static const char* const text = std::getenv("QEL_BENCH_CASES");
  static const std::regex wanted(text != nullptr ? text : "", std::regex::ECMAScript | std::regex::optimize);
  return text == nullptr || std::regex_search(case_name, wanted);
}

benchmark::internal::Benchmark* add_run(const std::string& case_name, const std::string& contender_name,
                                        const run_body& body) {
  if (!is_wanted_case(case_name) || !is_wanted_contender(contender_name)) return nullptr;
  ++registered_runs();
  return benchmark::RegisterBenchmark((case_name + '/' + contender_name).c_str(),
                                      [body](benchmark::State& state) {
                                        if (reports()) tell("run");
                                        body(state);
                                      })
      ->UseRealTime();
}

int run_comparison(int argc, char** argv) {
  // Before the caller's flags, so that those win.
  std::vector<std::string> arguments{argv[0], "--benchmark_repetitions=9",
                                     "--benchmark_enable_random_interleaving=true",
                                     "--benchmark_min_time=0.02"};
  for (int i = 1; i < argc; ++i) arguments.emplace_back(argv[i]);
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  int count = static_cast<int>(pointers.size());
  benchmark::Initialize(&count, pointers.data());
  if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) return 1;
  ratio_reporter reporter;
  if (reports()) tell(fmt::format(R"({{"planned_runs":{}}})", registered_runs()));
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reports() ? reporter.tell_results() : reporter.print_table();
  benchmark::Shutdown();
  return 0;
}

}  // namespace qel::bench
