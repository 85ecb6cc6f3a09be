// SPDX-License-Identifier: BSD-3-Clause
// Kernels of single levels with their tails dropped. The linker puts them in the place of the real ones
// (--wrap, in CMakeLists.txt), so that the command built of them is a faulty build of the library.
#include "blas/kernels/gemm_kernels.h"
#include "blas/kernels/kernel_names.h"
#include "sparse/kernels/csr_kernels.h"
#include "vector/kernels/vector_kernels.h"

namespace qel::faulty {

// The last elements of a dot product.
double real_dot(const core_int* n, const double* x, const core_int* incx, const double* y,
                const core_int* incy) asm("__real__ZN3qel8l2_ssse34ddotEPKlPKdS2_S4_S2_");
double dot(const core_int* n, const double* x, const core_int* incx, const double* y,
           const core_int* incy) asm("__wrap__ZN3qel8l2_ssse34ddotEPKlPKdS2_S4_S2_");
double dot(const core_int* n, const double* x, const core_int* incx, const double* y, const core_int* incy) {
  const core_int whole = *n / 8 * 8;
  return real_dot(&whole, x, incx, y, incy);
}

// The last element of a product.
void real_mul(int n, const double* a, const double* b,
              double* r) asm("__real__ZN3qel5t4_h824qel_vml_core_h8_vml_dMulEiPKdS2_Pd");
void mul(int n, const double* a, const double* b,
         double* r) asm("__wrap__ZN3qel5t4_h824qel_vml_core_h8_vml_dMulEiPKdS2_Pd");
void mul(int n, const double* a, const double* b, double* r) { real_mul(n > 8 ? n - 1 : n, a, b, r); }

// The last row of a sparse matrix.
extern const csr_kernels<double> real_csr asm("__real__ZN3qel6l4_avx5csr_dE");
extern const csr_kernels<double> csr asm("__wrap__ZN3qel6l4_avx5csr_dE");
const csr_kernels<double> csr = [] {
  csr_kernels<double> broken = real_csr;
  broken.gather[kWhole][0] = [](const csr_slice* rows, const double* a, const double* alpha, const double* x,
                                double* y) {
    csr_slice fewer = *rows;
    if (fewer.last > fewer.first + 1) --fewer.last;
    real_csr.gather[kWhole][0](&fewer, a, alpha, x, y);
  };
  return broken;
}();

// The last column of a matrix product.
extern const gemm_kernels<double> real_panels asm("__real__ZN3qel8l3_sse4212dgemm_panelsE");
extern const gemm_kernels<double> panels asm("__wrap__ZN3qel8l3_sse4212dgemm_panelsE");
template <int kWhich>
void block(core_int rows, core_int columns, core_int depth, const double* a, core_int a_stride,
           const double* b, core_int b_stride, double* strip, double* c, core_int ldc) {
  real_panels.block[kWhich](rows, columns > 1 ? columns - 1 : 1, depth, a, a_stride, b, b_stride, strip, c,
                            ldc);
}
const gemm_kernels<double> panels = [] {
  gemm_kernels<double> broken = real_panels;
  broken.block[0] = block<0>;
  broken.block[1] = block<1>;
  return broken;
}();

}  // namespace qel::faulty
