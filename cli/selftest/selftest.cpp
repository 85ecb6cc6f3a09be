// SPDX-License-Identifier: BSD-3-Clause
// qel selftest: runs the families' checks on every processor level that this processor has, a process of its
// own for each because the level is chosen once per process, and tells a verdict for each family.
#include <fmt/core.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <thread>

#include "cli/child_process.h"
#include "cli/commands.h"
#include "cli/progress.h"
#include "cli/selftest/levels.h"
#include "cli/selftest/recorder.h"
#include "service/serv.h"

namespace qel::cli {

using namespace selftest;
using nlohmann::ordered_json;

const std::vector<family>& selftest::families() {
  static const std::vector<family> all = {
      {"vectors", "BLAS level 1", check_vectors, false},
      {"matrix-vector", "BLAS level 2", check_matrix_vector, false},
      {"matrix", "BLAS level 3", check_matrix_products, false},
      {"lapack", "LAPACK", check_factorisations, false},
      {"fft", "Fourier transforms", check_transforms, false},
      {"conv", "Convolution", check_convolutions, true},
      {"sparse", "Sparse BLAS", check_sparse_products, false},
      {"direct", "Direct solver", check_direct_solver, false},
      {"nls", "Least squares", check_least_squares, false},
      {"vml", "Vector math", check_vector_math, true},
      {"random", "Random streams", check_random_streams, true},
  };
  return all;
}

namespace {

/// Starts a line of a child's report; what the library itself may print can't begin so.
constexpr char kMark = '\x1e';

bool is_chosen(const std::vector<std::string>& names, const family& one) {
  return names.empty() || std::find(names.begin(), names.end(), one.name) != names.end();
}

ordered_json as_json(const family_result& r) {
  ordered_json failures = ordered_json::array();
  for (const failure& f : r.failures)
    failures.push_back({{"routine", f.routine}, {"sizes", f.sizes}, {"error", f.error}, {"bound", f.bound}});
  return {{"family", r.family},           {"cases", r.cases},           {"worst", r.worst},
          {"worst_bound", r.worst_bound}, {"worst_case", r.worst_case}, {"failed", r.failed},
          {"failures", failures}};
}

/// A child's work: the checks on this process's level.
int run_checks(const selftest_options& options) {
  for (const family& one : families()) {
    if (!is_chosen(options.families, one) || (options.only_by_type && !one.by_type)) continue;
    recorder out(one.name);
    out.expect("level", std::to_string(serv_cpu_level()), serv_cpu_level() == options.child_level);
    try {
      one.check(out);
    } catch (const std::exception& error) {
      out.expect("exception", error.what(), false);
    }
    // Errors may be no numbers, which JSON does not know: they become null.
    fmt::print("{}{}\n", kMark, as_json(out.result()).dump());
    std::fflush(stdout);
  }
  return kDone;
}

/// All that was found of a family.
struct verdict {
  std::vector<int> levels;  ///< or types
  long cases = 0, failed = 0;
  double worst = 0, worst_bound = 0;
  std::string worst_case;
  ordered_json failures = ordered_json::array();
};

double number(const ordered_json& value) { return value.is_number() ? value.get<double>() : NAN; }

class examination {
 public:
  explicit examination(const selftest_options& options) : options_(options) {}

  void run() {
    constexpr size_t kSideBySide = 2;  // most of a check is one thread's
    const std::vector<level_run> runs = runs_of(options_.levels);
    progress_line progress("testing");
    std::atomic<size_t> next{0}, done{0};
    const auto work = [&] {
      for (size_t i; (i = next++) < runs.size();) {
        examine(runs[i]);
        progress.update(static_cast<double>(++done) / static_cast<double>(runs.size()));
      }
    };
    std::vector<std::thread> workers(std::min(kSideBySide, runs.size()));
    for (std::thread& worker : workers) worker = std::thread(work);
    for (std::thread& worker : workers) worker.join();
  }
  bool all_right() const {
    return std::all_of(verdicts_.begin(), verdicts_.end(),
                       [](const auto& v) { return v.second.failed == 0; });
  }
  void print_text(double seconds) const;
  void print_json(double seconds) const;

 private:
  void examine(const level_run& run);
  void add(const family& one, const level_run& run, const ordered_json& found);

