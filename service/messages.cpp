// SPDX-License-Identifier: BSD-3-Clause
// Prints rows of the catalogue on standard output, or gives their text. A printed text is the caller's own,
// so that two threads that report at once keep theirs apart; a text that is returned has one buffer.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "service/message_rows.h"
#include "service/serv.h"

namespace qel {
namespace {

constexpr int kBufferSize = 512;  // a text may be one character longer before it counts as too long
char returned_text[kBufferSize + 2];

const char* row_text(int number) {
  const message_row* row = find_message_row(number);
  return row != nullptr ? row->text : "";
}

[[noreturn]] void message_overflow(int number, int length) {
  std::printf("\nQEL INTERNAL ERROR: message buffer overflow.");
  std::fflush(nullptr);
  std::printf("\n       Message N %d   Lenght: %d   Buffer size: %d\n", number, length, kBufferSize);
  std::fflush(nullptr);
  std::exit(8);
}

// Kept: the finished text goes through the formatted print once more, so a percent sign that came with an
// argument is interpreted there: "%%" prints one sign, a conversion prints a zero value of its kind. There
// are no arguments to read, so each conversion is found here and given one; %n has nothing to store to. What
// is no conversion stays as it is ("(%):", "50 % ").
void print_as_format(const char* text) {
  while (const char* percent = std::strchr(text, '%')) {
    std::fwrite(text, 1, static_cast<size_t>(percent - text), stdout);
    if (percent[1] == '%') {
      std::fputc('%', stdout);
      text = percent + 2;
      continue;
    }
    const size_t flags = std::strspn(percent + 1, "-+ #0123456789.hlLqjzt");
    const char kind = percent[1 + flags];
    if (kind != '\0' && std::strchr("diouxXc", kind) != nullptr) std::fputc('0', stdout);
    if (kind != '\0' && std::strchr("eEfFgGaA", kind) != nullptr) std::printf("%f", 0.0);
    if (kind == 's' || kind == 'p') std::fputs("(null)", stdout);
    text = percent + 1 + flags + (kind != '\0' ? 1 : 0);
    const bool none = kind == '\0' ? flags > 0 : std::strchr("diouxXceEfFgGaAspn", kind) == nullptr;
    if (none) {
      std::fwrite(percent, 1, static_cast<size_t>(text - percent), stdout);
    }
  }
  std::fputs(text, stdout);
}

}  // namespace

void serv_message(int /*channel*/, int number, int argument_count, ...) {
  if (number == 0) {
    std::fputc('\n', stdout);
    return;
  }
  char printed_text[kBufferSize + 2];
  const char* text = row_text(number);
  int length = static_cast<int>(std::strlen(text));
  if (argument_count > 0) {
    va_list arguments;
    va_start(arguments, argument_count);
    length = std::vsnprintf(printed_text, sizeof printed_text, text, arguments);
    va_end(arguments);
    text = printed_text;
  }
  if (length - 1 > kBufferSize) message_overflow(number, length - 1);
  print_as_format(text);
  std::fputc('\n', stdout);
  std::fflush(nullptr);
}

const char* serv_message_text(int number, int argument_count, ...) {
  const char* text = row_text(number);
  if (argument_count <= 0) return text;
  va_list arguments;
  va_start(arguments, argument_count);
  std::vsnprintf(returned_text, sizeof returned_text, text, arguments);
  va_end(arguments);
  return returned_text;
}

}  // namespace qel
