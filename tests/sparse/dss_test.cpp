// SPDX-License-Identifier: BSD-3-Clause
// The simpler interface to the direct solver: option words, statuses and states, ends of the process,
// statistics.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <vector>

#include "qel/dss.h"
#include "service/serv.h"
#include "sparse/dss/options.h"
#include "sparse/dss/record.h"
#include "sparse/dss/reporter.h"
#include "tests/sparse/pardiso_calls.h"
#include "tests/support/in_child.h"
#include "tests/support/sanitized.h"

namespace qel::test {
namespace {

constexpr int kQuiet = QEL_DSS_TERM_LVL_FATAL + QEL_DSS_MSG_LVL_FATAL;

/// [4 1 0; 1 3 1; 0 1 2] as upper triangle.
constexpr int kTriangleRows[] = {1, 3, 5, 6}, kTriangleColumns[] = {1, 2, 2, 3, 3};
constexpr double kTriangle[] = {4, 1, 3, 1, 2};

/// A handle whose errors come back as statuses.
class session {
 public:
  explicit session(int options = kQuiet) { EXPECT_EQ(dss_create(&handle, &options), 0); }
  session(const session&) = delete;
  session& operator=(const session&) = delete;
  ~session() {
    const int none = 0;
    EXPECT_EQ(dss_delete(&handle, &none), 0);
    EXPECT_EQ(handle, nullptr);
  }
  int define(int options, const int* rows, const int* columns, int n, int cols, int nnz) {
    return dss_define_structure(&handle, &options, rows, &n, &cols, columns, &nnz);
  }
  int define_triangle() { return define(0, kTriangleRows, kTriangleColumns, 3, 3, 5); }
  int reorder(int options = 0, int* perm = nullptr) { return dss_reorder(&handle, &options, perm); }
  int factor(int options = 0, const void* a = kTriangle) { return dss_factor_real(&handle, &options, a); }
  int factor_complex(int options, const void* a) { return dss_factor_complex(&handle, &options, a); }
  int solve(const void* b, void* x, int options = 0) {
    const int one = 1;
    return dss_solve_real(&handle, &options, b, &one, x);
  }
  int statistics(const char* keys, double* result, int options = 0) {
    return dss_statistics(&handle, &options, keys, result);
  }
  void* handle = nullptr;
};

/// Brings a session into a state.
void bring_to(session& s, int state) {
  double b[3] = {6, 10, 8}, x[3];
  int status = 0;
  if (status == 0 && state >= dss::state_defined) status = s.define_triangle();
  if (status == 0 && state >= dss::state_reordered) status = s.reorder();
  if (status == 0 && state >= dss::state_factored) status = s.factor();
  if (status == 0 && state >= dss::state_solved) status = s.solve(b, x);
  ASSERT_EQ(status, 0);
}

TEST(DssOptions, FieldsAndStrayBits) {
  const struct {
    uint32_t options;
    dss::option_field field;
    int value;
  } cases[] = {
      {0, dss::kMessageLevel, dss::kAbsent},
      {0x80000001, dss::kMessageLevel, 0},
      {0x80000006, dss::kMessageLevel, 5},
      {0x80000007, dss::kMessageLevel, dss::kInvalid},
      {0x80000000, dss::kMessageLevel, dss::kInvalid},
      {0x00000003, dss::kMessageLevel, dss::kInvalid},
      {0x40000030, dss::kTerminationLevel, 5},
      {0x40000038, dss::kTerminationLevel, dss::kInvalid},
      {0x20000180, dss::kStructure, 5},
      {0x200001C0, dss::kStructure, dss::kInvalid},
      {0x10000100, dss::kReorder, 3},
      {0x08000100, dss::kFactor, 3},
      {0x08000140, dss::kFactor, dss::kInvalid},
  };
  for (const auto& c : cases)
    EXPECT_EQ(dss::field_value(c.options, c.field), c.value) << std::hex << c.options;
  EXPECT_EQ(dss::solve_phase(0x1000), 33);
  EXPECT_EQ(dss::solve_phase(0x4000), 331);
  EXPECT_EQ(dss::solve_phase(0x8000), 332);
  EXPECT_EQ(dss::solve_phase(0xC000), 333);
}

TEST(DssStatus, OfBadOptionsInTheirOrder) {
  session s;
  double b[3] = {1, 2, 3}, x[3];
  const int invalid_message = static_cast<int>(0x80000007u), invalid_end = 0x40000038;
  bring_to(s, dss::state_solved);
  EXPECT_EQ(s.solve(b, x, invalid_message + 0x400), -12) << "the first of several";
  EXPECT_EQ(s.solve(b, x, invalid_end), -13);
  EXPECT_EQ(s.solve(b, x, 0x400), -10);
  EXPECT_EQ(s.solve(b, x, QEL_DSS_SYMMETRIC), -10) << "another routine's field";
  EXPECT_EQ(s.define(0x200001C0, kTriangleRows, kTriangleColumns, 0, 3, 5), -14);
  EXPECT_EQ(s.reorder(0x100001C0), -15);
  int options = 0x20000;
  void* none = nullptr;
  options += kQuiet;
  EXPECT_EQ(dss_create(&none, &options), -10);
  EXPECT_EQ(none, nullptr);
}

TEST(DssStatus, OfSizes) {
  const struct {
    int rows, columns, nonzeros, status;
  } cases[] = {{3, 0, 5, -5}, {0, 3, 5, -4},  {0, 0, 5, -5}, {3, 4, 5, -8},
               {3, 3, 2, -6}, {3, 3, 10, -7}, {3, 3, 5, 0}};
  session s;
  for (const auto& c : cases) {
    EXPECT_EQ(s.define(0, kTriangleRows, kTriangleColumns, c.rows, c.columns, c.nonzeros), c.status);
  }
  // Several faults are all reported.
  const child_result told = in_child([] {
    session loud(QEL_DSS_TERM_LVL_FATAL);
    loud.define(0, kTriangleRows, kTriangleColumns, 0, 3, -1);
    return 0;
  });
  EXPECT_EQ(told.output,
            "QEL-DSS-DSS-Error, Number of rows less than one\nQEL-DSS-DSS-Error, Not a square matrix\n"
            "QEL-DSS-DSS-Error, Number of non-zeros less than nRows\n");
}

TEST(DssStatus, OfStates) {
  const struct {
    const char* name;
    std::function<int(session&)> call;
    std::vector<int> states;
  } routines[] = {
      {"define", [](session& s) { return s.define_triangle(); }, {0, 4}},
      {"reorder", [](session& s) { return s.reorder(); }, {1}},
      {"factor", [](session& s) { return s.factor(); }, {2, 3, 4}},
      {"solve",
       [](session& s) {
         double b[3] = {1, 2, 3}, x[3];
         return s.solve(b, x);
       },
       {3, 4}},
      {"memory",
       [](session& s) {
         double kb = 0;
         return s.statistics("peakmem", &kb);
       },
       {0, 1, 2, 3, 4}},
  };
  for (const auto& routine : routines) {
    for (int state = 0; state <= 4; ++state) {
      session s;
      bring_to(s, state);
      const bool allowed = std::count(routine.states.begin(), routine.states.end(), state) != 0;
      EXPECT_EQ(routine.call(s), allowed ? 0 : -9) << routine.name << " in state " << state;
    }
  }
  void* none = nullptr;
  const int options = kQuiet;
  EXPECT_EQ(dss_delete(&none, &options), -9);
}

TEST(DssStatus, EndsTheProcessByItsSeverity) {
  if (kWithThreadSanitizer) GTEST_SKIP() << "children that end by exit()";
  const struct {
    const char* name;
    int create_options;
    std::function<void(session&)> act;
    int exit_status;
    const char* output;
  } cases[] = {
      {"by default", 0, [](session& s) { s.reorder(); }, 247, "QEL-DSS-DSS-Error, Invalid call sequence\n"},
      {"fatal only", QEL_DSS_TERM_LVL_FATAL, [](session& s) { s.reorder(); }, 0,
       "QEL-DSS-DSS-Error, Invalid call sequence\n"},
      {"fatal", QEL_DSS_TERM_LVL_FATAL,
       [](session& s) {
         bring_to(s, 2);
         s.factor(0x08000140);
       },
       240, "QEL-DSS-DSS-Fatal, Invalid factor option\n"},
      {"silent", kQuiet, [](session& s) { s.reorder(); }, 0, ""},
      {"talkative", QEL_DSS_MSG_LVL_SUCCESS + QEL_DSS_TERM_LVL_FATAL, [](session& s) { s.define_triangle(); },
       0, "QEL-DSS-DSS-Success, Success\nQEL-DSS-DSS-Success, Success\nQEL-DSS-DSS-Success, Success\n"},
      {"levels of one call stay", 0,
       [](session& s) {
         s.define(kQuiet, kTriangleRows, kTriangleColumns, 3, 4, 5);
         s.reorder();
       },
       0, ""},
      {"unknown key", QEL_DSS_TERM_LVL_FATAL,
       [](session& s) {
         double value;
         s.statistics("peakmem, mood", &value);
       },
       1, "QEL-DSS-UTIL-Fatal, Bad facility code\n"},
      {"key too early", QEL_DSS_TERM_LVL_FATAL,
       [](session& s) {
         double value;
         bring_to(s, 3);
         s.statistics("SolveTime", &value);
       },
       1, "QEL-DSS-UTIL-Fatal, Bad facility code\n"},
      {"inertia of a definite matrix", QEL_DSS_TERM_LVL_FATAL,
       [](session& s) {
         double value[3];
         bring_to(s, 3);
         s.statistics("inertia", value);
       },
       1, "QEL-DSS-UTIL-Fatal, Bad facility code\n"},
  };
  for (const auto& c : cases) {
    const child_result got = in_child([&c] {
      session s(c.create_options);
      c.act(s);
      return 0;
    });
    EXPECT_EQ(got.exit_status, c.exit_status) << c.name;
    EXPECT_EQ(got.output, c.output) << c.name;
  }
}

TEST(DssStatus, OfTheReporter) {
  const struct {
    int code, status;
    const char* text;
  } cases[] = {{dss::code_of(-8), -8, "QEL-DSS-DSS-Error, Not a square matrix\n"},
               {dss::code_of(-40), 2, "QEL-DSS-UTIL-Fatal, Invalid error number\n"},
               {3 * 256 + 1, 3, "QEL-DSS-UTIL-Fatal, Bad severity number\n"},
               {77, 1, "QEL-DSS-UTIL-Fatal, Bad facility code\n"}};
  for (const auto& c : cases) {
    const dss::levels never_ends = {4, 6};
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(dss::report(c.code, never_ends), c.status); }), c.text);
  }
}

