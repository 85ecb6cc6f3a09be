// SPDX-License-Identifier: BSD-3-Clause
#include "cli/variables.h"

#include <fmt/core.h>

#include "service/cpu_facts.h"
#include "service/environment.h"
#include "service/serv.h"
#include "service/thread_policy.h"

namespace qel::cli {
namespace {

variable_state look_up(const char* name, const char* purpose) {
  variable_state state;
  state.name = name;
  state.purpose = purpose;
  char value[256];
  state.set = read_environment(name, value, sizeof value);
  if (state.set) state.value = value;
  return state;
}

variable_state level_variable() {
  variable_state state = look_up("QEL_DEBUG_CPU_TYPE", "forces the processor level 0..4");
  const int forced = cpu_level_override(state.set ? state.value.c_str() : nullptr);
  state.ignored = state.set && forced == kNoLevelOverride;
  state.effect =
      forced == kNoLevelOverride ? "the level is chosen by the processor" : fmt::format("level {}", forced);
  return state;
}

variable_state type_variable() {
  variable_state state = look_up("QEL_DEBUG_VECTOR_TYPE", "forces the processor type 0..5");
  const int forced = cpu_type_override(state.set ? state.value.c_str() : nullptr);
  state.ignored = state.set && forced == -1;
  state.effect = forced == -1 ? "the type is chosen by the processor" : fmt::format("type {}", forced);
  return state;
}

variable_state native_variable() {
  variable_state state =
      look_up("QEL_NATIVE",
              "1 allows, avx2 limits, 0 forbids the native levels (AVX2, AVX-512) on any vendor's processor");
  const int request = native_request(state.set ? state.value.c_str() : nullptr);
  state.effect = request == 2   ? "native levels allowed"
                 : request == 1 ? "native levels allowed up to AVX2"
                 : request == 0 ? "native levels forbidden"
                                : "off in the library, on in the drop-ins and in this command";
  return state;
}

variable_state verbose_variable() {
  variable_state state =
      look_up("QEL_VERBOSE", "1 prints a line for every entry call and a table at the end");
  const bool on = state.set && state.value != "0";
  state.effect = on ? "every entry call is printed" : "calls are silent";
  return state;
}

/// A variable that only has to exist.
variable_state switch_variable(const char* name, const char* purpose, const char* on, const char* off) {
  variable_state state = look_up(name, purpose);
  state.effect = state.set ? on : off;
  return state;
}

/// One of the counts in which a value with anything but digits means 1 and 0 means nothing.
variable_state count_variable(const char* name, const char* purpose) {
  variable_state state = look_up(name, purpose);
  const int count = state.set ? parse_thread_count(state.value.c_str()) : 0;
  state.ignored = state.set && count < 1;
  state.effect = count >= 1 ? fmt::format("{} thread{}", count, count == 1 ? "" : "s") : "nothing asked for";
  return state;
}

variable_state domain_variable() {
  variable_state state =
      look_up("QEL_DOMAIN_NUM_THREADS", "thread counts by domain, as \"QEL_BLAS=2,QEL_FFT=4\"");
  int count[kThreadDomains] = {kUnset, kUnset, kUnset, kUnset};
  constexpr const char* kNames[kThreadDomains] = {"all", "BLAS", "FFT", "vector math"};
  if (state.set) apply_domain_list(state.value.c_str(), count);
  for (int d = 0; d < kThreadDomains; ++d) {
    if (count[d] > 0)
      state.effect += fmt::format("{}{}: {}", state.effect.empty() ? "" : ", ", kNames[d], count[d]);
  }
  state.ignored = state.set && state.effect.empty();
  if (state.effect.empty()) state.effect = "nothing asked for";
  return state;
}

variable_state dynamic_variable() {
  variable_state state = look_up("QEL_DYNAMIC", "FALSE or false: counts are taken as they stand");
  const bool dynamic = !state.set || parse_dynamic(state.value.c_str());
  state.ignored = state.set && dynamic;
  state.effect = dynamic ? "counts are limited to the physical cores, and to 1 inside parallel regions"
                         : "counts are taken as they stand";
  return state;
}

variable_state affinity_variable() {
  variable_state state =
      look_up("QEL_AFFINITY", "count: a restricted affinity mask's processors are counted");
  const bool counted = state.set && is_affinity_count(state.value.c_str());
  state.ignored = state.set && !counted;
  state.effect = counted ? "a restricted process uses its own processors, within its CPU quota"
                         : "a restricted process counts as one processor";
  return state;
}

variable_state rank_variable() {
  variable_state state = look_up("I_MPI_NUMBER_OF_MPI_PROCESSES_PER_NODE", "MPI processes on this node");
  thread_settings settings;
  read_thread_environment(settings);
  state.ignored = state.set && settings.ranks_per_node == kUnset;
  state.effect = settings.ranks_per_node > 0
                     ? fmt::format("{} ranks share the cores", settings.ranks_per_node)
                     : "not an MPI rank";
  return state;
}

variable_state mpi_level_variable() {
  variable_state state = look_up("I_MPI_THREAD_LEVEL", "threading level of MPI, 0..3");
  thread_settings settings;
  read_thread_environment(settings);
  state.effect = settings.mpi_level > 0 ? "a rank without wishes gets its share of the cores"
                                        : "a rank without wishes gets one thread";
  return state;
}

/// A variable of the direct solver that counts when it has one value.
variable_state solver_variable(const char* name, const char* purpose, const char* wanted, const char* on,
                               const char* off) {
  variable_state state = look_up(name, purpose);
  const bool holds = state.set && state.value == wanted;
  state.ignored = state.set && !holds;
  state.effect = holds ? on : off;
  return state;
}

/// A setting of factors in files, taken as it stands.
variable_state store_variable(const char* name, const char* purpose, const char* otherwise) {
  variable_state state = look_up(name, purpose);
  state.effect = state.set ? state.value : otherwise;
  return state;
}

}  // namespace

std::vector<variable_state> environment_variables() {
  const char* cache_purpose = "switches the buffer cache off, whatever the value";
  const char* cache_off = "every buffer comes from the platform allocator";
  const char* cache_on = "buffers are kept per thread";
  return {
      level_variable(),
      type_variable(),
      native_variable(),
      count_variable("QEL_NUM_THREADS", "thread count of all domains"),
      domain_variable(),
      dynamic_variable(),
      affinity_variable(),
      count_variable("OMP_NUM_THREADS", "thread count of OpenMP"),
      rank_variable(),
      mpi_level_variable(),
      verbose_variable(),
      switch_variable("QEL_VERBOSE_FILE", "where the lines of QEL_VERBOSE go", "appended to that file",
                      "to standard output"),
      switch_variable("QEL_DISABLE_FAST_MM", cache_purpose, cache_off, cache_on),
      switch_variable("QEL_MM_DISABLE", cache_purpose, cache_off, cache_on),
      switch_variable("QEL_FREE_AT_THREAD_EXIT", "a thread's buffers go at its end, whatever the value",
                      "a finished thread leaves nothing",
                      "a finished thread's buffers stay until QEL_FreeBuffers"),
      solver_variable("QEL_PARDISO_ORDERING", "auto: the direct solver takes the ordering with less fill",
                      "auto", "minimum degree or nested dissection, by counted fill",
                      "the ordering that iparm(2) names"),
      solver_variable("QEL_PARDISO_CHECK_PATTERN", "1: phases compare the pattern with that of the analysis",
                      "1", "a changed pattern is an error", "patterns are not compared"),
      store_variable("QEL_PARDISO_OOC_PATH", "prefix of the files that hold factors",
                     "ooc_temp, or what the configuration file says"),
      store_variable("QEL_PARDISO_OOC_MAX_CORE_SIZE", "megabytes that the direct solver may take",
                     "2000, or what the configuration file says"),
      store_variable("QEL_PARDISO_OOC_KEEP_FILE", "0: files of factors stay when they are done with",
                     "they are deleted, or what the configuration file says"),
      store_variable("QEL_PARDISO_OOC_CFG_PATH", "folder of the file that says the same", "."),
      store_variable("QEL_PARDISO_OOC_CFG_FILE_NAME", "its name", "pardiso_ooc.cfg"),
  };
}

std::string variables_page() {
  const environment_lookup former = replace_environment([](const char*) -> const char* { return nullptr; });
  const std::vector<variable_state> variables = environment_variables();
  replace_environment(former);
  std::string page =
      "<!-- Written by `qel info --variables`; a test compares. -->\n\n"
      "# Environment variables\n\n"
      "All that the library reads, each once, on first use; an empty value counts as absent. `qel info` "
      "shows\n"
      "what is set, what has an effect, and what is ignored.\n\n"
      "| variable | meaning | without it |\n|---|---|---|\n";
  for (const variable_state& v : variables)
    page += fmt::format("| `{}` | {} | {} |\n", v.name, v.purpose, v.effect);
  return page;
}

}  // namespace qel::cli
