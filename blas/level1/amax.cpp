// SPDX-License-Identifier: BSD-3-Clause
// Core search for the largest and the smallest element: on threads where they pay, else the kernel of the
// processor level, bound on first use.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"
#include "blas/level1/slices.h"
#include "service/complex_arithmetic.h"

namespace qel {
namespace {

struct keeps_largest {
  template <class R>
  static bool keeps(R best, R next) {
    return best >= next;
  }
};
struct keeps_smallest {
  template <class R>
  static bool keeps(R best, R next) {
    return next >= best;
  }
};

/// The whole vector's index from those of its slices, in which a negative one tells of a NaN: then, as behind
/// a NaN, what the slices before have found counts for nothing.
template <class Rule, class T>
core_int index_of_slices(core_int n, const T* x, core_int incx, const core_int* index, int threads) {
  core_int best = 0;
  real_of<T> best_size = 0;
  for (int t = 0; t < threads; ++t) {
    if (index[t] == 0) continue;  // an empty slice
    const core_int here = slice_of(n, threads, t).start + (index[t] < 0 ? -index[t] : index[t]);
    const real_of<T> size = abs1(x[(here - 1) * incx]);
    if (best != 0 && index[t] > 0 && Rule::keeps(best_size, size)) continue;
    best = here;
    best_size = size;
  }
  return best;
}

template <class Rule, level1_member kMember, const auto& kRow, const auto& kSliceRow, class T>
core_int extreme(const core_int* n, const T* x, const core_int* incx) {
  const auto serial = [=](const core_int* length, const T* xs) {
    return call_kernel<kRow>(length, xs, incx);
  };
  if (*incx <= 0) return 0;
  return reduction_driver<core_int>(
      kMember, n, x, incx, serial,
      [=](const core_int* length, const T* xs) {
        return *length == 0 ? 0 : call_kernel<kSliceRow>(length, xs, incx);
      },
      [=](const core_int* index, int threads) {
        return index_of_slices<Rule>(*n, x, *incx, index, threads);
      });
}

}  // namespace

core_int core::isamax(const core_int* n, const float* x, const core_int* incx) {
  return extreme<keeps_largest, level1_member::isamax, kIsamax, kIsamaxSlice>(n, x, incx);
}
core_int core::idamax(const core_int* n, const double* x, const core_int* incx) {
  return extreme<keeps_largest, level1_member::idamax, kIdamax, kIdamaxSlice>(n, x, incx);
}
core_int core::icamax(const core_int* n, const complex8* x, const core_int* incx) {
  return extreme<keeps_largest, level1_member::icamax, kIcamax, kIcamaxSlice>(n, x, incx);
}
core_int core::izamax(const core_int* n, const complex16* x, const core_int* incx) {
  return extreme<keeps_largest, level1_member::izamax, kIzamax, kIzamaxSlice>(n, x, incx);
}
core_int core::isamin(const core_int* n, const float* x, const core_int* incx) {
  return extreme<keeps_smallest, level1_member::isamin, kIsamin, kIsaminSlice>(n, x, incx);
}
core_int core::idamin(const core_int* n, const double* x, const core_int* incx) {
  return extreme<keeps_smallest, level1_member::idamin, kIdamin, kIdaminSlice>(n, x, incx);
}
core_int core::icamin(const core_int* n, const complex8* x, const core_int* incx) {
  return extreme<keeps_smallest, level1_member::icamin, kIcamin, kIcaminSlice>(n, x, incx);
}
core_int core::izamin(const core_int* n, const complex16* x, const core_int* incx) {
  return extreme<keeps_smallest, level1_member::izamin, kIzamin, kIzaminSlice>(n, x, incx);
}

}  // namespace qel
