// SPDX-License-Identifier: BSD-3-Clause
// This product uses the native levels unless QEL_NATIVE=0 or an override says otherwise: nobody depends on
// the last bits of its results across machines.
#include "service/serv.h"

namespace qel {

int native_by_default() { return 1; }

}  // namespace qel
