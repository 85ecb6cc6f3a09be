// SPDX-License-Identifier: BSD-3-Clause
#include "cli/explain/dense_question.h"

#include <algorithm>

namespace qel::cli {
namespace {

constexpr std::string_view kLetters = "sdcz";

}  // namespace

element_type dense_question::element() const { return static_cast<element_type>(kLetters.find(type)); }

dense_processor dense_question::processor(const asked_machine& machine) const {
  dense_processor processor = this_processor();
  if (machine.level >= 0) processor.level = machine.level;
  if (!caches.empty()) {
    std::fill(std::begin(processor.caches), std::end(processor.caches), 0);
    processor.caches[0] = static_cast<int>(caches.size());
    std::copy_n(caches.begin(), std::min<size_t>(caches.size(), 4), processor.caches + 1);
  }
  return processor;
}

lapack::tuning_processor dense_question::tuning_processor(const asked_machine& machine) const {
  const dense_processor facts = processor(machine);
  return {facts.level, gemm_class(facts)};
}

void declare_dense(CLI::App& command, dense_question& question) {
  add_type(command, question.type, {"s", "d", "c", "z"});
  command.add_option("--caches", question.caches, "Bytes of the first, second, third cache")->delimiter(',');
}

}  // namespace qel::cli
