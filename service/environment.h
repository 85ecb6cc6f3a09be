// SPDX-License-Identifier: BSD-3-Clause
// The one reader of environment variables. Tests replace what it reads.
#pragma once

#include <stddef.h>

namespace qel {

/// Looks up a variable; null if it does not exist. Initially getenv.
using environment_lookup = const char* (*)(const char* name);

/// Copies the value of name into buffer, cut to size - 1 characters. False, and buffer untouched, if the
/// variable is absent; an empty value counts as absent.
bool read_environment(const char* name, char* buffer, size_t size);
/// True if the variable exists and is not empty.
bool environment_has(const char* name);
/// Replaces the lookup (null restores getenv) and returns the former one.
environment_lookup replace_environment(environment_lookup lookup);

}  // namespace qel
