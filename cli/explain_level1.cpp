// SPDX-License-Identifier: BSD-3-Clause
// What the library would do with one call of a level-1 routine, from the function that decides it.
#include <fmt/core.h>

#include <cstdio>

#include "blas/level1/thread_rules.h"
#include "cli/commands.h"
#include "service/serv.h"

namespace qel::cli {
namespace {

/// The member of that name; false if no level forks the routine.
bool find_member(const std::string& name, level1_member& member) {
  for (int i = 0; i < kLevel1Members; ++i) {
    if (name != name_of(static_cast<level1_member>(i))) continue;
    member = static_cast<level1_member>(i);
    return true;
  }
  return false;
}

}  // namespace

int run_explain_level1(const explain_level1_options& options) {
  level1_facts facts{};
  if (!find_member(options.routine, facts.member)) {
    fmt::print(stderr, "qel: {} is not a level-1 routine with threads\n", options.routine);
    return kBadInput;
  }
  facts.n = options.n;
  facts.incx = options.incx;
  facts.incy = options.incy;
  facts.level = options.level >= 0 ? options.level : serv_cpu_level();
  facts.threads = options.threads > 0 ? options.threads : serv_threads_for_domain(1);
  facts.dynamic = !options.fixed_threads && serv_threads_dynamic() == 1;
  serv_cache_sizes(facts.caches);
  const level1_choice choice = choose_level1_threads(facts);
  fmt::print("{} of {} elements, strides {} and {}, level {}, {} threads allowed{}\n", options.routine,
             facts.n, facts.incx, facts.incy, facts.level, facts.threads,
             facts.dynamic ? "" : ", no dynamic adjustment");
  fmt::print("threads  {} ({})\n", choice.threads, choice.reason);
  return kDone;
}

}  // namespace qel::cli
