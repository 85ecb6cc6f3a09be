// SPDX-License-Identifier: BSD-3-Clause
// Calls of the direct solver as a whole: phases, what errors print and return, statistics, refinement,
// iteration.
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <sstream>

#include "service/environment.h"
#include "service/message_rows.h"
#include "service/serv.h"
#include "sparse/pardiso/handle.h"
#include "sparse/pardiso/progress.h"
#include "sparse/pardiso/quality.h"
#include "sparse/pardiso/report.h"
#include "tests/sparse/pardiso_calls.h"

namespace qel::test {
namespace {

using pardiso::basic_record;
using calls = solver_calls<double>;

csr_arrays<double> small_spd() { return csr_of<double>(grid(7, 6, 1)); }
csr_arrays<double> small_general() { return csr_of<double>(convection(7, 6, 1)); }

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}
bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

template <class T>
void expect_all_phases_solve(int type, double tolerance) {
  for (const int columns : {1, 3}) {
    solver_calls<T> c(csr_of<T>(as_type(grid(9, 8, 1), type)), columns);
    c.iparm(28) = sizeof(real_of<T>) == 4;
    ASSERT_EQ(c.call(11), 0) << type;
    EXPECT_FALSE(c.empty());
    ASSERT_EQ(c.call(22), 0) << type;
    ASSERT_EQ(c.call(33), 0) << type;
    EXPECT_LT(c.backward_error(c.x, c.b), tolerance) << type;
    EXPECT_EQ(c.iparm(64), 108);

    // The parts of a solve, one after the other, are the solve.
    const std::vector<T> b = c.b, x = c.x;
    c.iparm(6) = 1;
    for (const int part : {331, 332, 333}) ASSERT_EQ(c.call(part), 0);
    EXPECT_LT(c.backward_error(c.b, b), tolerance) << type;
    c.b = b;

    // The solution in the place of b, with refinement by extended residuals.
    c.iparm(8) = -2;
    std::fill(c.x.begin(), c.x.end(), T{});
    ASSERT_EQ(c.call(33), 0);
    EXPECT_EQ(c.iparm(7), 2);
    EXPECT_LT(c.backward_error(c.b, b), tolerance) << type;
    EXPECT_TRUE(c.x[0] == T{}) << "x is left alone";
    c.b = b;

    c.iparm(6) = c.iparm(8) = 0;
    ASSERT_EQ(c.call(13), 0);
    EXPECT_LT(c.backward_error(c.x, c.b), tolerance) << type;
  }
}

TEST(Phases, SolveAllTypesInBothPrecisions) {
  for (const int type : {1, 2, -2, 11}) {
    expect_all_phases_solve<double>(type, 1e-14);
    expect_all_phases_solve<float>(type, 1e-5);
  }
  for (const int type : {3, 4, -4, 6, 13}) {
    expect_all_phases_solve<complex16>(type, 1e-14);
    expect_all_phases_solve<complex8>(type, 1e-5);
  }
}

TEST(Phases, TransposedSystems) {
  for (const int steps : {0, 2}) {
    solver_calls<complex16> c(csr_of<complex16>(as_type(grid(7, 6, 1), 13)), 2);
    ASSERT_EQ(c.call(12), 0);
    c.iparm(12) = 1;
    c.iparm(8) = steps;
    ASSERT_EQ(c.call(33), 0);
    EXPECT_LT(c.backward_error(c.x, c.b, true), 1e-14);
    c.iparm(1) = 1;  // with the caller's values the switch is not looked at
    ASSERT_EQ(c.call(33), 0);
    EXPECT_LT(c.backward_error(c.x, c.b), 1e-14);
  }
}

TEST(Phases, KeepSeveralFactorisationsApart) {
  calls c(small_general());
  c.maxfct = 3;
  ASSERT_EQ(c.call(11), 0);
  std::vector<csr_arrays<double>> kept;
  for (c.mnum = 1; c.mnum <= 3; ++c.mnum) {
    for (double& value : c.matrix.a) value *= 1 + 0.1 * c.mnum;
    kept.push_back(c.matrix);
    ASSERT_EQ(c.call(22), 0);
  }
  for (const int number : {2, 1, 3}) {
    c.mnum = number;
    c.matrix = kept[static_cast<size_t>(number) - 1];
    ASSERT_EQ(c.call(33), 0);
    EXPECT_LT(c.backward_error(c.x, c.b), 1e-14) << number;
  }
  c.mnum = 2;
  c.msglvl = 1;
  EXPECT_TRUE(contains(printed_by([&] { EXPECT_EQ(c.call(0), 0); }), " L&U for matrix number 2 deleted\n"));
  EXPECT_TRUE(contains(printed_by([&] { c.call(33); }), "clean impossible"));
  c.mnum = 4;
  EXPECT_TRUE(contains(printed_by([&] { EXPECT_EQ(c.call(0), -1); }), "wrong matrix number, clean 4"));
  c.mnum = 3;
  EXPECT_TRUE(contains(printed_by([&] { EXPECT_EQ(c.call(-1), 0); }),
                       "Summary PARDISO: ( clean )\n================\n cleaned memory, deleted number of "
                       "L&U-factorizations: 2\n"));
  EXPECT_TRUE(c.empty());
}

TEST(Phases, QueriesAndReleasesOfAnEmptyHandle) {
  calls c(small_spd());
  EXPECT_EQ(c.call(-2), 16);
  EXPECT_EQ(c.iparm(1), 23);
  EXPECT_EQ(c.call(-3), 300000);
  EXPECT_EQ(c.call(-1), 0);
  EXPECT_TRUE(c.empty());
}

TEST(Phases, DefaultsAreStoredByTheFirstCall) {
  calls c(small_general());
  c.iparm_values.fill(5);
  c.iparm(1) = c.iparm(27) = c.iparm(28) = 0;
  ASSERT_EQ(c.call(11), 0);
  const std::map<int, int> want = {{2, 2}, {4, 0}, {8, 0}, {10, 13}, {11, 1}, {13, 1}, {60, 0}};
  for (const auto& [number, value] : want) EXPECT_EQ(c.iparm(number), value) << number;
  EXPECT_GT(c.iparm(18), static_cast<int>(c.matrix.a.size()));
  EXPECT_EQ(c.iparm(26), 5);
  for (const int out : {15, 16, 17, 61, 62, 63}) EXPECT_GT(c.iparm(out), 0) << out;
  EXPECT_EQ(c.iparm(3), 1) << "42 equations are too few for two threads";
}

// Every kind of failure, with what it prints after the class line, and what is left behind.
/// What a good analysis says.
constexpr const char* kInCore = "=== PARDISO is running in In-Core mode, because iparam(60)=0 ===";

struct failure_case {
  const char* name;
  std::function<void(calls&)> spoil;
  int phase, error, silent_error;
  std::string class_line;
  std::vector<std::string> details;
};

TEST(Failures, PrintTheirLinesAndReturnTheirCodes) {
  const std::string sequence = "*** Error in PARDISO  ( sequence_ido,parameters) error_num= -1";
  const std::string matrix = "*** Error in PARDISO  (incorrect input matrix  ) error_num= -1";
  const auto four_lines = [](int code, int maxfct, int mnum, int mtype, int phase, int n, int nnz, int nrhs) {
    const auto text = [](const char* format, int p, int q) {
      char line[120];
      std::snprintf(line, sizeof line, format, p, q);
      return std::string(line);
    };
    return std::vector<std::string>{
        text("*** Input parameters: inconsistent error= %d max_fac_store_in: %d", code, maxfct),
        text("          matrix_number_in : %d matrix_type_in   : %d", mnum, mtype),
        text("          ido_in           : %d neqns_in         : %d", phase, n),
        text("          ia(neqns_in+1)-1 : %d nb_in            : %d", nnz, nrhs)};
  };
  const auto with = [](std::string first, std::vector<std::string> rest) {
    rest.insert(rest.begin(), std::move(first));
    return rest;
  };
  const int nnz = static_cast<int>(small_spd().a.size());
  const failure_case cases[] = {
      {"no analysis", [](calls&) {}, 33, -1, -7, sequence, {"*** Error in PARDISO: clean impossible (ido?)"}},
      {"no analysis", [](calls&) {}, 22, -1, -7, sequence, {"*** Error in PARDISO: clean impossible (ido?)"}},
      {"release at first", [](calls&) {}, 0, -1, -7, sequence,
       {"*** Error in PARDISO: ido < 1 and initialization", " - contradiction (set ido >0 !) 0"}},
      {"phase", [](calls&) {}, 39, -1, -7, sequence,
       with("*** Input check: ido_new 39 (out of bounds)", four_lines(1, 1, 1, 2, 39, 42, nnz, 1))},
      {"number", [](calls& c) { c.mnum = 3; }, 11, -1, -7, sequence,
       with("*** Input check: max_fac_store_in 1 matrix_number_in 3", four_lines(3, 1, 3, 2, 11, 42, nnz, 1))},
      {"number 0", [](calls& c) { c.mnum = 0; }, 22, -1, -7, sequence,
       with("*** Input check: matrix_number_new 0 ido 22 are incompatible",
            four_lines(4, 1, 0, 2, 22, 42, nnz, 1))},
      {"number 0 of a factor", [](calls& c) { c.mnum = 0; }, 12, -1, -7, sequence,
       with("*** Input check: matrix_number_new 0 ido 12 are incompatible",
            four_lines(4, 1, 0, 2, 12, 42, nnz, 1))},
      {"type", [](calls& c) { c.mtype = 9; }, 11, -1, -7, sequence,
       with("*** Input check: matrix_type_new 9 (out of bounds)", four_lines(15, 1, 1, 9, 11, 42, nnz, 1))},
      {"order", [](calls& c) { c.n_given = 0; }, 11, -1, -7, sequence,
       with("*** Input check: neqns_new 0 ", four_lines(7, 1, 1, 2, 11, 0, 0, 1))},
      {"row starts", [](calls& c) { c.matrix.ia[42] = 12; }, 11, -1, -7, sequence,
       with("*** Input check: ia(neqns+1)_new 11 _old 42 are incompatible",
            four_lines(8, 1, 1, 2, 11, 42, 11, 1))},
      {"columns", [](calls& c) { c.nrhs = 0; }, 33, -1, -7, sequence,
       with("*** Input check: nb_new  0  ido 33 are incompatible", four_lines(9, 1, 1, 2, 33, 42, nnz, 0))},
      {"place of x", [](calls& c) { c.iparm(1) = 1; c.iparm(6) = 2; }, 11, -1, -7, sequence,
       with("*** Input check: iparam(6) 2 (out of bounds)", four_lines(10, 1, 1, 2, 11, 42, nnz, 1))},
      {"ordering", [](calls& c) { c.iparm(1) = 1; c.iparm(2) = 4; }, 11, -1, -7, sequence,
       with("*** Input check: preprocessing 4 (out of bounds)", four_lines(11, 1, 1, 2, 11, 42, nnz, 1))},
      {"step", [](calls&) {}, 21, -1, -7, sequence, {"*** wrong control step parameter ido 21"}},
      {"empty row", [](calls& c) { c.iparm(27) = 1; c.matrix.ia[3] = c.matrix.ia[2]; }, 11, -1, -7, matrix,
       {"*** Input check: i=3, ia(i)=7, ia(i+1)=7 are incompatible"}},
      {"column", [](calls& c) { c.iparm(27) = 1; c.matrix.ja[4] = 43; }, 11, -1, -7, matrix,
       {"*** Input check: i=5, ja(i)=43, neqns=42 are incompatible"}},
      {"triangle", [](calls& c) { c.iparm(27) = 1; c.matrix.ja[3] = 1; }, 11, -1, -7, matrix,
       {"*** Input check: i=2, j=ia(i)=4, ja(j)=1 are incompatible"}},
      {"order of columns", [](calls& c) { c.iparm(27) = 1; std::swap(c.matrix.ja[1], c.matrix.ja[2]); }, 11, -1,
       -7, matrix, {"*** Input check: j=2, ja(j)=8, ja(j+1)=2 are incompatible"}},
      {"negative phase", [](calls&) {}, -4, -1, -7, "*** PARDISO error: internal error", {}},
      {"indefinite", [](calls& c) { c.matrix.a[0] = -1; }, 12, -4, -4,
       "*** Error in PARDISO  ( numerical_factorization) error_num= -4",
       {"*** Error in PARDISO: zero or negative pivot, A is not SPD-matrix"}},
  };
  for (const failure_case& f : cases) {
    SCOPED_TRACE(f.name);
    calls silent(small_spd()), loud(small_spd());
    f.spoil(silent);
    f.spoil(loud);
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(silent.call(f.phase), f.silent_error); }), "");
    loud.msglvl = 1;
    const std::string text = printed_by([&] { EXPECT_EQ(loud.call(f.phase), f.error); });
    std::vector<std::string> want = f.details;
    want.insert(want.begin(), f.class_line);
    if (f.error == -4) want.insert(want.begin(), kInCore);
    EXPECT_EQ(lines_of(text), want);
    EXPECT_EQ(loud.empty(), f.error != -4) << "a first call that got nowhere leaves an empty handle";
  }
}

