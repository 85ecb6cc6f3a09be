// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/validate.h"

#include <bitset>
#include <cstdlib>
#include <numeric>
#include <utility>

#include "fft/execution/node_kernels.h"
#include "fft/execution/real_driver.h"
#include "fft/planning/text.h"

namespace qel::fft {
namespace {

/// One side of a call.
struct side {
  const char* name;
  const char* element;  ///< what strides count
  int element_reals;
  axes places;        ///< of one transform
  core_int distance;  ///< to the next one
};

void add_lines(axes* places, const dfti_node& first, bool input, core_int first_length) {
  for (const dfti_node* node = &first; node != nullptr; node = node->next_node) {
    places->add(node == &first ? first_length : node->length,
                input ? node->input_stride : node->output_stride);
  }
}

side complex_side(const dfti_node& first, bool input) {
  const bool split = first.complex_storage == DFTI_REAL_REAL;
  side result{input ? "input" : "output",
              split ? "reals" : "complex numbers",
              split ? 1 : 2,
              {},
              input ? first.input_distance : output_distance_of(first)};
  add_lines(&result.places, first, input, first.length);
  return result;
}

/// The reals or the spectrum of a real descriptor; input: which of its strides are meant.
side real_side(const dfti_node& first, bool input, bool spectrum) {
  const bool pairs = spectrum && has_complex_spectrum(first);
  core_int length = first.length;
  packing format = packing::kCcs;
  if (pairs) length = first.packed_length;
  if (spectrum && !pairs && packing_of(first, &format)) length = packed_reals(format, first.length);
  side result{input ? "input" : "output",
              pairs ? "complex numbers" : "reals",
              pairs ? 2 : 1,
              {},
              input ? first.input_distance : output_distance_of(first)};
  add_lines(&result.places, first, input, length);
  return result;
}

class inspection {
 public:
  inspection(const dfti_node& first, bool backward, char* buffer, size_t size)
      : first_(first), out_(buffer, size) {
    const bool in_place = first.placement == DFTI_INPLACE;
    const bool real = first.forward_domain == DFTI_REAL;
    // In place the reals have the input's strides in both directions.
    const bool reals_are_input = in_place || !backward;
    const side input = !real ? complex_side(first, true) : real_side(first, true, !reals_are_input);
    const side output = !real ? complex_side(first, false) : real_side(first, false, reals_are_input);
    storage(real);
    // The input is only read, so its elements may share places, unless it is overwritten.
    if (in_place) inspect(input);
    inspect(output);
    if (in_place) compare(input, output, real);
  }
  int faults() const { return faults_; }

 private:
  [[gnu::format(printf, 2, 3)]] void fault(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    out_.add_list(format, arguments);
    va_end(arguments);
    ++faults_;
  }
  static long long number(core_int value) { return static_cast<long long>(value); }

  void storage(bool real) {
    packing format;
    if (real && !packing_of(first_, &format))
      fault("the packed format %d is not there for packed storage\n", first_.packed_format);
    if (real || first_.complex_storage != DFTI_REAL_REAL) return;
    if (first_.dimension > 1) fault("parts in two arrays: only in one dimension\n");
    if (first_.ordering == DFTI_BACKWARD_SCRAMBLED) fault("parts in two arrays: not in scrambled order\n");
  }

  void inspect(const side& of) {
    bool zero = false;
    for (int i = 0; i < of.places.count; ++i) {
      if (of.places.length[i] < 2 || of.places.stride[i] != 0) continue;
      zero = true;
      fault("%s: stride 0 along the dimension of %lld elements\n", of.name, number(of.places.length[i]));
    }
    axes all = of.places;
    if (first_.number_of_transforms > 1) {
      if (of.distance == 0) {
        zero = true;
        fault("%s: distance 0 between %lld transforms\n", of.name, number(first_.number_of_transforms));
      }
      all.add(first_.number_of_transforms, of.distance);
    }
    if (zero) return;
    const sharing found = find_sharing(all);
    if (found == sharing::kNone) return;
    fault("%s: elements %s places; strides", of.name, found == sharing::kSome ? "share" : "may share");
    for (int i = of.places.count - 1; i >= 0; --i) out_.add(" %lld", number(of.places.stride[i]));
    if (first_.number_of_transforms > 1) out_.add(", distance %lld", number(of.distance));
    out_.add(" (%s)\n", of.element);
  }

