// SPDX-License-Identifier: BSD-3-Clause
#include "tavik/kernel/vector_math_functions.h"

#include "facade/calls.h"
#include "qel/rng.h"
#include "qel/vml.h"

namespace Tavik::Kernel {

void VectorMathFunctions::div(int n, const Array<double>& a, const Array<double>& b, const Array<double>& y) {
  vdDiv(n, array_pointer(a), array_pointer(b), array_pointer(y));
}
void VectorMathFunctions::mul(int n, const Array<double>& a, const Array<double>& b, const Array<double>& y) {
  vdMul(n, array_pointer(a), array_pointer(b), array_pointer(y));
}
void VectorMathFunctions::sub(int n, const Array<double>& a, const Array<double>& b, const Array<double>& y) {
  vdSub(n, array_pointer(a), array_pointer(b), array_pointer(y));
}

void DotNetBlas::UniformRandomNumbers(unsigned seed, double min, double max, const Array<double>& deviants) {
  double* const first = array_pointer(deviants);
  qel_random_stream_handle stream = nullptr;
  vslNewStream(&stream, QEL_BRNG_R250, seed);
  vdRngUniform(QEL_RNG_UNIFORM_PLAIN, stream, deviants.Length(), first, min, max);
  vslDeleteStream(&stream);
}

}  // namespace Tavik::Kernel
