// SPDX-License-Identifier: BSD-3-Clause
#include <algorithm>

#include "cli/explain/menu.h"
#include "conv/conv_plan.h"
#include "service/native_level.h"
#include "service/serv.h"

namespace qel::cli {
namespace {

struct conv_question {
  core_int x = 0, y = 0;
  std::string type = "d";
  bool direct = false;
  int dims = 1;
};

void declare(CLI::App& command, conv_question& q) {
  command.add_option("NX", q.x, "Length of the first sequence")->required()->check(CLI::PositiveNumber);
  command.add_option("NY", q.y, "Length of the second")->required()->check(CLI::PositiveNumber);
  add_type(command, q.type, {"s", "d", "c", "z"});
  command.add_flag("--direct", q.direct, "The task's mode asks for sums");
  command.add_option("--dims", q.dims, "Dimensions; the lengths are those of the first")
      ->check(CLI::Range(1, 7))
      ->capture_default_str();
}

void add_native(const conv_question& q, bool complex_data, report& out) {
  const conv::native_conv_plan plan = conv::plan_native_conv(
      {std::max(q.x, q.y), std::min(q.x, q.y), 0, q.x + q.y - 1, 1, complex_data, false});
  out["method"] = plan.method == conv::native_conv_method::kPieces ? "transforms of pieces" : "sums";
  out["reason"] = plan.reason;
  if (plan.method != conv::native_conv_method::kPieces) return;
  out["transform"] = plan.length;
  out["pieces"] = plan.pieces;
  out["outputs_of_a_piece"] = plan.step;
}

report answer(const conv_question& q, const asked_machine& machine) {
  const bool complex_data = q.type == "c" || q.type == "z";
  const int type = machine.level >= 0 ? type_of_level(machine.level) : serv_cpu_type();
  const bool native = type >= kFirstNativeType && q.dims == 1;
  report out = {{"processor_type", type},
                {"result", q.x + q.y - 1},
                {"threads", 1},
                {"runs_of_real_sequences", complex_data && !native ? 4 : 1}};
  if (q.dims > 1 || q.direct) {
    out["method"] = "sums";
    out["reason"] = q.direct ? "the task asks for sums" : "more than one dimension: rows against rows";
    return out;
  }
  if (native) {
    add_native(q, complex_data, out);
    return out;
  }
  const conv::conv_plan plan = conv::plan_conv(std::max(q.x, q.y), std::min(q.x, q.y));
  constexpr const char* kNames[] = {"sums", "sums in blocks", "one transform", "transforms of pieces"};
  out["method"] = kNames[static_cast<int>(plan.method)];
  out["reason"] = plan.reason;
  if (plan.block_length != 0) out["block"] = plan.block_length;
  if (plan.order != 0) out["transform"] = core_int{1} << plan.order;
  if (plan.step != 0) out["outputs_of_a_piece"] = plan.step;
  return out;
}

}  // namespace

void add_convolutions(explain_menu& menu) {
  menu.add<conv_question>("Convolution", "conv", "a convolution or correlation", declare, answer);
}

}  // namespace qel::cli
