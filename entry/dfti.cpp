// SPDX-License-Identifier: BSD-3-Clause
// Entries of the Fourier transforms: the order in which arguments are tested, and the variable arguments.
#include "qel/dfti.h"

#include <cstdarg>

#include "fft/descriptor/life.h"
#include "fft/descriptor/messages.h"
#include "fft/descriptor/values.h"
#include "fft/execution/full_spectrum.h"
#include "fft/planning/commit.h"
#include "fft/planning/explain.h"
#include "fft/planning/validate.h"

namespace {

using namespace qel::fft;

dfti_node* node_of(DFTI_DESCRIPTOR* descriptor) { return reinterpret_cast<dfti_node*>(descriptor); }
const dfti_node* node_of(const DFTI_DESCRIPTOR* descriptor) {
  return reinterpret_cast<const dfti_node*>(descriptor);
}

/// Carries out a call that makes a descriptor; on failure the caller's handle stays as it was.
template <class Make>
int make_descriptor(DFTI_DESCRIPTOR_HANDLE* handle, Make make) {
  dfti_node* made = nullptr;
  const int status = make(&made);
  if (status == DFTI_NO_ERROR) *handle = reinterpret_cast<DFTI_DESCRIPTOR*>(made);
  return status;
}

int create(DFTI_DESCRIPTOR_HANDLE* handle, const transform_shape& shape) {
  return make_descriptor(handle, [&](dfti_node** made) { return create_descriptor(made, shape); });
}

int create_1d(DFTI_DESCRIPTOR_HANDLE* handle, int precision, int domain, int length) {
  if (handle == nullptr) return DFTI_INCONSISTENT_CONFIGURATION;
  if (const int status = check_domain(domain)) return status;
  return create(handle, {precision, domain, 1, &length});
}

int create_md(DFTI_DESCRIPTOR_HANDLE* handle, int precision, int domain, int dimension, const int* lengths) {
  if (handle == nullptr) return DFTI_INCONSISTENT_CONFIGURATION;
  if (const int status = check_dimension(dimension)) return status;
  if (const int status = check_domain(domain)) return status;
  return create(handle, {precision, domain, dimension, lengths});
}

/// Sets the parameter from the list of arguments.
int set_from(dfti_node* first, const config_row& row, va_list arguments) {
  if (row.set == set_rule::kRefused) return refuse_setting(first, row);
  switch (row.kind) {
    case value_kind::kScale:
      return set_scale(first, row, va_arg(arguments, double));
    case value_kind::kStrides:
      return set_strides(first, row, va_arg(arguments, const int*));
    case value_kind::kName:
      return set_name(first, va_arg(arguments, const char*));
    default:
      return set_integer(first, row, va_arg(arguments, int));
  }
}

/// Runs a compute entry with the further pointers of the list.
int compute_with(dfti_node* first, compute_routine* routine, void* data, va_list arguments) {
  if (routine == nullptr) return DFTI_INVALID_CONFIGURATION;
  // Two pointers are the most frequent case, and short transforms feel every branch.
  void* const second = first->compute_pointers > 1 ? va_arg(arguments, void*) : nullptr;
  if (first->compute_pointers <= 2) return routine(first, data, second, nullptr, nullptr);
  void* const third = va_arg(arguments, void*);
  return routine(first, data, second, third, va_arg(arguments, void*));
}

/// Runs a move between packed and full spectrum if its arguments allow.
template <class Move, class From, class To>
int between(Move move, int format, int dimension, const int* lengths, const From* from, To* to) {
  if (dimension < 1 || dimension > 3 || lengths == nullptr || from == nullptr || to == nullptr)
    return DFTI_INCONSISTENT_CONFIGURATION;
  packed_shape shape{dimension, {}, format == DFTI_CCS_FORMAT || format == DFTI_CCE_FORMAT, packing::kPerm};
  if (format == DFTI_PACK_FORMAT) shape.format = packing::kPack;
  if (!shape.complex_rows && format != DFTI_PACK_FORMAT && format != DFTI_PERM_FORMAT)
    return DFTI_INCONSISTENT_CONFIGURATION;
  for (int i = 0; i < dimension; ++i) {
    shape.length[i] = lengths[dimension - 1 - i];
    if (shape.length[i] < 1) return DFTI_INCONSISTENT_CONFIGURATION;
  }
  move(shape, from, to);
  return DFTI_NO_ERROR;
}

}  // namespace

