// SPDX-License-Identifier: BSD-3-Clause
// The platform's calls under the out-of-core store, through a record that tests replace.
#pragma once

#include <stdint.h>

namespace qel::pardiso {

enum class open_mode {
  create,      ///< "w+b": for reading and writing, emptied
  create_new,  ///< as create, but the file must not be there yet
  update,      ///< "r+b": for reading and writing, must be there
};

struct file_calls {
  /// A descriptor, or -1.
  int (*open)(const char* path, open_mode mode);
  /// From the file's start; false if it can't be.
  bool (*seek)(int descriptor, int64_t offset);
  /// Bytes transferred: fewer than asked for at the end of the file or of the space; -1 for an error.
  int64_t (*read)(int descriptor, void* to, int64_t bytes);
  int64_t (*write)(int descriptor, const void* from, int64_t bytes);
  bool (*close)(int descriptor);
  bool (*remove)(const char* path);
  bool (*exists)(const char* path);
};

/// Unbuffered, so that a full disk shows in the write that meets it.
extern const file_calls kSystemFiles;

/// What the store calls, initially kSystemFiles.
const file_calls& current_file_calls();
/// Null restores kSystemFiles.
void replace_file_calls(const file_calls* calls);

}  // namespace qel::pardiso
