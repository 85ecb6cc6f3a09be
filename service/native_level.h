// SPDX-License-Identifier: BSD-3-Clause
// Where the native processor levels begin: from here on kernels fuse, and algorithms are the library's own.
#pragma once

namespace qel {

inline constexpr int kFirstNativeLevel = 5;
inline constexpr int kFirstNativeType = 6;  ///< the same of processor types

}  // namespace qel
