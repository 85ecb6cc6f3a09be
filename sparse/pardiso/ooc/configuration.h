// SPDX-License-Identifier: BSD-3-Clause
// Configuration of the out-of-core store: a file of keys, and environment variables that win over it.
#pragma once

#include <stddef.h>

namespace qel::pardiso {

/// Characters of a value, its end not counted.
inline constexpr size_t kStoreTextLength = 1000;

struct store_configuration {
  char path[kStoreTextLength + 1] = "ooc_temp";  ///< prefix of the files' names
  int max_core_size = 2000;                      ///< megabytes
  int keep_file = 1;  ///< not 0: the files are deleted at clean-up (as it is, whatever it reads like)
  char configuration_path[kStoreTextLength + 1] = ".";
  char configuration_file[kStoreTextLength + 1] = "pardiso_ooc.cfg";
};

/// Values that came from the environment.
struct store_environment {
  bool configuration_path = false, configuration_file = false, path = false, max_core_size = false,
       keep_file = false;
};

/// Puts what the environment and the file say over what is there; a file that can't be opened says nothing.
store_environment read_store_configuration(store_configuration& configuration);

/// One line "key = value" of the file; anything else changes nothing. A # starts a comment.
void apply_store_line(const char* line, store_configuration& configuration);

}  // namespace qel::pardiso
