// SPDX-License-Identifier: BSD-3-Clause
// Every public entry that takes addresses only, as a table: a line says what an entry's arguments are, and a
// call is made from that. So one loop goes over all of them with bad arguments, without memory, or with data
// that is not finite. Entries with handles are in stateful_calls.h.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qel::test {

/// What the elements of a call's arrays come from: the k-th number of an array.
using number_source = std::function<double(size_t k)>;
/// Uniform in -1 .. 1.
double usual_number(size_t k);

/// An entry: its name with ? for the letter of the element type, the letters that it has, its arguments.
///   'X          the letter X          "text       the text          12   the number
///   n h         the order, half of it             r    right-hand sides: 3
///   s t         1.25 as an element, as a real     i    info           o    a number that comes out
///   A B         arrays of n * n elements: A with a heavy diagonal as a full matrix, B as packed upper
///   triangle Q           the same, each third element heavy (a band of width 2 with its diagonal below) T
///   small factors of reflectors       D    reals, all above 2 R           reals, what comes out is part of
///   the result         W l  work and its length;  V real work ?X          X in arrays that come out, which
///   only agree up to signs or rotations P J         integers 1 .. n; zeros      X Y   row starts and columns
///   of a tridiagonal matrix; E ends of rows .           a null pointer
struct entry_row {
  const char *name, *letters, *arguments;
};
const std::vector<entry_row>& entry_rows();

/// The arguments of one call.
class entry_call {
 public:
  entry_call(const entry_row& row, char letter, int order, const number_source& numbers = usual_number);
  entry_call(const entry_call&) = delete;
  entry_call& operator=(const entry_call&) = delete;

  const std::string& name() const { return name_; }
  /// Calls the entry, found by its name.
  void make();
  /// Scalars that can be spoiled; spoils the k-th: a size becomes -1, a letter '?'.
  size_t scalars() const { return scalars_.size(); }
  void spoil(size_t k);
  int info() const { return info_; }
  /// All arrays but work, as they are now.
  std::vector<double> result() const;
  /// Largest difference to another result, relative to its largest element; arrays that may differ left out.
  double distance(const std::vector<double>& other) const;
  double tolerance() const { return letter_ == 's' || letter_ == 'c' ? 2e-3 : 1e-8; }

 private:
  struct block {
    std::vector<char> bytes;
    int kind;  ///< 0 doubles, 1 floats, 2 ints
    bool counts, fixed;
  };
  block& add_block(size_t bytes, int kind, bool counts, bool fixed);
  void add_argument(std::string token);
  void add_elements(char role, const number_source& numbers, bool counts, bool fixed);
  void add_ints(size_t count, const std::function<int(int)>& value);
  void for_results(const std::function<void(double value, bool fixed)>& take) const;

  std::string name_;
  char letter_;
  int n_, info_ = 77;
  number_source numbers_;
  std::vector<std::unique_ptr<block>> blocks_;
  std::vector<void*> arguments_;
  struct scalar {
    void* at;
    bool is_letter;
  };
  std::vector<scalar> scalars_;
};

}  // namespace qel::test
