// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/blas/csr_check.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "blas/plain/scratch.h"

namespace qel::sparse {
namespace {

void note(csr_finding& finding, core_int row, core_int column) {
  if (finding.count++ == 0) finding = {1, row, column};
}

struct structure {
  core_int rows, columns;
  const int* ia;
  const int* ja;
  core_int entries, base;
  core_int start(core_int row) const { return core_int{ia[row]} - base; }
};

/// Whether row starts and columns would be faultless if counted from base.
bool fits(const structure& a, core_int base) {
  core_int before = base;
  if (a.ia[0] != base) return false;
  for (core_int i = 0; i <= a.rows; ++i) {
    if (a.ia[i] < before || a.ia[i] - base > a.entries) return false;
    before = a.ia[i];
  }
  return std::all_of(a.ja, a.ja + (before - base),
                     [&](int column) { return column >= base && column - base < a.columns; });
}

/// last_row[column] is the last row, from 1, that had it.
void check_row(const structure& a, core_int row, core_int first, core_int last, int* last_row,
               csr_findings& found) {
  bool sorted = true, diagonal = false;
  core_int before = -1;
  for (core_int p = first; p < last; ++p) {
    const core_int column = core_int{a.ja[p]} - a.base;
    if (column < 0 || column >= a.columns) {
      note(found.of[kOutOfRange], row, column);
      continue;
    }
    if (column < before && sorted) {
      sorted = false;
      note(found.of[kUnsorted], row, column);
    }
    bool again = column == before;
    if (last_row != nullptr) {
      again = last_row[column] == row + 1;
      last_row[column] = static_cast<int>(row + 1);
    } else if (!sorted) {
      again = std::find(a.ja + first, a.ja + p, a.ja[p]) != a.ja + p;
    }
    if (again) note(found.of[kDuplicate], row, column);
    diagonal = diagonal || column == row;
    before = column;
  }
  if (!diagonal && row < a.columns) note(found.of[kNoDiagonal], row, row);
}

}  // namespace

int csr_findings::bits() const {
  int result = 0;
  for (int fault = 0; fault < kCsrFaults; ++fault)
    if (of[fault].count != 0) result |= 1 << fault;
  return result;
}

csr_findings check_csr(core_int rows, core_int columns, const int* ia, const int* ja, core_int entries,
                       core_int base) {
  csr_findings found;
  if (rows < 0 || columns < 0 || entries < 0 || (base != 0 && base != 1)) {
    note(found.of[kBadSizes], 0, 0);
    return found;
  }
  const structure a = {rows, columns, ia, ja, entries, base};
  if (!fits(a, base) && fits(a, 1 - base)) {
    note(found.of[kOtherBase], 0, 0);
    return found;
  }
  const plain::scratch<int> last_row(std::max<core_int>(columns, 1));
  if (last_row.get() != nullptr) std::fill_n(last_row.get(), columns, 0);
  if (a.start(0) != 0) note(found.of[kBadRowStarts], 0, a.start(0));
  for (core_int i = 0; i < rows; ++i) {
    const core_int first = a.start(i), last = a.start(i + 1);
    if (last < first || last > entries) note(found.of[kBadRowStarts], i + 1, last);
    check_row(a, i, std::clamp<core_int>(first, 0, entries), std::clamp<core_int>(last, 0, entries),
              last_row.get(), found);
  }
  return found;
}

std::string word_findings(const csr_findings& findings, core_int base) {
  std::string text;
  const auto line = [&](csr_fault fault, const char* format, const char* unit) {
    const csr_finding& f = findings.of[fault];
    if (f.count == 0) return;
    char buffer[256];
    std::snprintf(buffer, sizeof buffer, format, f.row + base, f.column + base);
    text += buffer;
    if (f.count > 1) {
      std::snprintf(buffer, sizeof buffer, " (the first of %" PRId64 " such %s)", f.count, unit);
      text += buffer;
    }
    text += '\n';
  };
  if (findings.of[kBadSizes].count != 0) text += "sizes must not be negative, the base must be 0 or 1\n";
  if (findings.of[kOtherBase].count != 0) {
    text += base == 1 ? "the indices count from 0, but were given as counting from 1\n"
                      : "the indices count from 1, but were given as counting from 0\n";
  }
  line(kBadRowStarts, "row start %" PRId64 " is %" PRId64 ": before its predecessor or outside the entries",
       "row starts");
  line(kOutOfRange, "row %" PRId64 " has column %" PRId64 ", which is outside the matrix", "entries");
  line(kUnsorted, "row %" PRId64 " is not sorted: column %" PRId64 " comes after a greater one", "rows");
  line(kDuplicate, "row %" PRId64 " has column %" PRId64 " more than once", "entries");
  line(kNoDiagonal, "row %" PRId64 " has no entry on the diagonal", "rows");
  return text;
}

}  // namespace qel::sparse
