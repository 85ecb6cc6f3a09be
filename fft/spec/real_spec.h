// SPDX-License-Identifier: BSD-3-Clause
// The plan of one line of reals and its conjugate-even spectrum, n / 2 + 1 numbers of which are kept.
#pragma once

#include "fft/spec/dft_spec.h"

namespace qel::fft {

/// How the spectrum lies in an array of reals.
enum class packing : int {
  kPerm,  ///< R0, Rh, R1, I1, ...; an odd length has no Rh
  kPack,  ///< R0, R1, I1, ..., Rh
  kCcs,   ///< R0, 0, R1, I1, ..., Rh, 0: n / 2 + 1 complex numbers
};
inline core_int packed_reals(packing format, core_int n) {
  return format == packing::kCcs ? (n / 2 + 1) * 2 : n;
}

enum class real_method : int { kStraight, kHalf, kDirect, kWhole };
/// The method of a length: kHalf transforms n / 2 complex numbers, kWhole n of them.
/// native: odd lines are fast as complex ones there.
real_method choose_real_method(core_int length, bool native);

template <class R>
struct real_spec {
  using C = complex_of<R>;
  static constexpr int kKind = sizeof(R) == sizeof(double) ? 18 : 15;

  int kind;
  int length;
  int scaled[2];  ///< by direction
  double scale;
  int workspace_bytes;
  real_method method;
  dft_spec<R>* complex;  ///< of kHalf and kWhole
  table<C> end_roots;    ///< of kHalf
  table<C> odd_table;    ///< of kDirect

  ~real_spec();
};

/// Creates the plan; 0 or a spec_result.
template <class R>
int dft_real_spec_create(real_spec<R>** spec, core_int length, int flag);
/// Null is ignored.
template <class R>
void dft_real_spec_free(real_spec<R>* spec);

/// n reals to their spectrum, in place or out. work as with dft_spec_run. 0 or a spec_result.
template <class R>
int real_forward(const R* input, R* output, const real_spec<R>* spec, packing format, void* work);
/// Back again.
template <class R>
int real_backward(const R* input, R* output, const real_spec<R>* spec, packing format, void* work);

}  // namespace qel::fft
