// SPDX-License-Identifier: BSD-3-Clause
// A file of its own, so that a product that brings its own default leaves this one out of the archive.
#include "service/serv.h"

namespace qel {

int native_by_default() { return 0; }

}  // namespace qel
