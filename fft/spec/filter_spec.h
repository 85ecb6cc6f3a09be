// SPDX-License-Identifier: BSD-3-Clause
// Cyclic convolution of lines with factors, the spectrum of taps: a transform, a product, a transform back.
// On native levels only.
#pragma once

#include "fft/spec/real_spec.h"
#include "service/complex_arithmetic.h"

namespace qel::fft {

/// E is any of the four element types. Buffers are of length elements.
template <class E>
class filter_spec {
 public:
  filter_spec() = default;
  ~filter_spec();
  filter_spec(const filter_spec&) = delete;
  filter_spec& operator=(const filter_spec&) = delete;

  /// Whether the level has what it takes.
  static bool there();
  /// length: a multiple of 4 from 64 on. False if memory is out.
  bool make(core_int length);
  core_int length() const { return length_; }
  core_int work_bytes() const;
  /// factors = the spectrum of the taps, padded to the length, over the length. 0 or a spec_result.
  int make_factors(const E* taps, E* factors, void* work) const;
  /// output = the cyclic convolution of input and taps; input may lie anywhere, middle aligned is faster. 0
  /// or a spec_result.
  int run(const E* input, const E* factors, E* middle, E* output, void* work) const;

 private:
  using R = real_of<E>;
  using spec = std::conditional_t<is_complex<E>, dft_spec<R>, real_spec<R>>;
  core_int length_ = 0;
  spec* spec_ = nullptr;
};

}  // namespace qel::fft