TEST(DssStatus, OfConflictsAndFailures) {
  session s;
  bring_to(s, 2);
  EXPECT_EQ(s.factor(QEL_DSS_HERMITIAN_POSITIVE_DEFINITE), -11);
  const double indefinite[] = {-4, 1, 3, 1, 2};
  EXPECT_EQ(s.factor(0, indefinite), -1);
  EXPECT_EQ(s.factor(QEL_DSS_INDEFINITE, indefinite), 0);
  session complex_structure;
  ASSERT_EQ(complex_structure.define(QEL_DSS_SYMMETRIC_COMPLEX, kTriangleRows, kTriangleColumns, 3, 3, 5), 0);
  ASSERT_EQ(complex_structure.reorder(), 0);
  EXPECT_EQ(complex_structure.factor(), -11);
  session no_perm;
  bring_to(no_perm, 1);
  EXPECT_EQ(no_perm.reorder(QEL_DSS_MY_ORDER), -11);
}

template <class T>
void expect_solves(int type, int structure, int factor_option, int create_options = 0) {
  const bool single = sizeof(real_of<T>) == 4;
  solver_calls<T> reference(csr_of<T>(as_type(grid(8, 7, 1), type)));
  const csr_arrays<T>& a = reference.matrix;
  const int nnz = static_cast<int>(a.a.size());
  session s(kQuiet + create_options + (single ? QEL_DSS_SINGLE_PRECISION : 0));
  std::vector<T> x(reference.b.size());
  for (int round = 0; round < 2; ++round) {  // the second time on a handle that has solved
    ASSERT_EQ(s.define(structure, a.ia.data(), a.ja.data(), a.n, a.n, nnz), 0);
    ASSERT_EQ(s.reorder(round == 0 ? 0 : QEL_DSS_MINIMUM_DEGREE), 0);
    const int kind = is_complex<T> ? 2 : 1;
    ASSERT_EQ(dss_factor(&s.handle, &factor_option, a.a.data(), &kind), 0) << type;
    ASSERT_EQ(s.solve(reference.b.data(), x.data()), 0);
    EXPECT_LT(reference.backward_error(x, reference.b), single ? 1e-5 : 1e-14) << type;
    std::vector<T> y = x;
    const std::vector<T> whole = x;
    ASSERT_EQ(s.solve(reference.b.data(), x.data(), QEL_DSS_FORWARD_SOLVE), 0);
    ASSERT_EQ(s.solve(x.data(), y.data(), QEL_DSS_DIAGONAL_SOLVE), 0);
    ASSERT_EQ(s.solve(y.data(), x.data(), QEL_DSS_BACKWARD_SOLVE), 0);
    EXPECT_LT(reference.backward_error(x, reference.b), single ? 1e-5 : 1e-13) << type;
  }
}