TEST(Failures, OnALiveHandleKeepWhatItHad) {
  const struct {
    std::function<void(calls&)> spoil;
    int phase;
    const char* detail;
  } cases[] = {
      {[](calls& c) { c.maxfct = 2; }, 22, "*** Input check: max_fac_store_new 2 _old 1 are incompatible"},
      {[](calls& c) { c.mtype = 1; }, 22, "*** Input check: matrix_type_new 1 _old 2 are incompatible"},
      {[](calls& c) { c.n_given = 41; }, 22, "*** Input check: neqns_new 41 _old 42 are incompatible"},
      {[](calls& c) { c.n_given = 41; }, 11, "*** Input check: neqns_new 41 _old 42 are incompatible"},
      {[](calls& c) { c.iparm(6) = 2; }, 22, "*** Input check: iparam(6) 2 (out of bounds)"},
      {[](calls&) {}, 34, "*** Input check: ido_new 34 (out of bounds)"},
  };
  for (const auto& f : cases) {
    calls c(small_spd());
    ASSERT_EQ(c.call(12), 0);
    c.msglvl = 1;
    f.spoil(c);
    EXPECT_TRUE(contains(printed_by([&] { EXPECT_EQ(c.call(f.phase), -1); }), std::string(f.detail) + "\n"))
        << f.detail;
    c.msglvl = 0;
    c.maxfct = 1, c.mtype = 2, c.n_given = -1, c.iparm(6) = 0;
    if (f.phase != 11) {
      ASSERT_EQ(c.call(33), 0);
      EXPECT_LT(c.backward_error(c.x, c.b), 1e-14) << f.detail;
    } else {
      EXPECT_EQ(c.call(22), -7) << "an analysis on a live handle drops the former one before it looks";
    }
  }
  // A plain solve forgives what happens on a live handle, after it has said so.
  calls c(small_spd());
  ASSERT_EQ(c.call(12), 0);
  c.msglvl = 1;
  c.nrhs = 0;
  EXPECT_TRUE(contains(printed_by([&] { EXPECT_EQ(c.call(33), 0); }), "nb_new  0  ido 33"));
}

