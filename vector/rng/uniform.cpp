// SPDX-License-Identifier: BSD-3-Clause
// Uniform numbers: what is tested in front, and the fill.
#include "vector/rng/stream.h"
#include "vector/vml/vector_rows.h"

namespace qel {
namespace {

constinit bind_slot<clamp_kernel> clamp_slot{nullptr};

}  // namespace

checked_status check_uniform(int method, const stream_head* stream, int n, const double* r, double a,
                             double b) {
  if (method < 0) return {QEL_RNG_BAD_ARGUMENT, 1};
  if (const int status = check_stream(stream)) return {status, 2};
  if (n < 0) return {QEL_RNG_BAD_ARGUMENT, 3};
  if (n == 0) return {QEL_RNG_OK, 0};
  if (r == nullptr) return {QEL_RNG_BAD_ARGUMENT, 4};
  if (method != QEL_RNG_UNIFORM_PLAIN && method != QEL_RNG_UNIFORM_CLAMPED) return {QEL_RNG_BAD_ARGUMENT, 1};
  if (!(a < b)) return {QEL_RNG_BAD_ARGUMENT, 5};
  return {QEL_RNG_OK, 0};
}

int fill_uniform(int method, stream_head* stream, int n, double* r, double a, double b) {
  const generator_row* row = find_generator(stream->brng);
  if (row == nullptr) return QEL_RNG_INVALID_GENERATOR;
  const int status = row->fill_double(stream, n, r, a, b);
  if (status >= 0 && (method & QEL_RNG_UNIFORM_CLAMPED) != 0) call_bound<clamp_slot, kClamp>(n, r, a, b);
  return status;
}

}  // namespace qel
