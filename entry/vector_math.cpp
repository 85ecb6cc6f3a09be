// SPDX-License-Identifier: BSD-3-Clause
// Entries of vector math, which test their own arguments, and of its state.
#include "entry/reports.h"
#include "entry/shapes.h"
#include "qel/vml.h"
#include "vector/vml/state.h"
#include "vector/vml/vml.h"

namespace {

using operation = void(int n, const double* a, const double* b, double* r);

/// Where a bad argument stands, 0 if there is none; the status that goes with it.
struct bad_argument {
  int position, status;
};
bad_argument find_bad(int n, const double* a, const double* b, const double* r) {
  if (n < 0) return {1, VML_STATUS_BADSIZE};
  if (n == 0) return {0, VML_STATUS_OK};
  const int position = a == nullptr ? 2 : b == nullptr ? 3 : r == nullptr ? 4 : 0;
  return {position, position == 0 ? VML_STATUS_OK : VML_STATUS_BADMEM};
}

/// What a vector-math entry does: it reports by its name in its own case, and leaves the status.
struct vector_shape {
  static void run(const char*, operation* carry_out, const char* reported, const int* n, const double* a,
                  const double* b, double* r) {
    const bad_argument bad = find_bad(*n, a, b, r);
    if (bad.position != 0) [[unlikely]] {
      qel::entry::report_as_it_stands(reported, bad.position);
      return qel::vml_set_status(bad.status);
    }
    if (*n > 0) carry_out(*n, a, b, r);
  }
};
constexpr qel::entry::entry_call<vector_shape> call_vector;

struct reported_name {
  const char* text;
  operator const char*() const { return text; }
};
constexpr reported_name kDiv{"vdDiv"}, kMul{"vdMul"}, kSub{"vdSub"};

}  // namespace

extern "C" {

void vdDiv(int n, const double* a, const double* b, double* r) {
  call_vector(__func__, qel::core::vd_div, kDiv, &n, a, b, r);
}
void vddiv(const int* n, const double* a, const double* b, double* r) {
  call_vector(__func__, qel::core::vd_div, kDiv, n, a, b, r);
}
void vdMul(int n, const double* a, const double* b, double* r) {
  call_vector(__func__, qel::core::vd_mul, kMul, &n, a, b, r);
}
void vdSub(int n, const double* a, const double* b, double* r) {
  call_vector(__func__, qel::core::vd_sub, kSub, &n, a, b, r);
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