TEST(Dss, SolvesAllKinds) {
  expect_solves<double>(2, QEL_DSS_SYMMETRIC, QEL_DSS_POSITIVE_DEFINITE);
  expect_solves<double>(-2, 0, QEL_DSS_INDEFINITE);
  expect_solves<double>(1, QEL_DSS_SYMMETRIC_STRUCTURE, 0);
  expect_solves<double>(11, QEL_DSS_NON_SYMMETRIC, QEL_DSS_INDEFINITE);
  expect_solves<float>(11, QEL_DSS_NON_SYMMETRIC, QEL_DSS_INDEFINITE);
  expect_solves<complex16>(4, QEL_DSS_SYMMETRIC_COMPLEX, QEL_DSS_HERMITIAN_POSITIVE_DEFINITE);
  expect_solves<complex16>(-4, QEL_DSS_SYMMETRIC_COMPLEX, QEL_DSS_HERMITIAN_INDEFINITE);
  expect_solves<complex16>(6, QEL_DSS_SYMMETRIC_COMPLEX, QEL_DSS_INDEFINITE);
  expect_solves<complex16>(6, QEL_DSS_SYMMETRIC, QEL_DSS_INDEFINITE);  // a structure of real data
  expect_solves<complex16>(3, QEL_DSS_SYMMETRIC_STRUCTURE_COMPLEX, 0);
  expect_solves<complex16>(13, QEL_DSS_NON_SYMMETRIC_COMPLEX, 0);
  expect_solves<complex8>(13, QEL_DSS_NON_SYMMETRIC_COMPLEX, 0);
}

