// SPDX-License-Identifier: BSD-3-Clause
// The files of one handle's factors: their names, reading and writing, deletion. Raw arrays in machine order.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "sparse/pardiso/matrix.h"

namespace qel::pardiso {

/// What a transfer reports.
enum pardiso_ooc_code : int {
  PARDISO_OOC_NO_ERROR = 0,
  PARDISO_OOC_OPEN_MODE_FILE_ERROR,
  PARDISO_OOC_OPEN_FILE_ERROR,
  PARDISO_OOC_CLOSE_FILE_ERROR,
  PARDISO_OOC_DELETE_FILE_ERROR,
  PARDISO_OOC_NUMBER_OF_READ_EQUAL_ZERO,
  PARDISO_OOC_NUMBER_OF_READ_NOT_EQUAL_COUNT,
  PARDISO_OOC_READ_EOF_ERROR,
  PARDISO_OOC_READ_SEEK_ERROR,
  PARDISO_OOC_READ_INPUT_PARAMETERS_INCORRECT,
  PARDISO_OOC_NUMBER_OF_WRITE_EQUAL_ZERO,
  PARDISO_OOC_NUMBER_OF_WRITE_NOT_EQUAL_COUNT,
  PARDISO_OOC_WRITE_EOF_ERROR,
  PARDISO_OOC_WRITE_SEEK_ERROR,
  PARDISO_OOC_WRITE_INPUT_PARAMETERS_INCORRECT,
};

/// Kinds of files, by their contents.
enum ooc_kind : int {
  ooc_index = 1,           ///< .ind: lindx
  ooc_lnz = 2,             ///< .lnz
  ooc_unz = 3,             ///< .unz
  ooc_jalf = 4,            ///< .jal
  ooc_jauf = 5,            ///< .jau
  ooc_luperm = 6,          ///< .lup
  ooc_u_perm = 7,          ///< .uup
  ooc_luperm_row = 8,      ///< .lpr
  ooc_u_perm_row = 9,      ///< .upr
  ooc_subgraphs = 10,      ///< .sin
  ooc_subgraph_rows = 11,  ///< .sle
};
inline constexpr int kOocKinds = 11;

/// The file set of a handle. Plain bytes, so that it can live in a handle's block.
struct ooc_file_set {
  const char* path;  ///< prefix of the names
  int number;        ///< of the set; below 0: none yet
  int threads;
  bool symmetric;
  bool scaled;
  bool made[kOocKinds + 1];  ///< kinds that have been written
};

/// An open file; each thread has its own. kfile is below 0 while it is closed.
struct ooc_file {
  int kfile = -1;
  int kind = 0;
  int64_t bytes_read = 0, bytes_written = 0;
  double read_seconds = 0, write_seconds = 0;
  int64_t last_items = 0;  ///< items that the last transfer moved
};

/// True for kinds that a set of these properties has.
bool has_kind(const ooc_file_set& set, int kind);
/// The name of a kind's file: prefix, number, extension. False if it doesn't fit.
bool ooc_file_name(const ooc_file_set& set, int kind, char* name, size_t size);

/// Takes the lowest number whose files nobody has, other handles and processes included, by making its first
/// file.
pardiso_ooc_code start_ooc_files(ooc_file_set& set);
/// mode: "w+b" makes the file or empties it, "r+b" takes it as it is.
pardiso_ooc_code open_ooc_file(ooc_file_set& set, int kind, const char* mode, ooc_file& file);
pardiso_ooc_code close_ooc_file(ooc_file& file);
/// count items of element_size bytes, the first one at position (in items, from 0).
pardiso_ooc_code pardiso_read_ooc_file(ooc_file& file, int64_t element_size, int64_t position, int64_t count,
                                       void* items);
pardiso_ooc_code pardiso_write_ooc_file(ooc_file& file, int64_t element_size, int64_t position, int64_t count,
                                        const void* items);
/// Deletes the files that were made, kind by kind; goes on after a failure, the first of which is told. The
/// set has no number then.
pardiso_ooc_code delete_ooc_files(ooc_file_set& set);

/// error -10 for files that can't be opened, -11 for failed transfers; the sub-code is the code.
stage_status ooc_status(pardiso_ooc_code code);
/// The code's name.
const char* name_of(pardiso_ooc_code code);

}  // namespace qel::pardiso
