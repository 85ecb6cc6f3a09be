// SPDX-License-Identifier: BSD-3-Clause
// What the decisions of level 3 depend on beside the sizes: the element type and the processor, as records
// that tests fill in.
#pragma once

#include "service/core_types.h"

namespace qel {

enum class element_type : int { s, d, c, z };
template <class T>
inline constexpr element_type element_of = element_type::d;
template <>
inline constexpr element_type element_of<float> = element_type::s;
template <>
inline constexpr element_type element_of<complex8> = element_type::c;
template <>
inline constexpr element_type element_of<complex16> = element_type::z;
constexpr core_int bytes_of(element_type type) {
  return type == element_type::s ? 4 : type == element_type::z ? 16 : 8;
}
constexpr bool is_complex_type(element_type type) { return type >= element_type::c; }

struct dense_processor {
  int level = 0;            ///< serv_cpu_level
  bool sse41 = false;       ///< looked at on level 2
  bool family_10h = false;  ///< looked at on level 0: AMD's family that has tiles of its own
  int caches[5] = {};       ///< as serv_cache_sizes gives them
};
/// A second cache of at most 3 MiB, a third one of at most 4 MiB; false if the processor does not tell.
bool has_small_second_cache(const dense_processor& processor);
bool has_small_third_cache(const dense_processor& processor);
/// This process's processor; asked once.
const dense_processor& this_processor();
/// The record that the processor's answers mean.
struct cpuid_answer;
dense_processor processor_from(int level, const cpuid_answer& vendor, const cpuid_answer& features);

}  // namespace qel
