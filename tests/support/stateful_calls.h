// SPDX-License-Identifier: BSD-3-Clause
// Entries and classes with handles, as a table like entry_table.h: each line is a life from making to
// releasing, which gives its handles back whatever happens on the way.
#pragma once

#include <exception>
#include <vector>

#include "tests/support/entry_table.h"

namespace qel::test {

/// What a life is run with, and what came of it.
class life {
 public:
  explicit life(int order, number_source numbers = usual_number) : n(order), numbers_(std::move(numbers)) {}
  const int n;

  /// count numbers from the source; with a row length, heavy ones on the diagonal.
  std::vector<double> numbers(size_t count, size_t diagonal_step = 0);
  /// A size or an option. That of this number, from 0, is spoiled to be -1.
  int scalar(int value) { return scalars_++ == spoilt_ ? -1 : value; }
  void spoil(int number) { spoilt_ = number; }
  int scalars() const { return scalars_; }

  /// Runs the library's part between what begin and end do; an exception of the classes has told.
  template <class Part>
  void during(Part part) {
    if (begin) begin();
    try {
      part();
    } catch (const std::exception&) {
      told = true;
    }
    if (end) end();
  }
  std::function<void()> begin, end;

  /// A call has said that memory is out.
  bool told = false;
  void expect_done(int status, std::initializer_list<int> no_memory);
  std::vector<double> result;

 private:
  number_source numbers_;
  int scalars_ = 0, spoilt_ = -1;
  size_t streams_ = 0;
};

struct life_row {
  const char* name;
  const char* covers;  ///< the public entries that it calls
  std::function<void(life&)> run;
};
const std::vector<life_row>& life_rows();

}  // namespace qel::test
