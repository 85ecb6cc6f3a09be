// SPDX-License-Identifier: BSD-3-Clause
// The trial step: a secular iteration for lambda on Cholesky factors of J^T J + lambda I (J. J. More, D. C.
// Sorensen, Computing a trust region step, SIAM J. Sci. Stat. Comput. 4 (1983) 553), with a shift where the
// factorisation fails and a move along a direction of near-singularity in the hard case.
#include <algorithm>
#include <cmath>

#include "blas/level3/level3.h"
#include "lapack/lapack.h"
#include "nls/dense.h"
#include "nls/trust_region.h"
#include "service/serv.h"

namespace qel::nls {
namespace {

constexpr int kNoStep = -1;
enum step_status : int { kBudgetSpent = 1, kInside = 2, kOnRadius = 3, kHardCase = 4 };

bool all_finite(core_int n, const double* x) {
  return std::all_of(x, x + n, [](double value) { return std::isfinite(value); });
}

/// H = J^T J. Only its lower triangle is read: the native levels form no more.
void normal_matrix(core_int m, core_int n, const double* jacobian, double* h) {
  const double one = 1, zero = 0;
  if (forms_one_triangle(serv_cpu_level())) {
    core::dsyrk("L", "T", &n, &m, &one, jacobian, &m, &zero, h, &n);
  } else {
    core::dgemm("T", "N", &n, &n, &m, &one, jacobian, &m, jacobian, &m, &zero, h, &n);
  }
}

bool lower_is_finite(core_int n, const double* h) {
  for (core_int j = 0; j < n; ++j)
    if (!all_finite(n - j, h + j * n + j)) return false;
  return true;
}

/// One search for lambda.
class secular_search {
 public:
  secular_search(trust_region& run, double delta, double* step)
      : n_(run.n),
        h_(run.h),
        l_(run.l),
        g_(run.scratch[0]),
        q_(run.scratch[1]),
        z_(run.scratch[2]),
        p_(step),
        delta_(delta) {}

  int run(const double* jacobian, const double* f, core_int m, int budget) {
    normal_matrix(m, n_, jacobian, h_);
    product('T', m, n_, jacobian, f, g_);
    scale(n_, -1.0, g_);
    if (!lower_is_finite(n_, h_) || !all_finite(n_, g_)) return kNoStep;
    std::fill_n(p_, n_, 0.0);
    for (int round = 0; round <= budget; ++round) {
      const int status = factorise() ? after_factor() : after_shift();
      if (status != 0) return status;
    }
    return kBudgetSpent;
  }
  double lambda() const { return lambda_; }

 private:
  void add_to_diagonal(double value) {
    for (core_int i = 0; i < n_; ++i) h_[i * (n_ + 1)] += value;
  }
  bool factorise() {
    const core_int all = n_ * n_;
    core_int info = 0;
    copy(all, h_, l_);
    core::qel_core_dpotrf_("L", &n_, l_, &n_, &info, 1);
    return info == 0;
  }
  /// p = (L L^T)^-1 g; false if it isn't finite.
  bool solve() {
    core_int info = 0;
    copy(n_, g_, p_);
    core::qel_core_dpotrs_("L", &n_, &kOne, l_, &n_, p_, &n_, &info, 1);
    length_ = norm(n_, p_);
    return info >= 0 && std::isfinite(length_);
  }

  int after_factor() {
    if (!solve()) return kNoStep;
    if (0.01 * delta_ > std::fabs(length_ - delta_)) {
      scale(n_, delta_ / length_, p_);
      return kOnRadius;
    }
    if (delta_ > length_ && lambda_ == 0) return kInside;
    return length_ > delta_ ? enlarge_lambda(lambda_) : 0;
  }

  /// Newton's step for the lambda at which |p| = delta; on_diagonal comes off, the new lambda goes on.
  int enlarge_lambda(double on_diagonal) {
    core_int info = 0;
    add_to_diagonal(-on_diagonal);
    copy(n_, p_, q_);
    core::qel_core_dtrtrs_("L", "N", "N", &n_, &kOne, l_, &n_, q_, &n_, &info, 1, 1, 1);
    const double q_length = norm(n_, q_);
    if (q_length == 0) return kOnRadius;
    const double quotient = length_ / q_length;
    lambda_ += quotient * quotient * ((length_ - delta_) / delta_);
    if (!std::isfinite(lambda_)) return kNoStep;
    add_to_diagonal(lambda_);
    return 0;
  }

  /// The matrix is not positive definite to working precision: the least tried shift that makes it so.
  int after_shift() {
    double shift = 1e-16;
    for (;;) {
      add_to_diagonal(-lambda_);
      add_to_diagonal(shift);
      if (factorise()) break;
      lambda_ = shift;
      shift *= 10;
      if (!std::isfinite(shift)) return kNoStep;
    }
    if (!solve()) return kNoStep;
    lambda_ = shift;
    if (length_ > delta_) return enlarge_lambda(shift);
    return delta_ > length_ ? hard_case() : 0;
  }

  int hard_case() {
    // The signs of the classic condition estimate, then the direction that L^T makes large.
    for (core_int k = 0; k < n_; ++k) {
      const double pivot = l_[k * (n_ + 1)];
      const double t = core::ddot(&k, l_ + k, &n_, q_, &kOne);
      q_[k] = pivot == 0 || (1 - t) / pivot > (-1 - t) / pivot ? 1 : -1;
    }
    core_int info = 0;
    copy(n_, q_, z_);
    core::qel_core_dtrtrs_("L", "T", "N", &n_, &kOne, l_, &n_, z_, &n_, &info, 1, 1, 1);
    scale(n_, 1 / norm(n_, z_), z_);
    const double a = dot(n_, p_, z_), b = dot(n_, p_, p_), c = dot(n_, z_, z_);
    const double root = std::sqrt(4 * (a * a - (b - delta_ * delta_) * c));
    const double tau = std::min((root - 2 * a) / (2 * c), (-2 * a - root) / (2 * c));
    copy(n_, p_, q_);
    axpy(n_, tau, z_, q_);
    if (!(0.02 * delta_ > std::fabs(norm(n_, q_) - delta_))) return 0;
    copy(n_, q_, p_);
    return kHardCase;
  }

  core_int n_;
  double *h_, *l_, *g_, *q_, *z_, *p_;
  double delta_, lambda_ = 0, length_ = 0;
};

}  // namespace

int trial_step(trust_region& run, const double* jacobian, const double* f, double delta, double* step,
               double* lambda) {
  constexpr int kDefaultBudget = 10;
  secular_search search(run, delta, step);
  const int status = search.run(jacobian, f, run.m, run.iter2 == 0 ? kDefaultBudget : run.iter2);
  *lambda = search.lambda();
  return status;
}

}  // namespace qel::nls
