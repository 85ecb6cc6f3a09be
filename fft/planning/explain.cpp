// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/explain.h"

#include <cmath>

#include "fft/execution/node_kernels.h"
#include "fft/planning/long_plan.h"
#include "fft/planning/text.h"

namespace qel::fft {
namespace {

void add_radices(text& out, core_int length) {
  const autosort_plan plan = plan_autosort(length);
  out.add(", radices");
  for (int i = 0; i < plan.count; ++i) out.add(" %d", plan.radices[i]);
}

template <class R>
void add_line(text& out, const dft_spec<R>& spec) {
  const line_plan& plan = spec.plan;
  switch (plan.method) {
    case line_method::kStraight:
      out.add("straight-line kernel");
      break;
    case line_method::kPowerOfTwo:
      if (spec.pow2 == nullptr) {
        out.add("straight-line kernel");
        break;
      }
      out.add("power of two%s, radices", plan.scrambled ? " in bit-reversed order" : "");
      for (int l = 0; l < spec.pow2->level_count; ++l) {
        const auto& level = spec.pow2->levels[l];
        if (l > 0) out.add(", blocks combined by");
        for (int i = 0; i < level.pass_count; ++i) out.add(" %d", 1 << level.passes[i].order);
      }
      break;
    case line_method::kMixed:
      out.add("mixed radix%s, factors", plan.scrambled ? " in digit-reversed order" : "");
      for (int i = 0; i < plan.factor_count; ++i) out.add(" %d", plan.factors[i]);
      break;
    case line_method::kDirect:
      out.add("direct sums");
      break;
    case line_method::kBluestein:
    case line_method::kRader:
      if (plan.method == line_method::kRader) {
        out.add("cyclic convolution (Rader) of %d points", spec.length - 1);
      } else {
        out.add("convolution (Bluestein) of %d points", plan.padded);
      }
      if (spec.inner != nullptr) {
        out.add(": ");
        add_line(out, *spec.inner);
      }
      break;
    case line_method::kAutosort:
      if (spec.autosort->whole.method == whole_line::kTwoSteps) {
        out.add("%d rows times %d columns", spec.autosort->whole.rows, spec.autosort->whole.columns);
        break;
      }
      if (spec.autosort->whole.method == whole_line::kSums) {
        out.add("sums side by side");
        break;
      }
      out.add("passes that sort");
      add_radices(out, spec.length);
      break;
    case line_method::kLong:
      out.add("%lld rows times %lld columns", static_cast<long long>(plan.rows),
              static_cast<long long>(plan.columns));
      break;
    case line_method::kRefused:
      break;
  }
}

template <class R>
void add_real_line(text& out, const real_spec<R>& spec) {
  switch (spec.method) {
    case real_method::kStraight:
      out.add("straight-line kernel");
      break;
    case real_method::kDirect:
      out.add("direct sums");
      break;
    case real_method::kHalf:
      out.add("%d complex numbers and an end pass: ", spec.length / 2);
      add_line(out, *spec.complex);
      break;
    case real_method::kWhole:
      out.add("as complex numbers: ");
      add_line(out, *spec.complex);
      break;
  }
}

template <class R>
void add_plan(text& out, const dfti_node& first) {
  if (first.fast_plan != nullptr) {
    out.add("plan fast\n");
    if (first.fast_plan_data == nullptr) {
      out.add("line_%lld straight-line kernel\n", static_cast<long long>(first.length));
      return;
    }
    out.add("line_%lld ", static_cast<long long>(first.length));
    add_line(out, *static_cast<const dft_spec<R>*>(first.fast_plan_data));
    out.add("\n");
    return;
  }
  const void* held = first.extra_buffer != nullptr ? first.extra_buffer : first.thread_buffer;
  if (held != nullptr) {
    const auto& plan = *static_cast<const split_plan<R>*>(held);
    if (plan.shared != nullptr) {
      out.add("plan shared by threads\nline_%lld ", static_cast<long long>(first.length));
      add_line(out, *plan.shared);
      out.add("\n");
      return;
    }
    if (plan.parts > 0) {
      out.add("plan %d fixed parts\n", plan.parts);
    } else {
      out.add("plan split over threads\n");
    }
    out.add("rows %lld\ncolumns %lld\n", static_cast<long long>(plan.rows),
            static_cast<long long>(plan.columns));
    return;
  }
  out.add("plan general\n");
  for (const dfti_node* node = &first; node != nullptr; node = node->next_node) {
    out.add("line_%lld ", static_cast<long long>(node->length));
    for (const spec_slot slot : {kOrderedSpec, kSplitSpec, kScrambledSpec}) {
      const auto* spec = static_cast<const dft_spec<R>*>(node->specs[slot][kSpecPrecision<R>]);
      if (spec != nullptr) add_line(out, *spec);
    }
    const auto* real = static_cast<const real_spec<R>*>(node->specs[kRealSpec][kSpecPrecision<R>]);
    if (real != nullptr) add_real_line(out, *real);
    out.add("\n");
  }
}

}  // namespace

size_t explain_descriptor(const dfti_node& first, char* buffer, size_t size) {
  text out(buffer, size);
  const bool real = first.forward_domain == DFTI_REAL;
  out.add("level %d\n", serv_cpu_level());
  out.add("precision %s\n", first.precision == DFTI_DOUBLE ? "double" : "single");
  out.add("domain %s\n", real ? "real" : "complex");
  out.add("placement %s\n", first.placement == DFTI_INPLACE ? "in place" : "out of place");
  if (first.precision == DFTI_DOUBLE) {
    add_plan<double>(out, first);
  } else {
    add_plan<float>(out, first);
  }
  const auto n = static_cast<double>(first.element_count);
  out.add("threads %d\n", first.fast_plan != nullptr ? 1 : first.threads);
  out.add("workspace_bytes %lld\n", static_cast<long long>(first.workspace_bytes));
  out.add("flops %.0f\n",
          (real ? 2.5 : 5.0) * n * std::log2(n) * static_cast<double>(first.number_of_transforms));
  return out.used();
}

}  // namespace qel::fft
