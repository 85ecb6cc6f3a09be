// SPDX-License-Identifier: BSD-3-Clause
// The trace's switch, its lines and its table. Nothing here takes a lock, so a fork can't leave one held: the
// totals are rows of atomics that a name claims once. A line goes out in one fwrite and therefore stays
// whole.
#include "service/verbose.h"

#include <limits.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "service/environment.h"
#include "service/flops.h"
#include "service/last_error.h"
#include "service/serv.h"
#include "service/threads.h"

namespace qel {

constinit std::atomic<int> verbose_state{kVerboseUndecided};

namespace {

constexpr auto relaxed = std::memory_order_relaxed;
constexpr size_t kLineSize = 512;
constexpr int kMaxNames = 512;  // more than there are entries

/// Sums over the calls of one name; rated_nanoseconds over those with a count of operations.
struct name_total {
  std::atomic<const char*> name;
  std::atomic<int64_t> calls, nanoseconds, rated_nanoseconds;
  std::atomic<double> flops;
};
constinit name_total totals[kMaxNames] = {};

constinit std::atomic<std::FILE*> destination{nullptr};
constinit std::atomic<bool> table_registered{false};

/// Text in a caller's buffer, cut where it is full. Numbers look alike in every locale.
class text_writer {
 public:
  text_writer(char* text, size_t size) : start_(text), at_(text), end_(text + size - 1) {}

  void put(std::string_view text) {
    const size_t length = std::min(text.size(), static_cast<size_t>(end_ - at_));
    std::memcpy(at_, text.data(), length);
    at_ += length;
  }
  void put_integer(int64_t number, size_t width = 0) {
    char digits[24];
    put_right(digits, std::to_chars(digits, std::end(digits), number).ptr, width);
  }
  void put_decimal(double number, int decimals, size_t width = 0) {
    char digits[352];  // the largest double and its decimals
    const auto end = std::to_chars(digits, std::end(digits), number, std::chars_format::fixed, decimals);
    put_right(digits, end.ptr, width);
  }
  void put_blanks(size_t count) {
    for (; count > 0; --count) put(" ");
  }
  /// Ends the line, even where the buffer is full.
  size_t finish() {
    if (at_ == end_) --at_;
    *at_++ = '\n';
    *at_ = '\0';
    return static_cast<size_t>(at_ - start_);
  }

 private:
  void put_right(const char* digits, const char* end, size_t width) {
    const auto length = static_cast<size_t>(end - digits);
    if (length < width) put_blanks(width - length);
    put({digits, length});
  }