TEST(Failures, StructurallySingularMatrix) {
  csr_arrays<double> a = small_general();
  // Rows 1 and 2 have their only entry in column 1.
  a.ia = {1, 2, 3, 5};
  a.ja = {1, 1, 2, 3};
  a.a = {1, 2, 3, 4};
  a.n = 3;
  calls c(a);
  c.msglvl = 1;
  EXPECT_EQ(lines_of(printed_by([&] { EXPECT_EQ(c.call(11), -6); })),
            (std::vector<std::string>{"*** Error in PARDISO  (prereordering_mtype11,13) error_num= -6",
                                      "*** Error in PARDISO: preordering failed after 2 neqns out of 3",
                                      "structure singular or input/parameter problem (matrixtype 11,13)"}));
  EXPECT_TRUE(c.empty());
}

// A platform allocator that refuses one block.
int refuse_after = -1, blocks_alive = 0, blocks_asked = 0;
void* refusing_malloc(size_t size) {
  if (refuse_after >= 0 && blocks_asked++ == refuse_after) return nullptr;
  ++blocks_alive;
  return std::malloc(size);
}
void counting_free(void* p) {
  if (p != nullptr) --blocks_alive;
  std::free(p);
}
struct refusing_allocator {
  refusing_allocator() {
    serv_platform_malloc = refusing_malloc;
    serv_platform_free = counting_free;
  }
  ~refusing_allocator() {
    refuse_after = -1;
    serv_platform_malloc = malloc_;
    serv_platform_free = free_;
  }
  decltype(serv_platform_malloc) malloc_ = serv_platform_malloc;
  decltype(serv_platform_free) free_ = serv_platform_free;
};

