// SPDX-License-Identifier: BSD-3-Clause
// Where the factors' panels are. Everything that reads or writes factors asks a store for them, so that they
// need not all be in memory.
#pragma once

#include <limits>

#include "sparse/pardiso/numeric/factor.h"

namespace qel::pardiso {

/// A supernode by its numbers.
struct supernode_shape {
  int first, width, rows;
  const int* list;  ///< rows
};
inline supernode_shape shape_of(const structure& form, int s) {
  return {form.xsup[s], form.xsup[s + 1] - form.xsup[s],
          static_cast<int>(form.xlindx[s + 1] - form.xlindx[s]), form.lindx.get() + form.xlindx[s]};
}

/// Both panels of a supernode; u is null for symmetric types.
template <class T>
struct panel_pair {
  T* l = nullptr;
  T* u = nullptr;
};
template <class T>
struct const_panel_pair {
  const T* l = nullptr;
  const T* u = nullptr;
};

/// What panels are read for.
enum class store_pass { factorisation, forward, backward };

/// Calls come from several threads, each with a number of its own below the count that the store was made
/// for. A false result is a failed transfer.
template <class T>
class panel_store {
 public:
  virtual ~panel_store() = default;
  /// Threads that may call.
  virtual int threads() const = 0;
  /// Panels to be filled, contents unspecified; a thread has at most one pair open.
  virtual bool open(int supernode, int thread, panel_pair<T>& panels) = 0;
  /// The open panels are final.
  virtual bool close(int supernode, int thread) = 0;
  /// Final panels, valid until the thread's next read.
  virtual bool read(int supernode, int thread, const_panel_pair<T>& panels) = 0;
  /// What the thread reads for from now on.
  virtual void start_pass(int, store_pass) {}
  /// What made a call fail.
  virtual stage_status failure() const = 0;
};

/// All panels in two arrays.
template <class T>
class panels_in_core final : public panel_store<T> {
 public:
  panels_in_core(const structure& form, T* lnz, T* unz) : form_(form), lnz_(lnz), unz_(unz) {}
  int threads() const override { return std::numeric_limits<int>::max(); }
  bool open(int supernode, int, panel_pair<T>& panels) override {
    panels.l = lnz_ + form_.xlnz[supernode];
    panels.u = unz_ == nullptr ? nullptr : unz_ + form_.xunz[supernode];
    return true;
  }
  bool close(int, int) override { return true; }
  bool read(int supernode, int, const_panel_pair<T>& panels) override {
    panels.l = lnz_ + form_.xlnz[supernode];
    panels.u = unz_ == nullptr ? nullptr : unz_ + form_.xunz[supernode];
    return true;
  }
  stage_status failure() const override { return {}; }

 private:
  const structure& form_;
  T *lnz_, *unz_;
};

}  // namespace qel::pardiso
