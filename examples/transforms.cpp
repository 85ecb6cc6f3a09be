// SPDX-License-Identifier: BSD-3-Clause
// A two-dimensional transform and back, and what a bad configuration throws.
#include "tavik/kernel/fft_kernel.h"
#include "tavik/kernel/fft_manager.h"

#include "check.h"

using namespace Tavik::Core;

int main() {
  Tavik::Kernel::FFTManager manager;
  manager.ConfigureFFTManager(FFTPrecision::Double, FFTDomain::Complex, Array<int>{6, 10}, 2);
  manager.SetBackwardScale(1.0 / 60);

  const Array2D<DoubleComplex> data(6, 10);
  data(2, 3) = {1, 0};  // a point: a wave in the spectrum, of amplitude 1 everywhere
  Tavik::Kernel::FFTKernel<DoubleComplex> kernel;
  kernel.Forward2DFFT(manager, data);
  const DoubleComplex z = data(4, 7);
  check("an amplitude", std::hypot(z.Real, z.Imag), 1, 1e-14);
  kernel.Backward2DFFT(manager, data);
  check("the point", data(2, 3).Real, 1, 1e-14);
  check("another place", data(0, 0).Real, 0, 1e-14);

  try {
    Tavik::Kernel::FFTManager impossible;
    impossible.ConfigureFFTManager(FFTPrecision::Double, FFTDomain::Complex, Array<int>{0}, 1);
    std::printf("a transform of no elements?\n");
    return 1;
  } catch (const FFTKernelException& error) {
    std::printf("%s (status %d)\n", error.what(), error.Status);
  }
  return 0;
}