  char *start_, *at_, *end_;
};

/// 10^9 operations per second: operations per nanosecond.
double gflops(double flops, int64_t nanoseconds) { return flops / static_cast<double>(nanoseconds); }
bool has_rate(double flops, int64_t nanoseconds) { return flops > 0 && nanoseconds > 0; }

void put_argument(text_writer& line, const traced_argument& argument) {
  if (argument.letter == '\0') {
    line.put_integer(argument.number);
  } else {
    const char shown = argument.letter > ' ' && argument.letter <= '~' ? argument.letter : '?';
    line.put({&shown, 1});
  }
}

std::FILE* open_destination() {
  char path[PATH_MAX];
  if (!read_environment("QEL_VERBOSE_FILE", path, sizeof path)) return stdout;
  std::FILE* file = std::fopen(path, "ae");
  if (file == nullptr) return stdout;
  // By the line, so that processes that append to one file don't cut each other's lines.
  std::setvbuf(file, nullptr, _IOLBF, BUFSIZ);
  return file;
}

/// The one place that lines go to, opened when it is first asked for.
std::FILE* open_once() {
  std::FILE* current = destination.load(std::memory_order_acquire);
  if (current != nullptr) return current;
  std::FILE* opened = open_destination();
  if (destination.compare_exchange_strong(current, opened, std::memory_order_acq_rel)) return opened;
  if (opened != stdout) std::fclose(opened);  // another thread was faster
  return current;
}

/// The row of an entry, claimed on its first call; null if the table is full. An entry has one name object.
name_total* total_of(const char* name) {
  for (name_total& row : totals) {
    const char* owner = row.name.load(std::memory_order_acquire);
    if (owner == nullptr && row.name.compare_exchange_strong(owner, name, std::memory_order_acq_rel))
      return &row;
    if (owner == name) return &row;
  }
  return nullptr;
}

void add_to_total(const traced_call& call) {
  name_total* row = total_of(call.name);
  if (row == nullptr) return;
  row->calls.fetch_add(1, relaxed);
  row->nanoseconds.fetch_add(call.nanoseconds, relaxed);
  if (!has_rate(call.flops, call.nanoseconds)) return;
  row->rated_nanoseconds.fetch_add(call.nanoseconds, relaxed);
  row->flops.fetch_add(call.flops, relaxed);
}

struct table_row {
  const char* name;
  int64_t calls, nanoseconds, rated_nanoseconds;
  double flops;
};

/// A copy of the totals, so that threads that still count can't change what is being sorted.
int copy_totals(table_row rows[kMaxNames]) {
  int count = 0;
  for (const name_total& row : totals) {
    const char* name = row.name.load(std::memory_order_acquire);
    if (name == nullptr) break;
    rows[count++] = {name, row.calls.load(relaxed), row.nanoseconds.load(relaxed),
                     row.rated_nanoseconds.load(relaxed), row.flops.load(relaxed)};
  }
  return count;
}

void write_row(std::FILE* file, const table_row& row) {
  char text[kLineSize];
  text_writer line(text, sizeof text);
  line.put("QEL_VERBOSE");
  line.put_integer(row.calls, 12);
  line.put_decimal(static_cast<double>(row.nanoseconds) / 1e9, 9, 18);
  if (has_rate(row.flops, row.rated_nanoseconds)) {
    line.put_decimal(gflops(row.flops, row.rated_nanoseconds), 3, 12);
  } else {
    line.put("           -");
  }
  line.put("  ");
  line.put(row.name);
  std::fwrite(text, 1, line.finish(), file);
}

void write_table() {
  table_row rows[kMaxNames];
  const int count = copy_totals(rows);
  if (count == 0) return;
  std::sort(rows, rows + count,
            [](const table_row& a, const table_row& b) { return a.nanoseconds > b.nanoseconds; });
  std::FILE* file = open_once();
  flockfile(file);
  std::fputs("QEL_VERBOSE       calls           seconds     GFlop/s  name\n", file);
  for (int i = 0; i < count; ++i) write_row(file, rows[i]);
  funlockfile(file);
}

void prepare() {
  open_once();
  if (!table_registered.exchange(true)) std::atexit(write_table);
}

bool wanted_by_environment() {
  char value[8];
  return read_environment("QEL_VERBOSE", value, sizeof value) && std::strcmp(value, "0") != 0;
}

}  // namespace

size_t format_traced_call(const traced_call& call, char* text, size_t size) {
  text_writer line(text, size);
  line.put("QEL_VERBOSE ");
  line.put(call.name);
  for (int i = 0; i < call.argument_count; ++i) {
    line.put(i == 0 ? "(" : ",");
    put_argument(line, call.argument[i]);
  }
  line.put(call.argument_count == 0 ? "() level=" : ") level=");
  line.put_integer(call.level);
  line.put(" threads=");
  line.put_integer(call.threads);
  line.put(" seconds=");
  line.put_decimal(static_cast<double>(call.nanoseconds) / 1e9, 9);
  if (has_rate(call.flops, call.nanoseconds)) {
    line.put(" gflops=");
    line.put_decimal(gflops(call.flops, call.nanoseconds), 3);
  }
  if (call.refused) line.put(" refused");
  return line.finish();
}

bool verbose_on() {
  int state = verbose_state.load(relaxed);
  if (state == kVerboseUndecided) {
    const int wanted = wanted_by_environment() ? kVerboseOn : kVerboseOff;
    if (wanted == kVerboseOn) prepare();
    if (verbose_state.compare_exchange_strong(state, wanted)) state = wanted;
  }
  return state == kVerboseOn;
}

bool set_verbose(bool on) {
  verbose_on();
  if (on) prepare();
  return verbose_state.exchange(on ? kVerboseOn : kVerboseOff) == kVerboseOn;
}

void call_trace::start() {
  reports_before_ = reports_told();
  start_ = std::chrono::steady_clock::now();
}

void call_trace::finish() {
  const auto end = std::chrono::steady_clock::now();
  call_.nanoseconds = std::chrono::duration_cast<std::chrono::nanoseconds>(end - start_).count();
  call_.level = serv_cpu_level();
  call_.threads = explain_threads(kDomainBlas).threads;
  call_.refused = reports_told() != reports_before_;
  call_.flops = call_.refused ? 0 : flops_of(call_);
  char text[kLineSize];
  std::fwrite(text, 1, format_traced_call(call_, text, sizeof text), open_once());
  add_to_total(call_);
}

}  // namespace qel
