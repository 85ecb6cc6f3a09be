// SPDX-License-Identifier: BSD-3-Clause
// The direct solver's memory: named blocks from the service allocator, added up in kilobytes, and arrays that
// own such a block.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "service/serv.h"

namespace qel::pardiso {

/// Blocks of a handle, with the code that a refused allocation reports. Where a step has several allocations,
/// their codes go down from these (-400 .. -404, -800 .. -805).
enum block_code : int {
  block_basic = -100,
  block_fact_adr = -200,
  block_ooc_table = -201,
  block_ooc_parameters = -202,
  block_ooc_state = -203,
  block_loc_int1 = -300,
  block_struc_s0 = -400,
  block_work_i0 = -500,
  block_struc_s1 = -600,
  block_struc_s2 = -700,
  block_struc_fi = -800,
  block_loc_int2 = -900,
  block_up_uplen = -1000,
  block_fact_lu = -1100,
  block_work_r0 = -1200,
  block_cgs_arr = -1300,
};

/// What has been allocated and is alive, the peak, and the first refusal. A block of b bytes counts
/// b / 1024 + 1 kilobytes.
class memory_account {
 public:
  /// On a cache line, not zeroed; null if memory is out: then failed_code() and wanted_kilobytes() tell.
  void* allocate(size_t bytes, int code) {
    const auto start = std::chrono::steady_clock::now();
    void* const p = serv_aligned_malloc(std::max<size_t>(bytes, 1), 64);
    seconds_ += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (p == nullptr) {
      if (failed_code_ == 0) failed_code_ = code, failed_bytes_ = bytes;
      return nullptr;
    }
    now_ += kilobytes(bytes);
    peak_ = std::max(peak_, now_);
    return p;
  }
  void release(void* p, size_t bytes) {
    if (p == nullptr) return;
    serv_aligned_free(p);
    now_ -= kilobytes(bytes);
  }
  static int64_t kilobytes(size_t bytes) { return static_cast<int64_t>(bytes / 1024) + 1; }
  int64_t now() const { return now_; }
  int64_t peak() const { return peak_; }
  /// A new stage's peak starts from what is alive.
  void restart_peak() { peak_ = now_; }
  /// 0, or the code of the first block that was refused.
  int failed_code() const { return failed_code_; }
  size_t failed_bytes() const { return failed_bytes_; }
  /// Time that allocations took.
  double seconds() const { return seconds_; }
  void forget_failure() { failed_code_ = 0, failed_bytes_ = 0; }

 private:
  int64_t now_ = 0, peak_ = 0;
  int failed_code_ = 0;
  size_t failed_bytes_ = 0;
  double seconds_ = 0;
};

/// An array that owns an accounted block; empty until allocate. Only trivial element types.
template <class T>
class block {
 public:
  block() = default;
  ~block() { reset(); }
  block(block&& other) noexcept { swap(other); }
  block& operator=(block&& other) noexcept {
    block taken(std::move(other));
    swap(taken);
    return *this;
  }
  /// False if memory is out; what the block held before is given back in any case.
  bool allocate(memory_account& account, int64_t count, int code) {
    reset();
    data_ = static_cast<T*>(account.allocate(static_cast<size_t>(count) * sizeof(T), code));
    if (data_ == nullptr) return false;
    account_ = &account;
    count_ = count;
    return true;
  }
  void reset() {
    if (data_ != nullptr) account_->release(data_, static_cast<size_t>(count_) * sizeof(T));
    data_ = nullptr;
    count_ = 0;
  }
  T* get() const { return data_; }
  int64_t size() const { return count_; }
  T* begin() const { return data_; }
  T* end() const { return data_ + count_; }
  T& operator[](int64_t i) const { return data_[i]; }
  explicit operator bool() const { return data_ != nullptr; }

 private:
  void swap(block& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(count_, other.count_);
    std::swap(account_, other.account_);
  }
  T* data_ = nullptr;
  int64_t count_ = 0;
  memory_account* account_ = nullptr;
};

}  // namespace qel::pardiso
