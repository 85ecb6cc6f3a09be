// SPDX-License-Identifier: BSD-3-Clause
// The few shapes in which a public entry with 32-bit integers calls its core routine with 64-bit ones. An
// entry names its shape, its core routine and its arguments in order; each argument is passed by its type:
//   const int*   a sign-extended temporary's address; it lives to the end of the full expression
//   wide_ints, out_int   the 64-bit copy, written back after the call
//   index_array  32-bit integers that the core reads as they are
//   all others   as they stand
// Everything here is inline but the traced way: a plain entry is a test, a few stores and the call.
#pragma once

#include <concepts>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

#include "entry/reports.h"
#include "entry/wide_ints.h"
#include "qel/service.h"
#include "service/serv.h"
#include "service/verbose.h"

namespace qel::entry {

/// A 32-bit scalar on its way to the core.
struct widened {
  core_int value;
  operator const core_int*() const { return &value; }
};

/// Indices of a sparse matrix.
struct index_array {
  const int* data;
};

inline const int* core_argument(index_array array) { return array.data; }
inline widened core_argument(const int* scalar) { return {*scalar}; }
inline core_int* core_argument(const wide_ints& array) { return array.get(); }
inline core_int* core_argument(out_int& scalar) { return scalar.get(); }
template <class T>
requires std::is_scalar_v<T> T core_argument(T other) { return other; }

template <class T>
constexpr bool has_memory(const T&) {
  return true;
}
inline bool has_memory(const wide_ints& array) { return array.get() != nullptr; }

template <class T>
void write_back(const T&) {}
inline void write_back(const wide_ints& array) { array.write_back(); }
inline void write_back(const out_int& scalar) { scalar.write_back(); }

/// Fortran routines expect the length of each option letter, 1, after the last argument.
template <std::size_t>
inline constexpr std::size_t kLetterLength = 1;

template <class... A>
inline constexpr std::size_t kLetters = (0 + ... + std::size_t{std::same_as<std::decay_t<A>, const char*>});

template <class R, class... P, class... A, std::size_t... I>
inline R call_fortran(R (*core)(P...), std::index_sequence<I...>, A&&... args) {
  return core(core_argument(args)..., kLetterLength<I>...);
}

// What each shape does around its core routine. A report's name is the entry's, in upper case.

/// Widens and calls.
struct widened_shape {
  template <class R, class... P, class... A>
  static R run(const char*, R (*core)(P...), A&... args) {
    return core(core_argument(args)...);
  }
};

/// What a check of arguments gets to see: letters and sizes, by value.
inline std::tuple<const char*> checked_argument(const char* letter) { return letter; }
inline std::tuple<core_int> checked_argument(const int* number) { return *number; }
inline std::tuple<char> checked_argument(char letter) { return letter; }
inline std::tuple<std::size_t> checked_argument(std::size_t number) { return number; }
template <class T>
std::tuple<> checked_argument(const T&) {
  return {};
}

/// The same after a check, which is given the call's letters and sizes in their order and tells the position
/// of the first bad argument, 0 if there is none.
struct checked_shape {
  template <class... P, class Check, class... A>
  static void run(const char* name, void (*core)(P...), Check check, A&... args) {
    const int position = std::apply(check, std::tuple_cat(checked_argument(args)...));
    if (position != 0) [[unlikely]] {
      return report_bad_argument(name, position);
    }
    core(core_argument(args)...);
  }
};

/// The same for routines that count as LAPACK's: the public error entry is installed besides.
struct checked_hooked_shape {
  template <class... P, class Check, class... A>
  static void run(const char* name, void (*core)(P...), Check check, A&... args) {
    serv_set_xerbla(&xerbla);
    checked_shape::run(name, core, check, args...);
  }
};

/// Fortran routine without info: its reports go to the public error entry.
struct hooked_shape {
  template <class R, class... P, class... A>
  static R run(const char*, R (*core)(P...), A&... args) {
    static_assert(sizeof...(P) == sizeof...(A) + kLetters<A...>);
    serv_set_xerbla(&xerbla);
    return call_fortran(core, std::make_index_sequence<kLetters<A...>>{}, args...);
  }
};

/// Fortran routine with info, which is narrowed into the caller's and returned. Copies of integer arrays must
/// all be there before the core is called.
struct info_shape {
  template <class... P, class... A>
  static int run(const char* name, void (*core)(P...), int* info, A&... args) {
    static_assert(sizeof...(P) == sizeof...(A) + 1 + kLetters<A...>);
    if (!(has_memory(args) && ...)) return report_no_memory(name, info);
    core_int wide_info = 0;
    serv_set_xerbla(&xerbla);
    call_fortran(core, std::make_index_sequence<kLetters<A...>>{}, args..., &wide_info);
    (write_back(args), ...);
    return *info = static_cast<int>(wide_info);
  }
};

/// Routine over a compressed vector: a copy of the positions, no info and no error entry to install. Out of
/// memory, functions return 0.
struct sparse_shape {
  template <class R, class... P, class... A>
  static R run(const char* name, R (*core)(P...), A&... args) {
    if (!(has_memory(args) && ...)) {
      report_no_memory(name);
      return R();
    }
    return core(core_argument(args)...);
  }
};

/// Pointers and numbers go by value, so that the arguments of the plain way stay in registers.
template <class T>
using passed = std::conditional_t<std::is_scalar_v<T>, T, T&>;

/// A call whose line may be wanted.
template <class Shape, class Core, class... A>
[[gnu::noinline, gnu::cold]] auto run_traced(const char* name, Core core, passed<A>... args) {
  const call_trace trace(name, args...);
  return Shape::run(name, core, args...);
}

/// What an entry calls: call_...(__func__, core routine, arguments). The entry's name is then written once,
/// and the plain way costs one test before it.
template <class Shape>
struct entry_call {
  template <class Core, class... A>
  auto operator()(const char* name, Core core, A&&... args) const {
    if (may_be_verbose()) [[unlikely]] {
      return run_traced<Shape, Core, std::remove_reference_t<A>...>(name, core, args...);
    }
    return Shape::run(name, core, args...);
  }
};

inline constexpr entry_call<widened_shape> call_widened;
/// The check comes after the core routine.
inline constexpr entry_call<checked_shape> call_checked;
inline constexpr entry_call<checked_hooked_shape> call_checked_hooked;
inline constexpr entry_call<hooked_shape> call_hooked;
/// info comes after the core routine.
inline constexpr entry_call<info_shape> call_info;
inline constexpr entry_call<sparse_shape> call_sparse;

}  // namespace qel::entry
