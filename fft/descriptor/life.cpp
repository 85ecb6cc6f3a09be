// SPDX-License-Identifier: BSD-3-Clause
#include "fft/descriptor/life.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "fft/planning/commit.h"
#include "fft/planning/driver_rules.h"
#include "fft/planning/node_plan.h"
#include "service/serv.h"

namespace qel::fft {
namespace {

constexpr int kMaxRealDimension = 3;

dfti_node* allocate_nodes(core_int dimension) {
  const size_t bytes = static_cast<size_t>(dimension) * sizeof(dfti_node);
  void* block = serv_malloc(bytes, 16);
  if (block == nullptr) return nullptr;
  std::memset(block, 0, bytes);
  return static_cast<dfti_node*>(block);
}

void set_defaults(dfti_node& first, int precision, int domain) {
  first.commit_status = DFTI_UNCOMMITTED;
  first.forward_domain = domain;
  first.precision = precision;
  first.number_of_transforms = 1;
  first.complex_storage = DFTI_COMPLEX_COMPLEX;
  first.real_storage = DFTI_REAL_REAL;
  first.conjugate_even_storage = DFTI_COMPLEX_REAL;
  first.placement = DFTI_INPLACE;
  first.packed_format = DFTI_CCS_FORMAT;
  first.ordering = DFTI_ORDERED;
  first.transpose = DFTI_NONE;
  first.number_of_user_threads = 1;
  first.threads = 1;
}

/// Fills and links the nodes of a cleared block; lengths in the caller's order.
void fill_nodes(dfti_node* first, core_int dimension, const int* lengths) {
  core_int count = 1, packed_count = 1, longest = 0;
  for (core_int i = 0; i < dimension; ++i) {
    dfti_node& node = first[i];
    const core_int length = lengths[dimension - 1 - i];
    const auto bits = static_cast<uint64_t>(length);
    node.magic = kMagic;
    node.forward_scale_f32 = node.backward_scale_f32 = 1.0F;
    node.forward_scale_f64 = node.backward_scale_f64 = 1.0;
    node.dimension = dimension;
    node.node_index = i;
    node.length = length;
    node.packed_length = i == 0 ? length / 2 + 1 : length;
    node.log2_length = std::bit_width(bits) - 1;
    node.not_power_of_two = std::has_single_bit(bits) ? 0 : 1;
    node.input_stride = node.output_stride = count;
    node.prev_node = i == 0 ? nullptr : &first[i - 1];
    node.next_node = i == dimension - 1 ? nullptr : &first[i + 1];
    node.element_count = count *= length;
    node.packed_element_count = packed_count *= node.packed_length;
    longest = std::max(longest, length);
  }
  first->element_count = count;
  first->packed_element_count = packed_count;
  for (core_int i = 0; i < dimension; ++i) first[i].max_length = longest;
}

void copy_configuration(const dfti_node& from, dfti_node& to, bool single) {
  to.number_of_user_threads = from.number_of_user_threads;
  to.number_of_transforms = from.number_of_transforms;
  // Kept: only the scales of the descriptor's own precision are copied, so those of a single-precision copy
  // read as 1 while its kernels use the copied ones.
  if (single) {
    to.forward_scale_f32 = from.forward_scale_f32;
    to.backward_scale_f32 = from.backward_scale_f32;
  } else {
    to.forward_scale_f64 = from.forward_scale_f64;
    to.backward_scale_f64 = from.backward_scale_f64;
  }
  to.placement = from.placement;
  to.packed_format = from.packed_format;
  to.ordering = from.ordering;
  to.real_storage = from.real_storage;
  to.conjugate_even_storage = from.conjugate_even_storage;
  to.complex_storage = from.complex_storage;
  to.input_offset = from.input_offset;
  to.output_offset = from.output_offset;
  to.input_stride = from.input_stride;
  to.output_stride = from.output_stride;
  to.input_distance = from.input_distance;
  to.output_distance = from.output_distance;
}

}  // namespace

int check_precision(int precision) {
  return precision == DFTI_SINGLE || precision == DFTI_DOUBLE ? DFTI_NO_ERROR : DFTI_INVALID_CONFIGURATION;
}
int check_domain(int domain) {
  return domain == DFTI_COMPLEX || domain == DFTI_REAL ? DFTI_NO_ERROR : DFTI_INVALID_CONFIGURATION;
}
int check_dimension(int dimension) {
  return dimension >= 1 && dimension <= kMaxDimension ? DFTI_NO_ERROR : DFTI_INVALID_CONFIGURATION;
}

int create_descriptor(dfti_node** handle, const transform_shape& shape) {
  if (shape.lengths == nullptr) return DFTI_INVALID_CONFIGURATION;
  for (int i = shape.dimension - 1; i >= 0; --i) {
    if (shape.lengths[i] < 1) return DFTI_INVALID_CONFIGURATION;
  }
  dfti_node* first = allocate_nodes(shape.dimension);
  if (first == nullptr) return DFTI_MEMORY_ERROR;
  if (shape.domain == DFTI_REAL && shape.dimension > kMaxRealDimension) {
    serv_free(first);
    return DFTI_UNIMPLEMENTED;
  }
  fill_nodes(first, shape.dimension, shape.lengths);
  set_defaults(*first, shape.precision, shape.domain);
  first->commit_routine = commit_routine_for(shape.precision, shape.domain, shape.dimension);
  *handle = first;
  return DFTI_NO_ERROR;
}

int copy_descriptor(const dfti_node* source, dfti_node** handle) {
  if (!is_descriptor(source)) return DFTI_BAD_DESCRIPTOR;
  if (handle == nullptr) return DFTI_INCONSISTENT_CONFIGURATION;
  int lengths[kMaxDimension] = {};
  const auto dimension = static_cast<int>(source->dimension);
  for (int i = 0; i < dimension; ++i) lengths[dimension - 1 - i] = static_cast<int>(source[i].length);
  dfti_node* copy = nullptr;
  int status = create_descriptor(&copy, {source->precision, source->forward_domain, dimension, lengths});
  if (status != DFTI_NO_ERROR) return status;
  std::memcpy(copy->name, source->name, sizeof copy->name);
  for (int i = 0; i < dimension; ++i) {
    copy_configuration(source[i], copy[i], source->precision == DFTI_SINGLE);
  }
  if (source->commit_status == DFTI_COMMITTED) status = commit_descriptor(copy);
  if (status != DFTI_NO_ERROR) {
    free_descriptor(&copy);
    return status;
  }
  *handle = copy;
  return DFTI_NO_ERROR;
}

int free_descriptor(dfti_node** handle) {
  if (handle == nullptr) return DFTI_INCONSISTENT_CONFIGURATION;
  dfti_node* first = *handle;
  if (!is_descriptor(first)) return DFTI_BAD_DESCRIPTOR;
  release_plan(first);
  release_fast_plan(first);
  first->magic = 0;  // a stale copy of the handle is then seen for what it is, as long as the block rests
  serv_free(first);
  *handle = nullptr;
  return DFTI_NO_ERROR;
}

}  // namespace qel::fft
