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

/// The row's kernel for this process.
template <class Fn>
Fn* choose_kernel(const level_row<Fn>& row) {
  return row.kernel[serv_cpu_level()];
}
template <class Fn>
Fn* choose_kernel(const type_row<Fn>& row) {
  const int type = serv_cpu_type();
  if (type < 0 || type >= kTypes) end_without_kernel("QEL_DEBUG_VECTOR_TYPE", type);
  return row.kernel[type];
}

/// First use: chooses, keeps the choice in the slot, and calls. Out of line and with the kernel's own
/// arguments, so that the way to it is a jump, too.
template <auto& kSlot, const auto& kRow, class... A>
[[gnu::noinline, gnu::cold]] auto bind_and_call(A... args) {
  auto* kernel = choose_kernel(kRow);
  kSlot.store(kernel, std::memory_order_relaxed);
  return kernel(args...);
}

/// Calls the kernel of this process: call_bound<ddot_slot, kDdot>(n, x, incx, y, incy).
template <auto& kSlot, const auto& kRow, class... A>
inline auto call_bound(A... args) {
  auto* kernel = kSlot.load(std::memory_order_relaxed);
  if (kernel == nullptr) [[unlikely]] {
    return bind_and_call<kSlot, kRow>(args...);
  }
  return kernel(args...);
}

}  // namespace qel
