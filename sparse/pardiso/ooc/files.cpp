// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/ooc/files.h"

#include <errno.h>
#include <stdio.h>
#include <string.h>

#include <chrono>

#include "sparse/pardiso/ooc/configuration.h"
#include "sparse/pardiso/ooc/file_calls.h"

namespace qel::pardiso {
namespace {

constexpr const char* kExtensions[kOocKinds + 1] = {"",     ".ind", ".lnz", ".unz", ".jal", ".jau",
                                                    ".lup", ".uup", ".lpr", ".upr", ".sin", ".sle"};
/// A prefix, ten digits, an extension.
constexpr size_t kNameSize = kStoreTextLength + 16;
constexpr int kHighestNumber = 999999;
/// The order in which a set's files are deleted.
constexpr int kDeletionOrder[kOocKinds] = {ooc_index,      ooc_lnz,       ooc_jalf,         ooc_luperm,
                                           ooc_jauf,       ooc_u_perm,    ooc_unz,          ooc_luperm_row,
                                           ooc_u_perm_row, ooc_subgraphs, ooc_subgraph_rows};
/// A position that is no position.
constexpr int64_t kEndOfFile = EOF;

bool valid_kind(int kind) { return kind >= 1 && kind <= kOocKinds; }

bool valid_transfer(const ooc_file& file, int64_t element_size, int64_t position, int64_t count,
                    const void* items) {
  return file.kfile >= 0 && element_size > 0 && position >= 0 && count >= 0 &&
         (items != nullptr || count == 0) && count <= INT64_MAX / element_size &&
         position <= INT64_MAX / element_size - count;
}

class stopwatch {
 public:
  explicit stopwatch(double& seconds) : seconds_(seconds) {}
  ~stopwatch() {
    seconds_ += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
  }
  stopwatch(const stopwatch&) = delete;
  stopwatch& operator=(const stopwatch&) = delete;

