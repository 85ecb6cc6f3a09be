// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "service/spin_lock.h"

namespace qel {

/// Guards the registry of buffer records; held across a fork.
spin_lock& memory_lock();

}  // namespace qel
