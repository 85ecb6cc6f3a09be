// SPDX-License-Identifier: BSD-3-Clause
// The kernel tables of level 2 by processor level and element type, and the way to this process's table.
#pragma once

#include <type_traits>

#include "blas/kernels/level2_kernels.h"
#include "service/dispatch.h"

namespace qel {

template <class T>
struct level2_rows;

// clang-format off
#define QEL_LEVEL2_ROW(family, letter)                                                               \
  static constexpr level_row<decltype(l0_generic::family##_##letter)> family{                        \
      /* generic                        SSE3 */                                                      \
      {&l0_generic::family##_##letter,  &l1_sse3::family##_##letter,                                 \
      /* SSSE3                          SSE4.2                          AVX */                       \
       &l2_ssse3::family##_##letter,    &l2_ssse3::family##_##letter,   &l2_ssse3::family##_##letter, \
      /* AVX2 and FMA                   AVX-512 */                                                   \
       &l5_avx2::family##_##letter,     &l5_avx2::family##_##letter}}
#define QEL_LEVEL2_ROWS(type, letter)                                                                \
  template <>                                                                                        \
  struct level2_rows<type> {                                                                         \
    QEL_LEVEL2_ROW(general, letter);                                                                 \
    QEL_LEVEL2_ROW(hermitian, letter);                                                               \
    QEL_LEVEL2_ROW(triangular, letter);                                                              \
  }
QEL_LEVEL2_ROWS(float, s);
QEL_LEVEL2_ROWS(double, d);
QEL_LEVEL2_ROWS(complex8, c);
QEL_LEVEL2_ROWS(complex16, z);
#undef QEL_LEVEL2_ROWS
#undef QEL_LEVEL2_ROW
// clang-format on

template <class Table>
Table table_type(const level_row<Table>&);

/// One slot for each row.
template <const auto& kRow>
inline constinit bind_slot<std::add_const_t<decltype(table_type(kRow))>> table_slot{nullptr};

/// The row's table for this process, bound on first use.
template <const auto& kRow>
inline const auto& bound_table() {
  auto* table = table_slot<kRow>.load(std::memory_order_relaxed);
  if (table == nullptr) [[unlikely]] {
    table = choose_kernel(kRow);
    table_slot<kRow>.store(table, std::memory_order_relaxed);
  }
  return *table;
}

}  // namespace qel
