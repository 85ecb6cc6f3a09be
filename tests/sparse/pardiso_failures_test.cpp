// SPDX-License-Identifier: BSD-3-Clause
// What fails in calls of the direct solver: codes, lines, what stays of a handle, memory that is refused.
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

#include "service/serv.h"
#include "tests/sparse/pardiso_calls.h"

namespace qel::test {
namespace {

// Every kind of failure, with what it prints after the class line, and what is left behind.
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

}  // namespace
}  // namespace qel::test
