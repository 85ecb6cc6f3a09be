// SPDX-License-Identifier: BSD-3-Clause
#include "bench/nls/peers.h"

#include <dlfcn.h>

#include "bench/support/contenders.h"
#include "qel/nls.h"

#ifdef QEL_BENCH_CMINPACK
#include <cminpack.h>
#endif
#ifdef QEL_BENCH_GSL
#include <gsl/gsl_blas.h>
#include <gsl/gsl_errno.h>
#include <gsl/gsl_multifit_nlinear.h>
#endif
#ifdef QEL_BENCH_CERES
#include <ceres/ceres.h>
#include <glog/logging.h>
#endif

namespace qel::bench {
namespace {

double squares_at(const least_squares& problem, const double* x) {
  std::vector<double> f(static_cast<size_t>(problem.m));
  problem.evaluate(x, f.data(), nullptr);
  double sum = 0;
  for (const double value : f) sum += value * value;
  return sum;
}

template <bool kModern>
cost solve_qel(const least_squares& p, std::vector<double> x, int max_iterations) {
  const contender& library = contenders().front();
  static auto* const init = library.find<decltype(dtrnlsp_init)>("dtrnlsp_init");
  static auto* const step = library.find<decltype(dtrnlsp_solve)>("dtrnlsp_solve");
  static auto* const option = library.find<decltype(qel_dtrnlsp_option)>("qel_dtrnlsp_option");
  static auto* const end = library.find<decltype(dtrnlsp_delete)>("dtrnlsp_delete");
  const double eps[6] = {1e-12, 1e-14, 1e-14, 1e-12, 1e-12, 1e-12}, bound = 0;
  const int trials = 100, all = QEL_NLS_MODERN, on = kModern ? 1 : 0;
  std::vector<double> f(static_cast<size_t>(p.m)), jacobian(f.size() * x.size());
  cost result;
  void* run = nullptr;
  init(&run, &p.n, &p.m, x.data(), eps, &max_iterations, &trials, &bound);
  option(&run, &all, &on);
  for (int request = 0; step(&run, f.data(), jacobian.data(), &request) == QEL_NLS_SUCCESS && request >= 0;) {
    if (request == 1) {
      p.evaluate(x.data(), f.data(), nullptr);
      ++result.residuals;
    } else if (request == 2) {
      std::vector<double> unused(f.size());
      p.evaluate(x.data(), unused.data(), jacobian.data());
      ++result.jacobians;
    }
  }
  end(&run);
  result.squares = squares_at(p, x.data());
  return result;
}

#ifdef QEL_BENCH_CMINPACK
struct counted {
  const least_squares* problem;
  cost* costs;
};
int cminpack_values(void* data, int m, int, const double* x, double* f, double* jacobian, int ld, int flag) {
  const auto* c = static_cast<counted*>(data);
  if (flag == 1) {
    c->problem->evaluate(x, f, nullptr);
    ++c->costs->residuals;
  } else if (flag == 2) {
    std::vector<double> unused(static_cast<size_t>(m));
    c->problem->evaluate(x, unused.data(), jacobian);
    ++c->costs->jacobians;
    static_cast<void>(ld);  // m
  }
  return 0;
}
cost solve_cminpack(const least_squares& p, std::vector<double> x, int max_iterations) {
  cost result;
  counted c{&p, &result};
  std::vector<double> f(static_cast<size_t>(p.m)), jacobian(f.size() * x.size()), diag(x.size()),
      qtf(x.size()), work(3 * x.size()), work_m(f.size());
  std::vector<int> pivots(x.size());
  int evaluations = 0, jacobians = 0;
  lmder(cminpack_values, &c, p.m, p.n, x.data(), f.data(), jacobian.data(), p.m, 1e-14, 1e-14, 1e-14,
        max_iterations, diag.data(), 1, 100, 0, &evaluations, &jacobians, pivots.data(), qtf.data(),
        work.data(), work.data() + p.n, work.data() + 2 * p.n, work_m.data());
  result.squares = squares_at(p, x.data());
  return result;
}
#endif

#ifdef QEL_BENCH_GSL
int gsl_f(const gsl_vector* x, void* data, gsl_vector* f) {
  static_cast<const least_squares*>(data)->evaluate(x->data, f->data, nullptr);
  return GSL_SUCCESS;
}
int gsl_df(const gsl_vector* x, void* data, gsl_matrix* jacobian) {
  const auto* p = static_cast<const least_squares*>(data);
  std::vector<double> f(static_cast<size_t>(p->m)), columns(f.size() * static_cast<size_t>(p->n));
  p->evaluate(x->data, f.data(), columns.data());
  for (size_t j = 0; j < static_cast<size_t>(p->n); ++j)
    for (size_t i = 0; i < f.size(); ++i) gsl_matrix_set(jacobian, i, j, columns[j * f.size() + i]);
  return GSL_SUCCESS;
}
cost solve_gsl(const least_squares& p, std::vector<double> x, int max_iterations) {
  gsl_set_error_handler_off();
  gsl_multifit_nlinear_fdf functions = {gsl_f,
                                        gsl_df,
                                        nullptr,
                                        static_cast<size_t>(p.m),
                                        static_cast<size_t>(p.n),
                                        const_cast<least_squares*>(&p),
                                        0,
                                        0,
                                        0};
  gsl_multifit_nlinear_parameters parameters = gsl_multifit_nlinear_default_parameters();
  auto* work = gsl_multifit_nlinear_alloc(gsl_multifit_nlinear_trust, &parameters, functions.n, functions.p);
  const gsl_vector_view start = gsl_vector_view_array(x.data(), x.size());
  gsl_multifit_nlinear_init(&start.vector, &functions, work);
  int info = 0;
  gsl_multifit_nlinear_driver(static_cast<size_t>(max_iterations), 1e-14, 1e-14, 1e-14, nullptr, nullptr,
                              &info, work);
  cost result{squares_at(p, work->x->data), static_cast<int>(functions.nevalf),
              static_cast<int>(functions.nevaldf)};
  gsl_multifit_nlinear_free(work);
  return result;
}
#endif

#ifdef QEL_BENCH_CERES
class ceres_cost : public ceres::CostFunction {
 public:
  explicit ceres_cost(const least_squares& p) : p_(p) {
    set_num_residuals(p.m);
    mutable_parameter_block_sizes()->push_back(p.n);
  }
  bool Evaluate(double const* const* x, double* f, double** jacobians) const override {
    if (jacobians == nullptr || jacobians[0] == nullptr) {
      p_.evaluate(x[0], f, nullptr);
      return true;
    }
    const auto m = static_cast<size_t>(p_.m), n = static_cast<size_t>(p_.n);
    std::vector<double> columns(m * n);
    p_.evaluate(x[0], f, columns.data());
    for (size_t i = 0; i < m; ++i)
      for (size_t j = 0; j < n; ++j) jacobians[0][i * n + j] = columns[j * m + i];
    return true;
  }

