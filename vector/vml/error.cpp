// SPDX-License-Identifier: BSD-3-Clause
// What happens when a kernel meets an element that raises a status.
#include <cerrno>
#include <cmath>
#include <cstring>

#include "service/message_rows.h"
#include "service/serv.h"
#include "vector/kernels/vector_kernels.h"
#include "vector/vml/state.h"

namespace qel {
namespace {

struct status_row {
  int error_number, message;
};

status_row row_of_status(int status) {
  switch (status) {
    case VML_STATUS_BADMEM:
      return {EACCES, kVmlMessages + 1};
    case VML_STATUS_BADSIZE:
      return {EINVAL, kVmlMessages};
    case VML_STATUS_ERRDOM:
      return {EDOM, kVmlMessages + 2};
    case VML_STATUS_SING:
      return {ERANGE, kVmlMessages + 3};
    case VML_STATUS_OVERFLOW:
      return {ERANGE, kVmlMessages + 4};
    case VML_STATUS_UNDERFLOW:
      return {ERANGE, kVmlMessages + 5};
    default:
      return {EFAULT, kVmlMessages + 6};
  }
}

/// A second value that has something of its own to say.
bool is_another(double value, double first) {
  return value != first && value != 0.0 && !(std::isnan(value) && std::isnan(first));
}

enum value_letter : int { kA, kB, kR, kY, kZ };
void print_value(value_letter letter, int index, double value) {
  serv_message(0, kVmlValueMessages + letter, 2, index, value);
}

void print_event(const qel_vml_event& event) {
  const int row = row_of_status(event.status).message;
  if (event.status == VML_STATUS_BADSIZE) {
    serv_message(0, row, 2, event.name, event.index);
  } else {
    serv_message(0, row, 1, event.name);
  }
  if (event.status < VML_STATUS_ERRDOM) return;
  print_value(kA, event.index, event.a);
  if (is_another(event.b, event.a)) print_value(kB, event.index, event.b);
  if (is_another(event.r2, event.r1)) {
    print_value(kY, event.index, event.r1);
    print_value(kZ, event.index, event.r2);
  } else {
    print_value(kR, event.index, event.r1);
  }
}

/// Computes something that raises the status's flag, or traps where the caller has unmasked it.
void raise_flag(int status) {
  volatile double zero = 0.0, one = 1.0, largest = 1.7976931348623157e308, least = 2.2250738585072014e-308;
  volatile double sink;
  switch (status) {
    case VML_STATUS_ERRDOM:
      sink = zero / zero;
      break;
    case VML_STATUS_SING:
      sink = one / zero;
      break;
    case VML_STATUS_OVERFLOW:
      sink = largest * largest;
      break;
    case VML_STATUS_UNDERFLOW:
      sink = least * least;
      break;
    default:
      return;
  }
  (void)sink;
}

constexpr unsigned kCallbackBits = 0xf000, kOtherReactions = 0xf00;

}  // namespace

void vml_error(int status, int index, const double* a, const double* b, double* r1, double* r2,
               const char* name) {
  vml_record& state = vml_state();
  state.status = status;
  const unsigned mode = state.mode;
  if ((mode & kErrorBits) == VML_ERRMODE_IGNORE) return;

  const bool has_values = status > VML_STATUS_BADSIZE;
  qel_vml_event event{};
  event.status = status;
  event.index = index + (state.base != nullptr ? static_cast<int>(a - state.base) : 0);
  std::strncpy(event.name, name, sizeof event.name - 1);
  if (has_values) {
    event.a = a[index];
    event.b = b[index];
    event.r1 = r1[index];
    event.r2 = r2[index];
  }
  if ((mode & kCallbackBits) != 0 && state.callback != nullptr && state.callback(&event) != 0) return;
  if ((mode & kOtherReactions) != 0) {
    if ((mode & VML_ERRMODE_ERRNO) != 0) errno = row_of_status(status).error_number;
    if ((mode & VML_ERRMODE_PRINT) != 0) print_event(event);
    if ((mode & VML_ERRMODE_EXCEPT) != 0) raise_flag(status);
  }
  if (has_values) {
    r2[index] = event.r2;
    r1[index] = event.r1;
  }
}

}  // namespace qel
