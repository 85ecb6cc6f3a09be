// SPDX-License-Identifier: BSD-3-Clause
// qel info: what this build is, what it sees of the processor, which variables have an effect.
#include <fmt/core.h>

#include <array>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/process_facts.h"
#include "cli/variables.h"
#include "service/cpu_facts.h"
#include "service/serv.h"
#include "service/threads.h"

namespace qel::cli {
namespace {

struct processor_facts {
  std::string vendor, model;
  std::vector<std::string> features;
  int level = 0, type = 0;
  std::string reason;  ///< why this level
  std::vector<int> caches;
  processor_counts counts;
  std::string process_mask, system_mask;              ///< as lists, "0-3,8"
  std::array<thread_choice, kThreadDomains> threads;  ///< by domain
};
constexpr std::array kDomainNames{"all", "BLAS", "FFT", "VML"};

std::string brand_string() {
  const cpuid_reader cpuid = current_cpuid();
  if (cpuid(0x80000000u, 0).eax < 0x80000004u) return "";
  char text[49] = {};
  for (uint32_t leaf = 0; leaf < 3; ++leaf) {
    const cpuid_answer part = cpuid(0x80000002u + leaf, 0);
    std::memcpy(text + 16 * leaf, &part, 16);
  }
  const std::string brand(text);
  const size_t first = brand.find_first_not_of(' '), last = brand.find_last_not_of(' ');
  return first == std::string::npos ? "" : brand.substr(first, last - first + 1);
}

std::string cpu_list(const cpu_mask& mask) {
  std::string text;
  for (size_t first = 0; first < mask.size(); ++first) {
    if (!mask[first]) continue;
    size_t last = first;
    while (last + 1 < mask.size() && mask[last + 1]) ++last;
    text += fmt::format("{}{}", text.empty() ? "" : ",", first);
    if (last > first) text += fmt::format("-{}", last);
    first = last;
  }
  return text;
}

processor_facts look_at_processor() {
  struct named_bit {
    int bit;
    const char* name;
  };
  constexpr std::array<named_bit, 7> kFeatures{
      {{0, "SSE3"}, {9, "SSSE3"}, {12, "FMA"}, {19, "SSE4.1"}, {20, "SSE4.2"}, {27, "OSXSAVE"}, {28, "AVX"}}};
  constexpr std::array<named_bit, 5> kFeatures7{
      {{5, "AVX2"}, {16, "AVX512F"}, {17, "AVX512DQ"}, {30, "AVX512BW"}, {31, "AVX512VL"}}};
  const cpu_facts facts = read_cpu_facts(current_cpuid());
  processor_facts processor;
  processor.vendor = facts.vendor;
  processor.model = brand_string();
  for (const named_bit& feature : kFeatures) {
    if (facts.features_c >> feature.bit & 1) processor.features.emplace_back(feature.name);
  }
  for (const named_bit& feature : kFeatures7) {
    if (facts.features_7 >> feature.bit & 1) processor.features.emplace_back(feature.name);
  }
  processor.level = serv_cpu_level();
  processor.type = serv_cpu_type();
  const variable_state level_variable = environment_variables().front();
  if (level_variable.set && !level_variable.ignored) {
    processor.reason = "forced by QEL_DEBUG_CPU_TYPE";
  } else if (processor.level >= 5) {
    processor.reason = "native: by the processor's features, whatever its vendor";
  } else if (!is_selected_vendor(facts)) {
    processor.reason = "this vendor's processors get the generic kernels";
  } else {
    processor.reason = "chosen by the processor's features";
  }
  int sizes[5];
  serv_cache_sizes(sizes);
  for (int i = 1; i <= std::min(sizes[0], 4); ++i) processor.caches.push_back(sizes[i]);
  processor.counts = known_processors();
  cpu_mask process, system;
  kLinuxAffinity.masks(process, system);
  processor.process_mask = cpu_list(process);
  processor.system_mask = cpu_list(system);
  for (int domain = 0; domain < kThreadDomains; ++domain) {
    processor.threads[static_cast<size_t>(domain)] = explain_threads(domain);
  }
  return processor;
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

void print_text(const processor_facts& processor, const std::vector<variable_state>& variables) {
  fmt::print("qel         {}\n", QEL_VERSION);
  fmt::print("build       {}, {}\n", QEL_COMPILER, QEL_BUILD_TYPE);
  fmt::print("processor   {} ({})\n", processor.model.empty() ? "unknown model" : processor.model,
             processor.vendor);
  fmt::print("features    {}\n", joined(processor.features));
  fmt::print("level       {} ({})\n", processor.level, processor.reason);
  fmt::print("type        {}\n", processor.type);
  std::string caches;
  for (const int size : processor.caches)
    caches += fmt::format("{}{} KiB", caches.empty() ? "" : ", ", size / 1024);
  fmt::print("caches      {}\n", caches.empty() ? "not told by the processor" : caches);
  fmt::print("processors  {} logical, {} cores{}\n", processor.counts.logical, processor.counts.cores,
             processor.counts.restricted ? "; the process is restricted to some of the machine's" : "");
  fmt::print("affinity    {} of {} on line\n", processor.process_mask, processor.system_mask);
  for (size_t domain = 0; domain < kDomainNames.size(); ++domain) {
    fmt::print("threads     {:<4} {} ({})\n", kDomainNames[domain], processor.threads[domain].threads,
               processor.threads[domain].reason);
  }
  fmt::print("\nenvironment\n");
  for (const variable_state& v : variables) {
    fmt::print("  {:<40}{}{}\n", v.name, v.set ? fmt::format("\"{}\"", v.value) : "not set",
               v.ignored ? " (ignored)" : "");
    fmt::print("      {}; {}\n", v.purpose, v.effect);
  }
}

nlohmann::ordered_json as_json(const processor_facts& processor) {
  return {{"version", QEL_VERSION},
          {"build", {{"compiler", QEL_COMPILER}, {"type", QEL_BUILD_TYPE}}},
          {"processor",
           {{"vendor", processor.vendor},
            {"model", processor.model},
            {"features", processor.features},
            {"level", processor.level},
            {"level_reason", processor.reason},
            {"type", processor.type},
            {"cache_bytes", processor.caches},
            {"logical_processors", processor.counts.logical},
            {"cores", processor.counts.cores},
            {"affinity", processor.process_mask},
            {"on_line", processor.system_mask},
            {"restricted", processor.counts.restricted}}}};
}

void print_json(const processor_facts& processor, const std::vector<variable_state>& variables) {
  nlohmann::ordered_json report = as_json(processor);
  report["threads"] = nlohmann::ordered_json::object();
  report["environment"] = nlohmann::ordered_json::array();
  for (size_t domain = 0; domain < kDomainNames.size(); ++domain) {
    report["threads"][kDomainNames[domain]] = {{"count", processor.threads[domain].threads},
                                               {"reason", processor.threads[domain].reason}};
  }
  for (const variable_state& v : variables) {
    report["environment"].push_back({{"name", v.name},
                                     {"purpose", v.purpose},
                                     {"value", v.set ? nlohmann::json(v.value) : nlohmann::json(nullptr)},
                                     {"ignored", v.ignored},
                                     {"effect", v.effect}});
  }
  // A value may be any bytes; what is no UTF-8 is replaced.
  fmt::print("{}\n", report.dump(2, ' ', false, nlohmann::json::error_handler_t::replace));
}

}  // namespace

nlohmann::ordered_json process_facts() { return as_json(look_at_processor()); }

int run_info(const info_options& options) {
  if (options.variables) {
    fmt::print("{}", variables_page());
    return kDone;
  }
  const processor_facts processor = look_at_processor();
  const std::vector<variable_state> variables = environment_variables();
  (options.json ? print_json : print_text)(processor, variables);
  return kDone;
}

}  // namespace qel::cli
