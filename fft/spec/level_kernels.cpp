// SPDX-License-Identifier: BSD-3-Clause
#include "fft/spec/level_kernels.h"

#include "service/serv.h"

namespace qel::fft {
namespace {

// By processor level; levels 0 to 4 give the same bits: one text, whose products no build of theirs fuses.
constexpr const fft_kernels_d* kDouble[] = {&l0_generic::fft_d, &l0_generic::fft_d, &l0_generic::fft_d,
                                            &l0_generic::fft_d, &l4_avx::fft_d,     &l5_avx2::fft_d,
                                            &l5_avx2::fft_d};
constexpr const fft_kernels_s* kSingle[] = {&l0_generic::fft_s, &l0_generic::fft_s, &l0_generic::fft_s,
                                            &l0_generic::fft_s, &l4_avx::fft_s,     &l5_avx2::fft_s,
                                            &l5_avx2::fft_s};

constexpr const autosort_kernels_d* kDoubleNative[] = {
    nullptr, nullptr, nullptr, nullptr, nullptr, &l5_avx2::autosort_d, &l6_avx512::autosort_d};
constexpr const autosort_kernels_s* kSingleNative[] = {
    nullptr, nullptr, nullptr, nullptr, nullptr, &l5_avx2::autosort_s, &l6_avx512::autosort_s};

}  // namespace

template <>
const fft_kernels_d& level_kernels<double>() {
  return *kDouble[serv_cpu_level()];
}
template <>
const fft_kernels_s& level_kernels<float>() {
  return *kSingle[serv_cpu_level()];
}

template <>
const autosort_kernels_d* native_passes<double>() {
  return kDoubleNative[serv_cpu_level()];
}
template <>
const autosort_kernels_s* native_passes<float>() {
  return kSingleNative[serv_cpu_level()];
}

}  // namespace qel::fft