extern "C" {

int DftiCreateDescriptor(DFTI_DESCRIPTOR_HANDLE* handle, int precision, int domain, int dimension, ...) {
  if (handle == nullptr) return DFTI_INCONSISTENT_CONFIGURATION;
  if (const int status = check_precision(precision)) return status;
  if (const int status = check_domain(domain)) return status;
  if (const int status = check_dimension(dimension)) return status;
  va_list arguments;
  va_start(arguments, dimension);
  int length = 0;
  const int* lengths = &length;
  if (dimension == 1) {
    length = va_arg(arguments, int);
  } else {
    lengths = va_arg(arguments, const int*);
  }
  va_end(arguments);
  return create(handle, {precision, domain, dimension, lengths});
}

int DftiCreateDescriptor_d_1d(DFTI_DESCRIPTOR_HANDLE* handle, int domain, int length) {
  return create_1d(handle, DFTI_DOUBLE, domain, length);
}
int DftiCreateDescriptor_s_1d(DFTI_DESCRIPTOR_HANDLE* handle, int domain, int length) {
  return create_1d(handle, DFTI_SINGLE, domain, length);
}
int DftiCreateDescriptor_d_md(DFTI_DESCRIPTOR_HANDLE* handle, int domain, int dimension, const int* lengths) {
  return create_md(handle, DFTI_DOUBLE, domain, dimension, lengths);
}
int DftiCreateDescriptor_s_md(DFTI_DESCRIPTOR_HANDLE* handle, int domain, int dimension, const int* lengths) {
  return create_md(handle, DFTI_SINGLE, domain, dimension, lengths);
}

int DftiCopyDescriptor(const DFTI_DESCRIPTOR* source, DFTI_DESCRIPTOR_HANDLE* handle) {
  if (!is_descriptor(node_of(source))) return DFTI_BAD_DESCRIPTOR;
  if (handle == nullptr) return DFTI_INCONSISTENT_CONFIGURATION;
  return make_descriptor(handle, [&](dfti_node** made) { return copy_descriptor(node_of(source), made); });
}

int DftiFreeDescriptor(DFTI_DESCRIPTOR_HANDLE* handle) {
  if (handle == nullptr) return DFTI_INCONSISTENT_CONFIGURATION;
  dfti_node* first = node_of(*handle);
  const int status = free_descriptor(&first);
  if (status == DFTI_NO_ERROR) *handle = nullptr;
  return status;
}

int DftiSetValue(DFTI_DESCRIPTOR* descriptor, int parameter, ...) {
  dfti_node* first = node_of(descriptor);
  if (!is_descriptor(first)) return DFTI_BAD_DESCRIPTOR;
  const config_row* row = find_config_row(parameter);
  if (row == nullptr) return DFTI_INCONSISTENT_CONFIGURATION;
  va_list arguments;
  va_start(arguments, parameter);
  const int status = set_from(first, *row, arguments);
  va_end(arguments);
  return status;
}

int DftiGetValue(const DFTI_DESCRIPTOR* descriptor, int parameter, ...) {
  const dfti_node* first = node_of(descriptor);
  if (!is_descriptor(first)) return DFTI_BAD_DESCRIPTOR;
  const config_row* row = find_config_row(parameter);
  if (row == nullptr) return DFTI_INCONSISTENT_CONFIGURATION;
  va_list arguments;
  va_start(arguments, parameter);
  const int status = get_value(first, *row, va_arg(arguments, void*));
  va_end(arguments);
  return status;
}

int DftiCommitDescriptor(DFTI_DESCRIPTOR* descriptor) { return commit_descriptor(node_of(descriptor)); }

// Kept: the compute entries trust the pointer; a look at what it points to would cost each short transform.
int DftiComputeForward(DFTI_DESCRIPTOR* descriptor, void* data, ...) {
  if (descriptor == nullptr) return DFTI_BAD_DESCRIPTOR;
  va_list arguments;
  va_start(arguments, data);
  const int status = compute_with(node_of(descriptor), node_of(descriptor)->compute_forward, data, arguments);
  va_end(arguments);
  return status;
}
int DftiComputeBackward(DFTI_DESCRIPTOR* descriptor, void* data, ...) {
  if (descriptor == nullptr) return DFTI_BAD_DESCRIPTOR;
  va_list arguments;
  va_start(arguments, data);
  const int status =
      compute_with(node_of(descriptor), node_of(descriptor)->compute_backward, data, arguments);
  va_end(arguments);
  return status;
}

int qel_dfti_explain(const DFTI_DESCRIPTOR* descriptor, char* buffer, int size) {
  const dfti_node* first = node_of(descriptor);
  if (!is_descriptor(first)) return DFTI_BAD_DESCRIPTOR;
  if (buffer == nullptr || size <= 0) return DFTI_INCONSISTENT_CONFIGURATION;
  if (first->commit_status != DFTI_COMMITTED) return DFTI_INVALID_CONFIGURATION;
  explain_descriptor(*first, buffer, static_cast<size_t>(size));
  return DFTI_NO_ERROR;
}

int qel_dfti_validate(const DFTI_DESCRIPTOR* descriptor, int backward, char* buffer, int size) {
  const dfti_node* first = node_of(descriptor);
  if (!is_descriptor(first)) return DFTI_BAD_DESCRIPTOR;
  const size_t room = buffer == nullptr || size < 0 ? 0 : static_cast<size_t>(size);
  return validate_descriptor(*first, backward != 0, buffer, room) == 0 ? DFTI_NO_ERROR
                                                                       : DFTI_INCONSISTENT_CONFIGURATION;
}

int qel_dfti_unpack_d(int format, int dimension, const int* lengths, const double* packed,
                      _QEL_Complex16* full) {
  return between(spread_spectrum<double>, format, dimension, lengths, packed, full);
}
int qel_dfti_unpack_s(int format, int dimension, const int* lengths, const float* packed,
                      _QEL_Complex8* full) {
  return between(spread_spectrum<float>, format, dimension, lengths, packed, full);
}
int qel_dfti_pack_d(int format, int dimension, const int* lengths, const _QEL_Complex16* full,
                    double* packed) {
  return between(pick_spectrum<double>, format, dimension, lengths, full, packed);
}
int qel_dfti_pack_s(int format, int dimension, const int* lengths, const _QEL_Complex8* full, float* packed) {
  return between(pick_spectrum<float>, format, dimension, lengths, full, packed);
}

int DftiErrorClass(int status, int error_class) { return status == error_class ? -1 : 0; }

const char* qel_dfti_message(int status) { return status_text(status); }

}  // extern "C"
