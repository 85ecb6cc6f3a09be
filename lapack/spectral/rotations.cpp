// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/spectral/rotations.h"

#include <algorithm>

#include "lapack/factor/native_kernels.h"
#include "lapack/four_types.h"
#include "service/serv.h"

namespace qel::lapack {

int plan_rotations(const rotation_facts& facts) {
  constexpr core_int kWorkToFork = 30000;  // rotated pairs of a slice
  constexpr core_int kThinnest = 64;
  const core_int most = std::min({facts.along * facts.count / kWorkToFork, facts.count / kThinnest,
                                  static_cast<core_int>(facts.threads)});
  return most < 2 ? 1 : static_cast<int>(most);
}

template <class T>
bool rotate_neighbours(bool left, bool forward, core_int m, core_int n, const real_of<T>* cosines,
                       const real_of<T>* sines, T* a, core_int lda) {
  const factor_kernels<T>* const native = native_factor_kernels<T>();
  if (native == nullptr) return false;
  const core_int along = (left ? m : n) - 1, count = left ? n : m;
  if (along < 1) return true;
  const int slices = plan_rotations({along, count, serv_threads_all()});
  if (slices == 1) {
    native->rotate(left, forward, m, n, cosines, sines, a, lda);
    return true;
  }
#pragma omp parallel for num_threads(slices) schedule(static, 1)
  for (int slice = 0; slice < slices; ++slice) {
    const core_int first = count * slice / slices, size = count * (slice + 1) / slices - first;
    if (left) {
      native->rotate(true, forward, m, size, cosines, sines, a + first * lda, lda);
    } else {
      native->rotate(false, forward, size, n, cosines, sines, a + first, lda);
    }
  }
  return true;
}

#define QEL_INSTANTIATE(T)                                                                                  \
  template bool rotate_neighbours(bool, bool, core_int, core_int, const real_of<T>*, const real_of<T>*, T*, \
                                  core_int);
QEL_FOUR_TYPES(QEL_INSTANTIATE)
#undef QEL_INSTANTIATE

}  // namespace qel::lapack
