// SPDX-License-Identifier: BSD-3-Clause
// The few shapes in which a public entry with 32-bit integers calls its core routine with 64-bit ones. An
// entry names its shape, its core routine and its arguments in order; each argument is passed by its type:
//   const int*   a sign-extended temporary's address; it lives to the end of the full expression
//   wide_ints, out_int   the 64-bit copy, written back after the call
//   all others   as they stand
// Everything here is inline: a plain entry is a few stores and the call.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstring>
#include <utility>

#include "entry/wide_ints.h"
#include "qel/service.h"
#include "service/serv.h"

namespace qel::entry {

/// A 32-bit scalar on its way to the core.
struct widened {
  core_int value;
  operator const core_int*() const { return &value; }
};

inline widened core_argument(const int* scalar) { return {*scalar}; }
inline core_int* core_argument(const wide_ints& array) { return array.get(); }
inline core_int* core_argument(out_int& scalar) { return scalar.get(); }
template <class T>
T* core_argument(T* other) {
  return other;
}

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

/// Plain: widens and calls.
template <class R, class... P, class... A>
inline R call_widened(R (*core)(P...), A... args) {
  return core(core_argument(args)...);
}

/// The check of a checked entry: reports a bad argument's position, if there is one, through the public error
/// entry. True: the entry must return. BLAS names are padded with a blank to six characters.
inline bool reported(const char* name, int position) {
  if (position == 0) [[likely]] {
    return false;
  }
  xerbla(name, &position, static_cast<int>(std::strlen(name)));
  return true;
}

/// Fortran routine without info: its reports go to the public error entry.
template <class R, class... P, class... A>
inline R call_hooked(R (*core)(P...), A... args) {
  static_assert(sizeof...(P) == sizeof...(A) + kLetters<A...>);
  serv_set_xerbla(&xerbla);
  return call_fortran(core, std::make_index_sequence<kLetters<A...>>{}, args...);
}

/// Fortran routine with info, which is narrowed into the caller's and returned.
template <class... P, class... A>
inline int call_info(void (*core)(P...), int* info, A&&... args) {
  static_assert(sizeof...(P) == sizeof...(A) + 1 + kLetters<A...>);
  core_int wide_info = 0;
  serv_set_xerbla(&xerbla);
  call_fortran(core, std::make_index_sequence<kLetters<A...>>{}, args..., &wide_info);
  (write_back(args), ...);
  return *info = static_cast<int>(wide_info);
}

/// The same with integer arrays, all of which must have got their copies before the core is called. name is
/// in upper case, without padding.
template <class... P, class... A>
inline int call_info_arrays(const char* name, void (*core)(P...), int* info, A&&... args) {
  if (!(has_memory(args) && ...)) return report_no_memory(name, info);
  return call_info(core, info, args...);
}

/// Routine over a compressed vector: a copy of the positions, no info and no error entry to install. Out of
/// memory, functions return 0.
template <class R, class... P, class... A>
inline R call_sparse(const char* name, R (*core)(P...), A&&... args) {
  if (!(has_memory(args) && ...)) {
    report_no_memory(name);
    return R();
  }
  return core(core_argument(args)...);
}

}  // namespace qel::entry
