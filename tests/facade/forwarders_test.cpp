// SPDX-License-Identifier: BSD-3-Clause
// The tavik_ forwarders give, bit for bit, what the class operations over the same entries give, in every
// type; and both classes that have them have the same ones.
#include <cstring>

#include "tavik/kernel/matrix_dot_net_blas.h"
#include "tavik/kernel/matrix_support.h"
#include "tests/facade/dense.h"

namespace Tavik::test {
namespace {

using F = Kernel::MatrixSupport;
Kernel::MatrixDotNetBlas matrices;
Kernel::DotNetBlas blas;
constexpr int n = 6, kSides = 2, one = 1, kl = 2, ku = 1, kd = 2;
constexpr char U = 'U', N = 'N', T_ = 'T', L = 'L', V = 'V', A = 'A', S = 'S', norm_letter = '1';

template <class T>
class Forwarders : public testing::Test {};
TYPED_TEST_SUITE(Forwarders, AllTypes);

/// A copy of some values, for one of two ways to change it.
template <class T>
struct twins {
  Array<T> by_class, by_forwarder;
  explicit twins(const Array<T>& from) : by_class(copy_of(from)), by_forwarder(copy_of(from)) {}
  twins(int length, unsigned seed) : twins(random_numbers<T>(length, seed)) {}
  DataBlock<T> block() const { return {by_class, 0}; }
  T* pointer() const { return &by_forwarder[0]; }
  void expect_equal(const char* what) const {
    EXPECT_EQ(std::memcmp(&by_class[0], &by_forwarder[0], sizeof(T) * static_cast<size_t>(by_class.Length())),
              0)
        << what;
  }
};
template <class T>
twins<T> twins_of(const dense& a) {
  return twins<T>(block_of<T>(a, a.rows, 0).Data);
}
template <class... T>
void expect_all_equal(const char* what, const twins<T>&... all) {
  (all.expect_equal(what), ...);
}

TYPED_TEST(Forwarders, OfVectorsAndProducts) {
  using T = TypeParam;
  const T alpha(3), unit(1), zero(0);
  const twins<T> x(n, 1), y(n, 2), z(n, 3), tri(n * n, 4), packed(n * (n + 1) / 2, 5),
      band(n * (kl + ku + 1), 6);
  blas.axpy(n, alpha, x.block(), 1, y.block(), 1);
  F::tavik_axpy(&n, &alpha, x.pointer(), &one, y.pointer(), &one);
  T dot(0);
  if constexpr (is_complex<T>) {
    F::tavik_dotu(&dot, &n, x.pointer(), &one, z.pointer(), &one);
  } else {
    dot = F::tavik_dot(&n, x.pointer(), &one, z.pointer(), &one);
  }
  EXPECT_EQ(widened(dot), widened(blas.dot(n, x.block(), 1, z.block(), 1)));
  matrices.BandedProduct('N', n, n, kl, ku, band.block(), x.block(), 1, y.block(), 1);
  const int ldab = kl + ku + 1;
  F::tavik_gbmv(&N, &n, &n, &kl, &ku, &unit, band.pointer(), &ldab, x.pointer(), &one, &unit, y.pointer(),
                &one);
  expect_all_equal("gbmv", y);
  const int ldk = kd + 1;
  if constexpr (is_complex<T>) {
    matrices.HermitianBandedProduct(n, kd, band.block(), x.block(), 1, y.block(), 1);
    F::tavik_hbmv(&U, &n, &kd, &unit, band.pointer(), &ldk, x.pointer(), &one, &unit, y.pointer(), &one);
    matrices.HermitianProduct(n, packed.block(), x.block(), 1, z.block());
    F::tavik_hpmv(&U, &n, &unit, packed.pointer(), x.pointer(), &one, &zero, z.pointer(), &one);
    expect_all_equal("hbmv, hpmv", y, z);
  } else {
    matrices.SymBandedProduct(n, kd, band.block(), x.block(), 1, y.block(), 1);
    F::tavik_sbmv(&U, &n, &kd, &unit, band.pointer(), &ldk, x.pointer(), &one, &unit, y.pointer(), &one);
    matrices.SymmetricProduct(n, packed.block(), x.block(), 1, z.block());
    F::tavik_spmv(&U, &n, &unit, packed.pointer(), x.pointer(), &one, &zero, z.pointer(), &one);
    expect_all_equal("sbmv, spmv", y, z);
  }
  matrices.UpperTriangularProduct(n, packed.block(), x.block(), 1);
  F::tavik_tpmv(&U, &N, &N, &n, packed.pointer(), x.pointer(), &one);
  matrices.TriangularProduct('U', 'T', n, tri.block(), n, y.block(), 1);
  F::tavik_trmv(&U, &T_, &N, &n, tri.pointer(), &n, y.pointer(), &one);
  expect_all_equal("tpmv, trmv", x, y);
  if constexpr (is_complex<T>) {  // no class operation has the symmetric product of complex matrices
    F::tavik_spmv(&U, &n, &unit, packed.pointer(), z.pointer(), &one, &zero, y.pointer(), &one);
    EXPECT_NE(widened(y.pointer()[0]), widened(x.pointer()[0]));
  }
}

/// Scratch of any kind, of ample size.
template <class T>
struct scratch {
  using Second = std::conditional_t<is_complex<T>, real_of<T>, int>;
  std::vector<T> work = std::vector<T>(400);
  std::vector<Second> second = std::vector<Second>(400);
  std::vector<int> iwork = std::vector<int>(400);
};

/// Pivots of a class operation, zero-based, are those of the forwarder less 1.
void expect_pivots(const Array<int>& by_class, const std::vector<int>& by_forwarder, int shift) {
  for (int i = 0; i < by_class.Length(); ++i)
    EXPECT_EQ(by_class[i] + shift, by_forwarder[static_cast<size_t>(i)]);
}

TYPED_TEST(Forwarders, OfBandAndTridiagonalMatrices) {
  using T = TypeParam;
  using R = real_of<T>;
  const R anorm = 9;
  scratch<T> s;
  int info = -7;
  R rcond = -1;
  const Array<int> pivots(n);
  std::vector<int> core_pivots(n);
  {
    const int ld = 2 * kl + ku + 1;
    const twins<T> ab(ld * n, 7), b(n * kSides, 8);
    EXPECT_EQ(matrices.BandedFact(n, n, kl, ku, ab.block(), ld, pivots),
              F::tavik_gbtrf(&n, &n, &kl, &ku, ab.pointer(), &ld, core_pivots.data(), &info));
    expect_pivots(pivots, core_pivots, 1);
    matrices.SolveFromBandFact('N', n, kl, ku, kSides, ab.block(), ld, pivots, b.block(), n);
    F::tavik_gbtrs(&N, &n, &kl, &ku, &kSides, ab.pointer(), &ld, core_pivots.data(), b.pointer(), &n, &info);
    F::tavik_gbcon(&norm_letter, &n, &kl, &ku, ab.pointer(), &ld, core_pivots.data(), &anorm, &rcond,
                   s.work.data(), s.second.data(), &info);
    EXPECT_EQ(matrices.CondNumberFromBandFact('1', n, kl, ku, ab.block(), ld, pivots, anorm), rcond);
    expect_all_equal("gb", ab, b);
  }
  {
    const int ld = kd + 1;
    dense a = positive_dense<T>(n, 9);
    const twins<T> ab = twins_of<T>(
                       made_of(ld, n, [&](int i, int j) { return i + j >= kd ? a(i + j - kd, j) : wide(); })),
                   b(n * kSides, 10);
    EXPECT_EQ(matrices.SymPDBandFact(n, kd, ab.block(), ld),
              F::tavik_pbtrf(&U, &n, &kd, ab.pointer(), &ld, &info));
    EXPECT_EQ(info, 0);
    matrices.SolveFromSymPDBandFact(n, kd, kSides, ab.block(), ld, b.block(), n);
    F::tavik_pbtrs(&U, &n, &kd, &kSides, ab.pointer(), &ld, b.pointer(), &n, &info);
    F::tavik_pbcon(&U, &n, &kd, ab.pointer(), &ld, &anorm, &rcond, s.work.data(), s.second.data(), &info);
    EXPECT_EQ(matrices.CondNumberFromSymPDBandFact(n, kd, ab.block(), ld, anorm), rcond);
    expect_all_equal("pb", ab, b);
  }
  {
    const twins<T> dl(n, 11), d(n, 12), du(n, 13), du2(n, 14), b(n * kSides, 15);
    EXPECT_EQ(matrices.TriDiagLUFact(n, dl.block(), d.block(), du.block(), du2.block(), pivots),
              F::tavik_gttrf(&n, dl.pointer(), d.pointer(), du.pointer(), du2.pointer(), core_pivots.data(),
                             &info));
    expect_pivots(pivots, core_pivots, 1);
    matrices.SolveTriDiagFromLUFact(n, kSides, dl.block(), d.block(), du.block(), du2.block(), pivots,
                                    b.block(), n);
    F::tavik_gttrs(&N, &n, &kSides, dl.pointer(), d.pointer(), du.pointer(), du2.pointer(),
                   core_pivots.data(), b.pointer(), &n, &info);
    if constexpr (is_complex<T>) {
      F::tavik_gtcon(&norm_letter, &n, dl.pointer(), d.pointer(), du.pointer(), du2.pointer(),
                     core_pivots.data(), &anorm, &rcond, s.work.data(), &info);
    } else {
      F::tavik_gtcon(&norm_letter, &n, dl.pointer(), d.pointer(), du.pointer(), du2.pointer(),
                     core_pivots.data(), &anorm, &rcond, s.work.data(), s.iwork.data(), &info);
    }
    EXPECT_EQ(matrices.CondNumberFromTriDiagLU('1', n, dl.block(), d.block(), du.block(), du2.block(), pivots,
                                               anorm),
              rcond);
    expect_all_equal("gt", dl, d, du, du2, b);
  }
  {
    const twins<R> d(Array<R>(std::vector<R>(n, 4)));
    const twins<T> e(n, 16), b(n * kSides, 17);
    EXPECT_EQ(matrices.SymPDTriDiagFact(n, d.block(), e.block()),
              F::tavik_pttrf(&n, d.pointer(), e.pointer(), &info));
    matrices.SolveSymPDTriDiagFromFact(n, kSides, d.block(), e.block(), b.block(), n);
    if constexpr (is_complex<T>) {
      F::tavik_pttrs(&L, &n, &kSides, d.pointer(), e.pointer(), b.pointer(), &n, &info);
      F::tavik_ptcon(&n, d.pointer(), e.pointer(), &anorm, &rcond, s.second.data(), &info);
    } else {
      F::tavik_pttrs(&n, &kSides, d.pointer(), e.pointer(), b.pointer(), &n, &info);
      F::tavik_ptcon(&n, d.pointer(), e.pointer(), &anorm, &rcond, s.work.data(), &info);
    }
    EXPECT_EQ(matrices.CondNumberFromSymPDTriDiagFact(n, d.block(), e.block(), anorm), rcond);
    expect_all_equal("pt", d, e, b);
  }
}

TYPED_TEST(Forwarders, OfPackedMatrices) {
  using T = TypeParam;
  using R = real_of<T>;
  const R anorm = 9;
  scratch<T> s;
  int info = -7;
  R rcond = -1;
  const Array<int> pivots(n);
  std::vector<int> core_pivots(n);
  const auto packed = [](const dense& a) {
    dense columns(n * (n + 1) / 2, 1);
    for (int j = 0, next = 0; j < n; ++j) {
      for (int i = 0; i <= j; ++i) columns(next++, 0) = a(i, j);
    }
    return twins_of<T>(columns);
  };
  {
    const twins<T> ap(n * (n + 1) / 2, 18), b(n * kSides, 19);
    const int by_class = matrices.SymFact(n, ap.block(), pivots);
    if constexpr (is_complex<T>) {
      EXPECT_EQ(F::tavik_hptrf(&U, &n, ap.pointer(), core_pivots.data(), &info), by_class);
      F::tavik_hptrs(&U, &n, &kSides, ap.pointer(), core_pivots.data(), b.pointer(), &n, &info);
      F::tavik_spcon(&U, &n, ap.pointer(), core_pivots.data(), &anorm, &rcond, s.work.data(), &info);
    } else {
      EXPECT_EQ(F::tavik_sptrf(&U, &n, ap.pointer(), core_pivots.data(), &info), by_class);
      F::tavik_sptrs(&U, &n, &kSides, ap.pointer(), core_pivots.data(), b.pointer(), &n, &info);
      F::tavik_spcon(&U, &n, ap.pointer(), core_pivots.data(), &anorm, &rcond, s.work.data(), s.iwork.data(),
                     &info);
    }
    expect_pivots(pivots, core_pivots, 0);
    matrices.SolveSymFromFact(n, kSides, ap.block(), pivots, b.block(), n);
    EXPECT_EQ(matrices.CondNumberFromSymFact(n, ap.block(), pivots, anorm), rcond);
    EXPECT_EQ(matrices.InverseFromSymFact(n, ap.block(), pivots),
              F::tavik_sptri(&U, &n, ap.pointer(), core_pivots.data(), s.work.data(), &info));
    expect_all_equal("sp", ap, b);
  }
  if constexpr (is_complex<T>) {  // what no class operation calls: the Hermitian and the symmetric other
                                  // halves
    const dense a = positive_dense<T>(n, 20);
    const twins<T> hermitian = packed(a), symmetric = packed(a);
    F::tavik_hptrf(&U, &n, hermitian.pointer(), core_pivots.data(), &info);
    EXPECT_EQ(
        F::tavik_hpcon(&U, &n, hermitian.pointer(), core_pivots.data(), &anorm, &rcond, s.work.data(), &info),
        0);
    EXPECT_GT(rcond, 0);
    EXPECT_EQ(F::tavik_hptri(&U, &n, hermitian.pointer(), core_pivots.data(), s.work.data(), &info), 0);
    EXPECT_EQ(F::tavik_sptrf(&U, &n, symmetric.pointer(), core_pivots.data(), &info), 0);
    const twins<T> b(n, 21);
    EXPECT_EQ(F::tavik_sptrs(&U, &n, &one, symmetric.pointer(), core_pivots.data(), b.pointer(), &n, &info),
              0);
    for (int i = 0; i < n; ++i) {
      wide sum = 0;
      for (int j = 0; j < n; ++j) sum += (i <= j ? a(i, j) : a(j, i)) * widened(b.pointer()[j]);
      EXPECT_LT(std::abs(sum - widened(b.by_class[i])), 100 * kEpsilon<T>);
    }
  }
  {
    const twins<T> ap = packed(positive_dense<T>(n, 22)), b(n * kSides, 23);
    EXPECT_EQ(matrices.SymPDFact(n, ap.block()), F::tavik_pptrf(&U, &n, ap.pointer(), &info));
    matrices.SolveSymPDFromFact(n, kSides, ap.block(), b.block(), n);
    F::tavik_pptrs(&U, &n, &kSides, ap.pointer(), b.pointer(), &n, &info);
    F::tavik_ppcon(&U, &n, ap.pointer(), &anorm, &rcond, s.work.data(), s.second.data(), &info);
    EXPECT_EQ(matrices.CondNumberFromSymPDFact(n, ap.block(), anorm), rcond);
    matrices.InverseFromSymPDFact(n, ap.block());
    F::tavik_pptri(&U, &n, ap.pointer(), &info);
    matrices.SolvePackedUpperTriSystem(n, kSides, ap.block(), b.block(), n);
    F::tavik_tptrs(&U, &N, &N, &n, &kSides, ap.pointer(), b.pointer(), &n, &info);
    F::tavik_tpcon(&norm_letter, &U, &N, &n, ap.pointer(), &rcond, s.work.data(), s.second.data(), &info);
    EXPECT_EQ(matrices.ConditionNumOfPackedUpperTriMat('1', n, ap.block()), rcond);
    matrices.InverseOfPackedLowerTriSystem(n, ap.block());
    F::tavik_tptri(&U, &N, &n, ap.pointer(), &info);
    expect_all_equal("pp, tp", ap, b);
  }
  if constexpr (!is_complex<T>) {
    const twins<T> factor = twins_of<T>(triangle(positive_dense<T>(n, 24), true));
    R triangle_rcond = -1;
    EXPECT_EQ(
        F::tavik_pocon(&U, &n, factor.pointer(), &n, &anorm, &rcond, s.work.data(), s.iwork.data(), &info),
        0);
    EXPECT_EQ(F::tavik_trcon(&norm_letter, &U, &N, &n, factor.pointer(), &n, &triangle_rcond, s.work.data(),
                             s.iwork.data(), &info),
              0);
    EXPECT_GT(rcond, 0);
    EXPECT_GT(triangle_rcond, 0);
  }
}

TYPED_TEST(Forwarders, OfOrthogonalFactorsAndDecompositions) {
  using T = TypeParam;
  using R = real_of<T>;
  const int m = 8;
  scratch<T> s;
  std::vector<T> large(4000);
  std::vector<R> reals(4000);
  const int lwork = 4000;
  int info = -7;
  const twins<T> a(m * n, 25), tau(n, 26), c(m * n, 27), u(m * m, 28), vt(n * n, 29);
  const twins<R> sigma(n, 30);
  // Sizes that the class operations ask for, so that blocks are cut alike.
  const auto best = [](auto run) {
    T size(0);
    run(&size, -1);
    return static_cast<int>(widened(size).real());
  };
  matrices.QRDecomp(m, n, a.block(), m, tau.block());
  if constexpr (is_complex<T>) {
    F::tavik_geqrf(&m, &n, a.pointer(), &m, tau.pointer(), &info);
  } else {
    const int size =
        best([&](T* w, int l) { F::tavik_geqrf(&m, &n, a.pointer(), &m, tau.pointer(), w, &l, &info); });
    F::tavik_geqrf(&m, &n, a.pointer(), &m, tau.pointer(), large.data(), &size, &info);
  }
  expect_all_equal("geqrf", a, tau);
  matrices.MultiplyByQFromQR('L', 'N', m, n, n, a.block(), m, tau.block(), c.block(), m);
  if constexpr (is_complex<T>) {
    F::tavik_unmqr(&L, &N, &m, &n, &n, a.pointer(), &m, tau.pointer(), c.pointer(), &m, &info);
  } else {
    const int size = m * Kernel::MatrixSupport::BLOCKSIZE;
    F::tavik_ormqr(&L, &N, &m, &n, &n, a.pointer(), &m, tau.pointer(), c.pointer(), &m, large.data(), &size,
                   &info);
  }
  matrices.GetQFromQR(m, n, n, a.block(), m, tau.block());
  if constexpr (is_complex<T>) {
    F::tavik_ungqr(&m, &n, &n, a.pointer(), &m, tau.pointer(), &info);
  } else {
    const int size =
        best([&](T* w, int l) { F::tavik_orgqr(&m, &n, &n, a.pointer(), &m, tau.pointer(), w, &l, &info); });
    F::tavik_orgqr(&m, &n, &n, a.pointer(), &m, tau.pointer(), large.data(), &size, &info);
  }
  expect_all_equal("Q", a, c);

  const Array<int> order(n);
  std::vector<int> core_order(n, 0);
  matrices.QRDecompWithPivoting(m, n, a.block(), m, order, tau.block());
  if constexpr (is_complex<T>) {
    F::tavik_geqp3(&m, &n, a.pointer(), &m, core_order.data(), tau.pointer(), reals.data(), &info);
  } else {
    const int size = best([&](T* w, int l) {
      F::tavik_geqp3(&m, &n, a.pointer(), &m, core_order.data(), tau.pointer(), w, &l, &info);
    });
    F::tavik_geqp3(&m, &n, a.pointer(), &m, core_order.data(), tau.pointer(), large.data(), &size, &info);
  }
  expect_pivots(order, core_order, 1);
  expect_all_equal("geqp3", a, tau);

  matrices.SVDFromGeneral('A', 'A', m, n, c.block(), m, sigma.block(), u.block(), m, vt.block(), n);
  if constexpr (is_complex<T>) {
    F::tavik_gesvd(&A, &A, &m, &n, c.pointer(), &m, sigma.pointer(), u.pointer(), &m, vt.pointer(), &n,
                   reals.data(), &info);
  } else {
    const int size = best([&](T* w, int l) {
      F::tavik_gesvd(&A, &A, &m, &n, c.pointer(), &m, sigma.pointer(), u.pointer(), &m, vt.pointer(), &n, w,
                     &l, &info);
    });
    F::tavik_gesvd(&A, &A, &m, &n, c.pointer(), &m, sigma.pointer(), u.pointer(), &m, vt.pointer(), &n,
                   large.data(), &size, &info);
  }
  expect_all_equal("gesvd", u, vt);
  sigma.expect_equal("gesvd");
  matrices.SVDFromGeneralDC('S', m, n, a.block(), m, sigma.block(), u.block(), m, vt.block(), n);
  if constexpr (is_complex<T>) {
    F::tavik_gesdd(&S, &m, &n, a.pointer(), &m, sigma.pointer(), u.pointer(), &m, vt.pointer(), &n,
                   reals.data(), s.iwork.data(), &info);
  } else {
    const int size = best([&](T* w, int l) {
      F::tavik_gesdd(&S, &m, &n, a.pointer(), &m, sigma.pointer(), u.pointer(), &m, vt.pointer(), &n, w, &l,
                     s.iwork.data(), &info);
    });
    F::tavik_gesdd(&S, &m, &n, a.pointer(), &m, sigma.pointer(), u.pointer(), &m, vt.pointer(), &n,
                   large.data(), &size, s.iwork.data(), &info);
  }
  expect_all_equal("gesdd", u, vt);
  sigma.expect_equal("gesdd");

  const twins<T> g(n * n, 31), w(n, 32), wi(n, 33), vl(n * n, 34), vr(n * n, 35);
  const twins<R> conde(n, 36), condv(n, 37);
  const char balance = 'B', sense = 'B';
  int ilo = 0, ihi = 0;
  R abnrm = 0;
  std::vector<R> scale(n);
  if constexpr (is_complex<T>) {
    matrices.GeneralEigDecomp('B', 'V', 'V', 'B', n, g.block(), n, w.block(), vl.block(), n, vr.block(), n,
                              conde.block(), condv.block());
    F::tavik_geevx(&balance, &V, &V, &sense, &n, g.pointer(), &n, w.pointer(), vl.pointer(), &n, vr.pointer(),
                   &n, &ilo, &ihi, scale.data(), &abnrm, conde.pointer(), condv.pointer(), reals.data(),
                   &info);
  } else {
    matrices.GeneralEigDecomp('B', 'V', 'V', 'B', n, g.block(), n, w.block(), wi.block(), vl.block(), n,
                              vr.block(), n, conde.block(), condv.block());
    const int size = (n + 8) * n;
    F::tavik_geevx(&balance, &V, &V, &sense, &n, g.pointer(), &n, w.pointer(), wi.pointer(), vl.pointer(), &n,
                   vr.pointer(), &n, &ilo, &ihi, scale.data(), &abnrm, conde.pointer(), condv.pointer(),
                   large.data(), &size, s.iwork.data(), &info);
  }
  expect_all_equal("geevx", w, wi, vl, vr);
  expect_all_equal("geevx", conde, condv);
  const char right = 'R', none = 'N';
  const twins<T> kept(vr.by_class);
  EXPECT_EQ(F::tavik_gebak(&none, &right, &n, &ilo, &ihi, scale.data(), &n, vr.pointer(), &n, &info), 0);
  expect_all_equal("gebak", kept);

  const twins<T> ap(n * (n + 1) / 2, 38), z(n * n, 39);
  const Array<int> failed(n);
  const R none_real = 0;
  const int none_int = 0;
  int found = 0;
  matrices.SymmetricPackedEigDecomp('V', 'A', n, ap.block(), 0, 0, 0, 0, 0, sigma.block(), z.block(), n,
                                    failed);
  if constexpr (is_complex<T>) {
    F::tavik_hpevx(&V, &A, &U, &n, ap.pointer(), &none_real, &none_real, &none_int, &none_int, &none_real,
                   &found, sigma.pointer(), z.pointer(), &n, large.data(), reals.data(), s.iwork.data(),
                   core_order.data(), &info);
  } else {
    F::tavik_spevx(&V, &A, &U, &n, ap.pointer(), &none_real, &none_real, &none_int, &none_int, &none_real,
                   &found, sigma.pointer(), z.pointer(), &n, large.data(), s.iwork.data(), core_order.data(),
                   &info);
  }
  EXPECT_EQ(found, n);
  expect_all_equal("spevx", ap, z);
  sigma.expect_equal("spevx");
  if constexpr (std::is_same_v<T, double>) {
    const twins<T> f(m * n, 40), b(m * kSides, 41);
    matrices.GeneralLinearLeastSq('N', m, n, kSides, f.by_class, m, b.by_class, m);
    const int size = best([&](T* p, int l) {
      F::tavik_gels(&N, &m, &n, &kSides, f.pointer(), &m, b.pointer(), &m, p, &l, &info);
    });
    F::tavik_gels(&N, &m, &n, &kSides, f.pointer(), &m, b.pointer(), &m, large.data(), &size, &info);
    expect_all_equal("gels", f, b);
  }
  (void)lwork;
}

TEST(ForwardersOfOneType, FindEigenvaluesStepByStep) {
  using T = DoubleComplex;
  const dense a = random_dense<T>(n, n, 42);
  const twins<T> h = twins_of<T>(a), q(n * n, 1), tau(n, 2), w(n, 3), v(n * n, 4);
  std::vector<T> work(100);
  std::vector<double> rwork(100), scale(n);
  int ilo = 0, ihi = 0, info = -7, used = 0;
  const char both = 'B', schur = 'S', right = 'R', back = 'B';
  ASSERT_EQ(F::tavik_gebal(&both, &n, h.pointer(), &n, &ilo, &ihi, scale.data(), &info), 0);
  ASSERT_EQ(F::tavik_gehrd(&n, &ilo, &ihi, h.pointer(), &n, tau.pointer(), &info), 0);
  std::copy_n(h.pointer(), n * n, q.pointer());
  ASSERT_EQ(F::tavik_unghr(&n, &ilo, &ihi, q.pointer(), &n, tau.pointer(), &info), 0);
  ASSERT_EQ(F::tavik_hseqr(&schur, &V, &n, &ilo, &ihi, h.pointer(), &n, w.pointer(), q.pointer(), &n, &info),
            0);
  ASSERT_EQ(F::tavik_trevc(&right, &back, static_cast<int*>(nullptr), &n, h.pointer(), &n, v.pointer(), &n,
                           q.pointer(), &n, &n, &used, work.data(), rwork.data(), &info),
            0);
  ASSERT_EQ(F::tavik_gebak(&both, &right, &n, &ilo, &ihi, scale.data(), &n, q.pointer(), &n, &info), 0);
  const dense vectors = made_of(n, n, [&](int i, int j) { return widened(q.pointer()[i + j * n]); });
  const dense lambda = made_of(n, n, [&](int i, int j) { return i == j ? widened(w.pointer()[i]) : wide(); });
  expect_close<T>(a * vectors, vectors * lambda);
}

}  // namespace
}  // namespace Tavik::test
