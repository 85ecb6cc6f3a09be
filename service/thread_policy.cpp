// SPDX-License-Identifier: BSD-3-Clause
#include "service/thread_policy.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace qel {
namespace {

constexpr size_t kValueSize = 256;

bool all_digits(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// The number of a text of digits; the largest int if it is larger.
int number_of(const char* digits) {
  return static_cast<int>(std::min<unsigned long long>(std::strtoull(digits, nullptr, 10), INT_MAX));
}

/// A cursor over a text, with the two moves that the lists need.
struct text_cursor {
  std::string_view rest;
  void skip(std::string_view any_of) {
    rest.remove_prefix(std::min(rest.find_first_not_of(any_of), rest.size()));
  }
  std::string_view take_until(std::string_view any_of) {
    const std::string_view taken = rest.substr(0, rest.find_first_of(any_of));
    rest.remove_prefix(taken.size());
    return taken;
  }
};

/// Stores a count that is at least 1 into a target that has none.
void fill(int& target, int count) {
  if (target < 0 && count >= 1) target = count;
}

}  // namespace

int parse_thread_count(const char* text) { return *text == '\0' || !all_digits(text) ? 1 : number_of(text); }

void apply_domain_list(const char* list, int count[kThreadDomains]) {
  constexpr const char* kNames[kThreadDomains] = {"QEL_ALL", "QEL_BLAS", "QEL_FFT", "QEL_VML"};
  text_cursor cursor{list};
  for (;;) {
    cursor.skip(" ,;:\"'");
    const std::string_view name = cursor.take_until("=\"' ");
    if (name.empty()) return;
    cursor.skip(" =");
    char number[kValueSize] = {};
    const std::string_view text = cursor.take_until(" ,;:\"'");
    text.copy(number, sizeof number - 1);
    if (!cursor.rest.empty()) cursor.rest.remove_prefix(1);
    for (int domain = 0; domain < kThreadDomains; ++domain) {
      if (name == kNames[domain]) fill(count[domain], parse_thread_count(number));
    }
  }
}

bool is_affinity_count(const char* text) { return std::strcmp(text, "count") == 0; }

bool parse_dynamic(const char* text) {
  text_cursor cursor{text};
  cursor.skip(" \"'");
  const std::string_view word = cursor.take_until(" \"'");
  return word != "FALSE" && word != "false";
}

void read_thread_environment(thread_settings& settings) {
  char value[kValueSize];
  if (read_environment("QEL_NUM_THREADS", value, sizeof value)) {
    fill(settings.count[kDomainAll], parse_thread_count(value));
  }
  if (read_environment("QEL_DOMAIN_NUM_THREADS", value, sizeof value))
    apply_domain_list(value, settings.count);
  if (settings.dynamic == kUnset) {
    settings.dynamic = read_environment("QEL_DYNAMIC", value, sizeof value) && !parse_dynamic(value) ? 0 : 1;
  }
  if (read_environment("OMP_NUM_THREADS", value, sizeof value)) {
    const int count = parse_thread_count(value);
    if (count >= 1) settings.omp_count = count;
  }
  // Unlike the counts above, these two take no meaning from a malformed value.
  if (read_environment("I_MPI_NUMBER_OF_MPI_PROCESSES_PER_NODE", value, sizeof value) && all_digits(value)) {
    const int ranks = number_of(value);
    if (ranks > 0) settings.ranks_per_node = ranks;
  }
  if (read_environment("I_MPI_THREAD_LEVEL", value, sizeof value)) {
    settings.mpi_level = 0;
    if (all_digits(value) && number_of(value) <= 3) settings.mpi_level = number_of(value);
  }
}

thread_choice choose_threads(const thread_settings& settings, int domain, const thread_facts& facts) {
  if (facts.forked_child) return {1, "in a forked process"};
  const bool dynamic = settings.dynamic == 1;
  if (dynamic && facts.in_parallel) return {1, "already in a parallel region"};

  thread_choice wish{std::max(facts.omp_max_threads, 1), "OpenMP's count"};
  bool is_explicit = true;
  if (facts.local_count > 0) {
    wish = {facts.local_count, "set for this thread"};
  } else if (domain > kDomainAll && domain < kThreadDomains && settings.count[domain] > 0) {
    wish = {settings.count[domain], "set for the domain"};
  } else if (settings.count[kDomainAll] > 0) {
    wish = {settings.count[kDomainAll], "set for all domains"};
  } else {
    is_explicit = false;
  }
  if (!dynamic) return wish;

  // As unsigned: an unknown number of cores does not limit.
  if (static_cast<unsigned>(wish.threads) > static_cast<unsigned>(facts.cores)) {
    wish = {facts.cores, "limited to the physical cores"};
  }
  if (settings.process_mode == 0) return {1, "process mode 0"};
  if (settings.process_mode == 1) return wish;
  const bool bare_rank = settings.ranks_per_node > 0 && !is_explicit && settings.omp_count < 1;
  if (!bare_rank) return wish;
  if (settings.mpi_level <= 0) return {1, "one of several MPI ranks without thread support"};
  return {std::max(facts.cores / settings.ranks_per_node, 1), "this MPI rank's share of the cores"};
}

}  // namespace qel
