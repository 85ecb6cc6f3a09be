// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/progress.h"

namespace qel::pardiso {
namespace {

constinit thread_local progress_watch watching = {};

}  // namespace

void watch_progress(const progress_watch& watch) { watching = watch; }
progress_watch current_watch() { return watching; }

}  // namespace qel::pardiso
