// SPDX-License-Identifier: BSD-3-Clause
#include "cli/bench/heading.h"

#include <fmt/chrono.h>
#include <fmt/core.h>
#include <sys/utsname.h>

#include <cmath>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <set>

#include "cli/process_facts.h"
#include "service/serv.h"

namespace qel::cli::bench {
namespace {

using nlohmann::ordered_json;

/// Megahertz by the system's own words, at most and now; 0 where it says nothing.
double megahertz_at_most() {
  std::ifstream file("/sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq");
  double kilohertz = 0;
  return file >> kilohertz ? kilohertz / 1000 : 0;
}
double megahertz_now() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("cpu MHz")) return std::strtod(line.c_str() + line.find(':') + 1, nullptr);
  }
  return 0;
}

/// The version of the installed Debian package that a peer comes from; empty if that can't be told.
std::string version_of(const std::string& peer) {
  static const std::pair<const char*, const char*> kPackages[] = {
      {"OpenBLAS", "libopenblas0-openmp"}, {"BLIS", "libblis4-openmp"}, {"reference", "libblas3"},
      {"FFTW", "libfftw3-double3"},        {"Eigen", "libeigen3-dev"},  {"CHOLMOD", "libcholmod[0-9]*"},
      {"UMFPACK", "libumfpack[0-9]*"},     {"KLU", "libklu[0-9]*"},     {"SuperLU", "libsuperlu[0-9]*"},
      {"MUMPS", "libmumps-seq-[0-9]*"},    {"GSL", "libgsl[0-9]*"},     {"cminpack", "libcminpack1*"},
      {"Ceres", "libceres[0-9]*"}};
  for (const auto& [name, package] : kPackages) {
    if (peer != name) continue;
    const std::string command = fmt::format("dpkg-query -W -f '${{Version}}\\n' '{}' 2>/dev/null", package);
    FILE* const answer = popen(command.c_str(), "r");
    if (answer == nullptr) return "";
    char text[128] = {};
    // A pattern may fit packages that are not installed: these have no version.
    std::string version;
    while (version.empty() && std::fgets(text, sizeof text, answer) != nullptr) {
      version = text;
      while (!version.empty() && version.back() == '\n') version.pop_back();
    }
    pclose(answer);
    return version;
  }
  return "";
}

/// A limit is what the best repetition reached: the others were disturbed.
double machine_rate(const family_results& machine, const char* name, double contender_result::*rate) {
  for (const case_result& one : machine.cases) {
    const contender_result* const own = one.own();
    if (one.name == name && own != nullptr)
      return own->least > 0 ? own->*rate * own->seconds / own->least : own->*rate;
  }
  return 0;
}

}  // namespace

ordered_json heading_of(const run_settings& settings, const family_results& machine,
                        const std::vector<family_results>& families) {
  ordered_json facts = process_facts();
  utsname system{};
  uname(&system);
  facts["processor"]["megahertz_at_most"] = megahertz_at_most();
  facts["processor"]["megahertz_now"] = std::round(megahertz_now());
  int caches[5];
  serv_native_cache_sizes(caches);
  facts["processor"]["cache_bytes"] = ordered_json::array();
  for (int i = 1; i <= std::min(caches[0], 4); ++i) facts["processor"]["cache_bytes"].push_back(caches[i]);
  facts["processor"]["peak_flops"] = machine_rate(machine, "peak", &contender_result::flops);
  facts["processor"]["read_bytes"] = machine_rate(machine, "read", &contender_result::bytes);
  facts["processor"]["copy_bytes"] = machine_rate(machine, "copy", &contender_result::bytes);
  ordered_json heading = {{"kind", "qel bench"},
                          {"date", fmt::format("{:%Y-%m-%d %H:%M}", fmt::localtime(std::time(nullptr)))},
                          {"version", facts["version"]},
                          {"build", facts["build"]},
                          {"system", fmt::format("{} {}", system.sysname, system.release)},
                          {"processor", facts["processor"]},
                          {"settings",
                           {{"quick", settings.quick},
                            {"threads", settings.threads},
                            {"repetitions", settings.repetitions},
                            {"seconds_of_a_repetition", settings.least_seconds}}},
                          {"peers", ordered_json::array()}};
  std::set<std::string> seen;
  for (const family_results& family : families) {
    for (const case_result& one : family.cases) {
      for (const contender_result& r : one.results) {
        const std::string library = r.contender.substr(0, r.contender.find('-'));
        if (role_of(r.contender) == contender_role::peer && seen.insert(library).second)
          heading["peers"].push_back({{"name", library}, {"version", version_of(library)}});
      }
    }
  }
  return heading;
}

}  // namespace qel::cli::bench
