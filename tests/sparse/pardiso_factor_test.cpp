// SPDX-License-Identifier: BSD-3-Clause
// Factorisation and substitution over matrix types, element types, orders, widths and threads.
#include <gtest/gtest.h>

#include "tests/sparse/pardiso_systems.h"

namespace qel::test {
namespace {

using pardiso::solve_part;

constexpr int kRealTypes[] = {1, 2, -2, 11};
constexpr int kComplexTypes[] = {3, 4, -4, 6, 13};

template <class T>
class PardisoFactor : public testing::Test {
 protected:
  static std::vector<int> types() {
    if (is_complex<T>) return {std::begin(kComplexTypes), std::end(kComplexTypes)};
    return {std::begin(kRealTypes), std::end(kRealTypes)};
  }
  static double rounding() { return static_cast<double>(std::numeric_limits<real_of<T>>::epsilon()); }
};
TYPED_TEST_SUITE(PardisoFactor, all_types);

struct shape {
  const char* what;
  int n;
  edge_list edges;
  std::vector<int> perm;
  double diagonal;
};
std::vector<shape> shapes(std::mt19937& random) {
  edge_list arrow, blocks;
  for (int i = 0; i < 60; ++i) arrow.emplace_back(i, 60), arrow.emplace_back(i, 61);
  for (int i = 0; i < 12; ++i)
    blocks.emplace_back(5 * i, 5 * i + 3), blocks.emplace_back(5 * i + 1, 5 * i + 3);
  const int n = 150;
  return {
      {"one equation", 1, {}, natural(1), 1},
      {"grid", 13 * 11, grid_edges(13, 11), dissected_grid(13, 11), 1.1},
      {"cube", 7 * 6 * 5, grid_edges(7, 6, 5), dissected_grid(7, 6, 5), 1.1},
      {"random", n, random_edges(n, 3 * n, random), shuffled(n, random), 1.1},
      {"arrow", 62, arrow, natural(62), 1.1},
      {"arrow, filled", 62, arrow, {shuffled(62, random)}, 1.1},
      {"many roots", 60, blocks, natural(60), 1.1},
      {"dense", 90, dense_edges(90), shuffled(90, random), 1.1},
  };
}

TYPED_TEST(PardisoFactor, SolvesEveryType) {
  using T = TypeParam;
  std::mt19937 random(11);
  for (const shape& each : shapes(random)) {
    for (const int type : this->types()) {
      const sparse_system<T> s = make_system<T>(type, each.n, each.edges, each.diagonal, random);
      for (const int width : {1, 5, 80}) {
        for (const int threads : {1, 2, 4}) {
          for (const bool merged : {false, true}) {
            if (threads > 1 && (width != 5 || merged == (threads == 2) || each.n < 140)) continue;
            SCOPED_TRACE(testing::Message() << each.what << " type " << type << " width " << width
                                            << " threads " << threads << " merged " << merged);
            factored<T> system;
            system.analyse(s, {each.perm, width, threads, merged});
            system.factor(s);
            ASSERT_TRUE(system.status.ok());
            EXPECT_EQ(system.f.perturbed, 0);
            const int nrhs = threads == 1 ? 1 : 3;
            const std::vector<T> b = random_vector<T>(each.n * nrhs, random);
            for (const bool transposed : {false, true}) {
              if (transposed && s.type.symmetric()) continue;
              const pardiso::solve_options how{solve_part::all, transposed, threads};
              EXPECT_LT(residual(s, b, system.solve(b, nrhs, how), nrhs, transposed), 30 * this->rounding());
            }
            if (s.type.indefinite() && type != 6) {
              int negative = 0;
              for (int i = 0; i < each.n; ++i) {
                negative += widen(s.whole[static_cast<std::size_t>(i)].at(i)).real() < 0 ? 1 : 0;
              }
              EXPECT_EQ(system.f.negative, negative);
              EXPECT_EQ(system.f.positive, each.n - negative);
            }
          }
        }
      }
    }
  }
}

TYPED_TEST(PardisoFactor, PartsOfASolveMakeTheWhole) {
  using T = TypeParam;
  std::mt19937 random(5);
  for (const int type : this->types()) {
    const int n = 9 * 8, nrhs = 70;  // more than one slice
    const sparse_system<T> s =
        make_system<T>(type, n, grid_edges(9, 8), 0.3 + (type == 2 || type == 4), random);
    factored<T> system;
    system.analyse(s, {dissected_grid(9, 8), 6});
    system.factor(s);
    ASSERT_TRUE(system.status.ok());
    const std::vector<T> b = random_vector<T>(n * nrhs, random);
    for (const bool transposed : {false, true}) {
      const auto part = [&](solve_part which, const std::vector<T>& from) {
        return system.solve(from, nrhs, {which, transposed, 1});
      };
      const std::vector<T> whole = part(solve_part::all, b);
      const std::vector<T> steps =
          part(solve_part::backward, part(solve_part::diagonal, part(solve_part::forward, b)));
      EXPECT_EQ(std::memcmp(whole.data(), steps.data(), whole.size() * sizeof(T)), 0) << type;

      std::vector<T> in_place = b, work(b.size());
      pardiso::substitute(system.analysed, system.f, {solve_part::all, transposed, 1}, nrhs, in_place.data(),
                          in_place.data(), work.data());
      EXPECT_EQ(std::memcmp(whole.data(), in_place.data(), whole.size() * sizeof(T)), 0) << type;
    }
  }
}

/// B(i, j) = row_scale[r] A(r, j) column_scale[j] with r = matched_row[i].
TYPED_TEST(PardisoFactor, MatchedAndScaledSystems) {
  using T = TypeParam;
  std::mt19937 random(17);
  for (const int type : this->types()) {
    if (type == 1 || type == 3 || type == 2 || type == 4) continue;
    const int n = 120, nrhs = 2;
    const sparse_system<T> inner = make_system<T>(type, n, random_edges(n, 250, random), 1.1, random);
    sparse_system<T> s = inner;
    const bool symmetric = inner.type.symmetric();
    const std::vector<int> matched = symmetric ? natural(n) : shuffled(n, random);
    std::vector<double> rows(static_cast<std::size_t>(n)), columns(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
      rows[i] = std::ldexp(1.0, static_cast<int>(random() % 9) - 4);
      columns[i] = symmetric ? rows[i] : std::ldexp(1.0, static_cast<int>(random() % 9) - 4);
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const auto r = static_cast<std::size_t>(matched[i]);
      s.whole[r].clear();
      for (const auto& [j, value] : inner.whole[i]) {
        s.whole[r][j] = static_cast<real_of<T>>(1 / (rows[r] * columns[static_cast<std::size_t>(j)])) * value;
      }
    }
    s.store();
    factored<T> system;
    pardiso::ordering order = make_order(shuffled(n, random), system.account);
    if (!symmetric) fill_block(order.matched_row, matched, system.account);
    fill_block(order.row_scale, rows, system.account);
    fill_block(order.column_scale, columns, system.account);
    system.analyse(n, inner.edges(), s.type, {{}, 9}, std::move(order));
    system.factor(s);
    ASSERT_TRUE(system.status.ok());
    const std::vector<T> b = random_vector<T>(n * nrhs, random);
    for (const bool transposed : {false, true}) {
      if (transposed && symmetric) continue;
      EXPECT_LT(residual(s, b, system.solve(b, nrhs, {solve_part::all, transposed, 1}), nrhs, transposed),
                100 * this->rounding())
          << type;
    }
  }
}

/// Pivots have to be searched: dense random matrices in one block, and equations without a diagonal.
TYPED_TEST(PardisoFactor, PivotsInsideTheBlock) {
  using T = TypeParam;
  std::mt19937 random(23);
  for (const int type : this->types()) {
    if (type == 2 || type == 4) continue;
    for (const int n : {2, 3, 17, 100}) {
      sparse_system<T> s = make_system<T>(type, n, dense_edges(n), 0.01, random);
      for (int i = 0; i < n; i += 2) s.whole[static_cast<std::size_t>(i)][i] = T{};
      s.store();
      factored<T> system;
      system.analyse(s, {natural(n), 128});
      system.factor(s);
      ASSERT_TRUE(system.status.ok());
      EXPECT_EQ(system.f.perturbed, 0);
      const std::vector<T> b = random_vector<T>(n, random);
      EXPECT_LT(residual(s, b, system.solve(b, 1), 1), 60 * this->rounding()) << type << ' ' << n;
    }
  }
}

/// By Sylvester's law X S X' has as many negative eigenvalues as the diagonal S.
TYPED_TEST(PardisoFactor, InertiaOfDenseMatrices) {
  using T = TypeParam;
  std::mt19937 random(29);
  const int type = is_complex<T> ? -4 : -2;
  for (const int n : {1, 2, 7, 40}) {
    for (const int negative : {0, n / 3, n / 2, n}) {
      sparse_system<T> s = make_system<T>(type, n, dense_edges(n), 1, random);
      const std::vector<T> x = random_vector<T>(n * n, random);
      for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
          T sum{};
          for (int k = 0; k < n; ++k) {
            const T product =
                x[static_cast<std::size_t>(i * n + k)] * conj(x[static_cast<std::size_t>(j * n + k)]);
            sum = k < negative ? sum - product : sum + product;
          }
          s.whole[static_cast<std::size_t>(i)][j] = sum;
        }
      }
      s.store();
      factored<T> system;
      system.analyse(s, {natural(n), 128});
      system.factor(s);
      ASSERT_TRUE(system.status.ok());
      EXPECT_EQ(system.f.negative, negative) << n;
      EXPECT_EQ(system.f.positive, n - negative) << n;
    }
  }
}

