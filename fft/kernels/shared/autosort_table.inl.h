// SPDX-License-Identifier: BSD-3-Clause
// The table of a native level's passes that sort as they go.
#pragma once

#include "fft/kernels/shared/autosort.inl.h"
#include "fft/kernels/shared/filter.inl.h"
#include "fft/kernels/shared/register_lines.inl.h"
#include "fft/kernels/shared/roots.inl.h"
#include "fft/kernels/shared/whole_lines.inl.h"

namespace qel::QEL_LEVEL {

// clang-format off
#define QEL_RADICES(name, ...)                                                                        \
  {name<__VA_ARGS__, 1>, name<__VA_ARGS__, 2>, name<__VA_ARGS__, 3>, name<__VA_ARGS__, 4>,             \
   name<__VA_ARGS__, 5>, name<__VA_ARGS__, 6>, name<__VA_ARGS__, 7>, name<__VA_ARGS__, 8>,             \
   name<__VA_ARGS__, 9>, name<__VA_ARGS__, 10>, name<__VA_ARGS__, 11>, name<__VA_ARGS__, 12>,           \
   name<__VA_ARGS__, 13>}
#define QEL_LENGTHS(name, b)                                                                            \
  {nullptr, name<R, b, 1>, name<R, b, 2>, name<R, b, 3>, name<R, b, 4>, name<R, b, 5>, name<R, b, 6>,   \
   name<R, b, 7>, name<R, b, 8>, name<R, b, 9>, name<R, b, 10>, name<R, b, 11>, name<R, b, 12>,         \
   name<R, b, 13>, name<R, b, 14>, name<R, b, 15>, name<R, b, 16>}

namespace {
template <class C, class R, bool kBackward>
constexpr void add_registers(autosort_kernels<C, R>& kernels) {
  auto& at = kernels.registers[kBackward ? 1 : 0];
  at[8] = register_line<R, kBackward, 2, 4>;
  at[12] = register_line<R, kBackward, 2, 6>;
  at[16] = register_line<R, kBackward, 4, 4>;
  at[20] = register_line<R, kBackward, 2, 10>;
  at[24] = register_line<R, kBackward, 4, 6>;
  at[28] = register_line<R, kBackward, 2, 14>;
  at[32] = register_line<R, kBackward, 4, 8>;
  at[36] = register_line<R, kBackward, 6, 6>;
  at[40] = register_line<R, kBackward, 4, 10>;
  at[48] = register_line<R, kBackward, 4, 12>;
  at[56] = register_line<R, kBackward, 4, 14>;
  at[60] = register_line<R, kBackward, 6, 10>;
  at[64] = register_line<R, kBackward, 8, 8>;
}
template <class C, class R>
constexpr autosort_kernels<C, R> all_autosort() {
  autosort_kernels<C, R> kernels{{QEL_RADICES(first_of_line, R, false), QEL_RADICES(first_of_line, R, true)},
          {QEL_RADICES(first_of_columns, R, false), QEL_RADICES(first_of_columns, R, true)},
          QEL_RADICES(middle_pass, R),
          middle_of_any<R>,
          {QEL_RADICES(last_of_line, R, false), QEL_RADICES(last_of_line, R, true)},
          {QEL_RADICES(last_of_columns, R, false), QEL_RADICES(last_of_columns, R, true)},
          {QEL_LENGTHS(short_columns, false), QEL_LENGTHS(short_columns, true)},
          {},
          {turn_and_deal<R, false>, turn_and_deal<R, true>},
          {QEL_LENGTHS(line_columns, false), QEL_LENGTHS(line_columns, true)},
          {QEL_LENGTHS(line_rows, false), QEL_LENGTHS(line_rows, true)},
          {line_by_sums<R, false>, line_by_sums<R, true>},
          real_filter<R>, roots_of_unity, spread_roots<R>};
  add_registers<C, R, false>(kernels);
  add_registers<C, R, true>(kernels);
  return kernels;
}
}  // namespace
#undef QEL_RADICES
#undef QEL_LENGTHS
// clang-format on

}  // namespace qel::QEL_LEVEL
