// SPDX-License-Identifier: BSD-3-Clause
// Double dot product for SSE3 and later.
//
// Order of summation: element i belongs to class i mod 4; each class has its own lane of the two
// accumulators a and b and is summed in order of i. At the end (class 0 + class 1) + (class 2 + class 3).
// Every alignment keeps to this order, so the result does not depend on where the vectors lie:
//   equal alignment     pairs go alternately to a and b; class 0 is a.low
//   both off by 8       one element is peeled into b.high, which makes b.high class 0
//   different           the stream that is off by 8 is rebuilt from aligned loads, each pair from two
//                       neighbouring registers, against the aligned one; class 0 is a.low
// A pointer that is not even a multiple of 8 takes the same steps with unaligned loads.
#include "blas/kernels/shared/dot_strided.inl.h"

namespace qel::QEL_LEVEL {
namespace {

struct accumulators {
  __m128d a, b;
};

inline double low(__m128d v) { return _mm_cvtsd_f64(v); }
inline double high(__m128d v) { return _mm_cvtsd_f64(_mm_unpackhi_pd(v, v)); }

// How a stream's next pair of elements is loaded; pair(k) is elements 2k and 2k + 1 from the position.
struct aligned_stream {
  const double* at;
  __m128d pair(int k) { return _mm_load_pd(at + 2 * k); }
  void advance(int elements) { at += elements; }
};
struct unaligned_stream {
  const double* at;
  __m128d pair(int k) { return _mm_loadu_pd(at + 2 * k); }
  void advance(int elements) { at += elements; }
};
// A stream that is off by 8: `held` has the current element in its high lane, the next aligned load gives
// the two after it. The pairs must be taken in order.
struct rebuilt_stream {
  const double* at;  // the current element
  __m128d held;
  explicit rebuilt_stream(const double* first) : at(first), held(_mm_load1_pd(first)) {}
  __m128d pair(int k) {
    const __m128d next = _mm_load_pd(at + 2 * k + 1);
#ifdef __SSSE3__
    const __m128d result =
        _mm_castsi128_pd(_mm_alignr_epi8(_mm_castpd_si128(next), _mm_castpd_si128(held), 8));
#else
    const __m128d result = _mm_shuffle_pd(held, next, 1);
#endif
    held = next;
    return result;
  }
  void advance(int elements) { at += elements; }
};

// kPairs pairs, the even ones to a and the odd ones to b.
template <int kPairs, class X, class Y>
inline void add_pairs(accumulators& sum, X& x, Y& y) {
#pragma GCC unroll 16
  for (int k = 0; k < kPairs; k += 2) {
    sum.a = _mm_add_pd(sum.a, _mm_mul_pd(x.pair(k), y.pair(k)));
    if (k + 1 < kPairs) sum.b = _mm_add_pd(sum.b, _mm_mul_pd(x.pair(k + 1), y.pair(k + 1)));
  }
  x.advance(2 * kPairs);
  y.advance(2 * kPairs);
}

// A rebuilt stream's aligned loads run one element ahead of its position. The last pair of a tier would
// read the element after the vector if nothing follows it, so a rebuilt stream keeps one element back.
template <class X, class Y>
inline void tier_ladder(accumulators& sum, X x, Y y, core_int left, core_int keep_back) {
  for (; left >= 32 + keep_back; left -= 32) add_pairs<16>(sum, x, y);
  if (left >= 16 + keep_back) {
    add_pairs<8>(sum, x, y);
    left -= 16;
  }
  if (left >= 8 + keep_back) {
    add_pairs<4>(sum, x, y);
    left -= 8;
  }
  if (left >= 4 + keep_back) {
    add_pairs<2>(sum, x, y);
    left -= 4;
  }
  // Up to 3 elements are left, or 4 with one kept back: they complete the classes in order.
  __m128d* lane = &sum.a;
  for (; left >= 2; left -= 2) {
    *lane = _mm_add_pd(*lane, _mm_mul_pd(_mm_loadu_pd(x.at), _mm_loadu_pd(y.at)));
    x.advance(2);
    y.advance(2);
    lane = &sum.b;
  }
  if (left != 0) *lane = _mm_add_sd(*lane, _mm_mul_sd(_mm_load_sd(x.at), _mm_load_sd(y.at)));
}

// (first.low + first.high) + (second.low + second.high)
inline double reduce(__m128d first, __m128d second) {
#ifdef __SSSE3__
  return (low(first) + high(first)) + (low(second) + high(second));
#else
  const __m128d sums = _mm_hadd_pd(first, second);
  return low(sums) + high(sums);
#endif
}

inline double dot_contiguous(core_int n, const double* x, const double* y) {
  accumulators sum = {_mm_setzero_pd(), _mm_setzero_pd()};
  const auto x_off = reinterpret_cast<uintptr_t>(x) & 15, y_off = reinterpret_cast<uintptr_t>(y) & 15;
  if ((x_off & 7) != 0 || (y_off & 7) != 0) {
    tier_ladder(sum, unaligned_stream{x}, unaligned_stream{y}, n, 0);
  } else if (x_off == y_off) {
    if (x_off == 0) {
      tier_ladder(sum, aligned_stream{x}, aligned_stream{y}, n, 0);
    } else {
      sum.b = _mm_set_pd(x[0] * y[0], 0.0);
      tier_ladder(sum, aligned_stream{x + 1}, aligned_stream{y + 1}, n - 1, 0);
      // (b.high + a.low) + (a.high + b.low): class 0 is b.high here
      return reduce(_mm_shuffle_pd(sum.b, sum.a, 1), _mm_shuffle_pd(sum.a, sum.b, 1));
    }
  } else if (y_off == 0) {
    tier_ladder(sum, rebuilt_stream(x), aligned_stream{y}, n, 1);
  } else {  // the aligned stream is always the second one; a product does not care
    tier_ladder(sum, rebuilt_stream(y), aligned_stream{x}, n, 1);
  }
  return reduce(sum.a, sum.b);
}

}  // namespace

double ddot(const core_int* n, const double* x, const core_int* incx, const double* y, const core_int* incy) {
  if (*n <= 0) return 0.0;
  // Both strides 1 or both -1 pair the same elements.
  if (*incx * *incy == 1) return dot_contiguous(*n, x, y);
  return dot_strided(*n, x, *incx, y, *incy);
}

}  // namespace qel::QEL_LEVEL