TEST(Failures, MemoryRefusedAtEveryBlock) {
  setenv("QEL_DISABLE_FAST_MM", "1", 1);
  std::map<std::string, int> refused;
  for (const int type : {2, -2, 11}) {
    const refusing_allocator allocator;
    int successes = 0;
    for (int after = 0; successes == 0 && after < 400; ++after) {
      calls c(csr_of<double>(as_type(grid(6, 6, 1), type)));
      c.iparm(1) = 1;
      c.iparm(2) = type == -2 ? 0 : 2;
      c.iparm(8) = 2;
      c.iparm(10) = 8;
      c.iparm(13) = type != 2;
      c.iparm(21) = 1;
      c.msglvl = 1;
      const int alive_before = blocks_alive;
      refuse_after = after;
      blocks_asked = 0;
      int error = 0;
      const std::string text = printed_by([&] { error = c.call(13); });
      refuse_after = -1;
      if (error == 0) {
        ++successes;
        EXPECT_LT(c.backward_error(c.x, c.b), 1e-13);
      } else {
        EXPECT_TRUE(error == -2 || error == -4) << error << text;
        const std::string allocation = "*** Error in PARDISO memory allocation: ";
        const size_t at = text.find(allocation);
        if (error == -2) {
          ASSERT_NE(at, std::string::npos) << text;
          EXPECT_TRUE(contains(text, "     insufficient_memory) error_num= -2\n")) << text;
          ++refused[text.substr(at + allocation.size(), 8)];
        } else {
          EXPECT_TRUE(contains(text, "insufficient memory factorization")) << text;
        }
        if (c.empty()) {
          EXPECT_EQ(blocks_alive, alive_before) << text;
        }
      }
      c.msglvl = 0;
      c.call(-1);
      EXPECT_EQ(blocks_alive, alive_before) << "after " << after;
    }
    EXPECT_EQ(successes, 1);
  }
  for (const char* block : {"BASIC   ", "FACT_ADR", "STRUC_FI", "FACT_L&U", "WORK_R0 "}) {
    EXPECT_GT(refused[block], 0) << block;
  }
  unsetenv("QEL_DISABLE_FAST_MM");
}

