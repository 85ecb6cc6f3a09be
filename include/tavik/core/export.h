// SPDX-License-Identifier: BSD-3-Clause
// What the shared library shows of the facade.
#pragma once

#define TAVIK_API __attribute__((visibility("default")))
