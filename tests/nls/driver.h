// SPDX-License-Identifier: BSD-3-Clause
// Answers a run's requests to the end.
#pragma once

#include <cfloat>
#include <vector>

#include "qel/nls.h"
#include "tests/nls/problems.h"

namespace qel::test {

struct nls_settings {
  std::vector<double> eps = {1e-12, 1e-14, 1e-14, 1e-12, 1e-12, 1e-12};
  int iter1 = 1000, iter2 = 100;
  double rs = 0;
  bool modern = false;
  std::vector<double> lower, upper;  ///< both or none
};

struct nls_outcome {
  std::vector<double> x;
  int iterations = 0, stop = 0, status = 0, f_calls = 0, j_calls = 0;
  double r1 = 0, r2 = 0;
  bool left_box = false;
};

inline nls_outcome minimise(const nls_problem& problem, std::vector<double> x,
                            const nls_settings& settings = {}) {
  const int n = problem.unknowns(), m = problem.residuals;
  const bool bounded = !settings.lower.empty();
  nls_outcome out;
  void* run = nullptr;
  out.status = bounded ? dtrnlspbc_init(&run, &n, &m, x.data(), settings.lower.data(), settings.upper.data(),
                                        settings.eps.data(), &settings.iter1, &settings.iter2, &settings.rs)
                       : dtrnlsp_init(&run, &n, &m, x.data(), settings.eps.data(), &settings.iter1,
                                      &settings.iter2, &settings.rs);
  if (out.status != QEL_NLS_SUCCESS) return out;
  const int all = QEL_NLS_MODERN, on = settings.modern ? 1 : 0;
  qel_dtrnlsp_option(&run, &all, &on);
  std::vector<double> f(static_cast<std::size_t>(m)), jacobian(f.size() * x.size());
  for (int request = 0;;) {
    out.status = bounded ? dtrnlspbc_solve(&run, f.data(), jacobian.data(), &request)
                         : dtrnlsp_solve(&run, f.data(), jacobian.data(), &request);
    double r1, r2;
    dtrnlsp_get(&run, &out.iterations, &out.stop, &r1, &r2);
    if (out.status != QEL_NLS_SUCCESS || out.stop != 0) break;
    if (request == 1) evaluate(problem, x.data(), f.data(), nullptr);
    if (request == 2) evaluate(problem, x.data(), f.data(), jacobian.data());
    for (std::size_t i = 0; bounded && i < x.size(); ++i)
      out.left_box = out.left_box || x[i] < settings.lower[i] || x[i] > settings.upper[i];
  }
  dtrnlsp_get(&run, &out.iterations, &out.stop, &out.r1, &out.r2);
  qel_dtrnlsp_evaluations(&run, &out.f_calls, &out.j_calls);
  bounded ? dtrnlspbc_delete(&run) : dtrnlsp_delete(&run);
  out.x = x;
  return out;
}

}  // namespace qel::test