  const selftest_options& options_;
  std::mutex mutex_;
  std::map<std::string, verdict> verdicts_;
};

void examination::examine(const level_run& run) {
  constexpr std::chrono::seconds kMost{120};  // for all families on one level
  child_options about;
  about.arguments = {own_path(), "selftest", "--child-level", std::to_string(run.level)};
  about.silent = true;
  for (const std::string& name : options_.families)
    about.arguments.insert(about.arguments.end(), {"--family", name});
  if (run.only_by_type) about.arguments.emplace_back("--only-by-type");
  about.environment = environment_of(run);
  child_process child(about);
  std::string line, end;
  std::map<std::string, ordered_json> found;
  const auto deadline = child_process::clock::now() + kMost;
  for (;;) {
    const child_process::line_state state = child.read_line(line, deadline);
    if (state == child_process::line_state::read) {
      if (line.empty() || line[0] != kMark) continue;
      ordered_json result = ordered_json::parse(line.substr(1), nullptr, false);
      if (!result.is_discarded()) found[result["family"]] = result;
      continue;
    }
    if (state == child_process::line_state::late) child.kill();
    const int outcome = child.wait();
    if (state == child_process::line_state::late) {
      end = fmt::format("not done after {} s", kMost.count());
    } else if (outcome < 0) {
      end = fmt::format("ended by signal {}", -outcome);
    } else if (outcome != 0) {
      end = fmt::format("ended with code {}", outcome);
    }
    break;
  }
  const std::lock_guard lock(mutex_);
  for (const family& one : families()) {
    if (!is_chosen(options_.families, one) || (run.only_by_type && !one.by_type)) continue;
    const auto result = found.find(one.name);
    if (result != found.end()) {
      add(one, run, result->second);
      continue;
    }
    // The first family without a result is the one that ended the process.
    recorder lost(one.name);
    lost.expect("process", end.empty() ? "no result" : end, false);
    add(one, run, as_json(lost.result()));
    end = "not run: the process had ended";
  }
}

void examination::add(const family& one, const level_run& run, const ordered_json& found) {
  verdict& v = verdicts_[one.name];
  v.levels.push_back(one.by_type ? run.type : run.level);
  v.cases += found["cases"].get<long>();
  v.failed += found["failed"].get<long>();
  const double worst = number(found["worst"]), bound = number(found["worst_bound"]);
  if (v.worst_case.empty() || !(worst * v.worst_bound <= v.worst * bound)) {
    v.worst = worst;
    v.worst_bound = bound;
    v.worst_case = found["worst_case"].get<std::string>();
  }
  for (ordered_json failure : found["failures"]) {
    failure[one.by_type ? "type" : "level"] = one.by_type ? run.type : run.level;
    v.failures.push_back(std::move(failure));
  }
}

std::string joined(std::vector<int> numbers) {
  std::sort(numbers.begin(), numbers.end());
  std::string text;
  for (const int n : numbers) text += fmt::format("{}{}", text.empty() ? "" : " ", n);
  return text;
}

void examination::print_text(double seconds) const {
  fmt::print("{:<20}{:<23}{:>8}   {:<34}verdict\n", "family", "levels", "cases", "worst error, in epsilons");
  for (const family& one : families()) {
    const auto found = verdicts_.find(one.name);
    if (found == verdicts_.end()) continue;
    const verdict& v = found->second;
    fmt::print("{:<20}{:<23}{:>8}   {:<34}{}\n", one.title, (one.by_type ? "types " : "") + joined(v.levels),
               v.cases, fmt::format("{:.3g} of {:.3g} allowed", v.worst, v.worst_bound),
               v.failed == 0 ? "ok" : "FAILED");
    if (v.failed == 0) continue;
    for (const ordered_json& f : v.failures) {
      fmt::print("    {} {}: {} {}: {:.3g}, allowed {:.3g}\n", one.by_type ? "type" : "level",
                 f[one.by_type ? "type" : "level"].get<int>(), f["routine"].get<std::string>(),
                 f["sizes"].get<std::string>(), number(f["error"]), number(f["bound"]));
    }
    if (v.failed > static_cast<long>(v.failures.size())) fmt::print("    {} cases in all\n", v.failed);
  }
  fmt::print("{} ({:.0f} s)\n", all_right() ? "all ok" : "FAILED", seconds);
}

void examination::print_json(double seconds) const {
  ordered_json list = ordered_json::array();
  for (const family& one : families()) {
    const auto found = verdicts_.find(one.name);
    if (found == verdicts_.end()) continue;
    const verdict& v = found->second;
    std::vector<int> levels = v.levels;
    std::sort(levels.begin(), levels.end());
    list.push_back(
        {{"family", one.name},
         {"verdict", v.failed == 0 ? "ok" : "failed"},
         {one.by_type ? "types" : "levels", levels},
         {"cases", v.cases},
         {"failed", v.failed},
         {"worst_case", {{"case", v.worst_case}, {"epsilons", v.worst}, {"allowed", v.worst_bound}}},
         {"failures", v.failures}});
  }
  const ordered_json report = {
      {"verdict", all_right() ? "ok" : "failed"}, {"seconds", seconds}, {"families", list}};
  fmt::print("{}\n", report.dump(2));
}

}  // namespace

int run_selftest(const selftest_options& options) {
  if (options.child_level >= 0) return run_checks(options);
  for (const std::string& name : options.families) {
    const bool known =
        std::any_of(families().begin(), families().end(), [&](const family& f) { return name == f.name; });
    if (known) continue;
    std::string names;
    for (const family& f : families()) names += (names.empty() ? "" : ", ") + std::string(f.name);
    throw std::invalid_argument(fmt::format("there is no family {}; there are {}", name, names));
  }
  const auto start = child_process::clock::now();
  examination exam(options);
  exam.run();
  const double seconds = std::chrono::duration<double>(child_process::clock::now() - start).count();
  options.json ? exam.print_json(seconds) : exam.print_text(seconds);
  return exam.all_right() ? kDone : kFailed;
}

}  // namespace qel::cli