TEST(Statistics, HaveTheirLinesInOrder) {
  calls c(small_spd());
  c.msglvl = 2;
  const std::vector<std::string> lines = lines_of(printed_by([&] { ASSERT_EQ(c.call(13), 0); }));
  const char* const starts[] = {
      kInCore,
      "================  PARDISO: solving a symm. posit. def. system  ================",
      "",
      "",
      "Summary PARDISO: ( reorder to solve )",
      "================",
      "Times:",
      "======",
      "      Time fulladj: ",
      "      Time reorder: ",
      "      Time symbfct: ",
      "      Time parlist: ",
      "      Time A to LU: ",
      "      Time numfct : ",
      "      Time solve  : ",
      "      Time malloc : ",
      "      Time total  : ",
      "Statistics:",
      "===========",
      " < Parallel Direct Factorization with #processors: >         1",
      " < Numerical Factorization with Level-3 BLAS performance >",
      "",
      " < Linear system Ax = b> ",
      "             #equations:                                     42",
      "             #non-zeros in A:                                113",
      "             non-zeros in A (%):                            6.405896",
      "             #right-hand sides:                              1",
      "",
      " < Factors L and U > ",
      "             #columns for each panel:                        ",
      "             #independent subgraphs:                         ",
      " < Preprocessing with state of the art partitioning metis>",
      "             #supernodes:                                    ",
      "             size of largest supernode:                      ",
      "             number of nonzeros in L                       ",
      "             number of nonzeros in U                       ",
      "             number of nonzeros in L+U                     ",
      "             gflop   for the numerical factorization:        ",
      "             gflop/s for the numerical factorization:        ",
      "             ||A||                                           ",
      " local PARDISO version is 108",
  };
  size_t line = 0;
  for (const char* start : starts) {
    ASSERT_LT(line, lines.size());
    // No rate is given where the clock saw no time.
    if (contains(start, "gflop/s") && !contains(lines[line], "gflop/s")) continue;
    EXPECT_EQ(lines[line].substr(0, std::string(start).size()), start) << line;
    ++line;
  }
  EXPECT_EQ(line, lines.size());

  // What differs by ordering, transposition, phase and the iteration.
  const struct {
    std::function<void(calls&)> choose;
    int phase;
    std::vector<const char*> has, has_not;
  } cases[] = {
      {[](calls& d) { d.iparm(2) = 0; },
       11,
       {"( reorder to reorder )", "< Preprocessing with multiple minimum degree, tree height >\n",
        "< Reduction for efficient parallel factorization >\n"},
       {"metis", "gflop"}},
      {[](calls& d) { d.iparm(2) = 1; },
       12,
       {"( reorder to factorize )", " < Preprocessing with multiple minimum degree with constraints >\n"},
       {"Time solve", "metis"}},
      {[](calls& d) { d.iparm(2) = 3; }, 11, {}, {"< Preprocessing"}},
      {[](calls& d) { d.iparm(5) = 2; }, 11, {" < Preprocessing with input permutation >\n"}, {"metis"}},
      {[](calls& d) { d.iparm(4) = 31; },
       12,
       {" < Hybrid Solver PARDISO with CGS/CG Iteration >\n"},
       {"Level-3"}},
  };
  for (const auto& k : cases) {
    calls d(small_general());
    d.iparm(1) = 1;
    d.iparm(10) = 13;
    k.choose(d);
    d.msglvl = 1;
    const std::string text = printed_by([&] { ASSERT_EQ(d.call(k.phase), 0); });
    for (const char* part : k.has) EXPECT_TRUE(contains(text, part)) << part << '\n' << text;
    for (const char* part : k.has_not) EXPECT_FALSE(contains(text, part)) << part << '\n' << text;
  }
  // A new analysis says what it throws away.
  const std::string again = printed_by([&] { ASSERT_EQ(c.call(11), 0); });
  EXPECT_TRUE(contains(again, " cleaned memory, deleted number of L&U-factorizations: 1\n")) << again;
}

