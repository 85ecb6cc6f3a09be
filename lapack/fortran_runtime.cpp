// SPDX-License-Identifier: BSD-3-Clause
// The three Fortran run-time routines that plain LAPACK calls, under private names, so that the library
// needs no libgfortran and can't interpose the real ones in other Fortran libraries.
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

/// base ** exponent by repeated squaring, as Fortran's ** with an integer exponent.
template <class T>
T integer_power(T base, int64_t exponent) {
  if (exponent == 0) return 1;
  // The magnitude as unsigned, so that the most negative exponent works too.
  uint64_t left = exponent < 0 ? 0 - static_cast<uint64_t>(exponent) : static_cast<uint64_t>(exponent);
  if (exponent < 0) base = 1 / base;
  T result = 1;
  for (;; base *= base) {
    if (left & 1) result *= base;
    left >>= 1;
    if (left == 0) return result;
  }
}

}  // namespace

extern "C" {

void qel_core_concat_string(size_t length, char* target, size_t length1, const char* text1, size_t length2,
                            const char* text2);
double qel_core_pow_r8_i8(double base, int64_t exponent);
float qel_core_pow_r4_i8(float base, int64_t exponent);

/// target = text1 // text2, cut to length or filled up with blanks.
void qel_core_concat_string(size_t length, char* target, size_t length1, const char* text1, size_t length2,
                            const char* text2) {
  const size_t first = length1 < length ? length1 : length;
  const size_t second = length2 < length - first ? length2 : length - first;
  std::memcpy(target, text1, first);
  std::memcpy(target + first, text2, second);
  std::memset(target + first + second, ' ', length - first - second);
}
double qel_core_pow_r8_i8(double base, int64_t exponent) { return integer_power(base, exponent); }
float qel_core_pow_r4_i8(float base, int64_t exponent) { return integer_power(base, exponent); }

}  // extern "C"
