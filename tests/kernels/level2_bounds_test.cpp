// SPDX-License-Identifier: BSD-3-Clause
// Every level-2 kernel of every level on operands of all alignments that end at pages nobody may touch: the
// result is the same bits wherever the operands lie, whether vectors are contiguous or not, and agrees with
// the generic level, which tests/blas compares with long double sums.
#include "tests/kernels/level2_support.h"

namespace qel::test {
namespace {

template <class T>
addresses<T> plain(operands<T>& o) {
  return {o.a.data(), o.x.data(), o.y.data()};
}

/// The largest difference of two results, in units of the last place of the numbers that were summed.
template <class T>
long double distance(const std::vector<T>& got, const std::vector<T>& want) {
  long double worst = 0, largest = 1;
  for (std::size_t i = 0; i < got.size(); ++i) {
    const long double difference = size_of(got[i] - want[i]);
    if (!(difference <= worst)) worst = difference;
    largest = std::max(largest, size_of(want[i]));
  }
  return worst / (std::numeric_limits<real_of<T>>::epsilon() * largest);
}

class Level2Bounds : public ByLevel {
 protected:
  /// alpha and beta that leave nothing out.
  template <class T>
  static T alpha() {
    return small_element<T>(-0.75, 0.5);
  }
  template <class T>
  static T beta() {
    return small_element<T>(0.5, -0.25);
  }