TYPED_TEST(PardisoFactor, SingularMatricesArePerturbedOrRefused) {
  using T = TypeParam;
  std::mt19937 random(31);
  const int n = 30;
  for (const int type : this->types()) {
    for (const int threads : {1, 2}) {
      for (const double threshold : {0.0, 1e-5}) {
        SCOPED_TRACE(testing::Message() << type << " threads " << threads << " threshold " << threshold);
        sparse_system<T> s = make_system<T>(type, n, random_edges(n, 40, random), 1.1, random);
        // Equation 12 stands alone, without a pivot.
        for (auto& row : s.whole) row.erase(12);
        s.whole[12] = {{12, T{}}};
        s.store();
        factored<T> system;
        solver_setup setup{shuffled(n, random), 7, threads};
        setup.threshold = threshold;
        system.analyse(s, setup);
        system.factor(s);
        if (s.type.definite()) {
          EXPECT_EQ(system.status.error, -4);
          EXPECT_EQ(system.f.failed_column, 13);
          continue;
        }
        ASSERT_TRUE(system.status.ok());
        EXPECT_EQ(system.f.perturbed, 1);
        const int column = system.analysed.order.inverse[12], node = system.analysed.form.snode[column];
        const pardiso::structure& form = system.analysed.form;
        real_of<T> found = 0;
        const int64_t ld = form.xlindx[node + 1] - form.xlindx[node];
        for (int k = 0; k < form.xsup[node + 1] - form.xsup[node]; ++k) {
          const real_of<T> d = real_part(system.f.lnz[form.xlnz[node] + k * (ld + 1)]);
          if (found == 0 || std::abs(d) < std::abs(found)) found = d;
        }
        EXPECT_EQ(found, static_cast<real_of<T>>(threshold == 0 ? 1e-13 : threshold));
      }
    }
  }
}

