// SPDX-License-Identifier: BSD-3-Clause
// What happens on a bad argument when the program has no handler of its own: one line on standard error,
// then back to the caller. The process goes on, since a library must not end it and LAPACK's callers look
// at info. Also the two flags that handlers of the C interface read, and the letter comparison.
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "dropin/blas_names.h"
#include "dropin/cblas_names.h"
#include "dropin/widened_call.h"

namespace qel::dropin {

namespace {

constexpr size_t kLongestName = 32;

std::string_view without_padding(const char* name, size_t length) {
  while (length > 0 && name[length - 1] == ' ') --length;
  return {name, length};
}

char upper(char letter) {
  return 'a' <= letter && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

// Which positions change places between a row-major call and the column-major one that stands for it.
struct exchange {
  const char* operation;
  int first, second;
};
// clang-format off
constexpr exchange kExchanges[] = {
  {"gemm", 4, 5}, {"gemm", 9, 11},                  // m and n, lda and ldb
  {"symm", 4, 5}, {"hemm", 4, 5},                   // m and n
  {"trmm", 6, 7}, {"trsm", 6, 7},
  {"gemv", 3, 4}, {"gbmv", 3, 4}, {"gbmv", 5, 6},   // kl and ku
  {"ger",  2, 3}, {"geru", 2, 3}, {"gerc", 2, 3},
  {"ger",  6, 8}, {"geru", 6, 8}, {"gerc", 6, 8},   // incx and incy
  {"her2", 6, 8}, {"hpr2", 6, 8}};
// clang-format on

// The position among the arguments that a row-major caller wrote.
int written_position(std::string_view name, int position) {
  const size_t prefix = std::strlen("cblas_?");
  const std::string_view operation = name.size() > prefix ? name.substr(prefix) : name;
  for (const exchange& row : kExchanges) {
    if (operation != row.operation) continue;
    if (position == row.first) return row.second;
    if (position == row.second) return row.first;
  }
  return position;
}

}  // namespace

bool refused(const char* name, int position) {
  constexpr size_t kNameLength = 6;
  if (position != 0) xerbla_(name, &position, kNameLength);
  return position != 0;
}

extern "C" {

int RowMajorStrg = 0;
int CBLAS_CallFromC = 0;

void xerbla_(const char* name, const int* position, size_t name_length) {
  const std::string_view routine = without_padding(name, name_length);
  std::fprintf(stderr, " ** On entry to %.*s parameter number %2d had an illegal value\n",
               static_cast<int>(routine.size()), routine.data(), *position);
}

void xerbla_array_(const char* name, const int* name_length, const int* position) {
  const size_t length = *name_length < 0 ? 0 : static_cast<size_t>(*name_length);
  xerbla_(name, position, length < kLongestName ? length : kLongestName);
}

void cblas_xerbla(int position, const char* name, const char* format, ...) {
  if (position > 0) {
    std::fprintf(stderr, "Parameter %d to routine %s was incorrect\n",
                 RowMajorStrg != 0 ? written_position(name, position) : position, name);
  }
  std::va_list arguments;
  va_start(arguments, format);
  std::vfprintf(stderr, format, arguments);
  va_end(arguments);
}

int lsame_(const char* a, const char* b) { return upper(*a) == upper(*b) ? 1 : 0; }

}  // extern "C"

}  // namespace qel::dropin