  template <class T>
  void check(const kernel_case<T>& c) {
    static arena<T> a(9000), x(300), y(300);
    static std::size_t turn = 0;
    const operands<T> before = operands_of(c, 1);
    operands<T> generic = before, own = before;
    c.run(0, plain(generic), alpha<T>(), beta<T>());
    c.run(level(), plain(own), alpha<T>(), beta<T>());
    EXPECT_LE(distance(result_of(c, own), result_of(c, generic)),
              40 + 4 * static_cast<long double>(c.x_length))
        << c.name;
    // Three placements: any byte, any element, whole registers.
    for (const std::size_t unit : {std::size_t{1}, sizeof(real_of<T>), std::size_t{16}}) {
      const std::size_t offset = ++turn * unit;
      const addresses<T> placed{a.place(before.a, offset % 64), x.place(before.x, 3 * offset % 64),
                                y.place(before.y, 7 * offset % 64)};
      c.run(level(), placed, alpha<T>(), beta<T>());
      const operands<T> after{a.values(), x.values(), y.values()};
      EXPECT_TRUE(same_bits(after.a, own.a) && same_bits(after.x, own.x) && same_bits(after.y, own.y))
          << c.name << " offset " << offset % 64 << " strides " << c.incx << ' ' << c.incy;
      EXPECT_TRUE(a.intact() && x.intact() && y.intact()) << c.name;
    }
  }
};

TEST_P(Level2Bounds, AnyAddressAndStride) {
  constexpr core_int kOrders[] = {0,  1,  2,  3,  4,  5,  7,  8,  9,  12, 15,
                                  16, 17, 23, 31, 33, 40, 47, 63, 64, 65, 70};
  for_element_types([&]<class T>() {
    for (const core_int n : kOrders) {
      for (const auto& c : all_cases<T>(n, 1, 1)) check(c);
    }
    for (const core_int n : {1, 6, 19, 40}) {
      for (const auto& c : all_cases<T>(n, 2, -3)) check(c);
      for (const auto& c : all_cases<T>(n, -1, 1)) check(c);
    }
  });
}

TEST_P(Level2Bounds, StrideZeroReadsOneElement) {
  for_element_types([&]<class T>() {
    for (const matrix_op op : kOps) {
      check(gemv_case<T>(op, 13, 9, 0, 0, 1));
      check(gbmv_case<T>(op, 13, 9, 2, 3, 0, 2));
    }
    check(ger_case<T>(false, 13, 9, 0, 0, 0));
    check(hermitian_case<T>({form::kFull, 'U', 11, 11, 0}, false, 0, 1));
  });
}

/// Vectors longer than a stretch of stack memory, in strides and contiguous: the same bits.
template <class T>
void expect_strides_dont_show(int level, const kernel_case<T>& contiguous, const kernel_case<T>& strided) {
  operands<T> near = operands_of(contiguous, 1), far = operands_of(strided, 2);
  const auto spread = [](const std::vector<T>& from, std::vector<T>& to, core_int n, core_int inc) {
    for (core_int i = 0; i < n; ++i) to[cell_of(i, n, inc)] = from[static_cast<std::size_t>(i)];
  };
  far.a = near.a;
  spread(near.x, far.x, strided.x_length, strided.incx);
  spread(near.y, far.y, strided.y_length, strided.incy);
  const T alpha = small_element<T>(0.75, 0.25), beta = small_element<T>(0.5, 0);
  contiguous.run(level, plain(near), alpha, beta);
  strided.run(level, plain(far), alpha, beta);
  EXPECT_TRUE(same_bits(near.a, far.a)) << contiguous.name;
  EXPECT_TRUE(same_bits(near.x, elements(far.x, strided.x_length, strided.incx))) << contiguous.name;
  EXPECT_TRUE(same_bits(near.y, elements(far.y, strided.y_length, strided.incy))) << contiguous.name;
}

TEST_P(Level2Bounds, LongVectors) {
  for_element_types([&]<class T>() {
    const core_int m = 16384 / static_cast<core_int>(sizeof(T)) + 77;
    for (const matrix_op op : kOps) {
      for (const core_int n : {3, 11}) {
        expect_strides_dont_show(level(), gemv_case<T>(op, m, n, 3, 1, 1), gemv_case<T>(op, m, n, 3, -2, 3));
        expect_strides_dont_show(level(), gemv_case<T>(op, n, m, 3, 1, 1), gemv_case<T>(op, n, m, 3, 3, -2));
      }
    }
    expect_strides_dont_show(level(), ger_case<T>(true, m, 11, 3, 1, 1), ger_case<T>(true, m, 11, 3, -2, 3));
    if constexpr (sizeof(T) == 16) {  // the shortest stretch: others would take large triangles
      for (const char uplo : {'U', 'L'}) {
        const triangle_case full{form::kFull, uplo, m, m, 0}, band{form::kBanded, uplo, m, 50, 0};
        for (const matrix_op op : kOps) {
          for (const bool solve : {false, true}) {
            for (const auto& t : {full, band}) {
              expect_strides_dont_show(level(), triangular_case<T>(t, op, false, solve, 1),
                                       triangular_case<T>(t, op, false, solve, -2));
            }
          }
        }
        for (const auto& t : {full, band}) {
          expect_strides_dont_show(level(), hermitian_case<T>(t, false, 1, 1),
                                   hermitian_case<T>(t, false, 2, -2));
        }
        expect_strides_dont_show(level(), update_case<T>(full, true, 1, 1),
                                 update_case<T>(full, true, 2, -2));
      }
    }
  });
}

/// The product of some rows only, as threads compute it, beside the whole product.
TEST_P(Level2Bounds, PartsOfTriangularProducts) {
  for_element_types([&]<class T>() {
    const core_int n = 61;
    for (const char uplo : {'U', 'L'}) {
      const triangle_case t{form::kFull, uplo, n, n, 1};
      for (const matrix_op op : kOps) {
        for (const core_int inc : {1, -2}) {
          const auto c = triangular_case<T>(t, op, false, false, inc);
          const operands<T> before = operands_of(c, 3);
          operands<T> whole = before;
          c.run(level(), plain(whole), {}, {});
          for (const auto& [first, last] :
               {std::pair<core_int, core_int>{0, 61}, {0, 8}, {8, 35}, {35, 61}, {9, 9}}) {
            const std::vector<T> copy = elements(before.x, n, inc);
            std::vector<T> x = before.x, want = before.x;
            for (core_int i = first; i < last; ++i) want[cell_of(i, n, inc)] = whole.x[cell_of(i, n, inc)];
            level2_rows<T>::triangular.kernel[level()]->product_part(t.of(before.a.data()), op, false,
                                                                     copy.data(), x.data(), inc, first, last);
            EXPECT_LE(distance(x, want), 64) << c.name << first;
          }
        }
      }
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Levels, Level2Bounds, testing::ValuesIn(own_levels()));

TEST(Level2Rows, LevelsThatShareTables) {
  for_element_types([&]<class T>() {
    const auto expect_shared = [](const auto& row) {
      for (const int level : {3, 4}) EXPECT_EQ(row.kernel[2], row.kernel[level]);
      EXPECT_EQ(row.kernel[5], row.kernel[6]);
    };
    expect_shared(level2_rows<T>::general);
    expect_shared(level2_rows<T>::hermitian);
    expect_shared(level2_rows<T>::triangular);
  });
}

}  // namespace
}  // namespace qel::test
