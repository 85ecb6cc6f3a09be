// SPDX-License-Identifier: BSD-3-Clause
// Entries of vector math, which test their own arguments, and of its state.
#include <cstddef>

#include "entry/reports.h"
#include "entry/shapes.h"
#include "qel/vml.h"
#include "vector/vml/state.h"
#include "vector/vml/vml.h"

namespace {

using operation = void(int n, const double* a, const double* b, double* r);

/// Reports the first bad argument by the entry's name in its own case, and leaves the status.
[[gnu::noinline, gnu::cold]] void refuse(const char* reported, int n, const double* a, const double* b) {
  qel::entry::report_as_it_stands(reported, n < 0 ? 1 : a == nullptr ? 2 : b == nullptr ? 3 : 4);
  qel::vml_set_status(n < 0 ? VML_STATUS_BADSIZE : VML_STATUS_BADMEM);
}

/// What a vector-math entry does. The length comes by value, as the trace takes it, so that a plain call ends
/// in a jump.
struct vector_shape {
  static void run(const char*, operation* carry_out, const char* reported, std::size_t length,
                  const double* a, const double* b, double* r) {
    const int n = static_cast<int>(length);
    if (n == 0) return;
    if (n < 0 || a == nullptr || b == nullptr || r == nullptr) [[unlikely]] {
      return refuse(reported, n, a, b);
    }
    carry_out(n, a, b, r);
  }
};
constexpr qel::entry::entry_call<vector_shape> call_vector;

struct reported_name {
  const char* text;
  operator const char*() const { return text; }
};
constexpr std::size_t length(int n) { return static_cast<std::size_t>(n); }
constexpr reported_name kDiv{"vdDiv"}, kMul{"vdMul"}, kSub{"vdSub"};

}  // namespace

extern "C" {

void vdDiv(int n, const double* a, const double* b, double* r) {
  call_vector(__func__, qel::core::vd_div, kDiv, length(n), a, b, r);
}
void vddiv(const int* n, const double* a, const double* b, double* r) {
  call_vector(__func__, qel::core::vd_div, kDiv, length(*n), a, b, r);
}
void vdMul(int n, const double* a, const double* b, double* r) {
  call_vector(__func__, qel::core::vd_mul, kMul, length(n), a, b, r);
}
void vdSub(int n, const double* a, const double* b, double* r) {
  call_vector(__func__, qel::core::vd_sub, kSub, length(n), a, b, r);
}

QEL_API decltype(vddiv) vddiv_ __attribute__((alias("vddiv")));

unsigned qel_vml_get_mode() { return qel::vml_get_mode(); }
unsigned qel_vml_set_mode(unsigned mode) { return qel::vml_set_mode(mode); }
int qel_vml_get_status() { return qel::vml_state().status; }
int qel_vml_set_status(int status) {
  const int before = qel::vml_state().status;
  qel::vml_set_status(status);
  return before;
}
qel_vml_callback qel_vml_set_callback(qel_vml_callback callback) {
  const qel_vml_callback before = qel::vml_state().callback;
  qel::vml_state().callback = callback;
  return before;
}

}  // extern "C"