TEST(Statistics, UnknownRowsAreToldAsSuch) {
  EXPECT_EQ(printed_by([] { pardiso::tell(static_cast<solver_row>(1000)); }),
            "PARDISO Internationalization error! Message 1000 is unknown\n");
}

template <class T>
void expect_diagonal_solves(int type, bool single) {
  csr_arrays<T> a{200, type, {}, {}, {}};
  for (int i = 0; i < a.n; ++i) {
    a.ia.push_back(i + 1);
    a.ja.push_back(i + 1);
    a.a.push_back(scalar_from<T>({i + 1.0, type == 13 || type == 6 ? 0.5 : 0}));
  }
  a.ia.push_back(a.n + 1);
  solver_calls<T> c(a, 2);
  c.iparm(28) = single;
  EXPECT_EQ(c.call(11), 0);
  EXPECT_EQ(c.iparm(12), -1);
  EXPECT_EQ(c.call(22), 0);
  EXPECT_EQ(c.call(33), 0);
  EXPECT_TRUE(c.empty());
  EXPECT_LT(c.backward_error(c.x, c.b), single ? 1e-6 : 1e-15);
  c.matrix.a[150] = T{};
  c.msglvl = 1;
  EXPECT_EQ(lines_of(printed_by([&] { EXPECT_EQ(c.call(13), -7); })),
            (std::vector<std::string>{"*** Error in PARDISO  ( internal_error,unclass.) error_num= -7",
                                      "*** something wrong with diagonal matrix row 151"}));
  // The mark of the diagonal matrix keeps later calls quiet.
  EXPECT_EQ(c.call(0), 0);
}

TEST(Diagonal, MatricesNeedNoHandle) {
  for (const int type : {2, 11, -2}) expect_diagonal_solves<double>(type, false);
  for (const int type : {13, 4, 6}) expect_diagonal_solves<complex16>(type, false);
  expect_diagonal_solves<float>(1, true);
  expect_diagonal_solves<complex8>(13, true);
}

TEST(Refinement, TracesAndStops) {
  calls c(small_spd());
  ASSERT_EQ(c.call(12), 0);
  c.iparm(8) = 2;
  c.msglvl = 1;
  const std::vector<std::string> lines = lines_of(printed_by([&] { ASSERT_EQ(c.call(33), 0); }));
  EXPECT_EQ(c.iparm(7), 2);
  EXPECT_EQ(lines[0].substr(0, 20), " ref_it: 1. rel res ");
  EXPECT_EQ(lines[1].substr(0, 20), " ref_it: 2. rel res ");
  EXPECT_EQ(lines[0].substr(18).find(" rel err"), 13u) << lines[0];

  std::fill(c.b.begin(), c.b.end(), 0);
  const std::vector<std::string> zeros = lines_of(printed_by([&] { ASSERT_EQ(c.call(33), 0); }));
  EXPECT_EQ(zeros[0], " ref_it: 1. sumdx,sumx   0.000E+00   0.000E+00");
  EXPECT_EQ(zeros[1], " ref_it: 1. sumres,sumrhs   0.000E+00   0.000E+00");

  // Factors of another matrix: the residual grows, and the limit is reached with a large error.
  for (double& value : c.matrix.a) value *= -30;
  std::fill(c.b.begin(), c.b.end(), 1);
  c.iparm(4) = 0;
  const std::string text = printed_by([&] { EXPECT_EQ(c.call(33), 0); });
  EXPECT_TRUE(contains(text, "*** warning ref_it: 1. sumres,sumrhs")) << text;
  EXPECT_TRUE(contains(text, "*** error PARDISO: iterative refinement\n exceeds max. iteration number 2\n"))
      << text;
}

TEST(Refinement, TwoStepsAfterPerturbedPivots) {
  // A singular Laplacian with a consistent right-hand side.
  sparse_problem problem = grid(6, 6, 1);
  problem.type = 11;
  for (sparse_entry& e : problem.entries) {
    if (e.row != e.col) continue;
    e.value = 0;
    for (const sparse_entry& o : problem.entries) {
      if (o.row == e.row && o.col != e.col) e.value -= o.value;
    }
  }
  calls c(csr_of<double>(problem));
  std::fill(c.b.begin(), c.b.end(), 0.0);
  c.b[0] = 1, c.b[35] = -1;
  ASSERT_EQ(c.call(13), 0);
  EXPECT_EQ(c.iparm(14), 1);
  EXPECT_LE(c.iparm(7), 2);
  EXPECT_GE(c.iparm(7), 1);
  EXPECT_EQ(c.iparm(20), c.iparm(7) == 2 ? -34 : 0);
}

