// SPDX-License-Identifier: BSD-3-Clause
// Environment variables: lines NAME=value become the environment, all parsers read it. What no line begins
// is the text of the direct solver's configuration file.
#include <map>

#include "fuzz/support/file_in_memory.h"
#include "fuzz/support/input.h"
#include "service/cpu_facts.h"
#include "service/environment.h"
#include "service/thread_policy.h"
#include "service/threads.h"
#include "sparse/pardiso/ooc/configuration.h"

namespace {

std::map<std::string, std::string> variables;

const char* look_up(const char* name) {
  const auto found = variables.find(name);
  return found == variables.end() ? nullptr : found->second.c_str();
}

bool good_count(int count) { return count == qel::kUnset || count >= 1; }

void read_threads() {
  using namespace qel;
  thread_settings settings;
  read_thread_environment(settings);
  for (const int count : settings.count)
    fuzz::promise(good_count(count), "a thread count is unset or at least 1");
  fuzz::promise(settings.dynamic == 0 || settings.dynamic == 1, "dynamic is decided");
  fuzz::promise(good_count(settings.omp_count), "OpenMP's count");
  fuzz::promise(good_count(settings.ranks_per_node), "ranks");
  fuzz::promise(settings.mpi_level >= kUnset && settings.mpi_level <= 3, "MPI level");
  // What is set stays, whatever a second reading finds.
  const thread_settings once = settings;
  read_thread_environment(settings);
  for (int d = 0; d < kThreadDomains; ++d)
    fuzz::promise(settings.count[d] == once.count[d], "first value stays");
  for (const int cores : {-1, 0, 1, 7, INT_MAX}) {
    for (int domain = -1; domain <= kThreadDomains; ++domain) {
      thread_facts facts;
      facts.cores = cores;
      facts.omp_max_threads = cores;
      if (cores != 0)
        fuzz::promise(choose_threads(settings, domain, facts).threads >= 1, "at least one thread");
    }
  }
  counts_restricted_mask();
}

void read_store() {
  qel::pardiso::store_configuration configuration;
  qel::pardiso::read_store_configuration(configuration);
  for (const char* text :
       {configuration.path, configuration.configuration_path, configuration.configuration_file})
    qel::fuzz::promise(strnlen(text, qel::pardiso::kStoreTextLength + 1) <= qel::pardiso::kStoreTextLength,
                       "a text ends");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  variables.clear();
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::string file_text;
  for (size_t begin = 0; begin < size;) {
    const size_t end = std::min(text.find('\n', begin), size), equals = text.find('=', begin);
    const std::string name = equals < end ? text.substr(begin, equals - begin) : "";
    const bool variable =
        name.rfind("QEL_", 0) == 0 || name.rfind("OMP_", 0) == 0 || name.rfind("I_MPI", 0) == 0;
    if (variable) variables[name] = text.substr(equals + 1, end - equals - 1);
    if (!variable) file_text += text.substr(begin, end + 1 - begin);
    begin = end + 1;
  }
  // Whatever the lines say, the configuration is a file of ours.
  const qel::fuzz::file_in_memory file(reinterpret_cast<const uint8_t*>(file_text.data()), file_text.size());
  variables["QEL_PARDISO_OOC_CFG_PATH"] = file.folder();
  variables["QEL_PARDISO_OOC_CFG_FILE_NAME"] = file.name();

  const auto former = qel::replace_environment(look_up);
  read_threads();
  read_store();
  for (const auto& [name, value] : variables) {
    const int type = qel::cpu_type_override(value.c_str()), level = qel::cpu_level_override(value.c_str());
    qel::fuzz::promise(type <= 5, "a type that there is");
    qel::fuzz::promise(level == qel::kNoLevelOverride || (level >= 0 && level <= 4), "a level that there is");
    const int native = qel::native_request(value.c_str());
    qel::fuzz::promise(native >= 0 && native <= 2, "a native set");
  }
  qel::replace_environment(former);
  return 0;
}
