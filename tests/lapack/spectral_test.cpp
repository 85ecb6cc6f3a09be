// SPDX-License-Identifier: BSD-3-Clause
// Eigenvectors of packed matrices with several threads: the eigenvalues of one thread, residuals and
// orthogonality, with eigenvalues far apart, in clusters, and in blocks that fall apart.
#include "lapack/spectral/slices.h"

#include "lapack/lapack.h"
#include "tests/lapack/wide_matrix.h"

namespace qel::lapack {
namespace {

TEST(vector_plan, slices_by_facts) {
  const struct {
    core_int n, vectors;
    double work;
    int threads, slices;
  } rows[] = {{500, 500, 1e6, 1, 1}, {500, 500, 1e6, 8, 8}, {500, 15, 1e6, 8, 1},
              {500, 24, 1e6, 8, 3},  {50, 50, 1e4, 8, 1},   {50, 50, 3e4, 8, 3}};
  for (const auto& row : rows) {
    EXPECT_EQ(plan_vectors({row.n, row.vectors, row.work, row.threads}), row.slices)
        << row.vectors << ' ' << row.work;
  }
}

TEST(independent_vectors, by_gap_and_block) {
  const double w[] = {0, 0.5, 1, 3, 0};
  const core_int block[] = {1, 1, 1, 1, 2};
  const bool expected[] = {false, false, true, true};
  for (core_int at = 1; at < 5; ++at) EXPECT_EQ(independent(at, w, block, 1000.0), expected[at - 1]) << at;
  EXPECT_TRUE(in_order(5, w, block));
  EXPECT_FALSE(in_order(4, w + 1, block));
}

template <class T>
struct eigenpairs {
  core_int found = 0, info = -1;
  std::vector<real_of<T>> w;
  matrix<T> z;
  std::vector<core_int> fail;
};

/// All vectors, or those of the first half of the eigenvalues, which go by inverse iteration.
template <class T>
eigenpairs<T> spectrum(const matrix<T>& a, const char* range) {
  using R = real_of<T>;
  const core_int n = a.n, first = 1, last = n / 2;
  const auto size = static_cast<size_t>(n);
  std::vector<T> packed(size * (size + 1) / 2), work(8 * size);
  for (core_int j = 0, at = 0; j < n; ++j) {
    for (core_int i = 0; i <= j; ++i) packed[static_cast<size_t>(at++)] = a(i, j);
  }
  std::vector<R> rwork(8 * size);
  std::vector<core_int> iwork(5 * size);
  const R bound = 0, tolerance = 0;
  eigenpairs<T> out{0, -1, std::vector<R>(size), matrix<T>(n, n, 0), std::vector<core_int>(size)};
  const auto call = [&](auto routine, auto*... work_arrays) {
    routine("V", range, "U", &n, packed.data(), &bound, &bound, &first, &last, &tolerance, &out.found,
            out.w.data(), out.z.data(), &n, work_arrays..., iwork.data(), out.fail.data(), &out.info, 1, 1,
            1);
  };
  if constexpr (__is_same(T, float)) {
    call(core::qel_core_sspevx_, work.data());
  } else if constexpr (__is_same(T, double)) {
    call(core::qel_core_dspevx_, work.data());
  } else if constexpr (__is_same(T, complex8)) {
    call(core::qel_core_chpevx_, work.data(), rwork.data());
  } else {
    call(core::qel_core_zhpevx_, work.data(), rwork.data());
  }
  return out;
}

/// Hermitian: random, with all eigenvalues but two in one cluster, or of two parts that do not meet.
template <class T>
matrix<T> hermitian(core_int n, int kind) {
  matrix<T> a = positive_matrix<T>(n, 3);
  for (core_int j = 0; j < n; ++j) {
    a(j, j) = from_real<T>(real_part(a(j, j)));
    for (core_int i = 0; i < n; ++i) {
      if (kind == 1) a(i, j) = from_real<T>(i == j ? 1 : std::max(i, j) < 3 ? real_of<T>(0.25) : 0);
      if (kind == 2 && (i < n / 2) != (j < n / 2)) a(i, j) = T{};
    }
  }
  return a;
}

template <class T>
class packed_spectra : public testing::Test {};
TYPED_TEST_SUITE(packed_spectra, element_types);

TYPED_TEST(packed_spectra, with_threads) {
  using T = TypeParam;
  const core_int n = 90;
  for (const int kind : {0, 1, 2}) {
    const matrix<T> a = hermitian<T>(n, kind);
    for (const char* range : {"A", "I"}) {
      SCOPED_TRACE(testing::Message() << "kind " << kind << " range " << range);
      const eigenpairs<T> expected = spectrum(a, range);
      ASSERT_EQ(expected.info, 0);
      const forced_threads several(4);
      const eigenpairs<T> pairs = spectrum(a, range);
      EXPECT_EQ(pairs.info, 0);
      ASSERT_EQ(pairs.found, *range == 'A' ? n : n / 2);
      for (core_int j = 0; j < pairs.found; ++j) {
        const auto at = static_cast<size_t>(j);
        EXPECT_NEAR(pairs.w[at], expected.w[at],
                    1000 * std::numeric_limits<real_of<T>>::epsilon() * static_cast<double>(n));
        EXPECT_EQ(pairs.fail[at], 0);
      }
      const wide_matrix z =
          filled(n, pairs.found, [&](core_int i, core_int j) { return widened(pairs.z(i, j)); });
      EXPECT_LT(apart<T>(turned(z, true) * z, identity(pairs.found), 10), 10);
      const wide_matrix scaled = filled(n, pairs.found, [&](core_int i, core_int j) {
        return z(i, j) * std::complex<double>(pairs.w[static_cast<size_t>(j)]);
      });
      EXPECT_LT(apart<T>(whole(a) * z, scaled, largest(whole(a)) * 10), 10);
    }
  }
}

}  // namespace
}  // namespace qel::lapack
