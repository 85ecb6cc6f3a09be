// SPDX-License-Identifier: BSD-3-Clause
// Dispatch: a row shows one routine's kernels at all processor levels (or types); a slot holds the one that
// this process uses, null until first use. Binding again stores the same address, so slots take no lock;
// a bound call is one load, one test and an indirect jump.
#pragma once

#include <atomic>

#include "service/serv.h"

namespace qel {

inline constexpr int kLevels = 7;  // serv_cpu_level 0..6
inline constexpr int kTypes = 8;   // serv_cpu_type 0..7

/// The kernels of one routine, by serv_cpu_level.
template <class Fn>
struct level_row {
  Fn* kernel[kLevels];
};

/// The kernels of one routine, by serv_cpu_type.
template <class Fn>
struct type_row {
  Fn* kernel[kTypes];
};

/// Ends the process: the variable forces a value that no row has.
[[noreturn]] void end_without_kernel(const char* variable, int value);

/// The kernel in use; constant-initialised to null.
template <class Fn>
using bind_slot = std::atomic<Fn*>;

/// Chooses the row's kernel for this process and keeps it in the slot.
template <class Fn>
[[gnu::noinline, gnu::cold]] Fn* bind_first_use(bind_slot<Fn>& slot, const level_row<Fn>& row) {
  Fn* kernel = row.kernel[serv_cpu_level()];
  slot.store(kernel, std::memory_order_relaxed);
  return kernel;
}

template <class Fn>
[[gnu::noinline, gnu::cold]] Fn* bind_first_use(bind_slot<Fn>& slot, const type_row<Fn>& row) {
  const int type = serv_cpu_type();
  if (type < 0 || type >= kTypes) end_without_kernel("QEL_DEBUG_VECTOR_TYPE", type);
  Fn* kernel = row.kernel[type];
  slot.store(kernel, std::memory_order_relaxed);
  return kernel;
}

/// The kernel to call.
template <class Fn>
inline Fn* bind_by_level(bind_slot<Fn>& slot, const level_row<Fn>& row) {
  Fn* kernel = slot.load(std::memory_order_relaxed);
  if (kernel == nullptr) [[unlikely]] {
    kernel = bind_first_use(slot, row);
  }
  return kernel;
}

template <class Fn>
inline Fn* bind_by_type(bind_slot<Fn>& slot, const type_row<Fn>& row) {
  Fn* kernel = slot.load(std::memory_order_relaxed);
  if (kernel == nullptr) [[unlikely]] {
    kernel = bind_first_use(slot, row);
  }
  return kernel;
}

}  // namespace qel