TYPED_TEST(PardisoFactor, DiagonalPivotsAreTakenAsTheyCome) {
  using T = TypeParam;
  std::mt19937 random(37);
  for (const int type : this->types()) {
    if (type % 2 != 0 || type == 2 || type == 4) continue;
    sparse_system<T> s = make_system<T>(type, 2, {{0, 1}}, 1.1, random);
    s.whole[0][0] = s.whole[1][1] = T{};
    s.store();
    for (const bool search : {true, false}) {
      factored<T> system;
      solver_setup setup{natural(2)};
      setup.threshold = 1e-3;
      setup.bunch_kaufman = search;
      system.analyse(s, setup);
      system.factor(s);
      ASSERT_TRUE(system.status.ok());
      EXPECT_EQ(system.f.perturbed, search ? 0 : 1);
      EXPECT_EQ(system.f.pivot[0] < 0, search);
    }
  }
}

TYPED_TEST(PardisoFactor, ThresholdGoesWithTheFirstRow) {
  using T = TypeParam;
  std::mt19937 random(41);
  for (const int type : this->types()) {
    sparse_system<T> s = make_system<T>(type, 3, {{0, 1}, {0, 2}, {1, 2}}, 1, random);
    s.whole[0][1] = s.whole[1][0] = make<T>(4, 0);
    s.whole[0][2] = s.whole[2][0] = make<T>(is_complex<T> ? 0 : 1, is_complex<T> ? -1 : 0);
    s.whole[0][0] = make<T>(1000, 0);
    s.whole[1][2] = s.whole[2][1] = make<T>(900, 0);
    s.store();
    const double close = 1e-6 * 1e-8;
    EXPECT_NEAR(pardiso::pivot_threshold(s.view(), 8), s.type.indefinite() ? 0.5e-8 : 1e-8, close) << type;
    EXPECT_NEAR(pardiso::pivot_threshold(s.view(), -8), s.type.indefinite() ? 0.5e-8 : 1e-8, close) << type;
    EXPECT_EQ(pardiso::pivot_threshold(s.view(), 0), 0);
    s.whole[0][1] = s.whole[1][0] = s.whole[0][2] = s.whole[2][0] = make<T>(0.25, 0);
    s.store();
    EXPECT_NEAR(pardiso::pivot_threshold(s.view(), 8), s.type.indefinite() ? 0.5e-8 : 1e-8, close) << type;
  }
}

