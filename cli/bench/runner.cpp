// SPDX-License-Identifier: BSD-3-Clause
#include "cli/bench/runner.h"

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>

#include "cli/child_process.h"

namespace qel::cli::bench {
namespace {

constexpr char kMark = '\x1e';  // as bench/support/compare.h has it

bool is_program(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error);
}

std::filesystem::path own_folder() { return std::filesystem::path(own_path()).parent_path(); }

child_options options_of(const bench_family& family, const std::string& program,
                         const run_settings& settings) {
  child_options options;
  options.arguments = {program, fmt::format("--benchmark_repetitions={}", settings.repetitions),
                       fmt::format("--benchmark_min_time={}", settings.least_seconds)};
  options.silent = true;
  const std::string threads = std::to_string(settings.threads);
  options.environment = {{"QEL_BENCH_REPORT", "1"},
                         {"OMP_NUM_THREADS", threads},
                         {"OPENBLAS_NUM_THREADS", threads},
                         {"BLIS_NUM_THREADS", threads},
                         {"QEL_VERBOSE", ""}};
  const char* const cases = settings.quick ? family.quick : family.ordinary;
  if (*cases != '\0') options.environment.emplace_back("QEL_BENCH_CASES", cases);
  if (const std::string library = installed_library(); !library.empty()) {
    options.environment.emplace_back("QEL_BENCH_SUBJECT", library);
  }
  if (!settings.all_peers) {
    // A name that no peer has stands for none of them: an empty variable counts as absent.
    std::string list = "none";
    for (const std::string& peer : settings.peers) list += ',' + peer;
    options.environment.emplace_back("QEL_BENCH_ONLY", list);
  }
  return options;
}

}  // namespace

run_settings settings_of(bool quick, int threads) {
  run_settings settings;
  settings.quick = quick;
  settings.threads = threads;
  if (quick) {
    settings.repetitions = 5;
    settings.least_seconds = 0.005;
  }
  return settings;
}

std::string find_program(const bench_family& family) {
  const std::filesystem::path here = own_folder();
  for (const std::filesystem::path& folder :
       {here, here / "../bench", here / "../" QEL_INSTALL_LIBEXECDIR "/qel"}) {
    const std::filesystem::path program = folder / family.program();
    if (is_program(program)) return program.lexically_normal().string();
  }
  return "";
}

std::string installed_library() {
  const std::filesystem::path library = own_folder() / "../" QEL_INSTALL_LIBDIR "/libqel.so.1";
  return is_program(library) ? library.lexically_normal().string() : "";
}

family_results run_family(const bench_family& family, const run_settings& settings,
                          const std::function<void(double)>& told) {
  constexpr std::chrono::hours kMost{2};
  constexpr double kCalibrations = 3;  // runs that find out how many iterations a repetition needs, about
  family_results results{family.name, family.title, family.about, "", 0, {}};
  const std::string program = find_program(family);
  if (program.empty()) {
    results.note = family.program() + " is not there: benchmarks were not built or not installed";
    return results;
  }
  const auto start = child_process::clock::now();
  child_process child(options_of(family, program, settings));
  double planned = 0, begun = 0;
  for (std::string line; child.read_line(line, start + kMost) == child_process::line_state::read;) {
    if (line.empty() || line[0] != kMark) continue;
    if (line == std::string(1, kMark) + "run") {
      if (planned > 0) told(std::min(++begun / (planned * (settings.repetitions + kCalibrations)), 0.99));
      continue;
    }
    const auto record = nlohmann::ordered_json::parse(line.substr(1), nullptr, false);
    if (record.is_object()) planned = record.value("planned_runs", planned);
    add_record(results, record);
  }
  const int outcome = child.wait();
  if (outcome < 0) results.note = fmt::format("{} was ended by signal {}", family.program(), -outcome);
  if (outcome > 0) results.note = fmt::format("{} ended with code {}", family.program(), outcome);
  // Peers that have a routine which the library does not offer under that name.
  std::erase_if(results.cases, [](const case_result& one) { return one.own() == nullptr; });
  results.seconds = std::chrono::duration<double>(child_process::clock::now() - start).count();
  return results;
}

}  // namespace qel::cli::bench
