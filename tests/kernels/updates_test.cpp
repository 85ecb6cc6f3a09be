// SPDX-License-Identifier: BSD-3-Clause
// The kernels that change vectors: axpy, copy, scal, swap, rot, rotm. Every element's result is fixed to the
// bit whatever the path that computed it, and nothing outside the operand is written.
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

/// a + b c as a level rounds it: native ones once.
template <class R>
R plus_product(bool fused, R a, R b, R c) {
  return fused ? std::fma(b, c, a) : a + b * c;
}
template <class R>
R multiple(bool, R alpha, R x) {
  return alpha * x;
}
template <complex_pair C>
C multiple(bool fused, C alpha, C x) {
  return {plus_product(fused, alpha.real * x.real, -alpha.imag, x.imag),
          plus_product(fused, alpha.real * x.imag, alpha.imag, x.real)};
}
template <class R>
R plus_multiple(bool fused, R y, R alpha, R x) {
  return plus_product(fused, y, alpha, x);
}
template <complex_pair C>
C plus_multiple(bool fused, C y, C alpha, C x) {
  if (!fused) return y + alpha * x;
  return {std::fma(-alpha.imag, x.imag, std::fma(alpha.real, x.real, y.real)),
          std::fma(alpha.imag, x.real, std::fma(alpha.real, x.imag, y.imag))};
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

/// (x, y) = (h11 x + h12 y, h22 y + h21 x), native ones fused.
template <class R>
void turn(bool fused, R& x, R& y, R h11, R h21, R h12, R h22) {
  const R from_x = x;
  x = plus_product(fused, h12 * y, h11, x);
  y = plus_product(fused, h21 * from_x, h22, y);
}
template <complex_pair C>
void turn(bool fused, C& x, C& y, real_of<C> h11, real_of<C> h21, real_of<C> h12, real_of<C> h22) {
  turn(fused, x.real, y.real, h11, h21, h12, h22);
  turn(fused, x.imag, y.imag, h11, h21, h12, h22);
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
  /// One change of both vectors, compared with update(x_i, y_i) in logical order.
  template <class T, class Run, class Update>
  void check_pair(core_int n, core_int incx, core_int incy, std::size_t x_off, std::size_t y_off,
                  const Run& run, const Update& update) {
    static arena<T> x(1100), y(1100);
    auto xs = order_sensitive<T>(span_of(n, incx), 1), ys = order_sensitive<T>(span_of(n, incy), 2);
    T *at_x = x.place(xs, x_off), *at_y = y.place(ys, y_off);
    run(&n, at_x, &incx, at_y, &incy);
    for (core_int i = 0; i < n; ++i) update(xs[cell_of(i, n, incx)], ys[cell_of(i, n, incy)]);
    ASSERT_TRUE(same_bits(xs, x.values()) && same_bits(ys, y.values()) && x.intact() && y.intact())
        << "n " << n << " strides " << incx << ' ' << incy << " offsets " << x_off << ' ' << y_off;
  }
  template <class T, class Run, class Update>
  void check_pairs(const Run& run, const Update& update) {
    using R = real_of<T>;
    for (core_int n = 0; n <= 200; n += n < 70 ? 1 : 13) {
      // The portable templates of the other levels expect what the language does.
      check_pair<T>(n, 1, 1, sizeof(R), native() ? sizeof(R) / 2 : 0, run, update);
      check_pair<T>(n, 1, 1, 0, 16 + sizeof(R), run, update);
    }
    for (const core_int n : kFewLengths) {
      check_pair<T>(n, -1, -1, sizeof(R), 0, run, update);
      for (const auto& [incx, incy] : kStrides) check_pair<T>(n, incx, incy, 0, sizeof(R), run, update);
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
          [&](T x, T y) { return plus_multiple(native(), y, alpha, x); });
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
    for (std::size_t i = 0; i < 101; ++i) {
      ASSERT_TRUE(x[i] == plus_multiple(native(), before[i], alpha, before[i])) << i;
    }
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
                     [&](T x) { return multiple(native(), alpha, x); });
    const R real_alpha = static_cast<R>(0.37);
    check_scaling<T>([&](const core_int* n, T* x,
                         const core_int* inc) { rows<T>::real_scal.kernel[level()](n, &real_alpha, x, inc); },
                     [&](T x) { return real_alpha * x; });
  });
}

TEST_P(UpdatesLevel, SwapExchanges) {
  for_element_types([&]<class T>() {
    check_pairs<T>([&](const core_int* n, T* x, const core_int* incx, T* y,
                       const core_int* incy) { rows<T>::swap.kernel[level()](n, x, incx, y, incy); },
                   [](T& x, T& y) { std::swap(x, y); });
  });
}

TEST_P(UpdatesLevel, RotationsTurnEveryPair) {
  for_element_types([&]<class T>() {
    using R = real_of<T>;
    const R c = R{0.6F}, s = R{-0.8F};
    check_pairs<T>([&](const core_int* n, T* x, const core_int* incx, T* y,
                       const core_int* incy) { rows<T>::rot.kernel[level()](n, x, incx, y, incy, &c, &s); },
                   [&](T& x, T& y) { turn(native(), x, y, c, -s, s, c); });
  });
  for_types<float, double>([&]<class R>() {
    for (const R flag : {R{-2}, R{-1}, R{0}, R{1}}) {
      const R param[] = {flag, R{0.7F}, R{-0.2F}, R{0.3F}, R{1.5F}};
      const bool beside = flag == 1, diagonal = flag == 0;
      check_pairs<R>([&](const core_int* n, R* x, const core_int* incx, R* y,
                         const core_int* incy) { rows<R>::rotm.kernel[level()](n, x, incx, y, incy, param); },
                     [&](R& x, R& y) {
                       if (flag != -2) {
                         turn(native(), x, y, diagonal ? 1 : param[1], beside ? -1 : param[2],
                              beside ? 1 : param[3], diagonal ? 1 : param[4]);
                       }
                     });
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
