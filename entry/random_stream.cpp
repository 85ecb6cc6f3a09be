// SPDX-License-Identifier: BSD-3-Clause
// Entries of the random streams, which test their own arguments.
#include "entry/reports.h"
#include "entry/shapes.h"
#include "qel/rng.h"
#include "vector/rng/stream.h"

namespace {

using qel::stream_head;
using qel::entry::report_as_it_stands;

stream_head** head_of(qel_random_stream_handle* stream) { return reinterpret_cast<stream_head**>(stream); }
stream_head* head_of(qel_random_stream_handle stream) { return reinterpret_cast<stream_head*>(stream); }

/// Runs a function with the call's arguments.
struct plain_shape {
  template <class R, class... P, class... A>
  static R run(const char*, R (*function)(P...), A&... args) {
    return function(args...);
  }
};
constexpr qel::entry::entry_call<plain_shape> call_plain;

int make(qel_random_stream_handle* stream, const int* brng, unsigned seed) {
  if (qel::is_abstract_generator(*brng)) {
    report_as_it_stands("vslNewStream", 2);
    return QEL_RNG_INVALID_GENERATOR;
  }
  return qel::new_stream(head_of(stream), *brng, seed);
}

int release(qel_random_stream_handle* stream) { return qel::delete_stream(head_of(stream)); }

int fill(const int* method, qel_random_stream_handle stream, const int* n, double* r, double a, double b) {
  const auto [status, position] = qel::check_uniform(*method, head_of(stream), *n, r, a, b);
  if (position != 0) report_as_it_stands("vdRngUniform", position);
  if (status != QEL_RNG_OK || *n == 0) return status;
  return qel::fill_uniform(*method, head_of(stream), *n, r, a, b);
}

}  // namespace

extern "C" {

int vslNewStream(qel_random_stream_handle* stream, int brng, unsigned seed) {
  return call_plain(__func__, make, stream, &brng, seed);
}
int vslDeleteStream(qel_random_stream_handle* stream) { return call_plain(__func__, release, stream); }
int vdRngUniform(int method, qel_random_stream_handle stream, int n, double* r, double a, double b) {
  return call_plain(__func__, fill, &method, stream, &n, r, a, b);
}

}  // extern "C"
