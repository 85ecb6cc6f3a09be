// SPDX-License-Identifier: BSD-3-Clause
#include "cli/table.h"

#include <csv.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <memory>

#include "cli/matrix_market.h"

namespace qel::cli {
namespace {

/// Collects what the parser calls back with: fields and ends of lines.
struct collector {
  const std::string* path;
  table result;
  std::vector<std::string> line;
  size_t lines = 0;

  [[noreturn]] void fail(const std::string& what) const {
    throw file_error(*path + ":" + std::to_string(lines) + ": " + what);
  }
  void end_line() {
    ++lines;
    const bool empty = line.empty() || (line.size() == 1 && line[0].empty());
    if (!empty && line[0].rfind('#', 0) != 0) take();
    line.clear();
  }
  void take() {
    if (result.names.empty()) {
      result.names = line;
      result.columns.resize(line.size());
      return;
    }
    if (line.size() != result.names.size())
      fail(std::to_string(line.size()) + " values for " + std::to_string(result.names.size()) + " columns");
    for (size_t k = 0; k < line.size(); ++k) {
      double value;
      const char *first = line[k].data(), *last = first + line[k].size();
      if (first != last && *first == '+') ++first;
      const auto [end, error] = std::from_chars(first, last, value);
      if (error != std::errc() || end != last) fail("'" + line[k] + "' is no number");
      result.columns[k].push_back(value);
    }
  }
};

// Exceptions must not pass through the parser, which is C: they are kept until it returns.
struct guarded_collector {
  collector lines;
  std::exception_ptr error;
  template <class Action>
  void run(const Action& action) {
    if (error) return;
    try {
      action();
    } catch (...) {
      error = std::current_exception();
    }
  }
};

void on_field(void* data, size_t length, void* target) {
  auto* guarded = static_cast<guarded_collector*>(target);
  guarded->run([&] { guarded->lines.line.emplace_back(static_cast<const char*>(data), length); });
}
void on_line(int, void* target) {
  auto* guarded = static_cast<guarded_collector*>(target);
  guarded->run([&] { guarded->lines.end_line(); });
}

}  // namespace

int table::find(const std::string& name) const {
  const auto found = std::find(names.begin(), names.end(), name);
  return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

table read_table(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw file_error(path + ": cannot be read");
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  csv_parser parser;
  if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI | CSV_REPALL_NL) != 0) throw std::bad_alloc();
  const std::unique_ptr<csv_parser, void (*)(csv_parser*)> owner(&parser, csv_free);
  guarded_collector guarded{{&path, {}, {}, 0}, nullptr};
  const bool complete =
      csv_parse(&parser, text.data(), text.size(), on_field, on_line, &guarded) == text.size() &&
      csv_fini(&parser, on_field, on_line, &guarded) == 0;
  if (guarded.error) std::rethrow_exception(guarded.error);
  if (!complete) guarded.lines.fail(std::string("not CSV: ") + csv_strerror(csv_error(&parser)));
  if (guarded.lines.result.rows() == 0) throw file_error(path + ": no rows of numbers under a line of names");
  return guarded.lines.result;
}

}  // namespace qel::cli
