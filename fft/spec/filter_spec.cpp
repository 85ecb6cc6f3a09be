// SPDX-License-Identifier: BSD-3-Clause
#include "fft/spec/filter_spec.h"

namespace qel::fft {

template <class E>
filter_spec<E>::~filter_spec() {
  if constexpr (is_complex<E>) {
    dft_spec_free<R>(spec_);
  } else {
    dft_real_spec_free<R>(spec_);
  }
}

template <class E>
bool filter_spec<E>::there() {
  return native_passes<R>() != nullptr;
}

template <class E>
bool filter_spec<E>::make(core_int length) {
  length_ = length;
  if constexpr (is_complex<E>) {
    return dft_spec_create<R>(&spec_, length, kUnscaled) == 0;
  } else {
    return dft_real_spec_create<R>(&spec_, length, kUnscaled) == 0;
  }
}

template <class E>
core_int filter_spec<E>::work_bytes() const {
  return spec_->workspace_bytes + 64;
}

template <class E>
int filter_spec<E>::make_factors(const E* taps, E* factors, void* work) const {
  int status;
  if constexpr (is_complex<E>) {
    status = dft_spec_run<R>(taps, factors, spec_, work, kForward);
  } else {
    status = real_forward<R>(taps, factors, spec_, packing::kPerm, work);
  }
  const R scale = R{1} / static_cast<R>(length_);
  for (core_int k = 0; k < length_; ++k) {
    if constexpr (is_complex<E>) {
      factors[k] = scale * factors[k];
    } else {
      factors[k] *= scale;
    }
  }
  return status;
}

template <class E>
int filter_spec<E>::run(const E* input, const E* factors, E* middle, E* output, void* work) const {
  using C = complex_of<R>;
  const auto* const from = reinterpret_cast<const C*>(input);
  const auto* const by = reinterpret_cast<const C*>(factors);
  auto* const between = reinterpret_cast<C*>(middle);
  auto* const to = reinterpret_cast<C*>(output);
  const dft_spec<R>* line;
  if constexpr (is_complex<E>) {
    line = spec_;
  } else {
    line = spec_->complex;
  }
  if (const int status = dft_spec_run<R>(from, between, line, work, kForward)) return status;
  if constexpr (is_complex<E>) {
    level_kernels<R>().multiply[kForward](between, by, between, length_);
  } else {
    native_passes<R>()->real_filter(between, length_ / 2, spec_->end_roots.get(), by);
  }
  return dft_spec_run<R>(between, to, line, work, kBackward);
}

template class filter_spec<float>;
template class filter_spec<double>;
template class filter_spec<complex8>;
template class filter_spec<complex16>;

}  // namespace qel::fft
