// SPDX-License-Identifier: BSD-3-Clause
// qel explain fft: a descriptor is committed and asked how it would compute.
#include <fmt/core.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "cli/commands.h"
#include "cli/descriptor.h"
#include "service/serv.h"

namespace qel::cli {
int run_explain_fft(const explain_fft_options& options) {
  if (options.threads > 0) serv_set_num_threads(options.threads);
  descriptor made;
  const int domain = options.real ? DFTI_REAL : DFTI_COMPLEX;
  const int dimension = static_cast<int>(options.lengths.size());
  const auto create = options.single ? DftiCreateDescriptor_s_md : DftiCreateDescriptor_d_md;
  expect_done(create(&made.handle, domain, dimension, options.lengths.data()));
  if (!options.in_place) expect_done(DftiSetValue(made.handle, DFTI_PLACEMENT, DFTI_NOT_INPLACE));
  if (options.real) expect_done(DftiSetValue(made.handle, DFTI_PACKED_FORMAT, DFTI_PACK_FORMAT));
  if (options.scale != 1) expect_done(DftiSetValue(made.handle, DFTI_FORWARD_SCALE, options.scale));
  if (options.transforms > 1) {
    int distance = 1;
    for (const int length : options.lengths) distance *= length;
    expect_done(DftiSetValue(made.handle, DFTI_NUMBER_OF_TRANSFORMS, options.transforms));
    expect_done(DftiSetValue(made.handle, DFTI_INPUT_DISTANCE, distance));
    expect_done(DftiSetValue(made.handle, DFTI_OUTPUT_DISTANCE, distance));
  }
  expect_done(DftiCommitDescriptor(made.handle));
  char buffer[4096];
  expect_done(qel_dfti_explain(made.handle, buffer, sizeof buffer));
  nlohmann::ordered_json out;
  std::istringstream lines(buffer);
  for (std::string line; std::getline(lines, line);) {
    const size_t blank = line.find(' ');
    const std::string key = line.substr(0, blank), value = line.substr(blank + 1);
    if (!options.json) {
      fmt::print("{:<28} {}\n", key, value);
    } else if (value.find_first_not_of("0123456789") == std::string::npos) {
      out[key] = std::stoll(value);
    } else {
      out[key] = value;
    }
  }
  if (options.json) fmt::print("{}\n", out.dump(2));
  return kDone;
}

}  // namespace qel::cli
