// SPDX-License-Identifier: BSD-3-Clause
// Threaded level 1: the cut into slices, the order in which partial sums are added, and core routines on 1 to
// 20 and more threads, to the bit. Threads are used on the levels that allow them; with a forced level of 2
// or 3 this runs everywhere, and natively it runs with all routines.
#include "blas/level1/slices.h"

#include "blas/level1/level1.h"
#include "tests/kernels/support.h"

namespace qel::test {
namespace {

bool refuse_memory = false;
void* (*platform_malloc)(size_t) = nullptr;
void* malloc_or_refuse(size_t size) { return refuse_memory ? nullptr : platform_malloc(size); }

class Slices : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    // Before the library takes its allocator on first use.
    platform_malloc = serv_platform_malloc;
    serv_platform_malloc = malloc_or_refuse;
  }
  void SetUp() override {
    serv_set_dynamic(0);
    refuse_memory = false;
  }
  static bool native() { return serv_cpu_level() >= kFirstNative; }
  static bool level_forks() { return serv_cpu_level() >= 2 && serv_cpu_level() != 4; }
  /// A length for which routines fork, of which native levels want a longer one.
  static core_int long_length(core_int elsewhere) { return native() ? 150'001 + elsewhere % 100 : elsewhere; }
};

TEST_F(Slices, AreMultiplesOfEightAndCoverTheVector) {
  for (const core_int n : {1, 7, 8, 9, 63, 64, 65, 100, 1000, 2501}) {
    for (int threads = 1; threads <= 20; ++threads) {
      core_int next = 0;
      for (int t = 0; t < threads; ++t) {
        const slice part = slice_of(n, threads, t);
        if (part.length > 0) {
          EXPECT_EQ(next, part.start) << n << ' ' << threads << ' ' << t;
        }
        next += part.length;
        if (t < threads - 1) {
          EXPECT_EQ(n / threads / 8 * 8, part.length) << n << ' ' << threads << ' ' << t;
        }
        EXPECT_GE(part.length, 0);
        EXPECT_LT(part.start, n);
      }
      EXPECT_EQ(n, next) << threads;
    }
  }
}

TEST_F(Slices, BaseIsTheLowestAddressOfTheSlice) {
  constexpr core_int n = 100;
  int cells[4 * n];
  for (const core_int inc : {1, 3, -1, -4}) {
    for (const slice part : {slice{0, 24}, slice{24, 24}, slice{48, 52}, slice{99, 1}}) {
      for (core_int i = 0; i < part.length; ++i) {
        const int* const by_slice = slice_base(cells, n, inc, part) + cell_of(i, part.length, inc);
        EXPECT_EQ(cells + cell_of(part.start + i, n, inc), by_slice) << inc << ' ' << part.start << ' ' << i;
      }
    }
  }
}

/// Slot by slot: `ahead` slots fill the first accumulator's lanes, whole groups go lane by lane to the two
/// accumulators, the rest follows one by one.
template <class S>
S combined(const std::vector<S>& partial, std::size_t ahead) {
  constexpr std::size_t kWidth = 16 / sizeof(S);
  S sum{};
  std::size_t i = 0;
  if (partial.size() >= 9) {
    std::vector<S> lane[2] = {std::vector<S>(kWidth), std::vector<S>(kWidth)};
    for (; i < ahead; ++i) lane[0][i] = partial[i];
    const std::size_t grouped = (partial.size() - ahead) / (4 * kWidth) * (4 * kWidth);
    for (std::size_t k = 0; k < grouped; ++k, ++i) {
      S& target = lane[k / kWidth % 2][k % kWidth];
      target = target + partial[i];
    }
    for (std::size_t l = 0; l < kWidth; ++l) lane[0][l] = lane[0][l] + lane[1][l];
    sum = neighbours_first(lane[0]);
  }
  for (; i < partial.size(); ++i) sum = sum + partial[i];
  return sum;
}

TEST_F(Slices, PartialSumsAddInTheDocumentedOrder) {
  for_element_types([]<class S>() {
    alignas(16) unsigned char memory[80 * sizeof(S)];
    for (int threads = 1; threads <= 70; ++threads) {
      const auto partial = order_sensitive<S>(static_cast<std::size_t>(threads), 9);
      for (std::size_t off = 0; off < 16; off += sizeof(S)) {
        std::memcpy(memory + off, partial.data(), partial.size() * sizeof(S));
        EXPECT_TRUE(combined(partial, (16 - off) % 16 / sizeof(S)) ==
                    sum_of_partials(reinterpret_cast<const S*>(memory + off), threads))
            << threads << " off " << off;
      }
    }
  });
}

TEST_F(Slices, EightPartialSumsAddFromTheFirstAndNineInLanes) {
  // 1e16 swallows single ones, a pair of them counts: only the order decides.
  const double eight[] = {1e16, 1, 1, 1, 1, 1, 1, 1};
  EXPECT_EQ(1e16, sum_of_partials(eight, 8));
  alignas(16) const double nine[] = {1e16, 1, 1, 1, 1, 1, 1, 1, 0};
  EXPECT_EQ(1e16 + 6, sum_of_partials(nine, 9));
}

template <class S>
struct threaded;
template <>
struct threaded<float> {
  static constexpr auto dot = core::sdot;
  static constexpr auto axpy = core::saxpy;
  static constexpr auto copy = core::scopy;
  static constexpr auto swap = core::sswap;
  static constexpr auto scal = core::sscal;
  static constexpr auto real_scal = core::sscal;
  static constexpr auto rot = core::srot;
  static constexpr auto asum = core::sasum;
  static constexpr auto nrm2 = core::snrm2;
  static constexpr auto amax = core::isamax;
  static constexpr auto amin = core::isamin;
};
template <>
struct threaded<double> {
  static constexpr auto dot = core::ddot;
  static constexpr auto axpy = core::daxpy;
  static constexpr auto copy = core::dcopy;
  static constexpr auto swap = core::dswap;
  static constexpr auto scal = core::dscal;
  static constexpr auto real_scal = core::dscal;
  static constexpr auto rot = core::drot;
  static constexpr auto asum = core::dasum;
  static constexpr auto nrm2 = core::dnrm2;
  static constexpr auto amax = core::idamax;
  static constexpr auto amin = core::idamin;
};
template <>
struct threaded<complex8> {
  static constexpr auto axpy = core::caxpy;
  static constexpr auto copy = core::ccopy;
  static constexpr auto dot = core::cdotc;
  static constexpr auto dotu = core::cdotu;
  static constexpr auto swap = core::cswap;
  static constexpr auto scal = core::cscal;
  static constexpr auto real_scal = core::csscal;
  static constexpr auto rot = core::csrot;
  static constexpr auto asum = core::scasum;
  static constexpr auto nrm2 = core::scnrm2;
  static constexpr auto amax = core::icamax;
  static constexpr auto amin = core::icamin;
};
template <>
struct threaded<complex16> {
  static constexpr auto axpy = core::zaxpy;
  static constexpr auto copy = core::zcopy;
  static constexpr auto dot = core::zdotc;
  static constexpr auto dotu = core::zdotu;
  static constexpr auto swap = core::zswap;
  static constexpr auto scal = core::zscal;
  static constexpr auto real_scal = core::zdscal;
  static constexpr auto rot = core::zdrot;
  static constexpr auto asum = core::dzasum;
  static constexpr auto nrm2 = core::dznrm2;
  static constexpr auto amax = core::izamax;
  static constexpr auto amin = core::izamin;
};

template <class S>
S core_dot(core_int n, const S* x, core_int incx, const S* y, core_int incy) {
  if constexpr (is_complex<S>) {
    S result;
    threaded<S>::dot(&result, &n, x, &incx, y, &incy);
    return result;
  } else {
    return threaded<S>::dot(&n, x, &incx, y, &incy);
  }
}
template <class S>
S kernel_dot(core_int n, const S* x, core_int incx, const S* y, core_int incy) {
  if constexpr (is_complex<S>) {
    S result;
    rows<S>::dotc.kernel[serv_cpu_level()](&result, &n, x, &incx, y, &incy);
    return result;
  } else {
    return rows<S>::dot.kernel[serv_cpu_level()](&n, x, &incx, y, &incy);
  }
}
template <class S>
S sliced_dot(int threads, core_int n, const S* x, core_int incx, const S* y, core_int incy) {
  std::vector<S> partial;
  for (int t = 0; t < threads; ++t) {
    const core_int chunk = n / threads / 8 * 8, start = t * chunk,
                   length = t < threads - 1 ? chunk : n - start;
    const auto base = [&](const S* v, core_int inc) {
      return v + (inc >= 0 ? start * inc : (n - start - length) * -inc);
    };
    partial.push_back(kernel_dot(length, base(x, incx), incx, base(y, incy), incy));
  }
  return combined(partial, 0);
}

TEST_F(Slices, DotOfEveryThreadCountHasItsOwnBits) {
  for_element_types([]<class S>() {
    constexpr core_int kStrides[][2] = {{1, 1}, {-1, -1}, {2, -1}, {-3, 1}};
    const bool forks = level_forks() && (native() || !std::is_same_v<S, complex16>);
    int unlike_serial = 0;
    for (const auto& [incx, incy] : kStrides) {
      for (const core_int n : {long_length(5001), long_length(6017)}) {
        const auto x = order_sensitive<S>(span_of(n, incx), 1), y = order_sensitive<S>(span_of(n, incy), 2);
        const S serial = kernel_dot(n, x.data(), incx, y.data(), incy);
        for (const int threads :
             {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 130}) {
          serv_set_domain_threads(threads, 1);
          const S want =
              threads > 1 && forks ? sliced_dot(threads, n, x.data(), incx, y.data(), incy) : serial;
          EXPECT_TRUE(want == core_dot(n, x.data(), incx, y.data(), incy))
              << threads << " strides " << incx << ' ' << incy;
          unlike_serial += want == serial ? 0 : 1;
        }
      }
    }
    EXPECT_EQ(forks, unlike_serial > 40);
    if constexpr (is_complex<S>) {
      if (!native()) return;  // elsewhere the plain product never forks
      const core_int n = long_length(5001), one = 1;
      const auto x = order_sensitive<S>(static_cast<std::size_t>(n), 1);
      auto conjugated = x;
      for (S& v : conjugated) v.imag = -v.imag;
      serv_set_domain_threads(3, 1);
      S result;
      threaded<S>::dotu(&result, &n, conjugated.data(), &one, x.data(), &one);
      EXPECT_TRUE(core_dot(n, x.data(), one, x.data(), one) == result);
    }
  });
}

TEST_F(Slices, DotRunsSeriallyWithoutMemoryForManyPartialSums) {
  const core_int n = long_length(5001), one = 1;
  const auto x = order_sensitive<double>(static_cast<std::size_t>(n), 1),
             y = order_sensitive<double>(static_cast<std::size_t>(n), 2);
  serv_set_domain_threads(200, 1);
  serv_free_buffers();
  refuse_memory = true;
  EXPECT_EQ(kernel_dot(n, x.data(), one, y.data(), one), core::ddot(&n, x.data(), &one, y.data(), &one));
  refuse_memory = false;
  if (level_forks()) {
    EXPECT_EQ(sliced_dot(200, n, x.data(), one, y.data(), one),
              core::ddot(&n, x.data(), &one, y.data(), &one));
  }
}

TEST_F(Slices, ShortVectorsAndZeroStridesRunSerially) {
  const core_int zero = 0, one = 1, short_length = native() ? 40959 : 2500, whole = long_length(9000);
  const auto x = order_sensitive<double>(static_cast<std::size_t>(whole), 1),
             y = order_sensitive<double>(static_cast<std::size_t>(whole), 2);
  serv_set_domain_threads(3, 1);
  const double short_dot = core::ddot(&short_length, x.data(), &one, y.data(), &one);
  EXPECT_EQ(kernel_dot(short_length, x.data(), one, y.data(), one), short_dot);
  EXPECT_NE(sliced_dot(3, short_length, x.data(), one, y.data(), one), short_dot);
  EXPECT_EQ(kernel_dot(whole, x.data(), zero, y.data(), one),
            core::ddot(&whole, x.data(), &zero, y.data(), &one));
}

TEST_F(Slices, UpdatesOfAnyThreadCountAreTheSerialOnes) {
  for_element_types([]<class T>() {
    using R = real_of<T>;
    const core_int n = long_length(6100);
    constexpr core_int kStrides[][2] = {{1, 1}, {-1, -1}, {2, -1}, {-1, 3}};
    T alpha{};
    reinterpret_cast<R*>(&alpha)[0] = R{0.7F};
    const R c = R{0.6F}, s = R{0.8F};
    const int level = serv_cpu_level();
    // Each takes x and y; the core's routine and the kernel of the whole vectors.
    const auto compare = [&](core_int incx, core_int incy, const auto& core_routine, const auto& kernel) {
      const auto x0 = order_sensitive<T>(span_of(n, incx), 1), y0 = order_sensitive<T>(span_of(n, incy), 2);
      auto want_x = x0, want_y = y0;
      kernel(want_x.data(), want_y.data());
      for (const int threads : {1, 2, 3, 7, 16}) {
        serv_set_domain_threads(threads, 1);
        auto x = x0, y = y0;
        core_routine(x.data(), y.data());
        EXPECT_EQ(0, std::memcmp(want_x.data(), x.data(), x.size() * sizeof(T))) << threads << ' ' << incx;
        EXPECT_EQ(0, std::memcmp(want_y.data(), y.data(), y.size() * sizeof(T))) << threads << ' ' << incy;
      }
    };
    for (const int dynamic : {0, 1}) {  // with it zaxpy and zcopy fork below native levels
      serv_set_dynamic(dynamic);
      for (const auto& strides : kStrides) {
        const core_int incx = strides[0], incy = strides[1];
        const auto pairs = [&](const auto& routine, const auto& row) {
          compare(
              incx, incy, [&](T* x, T* y) { routine(&n, x, &incx, y, &incy); },
              [&](T* x, T* y) { row.kernel[level](&n, x, &incx, y, &incy); });
        };
        pairs(threaded<T>::copy, rows<T>::copy);
        pairs(threaded<T>::swap, rows<T>::swap);
        compare(
            incx, incy, [&](T* x, T* y) { threaded<T>::axpy(&n, &alpha, x, &incx, y, &incy); },
            [&](T* x, T* y) { rows<T>::axpy.kernel[level](&n, &alpha, x, &incx, y, &incy); });
        compare(
            incx, incy, [&](T* x, T* y) { threaded<T>::rot(&n, x, &incx, y, &incy, &c, &s); },
            [&](T* x, T* y) { rows<T>::rot.kernel[level](&n, x, &incx, y, &incy, &c, &s); });
        compare(
            incx, incy,
            [&](T* x, T* y) {
              threaded<T>::scal(&n, &alpha, x, &incx);
              threaded<T>::real_scal(&n, &c, y, &incy);
            },
            [&](T* x, T* y) {
              rows<T>::scal.kernel[level](&n, &alpha, x, &incx);
              rows<T>::real_scal.kernel[level](&n, &c, y, &incy);
            });
      }
    }
  });
}

TEST_F(Slices, SumsOfMagnitudesAddUpBySlicesNatively) {
  for_element_types([]<class T>() {
    using R = real_of<T>;
    const core_int n = long_length(9000);
    for (const core_int inc : {1, -2}) {
      const auto x = order_sensitive<T>(span_of(n, inc), 3);
      const auto serial = [&](slice part, const auto& row) {
        return row.kernel[serv_cpu_level()](&part.length, slice_base(x.data(), n, inc, part), &inc);
      };
      const R norm = serial({0, n}, rows<T>::nrm2);
      for (const int threads : {1, 2, 5, 11}) {
        serv_set_domain_threads(threads, 1);
        std::vector<R> sums;
        const int slices = native() ? threads : 1;
        for (int t = 0; t < slices; ++t) sums.push_back(serial(slice_of(n, slices, t), rows<T>::asum));
        EXPECT_EQ(combined(sums, 0), threaded<T>::asum(&n, x.data(), &inc)) << threads;
        EXPECT_TRUE(near_sum(norm, norm, 30, threaded<T>::nrm2(&n, x.data(), &inc))) << threads;
      }
    }
  });
}

// Slices meet with the extreme in any of them, ties between them, and NaN on their borders.
TEST_F(Slices, SearchesFindWhatOneThreadFinds) {
  const core_int n = long_length(4000);
  const auto length = static_cast<std::size_t>(n);
  const auto cut = static_cast<std::size_t>(slice_of(n, 3, 1).start);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  struct event {
    std::size_t at;
    double value;
  };
  const std::vector<std::vector<event>> cases = {{{5, 9}},
                                                 {{cut + 5, 9}},
                                                 {{length - 1, 9}},
                                                 {{5, 9}, {cut + 5, 9}},
                                                 {{5, 0}, {cut + 5, 0}},
                                                 {{5, 9}, {cut + 100, nan}},
                                                 {{cut - 1, nan}, {5, 9}},
                                                 {{cut, nan}, {5, 9}, {5, 0}},
                                                 {{0, nan}},
                                                 {{length - 1, nan}},
                                                 {{cut - 1, nan}, {cut, 9}}};
  for_element_types([&]<class T>() {
    for (const core_int inc : {1, 2}) {
      for (std::size_t k = 0; k < cases.size(); ++k) {
        std::vector<T> x(span_of(n, inc));
        for (T& v : x) reinterpret_cast<real_of<T>*>(&v)[0] = 2;
        for (const event& e : cases[k]) {
          reinterpret_cast<real_of<T>*>(&x[e.at * static_cast<std::size_t>(inc)])[0] =
              static_cast<real_of<T>>(e.value);
        }
        const core_int largest = rows<T>::amax.kernel[0](&n, x.data(), &inc),
                       smallest = rows<T>::amin.kernel[0](&n, x.data(), &inc);
        for (const int threads : {1, 2, 3, 7}) {
          serv_set_domain_threads(threads, 1);
          EXPECT_EQ(largest, threaded<T>::amax(&n, x.data(), &inc)) << k << " threads " << threads;
          EXPECT_EQ(smallest, threaded<T>::amin(&n, x.data(), &inc)) << k << " threads " << threads;
        }
      }
    }
  });
}

}  // namespace
}  // namespace qel::test
