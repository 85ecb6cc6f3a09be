// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/ooc/configuration.h"

#include <stdio.h>
#include <string.h>

#include "service/environment.h"

namespace qel::pardiso {
namespace {

constexpr char kBlanks[] = " \t\r\n";

/// A piece of a line.
struct piece {
  const char* begin;
  size_t length;
  bool is(const char* word) const { return length == strlen(word) && memcmp(begin, word, length) == 0; }
};

piece trimmed(const char* begin, const char* end) {
  while (begin < end && strchr(kBlanks, *begin) != nullptr) ++begin;
  while (begin < end && strchr(kBlanks, end[-1]) != nullptr) --end;
  return {begin, static_cast<size_t>(end - begin)};
}

void take_text(const piece& value, char* to) {
  const size_t length = value.length < kStoreTextLength ? value.length : kStoreTextLength;
  memcpy(to, value.begin, length);
  to[length] = '\0';
}
void take_number(const piece& value, int& to) {
  char text[kStoreTextLength + 1];
  take_text(value, text);
  sscanf(text, "%d", &to);
}

bool text_from_environment(const char* name, char* to) {
  return read_environment(name, to, kStoreTextLength + 1);
}
bool number_from_environment(const char* name, int& to) {
  char text[kStoreTextLength + 1];
  return text_from_environment(name, text) && sscanf(text, "%d", &to) == 1;
}

void read_file(store_configuration& configuration) {
  char name[2 * kStoreTextLength + 2], line[2 * kStoreTextLength];
  snprintf(name, sizeof name, "%s/%s", configuration.configuration_path, configuration.configuration_file);
  // For update, as ever: a file that can't be written is not read.
  FILE* const file = fopen(name, "r+t");
  if (file == nullptr) return;
  while (fgets(line, sizeof line, file) != nullptr) apply_store_line(line, configuration);
  fclose(file);
}

}  // namespace

void apply_store_line(const char* line, store_configuration& configuration) {
  const char* const end = line + strcspn(line, "#");
  const char* const equals = static_cast<const char*>(memchr(line, '=', static_cast<size_t>(end - line)));
  if (equals == nullptr) return;
  const piece key = trimmed(line, equals), value = trimmed(equals + 1, end);
  if (value.length == 0) return;
  if (key.is("qel_pardiso_ooc_path")) take_text(value, configuration.path);
  if (key.is("qel_pardiso_ooc_max_core_size")) take_number(value, configuration.max_core_size);
  if (key.is("qel_pardiso_ooc_keep_file")) take_number(value, configuration.keep_file);
  // qel_pardiso_ooc_flag is a key too, but iparm(60) alone decides.
}

store_environment read_store_configuration(store_configuration& configuration) {
  store_environment found;
  found.configuration_path =
      text_from_environment("QEL_PARDISO_OOC_CFG_PATH", configuration.configuration_path);
  found.configuration_file =
      text_from_environment("QEL_PARDISO_OOC_CFG_FILE_NAME", configuration.configuration_file);
  read_file(configuration);
  found.path = text_from_environment("QEL_PARDISO_OOC_PATH", configuration.path);
  found.max_core_size = number_from_environment("QEL_PARDISO_OOC_MAX_CORE_SIZE", configuration.max_core_size);
  found.keep_file = number_from_environment("QEL_PARDISO_OOC_KEEP_FILE", configuration.keep_file);
  return found;
}

}  // namespace qel::pardiso
