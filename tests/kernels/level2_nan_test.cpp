// SPDX-License-Identifier: BSD-3-Clause
// Where a NaN goes, for every level-2 routine at every level: one is put into an operand, and exactly the
// elements of the result that depend on it must be NaN, while all others keep their bits. So an element that
// is not to be read, a factor 0 that switches an operand off, and a zero that leaves a column out all show,
// inside registers as in what is left over.
#include "tests/kernels/level2_support.h"

namespace qel::test {
namespace {

template <class T>
bool is_nan(T v) {
  return std::isnan(size_of(v));
}
template <class T>
T nan_of() {
  return small_element<T>(std::numeric_limits<double>::quiet_NaN(), 1);
}
template <class T>
void fill(std::vector<T>& cells, T value) {
  std::fill(cells.begin(), cells.end(), value);
}
template <class T>
T& at(std::vector<T>& cells, core_int i) {
  return cells[static_cast<std::size_t>(i)];
}

/// Orders with whole panels and registers, and with rests of every kind.
constexpr core_int kOrders[] = {3, 16, 21};
/// Rows and columns to put a NaN at: in front, inside, in what is left over.
std::vector<core_int> places(core_int n) { return {0, n / 2, n - 1}; }

class Level2Nan : public ByLevel {
 protected:
  template <class T>
  std::vector<T> run(const kernel_case<T>& c, operands<T> o, T alpha, T beta) {
    c.run(level(), {o.a.data(), o.x.data(), o.y.data()}, alpha, beta);
    return result_of(c, o);
  }
  /// The results of clean and spoilt operands differ in NaN at those cells of which spoils(cell) is true.
  template <class T, class Spoils>
  void expect_nan(const kernel_case<T>& c, const operands<T>& clean, const operands<T>& spoilt, T alpha,
                  T beta, const std::string& what, const Spoils& spoils) {
    const std::vector<T> want = run(c, clean, alpha, beta), got = run(c, spoilt, alpha, beta);
    for (std::size_t i = 0; i < got.size(); ++i) {
      ASSERT_FALSE(is_nan(want[i])) << c.name << what << " clean " << i;
      const bool spoiled = spoils(static_cast<core_int>(i));
      ASSERT_EQ(spoiled, is_nan(got[i])) << c.name << what << ' ' << i;
      if (!spoiled) {
        ASSERT_EQ(0, std::memcmp(&want[i], &got[i], sizeof(T))) << c.name << what << ' ' << i;
      }
    }
  }

