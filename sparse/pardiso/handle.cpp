// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/handle.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace qel::pardiso {
namespace {

size_t fact_bytes(int slots) { return sizeof(fact_record) * static_cast<size_t>(slots); }

void clear(fact_record& fact) { fact = {nullptr, kNotSet, 0, nullptr, {}}; }

/// An object in an accounted block of its own.
template <class Object>
Object* make(memory_account& account, int code) {
  void* const place = account.allocate(sizeof(Object), code);
  return place != nullptr ? new (place) Object : nullptr;
}
template <class Object>
void destroy(memory_account& account, Object* object) {
  if (object == nullptr) return;
  object->~Object();
  account.release(object, sizeof(Object));
}

}  // namespace

void reset(basic_record& record) {
  std::memset(static_cast<void*>(&record), 0, sizeof record);
  record.account = {};
  record.times = {};
  const double control[] = {10.0, 1.0, 1e-12, 1e-30};
  std::copy_n(control, 4, record.control);
  record.divergence_bound = 10000;
  std::fill_n(record.slots, int{slot_count}, kNotSet);
}

bool handle::create(int maxfct, memory_account& account) {
  std::fill(pt_ + word_basic, pt_ + word_last + 1, nullptr);
  pt_[word_basic] = account.allocate(sizeof(basic_record), block_basic);
  if (record() == nullptr) return false;
  reset(*record());
  const int slots = std::max(maxfct, 0);
  pt_[word_facts] = account.allocate(fact_bytes(slots), block_fact_adr);
  if (pt_[word_facts] == nullptr) {
    account.release(record(), sizeof(basic_record));
    pt_[word_basic] = nullptr;
    return false;
  }
  record()->account = account;
  record()->fact_slots = slots;
  for (int k = 1; k <= slots; ++k) clear(fact(k));
  return true;
}

bool handle::extend_facts(int maxfct) {
  memory_account& account = record()->account;
  void* const longer = account.allocate(fact_bytes(maxfct), block_fact_adr);
  if (longer == nullptr) return false;
  release_factors();
  account.release(pt_[word_facts], fact_bytes(record()->fact_slots));
  pt_[word_facts] = longer;
  record()->fact_slots = maxfct;
  for (int k = 1; k <= maxfct; ++k) clear(fact(k));
  return true;
}

bool handle::create_store() {
  memory_account& account = record()->account;
  pt_[word_store] = account.allocate(sizeof(store_table), block_ooc_table);
  if (pt_[word_store] == nullptr) return false;
  store_table& table = *store();
  table = {};
  table.path = static_cast<char*>(account.allocate(kPathBytes, block_ooc_table));
  if (table.path == nullptr) return false;
  std::memset(table.path, ' ', kPathBytes);
  for (void** parameters : {&table.parameters, &table.left_parameters}) {
    *parameters = account.allocate(kParameterBytes, block_ooc_parameters);
    if (*parameters == nullptr) return false;
    std::memset(*parameters, 0, kParameterBytes);
  }
  table.state = account.allocate(kStoreStateBytes, block_ooc_state);
  if (table.state == nullptr) return false;
  std::memset(table.state, 0, kStoreStateBytes);
  return true;
}

analysis* handle::new_analysis() {
  release_analysis();
  analysis* const made = make<analysis>(record()->account, block_struc_fi);
  pt_[word_analysis] = made;
  return made;
}

template <class T>
factors<T>* handle::new_factors(int mnum) {
  release_factor(mnum);
  factors<T>* const made = make<factors<T>>(record()->account, block_fact_lu);
  if (made != nullptr) {
    fact(mnum).values = made;
    fact(mnum).kind = kind_of<T>;
  }
  return made;
}
template factors<float>* handle::new_factors(int);
template factors<double>* handle::new_factors(int);
template factors<complex8>* handle::new_factors(int);
template factors<complex16>* handle::new_factors(int);

template <class T>
factor_files<T>* handle::new_files(int mnum) {
  factor_files<T>* const made = make<factor_files<T>>(record()->account, block_ooc_state);
  fact(mnum).files = made;
  return made;
}
template factor_files<float>* handle::new_files(int);
template factor_files<double>* handle::new_files(int);
template factor_files<complex8>* handle::new_files(int);
template factor_files<complex16>* handle::new_files(int);

bool handle::release_factor(int mnum) {
  fact_record& released = fact(mnum);
  if (released.values == nullptr) return false;
  const bool complex_kind = released.kind == kind_complex8 || released.kind == kind_complex16;
  const bool single = released.kind == kind_float || released.kind == kind_complex8;
  with_element(complex_kind, single, [&](auto element) {
    destroy(record()->account, static_cast<factors<decltype(element)>*>(released.values));
    destroy(record()->account, static_cast<factor_files<decltype(element)>*>(released.files));
  });
  clear(released);
  return true;
}

int handle::release_factors() {
  int released = 0;
  for (int k = 1; k <= record()->fact_slots; ++k) released += release_factor(k);
  return released;
}

void handle::release_analysis() {
  destroy(record()->account, analysed());
  std::fill(pt_ + word_analysis, pt_ + word_last + 1, nullptr);
}

int handle::release() {
  const int released = release_factors();
  release_analysis();
  memory_account account = record()->account;  // outlives the record
  if (store() != nullptr) {
    account.release(store()->path, kPathBytes);
    account.release(store()->parameters, kParameterBytes);
    account.release(store()->left_parameters, kParameterBytes);
    account.release(store()->state, kStoreStateBytes);
    account.release(store(), sizeof(store_table));
  }
  account.release(pt_[word_facts], fact_bytes(record()->fact_slots));
  account.release(record(), sizeof(basic_record));
  std::fill(pt_, pt_ + word_last + 1, nullptr);
  return released;
}

}  // namespace qel::pardiso
