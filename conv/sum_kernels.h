// SPDX-License-Identifier: BSD-3-Clause
// The kernels of sums of this process, by processor type.
#pragma once

#include "service/native_level.h"
#include "service/serv.h"

namespace qel::conv {

/// Whether the process has the kernels that fuse, native_sums; if not it has accumulate.
inline bool has_native_sums() { return serv_cpu_type() >= kFirstNativeType; }

/// As accumulate_kernel says; R is float or double.
template <class R>
void accumulate(const R* taps, core_int tap_count, const R* data, core_int data_count, core_int first,
                core_int last, R* w);
/// As sums_kernel says; E is any of the four element types.
template <class E>
void native_sums(const E* taps, core_int tap_count, const E* data, core_int data_count, core_int first,
                 core_int last, E* w);

}  // namespace qel::conv
