// SPDX-License-Identifier: BSD-3-Clause
// The direct solver over generated and public matrices of all types: orderings, matching, threads, right-hand
// sides, precisions. Well-posed systems reach a backward error of a few roundings within two steps of
// refinement; ill-posed ones end with their error.
#include <gtest/gtest.h>

#include "cli/matrix_market.h"
#include "service/threads.h"
#include "tests/sparse/pardiso_calls.h"

namespace qel::test {
namespace {

sparse_problem read(const char* name, int type) {
  const cli::matrix_file file = cli::read_matrix_market(std::string(QEL_DATA) + name + ".mtx.gz");
  sparse_problem result{name, file.rows, type, {}};
  for (const cli::matrix_entry& e : file.entries) result.entries.push_back({e.row, e.col, e.value});
  return result;
}

struct settings {
  int ordering = 2, matching = 0, threads = 1, nrhs = 1;
};

template <class T>
void expect_solved(const csr_arrays<T>& m, const settings& how, double tolerance) {
  set_threads_of_this_thread(how.threads);
  solver_calls<T> c(m, how.nrhs);
  ASSERT_EQ(c.call(-2), 16);
  c.iparm(1) = 1;
  c.iparm(2) = how.ordering;
  c.iparm(8) = 2;
  c.iparm(10) = m.type % 2 == 0 ? 8 : 13;
  c.iparm(11) = c.iparm(13) = how.matching;
  c.iparm(21) = 1;
  c.iparm(28) = sizeof(real_of<T>) == 4;
  ASSERT_EQ(c.call(13), 0);
  EXPECT_LE(c.iparm(7), 2);
  EXPECT_LE(c.backward_error(c.x, c.b), tolerance) << "perturbed pivots: " << c.iparm(14);
  set_threads_of_this_thread(0);
}

bool takes_matching(int type) { return type == 11 || type == 13 || type == -2 || type == -4 || type == 6; }

template <class T>
void expect_solved_in_every_way(const sparse_problem& problem, int least_matching) {
  const csr_arrays<T> m = csr_of<T>(problem);
  for (int ordering = 0; ordering <= 3; ++ordering)
    for (const int threads : {1, ordering % 2 == 0 ? 2 : 4})
      for (int matching = least_matching; matching <= (takes_matching(m.type) ? 1 : 0); ++matching) {
        const settings how{ordering, matching, threads, threads == 2 ? 3 : 1};
        SCOPED_TRACE(problem.name + ": ordering " + std::to_string(ordering) + ", matching " +
                     std::to_string(matching) + ", threads " + std::to_string(threads));
        expect_solved(m, how, 1e-14);
      }
}

template <class T>
void expect_single_precision(const sparse_problem& problem) {
  const csr_arrays<T> m = csr_of<T>(problem);
  SCOPED_TRACE(problem.name + " in single precision");
  for (const int threads : {1, 2}) expect_solved(m, {2, takes_matching(m.type) ? 1 : 0, threads, 2}, 1e-6);
}

bool is_complex_type(int type) { return pardiso::matrix_type{type}.is_complex(); }

void expect_all(const sparse_problem& problem, bool single, int least_matching = 0) {
  if (is_complex_type(problem.type)) {
    expect_solved_in_every_way<complex16>(problem, least_matching);
    if (single) expect_single_precision<complex8>(problem);
  } else {
    expect_solved_in_every_way<double>(problem, least_matching);
    if (single) expect_single_precision<float>(problem);
  }
}

class GeneratedSystems : public testing::TestWithParam<int> {};

TEST_P(GeneratedSystems, AreSolved) {
  const int type = GetParam();
  for (const sparse_problem& base :
       {grid(23, 19, 1), grid(7, 8, 9), grid(6, 6, 6, true), elasticity(5, 4, 5), arrow(400, 2)})
    expect_all(type == 2 ? base : as_type(base, type), true);
  if (type == 11) {
    expect_all(convection(20, 20, 1), true);
    expect_all(circuit(1500, 3), true);
  }
  if (type == -2 || type == 6 || type == -4) {
    sparse_problem saddle = saddle_point(16, 60);
    saddle.type = type;
    expect_all(saddle, true);
  }
}
INSTANTIATE_TEST_SUITE_P(Types, GeneratedSystems, testing::Values(1, 2, -2, 3, 4, -4, 6, 11, 13));

TEST(PublicMatrices, AreSolved) {
  // Those with zeros on the diagonal need the matching: pivots are sought inside supernodes only.
  const struct {
    const char* name;
    int type, least_matching;
  } cases[] = {{"bcsstk01", 2, 0},       {"494_bus", 2, 0},    {"pyamg_bar", 2, 0}, {"A_symmetric01", -2, 0},
               {"hangGlider_2", -2, 1},  {"orsirr_1", 11, 0},  {"arc130", 11, 0},   {"west0479", 11, 1},
               {"adder_dcop_05", 11, 0}, {"rajat19", 11, 1},   {"mhd1280b", 4, 0},  {"qc324", 6, 0},
               {"young1c", 13, 0},       {"c_west0067", 13, 1}};
  for (const auto& one : cases) expect_all(read(one.name, one.type), false, one.least_matching);
}

TEST(BadlyScaledSystems, AreSolvedWithScaling) {
  for (const sparse_problem& base : {convection(15, 14, 1), circuit(800, 5), as_type(grid(6, 7, 5), -2)}) {
    const auto m = csr_of<double>(badly_scaled(base, 6));
    for (int ordering = 0; ordering <= 3; ++ordering) {
      SCOPED_TRACE(base.name);
      expect_solved(m, {ordering, 1, 2, 1}, 1e-14);
    }
  }
}

TEST(IllPosedSystems, EndWithTheirError) {
  const struct {
    sparse_problem problem;
    int matching, error;
  } cases[] = {{read("GD96_d", 11), 1, -6}, {read("laser", -2), 1, -6}, {read("laser", -2), 0, 0}};
  for (const auto& one : cases) {
    solver_calls<double> c(csr_of<double>(one.problem));
    c.iparm(1) = 1;
    c.iparm(2) = 2;
    c.iparm(10) = 8;
    c.iparm(13) = one.matching;
    c.iparm(21) = 1;
    EXPECT_EQ(c.call(12), one.error) << one.problem.name;
  }
  // Not definite: the failing equation is told.
  sparse_problem indefinite = grid(12, 12, 1);
  indefinite.entries[100].value = -4;
  solver_calls<double> c(csr_of<double>(indefinite));
  c.msglvl = 1;
  const std::string text = printed_by([&] { EXPECT_EQ(c.call(12), -4); });
  EXPECT_NE(text.find("zero or negative pivot, A is not SPD-matrix"), std::string::npos);
  EXPECT_GT(c.iparm(30), 0);
}

// Rows that are sums of others: the pivots that are left are replaced, and the factorisation ends well.
TEST(IllPosedSystems, SingularValuesArePerturbed) {
  for (const int type : {1, 11, 3, 13}) {
    sparse_problem problem = as_type(grid(10, 9, 1), type);
    for (sparse_entry& e : problem.entries)
      if (e.row == 44 || e.col == 44) e.value = 0;
    solver_calls<complex16> complex_call(csr_of<complex16>(problem));
    solver_calls<double> real_call(csr_of<double>(problem));
    const auto run = [&](auto& c) {
      c.iparm(1) = 1;
      c.iparm(2) = 2;
      c.iparm(10) = 13;
      EXPECT_EQ(c.call(12), 0) << type;
      EXPECT_EQ(c.iparm(14), 1) << type;
    };
    if (is_complex_type(type)) {
      run(complex_call);
    } else {
      run(real_call);
    }
  }
}

}  // namespace
}  // namespace qel::test
