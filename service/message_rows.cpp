// SPDX-License-Identifier: BSD-3-Clause
#include "service/message_rows.h"

#include <algorithm>
#include <iterator>

namespace qel {
namespace {

// Sorted by number. Numbers that are missing belong to components that this library does not contain.
constexpr message_row kRows[] = {
    {0, 1, ""},
    {6, 1, "QEL ERROR: Parameter %d was incorrect on entry to %s"},
    {7, 1, "QEL INTERNAL ERROR: Condition %d detected in function %s"},
    {8, 1, "QEL INTERNAL ERROR: Not enough work memory in function %s"},
    {9, 1, "QEL ERROR: Incompatible optional parameters on entry to %s"},
    {kDftiMessages, 1, "QEL DFTI SUCCESS: No error"},
    {kDftiMessages + 1, 1, "QEL DFTI ERROR: Not enough memory to allocate"},
    {kDftiMessages + 2, 1, "QEL DFTI ERROR: Invalid configuration parameters"},
    {kDftiMessages + 3, 1, "QEL DFTI ERROR: Inconsistent configuration parameters"},
    {kDftiMessages + 4, 1, "QEL DFTI ERROR: Error in OpenMP"},
    {kDftiMessages + 5, 1, "QEL DFTI ERROR: Descriptor is bad or corrupted"},
    {kDftiMessages + 6, 1, "QEL DFTI ERROR: Not implemented"},
    {kDftiMessages + 7, 1, "QEL DFTI ERROR: Internal error"},
    {kDftiMessages + 8, 1, "QEL DFTI ERROR: Lack of DFTI_NUMBER_OF_USER_THREADS in descriptor"},
    {kDftiMessages + 9, 1, "QEL DFTI ERROR: Size of one of transform dimensions exceeds 2^32 (32-bit)"},
    {kDftiMessages + 10, 1, "QEL DFTI ERROR: Incorrect status"},
#define SOLVER_ROW(name, text) {static_cast<int>(solver_row::name), 1, text},
#include "service/solver_messages.inl.h"
#undef SOLVER_ROW
    {kVmlMessages, 1, "Error (VML_STATUS_BADSIZE) in %s: array size %d is not positive."},
    {kVmlMessages + 1, 1, "Error (VML_STATUS_BADMEM) in %s: NULL pointer is passed."},
    {kVmlMessages + 2, 1, "Error (VML_STATUS_ERRDOM) in %s: argument is out of domain."},
    {kVmlMessages + 3, 1, "Error (VML_STATUS_SING) in %s: argument caused singularity."},
    {kVmlMessages + 4, 1, "Error (VML_STATUS_OVERFLOW) in %s: argument caused overflow."},
    {kVmlMessages + 5, 1, "Error (VML_STATUS_UNDERFLOW) in %s: argument caused underflow."},
    {kVmlMessages + 6, 1, "Unknown error in %s."},
    {kVmlValueMessages, 1, "a(%d)=%g"},
    {kVmlValueMessages + 1, 1, "b(%d)=%g"},
    {kVmlValueMessages + 2, 1, "r(%d)=%g"},
    {kVmlValueMessages + 3, 1, "y(%d)=%g"},
    {kVmlValueMessages + 4, 1, "z(%d)=%g"},
    {kVmlNoMemoryMessage, 1, "QEL FATAL ERROR: memory allocation error."},
};
static_assert(std::is_sorted(std::begin(kRows), std::end(kRows),
                             [](const message_row& a, const message_row& b) { return a.number < b.number; }));

}  // namespace

const message_row* find_message_row(int number) {
  const auto* row = std::lower_bound(std::begin(kRows), std::end(kRows), number,
                                     [](const message_row& r, int wanted) { return r.number < wanted; });
  return row != std::end(kRows) && row->number == number ? row : nullptr;
}

}  // namespace qel
