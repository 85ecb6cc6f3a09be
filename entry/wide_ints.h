// SPDX-License-Identifier: BSD-3-Clause
// Integer arguments that the core sees through a 64-bit copy: arrays (pivots, permutations, work space) and
// scalars that come back. An entry names the direction at the call; the shapes of entry/shapes.h look
// whether the copies could be had, pass them, and write back.
#pragma once

#include "service/core_types.h"

namespace qel::entry {

/// A temporary core_int array of max(length, 1) elements; null if memory is out. A null caller array is
/// neither read nor written: the way to say that the routine doesn't use it in this call.
class wide_ints {
 public:
  wide_ints(const int* from, int* back, core_int length);
  ~wide_ints();
  wide_ints(const wide_ints&) = delete;
  wide_ints& operator=(const wide_ints&) = delete;

  core_int* get() const { return data_; }
  /// Narrows into the caller's array, if this is one that comes back.
  void write_back() const;

 private:
  core_int* data_;
  int* back_;
  core_int length_;
};

/// Read by the core.
inline wide_ints in_ints(const int* array, core_int length) { return {array, nullptr, length}; }
/// Read and written by the core.
inline wide_ints in_out_ints(int* array, core_int length) { return {array, array, length}; }
/// Written by the core. Filled from the caller all the same, so that elements which the core leaves alone,
/// all of them after a bad argument, keep the caller's values.
inline wide_ints out_ints(int* array, core_int length) { return {array, array, length}; }
/// Work space: its values mean nothing to the caller, whose own array is not touched.
inline wide_ints work_ints(core_int length) { return {nullptr, nullptr, length}; }

/// A scalar that the core writes; what it leaves alone keeps its value.
class out_int {
 public:
  explicit out_int(int* target) : target_(target), value_(*target) {}
  core_int* get() { return &value_; }
  void write_back() const { *target_ = static_cast<int>(value_); }

 private:
  int* target_;
  core_int value_;
};

}  // namespace qel::entry
