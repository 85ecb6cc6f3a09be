// SPDX-License-Identifier: BSD-3-Clause
// The solver's decisions as tables: input checks in their order, thread and panel rules, defaults, the
// verdicts of refinement and iteration, the numbers of their traces.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "sparse/pardiso/checks.h"
#include "sparse/pardiso/quality.h"
#include "sparse/pardiso/solve/hybrid.h"
#include "sparse/pardiso/solve/refine.h"
#include "sparse/pardiso/solve/trace.h"
#include "sparse/pardiso/tuning.h"

namespace qel::pardiso {
namespace {

struct structure_case {
  int mtype;
  std::vector<int> ia, ja;
  int sub_code;
  std::array<int, 3> numbers;
};

TEST(Structure, TellsTheLastOffenderOfTheFirstFailingTest) {
  const structure_case cases[] = {
      {11, {1, 3, 4, 6}, {1, 3, 2, 1, 3}, 0, {}},
      {2, {1, 3, 4, 5}, {1, 3, 2, 3}, 0, {}},
      {11, {0, 3, 4, 6}, {1, 3, 2, 1, 3}, 21, {1, 0, 3}},
      {11, {1, 3, 3, 6}, {1, 3, 2, 1, 3}, 21, {2, 3, 3}},  // an empty row
      {11, {0, 3, 3, 3}, {1, 3, 2, 1, 3}, 21, {3, 3, 3}},  // three offenders
      {11, {1, 3, 4, 6}, {0, 4, 2, 1, 3}, 22, {2, 4, 3}},  // two; also out of order, which is not reached
      {-2, {1, 3, 4, 6}, {1, 3, 2, 1, 3}, 23, {3, 4, 1}},  // below the diagonal
      {13, {1, 3, 4, 6}, {1, 3, 2, 3, 1}, 24, {4, 3, 1}},
      {6, {1, 3, 4, 5}, {2, 2, 2, 3}, 24, {1, 2, 2}},  // double entry; a diagonal may be missing
  };
  for (const auto& c : cases) {
    const structure_fault fault = check_structure({c.mtype}, 3, c.ia.data(), c.ja.data());
    EXPECT_EQ(fault.sub_code, c.sub_code);
    EXPECT_TRUE(std::equal(c.numbers.begin(), c.numbers.end(), fault.numbers)) << c.sub_code;
  }
}

/// A good call on a fresh record, for a test to spoil.
struct checked_call {
  std::vector<int> ia{1, 3, 4, 6}, ja{1, 3, 2, 1, 3};
  std::array<int, 64> iparm{};
  basic_record stored;
  solver_call call{nullptr,   1,       1, 11,           13, 3,       nullptr, ia.data(),
                   ja.data(), nullptr, 1, iparm.data(), 0,  nullptr, nullptr};
  checked_call() {
    reset(stored);
    iparm[2] = 1;
  }
  void store(int mtype, int n, int maxfct) {
    stored.mtype = mtype;
    stored.n = n;
    stored.maxfct = maxfct;
  }
};

TEST(Input, IsCheckedInOrder) {
  const struct {
    void (*spoil)(checked_call&);
    int fault;
  } cases[] = {
      {[](checked_call&) {}, fault_none},
      {[](checked_call& c) {
         c.call.phase = 34;
         c.call.mnum = 2;
       },
       fault_phase},
      {[](checked_call& c) { c.call.phase = 330; }, fault_phase},
      {[](checked_call& c) { c.call.phase = 334; }, fault_phase},
      {[](checked_call& c) {
         c.store(11, 3, 1);
         c.call.maxfct = 2;
         c.call.mnum = 3;
       },
       fault_maxfct},
      {[](checked_call& c) {
         c.store(11, 3, 3);
         c.call.maxfct = 2;
       },
       fault_none},
      {[](checked_call& c) {
         c.call.mnum = 2;
         c.call.mtype = 7;
       },
       fault_mnum},
      {[](checked_call& c) {
         c.call.mnum = 0;
         c.call.phase = 22;
       },
       fault_mnum_phase},
      {[](checked_call& c) {
         c.call.mnum = 0;
         c.call.phase = 11;
       },
       fault_none},
      {[](checked_call& c) {
         c.call.phase = 0;
         c.call.mtype = 7;
       },
       fault_done},
      {[](checked_call& c) {
         c.call.mtype = 7;
         c.store(2, 3, 1);
       },
       fault_type},
      {[](checked_call& c) { c.call.mtype = 0; }, fault_type},
      {[](checked_call& c) { c.call.mtype = -13; }, fault_type},
      {[](checked_call& c) { c.store(2, 4, 1); }, fault_type_change},
      {[](checked_call& c) { c.store(13, 3, 1); }, fault_none},
      {[](checked_call& c) {
         c.store(2, 3, 1);
         c.call.mtype = -2;
         c.iparm[26] = 0;
       },
       fault_none},
      {[](checked_call& c) {
         c.store(11, 4, 1);
         c.call.n = 0;
       },
       fault_n_change},
      {[](checked_call& c) { c.call.n = 0; }, fault_n},
      {[](checked_call& c) {
         c.ia[3] = 3;
         c.call.nrhs = 0;
       },
       fault_ia_end},
      {[](checked_call& c) {
         c.call.phase = 33;
         c.call.nrhs = 0;
         c.iparm[5] = 2;
       },
       fault_nrhs},
      {[](checked_call& c) {
         c.call.phase = 22;
         c.call.nrhs = 0;
       },
       fault_none},
      {[](checked_call& c) {
         c.iparm[5] = 2;
         c.iparm[1] = 4;
       },
       fault_solution_place},
      {[](checked_call& c) {
         c.iparm[1] = 4;
         c.iparm[26] = 1;
         c.ja[0] = 0;
       },
       fault_ordering},
      {[](checked_call& c) { c.iparm[1] = -1; }, fault_ordering},
      {[](checked_call& c) {
         c.iparm[26] = 1;
         c.ja[0] = 0;
         c.call.phase = 14;
       },
       fault_ja_range},
      {[](checked_call& c) { c.ja[0] = 0; }, fault_none},
      {[](checked_call& c) { c.call.phase = 14; }, fault_step},
      {[](checked_call& c) { c.call.phase = 21; }, fault_step},
      {[](checked_call& c) { c.call.phase = 5; }, fault_step},
      {[](checked_call& c) { c.call.phase = 332; }, fault_none},
  };
  int row = 0;
  for (const auto& c : cases) {
    checked_call checked;
    c.spoil(checked);
    EXPECT_EQ(check_input(checked.call, checked.stored), c.fault) << "row " << row;
    ++row;
  }
  checked_call checked;
  checked.iparm[2] = -3;
  checked.iparm[26] = 1;
  EXPECT_EQ(check_input(checked.call, checked.stored), fault_none);
  EXPECT_EQ(checked.iparm[2], 1);
  EXPECT_EQ(checked.iparm[26], 0) << "a good structure check clears its switch";
  checked.iparm[26] = 1;
  checked.ja[4] = 9;
  EXPECT_EQ(check_input(checked.call, checked.stored), fault_ja_range);
  EXPECT_EQ(checked.iparm[26], 1);
  EXPECT_EQ((std::array{checked.iparm[30], checked.iparm[31], checked.iparm[32]}), (std::array{5, 9, 3}));
}

TEST(Pattern, FingerprintsTellStructuresApart) {
  std::vector<int> ia{1, 3, 4, 6}, ja{1, 3, 2, 1, 3};
  const uint64_t first = pattern_fingerprint(3, ia.data(), ja.data());
  std::swap(ja[0], ja[1]);
  EXPECT_NE(pattern_fingerprint(3, ia.data(), ja.data()), first);
  std::swap(ja[0], ja[1]);
  --ia[1];
  EXPECT_NE(pattern_fingerprint(3, ia.data(), ja.data()), first);
  ++ia[1];
  EXPECT_EQ(pattern_fingerprint(3, ia.data(), ja.data()), first);
}

TEST(Rules, ThreadsByOrderAndRightHandSides) {
  const struct {
    int available;
    bool adjust;
    int n, nrhs, threads;
  } cases[] = {
      {8, true, 40, 1, 1},  {8, true, 150, 1, 3}, {8, true, 399, 1, 7},     {8, true, 400, 1, 8},
      {8, false, 40, 1, 8}, {8, true, 40, 2, 8},  {1, true, 10, 1, 1},      {0, true, 10, 1, 1},
      {1, false, 10, 5, 1}, {2, true, 99, 1, 1},  {2, true, 1 << 30, 1, 2},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(choose_threads(c.available, c.adjust, c.n, c.nrhs), c.threads) << c.available << ' ' << c.n;
  }
}

TEST(Rules, PanelWidths) {
  const struct {
    int mtype, threads, n;
    bool selected;
    int width;
  } cases[] = {
      {11, 1, 10, true, 128},    {1, 4, 10, false, 96},     {3, 5, 10, true, 72},
      {13, 2, 500000, true, 96}, {2, 1, 10, true, 128},     {2, 1, 10, false, 80},
      {-2, 2, 250000, true, 80}, {4, 5, 250000, true, 64},  {6, 4, 250001, true, 112},
      {-4, 8, 250001, true, 96}, {2, 4, 250001, false, 80}, {2, 5, 10, false, 64},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(panel_width({c.mtype}, c.threads, c.n, c.selected), c.width) << c.mtype << ' ' << c.threads;
  }
}

TEST(Rules, SizesAndMemoryByType) {
  const struct {
    int mtype;
    int64_t off_diagonal, stored;
    int factor;
  } cases[] = {{1, 20, 40, 2}, {2, 40, 80, 2},   {-4, 40, 80, 2},
               {6, 40, 80, 4}, {11, 20, 110, 4}, {13, 20, 110, 4}};
  for (const auto& c : cases) {
    const size_counts counts = count_sizes({c.mtype}, 10, 50);
    EXPECT_EQ(counts.off_diagonal, c.off_diagonal) << c.mtype;
    EXPECT_EQ(counts.stored, c.stored) << c.mtype;
    EXPECT_EQ(memory_factor({c.mtype}), c.factor);
  }
}

TEST(Rules, DefaultsByType) {
  const struct {
    int mtype, perturbation, scaling, matching, pivoting;
  } cases[] = {{1, 13, 0, 0, 0}, {2, 0, 0, 0, 0}, {-2, 8, 0, 0, 1},  {3, 13, 0, 0, 0}, {4, 0, 0, 0, 0},
               {-4, 8, 0, 0, 1}, {6, 8, 0, 0, 1}, {11, 13, 1, 1, 0}, {13, 13, 1, 1, 0}};
  for (const auto& c : cases) {
    std::array<int, 64> stored, initial;
    stored.fill(77);
    initial.fill(77);
    stored[0] = 0;
    void* pt[64];
    std::fill_n(pt, 64, &stored);
    store_defaults({c.mtype}, parameters(stored.data()));
    initialise({c.mtype}, pt, parameters(initial.data()));
    for (const auto* values : {&stored, &initial}) {
      EXPECT_EQ((*values)[1], 2);
      EXPECT_EQ((*values)[9], c.perturbation) << c.mtype;
      EXPECT_EQ((*values)[10], c.scaling);
      EXPECT_EQ((*values)[12], c.matching);
      EXPECT_EQ((*values)[17], -1);
      EXPECT_EQ((*values)[18], -1);
      EXPECT_EQ((*values)[20], c.pivoting);
      EXPECT_EQ((*values)[7], 0);
    }
    // No default: threads, the structure check, precision, what comes out.
    for (const int kept : {3, 26, 27, 28, 30, 31, 64}) EXPECT_EQ(stored[static_cast<size_t>(kept) - 1], 77);
    EXPECT_EQ(initial[0], 1);
    EXPECT_EQ(initial[27], 0);
    EXPECT_EQ(std::count(pt, pt + 64, nullptr), 64);
  }
}

TEST(Rules, HybridChoiceAndLimits) {
  const struct {
    int iparm4, krylov;
    double tolerance;
    bool cg;
  } choices[] = {{0, 0, 1e-12, false}, {31, 1, 1e-3, false}, {62, 2, 1e-6, true},   {-82, -2, 1e-8, true},
                 {1, 1, 1e-12, false}, {30, 0, 1e-3, false}, {-1, -1, 1e-12, false}};
  for (const auto& c : choices) {
    const hybrid_choice choice = choose_hybrid(c.iparm4, 1e-12);
    EXPECT_EQ(choice.krylov, c.krylov) << c.iparm4;
    EXPECT_NEAR(choice.tolerance / c.tolerance, 1, 1e-13);
    EXPECT_EQ(choice.conjugate_gradients(), c.cg);
  }
  const struct {
    int krylov;
    double factor, solve;
    bool out_of_core;
    int limit, stall;
  } limits[] = {
      {1, 1.0, 0.1, false, 14, 8},  // 3 * 1 * 10 * 0.45 + 1
      {2, 1.0, 0.1, false, 28, 15},   {1, 100.0, 0.1, false, 100, 51}, {-1, 1.0, 0.1, false, 150, 76},
      {1, 1.0, 1e-10, false, 0, 1},   {-2, 1.0, 0, false, 150, 76},    {1, 0.1, 0.1, true, 10, 6},
      {1, 100.0, 0.1, true, 100, 51},
  };
  for (const auto& c : limits) {
    const iteration_limits got = choose_iteration_limits(c.krylov, c.factor, c.solve, c.out_of_core);
    EXPECT_EQ(got.limit, c.limit) << c.krylov << ' ' << c.factor;
    EXPECT_EQ(got.stall_step, c.stall);
  }
}

TEST(Rules, VerdictsOfTheIteration) {
  const iteration_rules cgs = {1e-4, 10000, {20, 11}, false}, cg = {1e-4, 10000, {20, 11}, true};
  const struct {
    int step;
    double rel, best;
    int of_cgs, of_cg;
  } cases[] = {
      {1, 1e-5, 1e-5, iteration_converged, iteration_converged},
      {1, 1e-4, 1e-4, iteration_goes_on, iteration_goes_on},
      {3, 10001, 1, iteration_diverged, iteration_diverged},
      {3, NAN, 1, iteration_diverged, iteration_diverged},
      {10, 0.5, 0.5, iteration_goes_on, iteration_goes_on},
      {11, 0.5, 0.5, iteration_stalled, iteration_stalled},
      {11, 0.5, 1e-2, iteration_goes_on, iteration_goes_on},
      {12, 0.5, 0.5, iteration_goes_on, iteration_stalled},  // CGS looks once, CG from then on
      {20, 0.5, 1e-3, iteration_at_limit, iteration_at_limit},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(judge_iteration(c.step, c.rel, c.best, cgs), c.of_cgs) << c.step << ' ' << c.rel;
    EXPECT_EQ(judge_iteration(c.step, c.rel, c.best, cg), c.of_cg) << c.step << ' ' << c.rel;
  }
}

TEST(Rules, VerdictsOfRefinement) {
  const struct {
    int it, iparm8;
    double previous, residual, correction;  // right-hand side and solution are 1
    bool stop;
    int code, sub_code;
    double next;
  } cases[] = {
      {1, 0, 1, 1e-10, 1e-10, false, 0, 0, 1e-10},
      {2, 0, 1e-10, 1e-15, 1e-15, true, -34, 0, 1e-10},
      {1, 0, 1, 0.95, 0.1, true, 0, 0, 1},  // no limit to stay below: poor contraction ends it
      {1, 0, 1, 0.95, 0.6, true, 0, -112, 1},
      {1, 5, 1, 2, 0.6, false, 0, 0, 2},  // above the right-hand side: twice it is the yardstick
      {1, 1, 1, 2, 0.6, true, 0, -111, 4},
      {2, 2, 1e-3, 1e-9, 1e-9, true, 0, 0, 1e-3},
      {2, -2, 1e-3, 1e-9, 1e-9, true, 0, 0, 1e-3},
      {2, 5, 1e-16, 1e-16, 1e-16, false, 0, 0, 1e-16},  // poor, but not yet four steps
      {4, 5, 1e-16, 1e-16, 1e-16, true, 0, 0, 1e-16},
      {4, 5, 0.5, 0.5, 0.6, true, 0, -112, 0.5},
      {4, 5, NAN, NAN, NAN, true, 0, -112, NAN},
      {4, 9, 1, 0.5, 0.6, false, 0, 0, 0.5},
      {1, 2, 0, 0, 0, false, 0, 0, 0},
  };
  int row = 0;
  for (const auto& c : cases) {
    const refinement_verdict verdict =
        judge_refinement(c.it, c.iparm8, c.previous, {1, c.residual, c.correction, 1});
    EXPECT_EQ(verdict.stop, c.stop) << "row " << row;
    EXPECT_EQ(verdict.iteration_code, c.code) << "row " << row;
    EXPECT_EQ(verdict.sub_code, c.sub_code) << "row " << row;
    if (!c.stop) {
      EXPECT_EQ(verdict.previous, c.next) << "row " << row;
    }
    EXPECT_EQ(verdict.warn, c.it == 1 && c.residual > 1);
    ++row;
  }
}

TEST(Trace, NumbersHaveTheFormOfE12_3) {
  const struct {
    double value;
    const char* text;
  } cases[] = {{0, "   0.000E+00"},         {1, "   0.100E+01"},        {-123.456, "  -0.123E+03"},
               {9.999e-7, "   0.100E-05"},  {2.5e-101, "   0.250-100"}, {INFINITY, "         Inf"},
               {-INFINITY, "        -Inf"}, {NAN, "         NaN"},      {1e-10, "   0.100E-09"}};
  for (const auto& c : cases) {
    char text[kNumberText];
    EXPECT_STREQ(format_e12_3(c.value, text), c.text);
  }
}

TEST(Quality, VerdictsByTheFigures) {
  const struct {
    double condition, backward, forward;
    int perturbed, verdict;
  } cases[] = {{1e4, 1e-16, 1e-12, 0, quality_good},     {1e4, -1, -1, 0, quality_good},
               {1e4, -1, -1, 2, quality_doubtful},       {1e4, 1e-16, 1e-12, 2, quality_good},
               {1e10, 1e-16, 1e-6, 0, quality_doubtful}, {1e17, 1e-16, 10, 0, quality_bad},
               {INFINITY, -1, -1, 0, quality_bad},       {1e3, 1e-12, 1e-9, 0, quality_doubtful},
               {1e3, 1e-7, 1e-4, 0, quality_bad},        {1e3, NAN, NAN, 0, quality_bad}};
  for (const auto& c : cases) {
    quality figures;
    figures.condition = c.condition;
    figures.backward_error = c.backward;
    figures.forward_error = c.forward;
    figures.perturbed_pivots = c.perturbed;
    EXPECT_EQ(verdict_of(figures), c.verdict) << c.condition << ' ' << c.backward;
  }
}

}  // namespace
}  // namespace qel::pardiso
