// SPDX-License-Identifier: BSD-3-Clause
// The calling thread's progress function.
#pragma once

namespace qel::pardiso {

/// stage 1 to 3, share 0 to 1 of it; not 0 asks for an end.
using progress_function = int (*)(void* context, int stage, double share);
struct progress_watch {
  progress_function function = nullptr;
  void* context = nullptr;
  /// True if the caller wants an end.
  bool cancelled_at(int stage, double share) const {
    return function != nullptr && function(context, stage, share) != 0;
  }
};
/// The one that the calling thread's calls tell; a function of null tells nobody.
void watch_progress(const progress_watch& watch);
progress_watch current_watch();

}  // namespace qel::pardiso
