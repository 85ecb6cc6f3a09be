// SPDX-License-Identifier: BSD-3-Clause
// What the third-party BLAS programs leave out of the exported names: norms at the edges of the number range,
// the smallest element, mixed-precision sums, rotations in both languages, comparison of letters.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "dropin/blas_names.h"
#include "dropin/cblas_names.h"
#include "service/complex_arithmetic.h"

namespace qel::dropin {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kLargest = std::numeric_limits<double>::max();

// The value is repeated; a stray element replaces the last one.
struct norm_case {
  const char* name;
  double value;
  int n;
  double stray;
  double want;
};
constexpr norm_case kNormCases[] = {
    {"NoElements", 3, 0, 3, 0},
    {"NegativeCount", 3, -2, 3, 0},
    {"OneNegative", -3, 1, -3, 3},
    {"Zeros", 0, 5, 0, 0},
    {"OneInfinity", 1, 9, kInfinity, kInfinity},
    {"AllInfinities", -kInfinity, 9, kInfinity, kInfinity},
    {"Nan", 1, 9, kNan, kNan},
    {"NanAmongInfinities", kInfinity, 9, kNan, kNan},
    {"NanAmongHuge", kLargest, 3, kNan, kNan},
    {"SquaresOverflow", 0x1p1000, 4, 0x1p1000, 0x1p1001},
    {"NearLargest", kLargest / 4, 4, kLargest / 4, kLargest / 2},
    {"ResultOverflows", kLargest, 4, kLargest, kInfinity},
    {"SquaresUnderflow", 0x1p-700, 16, 0x1p-700, 0x1p-698},
    {"Subnormal", 0x1p-1070, 16, 0x1p-1070, 0x1p-1068},
    {"SmallestSubnormal", 0x1p-1074, 4, 0x1p-1074, 0x1p-1073},
    {"SquaresJustUnderflow", 0x1p-538, 256, 0x1p-538, 0x1p-534},
    {"TinyBesideHuge", 0x1p-1000, 17, 0x1p900, 0x1p900},
};

TEST(Norm, DoubleAtTheEdges) {
  for (const norm_case& row : kNormCases) {
    for (const int stride : {1, 2, -3}) {
      const int apart = std::abs(stride), length = std::max(row.n, 1);
      std::vector<double> x(static_cast<size_t>(length * apart), kNan);
      for (int i = 0; i < length; ++i) x[static_cast<size_t>(i * apart)] = row.value;
      x[static_cast<size_t>((length - 1) * apart)] = row.stray;
      const double norm = dnrm2_(&row.n, x.data(), &stride);
      if (std::isnan(row.want)) {
        EXPECT_TRUE(std::isnan(norm)) << row.name << " stride " << stride;
      } else {
        EXPECT_EQ(row.want, norm) << row.name << " stride " << stride;
      }
    }
  }
}

TEST(Norm, SingleRangeNeedsNoScaling) {
  const int n = 4, one = 1;
  for (const float value : {0x1p125F, 0x1p-149F}) {
    const std::vector<float> x(4, value);
    EXPECT_EQ(2 * value, snrm2_(&n, x.data(), &one)) << value;
    const std::vector<complex8> z(2, complex8{value, -value});
    EXPECT_EQ(2 * value, cblas_scnrm2(2, z.data(), 1)) << value;
  }
}

TEST(Norm, AgreesWithLongDoubleAndCountsBothParts) {
  std::mt19937 generator(7);
  std::uniform_real_distribution<double> uniform(-1, 1);
  for (int n = 1; n <= 70; ++n) {
    for (const int stride : {1, -2, 0}) {
      std::vector<complex16> z(static_cast<size_t>(n * std::max(std::abs(stride), 1)));
      for (complex16& element : z) element = {uniform(generator), uniform(generator)};
      long double sum = 0;
      for (int i = 0; i < n; ++i) {
        const complex16 element = z[static_cast<size_t>(i * std::abs(stride))];
        sum += static_cast<long double>(element.real) * element.real;
        sum += static_cast<long double>(element.imag) * element.imag;
      }
      const double want = static_cast<double>(std::sqrt(sum));
      EXPECT_NEAR(want, dznrm2_(&n, z.data(), &stride), 1e-15 * n * want) << n << " stride " << stride;
      EXPECT_EQ(dznrm2_(&n, z.data(), &stride), cblas_dznrm2(n, z.data(), stride));
    }
  }
}

// The position of the smallest element, as Fortran counts; C counts from 0, and has 0 for none too.
struct smallest_case {
  const char* name;
  int n, incx, want;
};
constexpr smallest_case kSmallestCases[] = {{"FirstOfEqualOnes", 6, 1, 3},
                                            {"Strided", 3, 2, 2},
                                            {"One", 1, 1, 1},
                                            {"None", 0, 1, 0},
                                            {"NoStride", 6, 0, 0}};

TEST(Smallest, InBothLanguagesAndAllTypes) {
  const double sizes[] = {4, -3, 1, 2, -1, 5};
  std::vector<float> s;
  std::vector<double> d;
  std::vector<complex8> c;
  std::vector<complex16> z;
  for (const double size : sizes) {
    // By the sum of the parts the third and the fifth are equal, by the modulus the fifth would be smaller.
    const bool in_halves = d.size() >= 3;
    const complex16 element = in_halves ? complex16{size / 2, -size / 2} : complex16{size, 0};
    d.push_back(size);
    z.push_back(element);
    s.push_back(static_cast<float>(size));
    c.push_back({static_cast<float>(element.real), static_cast<float>(element.imag)});
  }
  for (const smallest_case& row : kSmallestCases) {
    const size_t from_zero = row.want > 0 ? static_cast<size_t>(row.want - 1) : 0;
    EXPECT_EQ(row.want, isamin_(&row.n, s.data(), &row.incx)) << row.name;
    EXPECT_EQ(row.want, idamin_(&row.n, d.data(), &row.incx)) << row.name;
    EXPECT_EQ(row.want, icamin_(&row.n, c.data(), &row.incx)) << row.name;
    EXPECT_EQ(row.want, izamin_(&row.n, z.data(), &row.incx)) << row.name;
    EXPECT_EQ(from_zero, cblas_isamin(row.n, s.data(), row.incx)) << row.name;
    EXPECT_EQ(from_zero, cblas_idamin(row.n, d.data(), row.incx)) << row.name;
    EXPECT_EQ(from_zero, cblas_icamin(row.n, c.data(), row.incx)) << row.name;
    EXPECT_EQ(from_zero, cblas_izamin(row.n, z.data(), row.incx)) << row.name;
  }
}

// The products cancel but for what only doubles can hold.
TEST(MixedPrecisionDot, SumsInDouble) {
  const float x[] = {4097, -1, 0x1p13F}, y[] = {4097, 16785408, -1};  // 4097^2 is odd, above 2^24
  EXPECT_EQ(4097.0 * 4097 - 16785408.0 - 8192, cblas_dsdot(3, x, 1, y, 1));
  EXPECT_EQ(static_cast<float>(4097.0 * 4097 - 16785408.0 - 8192 + 0.5), cblas_sdsdot(3, 0.5F, x, 1, y, 1));
  const int n = 2, forth = 1, back = -1;
  const float start = -2;
  EXPECT_EQ(4097.0F * 8 - 4 - 2, sdsdot_(&n, &start, x, &forth, std::vector<float>{4, 8}.data(), &back));
}

// Every form turns (x, y) = (1 + 2i, 3 - i) by cosine 3/5 and sine 4/5.
TEST(RealRotationOfComplex, InBothLanguages) {
  const int n = 1, one = 1;
  const double c = 0.6, s = 0.8;
  const float cs = 0.6F, ss = 0.8F;
  complex16 x{1, 2}, y{3, -1};
  zdrot_(&n, &x, &one, &y, &one, &c, &s);
  EXPECT_NEAR(3, x.real, 1e-15);
  EXPECT_NEAR(0.4, x.imag, 1e-15);
  EXPECT_NEAR(1, y.real, 1e-15);
  EXPECT_NEAR(-2.2, y.imag, 1e-15);
  cblas_zdrot(1, &x, 1, &y, 1, 0.6, -0.8);
  EXPECT_NEAR(1, x.real, 1e-15);
  EXPECT_NEAR(-1, y.imag, 1e-15);
  complex8 v{1, 2}, w{3, -1};
  csrot_(&n, &v, &one, &w, &one, &cs, &ss);
  EXPECT_NEAR(3, v.real, 1e-6);
  EXPECT_NEAR(-2.2, w.imag, 1e-6);
  cblas_csrot(1, &v, 1, &w, 1, 0.6F, -0.8F);
  EXPECT_NEAR(2, v.imag, 1e-6);
  EXPECT_NEAR(3, w.real, 1e-6);
}

template <class T>
void expect_annihilates(T a, T b, real_of<T> c, T s, T r) {
  const real_of<T> tolerance = 8 * std::numeric_limits<real_of<T>>::epsilon() * (abs1(a) + abs1(b));
  EXPECT_LE(abs1(from_real<T>(c) * a + s * b - r), tolerance);
  EXPECT_LE(abs1(from_real<T>(c) * b - conj(s) * a), tolerance);
}

TEST(ComplexRotation, AnnihilatesTheSecondElement) {
  const double parts[] = {0, 1, -2.5};
  for (int i = 0; i < 81; ++i) {
    const complex16 a{parts[i % 3], parts[i / 3 % 3]}, b{parts[i / 9 % 3], parts[i / 27]};
    complex16 r = a, other = b, s{};
    double c = 0;
    zrotg_(&r, &other, &c, &s);
    expect_annihilates(a, b, c, s, r);
    complex8 r8{static_cast<float>(a.real), static_cast<float>(a.imag)}, s8{};
    complex8 b8{static_cast<float>(b.real), static_cast<float>(b.imag)};
    const complex8 a8 = r8;
    float c8 = 0;
    cblas_crotg(&r8, &b8, &c8, &s8);
    expect_annihilates(a8, b8, c8, s8, r8);
  }
}

// The C form takes y1 by value, the Fortran form by address; what they make must clear y1.
TEST(ModifiedRotation, ClearsTheSecondElement) {
  double d1 = 0.7, d2 = 0.3, x1 = 1.5, param[5] = {};
  const double y1 = 2.5;
  double x = x1, y = y1;
  cblas_drotmg(&d1, &d2, &x1, y1, param);
  cblas_drotm(1, &x, 1, &y, 1, param);
  EXPECT_NEAR(x1, x, 1e-15);
  EXPECT_NEAR(0, y, 1e-15);
  EXPECT_NEAR(0.7 * 1.5 * 1.5 + 0.3 * 2.5 * 2.5, d1 * x * x, 1e-14);
  float e1 = 0.7F, e2 = 0.3F, u1 = 1.5F, param_s[5] = {}, u = u1, v = 2.5F;
  cblas_srotmg(&e1, &e2, &u1, v, param_s);
  cblas_srotm(1, &u, 1, &v, 1, param_s);
  EXPECT_NEAR(u1, u, 1e-6);
  EXPECT_NEAR(0, v, 1e-6);
}

TEST(Size, SumsTheParts) {
  const complex16 z{-3, 4};
  const complex8 c{-3, 4};
  EXPECT_EQ(7, dcabs1_(&z));
  EXPECT_EQ(7, cblas_dcabs1(&z));
  EXPECT_EQ(7, scabs1_(&c));
  EXPECT_EQ(7, cblas_scabs1(&c));
}

TEST(Letters, CompareInEitherCase) {
  const struct {
    const char *a, *b;
    int want;
  } rows[] = {{"N", "n", 1}, {"t", "T", 1}, {"U", "U", 1}, {"U", "L", 0},
              {"[", "{", 0}, {"@", "`", 0}, {"N", "N ", 1}};
  for (const auto& row : rows) EXPECT_EQ(row.want, lsame_(row.a, row.b)) << row.a << row.b;
}

}  // namespace
}  // namespace qel::dropin
