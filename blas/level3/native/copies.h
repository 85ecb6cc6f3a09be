// SPDX-License-Identifier: BSD-3-Clause
// Small products that the direct kernel can't take as they lie: structured factors, a turned A, one triangle
// of C. What stands in the way is copied to the stack; packing would cost more than the product.
#pragma once

#include "blas/level3/native/product.h"

namespace qel::native {

/// Most rows, columns and steps of such a product.
inline constexpr int kCopiedOrder = 32;

/// Which matrices of a product are copied; if `pays` is false, it does not go this way.
struct copy_plan {
  bool pays, a, b, c;
  constexpr bool operator==(const copy_plan&) const = default;
};
/// A structured factor has one stored triangle; of a turned A rows are contiguous. General products read in
/// place what they can, and pack the rest.
constexpr copy_plan plan_copies(core_int m, core_int n, core_int k, bool a_structured, bool a_turned,
                                bool b_structured, c_part part) {
  const bool one_triangle = part != c_part::whole;
  const bool small = m <= kCopiedOrder && n <= kCopiedOrder && k <= kCopiedOrder;
  if (!small || !(a_structured || b_structured || one_triangle)) return {false, false, false, false};
  return {true, a_structured || a_turned, b_structured, one_triangle};
}

/// The product by the direct kernel; m, n, k are above 0 and alpha is not 0.
template <class T>
void multiply_on_copies(const product<T>& what, const copy_plan& plan, const level3_kernels<T>& kernels);

/// Whether a triangle is multiplied that way: B m x n.
constexpr bool fills_triangle(bool solve, core_int m, core_int n) {
  return !solve && m <= kCopiedOrder && n <= kCopiedOrder;
}
/// B = alpha op(A) B (from the left) or alpha B op(A) for a triangle shown by `a`, with zeros in the place of
/// what is not stored. False, with B as it was, if the result is not finite: then zeros may have met what
/// they must not meet. m and n are at most kCopiedOrder, alpha is not 0.
template <class T>
bool multiply_by_filled_triangle(bool left, const operand<T>& a, bool unit, core_int m, core_int n, T alpha,
                                 T* b, core_int ldb, const level3_kernels<T>& kernels);

}  // namespace qel::native