 private:
  const least_squares& p_;
};
cost solve_ceres(const least_squares& p, std::vector<double> x, int max_iterations) {
  ceres::Problem problem;
  problem.AddResidualBlock(new ceres_cost(p), nullptr, x.data());
  ceres::Solver::Options options;
  options.linear_solver_type = p.n > 50 ? ceres::DENSE_NORMAL_CHOLESKY : ceres::DENSE_QR;
  options.dense_linear_algebra_library_type = ceres::LAPACK;
  options.max_num_iterations = max_iterations;
  options.function_tolerance = options.gradient_tolerance = options.parameter_tolerance = 1e-14;
  options.logging_type = ceres::SILENT;
  ceres::Solver::Summary summary;
  ceres::Solve(options, &problem, &summary);
  return {squares_at(p, x.data()), summary.num_residual_evaluations, summary.num_jacobian_evaluations};
}
#endif

}  // namespace

std::vector<solver> solvers() {
  std::vector<solver> all = {{kSubject, solve_qel<false>}, {"QEL-modern", solve_qel<true>}};
#ifdef QEL_BENCH_CMINPACK
  all.push_back({"cminpack", solve_cminpack});
#endif
#ifdef QEL_BENCH_GSL
  all.push_back({"GSL", solve_gsl});
#endif
#ifdef QEL_BENCH_CERES
  google::InitGoogleLogging("qel-bench-nls");
  all.push_back({"Ceres", solve_ceres});
#endif
  return all;
}

}  // namespace qel::bench
