// SPDX-License-Identifier: BSD-3-Clause
// Level 3 of the core BLAS against straightforward sums in long double: all options, sizes about register
// tiles and cache blocks, padded leading dimensions, and NaN in everything that may not be read.
#include "service/serv.h"
#include "tests/blas/by_type.h"
#include "tests/blas/reference.h"

namespace qel::test {
namespace {

template <class T>
class Level3 : public testing::Test {
 protected:
  random_source random_;
};
using element_types = testing::Types<float, double, complex8, complex16>;
TYPED_TEST_SUITE(Level3, element_types);

struct sizes {
  core_int m, n, k;
};
constexpr sizes kSizes[] = {{0, 3, 2}, {3, 0, 2},    {3, 2, 0},   {1, 1, 1},   {2, 3, 5},    {5, 2, 3},
                            {3, 5, 1}, {10, 10, 10}, {9, 17, 33}, {33, 1, 50}, {50, 33, 10}, {7, 50, 64}};
/// Beyond one block of rows and two slices of the inner size; beyond one block of columns.
constexpr sizes kBeyondBlocks[] = {{201, 9, 401}, {9, 2053, 12}};

/// Compares the cells of c that wanted(i, j) speaks of, and says which failed.
template <class T, class Wanted>
void expect_matrix(const matrix<T>& c, core_int terms, const Wanted& wanted, const std::string& what) {
  int failures = 0;
  c.for_stored([&](core_int i, core_int j) {
    const bounded want = wanted(i, j);
    if (close(c.at(i, j), want, terms) || ++failures > 1) return;
    ADD_FAILURE() << what << " (" << i << ", " << j << "): got " << widen(c.at(i, j)) << ", want "
                  << want.value;
  });
}

template <class T>
bounded scaled(wide beta, const dense& before, core_int i, core_int j) {
  bounded sum;
  if (beta != wide{}) sum.add(beta * before(i, j));
  return sum;
}

template <class... A>
std::string text(A... parts) {
  std::ostringstream out;
  ((out << parts << ' '), ...);
  return out.str();
}

template <class T>
void check_gemm(random_source& random, char transa, char transb, const sizes& s, T alpha, T beta) {
  const bool plain_a = transa == 'N', plain_b = transb == 'N';
  matrix<T> a(plain_a ? s.m : s.k, plain_a ? s.k : s.m, 3, random),
      b(plain_b ? s.k : s.n, plain_b ? s.n : s.k, 1, random);
  matrix<T> c(s.m, s.n, 2, random);
  if (alpha == T{}) a.fill(nan_element<T>());
  if (beta == T{}) c.fill(nan_element<T>());
  const dense left = op(transa, a.meaning(shape::kGeneral)), right = op(transb, b.meaning(shape::kGeneral));
  const dense before = c.meaning(shape::kGeneral);
  c.as_output();
  call(core_of<T>::gemm, transa, transb, s.m, s.n, s.k, alpha, a.data(), a.ld(), b.data(), b.ld(), beta,
       c.data(), c.ld());
  const auto wanted = [&](core_int i, core_int j) {
    bounded sum = scaled<T>(widen(beta), before, i, j);
    if (alpha != T{}) add_product(sum, widen(alpha), left, right, i, j);
    return sum;
  };
  expect_matrix(c, s.k, wanted, text("gemm", transa, transb, s.m, s.n, s.k));
  EXPECT_TRUE(c.intact()) << text("gemm", transa, transb, s.m, s.n, s.k);
}

TYPED_TEST(Level3, GemmAllOptionsAndSizes) {
  int pair = 0;
  for (const char transa : {'N', 'T', 'C'}) {
    for (const char transb : {'N', 'T', 'C'}) {
      for (const sizes& s : kSizes) {
        for (int repeat = 0; repeat < 3; ++repeat, ++pair) {
          const auto [alpha, beta] = kFactorPairs[pair % std::size(kFactorPairs)];
          check_gemm<TypeParam>(this->random_, transa, transb, s, factor<TypeParam>(alpha),
                                factor<TypeParam>(beta));
        }
      }
    }
  }
}

TYPED_TEST(Level3, GemmBeyondBlocks) {
  for (const sizes& s : kBeyondBlocks) {
    check_gemm<TypeParam>(this->random_, 'N', 'C', s, factor<TypeParam>(2), factor<TypeParam>(2));
    check_gemm<TypeParam>(this->random_, 'C', 'N', s, factor<TypeParam>(2), factor<TypeParam>(0));
  }
}

TYPED_TEST(Level3, GemmLowerCaseLetters) {
  using T = TypeParam;
  matrix<T> a(5, 4, 0, this->random_), b(6, 4, 0, this->random_), c(5, 6, 0, this->random_), d = c;
  const core_int m = 5, n = 6, k = 4;
  const T one = factor<T>(1), zero{};
  call(core_of<T>::gemm, 'n', 'c', m, n, k, one, a.data(), a.ld(), b.data(), b.ld(), zero, c.data(), c.ld());
  call(core_of<T>::gemm, 'N', 'C', m, n, k, one, a.data(), a.ld(), b.data(), b.ld(), zero, d.data(), d.ld());
  c.for_stored([&](core_int i, core_int j) { EXPECT_EQ(widen(d.at(i, j)), widen(c.at(i, j))); });
}

TYPED_TEST(Level3, NanFactorsSpread) {
  using T = TypeParam;
  for (const bool in_alpha : {true, false}) {
    matrix<T> a(5, 3, 0, this->random_), b(3, 20, 0, this->random_), c(5, 20, 0, this->random_);
    const T nan = nan_element<T>(), one = factor<T>(1);
    const core_int m = 5, n = 20, k = 3;
    call(core_of<T>::gemm, 'N', 'N', m, n, k, in_alpha ? nan : one, a.data(), a.ld(), b.data(), b.ld(),
         in_alpha ? one : nan, c.data(), c.ld());
    c.for_stored([&](core_int i, core_int j) { EXPECT_TRUE(is_nan(widen(c.at(i, j)))) << i << ' ' << j; });
  }
}

template <class T, class Routine>
void check_symmetric(random_source& random, Routine routine, shape kind, char side, char uplo, const sizes& s,
                     T alpha, T beta) {
  const core_int order = side == 'L' ? s.m : s.n;
  matrix<T> a(order, order, 2, random, uplo), b(s.m, s.n, 1, random), c(s.m, s.n, 3, random);
  if (alpha == T{}) a.fill(nan_element<T>());
  if (beta == T{}) c.fill(nan_element<T>());
  const dense full = a.meaning(kind), general = b.meaning(shape::kGeneral),
              before = c.meaning(shape::kGeneral);
  c.as_output();
  call(routine, side, uplo, s.m, s.n, alpha, a.data(), a.ld(), b.data(), b.ld(), beta, c.data(), c.ld());
  const auto wanted = [&](core_int i, core_int j) {
    bounded sum = scaled<T>(widen(beta), before, i, j);
    if (alpha == T{}) return sum;
    if (side == 'L') {
      add_product(sum, widen(alpha), full, general, i, j);
    } else {
      add_product(sum, widen(alpha), general, full, i, j);
    }
    return sum;
  };
  const std::string what = text(kind == shape::kHermitian ? "hemm" : "symm", side, uplo, s.m, s.n);
  expect_matrix(c, order, wanted, what);
  EXPECT_TRUE(c.intact()) << what;
}

TYPED_TEST(Level3, SymmAndHemmReadOneTriangle) {
  using T = TypeParam;
  const shape hermitian = is_complex<T> ? shape::kHermitian : shape::kSymmetric;
  int pair = 0;
  for (const char side : {'L', 'R'}) {
    for (const char uplo : {'U', 'L'}) {
      for (const sizes& s : kSizes) {
        for (int repeat = 0; repeat < 2; ++repeat, ++pair) {
          const auto [alpha, beta] = kFactorPairs[pair % std::size(kFactorPairs)];
          check_symmetric(this->random_, core_of<T>::symm, shape::kSymmetric, side, uplo, s, factor<T>(alpha),
                          factor<T>(beta));
          check_symmetric(this->random_, core_of<T>::hemm, hermitian, side, uplo, s, factor<T>(alpha),
                          factor<T>(beta));
        }
      }
      const sizes beyond = side == 'L' ? sizes{205, 6, 0} : sizes{6, 205, 0};
      check_symmetric(this->random_, core_of<T>::hemm, hermitian, side, uplo, beyond, factor<T>(2),
                      factor<T>(2));
    }
  }
}

/// The rank-k and rank-2k updates share everything but their factors; b is null for rank k.
template <class T, class Update>
void check_update(random_source& random, bool hermitian, bool two, char uplo, char trans, core_int n,
                  core_int k, T alpha, T beta, const Update& update) {
  const bool outer = trans == 'N';
  const shape kind = hermitian ? shape::kHermitian : shape::kSymmetric;
  matrix<T> a(outer ? n : k, outer ? k : n, 1, random), b(outer ? n : k, outer ? k : n, 2, random);
  matrix<T> c(n, n, 2, random, uplo);
  if (alpha == T{}) a.fill(nan_element<T>());
  if (beta == T{}) c.fill(nan_element<T>());
  const char close_by = hermitian ? 'C' : 'T';
  const dense left = op(outer ? 'N' : close_by, a.meaning(shape::kGeneral)), right = op(close_by, left);
  const dense left_b = op(outer ? 'N' : close_by, b.meaning(shape::kGeneral)), right_b = op(close_by, left_b);
  const dense before = c.meaning(kind);
  const bool untouched = (alpha == T{} || k == 0) && beta == factor<T>(1);
  const dense raw = c.meaning(shape::kTriangular);
  update(a, b, c.as_output());
  const auto wanted = [&](core_int i, core_int j) {
    bounded sum = scaled<T>(widen(beta), untouched ? raw : before, i, j);
    if (alpha == T{}) return sum;
    add_product(sum, widen(alpha), left, two ? right_b : right, i, j);
    if (two) add_product(sum, hermitian ? std::conj(widen(alpha)) : widen(alpha), left_b, right, i, j);
    return sum;
  };
  const std::string what = text(hermitian ? "her" : "syr", two ? "2k" : "k", uplo, trans, n, k);
  expect_matrix(c, 2 * k, wanted, what);
  EXPECT_TRUE(c.intact()) << what;
  if (hermitian && !untouched) {
    for (core_int i = 0; i < n; ++i) EXPECT_EQ(0, widen(c.at(i, i)).imag()) << what;
  }
}

/// All rank updates of one order, with every pair of factors from the given one on.
template <class T>
void check_all_updates(random_source& random, char uplo, char trans, core_int order, core_int inner,
                       int pair) {
  const T alpha = factor<T>(kFactorPairs[pair % std::size(kFactorPairs)][0]);
  const T beta = factor<T>(kFactorPairs[pair % std::size(kFactorPairs)][1]);
  if (!is_complex<T> || trans != 'C') {
    check_update(random, false, false, uplo, trans, order, inner, alpha, beta, [&](auto& a, auto&, auto& c) {
      call(core_of<T>::syrk, uplo, trans, order, inner, alpha, a.data(), a.ld(), beta, c.data(), c.ld());
    });
    check_update(random, false, true, uplo, trans, order, inner, alpha, beta, [&](auto& a, auto& b, auto& c) {
      call(core_of<T>::syr2k, uplo, trans, order, inner, alpha, a.data(), a.ld(), b.data(), b.ld(), beta,
           c.data(), c.ld());
    });
  }
  if (!is_complex<T> || trans == 'T') return;
  const real_of<T> real_alpha = real_part(alpha), real_beta = real_part(beta);
  const T alpha_r = from_real<T>(real_alpha), beta_r = from_real<T>(real_beta);
  check_update(random, true, false, uplo, trans, order, inner, alpha_r, beta_r, [&](auto& a, auto&, auto& c) {
    call(core_of<T>::herk, uplo, trans, order, inner, real_alpha, a.data(), a.ld(), real_beta, c.data(),
         c.ld());
  });
  check_update(random, true, true, uplo, trans, order, inner, alpha, beta_r, [&](auto& a, auto& b, auto& c) {
    call(core_of<T>::her2k, uplo, trans, order, inner, alpha, a.data(), a.ld(), b.data(), b.ld(), real_beta,
         c.data(), c.ld());
  });
}

TYPED_TEST(Level3, RankUpdatesTouchOneTriangle) {
  constexpr core_int kOrders[][2] = {{0, 3},   {1, 2},   {3, 0},  {4, 9},  {5, 5},
                                     {10, 33}, {33, 10}, {50, 1}, {70, 40}};
  int pair = 0;
  for (const char uplo : {'U', 'L'}) {
    for (const char trans : {'N', 'T', 'C'}) {
      for (const auto& [n, k] : kOrders) {
        for (int repeat = 0; repeat < 3; ++repeat) {
          check_all_updates<TypeParam>(this->random_, uplo, trans, n, k, pair++);
        }
      }
    }
  }
}

struct triangle_options {
  char side, uplo, trans, diag;
};
std::vector<triangle_options> all_triangle_options() {
  std::vector<triangle_options> result;
  for (const char side : {'L', 'R'}) {
    for (const char uplo : {'U', 'L'}) {
      for (const char trans : {'N', 'T', 'C'}) {
        for (const char diag : {'N', 'U'}) result.push_back({side, uplo, trans, diag});
      }
    }
  }
  return result;
}

template <class T>
void check_triangular(random_source& random, bool solve, const triangle_options& o, core_int m, core_int n,
                      T alpha) {
  const core_int order = o.side == 'L' ? m : n;
  matrix<T> a(order, order, 1, random, o.uplo, o.diag == 'U'), b(m, n, 3, random);
  // Diagonally dominant, so that solutions stay near the size of their right-hand sides.
  a.for_stored([&](core_int i, core_int j) {
    const real_of<T> share = static_cast<real_of<T>>(1) / static_cast<real_of<T>>(order);
    a.set(i, j, i == j ? element<T>(1.5, 0.5) : share * a.at(i, j));
  });
  if (alpha == T{}) {
    a.fill(nan_element<T>());
    b.fill(nan_element<T>());
  }
  const dense t = op(o.trans, a.meaning(o.diag == 'U' ? shape::kUnitTriangular : shape::kTriangular));
  const dense before = b.as_output().meaning(shape::kGeneral);
  call(solve ? core_of<T>::trsm : core_of<T>::trmm, o.side, o.uplo, o.trans, o.diag, m, n, alpha, a.data(),
       a.ld(), b.data(), b.ld());
  const dense after = b.meaning(shape::kGeneral);
  const std::string what = text(solve ? "trsm" : "trmm", o.side, o.uplo, o.trans, o.diag, m, n);
  const auto product = [&](wide factor_, const dense& x, core_int i, core_int j) {
    bounded sum;
    if (o.side == 'L') {
      add_product(sum, factor_, t, x, i, j);
    } else {
      add_product(sum, factor_, x, t, i, j);
    }
    return sum;
  };
  if (alpha == T{}) {
    expect_matrix(
        b, 0, [](core_int, core_int) { return bounded{}; }, what);
  } else if (!solve) {
    expect_matrix(
        b, order, [&](core_int i, core_int j) { return product(widen(alpha), before, i, j); }, what);
  } else {
    int failures = 0;
    b.for_stored([&](core_int i, core_int j) {  // residual of the system
      bounded residual = product(1, after, i, j);
      residual.add(-widen(alpha) * before(i, j));
      const long double bound = 4 * static_cast<long double>(order + 4) * epsilon<T>() * residual.size;
      if (!(std::abs(residual.value) <= bound) && ++failures == 1)
        ADD_FAILURE() << what << ' ' << i << ' ' << j;
    });
  }
  EXPECT_TRUE(b.intact()) << what;
}

TYPED_TEST(Level3, TrmmAndTrsmAllOptions) {
  constexpr core_int kOrders[][2] = {{0, 3}, {1, 1}, {2, 5}, {5, 3}, {10, 33}, {33, 10}, {50, 70}, {70, 50}};
  int index = 0;
  for (const triangle_options& o : all_triangle_options()) {
    for (const auto& [m, n] : kOrders) {
      for (const bool solve : {false, true}) {
        check_triangular<TypeParam>(this->random_, solve, o, m, n, factor<TypeParam>(1 + index++ % 2));
      }
    }
    for (const bool solve : {false, true})
      check_triangular<TypeParam>(this->random_, solve, o, 4, 3, TypeParam{});
  }
}

// What a triangle does not store is no factor: infinity comes only where a stored element meets it.
TYPED_TEST(Level3, TrmmKeepsInfinityOnItsSide) {
  using T = TypeParam;
  constexpr core_int kRows = 7, kColumns = 5, kRow = 2, kColumn = 1;
  for (const triangle_options& o : all_triangle_options()) {
    const core_int order = o.side == 'L' ? kRows : kColumns;
    matrix<T> a(order, order, 1, this->random_, o.uplo, o.diag == 'U'), b(kRows, kColumns, 3, this->random_);
    b.set(kRow, kColumn, from_real<T>(std::numeric_limits<real_of<T>>::infinity()));
    const dense t = op(o.trans, a.meaning(o.diag == 'U' ? shape::kUnitTriangular : shape::kTriangular));
    call(core_of<T>::trmm, o.side, o.uplo, o.trans, o.diag, kRows, kColumns, factor<T>(1), a.data(), a.ld(),
         b.data(), b.ld());
    b.for_stored([&](core_int i, core_int j) {
      const bool met =
          o.side == 'L' ? j == kColumn && t(i, kRow) != wide{} : i == kRow && t(kColumn, j) != wide{};
      // As doubles: Memcheck has no range beyond theirs.
      const std::complex<double> result(widen(b.at(i, j)));
      EXPECT_EQ(!met, std::isfinite(result.real()) && std::isfinite(result.imag()))
          << text("trmm", o.side, o.uplo, o.trans, o.diag, kRows, kColumns) << ' ' << i << ' ' << j;
    });
  }
}

// Beyond the diagonal blocks of every level, and beyond the columns or rows of B that are taken at a time.
TYPED_TEST(Level3, TrmmAndTrsmBeyondBlocks) {
  constexpr core_int kOrders[][2] = {{150, 5}, {290, 3}, {5, 540}, {40, 1030}, {1030, 40}};
  int index = 0;
  for (const triangle_options& o : all_triangle_options()) {
    const auto& [m, n] = kOrders[index % static_cast<int>(std::size(kOrders))];
    const core_int order = o.side == 'L' ? m : n;
    const bool solve = index++ / 2 % 2 == 0;
    if (order <= 600) check_triangular<TypeParam>(this->random_, solve, o, m, n, factor<TypeParam>(2));
  }
}

// Counts of threads that divide the sizes and that do not, and more threads than there is work for.
TYPED_TEST(Level3, OnThreads) {
  using T = TypeParam;
  serv_set_dynamic(0);
  int index = 0;
  for (const int threads : {2, 3, 4, 8}) {
    serv_set_domain_threads(threads, 1);
    for (const triangle_options& o : all_triangle_options()) {
      ++index;
      check_triangular<T>(this->random_, index % 2 == 0, o, index % 3 == 0 ? 90 : 53,
                          index % 3 == 0 ? 41 : 97, factor<T>(2));
    }
    for (const char uplo : {'U', 'L'}) {
      for (const char trans : {'N', 'T', 'C'})
        check_all_updates<T>(this->random_, uplo, trans, 77, 21, index++);
      for (const char side : {'L', 'R'}) {
        check_symmetric(this->random_, core_of<T>::symm, shape::kSymmetric, side, uplo, {83, 85, 0},
                        factor<T>(2), factor<T>(index % 3));
        check_symmetric(this->random_, core_of<T>::hemm,
                        is_complex<T> ? shape::kHermitian : shape::kSymmetric, side, uplo, {85, 83, 0},
                        factor<T>(2), factor<T>(index++ % 3));
      }
    }
    check_gemm<T>(this->random_, 'N', 'T', {90, 70, 50}, factor<T>(2), factor<T>(2));
  }
  serv_set_domain_threads(1, 1);
}

TYPED_TEST(Level3, TrsmKeepsSingularSystemsUntested) {
  using T = TypeParam;
  matrix<T> a(3, 3, 0, this->random_, 'U'), b(3, 2, 0, this->random_);
  const core_int m = 3, n = 2;
  a.set(2, 2, T{});
  call(core_of<T>::trsm, 'L', 'U', 'N', 'N', m, n, factor<T>(1), a.data(), a.ld(), b.data(), b.ld());
  EXPECT_FALSE(std::isfinite(std::abs(widen(b.at(2, 0)))));
}

}  // namespace
}  // namespace qel::test