  /// What holds for every y = alpha op(A) x + beta y.
  template <class T>
  void check_factors(const kernel_case<T>& c) {
    const T zero{}, one = small_element<T>(1, 0), some = small_element<T>(0.5, 0.25), nan = nan_of<T>();
    const auto all = [](core_int) { return true; };
    const auto none = [](core_int) { return false; };
    const operands<T> clean = operands_of(c, 5);
    for (const T beta : {zero, one, some}) {
      operands<T> unread = clean;
      fill(unread.a, nan);
      fill(unread.x, nan);
      expect_nan(c, clean, unread, zero, beta, "alpha 0", none);
    }
    operands<T> written = clean;
    fill(written.y, nan);
    expect_nan(c, clean, written, some, zero, "beta 0", none);
    expect_nan(c, clean, written, zero, zero, "alpha 0, beta 0", none);
    for (const T alpha : {zero, one, some}) {
      for (const auto& y : run(c, clean, alpha, nan)) EXPECT_TRUE(is_nan(y)) << c.name << "beta NaN";
      for (const core_int k : places(c.y_length)) {
        operands<T> spoilt = clean;
        at(spoilt.y, k) = nan;
        for (const T beta : {one, some}) {
          expect_nan(c, clean, spoilt, alpha, beta, "y", [&](core_int i) { return i == k; });
        }
      }
    }
    for (const T beta : {zero, one, some}) {
      for (const auto& y : run(c, clean, nan, beta)) EXPECT_TRUE(is_nan(y)) << c.name << "alpha NaN";
      operands<T> spoilt = clean;
      at(spoilt.x, c.x_length / 2) = nan;
      // A narrow band's x reaches some rows only; others are wholly full.
      if (c.name[1] != 'b') expect_nan(c, clean, spoilt, some, beta, "x", all);
    }
  }
};

TEST_P(Level2Nan, GeneralProducts) {
  for_element_types([&]<class T>() {
    for (const core_int m : kOrders) {
      for (const core_int n : kOrders) {
        for (const matrix_op op : kOps) {
          for (const bool banded : {false, true}) {
            const core_int kl = 2, ku = 1;
            const auto c = banded ? gbmv_case<T>(op, m, n, kl, ku, 1, 1) : gemv_case<T>(op, m, n, 0, 1, 1);
            if (!banded || (m >= n - ku && n >= m - kl)) check_factors(c);
            const operands<T> some = operands_of(c, 5);
            for (const core_int i : places(m)) {
              for (const core_int j : places(n)) {
                if (banded && (i - j > kl || j - i > ku)) continue;
                // A zero in x doesn't hide it.
                operands<T> clean = some;
                const core_int in_x = op == matrix_op::kNone ? j : i, in_y = op == matrix_op::kNone ? i : j;
                at(clean.x, in_x) = T{};
                operands<T> spoilt = clean;
                at(spoilt.a, banded ? ku + i - j + j * (kl + ku + 1) : i + j * m) = nan_of<T>();
                const T factor = small_element<T>(0.5, 0.25);
                expect_nan(c, clean, spoilt, factor, factor, "a", [&](core_int k) { return k == in_y; });
              }
            }
          }
        }
      }
    }
  });
}

TEST_P(Level2Nan, HermitianProducts) {
  for_element_types([&]<class T>() {
    for (const core_int n : kOrders) {
      for (const char uplo : {'U', 'L'}) {
        for (const form storage : {form::kFull, form::kPacked}) {
          for (const bool symmetric : {false, true}) {
            const triangle_case t{storage, uplo, n, n, 0};
            const auto c = hermitian_case<T>(t, symmetric, 1, 1);
            check_factors(c);
            for (const core_int i : places(n)) {
              for (const core_int j : places(n)) {
                if (uplo == 'U' ? i > j : i < j) continue;
                operands<T> clean = operands_of(c, 5);
                at(clean.x, i) = at(clean.x, j) = T{};
                operands<T> spoilt = clean;
                at(spoilt.a, t.cell(i, j)) = nan_of<T>();
                const T factor = small_element<T>(0.5, 0.25);
                expect_nan(c, clean, spoilt, factor, factor, "a",
                           [&](core_int k) { return k == i || k == j; });
              }
            }
          }
        }
      }
    }
  });
}

TEST_P(Level2Nan, TriangularProductsAndSolutions) {
  for_element_types([&]<class T>() {
    for (const core_int n : kOrders) {
      for (const char uplo : {'U', 'L'}) {
        for (const matrix_op op : kOps) {
          for (const bool solve : {false, true}) {
            const triangle_case t{form::kFull, uplo, n, n, 0};
            const auto c = triangular_case<T>(t, op, false, solve, 1);
            const bool plain = op == matrix_op::kNone;
            for (const core_int i : places(n)) {
              for (const core_int j : places(n)) {
                if (i == j || (uplo == 'U') != (i < j)) continue;
                for (const bool zero : {false, true}) {
                  operands<T> clean = operands_of(c, 5);
                  // A right side that is zero where its elements come first leaves the solution zero there.
                  const bool from_above = (uplo == 'L') == plain;
                  const core_int source = plain ? j : i, target = plain ? i : j;
                  if (zero && solve) {
                    for (core_int k = 0; k < n; ++k) {
                      if (from_above ? k <= source : k >= source) at(clean.x, k) = T{};
                    }
                  } else if (zero) {
                    at(clean.x, source) = T{};
                  }
                  operands<T> spoilt = clean;
                  at(spoilt.a, t.cell(i, j)) = nan_of<T>();
                  expect_nan(c, clean, spoilt, T{}, T{}, zero ? "a at 0" : "a", [&](core_int k) {
                    if (zero && plain) return false;  // left out with its column
                    if (!solve) return k == target;
                    return from_above ? k >= target : k <= target;
                  });
                }
              }
            }
          }
        }
      }
    }
  });
}

TEST_P(Level2Nan, Updates) {
  for_element_types([&]<class T>() {
    const T some = small_element<T>(0.5, 0.25), zero{}, nan = nan_of<T>();
    const auto none = [](core_int) { return false; };
    for (const core_int n : kOrders) {
      const core_int skipped = n / 3;
      for (const core_int spoilt_at : places(n)) {
        if (spoilt_at == skipped) continue;
        const auto ger = ger_case<T>(true, n, n, 0, 1, 1);
        operands<T> clean = operands_of(ger, 5);
        at(clean.y, skipped) = zero;
        operands<T> in_x = clean, in_y = clean;
        at(in_x.x, spoilt_at) = at(in_y.y, spoilt_at) = nan;
        expect_nan(ger, clean, in_x, some, zero, "x",
                   [&](core_int k) { return k % n == spoilt_at && k / n != skipped; });
        expect_nan(ger, clean, in_y, some, zero, "y", [&](core_int k) { return k / n == spoilt_at; });
        expect_nan(ger, clean, in_x, zero, zero, "alpha 0", none);

        for (const char uplo : {'U', 'L'}) {
          for (const bool two : {false, true}) {
            const triangle_case t{form::kFull, uplo, n, n, 0};
            const auto c = update_case<T>(t, two, 1, 1);
            operands<T> ahead = operands_of(c, 5);
            at(ahead.x, skipped) = at(ahead.y, skipped) = zero;
            operands<T> spoilt = ahead;
            at(spoilt.x, spoilt_at) = nan;
            // Row and column of the NaN in the stored triangle, but not in the column that is left out.
            expect_nan(c, ahead, spoilt, some, zero, "x", [&](core_int k) {
              const core_int i = k % n, j = k / n;
              return (uplo == 'U' ? i <= j : i >= j) && (i == spoilt_at || j == spoilt_at) && j != skipped;
            });
            expect_nan(c, ahead, spoilt, zero, zero, "alpha 0", none);
          }
        }
      }
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Levels, Level2Nan, testing::ValuesIn(own_levels()));

}  // namespace
}  // namespace qel::test
