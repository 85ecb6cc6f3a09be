// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/ooc/panel_files.h"

#include <stdio.h>

#include <algorithm>
#include <new>

namespace qel::pardiso {

namespace {

/// The families of factorisations, as their transfers are labelled.
const char* family_of(matrix_type type) {
  switch (type.number) {
    case 2:
      return "blkl";
    case -2:
      return "blkldl";
    case -4:
      return "ch_blkldl";
    case 4:
    case 6:
      return "c_blkl";
    case 3:
    case 13:
      return "c_blklu_unsym";
    default:
      return "blklu_unsym";
  }
}
const char* solve_family_of(matrix_type type) {
  if (type.unsymmetric()) return type.is_complex() ? "c_blkslv_unsym_ooc" : "blkslv_unsym_ooc";
  return type.is_complex() ? "c_blkslv_ooc" : "blkslv_ooc";
}

}  // namespace

int64_t panel_cache_bytes(const memory_prediction& predicted, int64_t limit) {
  return std::max<int64_t>(limit - predicted.out_of_core_minimum - 1, 0) * (int64_t{1} << 20);
}

template <class T>
panels_in_files<T>::~panels_in_files() {
  shut();
}

template <class T>
void panels_in_files<T>::shut() {
  for (int t = 0; t < threads_; ++t) {
    close_ooc_file(channels_[t].l);
    close_ooc_file(channels_[t].u);
    channels_[t].~channel();
  }
  if (channels_ != nullptr) account_->release(channels_, static_cast<size_t>(threads_) * sizeof(channel));
  channels_ = nullptr;
  threads_ = 0;
}

template <class T>
stage_status panels_in_files<T>::prepare(const structure& form, matrix_type type, ooc_file_set& files,
                                         bool fresh, int threads, int64_t cache_bytes,
                                         memory_account& account) {
  shut();
  form_ = &form;
  files_ = &files;
  account_ = &account;
  type_ = type;
  lu_ = type.unsymmetric();
  code_ = PARDISO_OOC_NO_ERROR;
  const int64_t all = form.xlnz[form.supernodes] * static_cast<int64_t>(sizeof(T)) * (lu_ ? 2 : 1);
  const int64_t rounded = all + 64 * static_cast<int64_t>(form.supernodes);
  const int64_t largest = form.largest_panel * (lu_ ? 2 : 1);
  if (!ring_.allocate(form.supernodes, std::min(cache_bytes, rounded), account)) return {-2, 0};
  channels_ =
      static_cast<channel*>(account.allocate(static_cast<size_t>(threads) * sizeof(channel), block_fact_lu));
  if (channels_ == nullptr) return {-2, 0};
  for (threads_ = 0; threads_ < threads;) {
    channel& own = *new (channels_ + threads_) channel{};
    ++threads_;
    own.pinned = -1;
    if (!own.opened.allocate(account, largest, block_fact_lu) ||
        !own.fetched.allocate(account, largest, block_fact_lu)) {
      return {-2, 0};
    }
    const char* const mode = fresh && threads_ == 1 ? "w+b" : "r+b";
    pardiso_ooc_code code = open_ooc_file(files, ooc_lnz, mode, own.l);
    if (code == PARDISO_OOC_NO_ERROR && lu_) code = open_ooc_file(files, ooc_unz, mode, own.u);
    if (code != PARDISO_OOC_NO_ERROR) {
      fail(code, own.pass, own.l.kfile < 0 ? "open lnz" : "open unz", own.l);
      return failure();
    }
  }
  return {};
}

template <class T>
void panels_in_files<T>::fail(pardiso_ooc_code code, store_pass pass, const char* what,
                              const ooc_file& file) {
  const std::lock_guard hold(lock_);
  if (code_ != PARDISO_OOC_NO_ERROR) return;
  code_ = code;
  const bool solves = pass != store_pass::factorisation;
  fault_.kind = file.kind;
  fault_.items = file.last_items;
  snprintf(fault_.label, sizeof fault_.label, "%s %s", solves ? solve_family_of(type_) : family_of(type_),
           what);
}

template <class T>
bool panels_in_files<T>::transfer(channel& own, int supernode, T* panels, bool writes) {
  const int64_t count = elements_of(supernode);
  for (const bool upper : {false, true}) {
    if (upper && !lu_) break;
    ooc_file& file = upper ? own.u : own.l;
    T* const items = panels + (upper ? count : 0);
    const int64_t position = form_->xlnz[supernode];
    const pardiso_ooc_code code = writes ? pardiso_write_ooc_file(file, sizeof(T), position, count, items)
                                         : pardiso_read_ooc_file(file, sizeof(T), position, count, items);
    if (code == PARDISO_OOC_NO_ERROR) continue;
    const char* const names[3][2] = {{"read lnz 1", "read unz 1"},
                                     {"read for forward step", "read unz for forward step"},
                                     {"read lnz for backward step", "read unz for backward step"}};
    const int pass = static_cast<int>(own.pass);
    fail(code, own.pass, writes ? (upper ? "write unz 2" : "write lnz 2") : names[pass][upper ? 1 : 0], file);
    return false;
  }
  return true;
}

template <class T>
bool panels_in_files<T>::open(int supernode, int thread, panel_pair<T>& panels) {
  channel& own = channels_[thread];
  lock_.lock();
  char* const place = ring_.place(supernode, bytes_of(supernode));
  lock_.unlock();
  own.open_in_ring = place != nullptr;
  own.open_panels = place != nullptr ? reinterpret_cast<T*>(place) : own.opened.get();
  panels.l = own.open_panels;
  panels.u = lu_ ? own.open_panels + elements_of(supernode) : nullptr;
  return true;
}

template <class T>
bool panels_in_files<T>::close(int supernode, int thread) {
  channel& own = channels_[thread];
  bool written = false;
#pragma omp critical(qel_pardiso_updates)
  written = transfer(own, supernode, own.open_panels, true);
  if (own.open_in_ring) {
    const std::lock_guard hold(lock_);
    ring_.complete(supernode);
    ring_.unpin(supernode);
  }
  return written;
}

template <class T>
bool panels_in_files<T>::read(int supernode, int thread, const_panel_pair<T>& panels) {
  channel& own = channels_[thread];
  lock_.lock();
  if (own.pinned >= 0) ring_.unpin(own.pinned);
  char* place = ring_.find(supernode);
  const bool here = place != nullptr;
  if (!here) place = ring_.place(supernode, bytes_of(supernode));
  own.pinned = place != nullptr ? supernode : -1;
  lock_.unlock();
  T* const found = place != nullptr ? reinterpret_cast<T*>(place) : own.fetched.get();
  if (!here) {
    const bool good = transfer(own, supernode, found, false);
    if (place != nullptr) {
      const std::lock_guard hold(lock_);
      if (good) ring_.complete(supernode);
      if (!good) ring_.drop(supernode), own.pinned = -1;
    }
    if (!good) return false;
  }
  panels.l = found;
  panels.u = lu_ ? found + elements_of(supernode) : nullptr;
  return true;
}

template <class T>
stage_status panels_in_files<T>::write_lists(const factors<T>& f) {
  const structure& form = *form_;
  const struct {
    int kind;
    const void* items;
    int64_t size, count;
    const char* what;
  } lists[] = {
      {ooc_index, form.lindx.get(), sizeof(int), form.lindx.size(), "write ind"},
      {ooc_jalf, form.xlindx.get(), sizeof(int64_t), form.xlindx.size(), "write jalf"},
      {ooc_jauf, form.xlindx.get(), sizeof(int64_t), form.xlindx.size(), "write jauf"},
      {ooc_luperm, lu_ ? f.luperm.get() : f.pivot.get(), sizeof(int), lu_ ? f.luperm.size() : f.pivot.size(),
       "write luperm"},
      {ooc_u_perm, f.luperm_row.get(), sizeof(int), f.luperm_row.size(), "write uuperm"},
      {ooc_luperm_row, f.luperm_row.get(), sizeof(int), f.luperm_row.size(), "write luperm_row"},
      {ooc_u_perm_row, f.luperm.get(), sizeof(int), f.luperm.size(), "write uuperm_row"},
      {ooc_subgraphs, form.supernode_ranges.get(), sizeof(column_range), form.supernode_ranges.size(),
       "write subgraphs"},
      {ooc_subgraph_rows, form.pnlsch.get(), sizeof(int), form.pnlsch.size(), "write pnlsch"},
  };
  for (const auto& list : lists) {
    if (!has_kind(*files_, list.kind)) continue;
    ooc_file file;
    pardiso_ooc_code code = open_ooc_file(*files_, list.kind, "w+b", file);
    if (code == PARDISO_OOC_NO_ERROR && list.count > 0) {
      code = pardiso_write_ooc_file(file, list.size, 0, list.count, list.items);
    }
    const pardiso_ooc_code closed = close_ooc_file(file);
    if (code == PARDISO_OOC_NO_ERROR) code = closed;
    if (code == PARDISO_OOC_NO_ERROR) continue;
    fail(code, store_pass::factorisation, list.what, file);
    return failure();
  }
  return {};
}

template <class T>
transfer_totals panels_in_files<T>::totals() const {
  transfer_totals sum;
  for (int t = 0; t < threads_; ++t) {
    for (const ooc_file* const file : {&channels_[t].l, &channels_[t].u}) {
      sum.bytes_read += file->bytes_read;
      sum.bytes_written += file->bytes_written;
      sum.read_seconds += file->read_seconds;
      sum.write_seconds += file->write_seconds;
    }
  }
  return sum;
}

template class panels_in_files<float>;
template class panels_in_files<double>;
template class panels_in_files<complex8>;
template class panels_in_files<complex16>;

}  // namespace qel::pardiso