TEST(Dss, GivesAndTakesPermutations) {
  const csr_arrays<double> a = csr_of<double>(grid(5, 5, 1));
  std::vector<int> perm(25), seen(25);
  session s;
  ASSERT_EQ(s.define(0, a.ia.data(), a.ja.data(), 25, 25, static_cast<int>(a.a.size())), 0);
  ASSERT_EQ(s.reorder(QEL_DSS_GET_ORDER, perm.data()), 0);
  for (const int p : perm) ++seen.at(static_cast<size_t>(p) - 1);
  EXPECT_EQ(std::count(seen.begin(), seen.end(), 1), 25);
  session t;
  ASSERT_EQ(t.define(0, a.ia.data(), a.ja.data(), 25, 25, static_cast<int>(a.a.size())), 0);
  ASSERT_EQ(t.reorder(QEL_DSS_MY_ORDER, perm.data()), 0);
  ASSERT_EQ(t.factor(0, a.a.data()), 0);
}

/// The determinant by elimination with partial pivoting, of the mirrored whole.
template <class T>
std::complex<double> dense_determinant(const csr_arrays<T>& a) {
  const auto n = static_cast<size_t>(a.n);
  std::vector<std::complex<double>> d(n * n);
  for (size_t i = 0; i < n; ++i) {
    for (auto k = static_cast<size_t>(a.ia[i]) - 1; k < static_cast<size_t>(a.ia[i + 1]) - 1; ++k) {
      const auto j = static_cast<size_t>(a.ja[k]) - 1;
      std::complex<double> value;
      if constexpr (is_complex<T>) {
        value = {a.a[k].real, a.a[k].imag};
      } else {
        value = a.a[k];
      }
      d[i + n * j] = value;
      if (a.type % 2 == 0) d[j + n * i] = a.type == 4 || a.type == -4 ? std::conj(value) : value;
      if (i == j) d[i + n * i] = value;
    }
  }
  std::complex<double> result = 1;
  for (size_t k = 0; k < n; ++k) {
    size_t pivot = k;
    for (size_t i = k; i < n; ++i) {
      if (std::abs(d[i + n * k]) > std::abs(d[pivot + n * k])) pivot = i;
    }
    if (pivot != k) result = -result;
    for (size_t j = 0; j < n; ++j) std::swap(d[k + n * j], d[pivot + n * j]);
    result *= d[k + n * k];
    for (size_t i = k + 1; i < n; ++i) {
      const std::complex<double> factor = d[i + n * k] / d[k + n * k];
      for (size_t j = k; j < n; ++j) d[i + n * j] -= factor * d[k + n * j];
    }
  }
  return result;
}

