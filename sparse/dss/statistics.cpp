// SPDX-License-Identifier: BSD-3-Clause
#include <cctype>
#include <cstring>

#include "service/message_rows.h"
#include "service/serv.h"
#include "sparse/dss/call.h"
#include "sparse/dss/routines.h"
#include "sparse/pardiso/determinant.h"
#include "sparse/pardiso/handle.h"

namespace qel::dss {
namespace {

using pardiso::parameters;

enum class key {
  determinant,
  factortime,
  flops,
  inertia,
  reordertime,
  solvetime,
  peakmem,
  factormem,
  solvemem,
  unknown
};
struct key_rule {
  const char* name;
  key meaning;
  unsigned states;  ///< in which it is known
};
constexpr unsigned kFactored = states(state_factored, state_solved);
constexpr key_rule kKeys[] = {
    {"determinant", key::determinant, kFactored},
    {"factortime", key::factortime, kFactored},
    {"flops", key::flops, kFactored},
    {"inertia", key::inertia, kFactored},
    {"reordertime", key::reordertime, kFactored | states(state_reordered)},
    {"solvetime", key::solvetime, states(state_solved)},
    {"peakmem", key::peakmem, kAnyState},
    {"factormem", key::factormem, kAnyState},
    {"solvemem", key::solvemem, kAnyState},
};
constexpr key_rule kUnknown = {"", key::unknown, 0};

constexpr size_t kLongestKey = 11;

/// Takes the next word of keys in lower case and without white space, up to its comma, which is skipped;
/// false at the end. A word that is too long for a key is cut.
class key_words {
 public:
  explicit key_words(const char* keys) : at_(keys) {}
  bool next(char (&word)[kLongestKey + 2]) {
    if (at_ == nullptr) return false;
    size_t length = 0;
    for (; *at_ != '\0' && *at_ != ','; ++at_) {
      const auto letter = static_cast<unsigned char>(*at_);
      if (std::isspace(letter) == 0 && length <= kLongestKey) {
        word[length++] = static_cast<char>(std::tolower(letter));
      }
    }
    word[length] = '\0';
    at_ = *at_ == ',' ? at_ + 1 : nullptr;
    return true;
  }

 private:
  const char* at_;
};

const key_rule& rule_of(const char* word) {
  for (const key_rule& rule : kKeys) {
    if (std::strcmp(rule.name, word) == 0) return rule;
  }
  return kUnknown;
}

/// Code of the refusal of a key, 0 if it is granted.
int refusal(const key_rule& rule, const record& r) {
  if (rule.meaning == key::unknown) return kUnknownKey;
  if ((rule.states & states(r.state)) == 0) return kWrongState;
  const bool indefinite = r.mtype == -2 || r.mtype == -4 || r.mtype == 6;
  if (rule.meaning == key::inertia && !indefinite) return kNotIndefinite;
  return 0;
}

/// What comes from the solver's blocks, which a diagonal matrix does not have.
bool needs_solver(key meaning) {
  return meaning != key::reordertime && meaning != key::factortime && meaning != key::solvetime;
}

double* store_determinant(const record& r, double* result) {
  const pardiso::scaled_number found = pardiso::determinant(r.pt, r.mnum);
  *result++ = found.exponent;
  *result++ = found.real;
  if (r.data == complex_data) *result++ = found.imag;
  return result;
}

/// Stores the values of a key and returns the place for the next.
double* store(key meaning, record& r, double* result) {
  const parameters iparm(r.iparm);
  switch (meaning) {
    case key::determinant:
      return store_determinant(r, result);
    case key::inertia: {
      const int positive = iparm(pardiso::p_positive), negative = iparm(pardiso::p_negative);
      *result++ = positive;
      *result++ = negative;
      *result++ = r.rows - positive - negative;
      return result;
    }
    case key::flops:
      *result++ = pardiso::handle(r.pt).record()->work;
      return result;
    case key::factortime:
      *result++ = r.factor_seconds;
      return result;
    case key::reordertime:
      *result++ = r.reorder_seconds;
      return result;
    case key::solvetime:
      *result++ = r.solve_seconds;
      return result;
    case key::peakmem:
      *result++ = iparm(pardiso::p_peak_analysis);
      return result;
    case key::factormem:
      *result++ = iparm(pardiso::p_permanent_analysis);
      return result;
    default:
      *result++ = iparm(pardiso::p_numeric_memory);
      return result;
  }
}

}  // namespace

int statistics(void** handle, int options, const char* keys, double* result) {
  dss_call call(handle, options, kLevelsOnly, kAnyState);
  if (!call.faults().empty()) return call.finish(success);
  record& r = call.r();
  const bool diagonal = r.state >= state_reordered && is_diagonal(r);
  char word[kLongestKey + 2];
  for (key_words words(keys); words.next(word);) {
    const key_rule& rule = rule_of(word);
    if (const int code = refusal(rule, r); code != 0) return report(code, call.current());
    if (diagonal && needs_solver(rule.meaning)) {
      serv_message(0, static_cast<int>(solver_row::dss_diagonal), 1, rule.name);
      continue;
    }
    result = store(rule.meaning, r, result);
  }
  return call.finish(success);
}

}  // namespace qel::dss
