// SPDX-License-Identifier: BSD-3-Clause
// LAPACK's clocks: processor seconds of this process outside the kernel. LAPACK's test programs and old
// timing programs take differences of them. They stand here since the archive's own need the Fortran run
// time.
#include <sys/resource.h>

namespace qel::dropin {

extern "C" {

#pragma GCC visibility push(default)
float second_();
double dsecnd_();
#pragma GCC visibility pop

double dsecnd_() {
  rusage usage{};
  if (getrusage(RUSAGE_SELF, &usage) != 0) return 0;
  return static_cast<double>(usage.ru_utime.tv_sec) + 1e-6 * static_cast<double>(usage.ru_utime.tv_usec);
}

float second_() { return static_cast<float>(dsecnd_()); }

}  // extern "C"

}  // namespace qel::dropin
