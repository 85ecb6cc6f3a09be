// SPDX-License-Identifier: BSD-3-Clause
#include "tests/whole/entry_families.h"

#include <bit>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <random>

#include "qel/qel.h"
#include "tests/whole/object_families.h"

namespace qel::test {
namespace {

constexpr int kOrder = 24;  // above the block sizes at which LAPACK's small routines change their way
constexpr size_t kCells = size_t{kOrder} * kOrder;

/// Memory at the same distance from every vector's alignment, on which the order of sums may hang.
template <class T>
struct aligned_allocator {
  using value_type = T;
  static constexpr std::align_val_t kAlignment{64};
  T* allocate(size_t count) { return static_cast<T*>(::operator new(count * sizeof(T), kAlignment)); }
  void deallocate(T* pointer, size_t) { ::operator delete(pointer, kAlignment); }
  bool operator==(const aligned_allocator&) const = default;
};
template <class T>
using aligned_vector = std::vector<T, aligned_allocator<T>>;
using doubles = aligned_vector<double>;

/// Uniform in -1..1; seed and stream together choose the numbers.
doubles numbers(size_t count, unsigned seed, unsigned stream) {
  std::seed_seq both{seed, stream};
  std::mt19937 generator(both);
  doubles values(count);
  for (double& value : values) value = 2 * (static_cast<double>(generator()) / 4294967296.0) - 1;
  return values;
}

/// A square matrix with a heavy diagonal, so that triangles of it can be solved with.
doubles heavy_matrix(unsigned seed, unsigned stream) {
  doubles a = numbers(kCells, seed, stream);
  for (size_t i = 0; i < kOrder; ++i) a[i * (kOrder + 1)] += 8;
  return a;
}

template <class Values>
void append(result_bits& bits, const Values& values) {
  for (const auto& value : values) {
    if constexpr (sizeof value == sizeof(uint64_t)) {
      bits.push_back(std::bit_cast<uint64_t>(value));
    } else {
      bits.push_back(static_cast<uint64_t>(value));
    }
  }
}
template <class... Values>
result_bits bits_of(const Values&... values) {
  result_bits bits;
  (append(bits, values), ...);
  return bits;
}

_QEL_Complex16* as_complex(doubles& values) { return reinterpret_cast<_QEL_Complex16*>(values.data()); }

constexpr int n = kOrder, one = 1, three = 3;
constexpr double kAlpha = 1.25, kBeta = -0.5;

result_bits run_dot(unsigned seed) {
  const int length = 1003, two = 2, half = 501;
  const doubles x = numbers(1003, seed, 1), y = numbers(1003, seed, 2);
  return bits_of(
      doubles{ddot(&length, x.data(), &one, y.data(), &one), ddot(&half, x.data(), &two, y.data(), &one)});
}
result_bits run_gemv(unsigned seed) {
  const doubles a = numbers(kCells, seed, 1), x = numbers(kOrder, seed, 2);
  doubles y = numbers(kOrder, seed, 3);
  dgemv("T", &n, &n, &kAlpha, a.data(), &n, x.data(), &one, &kBeta, y.data(), &one);
  return bits_of(y);
}
result_bits run_gemm(unsigned seed) {
  const doubles a = numbers(kCells, seed, 1), b = numbers(kCells, seed, 2);
  doubles c = numbers(kCells, seed, 3);
  dgemm("N", "T", &n, &n, &n, &kAlpha, a.data(), &n, b.data(), &n, &kBeta, c.data(), &n);
  return bits_of(c);
}
result_bits run_complex_gemm(unsigned seed) {
  doubles a = numbers(2 * kCells, seed, 1), b = numbers(2 * kCells, seed, 2),
          c = numbers(2 * kCells, seed, 3);
  const _QEL_Complex16 alpha{1, -2}, beta{0, 1};
  zgemm("C", "N", &n, &n, &n, &alpha, as_complex(a), &n, as_complex(b), &n, &beta, as_complex(c), &n);
  return bits_of(c);
}
result_bits run_trsm(unsigned seed) {
  const doubles a = heavy_matrix(seed, 1);
  doubles b = numbers(kCells, seed, 2);
  dtrsm("R", "L", "N", "N", &n, &n, &kAlpha, a.data(), &n, b.data(), &n);
  return bits_of(b);
}
result_bits run_getrf(unsigned seed) {
  doubles a = numbers(kCells, seed, 1);
  std::vector<int> pivots(kOrder);
  int info = -1;
  dgetrf(&n, &n, a.data(), &n, pivots.data(), &info);
  return bits_of(a, pivots, std::vector<int>{info});
}
result_bits run_gesv(unsigned seed) {
  doubles a = numbers(kCells, seed, 1), b = numbers(3 * kOrder, seed, 2);
  std::vector<int> pivots(kOrder);
  int info = -1;
  dgesv(&n, &three, a.data(), &n, pivots.data(), b.data(), &n, &info);
  return bits_of(b, pivots, std::vector<int>{info});
}
result_bits run_band(unsigned seed) {
  const int kl = 2, ku = 1, rows = 2 * kl + ku + 1;
  doubles ab = numbers(size_t{rows} * kOrder, seed, 1), b = numbers(3 * kOrder, seed, 2);
  std::vector<int> pivots(kOrder);
  int factored = -1, solved = -1;
  dgbtrf(&n, &n, &kl, &ku, ab.data(), &rows, pivots.data(), &factored);
  dgbtrs("N", &n, &kl, &ku, &three, ab.data(), &rows, pivots.data(), b.data(), &n, &solved);
  return bits_of(b, std::vector<int>{factored, solved});
}
result_bits run_least_squares(unsigned seed) {
  doubles a = numbers(kCells, seed, 1), b = numbers(3 * kOrder, seed, 2), work(64 * kOrder);
  const int columns = kOrder / 2, lwork = 64 * kOrder;
  int info = -1;
  dgels("N", &n, &columns, &three, a.data(), &n, b.data(), &n, work.data(), &lwork, &info);
  return bits_of(b, std::vector<int>{info});
}
result_bits run_gesdd(unsigned seed) {
  doubles a = numbers(kCells, seed, 1), s(kOrder), u(kCells), vt(kCells), work(16 * kCells);
  const int lwork = 16 * kOrder * kOrder;
  std::vector<int> iwork(8 * kOrder);
  int info = -1;
  dgesdd("A", &n, &n, a.data(), &n, s.data(), u.data(), &n, vt.data(), &n, work.data(), &lwork, iwork.data(),
         &info);
  return bits_of(s, u, vt, std::vector<int>{info});
}
result_bits run_geevx(unsigned seed) {
  doubles a = numbers(kCells, seed, 1), wr(kOrder), wi(kOrder), vl(kCells), vr(kCells), scale(kOrder),
          rconde(kOrder), rcondv(kOrder), work(16 * kCells);
  const int lwork = 16 * kOrder * kOrder;
  std::vector<int> iwork(2 * kOrder);
  int ilo = 0, ihi = 0, info = -1;
  double norm = 0;
  dgeevx("B", "V", "V", "B", &n, a.data(), &n, wr.data(), wi.data(), vl.data(), &n, vr.data(), &n, &ilo, &ihi,
         scale.data(), &norm, rconde.data(), rcondv.data(), work.data(), &lwork, iwork.data(), &info);
  return bits_of(wr, wi, vl, vr, rconde, rcondv, doubles{norm}, std::vector<int>{ilo, ihi, info});
}
result_bits run_rank_revealing(unsigned seed) {
  doubles a = numbers(kCells, seed, 1), b = numbers(3 * kOrder, seed, 2), work(64 * kOrder);
  const int lwork = 64 * kOrder;
  const double small = 1e-8;
  std::vector<int> order(kOrder);
  int rank = 0, info = -1;
  dgelsy(&n, &n, &three, a.data(), &n, b.data(), &n, order.data(), &small, &rank, work.data(), &lwork, &info);
  return bits_of(b, order, std::vector<int>{rank, info});
}
result_bits run_packed(unsigned seed) {
  doubles packed = numbers(kCells, seed, 1), b = numbers(3 * kOrder, seed, 2);
  std::vector<int> pivots(kOrder);
  int factored = -1, solved = -1;
  dsptrf("U", &n, packed.data(), pivots.data(), &factored);
  dsptrs("U", &n, &three, packed.data(), pivots.data(), b.data(), &n, &solved);
  return bits_of(b, pivots, std::vector<int>{factored, solved});
}
result_bits run_spevx(unsigned seed) {
  doubles packed = numbers(kCells, seed, 1), w(kOrder), z(kCells), work(8 * kOrder);
  std::vector<int> iwork(5 * kOrder), fail(kOrder);
  const int last = kOrder / 2;
  const double none = 0;
  int found = 0, info = -1;
  dspevx("V", "I", "L", &n, packed.data(), &none, &none, &one, &last, &none, &found, w.data(), z.data(), &n,
         work.data(), iwork.data(), fail.data(), &info);
  return bits_of(w, z, std::vector<int>{found, info});
}
result_bits run_lange(unsigned seed) {
  const doubles a = numbers(kCells, seed, 1);
  doubles norms, work(kOrder);
  for (const char* norm : {"M", "1", "I", "F"})
    norms.push_back(dlange(norm, &n, &n, a.data(), &n, work.data()));
  return bits_of(norms);
}
result_bits run_omatcopy(unsigned seed) {
  const doubles a = numbers(kCells, seed, 1);
  doubles b(kCells);
  QEL_Domatcopy('C', 'T', kOrder, kOrder, kAlpha, a.data(), kOrder, b.data(), kOrder);
  return bits_of(b);
}
result_bits run_sparse(unsigned seed) {
  const doubles x = numbers(kOrder, seed, 1);
  doubles y = numbers(kOrder, seed, 2), gathered(kOrder);
  std::vector<int> places(kOrder);
  for (int k = 0; k < kOrder; ++k) places[static_cast<size_t>(k)] = 5 * k % kOrder + 1;
  const double sum = ddoti(&n, x.data(), places.data(), y.data());
  daxpyi(&n, &kAlpha, x.data(), places.data(), y.data());
  dgthrz(&n, y.data(), gathered.data(), places.data());
  return bits_of(doubles{sum}, y, gathered);
}

template <std::vector<double> (*Run)(unsigned)>
result_bits run_object(unsigned seed) {
  return bits_of(Run(seed));
}

}  // namespace

const std::vector<entry_family>& entry_families() {
  static const std::vector<entry_family> families = {
      {"dot", run_dot},
      {"gemv", run_gemv},
      {"gemm", run_gemm},
      {"zgemm", run_complex_gemm},
      {"trsm", run_trsm},
      {"getrf", run_getrf},
      {"gesv", run_gesv},
      {"gbtrf", run_band},
      {"gels", run_least_squares},
      {"gelsy", run_rank_revealing},
      {"sptrf", run_packed},
      {"gesdd", run_gesdd},
      {"geevx", run_geevx},
      {"spevx", run_spevx},
      {"lange", run_lange},
      {"omatcopy", run_omatcopy},
      {"sparse", run_sparse},
      {"row form", run_object<run_row_form>, true},
      {"complex transform", run_object<run_complex_transform>, true},
      {"real transform", run_object<run_real_transform>, true},
      {"convolution", run_object<run_convolution>, true},
      {"direct solver", run_object<run_direct_solver>, true},
      {"simpler solver", run_object<run_simpler_solver>, true},
      {"vector math", run_object<run_vector_math>, true},
      {"random stream", run_object<run_random_stream>, true},
      {"least squares", run_object<run_least_squares_fit>, true},
  };
  return families;
}

const entry_family& family_named(const char* name) {
  for (const entry_family& family : entry_families()) {
    if (std::strcmp(family.name, name) == 0) return family;
  }
  std::abort();
}

std::vector<result_bits> run_all_families(unsigned seed, unsigned first) {
  const std::vector<entry_family>& families = entry_families();
  std::vector<result_bits> results(families.size());
  for (size_t turn = 0; turn < families.size(); ++turn) {
    const size_t family = (first + turn) % families.size();
    results[family] = families[family].run(seed);
  }
  return results;
}

}  // namespace qel::test