template <class T>
void expect_iteration(int type, int iparm4, bool cg) {
  solver_calls<T> c(csr_of<T>(as_type(grid(10, 10, 1), type)), 2);
  c.iparm(1) = 1;
  c.iparm(2) = 2;
  c.iparm(4) = iparm4;
  c.iparm(10) = 13;
  c.msglvl = 1;
  std::string text = printed_by([&] { ASSERT_EQ(c.call(13), 0); });
  EXPECT_FALSE(contains(text, "iteration:"));
  EXPECT_LT(c.backward_error(c.x, c.b), 1e-14);
  const std::vector<T> factored = c.matrix.a;
  for (size_t k = 0; k < c.matrix.a.size(); k += 3) c.matrix.a[k] = real_of<T>(1.01) * c.matrix.a[k];
  text = printed_by([&] { ASSERT_EQ(c.call(23), 0); });
  EXPECT_TRUE(contains(text, cg ? " cg-iteration:   0.100E+01   0.100E-05\n" : " cgs-init:  0.   0.100E+01"))
      << text;
  EXPECT_TRUE(contains(text, cg ? " cg-iteration:  1." : " cgs-iteration:  1.")) << text;
  EXPECT_TRUE(contains(text, "      Time cgs    : ")) << text;
  EXPECT_FALSE(contains(text, "Time numfct")) << "no new factors: " << text;
  EXPECT_GT(c.iparm(20), 0);
  EXPECT_LT(c.backward_error(c.x, c.b), 1e-5) << type;

  // Far from the old factors the iteration gives up, and there are new ones.
  for (size_t k = 0; k < c.matrix.a.size(); ++k) {
    c.matrix.a[k] = real_of<T>(k % 2 == 0 ? 7 : 0.001) * factored[k];
  }
  if (cg) return;  // the spoiled matrix may not be definite
  text = printed_by([&] { ASSERT_EQ(c.call(23), 0); });
  if (c.iparm(20) < 0) {
    EXPECT_TRUE(contains(text, "Time numfct")) << text;
    EXPECT_LT(c.backward_error(c.x, c.b), 1e-12) << type;
  }
}

TEST(Iteration, UsesTheFactorsOfEarlierValues) {
  // Below 0: steps are not bounded by the times, which are of microseconds here.
  expect_iteration<double>(11, -61, false);
  expect_iteration<double>(2, -62, true);
  expect_iteration<complex16>(13, -61, false);
  expect_iteration<complex16>(4, -62, true);
  expect_iteration<complex16>(6, -62, true);
}

TEST(Iteration, FailureLeadsToNewFactors) {
  calls c(csr_of<double>(convection(8, 8, 1)));
  c.iparm(1) = 1;
  c.iparm(2) = 2;
  c.iparm(10) = 13;
  c.iparm(4) = -121;
  c.iparm(8) = 3;
  ASSERT_EQ(c.call(12), 0);
  for (size_t k = 0; k < c.matrix.a.size(); ++k)
    c.matrix.a[k] *= std::sin(static_cast<double>(k) * 12.9898) * 40;
  ASSERT_EQ(c.call(33), 0);
  EXPECT_LT(c.iparm(20), 0);
  EXPECT_LT(c.backward_error(c.x, c.b), 1e-10) << "solved with new factors";
  c.b[3] = NAN;
  c.call(33);
  EXPECT_EQ(c.iparm(20), -4);
}

TEST(Report, TellsConditionAndErrors) {
  for (const int type : {11, 2, -2}) {
    calls c(csr_of<double>(as_type(grid(5, 5, 1), type)), 2);
    ASSERT_EQ(c.call(13), 0);
    const pardiso::quality_question question = {
        c.pt.data(),        1,      c.matrix.a.data(), c.matrix.ia.data(),
        c.matrix.ja.data(), c.nrhs, c.b.data(),        c.x.data()};
    double errors[2];
    const pardiso::quality found = pardiso::judge_quality(question, errors);
    EXPECT_EQ(found.verdict, pardiso::quality_good);
    EXPECT_NEAR(found.backward_error, c.backward_error(c.x, c.b), 1e-17);
    EXPECT_EQ(found.backward_error, std::max(errors[0], errors[1]));
    // The norm of the inverse, column by column.
    calls inverse(c.matrix, c.matrix.n);
    std::fill(inverse.b.begin(), inverse.b.end(), 0.0);
    const auto n = static_cast<size_t>(c.matrix.n);
    for (size_t j = 0; j < n; ++j) inverse.b[j * (n + 1)] = 1;
    ASSERT_EQ(inverse.call(13), 0);
    std::vector<double> column_sums(n);
    for (size_t i = 0; i < n; ++i) {
      for (auto k = static_cast<size_t>(c.matrix.ia[i]) - 1; k < static_cast<size_t>(c.matrix.ia[i + 1]) - 1;
           ++k) {
        const auto j = static_cast<size_t>(c.matrix.ja[k]) - 1;
        column_sums[j] += std::fabs(c.matrix.a[k]);
        if (type % 2 == 0 && i != j) column_sums[i] += std::fabs(c.matrix.a[k]);
      }
    }
    double inverse_norm = 0;
    for (size_t j = 0; j < n; ++j) {
      double sum = 0;
      for (size_t i = 0; i < n; ++i) sum += std::fabs(inverse.x[i + n * j]);
      inverse_norm = std::max(inverse_norm, sum);
    }
    const double condition = inverse_norm * *std::max_element(column_sums.begin(), column_sums.end());
    EXPECT_LE(found.condition, condition * (1 + 1e-10));
    EXPECT_GE(found.condition, condition / 3);
    char text[256];
    pardiso::word_quality(found, text, sizeof text);
    EXPECT_EQ(std::string(text).substr(0, 22), "good: condition about ");
  }
  void* empty[64] = {};
  EXPECT_EQ(
      pardiso::judge_quality({empty, 1, nullptr, nullptr, nullptr, 0, nullptr, nullptr}, nullptr).verdict,
      pardiso::quality_no_factors);
}

