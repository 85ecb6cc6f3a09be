// SPDX-License-Identifier: BSD-3-Clause
// What all routines of the simpler interface begin and end with.
#pragma once

#include "sparse/dss/options.h"
#include "sparse/dss/record.h"
#include "sparse/dss/reporter.h"

namespace qel::dss {

/// A set of states.
template <class... S>
constexpr unsigned states(S... members) {
  return (0U | ... | (1U << members));
}

inline constexpr unsigned kAnyState =
    states(state_created, state_defined, state_reordered, state_factored, state_solved);

/// Routines with nothing but levels among their options.
inline constexpr option_grammar kLevelsOnly = {kNoField, 0, invalid_option};

/// One call: its options, the handle's levels after them, and the faults found so far.
class dss_call {
 public:
  /// states: those that the routine may be called in.
  dss_call(void** handle, int options, const option_grammar& grammar, unsigned states);

  record& r() const { return *record_; }
  int field() const { return read_.field; }
  bool has(uint32_t bit) const { return (options_ & bit) != 0; }
  const levels& current() const { return levels_; }
  fault_list& faults() { return faults_; }
  /// Reports the faults, or the status given. Success is told, too, to whom listens to it.
  int finish(int status_number) const;

 private:
  uint32_t options_;
  read_options read_;
  record* record_;
  levels levels_;
  fault_list faults_;
};

/// Levels of a call with these options on a handle with (or, at its creation, without) a record.
levels levels_for(const read_options& read, const record* known);
/// The faults that all routines test for.
void add_option_faults(fault_list& faults, const read_options& read, int bad_field);

}  // namespace qel::dss