TEST(PardisoFactorAgain, ReusesItsMemoryAndStopsWhenTold) {
  std::mt19937 random(43);
  const int n = 20 * 20;
  const sparse_system<double> s = make_system<double>(2, n, grid_edges(20, 20), 1.1, random);
  for (const int threads : {1, 2}) {
    factored<double> system;
    system.analyse(s, {dissected_grid(20, 20), 8, threads});
    system.factor(s);
    ASSERT_TRUE(system.status.ok());
    const double* const values = system.f.lnz.get();
    const int64_t held = system.account.now();
    struct calls {
      int count = 0;
      double last = 0;
    } made;
    system.options.progress_context = &made;
    system.options.progress = [](void* context, double share) {
      auto& seen = *static_cast<calls*>(context);
      EXPECT_LT(seen.last, share);
      seen.last = share;
      return ++seen.count == 5;
    };
    system.factor(s);
    // Other threads may be done before the calling one has had a turn.
    if (threads == 1 || !system.status.ok()) {
      EXPECT_EQ(system.status.error, -4);
      EXPECT_EQ(system.status.sub_code, pardiso::factorisation_cancelled);
      EXPECT_EQ(made.count, 5);
      EXPECT_LT(made.last, 1);
    } else {
      EXPECT_EQ(made.last, 1);
    }
    EXPECT_EQ(system.f.lnz.get(), values);
    EXPECT_EQ(system.account.now(), held);
  }
}

TEST(PardisoFactorAgain, EntriesOutsideThePatternAreFound) {
  std::mt19937 random(47);
  sparse_system<double> s = make_system<double>(11, 40, random_edges(40, 40, random), 1.1, random);
  factored<double> system;
  system.analyse(s, {natural(40)});
  s.whole[3][39] = s.whole[4][38] = s.whole[5][37] = s.whole[0][36] = 1;
  s.store();
  system.factor(s);
  EXPECT_EQ(system.status.error, -5);
}

TEST(PardisoFactorAgain, MemoryStaysNearThePrediction) {
  std::mt19937 random(53);
  const int m = 15, n = m * m * m;
  for (const int type : {2, 11}) {
    const sparse_system<double> s = make_system<double>(type, n, grid_edges(m, m, m), 1.1, random);
    for (const int threads : {1, 2}) {
      for (const bool merged : {false, true}) {
        factored<double> system;
        system.analyse(s, {dissected_grid(m, m, m), 80, threads, merged});
        system.account.restart_peak();
        system.factor(s);
        ASSERT_TRUE(system.status.ok());
        const auto predicted = predict_memory(system.analysed.form, {80, type == 11, false, threads}, 8);
        const double peak = static_cast<double>(system.account.peak()) / 1024;
        EXPECT_LT(peak, 1.1 * predicted.total);
        EXPECT_GT(peak, 0.8 * predicted.total);
      }
    }
  }
}

}  // namespace
}  // namespace qel::test
