// SPDX-License-Identifier: BSD-3-Clause
// What tests leave out in builds for sanitizers.
#pragma once

namespace qel::test {

/// The thread sanitizer learns of OpenMP from a tool in clang's runtime, which breaks in children of fork()
/// that end by exit(), and takes the work of nested teams of changing sizes for races.
#ifdef __has_feature
inline constexpr bool kWithThreadSanitizer = __has_feature(thread_sanitizer);
#else
inline constexpr bool kWithThreadSanitizer = false;
#endif

}  // namespace qel::test
