// SPDX-License-Identifier: BSD-3-Clause
// The trace of entry calls, on under QEL_VERBOSE or by set_verbose: a line per call when it is over, a table
// by name when the process ends. QEL_VERBOSE_FILE names a file to append to in place of standard output. An
// entry asks may_be_verbose, one relaxed load, and makes a call_trace around its work if the answer is yes. A
// line's text is a pure function of the record that the trace fills.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <atomic>
#include <chrono>
#include <type_traits>

namespace qel {

inline constexpr int kMaxTracedArguments = 16;

/// An option letter, or a number if letter is '\0'.
struct traced_argument {
  char letter;
  int64_t number;
};

/// A call as its line tells it.
struct traced_call {
  const char* name = "";  ///< the entry's
  int argument_count = 0;
  traced_argument argument[kMaxTracedArguments] = {};  ///< letters, sizes, strides in the order of the call
  int level = 0, threads = 1;
  int64_t nanoseconds = 0;
  double flops = 0;      ///< 0 where no formula is known
  bool refused = false;  ///< an error was reported during the call
};

/// Writes the call's line with its line feed, cut to size - 1 characters, and a terminator. Returns the
/// length.
size_t format_traced_call(const traced_call& call, char* text, size_t size);

enum verbose_states : int { kVerboseUndecided = -1, kVerboseOff = 0, kVerboseOn = 1 };
/// Hidden by declaration too: entries then read it without going through the table of global addresses.
extern std::atomic<int> verbose_state [[gnu::visibility("hidden")]];

/// False if the trace is off; true if it is on or the environment hasn't been asked yet.
inline bool may_be_verbose() { return verbose_state.load(std::memory_order_relaxed) != kVerboseOff; }
/// Whether the trace is on; decides by the environment on first use.
bool verbose_on();
/// Switches the trace; returns whether it was on.
bool set_verbose(bool on);

/// Times the scope it lives in and then tells the call, if the trace is on.
class call_trace {
 public:
  template <class... A>
  explicit call_trace(const char* name, const A&... arguments) : on_(verbose_on()) {
    static_assert((0 + ... + kTraced<A>) <= kMaxTracedArguments);
    if (!on_) return;
    call_.name = name;
    (add(arguments), ...);
    start();
  }
  ~call_trace() {
    if (on_) finish();
  }
  call_trace(const call_trace&) = delete;
  call_trace& operator=(const call_trace&) = delete;

 private:
  template <class T>
  static constexpr int kTraced =
      std::is_same_v<std::decay_t<T>, const char*> || std::is_same_v<std::decay_t<T>, const int*> ||
      std::is_same_v<std::decay_t<T>, char> || std::is_same_v<std::decay_t<T>, size_t>;

  void add(const char* letter) { append({letter != nullptr ? *letter : '?', 0}); }
  void add(const int* number) { append({'\0', *number}); }
  void add(char letter) { append({letter, 0}); }
  void add(size_t number) { append({'\0', static_cast<int64_t>(number)}); }
  template <class T>
  void add(const T&) {}  // arrays, numbers, what comes back

  void append(traced_argument argument) { call_.argument[call_.argument_count++] = argument; }
  void start();
  void finish();

  const bool on_;
  unsigned reports_before_ = 0;
  traced_call call_;
  std::chrono::steady_clock::time_point start_;
};

}  // namespace qel
