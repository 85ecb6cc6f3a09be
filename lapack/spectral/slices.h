// SPDX-License-Identifier: BSD-3-Clause
// Eigenvectors of packed symmetric matrices, shared out to threads: inverse iteration by groups of
// eigenvalues, and the way back from the tridiagonal matrix by columns. Each slice goes through the plain
// routine with work memory of its own.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstring>

#include "blas/plain/scratch.h"
#include "lapack/factor/elements.h"
#include "service/complex_arithmetic.h"
#include "service/serv.h"

namespace qel::lapack {

struct vector_facts {
  core_int n, vectors;  ///< order of the matrix, vectors wanted
  double work;          ///< operations for one vector, roughly
  int threads;
};
/// Slices of the vectors, one thread each; 1 where threads do not pay.
int plan_vectors(const vector_facts& facts);

/// Operations for one vector, roughly: products with the reflectors of a packed matrix, inverse iteration.
constexpr double packed_q_work(core_int order) {
  return 4 * static_cast<double>(order) * static_cast<double>(order);
}
constexpr double inverse_iteration_work(core_int order) { return 500 * static_cast<double>(order); }

/// plain(first, columns, ap, work) applies the reflectors of `ap`, which it writes to and restores, to
/// columns of C. False if there is one slice only or no memory for copies of ap; nothing is done then.
template <class T, class Plain>
bool multiply_packed_q(core_int order, core_int columns, T* ap, const Plain& plain) {
  const int slices = plan_vectors({order, columns, packed_q_work(order), serv_threads_all()});
  if (slices < 2) return false;
  const core_int packed = order * (order + 1) / 2;
  const plain::scratch<T> memory((packed + columns) * slices);
  if (memory.get() == nullptr) return false;
#pragma omp parallel for num_threads(slices) schedule(static, 1)
  for (int slice = 0; slice < slices; ++slice) {
    T* const copy = memory.get() + (packed + columns) * slice;
    std::memcpy(static_cast<void*>(copy), ap, static_cast<size_t>(packed) * sizeof(T));
    const core_int first = columns * slice / slices, end = columns * (slice + 1) / slices;
    plain(first, end - first, copy, copy + packed);
  }
  return true;
}

/// Eigenvalues ascend within blocks, blocks ascend: as inverse iteration demands it.
template <class R, class Int>
bool in_order(core_int vectors, const R* w, const Int* iblock) {
  for (core_int i = 1; i < vectors; ++i) {
    const Int before = element(iblock + i - 1), own = element(iblock + i);
    if (own < before || (own == before && element(w + i) < element(w + i - 1))) return false;
  }
  return true;
}

/// True if vectors `at` - 1 and `at` need not be made orthogonal to each other: other blocks of the matrix,
/// or eigenvalues so far apart that inverse iteration does not look back.
template <class R, class Int>
bool independent(core_int at, const R* w, const Int* iblock, R norm) {
  if (element(iblock + at) != element(iblock + at - 1)) return true;
  return std::fabs(element(w + at) - element(w + at - 1)) > R(0.001) * norm;
}

/// plain(first, vectors, work, iwork, ifail, info) finds vectors by inverse iteration. Slices begin where a
/// vector does not depend on the one before. Failures are numbered as for one call. False if there is one
/// slice only or no memory; nothing is done then.
template <class R, class Int, class Plain>
bool iterate_inversely(core_int n, core_int vectors, const R* d, const R* e, const R* w, const Int* iblock,
                       Int* ifail, Int* info, const Plain& plain) {
  constexpr int kMostSlices = 64;
  const int slices =
      std::min(kMostSlices, plan_vectors({n, vectors, inverse_iteration_work(n), serv_threads_all()}));
  if (slices < 2) return false;
  const core_int reals = 5 * n,
                 bytes = reals * static_cast<core_int>(sizeof(R)) + n * static_cast<core_int>(sizeof(Int));
  const core_int padded = (bytes + 63) / 64 * 64;
  const plain::scratch<char> memory(padded * slices);
  if (memory.get() == nullptr) return false;

  // No block's norm is larger: so no two vectors are taken for independent that the routine would compare.
  R norm{};
  for (core_int i = 0; i < n; ++i) {
    const R before = i > 0 ? std::fabs(element(e + i - 1)) : R{};
    const R behind = i + 1 < n ? std::fabs(element(e + i)) : R{};
    norm = std::max(norm, std::fabs(element(d + i)) + before + behind);
  }
  core_int begin[kMostSlices + 1] = {};
  for (int slice = 1; slice < slices; ++slice) {
    core_int at = std::max(vectors * slice / slices, begin[slice - 1]);
    while (at > 0 && at < vectors && !independent(at, w, iblock, norm)) ++at;
    begin[slice] = at;
  }
  begin[slices] = vectors;

  Int failed[kMostSlices] = {};
#pragma omp parallel for num_threads(slices) schedule(static, 1)
  for (int slice = 0; slice < slices; ++slice) {
    const core_int first = begin[slice], count = begin[slice + 1] - first;
    if (count == 0) continue;
    char* const own = memory.get() + padded * slice;
    R* const work = reinterpret_cast<R*>(own);
    plain(first, count, work, reinterpret_cast<Int*>(work + reals), ifail + first, &failed[slice]);
  }
  Int total = 0;
  for (int slice = 0; slice < slices; ++slice) {
    for (Int i = 0; i < failed[slice]; ++i) {
      set(ifail + total++, static_cast<Int>(element(ifail + begin[slice] + i) + begin[slice]));
    }
  }
  for (core_int i = total; i < vectors; ++i) set(ifail + i, Int{0});
  *info = total;
  return true;
}

}  // namespace qel::lapack