TEST(Progress, TellsAndCancels) {
  struct watcher {
    int calls = 0, cancel_in = 0;
    double last = 0;
    bool rises = true;
  } seen;
  const auto watch = [](void* context, int stage, double share) {
    auto& w = *static_cast<watcher*>(context);
    ++w.calls;
    w.rises = w.rises && stage + share >= w.last;
    w.last = stage + share;
    return static_cast<int>(stage == w.cancel_in && share > 0.1);
  };
  pardiso::watch_progress({watch, &seen});
  calls c(small_spd());
  ASSERT_EQ(c.call(13), 0);
  EXPECT_GT(seen.calls, 6);
  EXPECT_TRUE(seen.rises);
  seen = {.cancel_in = 2};
  c.msglvl = 1;
  EXPECT_TRUE(
      contains(printed_by([&] { EXPECT_EQ(c.call(22), -4); }), "*** PARDISO: cancelled by the caller\n"));
  c.msglvl = 0;
  pardiso::watch_progress({});
  ASSERT_EQ(c.call(23), 0);
  EXPECT_LT(c.backward_error(c.x, c.b), 1e-14);
}

TEST(Pattern, IsComparedOnRequest) {
  const environment_lookup former = replace_environment([](const char* name) -> const char* {
    return std::string(name) == "QEL_PARDISO_CHECK_PATTERN" ? "1" : nullptr;
  });
  calls c(small_general());
  ASSERT_EQ(c.call(12), 0);
  replace_environment(former);
  c.msglvl = 1;
  const size_t other = c.matrix.ja.size() - 1;
  const int column = c.matrix.ja[other];
  c.matrix.ja[other] = column - 1 == c.matrix.ja[other - 1] ? column - 2 : column - 1;
  for (const int phase : {22, 33}) {
    EXPECT_EQ(lines_of(printed_by([&] { EXPECT_EQ(c.call(phase), -1); })),
              (std::vector<std::string>{"*** Error in PARDISO  (incorrect input matrix  ) error_num= -1",
                                        "*** Input check: ia, ja are not those of the analysis"}));
  }
  c.matrix.ja[other] = column;
  c.msglvl = 0;
  EXPECT_EQ(c.call(23), 0);
}

TEST(Precision, IsKeptByTheHandle) {
  solver_calls<float> c(csr_of<float>(grid(7, 6, 1)));
  c.iparm(28) = 1;
  ASSERT_EQ(c.call(12), 0);
  c.iparm(28) = 0;
  ASSERT_EQ(c.call(33), 0);
  EXPECT_LT(c.backward_error(c.x, c.b), 1e-5);
}

TEST(Types, MayChangeBetweenFactorisations) {
  // A positive definite matrix that turns out not to be: the same analysis serves the indefinite type.
  calls c(small_spd());
  ASSERT_EQ(c.call(11), 0);
  c.matrix.a[0] = -3;
  EXPECT_EQ(c.call(22), -4);
  EXPECT_GE(c.iparm(30), 1);
  c.mtype = -2;
  c.iparm(10) = 8;
  c.iparm(21) = 1;
  ASSERT_EQ(c.call(23), 0);
  EXPECT_EQ(c.iparm(22), 41);
  EXPECT_EQ(c.iparm(23), 1);
  EXPECT_LT(c.backward_error(c.x, c.b), 1e-14);
}

}  // namespace
}  // namespace qel::test
