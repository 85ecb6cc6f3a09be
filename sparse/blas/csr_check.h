// SPDX-License-Identifier: BSD-3-Clause
// Looks over the structure of a CSR matrix and words what it finds. Reads nothing outside the arrays.
#pragma once

#include <string>

#include "service/core_types.h"

namespace qel::sparse {

/// Kinds of findings, in the order of their bits in qel_csr_check's answer.
enum csr_fault : int {
  kBadSizes,      ///< a negative size, or a base other than 0 and 1
  kBadRowStarts,  ///< a row starts before the one before it or outside the entries
  kOtherBase,     ///< the indices make sense from 0 but not from 1, or the other way round
  kOutOfRange,    ///< a column that the matrix doesn't have
  kUnsorted,      ///< a row whose columns don't ascend
  kDuplicate,     ///< a column twice in a row
  kNoDiagonal,    ///< a row without an entry on the diagonal
  kCsrFaults
};

struct csr_finding {
  core_int count = 0;            ///< places
  core_int row = 0, column = 0;  ///< the first one, from 0; what was found there
};

struct csr_findings {
  csr_finding of[kCsrFaults];
  /// Bit k is set if fault k was found.
  int bits() const;
};

/// rows + 1 row starts, entries columns, both counted from base. Entries outside the arrays aren't looked at.
csr_findings check_csr(core_int rows, core_int columns, const int* ia, const int* ja, core_int entries,
                       core_int base);

/// A line for each kind; empty if nothing was found. Rows and columns are counted from base.
std::string word_findings(const csr_findings& findings, core_int base);

}  // namespace qel::sparse
