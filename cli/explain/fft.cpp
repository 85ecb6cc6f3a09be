// SPDX-License-Identifier: BSD-3-Clause
// A descriptor is committed and asked how it would compute.
#include <sstream>

#include "cli/descriptor.h"
#include "cli/explain/menu.h"
#include "service/serv.h"

namespace qel::cli {
namespace {

struct fft_question {
  std::vector<int> lengths;  ///< the fastest one last
  bool real = false, single = false, in_place = false;
  int transforms = 1;
  double scale = 1;
};

void declare(CLI::App& command, fft_question& q) {
  command.add_option("LENGTHS", q.lengths, "One to seven lengths, the fastest one last")->required();
  command.add_flag("--real", q.real, "Real data");
  command.add_flag("--single", q.single, "Single precision");
  command.add_flag("--in-place", q.in_place, "The result overwrites the data");
  command.add_option("--transforms", q.transforms, "Transforms of one call")->capture_default_str();
  command.add_option("--scale", q.scale, "Forward scale")->capture_default_str();
}

report answer(const fft_question& q, const asked_machine& machine) {
  take_level(machine.level);
  if (machine.threads > 0) serv_set_num_threads(machine.threads);
  descriptor made;
  const int domain = q.real ? DFTI_REAL : DFTI_COMPLEX;
  const int dimension = static_cast<int>(q.lengths.size());
  const auto create = q.single ? DftiCreateDescriptor_s_md : DftiCreateDescriptor_d_md;
  expect_done(create(&made.handle, domain, dimension, q.lengths.data()));
  if (!q.in_place) expect_done(DftiSetValue(made.handle, DFTI_PLACEMENT, DFTI_NOT_INPLACE));
  if (q.real) expect_done(DftiSetValue(made.handle, DFTI_PACKED_FORMAT, DFTI_PACK_FORMAT));
  if (q.scale != 1) expect_done(DftiSetValue(made.handle, DFTI_FORWARD_SCALE, q.scale));
  if (q.transforms > 1) {
    int distance = 1;
    for (const int length : q.lengths) distance *= length;
    expect_done(DftiSetValue(made.handle, DFTI_NUMBER_OF_TRANSFORMS, q.transforms));
    expect_done(DftiSetValue(made.handle, DFTI_INPUT_DISTANCE, distance));
    expect_done(DftiSetValue(made.handle, DFTI_OUTPUT_DISTANCE, distance));
  }
  expect_done(DftiCommitDescriptor(made.handle));
  char buffer[4096];
  expect_done(qel_dfti_explain(made.handle, buffer, sizeof buffer));
  report out = {{"level", serv_cpu_level()}};
  std::istringstream lines(buffer);
  for (std::string line; std::getline(lines, line);) {
    const size_t blank = line.find(' ');
    const std::string key = line.substr(0, blank), value = line.substr(blank + 1);
    if (value.find_first_not_of("0123456789") == std::string::npos) {
      out[key] = std::stoll(value);
    } else {
      out[key] = value;
    }
  }
  return out;
}

}  // namespace

void add_transforms(explain_menu& menu) {
  menu.add<fft_question>("Fourier transforms", "fft", "a Fourier transform of one to seven lengths", declare,
                         answer);
}

}  // namespace qel::cli
