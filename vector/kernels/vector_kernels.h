// SPDX-License-Identifier: BSD-3-Clause
// The kernels of vector math and of random streams. Each processor type has all of them, in a namespace of
// its own, and a two-letter code that is part of their names. Arrays may lie at any address.
#pragma once

#include <stdint.h>

namespace qel {

/// The error path of a kernel: status, the element's index, the call's arrays, the routine's name. A reaction
/// may change r1[index] and r2[index].
void vml_error(int status, int index, const double* a, const double* b, double* r1, double* r2,
               const char* name);

/// r[i] = a[i] op b[i] for i in 0 .. n - 1; r may be a or b.
using vml_kernel = void(int n, const double* a, const double* b, double* r);

inline constexpr int kR250Words = 250;  ///< the register's length
inline constexpr int kR250Lag = 103;    ///< how far the partner word lies ahead of the one to be replaced

/// The register of the R250 generator: word p becomes x[p] ^ x[q], which is the output; then both advance.
struct r250_register {
  uint32_t x[kR250Words];
  uint32_t p, q;
};
/// r[i] = a + w scale with the next n words w.
using r250_fill_kernel = void(r250_register& state, int n, double* r, double a, double scale);
/// r[i] = min(b, max(a, r[i])).
using clamp_kernel = void(int n, double* r, double a, double b);

// Division in its three accuracies (HA, 50: low, 26: enhanced performance), which all divide exactly.
#define QEL_VECTOR_KERNELS(type, code)                                                                   \
  namespace type {                                                                                       \
  vml_kernel qel_vml_core_##code##_vml_dDiv_HA, qel_vml_core_##code##_vml_dDiv_50,                       \
      qel_vml_core_##code##_vml_dDiv_26, qel_vml_core_##code##_vml_dMul, qel_vml_core_##code##_vml_dSub; \
  r250_fill_kernel qel_vsl_core_##code##_r250_fill;                                                      \
  clamp_kernel qel_vsl_core_##code##_clamp;                                                              \
  }

QEL_VECTOR_KERNELS(t0_ex, ex)  // generic
QEL_VECTOR_KERNELS(t1_e7, e7)  // the selected vendor's baseline
QEL_VECTOR_KERNELS(t2_u8, u8)  // SSSE3
QEL_VECTOR_KERNELS(t3_y8, y8)  // SSE4.1
QEL_VECTOR_KERNELS(t4_h8, h8)  // SSE4.2
QEL_VECTOR_KERNELS(t5_e9, e9)  // AVX
QEL_VECTOR_KERNELS(t6_n6, n6)  // native: AVX2 and FMA
QEL_VECTOR_KERNELS(t7_n7, n7)  // native: AVX-512

#undef QEL_VECTOR_KERNELS

}  // namespace qel
