// SPDX-License-Identifier: BSD-3-Clause
// Panels of factors in files. Finished panels are written; those that fit into a cache stay in memory too.
#pragma once

#include <mutex>

#include "sparse/pardiso/numeric/panel_store.h"
#include "sparse/pardiso/ooc/files.h"

namespace qel::pardiso {

/// Pairs of panels, one behind the other, in a ring of memory: a new one takes the place of the oldest. The
/// caller locks.
class panel_ring {
 public:
  /// False if memory is out.
  bool allocate(int supernodes, int64_t bytes, memory_account& account);
  /// Where a supernode's panels are, pinned once more; null if they are not here or not complete.
  char* find(int supernode);
  /// Room for panels that are not here yet, pinned; null if it does not fit between those that are pinned.
  char* place(int supernode, int64_t bytes);
  void complete(int supernode) { entries_[supernode].complete = true; }
  void unpin(int supernode) { --pins_[supernode]; }
  /// Takes pinned panels out.
  void drop(int supernode);

 private:
  struct entry {
    int64_t offset, bytes;  ///< offset -1: not here
    int next;               ///< towards higher offsets, -1 behind the last one
    bool complete;
  };
  void remove_behind(int before);

  block<char> room_;
  block<entry> entries_;
  block<int> pins_;
  int first_ = -1, latest_ = -1;  ///< lowest offset; where the oldest one follows
};

/// A failed transfer.
struct transfer_fault {
  char label[64];  ///< names the family, the transfer and the file
  int kind;        ///< of the file
  int64_t items;   ///< that were moved all the same
};

/// What a store has moved.
struct transfer_totals {
  int64_t bytes_read = 0, bytes_written = 0;
  double read_seconds = 0, write_seconds = 0;
};

template <class T>
class panels_in_files final : public panel_store<T> {
 public:
  panels_in_files() = default;
  ~panels_in_files() override;
  panels_in_files(const panels_in_files&) = delete;
  panels_in_files& operator=(const panels_in_files&) = delete;

  /// Opens the files of `threads` threads; fresh: new and empty. cache_bytes of panels stay in memory.
  /// form, files and account must outlive the store. error -2, -10.
  stage_status prepare(const structure& form, matrix_type type, ooc_file_set& files, bool fresh, int threads,
                       int64_t cache_bytes, memory_account& account);
  /// Writes the lists that belong to the factors: row lists, their starts, interchanges.
  stage_status write_lists(const factors<T>& f);

  /// Closes the files and gives the memory back.
  void shut();

  int threads() const override { return threads_; }
  bool open(int supernode, int thread, panel_pair<T>& panels) override;
  bool close(int supernode, int thread) override;
  bool read(int supernode, int thread, const_panel_pair<T>& panels) override;
  void start_pass(int thread, store_pass pass) override { channels_[thread].pass = pass; }
  stage_status failure() const override { return ooc_status(code_); }

  pardiso_ooc_code failed_code() const { return code_; }
  const transfer_fault& fault() const { return fault_; }
  transfer_totals totals() const;

 private:
  /// A thread's files and the panels that it has no place for in the ring.
  struct channel {
    ooc_file l, u;
    block<T> opened, fetched;
    T* open_panels;
    int pinned;  ///< supernode in the ring that the last read gave out, -1
    bool open_in_ring;
    store_pass pass;
  };
  int64_t elements_of(int supernode) const { return form_->xlnz[supernode + 1] - form_->xlnz[supernode]; }
  int64_t bytes_of(int supernode) const {
    return elements_of(supernode) * static_cast<int64_t>(sizeof(T)) * (lu_ ? 2 : 1);
  }
  bool transfer(channel& own, int supernode, T* panels, bool writes);
  void fail(pardiso_ooc_code code, store_pass pass, const char* what, const ooc_file& file);

  const structure* form_ = nullptr;
  ooc_file_set* files_ = nullptr;
  memory_account* account_ = nullptr;
  matrix_type type_{};
  bool lu_ = false;
  int threads_ = 0;
  channel* channels_ = nullptr;
  panel_ring ring_;
  mutable std::mutex lock_;
  pardiso_ooc_code code_ = PARDISO_OOC_NO_ERROR;
  transfer_fault fault_ = {};
};

/// The files of one factorisation and the store over them, as a handle owns them.
template <class T>
struct factor_files {
  ooc_file_set files{};
  panels_in_files<T> store;
  bool deletes = true;  ///< the files go with this

  ~factor_files() {
    store.shut();
    if (deletes) delete_ooc_files(files);
  }
};

/// Bytes of panels that may stay in memory under a limit in megabytes.
int64_t panel_cache_bytes(const memory_prediction& predicted, int64_t limit);

}  // namespace qel::pardiso
