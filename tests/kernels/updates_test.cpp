// SPDX-License-Identifier: BSD-3-Clause
// The kernels that change a vector: axpy, copy, scal. Every element's result is fixed to the bit whatever the
// path that computed it, and nothing outside the operand is written.
#include <limits>

#include "tests/kernels/support.h"

namespace qel::test {
namespace {

constexpr core_int kFewLengths[] = {1, 2, 3, 5, 8, 13, 31, 66};
constexpr core_int kStrides[][2] = {{1, 2},  {2, 1},  {-3, 1}, {0, 1},  {1, 0},
                                    {-1, 1}, {1, -1}, {2, -2}, {-2, 5}, {0, 0}};

template <class T>
bool same_bits(const std::vector<T>& a, const std::vector<T>& b) {
  return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}
template <class T>
T scalar(double real, double imag) {
  if constexpr (is_complex<T>) {
    return {static_cast<real_of<T>>(real), static_cast<real_of<T>>(imag)};
  } else {
    return static_cast<T>(real + 0 * imag);
  }
}

/// Runs body(n, x offset, y offset) over all small lengths with some alignments, and some lengths with all.
template <class R, class Body>
void for_alignments(const Body& body) {
  for (core_int n = 0; n <= 200; ++n) {
    for (std::size_t x_off = 0; x_off < 16; x_off += sizeof(R)) body(n, x_off, 16 - sizeof(R));
    body(n, sizeof(R), std::size_t{0});
    body(n, std::size_t{0}, sizeof(R) / 2);
    body(n, sizeof(R) / 2, sizeof(R));
  }
  for (const core_int n : {37, 277, 1031}) {
    for (std::size_t x_off = 0; x_off < 64; x_off += sizeof(R)) {
      for (std::size_t y_off = 0; y_off < 64; y_off += sizeof(R)) body(n, x_off, y_off);
    }
  }
}

class UpdatesLevel : public ByLevel {
 protected:
  /// One update of y by x from `row`, compared with update(x_i, y_i) element by element in logical order.
  template <class T, class Run, class Update>
  void check(core_int n, core_int incx, core_int incy, std::size_t x_off, std::size_t y_off, const Run& run,
             const Update& update) {
    static arena<T> x(1100), y(1100);
    static const auto x_pool = order_sensitive<T>(1100, 1), y_pool = order_sensitive<T>(1100, 2);
    const auto taken = [](const std::vector<T>& pool, std::size_t count) {
      return std::vector<T>(pool.begin(), pool.begin() + static_cast<std::ptrdiff_t>(count));
    };
    const auto xs = taken(x_pool, span_of(n, incx)), before = taken(y_pool, span_of(n, incy));
    std::vector<T> want = before;
    // Both strides -1 pair the same elements as both 1.
    for (core_int i = 0; i < n; ++i) {
      T& target = want[cell_of(i, n, incy)];
      target = update(xs[cell_of(i, n, incx)], target);
    }
    const T* at_x = x.place(xs, x_off);
    T* at_y = y.place(before, y_off);
    run(&n, at_x, &incx, at_y, &incy);
    ASSERT_TRUE(same_bits(want, y.values()) && y.intact() && same_bits(xs, x.values()))
        << "n " << n << " strides " << incx << ' ' << incy << " offsets " << x_off << ' ' << y_off;
  }
  template <class T, class Run, class Update>
  void check_everywhere(const Run& run, const Update& update) {
    using R = real_of<T>;
    for_alignments<R>([&](core_int n, std::size_t x_off, std::size_t y_off) {
      check<T>(n, 1, 1, x_off, y_off, run, update);
    });
    for (const core_int n : kFewLengths) {
      check<T>(n, -1, -1, sizeof(R), 0, run, update);
      for (const auto& [incx, incy] : kStrides) check<T>(n, incx, incy, 0, sizeof(R), run, update);
    }
  }
  /// The same for a routine that changes x alone.
  template <class T, class Run, class Update>
  void check_scaling(const Run& run, const Update& update) {
    const auto over_y = [&](const core_int* n, const T*, const core_int*, T* y, const core_int* incy) {
      run(n, y, incy);
    };
    check_everywhere<T>(over_y, [&](T, T y) { return update(y); });
  }
};

TEST_P(UpdatesLevel, AxpyMultipliesThenAdds) {
  for_element_types([&]<class T>() {
    for (const T alpha : {scalar<T>(-1.3, 0.7), scalar<T>(0.9, 0)}) {
      check_everywhere<T>(
          [&](const core_int* n, const T* x, const core_int* incx, T* y, const core_int* incy) {
            rows<T>::axpy.kernel[level()](n, &alpha, x, incx, y, incy);
          },
          [&](T x, T y) { return y + alpha * x; });
    }
  });
}

TEST_P(UpdatesLevel, AxpyOntoItself) {
  for_element_types([&]<class T>() {
    const core_int n = 101, one = 1;
    const T alpha = scalar<T>(0.3, -0.1);
    auto x = order_sensitive<T>(101, 3);
    const auto before = x;
    rows<T>::axpy.kernel[level()](&n, &alpha, x.data(), &one, x.data(), &one);
    for (std::size_t i = 0; i < 101; ++i) ASSERT_TRUE(x[i] == before[i] + alpha * before[i]) << i;
  });
}

TEST_P(UpdatesLevel, AxpyWithZeroLeavesYAlone) {
  for_element_types([&]<class T>() {
    const core_int n = 21, one = 1;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<T> x(21, scalar<T>(nan, nan)), before = order_sensitive<T>(21, 4);
    auto y = before;
    const T zero{}, not_a_number = scalar<T>(nan, 0);
    rows<T>::axpy.kernel[level()](&n, &zero, x.data(), &one, y.data(), &one);
    EXPECT_TRUE(same_bits(before, y));
    const std::vector<T> zeros(21);
    rows<T>::axpy.kernel[level()](&n, &not_a_number, zeros.data(), &one, y.data(), &one);
    for (const T& v : y) EXPECT_TRUE(std::isnan(real_part(v)));
  });
}

TEST_P(UpdatesLevel, CopyMovesEveryBit) {
  for_element_types([&]<class T>() {
    check_everywhere<T>([&](const core_int* n, const T* x, const core_int* incx, T* y,
                            const core_int* incy) { rows<T>::copy.kernel[level()](n, x, incx, y, incy); },
                        [](T x, T) { return x; });
    // Bytes that are signalling NaN in every type, with a payload.
    const core_int n = 35, one = 1;
    std::vector<T> x(35), y(36);
    for (std::size_t i = 0; i < 35 * sizeof(T); ++i) {
      reinterpret_cast<unsigned char*>(x.data())[i] =
          static_cast<unsigned char>(i % sizeof(float) == 3   ? 0x7F
                                     : i % sizeof(float) == 2 ? 0x80 | (i & 0x3F)
                                                              : i);
    }
    rows<T>::copy.kernel[level()](&n, x.data(), &one, y.data() + 1, &one);
    EXPECT_EQ(0, std::memcmp(x.data(), y.data() + 1, 35 * sizeof(T)));
  });
}

TEST_P(UpdatesLevel, CopyOntoItselfAndDownwards) {
  for_element_types([&]<class T>() {
    const core_int n = 150, one = 1;
    const auto before = order_sensitive<T>(160, 5);
    // LAPACK closes gaps this way: the target begins below the source and overlaps it.
    for (std::size_t distance = 0; distance < 9; ++distance) {
      auto v = before;
      rows<T>::copy.kernel[level()](&n, v.data() + distance, &one, v.data(), &one);
      for (std::size_t i = 0; i < 150; ++i) ASSERT_TRUE(v[i] == before[i + distance]) << distance << ' ' << i;
    }
  });
}

TEST_P(UpdatesLevel, ScalMultiplies) {
  for_element_types([&]<class T>() {
    using R = real_of<T>;
    const T alpha = scalar<T>(-1.3, 0.7);
    check_scaling<T>([&](const core_int* n, T* x,
                         const core_int* inc) { rows<T>::scal.kernel[level()](n, &alpha, x, inc); },
                     [&](T x) { return alpha * x; });
    const R real_alpha = static_cast<R>(0.37);
    check_scaling<T>([&](const core_int* n, T* x,
                         const core_int* inc) { rows<T>::real_scal.kernel[level()](n, &real_alpha, x, inc); },
                     [&](T x) { return real_alpha * x; });
  });
}

TEST_P(UpdatesLevel, ScalByOneTouchesNothingAndByZeroKeepsNan) {
  for_element_types([&]<class T>() {
    using R = real_of<T>;
    const core_int n = 19, one = 1;
    const T unit = scalar<T>(1, 0), zero{};
    const R real_unit = 1, real_zero = 0;
    // A signalling NaN is quiet after any multiplication.
    std::vector<T> x(19);
    std::memset(x.data(), 0, x.size() * sizeof(T));
    const R signalling = std::numeric_limits<R>::signaling_NaN();
    std::memcpy(&x[7], &signalling, sizeof signalling);
    const auto before = x;
    rows<T>::scal.kernel[level()](&n, &unit, x.data(), &one);
    rows<T>::real_scal.kernel[level()](&n, &real_unit, x.data(), &one);
    EXPECT_TRUE(same_bits(before, x));
    auto y = x;
    rows<T>::scal.kernel[level()](&n, &zero, x.data(), &one);
    rows<T>::real_scal.kernel[level()](&n, &real_zero, y.data(), &one);
    for (const auto& v : {x, y}) {
      for (std::size_t i = 0; i < 19; ++i) EXPECT_EQ(i == 7, std::isnan(real_part(v[i]))) << i;
    }
  });
}

TEST_P(UpdatesLevel, EmptyVectorsAreNotTouched) {
  for_element_types([&]<class T>() {
    using R = real_of<T>;
    const core_int one = 1;
    const T alpha = scalar<T>(2, 1);
    const R real_alpha = 2;
    T* const nowhere = nullptr;
    for (const core_int n : {0, -1, -50}) {
      rows<T>::axpy.kernel[level()](&n, &alpha, nowhere, &one, nowhere, &one);
      rows<T>::copy.kernel[level()](&n, nowhere, &one, nowhere, &one);
      rows<T>::scal.kernel[level()](&n, &alpha, nowhere, &one);
      rows<T>::real_scal.kernel[level()](&n, &real_alpha, nowhere, &one);
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Levels, UpdatesLevel, testing::Range(0, kLevels));

}  // namespace
}  // namespace qel::test
