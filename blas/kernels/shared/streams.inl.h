// SPDX-License-Identifier: BSD-3-Clause
// How the level-1 kernels read a vector register by register, and the ladder of tiers in which they do it.
// A stream's get(k) is the k-th register from its position; the registers must be taken in order.
//   aligned_stream     aligned loads
//   unaligned_stream   for addresses that no whole number of elements brings to a 16-byte boundary
//   rebuilt_stream     a vector that lies kShift elements past a boundary while its partner is aligned: each
//                      register is joined from two neighbouring aligned ones. The loads run ahead of the
//                      position, so the last kKeepBack elements are left to the caller.
//   strided_stream     gathered elements
#pragma once

#include "blas/kernels/shared/lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R>
struct aligned_stream {
  static constexpr core_int kKeepBack = 0;
  const R* at;
  typename lanes<R>::reg get(int k) { return lanes<R>::load(at + k * lanes<R>::kCount); }
  void advance(core_int registers) { at += registers * lanes<R>::kCount; }
};

template <class R>
struct unaligned_stream {
  static constexpr core_int kKeepBack = 0;
  const R* at;
  typename lanes<R>::reg get(int k) { return lanes<R>::loadu(at + k * lanes<R>::kCount); }
  void advance(core_int registers) { at += registers * lanes<R>::kCount; }
};

template <class R, int kShift>
struct rebuilt_stream {
  static constexpr core_int kKeepBack = lanes<R>::kCount - kShift;
  const R* at;
  typename lanes<R>::reg held;  // its upper lanes are the first kKeepBack elements from the position
  explicit rebuilt_stream(const R* first) : at(first) {
    R start[lanes<R>::kCount] = {};
    for (int l = 0; l < kKeepBack; ++l) start[kShift + l] = element_at(first + l);
    held = lanes<R>::loadu(start);
  }
  typename lanes<R>::reg get(int k) {
    const auto next = lanes<R>::load(at + k * lanes<R>::kCount + kKeepBack);
    const auto result = lanes<R>::template joined<kShift>(held, next);
    held = next;
    return result;
  }
  void advance(core_int registers) { at += registers * lanes<R>::kCount; }
};

template <class T>
struct strided_stream {
  static constexpr core_int kKeepBack = 0;
  static constexpr int kElements = lanes<typename parts<T>::real>::kCount / parts<T>::kCount;
  const T* at;
  core_int inc;
  typename lanes<typename parts<T>::real>::reg get(int k) { return gathered(at + k * kElements * inc, inc); }
  void advance(core_int registers) { at += registers * kElements * inc; }
};

/// Runs op.registers<k>() for each tier k, the largest first, while that many registers are left and
/// keep_back elements with them. Returns the number of elements left.
template <int kTier, int... kLower, class Op>
[[gnu::always_inline]] inline core_int run_tiers(Op& op, core_int left, core_int per_register,
                                                 core_int keep_back) {
  for (; left >= kTier * per_register + keep_back; left -= kTier * per_register) {
    op.template registers<kTier>();
  }
  if constexpr (sizeof...(kLower) > 0) return run_tiers<kLower...>(op, left, per_register, keep_back);
  return left;
}

/// Elements to take off so that a vector of R starts on a 16-byte boundary; -1 if none will do.
template <class R>
inline core_int elements_to_boundary(const R* x) {
  const uintptr_t off = misalignment(x);
  if (off % sizeof(R) != 0) return -1;
  return static_cast<core_int>((16 - off) % 16 / sizeof(R));
}

/// Calls visit with the stream that suits x beside an aligned partner.
template <class R, class Visit>
inline void with_stream_beside_aligned(const R* x, Visit visit) {
  const uintptr_t off = misalignment(x);
  if (off == 0) return visit(aligned_stream<R>{x});
  if (off == sizeof(R)) return visit(rebuilt_stream<R, 1>(x));
  if constexpr (lanes<R>::kCount == 4) {
    if (off == 2 * sizeof(R)) return visit(rebuilt_stream<R, 2>(x));
    if (off == 3 * sizeof(R)) return visit(rebuilt_stream<R, 3>(x));
  }
  visit(unaligned_stream<R>{x});
}

}  // namespace
}  // namespace qel::QEL_LEVEL