template <class T>
void expect_statistics(int type, int structure, int factor_option) {
  const csr_arrays<T> a = csr_of<T>(as_type(grid(4, 5, 1), type));
  session s;
  ASSERT_EQ(s.define(structure, a.ia.data(), a.ja.data(), a.n, a.n, static_cast<int>(a.a.size())), 0);
  ASSERT_EQ(s.reorder(), 0);
  const int kind = is_complex<T> ? 2 : 1;
  ASSERT_EQ(dss_factor(&s.handle, &factor_option, a.a.data(), &kind), 0);
  std::vector<T> b(20, scalar_from<T>(1)), x(20);
  ASSERT_EQ(s.solve(b.data(), x.data()), 0);
  double got[12];
  std::fill_n(got, 12, -7.0);
  ASSERT_EQ(s.statistics(" Determinant,FLOPS , factor time", got), 0);
  const std::complex<double> want = dense_determinant(a);
  const std::complex<double> mantissa = is_complex<T> ? std::complex(got[1], got[2]) : std::complex(got[1]);
  EXPECT_GE(std::abs(mantissa), 1);
  EXPECT_LT(std::abs(mantissa), 10);
  std::complex<double> determinant = mantissa;
  determinant *= std::pow(10.0, got[0]);
  EXPECT_NEAR(std::abs(determinant / want - 1.0), 0, 1e-10) << type;
  const size_t next = is_complex<T> ? 3 : 2;
  EXPECT_GT(got[next], 20);
  EXPECT_GE(got[next + 1], 0);
  EXPECT_EQ(got[next + 2], -7);
  if (type < 0) {
    ASSERT_EQ(s.statistics("inertia", got), 0);
    EXPECT_EQ(got[0] + got[1] + got[2], 20);
    EXPECT_GT(got[0], 0);
  }
  ASSERT_EQ(s.statistics("solvetime,reordertime,peakmem,factormem,solvemem", got), 0);
  for (int k = 0; k < 2; ++k) EXPECT_GE(got[k], 0);
  for (int k = 2; k < 5; ++k) EXPECT_GT(got[k], 0) << k;
}

TEST(Dss, StatisticsOfAllTypes) {
  expect_statistics<double>(2, 0, 0);
  expect_statistics<double>(-2, 0, QEL_DSS_INDEFINITE);
  expect_statistics<double>(1, QEL_DSS_SYMMETRIC_STRUCTURE, 0);
  expect_statistics<double>(11, QEL_DSS_NON_SYMMETRIC, 0);
  expect_statistics<complex16>(4, QEL_DSS_SYMMETRIC_COMPLEX, 0);
  expect_statistics<complex16>(-4, QEL_DSS_SYMMETRIC_COMPLEX, QEL_DSS_HERMITIAN_INDEFINITE);
  expect_statistics<complex16>(6, QEL_DSS_SYMMETRIC_COMPLEX, QEL_DSS_INDEFINITE);
  expect_statistics<complex16>(13, QEL_DSS_NON_SYMMETRIC_COMPLEX, 0);
}

TEST(Dss, DiagonalMatricesHaveTimesOnly) {
  const int rows[] = {1, 2, 3}, columns[] = {1, 2};
  const double a[] = {2, 4}, b[] = {2, 2};
  double x[2], got[2] = {-7, -7};
  session s;
  ASSERT_EQ(s.define(0, rows, columns, 2, 2, 2), 0);
  ASSERT_EQ(s.reorder(), 0);
  ASSERT_EQ(s.factor(0, a), 0);
  ASSERT_EQ(s.solve(b, x), 0);
  EXPECT_EQ(x[0], 1);
  EXPECT_EQ(x[1], 0.5);
  EXPECT_EQ(printed_by([&] { EXPECT_EQ(s.statistics("determinant,solvetime", got), 0); }),
            "Sorry, no statistics for determinant in case of a diagonal matrix\n");
  EXPECT_GE(got[0], 0);
  EXPECT_EQ(got[1], -7);
  // Another structure on the same handle, not diagonal.
  ASSERT_EQ(s.define_triangle(), 0);
  ASSERT_EQ(s.reorder(), 0);
  ASSERT_EQ(s.factor(), 0);
}

TEST(Dss, NoMemoryForAHandle) {
  const auto former = serv_platform_malloc;
  serv_platform_malloc = [](size_t) -> void* { return nullptr; };
  void* handle = nullptr;
  const int options = kQuiet;
  EXPECT_EQ(dss_create(&handle, &options), -2);
  serv_platform_malloc = former;
  EXPECT_EQ(handle, nullptr);
}

}  // namespace
}  // namespace qel::test
