// SPDX-License-Identifier: BSD-3-Clause
// Nonlinear least squares by requests: any arguments, answers that are wrong or not finite, calls in any
// order; with and without bounds, and Jacobians by differences.
#include <cmath>
#include <memory>

#include "fuzz/support/input.h"
#include "qel/nls.h"

namespace {

using qel::fuzz::promise;
using numbers = std::vector<double>;

/// Residuals of a small problem, spoiled where the input says so.
void answer(qel::fuzz::input& in, numbers& f, const numbers& x) {
  const int kind = in.byte();
  for (size_t i = 0; i < f.size(); ++i) {
    const double u = x.empty() ? 1 : x[i % x.size()];
    switch (kind % 5) {
      case 0:
        f[i] = u - static_cast<double>(i);
        break;
      case 1:
        f[i] = u * u - 2 + (x.size() > 1 ? x[1] : 0);
        break;
      case 2:
        f[i] = std::exp(u) - 1e3;
        break;
      case 3:
        f[i] = 10 * (x[x.size() - 1] - x[0] * x[0]) + static_cast<double>(i);
        break;
      default:
        f[i] = in.number();
    }
  }
}

bool known(int status) {
  return status == QEL_NLS_SUCCESS || status == QEL_NLS_INVALID_OPTION || status == QEL_NLS_OUT_OF_MEMORY;
}

void minimise(qel::fuzz::input& in, bool bounds) {
  const int n = in.in_range(0, 5), m = n + in.in_range(-1, 3);
  const auto unknowns = static_cast<size_t>(n), residuals = static_cast<size_t>(m < 0 ? 0 : m);
  numbers x(unknowns), low(unknowns), up(unknowns), eps(6, 1e-6), f(residuals),
      jacobian(unknowns * residuals);
  for (double& v : x) v = in.number();
  for (double& v : low) v = in.number();
  for (double& v : up) v = in.number();
  const int spoiled = in.byte();
  if (spoiled < 48) eps[static_cast<size_t>(spoiled) % 6] = in.number();
  const int iter1 = in.in_range(0, 40), iter2 = in.in_range(0, 40);
  const double rs = in.byte() < 128 ? 0.1 : in.number();
  void* run = nullptr;
  const int made =
      bounds ? dtrnlspbc_init(&run, &n, &m, x.data(), low.data(), up.data(), eps.data(), &iter1, &iter2, &rs)
             : dtrnlsp_init(&run, &n, &m, x.data(), eps.data(), &iter1, &iter2, &rs);
  promise(known(made), "a documented status");
  if (made != QEL_NLS_SUCCESS) {
    promise(run == nullptr || made == QEL_NLS_INVALID_OPTION, "nothing is left behind");
    return;
  }
  for (int k = in.in_range(0, 3); k > 0; --k) {
    const int option = in.integer(), value = in.integer();
    promise(known(qel_dtrnlsp_option(&run, &option, &value)), "an option's status");
  }
  const bool stray = in.byte() < 32;
  int request = stray ? in.integer() : 0;
  for (int step = 0; step < 300; ++step) {
    const int status = bounds ? dtrnlspbc_solve(&run, f.data(), jacobian.data(), &request)
                              : dtrnlsp_solve(&run, f.data(), jacobian.data(), &request);
    promise(known(status), "a documented status");
    if (status != QEL_NLS_SUCCESS) break;
    promise(stray || (request >= -6 && request <= 2), "a documented request");
    if (request < 0 && !stray) break;
    if (request == 1) {
      if (bounds && !stray) {
        for (size_t i = 0; i < unknowns; ++i)
          promise(!(x[i] < low[i]) || !(low[i] <= up[i]), "F is asked for inside the box");
      }
      answer(in, f, x);
    }
    if (request == 2) answer(in, jacobian, x);
    if (stray && in.byte() < 64) request = in.integer();
    // Without more input the answers stay the same: let it come to its end.
  }
  int iterations = -1, reason = 0, evaluations = 0, jacobians = 0;
  double r1 = 0, r2 = 0;
  const int got = bounds ? dtrnlspbc_get(&run, &iterations, &reason, &r1, &r2)
                         : dtrnlsp_get(&run, &iterations, &reason, &r1, &r2);
  promise(got == QEL_NLS_SUCCESS && reason >= -4 && reason <= 6, "a documented stop code");
  promise(iterations >= 0 && iterations <= iter1, "no more steps than allowed");
  promise(qel_nls_reason(&reason) != nullptr, "words for it");
  promise(qel_dtrnlsp_evaluations(&run, &evaluations, &jacobians) == QEL_NLS_SUCCESS, "a count");
  const int deleted = bounds ? dtrnlspbc_delete(&run) : dtrnlsp_delete(&run);
  promise(deleted == QEL_NLS_SUCCESS && run == nullptr, "a run is freed");
}

qel::fuzz::input* of_callback;
void residuals_of(int* m, int* n, double* x, double* f) {
  numbers values(static_cast<size_t>(*m));
  answer(*of_callback, values, numbers(x, x + *n));
  std::copy(values.begin(), values.end(), f);
}

void differentiate(qel::fuzz::input& in) {
  const int n = in.in_range(0, 5), m = in.in_range(1, 6);
  numbers x(static_cast<size_t>(n)), f1(static_cast<size_t>(m)), f2(f1.size()),
      jacobian(x.size() * f1.size());
  for (double& v : x) v = in.number();
  const double eps = in.number();
  if (in.byte() < 64) {
    of_callback = &in;
    const int threads = in.integer();
    promise(known(qel_djacobi(residuals_of, &n, &m, jacobian.data(), x.data(), &eps, &threads)), "a status");
    return;
  }
  void* run = nullptr;
  const int made = djacobi_init(&run, &n, &m, x.data(), jacobian.data(), &eps);
  promise(known(made), "a documented status");
  if (made != QEL_NLS_SUCCESS) return;
  const numbers before = x;
  int request = 0;
  bool ended = false;
  for (int step = 0; step < 40 && !ended; ++step) {
    promise(known(djacobi_solve(&run, f1.data(), f2.data(), &request)), "a documented status");
    if (request == 1) answer(in, f1, x);
    if (request == 2) answer(in, f2, x);
    ended = request == 0;
    if (in.byte() > 250) request = in.integer();
  }
  promise(djacobi_delete(&run) == QEL_NLS_SUCCESS && run == nullptr, "a run is freed");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  qel::fuzz::input in(data, size);
  void* none = nullptr;
  int request = 0;
  switch (in.byte() % 4) {
    case 0:
      promise(dtrnlsp_solve(&none, nullptr, nullptr, &request) == QEL_NLS_INVALID_OPTION &&
                  dtrnlspbc_solve(&none, nullptr, nullptr, &request) == QEL_NLS_INVALID_OPTION,
              "a null run is refused");
      differentiate(in);
      break;
    case 1:
      differentiate(in);
      break;
    case 2:
      minimise(in, false);
      break;
    default:
      minimise(in, true);
  }
  return 0;
}
