// SPDX-License-Identifier: BSD-3-Clause
// Threads of level 1: the drivers ask thread_rules.h and either call the bound kernel or run it on slices,
// one per thread. Slices are multiples of 8 elements, so that all but the last start on the vector's
// alignment; the last takes what is left, all of it if there are fewer than 8 elements per thread. Partial
// sums of a dot product are added in a fixed order, so for a given count of threads the result is the same in
// every run. If OpenMP refuses the fork, the same slices run one after the other.
#pragma once

#include <algorithm>
#include <cstdint>

#include "blas/level1/thread_rules.h"
#include "service/complex_arithmetic.h"
#include "service/serv.h"

namespace qel {

/// Elements start .. start + length - 1 of a vector.
struct slice {
  core_int start, length;
};
constexpr slice slice_of(core_int n, int threads, int t) {
  const core_int chunk = (n / threads) & ~core_int{7};
  const core_int start = std::min(t * chunk, n - 1);
  if (t < threads - 1) return {start, chunk};
  return {start, std::max<core_int>(n - (threads - 1) * chunk, 0)};
}
/// Base, its lowest address, of the slice of a vector with base x.
template <class T>
constexpr T* slice_base(T* x, core_int n, core_int inc, slice part) {
  return x + inc * (inc >= 0 ? part.start : part.start + part.length - n);
}

/// Calls work(t, slice) for each of the threads.
template <class Work>
void run_slices(core_int n, int threads, const Work& work) {
#pragma omp parallel for num_threads(threads) schedule(static, 1)
  for (int t = 0; t < threads; ++t) work(t, slice_of(n, threads, t));
}

/// The sum of the partial results of the threads. Up to 8: in order of the threads, from zero. From 9 on, if
/// the array is aligned to its elements: two 16-byte accumulators, whose lanes an array off the boundary
/// first fills from lane 0 on; then groups of four registers, numbers 0 and 2 to the first, 1 and 3 to the
/// second; the accumulators are added, then their lanes, neighbours first, then the slots left over.
template <class S>
S sum_of_partials(const S* partial, int threads) {
  constexpr int kLanes = 16 / sizeof(S);
  const auto misaligned = reinterpret_cast<std::uintptr_t>(partial) % 16;
  S sum{};
  int t = 0;
  if (threads >= 9 && misaligned % sizeof(S) == 0) {
    S first[kLanes] = {}, second[kLanes] = {};
    const int ahead = static_cast<int>((16 - misaligned) % 16 / sizeof(S));
    for (; t < ahead; ++t) first[t] = partial[t];
    for (; threads - t >= 4 * kLanes; t += 4 * kLanes) {
      for (int l = 0; l < kLanes; ++l) {
        first[l] = (first[l] + partial[t + l]) + partial[t + 2 * kLanes + l];
        second[l] = (second[l] + partial[t + kLanes + l]) + partial[t + 3 * kLanes + l];
      }
    }
    for (int l = 0; l < kLanes; ++l) first[l] = first[l] + second[l];
    for (int left = kLanes; left > 1; left /= 2) {
      for (int l = 0; l < left; l += 2) first[l / 2] = first[l] + first[l + 1];
    }
    sum = first[0];
  }
  for (; t < threads; ++t) sum = sum + partial[t];
  return sum;
}

/// One result per slice, then combine(results, threads). False, with nothing done, if there is no memory for
/// the results.
template <class S, class Part, class Combine>
bool reduce_slices(S& result, int threads, core_int n, const Part& part, const Combine& combine) {
  constexpr int kOnStack = 128;
  constexpr size_t kSlot = sizeof(S) < 8 ? 8 : sizeof(S);
  alignas(16) S on_stack[kOnStack];
  S* partial = on_stack;
  if (threads > kOnStack) partial = static_cast<S*>(serv_malloc(kSlot * static_cast<size_t>(threads), 0));
  if (partial == nullptr) return false;
  run_slices(n, threads, [&](int t, slice one) { partial[t] = part(one); });
  result = combine(partial, threads);
  if (partial != on_stack) serv_free(partial);
  return true;
}

// The drivers. serial(n, x, y) or serial(n, x) does its operands, strides included, on the calling thread.
// The question for threads stands out of line, so that a short vector's way to its kernel is a comparison and
// a jump.

template <class S, class Serial>
[[gnu::noinline]] S long_dot(level1_member member, const core_int* n, const S* x, const core_int* incx,
                             const S* y, const core_int* incy, Serial serial) {
  const int threads = explain_level1_threads(member, *n, *incx, *incy).threads;
  S result;
  const auto part = [&](slice one) {
    return serial(&one.length, slice_base(x, *n, *incx, one), slice_base(y, *n, *incy, one));
  };
  if (threads > 1 && reduce_slices(result, threads, *n, part, sum_of_partials<S>)) return result;
  return serial(n, x, y);
}
template <class S, class Serial>
inline S dot_driver(level1_member member, const core_int* n, const S* x, const core_int* incx, const S* y,
                    const core_int* incy, Serial serial) {
  if (*n < kShortestFork) [[likely]] {
    return serial(n, x, y);
  }
  return long_dot(member, n, x, incx, y, incy, serial);
}

/// A result of type S from one vector.
template <class S, class T, class Serial, class Part, class Combine>
[[gnu::noinline]] S long_reduction(level1_member member, const core_int* n, const T* x, const core_int* incx,
                                   Serial serial, Part part, Combine combine) {
  const int threads = explain_level1_threads(member, *n, *incx, *incx).threads;
  S result;
  const auto on_slice = [&](slice one) { return part(&one.length, slice_base(x, *n, *incx, one)); };
  if (threads > 1 && reduce_slices(result, threads, *n, on_slice, combine)) return result;
  return serial(n, x);
}
/// part(n, x) does a slice, combine(results, threads) makes one of theirs.
template <class S, class T, class Serial, class Part, class Combine>
inline S reduction_driver(level1_member member, const core_int* n, const T* x, const core_int* incx,
                          Serial serial, Part part, Combine combine) {
  if (*n < kShortestNativeFork) [[likely]] {
    return serial(n, x);
  }
  return long_reduction<S>(member, n, x, incx, serial, part, combine);
}

template <class X, class Y, class Serial>
[[gnu::noinline]] void long_update(level1_member member, const core_int* n, X* x, const core_int* incx, Y* y,
                                   const core_int* incy, Serial serial) {
  const int threads = explain_level1_threads(member, *n, *incx, *incy).threads;
  if (threads <= 1) return serial(n, x, y);
  run_slices(*n, threads, [&](int, slice part) {
    serial(&part.length, slice_base(x, *n, *incx, part), slice_base(y, *n, *incy, part));
  });
}
template <core_int kShortest = kShortestFork, class X, class Y, class Serial>
inline void update_driver(level1_member member, const core_int* n, X* x, const core_int* incx, Y* y,
                          const core_int* incy, Serial serial) {
  if (*n < kShortest) [[likely]] {
    return serial(n, x, y);
  }
  long_update(member, n, x, incx, y, incy, serial);
}

}  // namespace qel