 private:
  double& seconds_;
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

/// What differs between reading and writing, beside the call.
struct direction {
  pardiso_ooc_code end_of_file, incorrect, seek, zero, not_all;
  int64_t ooc_file::*bytes;
  double ooc_file::*seconds;
};
constexpr direction kReading = {PARDISO_OOC_READ_EOF_ERROR,
                                PARDISO_OOC_READ_INPUT_PARAMETERS_INCORRECT,
                                PARDISO_OOC_READ_SEEK_ERROR,
                                PARDISO_OOC_NUMBER_OF_READ_EQUAL_ZERO,
                                PARDISO_OOC_NUMBER_OF_READ_NOT_EQUAL_COUNT,
                                &ooc_file::bytes_read,
                                &ooc_file::read_seconds};
constexpr direction kWriting = {PARDISO_OOC_WRITE_EOF_ERROR,
                                PARDISO_OOC_WRITE_INPUT_PARAMETERS_INCORRECT,
                                PARDISO_OOC_WRITE_SEEK_ERROR,
                                PARDISO_OOC_NUMBER_OF_WRITE_EQUAL_ZERO,
                                PARDISO_OOC_NUMBER_OF_WRITE_NOT_EQUAL_COUNT,
                                &ooc_file::bytes_written,
                                &ooc_file::write_seconds};

/// call(bytes) moves bytes from the current position on and returns how many it moved.
template <class Call>
pardiso_ooc_code transfer(ooc_file& file, const direction& to, int64_t element_size, int64_t position,
                          int64_t count, const void* items, const Call& call) {
  file.last_items = 0;
  if (position == kEndOfFile) return to.end_of_file;
  if (!valid_transfer(file, element_size, position, count, items)) return to.incorrect;
  const stopwatch watch(file.*to.seconds);
  if (!current_file_calls().seek(file.kfile, position * element_size)) return to.seek;
  const int64_t bytes = call(count * element_size);
  file.last_items = bytes < 0 ? 0 : bytes / element_size;
  file.*to.bytes += bytes < 0 ? 0 : bytes;
  if (file.last_items == count) return PARDISO_OOC_NO_ERROR;
  return file.last_items == 0 ? to.zero : to.not_all;
}

}  // namespace

bool has_kind(const ooc_file_set& set, int kind) {
  switch (kind) {
    case ooc_unz:
    case ooc_jauf:
    case ooc_u_perm:
      return !set.symmetric;
    case ooc_luperm_row:
      return set.scaled;
    case ooc_u_perm_row:
      return set.scaled && !set.symmetric;
    case ooc_subgraphs:
    case ooc_subgraph_rows:
      return set.threads > 1;
    default:
      return valid_kind(kind);
  }
}

bool ooc_file_name(const ooc_file_set& set, int kind, char* name, size_t size) {
  const int length = snprintf(name, size, "%s%d%s", set.path, set.number, kExtensions[kind]);
  return length >= 0 && static_cast<size_t>(length) < size;
}

namespace {

/// Whether a set whose first file is new has others, asked for in the order in which they are deleted: its
/// former owner is still at it then, and would delete the new owner's.
bool has_remains(const ooc_file_set& set) {
  char name[kNameSize];
  for (const int kind : kDeletionOrder) {
    if (kind != ooc_index && ooc_file_name(set, kind, name, sizeof name) &&
        current_file_calls().exists(name)) {
      return true;
    }
  }
  return false;
}

}  // namespace

pardiso_ooc_code start_ooc_files(ooc_file_set& set) {
  memset(set.made, 0, sizeof set.made);
  char name[kNameSize];
  for (set.number = 0; set.number <= kHighestNumber; ++set.number) {
    if (!ooc_file_name(set, ooc_index, name, sizeof name)) break;
    errno = 0;
    const int descriptor = current_file_calls().open(name, open_mode::create_new);
    if (descriptor < 0 && errno != EEXIST) break;
    if (descriptor < 0) continue;
    const bool closed = current_file_calls().close(descriptor);
    if (has_remains(set)) {
      current_file_calls().remove(name);
      continue;
    }
    set.made[ooc_index] = true;
    return closed ? PARDISO_OOC_NO_ERROR : PARDISO_OOC_CLOSE_FILE_ERROR;
  }
  set.number = -1;
  return PARDISO_OOC_OPEN_FILE_ERROR;
}

pardiso_ooc_code open_ooc_file(ooc_file_set& set, int kind, const char* mode, ooc_file& file) {
  const bool create = strcmp(mode, "w+b") == 0;
  if (!create && strcmp(mode, "r+b") != 0) return PARDISO_OOC_OPEN_MODE_FILE_ERROR;
  file = {};
  char name[kNameSize];
  if (set.number < 0 || !valid_kind(kind) || !ooc_file_name(set, kind, name, sizeof name))
    return PARDISO_OOC_OPEN_FILE_ERROR;
  const int descriptor = current_file_calls().open(name, create ? open_mode::create : open_mode::update);
  if (descriptor < 0) return PARDISO_OOC_OPEN_FILE_ERROR;
  file.kfile = descriptor;
  file.kind = kind;
  set.made[kind] = true;
  return PARDISO_OOC_NO_ERROR;
}

pardiso_ooc_code close_ooc_file(ooc_file& file) {
  if (file.kfile < 0) return PARDISO_OOC_NO_ERROR;
  const bool closed = current_file_calls().close(file.kfile);
  file.kfile = -1;
  return closed ? PARDISO_OOC_NO_ERROR : PARDISO_OOC_CLOSE_FILE_ERROR;
}

pardiso_ooc_code pardiso_read_ooc_file(ooc_file& file, int64_t element_size, int64_t position, int64_t count,
                                       void* items) {
  return transfer(file, kReading, element_size, position, count, items,
                  [&](int64_t bytes) { return current_file_calls().read(file.kfile, items, bytes); });
}

pardiso_ooc_code pardiso_write_ooc_file(ooc_file& file, int64_t element_size, int64_t position, int64_t count,
                                        const void* items) {
  return transfer(file, kWriting, element_size, position, count, items,
                  [&](int64_t bytes) { return current_file_calls().write(file.kfile, items, bytes); });
}

pardiso_ooc_code delete_ooc_files(ooc_file_set& set) {
  pardiso_ooc_code first = PARDISO_OOC_NO_ERROR;
  char name[kNameSize];
  for (const int kind : kDeletionOrder) {
    if (set.number < 0 || !set.made[kind]) continue;
    const bool deleted = ooc_file_name(set, kind, name, sizeof name) && current_file_calls().remove(name);
    if (!deleted && first == PARDISO_OOC_NO_ERROR) first = PARDISO_OOC_DELETE_FILE_ERROR;
    set.made[kind] = false;
  }
  set.number = -1;
  return first;
}

stage_status ooc_status(pardiso_ooc_code code) {
  if (code == PARDISO_OOC_NO_ERROR) return {};
  const bool opening = code == PARDISO_OOC_OPEN_FILE_ERROR || code == PARDISO_OOC_OPEN_MODE_FILE_ERROR;
  return {opening ? -10 : -11, code};
}

const char* name_of(pardiso_ooc_code code) {
  switch (code) {
#define QEL_NAME(name) \
  case name:           \
    return #name;
    QEL_NAME(PARDISO_OOC_OPEN_MODE_FILE_ERROR)
    QEL_NAME(PARDISO_OOC_OPEN_FILE_ERROR)
    QEL_NAME(PARDISO_OOC_CLOSE_FILE_ERROR)
    QEL_NAME(PARDISO_OOC_DELETE_FILE_ERROR)
    QEL_NAME(PARDISO_OOC_NUMBER_OF_READ_EQUAL_ZERO)
    QEL_NAME(PARDISO_OOC_NUMBER_OF_READ_NOT_EQUAL_COUNT)
    QEL_NAME(PARDISO_OOC_READ_EOF_ERROR)
    QEL_NAME(PARDISO_OOC_READ_SEEK_ERROR)
    QEL_NAME(PARDISO_OOC_READ_INPUT_PARAMETERS_INCORRECT)
    QEL_NAME(PARDISO_OOC_NUMBER_OF_WRITE_EQUAL_ZERO)
    QEL_NAME(PARDISO_OOC_NUMBER_OF_WRITE_NOT_EQUAL_COUNT)
    QEL_NAME(PARDISO_OOC_WRITE_EOF_ERROR)
    QEL_NAME(PARDISO_OOC_WRITE_SEEK_ERROR)
    QEL_NAME(PARDISO_OOC_WRITE_INPUT_PARAMETERS_INCORRECT)
#undef QEL_NAME
    case PARDISO_OOC_NO_ERROR:
      break;
  }
  return nullptr;
}

}  // namespace qel::pardiso
