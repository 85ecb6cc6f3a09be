// SPDX-License-Identifier: BSD-3-Clause
// Singular values and eigenvalues of real matrices beside the peers, all vectors wanted.
#include "bench/lapack/matrices.h"

namespace qel::bench {
namespace {

template <class T>
using gesvd_fn = void(const char* jobu, const char* jobvt, const int* m, const int* n, T* a, const int* lda,
                      T* s, T* u, const int* ldu, T* vt, const int* ldvt, T* work, const int* lwork,
                      int* info, size_t, size_t);
template <class T>
using gesdd_fn = void(const char* jobz, const int* m, const int* n, T* a, const int* lda, T* s, T* u,
                      const int* ldu, T* vt, const int* ldvt, T* work, const int* lwork, int* iwork,
                      int* info, size_t);
template <class T>
using geevx_fn = void(const char* balanc, const char* jobvl, const char* jobvr, const char* sense,
                      const int* n, T* a, const int* lda, T* wr, T* wi, T* vl, const int* ldvl, T* vr,
                      const int* ldvr, int* ilo, int* ihi, T* scale, T* abnrm, T* rconde, T* rcondv, T* work,
                      const int* lwork, int* iwork, int* info, size_t, size_t, size_t, size_t);
template <class T>
using spevx_fn = void(const char* jobz, const char* range, const char* uplo, const int* n, T* ap, const T* vl,
                      const T* vu, const int* il, const int* iu, const T* abstol, int* m, T* w, T* z,
                      const int* ldz, T* work, int* iwork, int* ifail, int* info, size_t, size_t, size_t);

template <class T>
void register_type(int n) {
  const auto size = static_cast<size_t>(n), square = size * size;
  compare<gesvd_fn<T>>(title<T>("gesvd", n), symbol<T>("gesvd").c_str(), {22 * cube<T>(n), 0},
                       [=](gesvd_fn<T>* gesvd, benchmark::State& state) {
                         const std::vector<T> a = random_matrix<T>(n, n);
                         std::vector<T> f = a, s(size), u(square), v(square);
                         int info = 0;
                         const auto call = [&](T* work, int length) {
                           gesvd("A", "A", &n, &n, f.data(), &n, s.data(), u.data(), &n, v.data(), &n, work,
                                 &length, &info, 1, 1);
                         };
                         std::vector<T> work = queried_work<T>(call);
                         for (auto _ : state) {
                           f = a;
                           call(work.data(), static_cast<int>(work.size()));
                         }
                       });
  compare<gesdd_fn<T>>(title<T>("gesdd", n), symbol<T>("gesdd").c_str(), {22 * cube<T>(n), 0},
                       [=](gesdd_fn<T>* gesdd, benchmark::State& state) {
                         const std::vector<T> a = random_matrix<T>(n, n);
                         std::vector<T> f = a, s(size), u(square), v(square);
                         std::vector<int> iwork(8 * size);
                         int info = 0;
                         const auto call = [&](T* work, int length) {
                           gesdd("A", &n, &n, f.data(), &n, s.data(), u.data(), &n, v.data(), &n, work,
                                 &length, iwork.data(), &info, 1);
                         };
                         std::vector<T> work = queried_work<T>(call);
                         for (auto _ : state) {
                           f = a;
                           call(work.data(), static_cast<int>(work.size()));
                         }
                       });
  compare<geevx_fn<T>>(title<T>("geevx", n), symbol<T>("geevx").c_str(), {25 * cube<T>(n), 0},
                       [=](geevx_fn<T>* geevx, benchmark::State& state) {
                         const std::vector<T> a = random_matrix<T>(n, n);
                         std::vector<T> f = a, wr(size), wi(size), vl(square), vr(square), scale(size),
                                        rconde(size), rcondv(size);
                         std::vector<int> iwork(2 * size);
                         int ilo = 0, ihi = 0, info = 0;
                         T norm{};
                         const auto call = [&](T* work, int length) {
                           geevx("B", "V", "V", "N", &n, f.data(), &n, wr.data(), wi.data(), vl.data(), &n,
                                 vr.data(), &n, &ilo, &ihi, scale.data(), &norm, rconde.data(), rcondv.data(),
                                 work, &length, iwork.data(), &info, 1, 1, 1, 1);
                         };
                         std::vector<T> work = queried_work<T>(call);
                         for (auto _ : state) {
                           f = a;
                           call(work.data(), static_cast<int>(work.size()));
                         }
                       });
  // All vectors, and a range of them, which goes by bisection and inverse iteration.
  for (const char* range : {"A", "I"}) {
    compare<spevx_fn<T>>(title<T>("spevx", n) + "/" + range, symbol<T>("spevx").c_str(), {9 * cube<T>(n), 0},
                         [=](spevx_fn<T>* spevx, benchmark::State& state) {
                           const std::vector<T> a = random_matrix<T>(n, n);
                           std::vector<T> packed(square / 2 + size), w(size), z(square), work(8 * size);
                           std::vector<int> iwork(5 * size), fail(size);
                           const T bound = 0, tolerance = 0;
                           const int first = 1, last = n / 2;
                           int found = 0, info = 0;
                           for (auto _ : state) {
                             std::copy_n(a.begin(), packed.size(), packed.begin());
                             spevx("V", range, "L", &n, packed.data(), &bound, &bound, &first, &last,
                                   &tolerance, &found, w.data(), z.data(), &n, work.data(), iwork.data(),
                                   fail.data(), &info, 1, 1, 1);
                           }
                         });
  }
}

}  // namespace

void register_spectral() {
  for (const int n : {100, 200, 300, 500}) {
    register_type<double>(n);
    register_type<float>(n);
  }
}

}  // namespace qel::bench
