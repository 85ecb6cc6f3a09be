// SPDX-License-Identifier: BSD-3-Clause
#include "fft/descriptor/values.h"

#include <cstring>

namespace qel::fft {
namespace {

constexpr char kVersionText[] =
    "QEL numeric kernel library Version 1.0.0 Product Build 20261121 for x86-64 applications";
static_assert(sizeof kVersionText <= kVersionBytes);

void uncommit(dfti_node* first) {
  first->commit_status = DFTI_UNCOMMITTED;
  first->compute_forward = nullptr;
  first->compute_backward = nullptr;
  first->flags &= static_cast<uint8_t>(~kUnitFlag);
}

template <class Visit>
void for_nodes(dfti_node* first, Visit visit) {
  for (dfti_node* node = first; node != nullptr; node = node->next_node) visit(*node);
}

/// The node that carries the scale: the first one longer than 1; if there is none, the first.
const dfti_node* scale_node(const dfti_node* first) {
  for (const dfti_node* node = first; node != nullptr; node = node->next_node) {
    if (node->length > 1) return node;
  }
  return first;
}

double read_scale(const dfti_node* first, bool forward) {
  const dfti_node* node = scale_node(first);
  return forward ? node->forward_scale_f64 : node->backward_scale_f64;
}

void read_strides(const dfti_node* first, bool input, int* out) {
  out[0] = static_cast<int>(input ? first->input_offset : first->output_offset);
  for (const dfti_node* node = first; node != nullptr; node = node->next_node) {
    out[first->dimension - node->node_index] =
        static_cast<int>(input ? node->input_stride : node->output_stride);
  }
}

}  // namespace

int set_integer(dfti_node* first, const config_row& row, int value) {
  uncommit(first);
  const int status = judge_setting(row, value, first->forward_domain);
  if (status != DFTI_NO_ERROR) return status;
  for_nodes(first, [&](dfti_node& node) {
    if (row.narrow != nullptr) {
      node.*row.narrow = value;
    } else {
      node.*row.wide = value;
    }
    // Complex conjugate-even data has one format only. Kept: going back to packed data leaves the format.
    if (row.number == DFTI_CONJUGATE_EVEN_STORAGE && value == DFTI_COMPLEX_COMPLEX) {
      node.packed_format = DFTI_CCE_FORMAT;
    }
  });
  return DFTI_NO_ERROR;
}

int set_scale(dfti_node* first, const config_row& row, double value) {
  const bool forward = row.number == DFTI_FORWARD_SCALE;
  const dfti_node* carrier = scale_node(first);
  for_nodes(first, [&](dfti_node& node) {
    const double scale = &node == carrier ? value : 1.0;
    (forward ? node.forward_scale_f64 : node.backward_scale_f64) = scale;
    (forward ? node.forward_scale_f32 : node.backward_scale_f32) = static_cast<float>(scale);
  });
  const uint8_t flags = first->flags;
  uncommit(first);
  first->flags = flags;
  return DFTI_NO_ERROR;
}

int set_strides(dfti_node* first, const config_row& row, const int* values) {
  uncommit(first);
  if (values == nullptr) return DFTI_INCONSISTENT_CONFIGURATION;
  const bool input = row.number == DFTI_INPUT_STRIDES;
  for_nodes(first, [&](dfti_node& node) {
    (input ? node.input_offset : node.output_offset) = values[0];
    (input ? node.input_stride : node.output_stride) = values[first->dimension - node.node_index];
  });
  return DFTI_NO_ERROR;
}

int set_name(dfti_node* first, const char* name) {
  if (name == nullptr) return DFTI_INCONSISTENT_CONFIGURATION;
  const size_t kept = strnlen(name, sizeof first->name - 1);
  for_nodes(first, [&](dfti_node& node) {
    std::memset(node.name, 0, sizeof node.name);
    std::memcpy(node.name, name, kept);
  });
  return DFTI_NO_ERROR;
}

int refuse_setting(dfti_node* first, const config_row& row) {
  if (row.uncommit == uncommit_rule::kFirst) uncommit(first);
  return judge_setting(row, 0, first->forward_domain);
}

int get_value(const dfti_node* first, const config_row& row, void* result) {
  if (row.kind == value_kind::kMissing) return DFTI_UNIMPLEMENTED;
  if (result == nullptr) return DFTI_INCONSISTENT_CONFIGURATION;
  auto* integers = static_cast<int*>(result);
  switch (row.kind) {
    case value_kind::kInteger:
      *integers = row.narrow != nullptr ? first->*row.narrow : static_cast<int>(first->*row.wide);
      break;
    case value_kind::kScale: {
      const double scale = read_scale(first, row.number == DFTI_FORWARD_SCALE);
      if (first->precision == DFTI_SINGLE) {
        *static_cast<float*>(result) = static_cast<float>(scale);
      } else {
        *static_cast<double*>(result) = scale;
      }
      break;
    }
    case value_kind::kLengths:
      // Kept: in the order of the nodes, the reverse of the caller's, unlike the strides.
      for (core_int i = 0; i < first->dimension; ++i) integers[i] = static_cast<int>(first[i].length);
      break;
    case value_kind::kStrides:
      read_strides(first, row.number == DFTI_INPUT_STRIDES, integers);
      break;
    case value_kind::kName:
      std::memcpy(result, first->name, sizeof first->name);
      static_cast<char*>(result)[sizeof first->name - 1] = '\0';
      break;
    case value_kind::kVersion:
      std::memset(result, 0, kVersionBytes);
      std::memcpy(result, kVersionText, sizeof kVersionText);
      break;
    case value_kind::kMissing:
      break;
  }
  return DFTI_NO_ERROR;
}

}  // namespace qel::fft
