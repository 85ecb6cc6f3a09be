// SPDX-License-Identifier: BSD-3-Clause
// The kernels of the dot products, by processor level: they stand with all others of level 1.
#pragma once

#include "blas/level1/level1_rows.h"