  void compare(const side& input, const side& output, bool real) {
    const bool several = first_.number_of_transforms > 1;
    if (several && input.distance * input.element_reals != output.distance * output.element_reals) {
      fault("in place: the transforms are %lld %s apart in the input, %lld %s in the output\n",
            number(input.distance), input.element, number(output.distance), output.element);
    }
    if (real && has_complex_spectrum(first_)) {
      if (!rows_coincide(first_))
        fault(
            "in place: rows of the spectrum must begin where those of the reals do: unit strides along the "
            "rows, the others of the input twice those of the output\n");
      return;
    }
    if (!several && first_.dimension == 1) return;
    for (int i = 0; i < input.places.count; ++i) {
      if (input.places.stride[i] == output.places.stride[i] || input.places.length[i] < 2) continue;
      fault(
          "in place: strides %lld of the input and %lld of the output: lines would read what others wrote\n",
          number(input.places.stride[i]), number(output.places.stride[i]));
    }
  }

  const dfti_node& first_;
  text out_;
  int faults_ = 0;
};

/// Marks every address; for up to kAddresses of them.
class address_map {
 public:
  static constexpr core_int kAddresses = 1 << 16;
  bool collides(const axes& of, core_int elements) {
    core_int index[axes::kMost] = {}, at = 0;
    for (int i = 0; i < of.count; ++i)
      if (of.stride[i] < 0) at -= of.stride[i] * (of.length[i] - 1);
    for (core_int left = elements; left > 0; --left) {
      if (used_[static_cast<size_t>(at)]) return true;
      used_[static_cast<size_t>(at)] = true;
      for (int i = 0; i < of.count; ++i) {
        at += of.stride[i];
        if (++index[i] < of.length[i]) break;
        at -= of.stride[i] * of.length[i];
        index[i] = 0;
      }
    }
    return false;
  }

 private:
  std::bitset<kAddresses> used_;
};

}  // namespace

sharing find_sharing(const axes& of) {
  axes real;
  for (int i = 0; i < of.count; ++i)
    if (of.length[i] > 1) real.add(of.length[i], of.stride[i]);
  // By rising stride.
  for (int i = 1; i < real.count; ++i)
    for (int j = i; j > 0 && std::llabs(real.stride[j - 1]) > std::llabs(real.stride[j]); --j) {
      std::swap(real.stride[j - 1], real.stride[j]);
      std::swap(real.length[j - 1], real.length[j]);
    }
  // Nested: each stride steps over all that the smaller ones reach.
  core_int reach = 0, elements = 1;
  bool nested = true;
  for (int i = 0; i < real.count; ++i) {
    const core_int stride = std::llabs(real.stride[i]);
    nested = nested && stride > reach;
    reach += stride * (real.length[i] - 1);
    elements *= real.length[i];
  }
  if (nested) return sharing::kNone;
  if (elements > reach + 1) return sharing::kSome;
  if (real.count == 2) {
    // Equal places are multiples of (s1 / g, s0 / g) apart.
    const core_int s0 = std::llabs(real.stride[0]), s1 = std::llabs(real.stride[1]);
    const core_int g = std::gcd(s0, s1);
    if (g == 0) return sharing::kSome;
    return s1 / g < real.length[0] && s0 / g < real.length[1] ? sharing::kSome : sharing::kNone;
  }
  if (reach >= address_map::kAddresses) return sharing::kUnknown;
  return address_map().collides(real, elements) ? sharing::kSome : sharing::kNone;
}

int validate_descriptor(const dfti_node& first, bool backward, char* buffer, size_t size) {
  return inspection(first, backward, buffer, size).faults();
}

}  // namespace qel::fft
