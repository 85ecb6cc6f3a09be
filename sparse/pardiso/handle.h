// SPDX-License-Identifier: BSD-3-Clause
// The blocks behind the caller's 64 words.
#pragma once

#include "sparse/pardiso/numeric/factor.h"
#include "sparse/pardiso/ooc/panel_files.h"
#include "sparse/pardiso/record.h"

namespace qel::pardiso {

/// Words of a handle that have a meaning. All blocks hang on it, none on the caller's address of it.
enum handle_word : int {
  word_state = 0,     ///< null: empty
  word_basic = 1,     ///< BASIC
  word_store = 2,     ///< out-of-core block table
  word_facts = 3,     ///< FACT_ADR
  word_analysis = 4,  ///< what the analysis left; up to word 15 goes with it
  word_last = 15,
};

/// The four blocks of the out-of-core store.
struct store_table {
  char* path;  ///< 1024 characters, blanks
  void *parameters, *left_parameters;
  void* state;
};
inline constexpr size_t kPathBytes = 1024, kParameterBytes = 1024, kStoreStateBytes = 1496;
static_assert(sizeof(store_table) == 32);

/// What the block of the file state holds.
struct store_state {
  bool configured;
  int max_core_size, keep_file;   ///< as configured
  transfer_fault fault;           ///< the transfer that failed
  transfer_totals factor, solve;  ///< of the last stage of its kind
};
static_assert(sizeof(store_state) <= kStoreStateBytes);

class handle {
 public:
  explicit handle(void** pt) : pt_(pt) {}

  bool live() const { return pt_[word_state] != nullptr; }
  void set_live() { pt_[word_state] = pt_[word_basic]; }
  basic_record* record() const { return static_cast<basic_record*>(pt_[word_basic]); }
  analysis* analysed() const { return static_cast<analysis*>(pt_[word_analysis]); }
  store_table* store() const { return static_cast<store_table*>(pt_[word_store]); }
  store_state& state_of_store() const { return *static_cast<store_state*>(store()->state); }
  fact_record& fact(int mnum) const { return static_cast<fact_record*>(pt_[word_facts])[mnum - 1]; }
  /// The factors of mnum, null if there are none of that element type.
  template <class T>
  factors<T>* factors_of(int mnum) const {
    if (mnum < 1 || mnum > record()->fact_slots) return nullptr;
    const fact_record& fact_of = fact(mnum);
    return fact_of.kind == kind_of<T> ? static_cast<factors<T>*>(fact_of.values) : nullptr;
  }

  /// Zeroes the words and makes BASIC and an empty FACT_ADR for maxfct factorisations. False if memory is
  /// out: account tells, and the handle is empty.
  bool create(int maxfct, memory_account& account);
  /// The blocks of the out-of-core store. False if memory is out.
  bool create_store();
  /// A longer factor table, for a handle that had none. False if memory is out.
  bool extend_facts(int maxfct);

  /// A new analysis; null if memory is out.
  analysis* new_analysis();
  /// New factors in the place of those of mnum; null if memory is out.
  template <class T>
  factors<T>* new_factors(int mnum);

  /// A store in files for the factors of mnum, which it goes with; null if memory is out.
  template <class T>
  factor_files<T>* new_files(int mnum);
  /// Null if the factors are in core.
  template <class T>
  factor_files<T>* files_of(int mnum) const {
    return factors_of<T>(mnum) == nullptr ? nullptr : static_cast<factor_files<T>*>(fact(mnum).files);
  }

  /// True if there was one.
  bool release_factor(int mnum);
  /// Returns how many there were.
  int release_factors();
  void release_analysis();
  /// Everything; the handle is empty then.
  int release();

 private:
  void** pt_;
};

}  // namespace qel::pardiso
