// SPDX-License-Identifier: BSD-3-Clause
// The trial step inside bounds: a step in a space scaled by the distance to the bounds, cut at the box, and a
// scaled gradient candidate beside it; the linear model chooses between them (after T. F. Coleman, Y. Li, An
// interior trust region approach for nonlinear minimization subject to bounds, SIAM J. Optim. 6 (1996) 418).
#include <algorithm>
#include <cmath>
#include <limits>

#include "nls/dense.h"
#include "nls/trust_region.h"

namespace qel::nls {
namespace {

constexpr double kNoBound = std::numeric_limits<double>::max();
constexpr double kTiny = 1e-18;
constexpr double kEnough = 0.1;  ///< share of the gradient candidate's reduction that a step must reach
constexpr double kInsideBox = 0.99995;  ///< how far the gradient candidate goes towards the box

bool is_finite_bound(double bound) { return bound != kNoBound && bound != -kNoBound; }

/// The signed distance by which a component is scaled.
double distance(double x, double lower, double upper, double g) {
  const bool has_lower = is_finite_bound(lower), has_upper = is_finite_bound(upper);
  const auto or_tiny = [](double value, double tiny) { return value == 0 ? tiny : value; };
  if (g < 0) return has_upper ? or_tiny(x - upper, -kTiny) : -1.0;
  if (g > 0) return has_lower ? or_tiny(x - lower, kTiny) : 1.0;
  if (has_lower) return or_tiny(x - lower, kTiny);
  return has_upper ? or_tiny(x - upper, -kTiny) : 1.0;
}

class bounded_search {
 public:
  bounded_search(trust_region& run, const double* jacobian, const double* f)
      : s_(run),
        n_(run.n),
        m_(run.m),
        j_(jacobian),
        f_(f),
        jd_(run.scaled_jacobian),
        g_(run.bounded_n[0]),
        d_(run.bounded_n[1]),
        gd_(run.bounded_n[2]),
        pg_(run.bounded_n[3]),
        p_(run.bounded_n[4]),
        q_(run.bounded_n[5]),
        r_(run.bounded_n[6]) {}

  int run(double* pnorm_scaled) {
    product('T', m_, n_, j_, f_, g_);
    for (core_int i = 0; i < n_; ++i)
      d_[i] = 1 / std::sqrt(std::fabs(distance(s_.x[i], s_.lower[i], s_.upper[i], g_[i])));
    for (core_int i = 0; i < n_; ++i) {
      copy(m_, j_ + i * m_, jd_ + i * m_);
      scale(m_, 1 / d_[i], jd_ + i * m_);
    }
    const int status = trial_step(s_, jd_, f_, s_.delta, s_.step, &s_.lambda);
    if (status < 0) return status;
    for (core_int i = 0; i < n_; ++i) s_.step[i] /= d_[i];
    gradient_candidate();
    cut_step();
    cut_gradient();
    choose();
    for (core_int i = 0; i < n_; ++i) r_[i] = s_.step[i] * d_[i];
    *pnorm_scaled = norm(n_, r_);
    return std::isfinite(*pnorm_scaled) ? status : -1;
  }

 private:
  /// pg: the minimum of the model along the scaled gradient, within the radius.
  void gradient_candidate() {
    double* const jgd = s_.bounded_m[0];
    product('T', m_, n_, jd_, f_, gd_);
    product('N', m_, n_, jd_, gd_, jgd);
    const double gg = dot(n_, gd_, gd_), curvature = dot(m_, jgd, jgd);
    const double tau = gg == 0 && curvature == 0 ? 0 : std::min(gg / curvature, s_.delta / std::sqrt(gg));
    for (core_int i = 0; i < n_; ++i) pg_[i] = -tau * (gd_[i] / d_[i]);
  }

  /// p: the step with its components cut at the box, backed off from there. Products with J^T J go through J.
  void cut_step() {
    for (core_int i = 0; i < n_; ++i) {
      const double to_lower = s_.lower[i] - s_.x[i], to_upper = s_.upper[i] - s_.x[i];
      const double t = s_.x[i] + s_.step[i];
      p_[i] = s_.step[i];
      r_[i] = 0;
      if (t <= s_.lower[i]) p_[i] = r_[i] = to_lower;
      if (t >= s_.upper[i]) p_[i] = r_[i] = to_upper;
    }
    double *const jc = s_.bounded_m[0], *const jr = s_.bounded_m[1];
    product('N', m_, n_, j_, p_, jc);
    product('N', m_, n_, j_, r_, jr);
    const double curvature = dot(m_, jr, jr);
    double t = curvature <= kTiny ? 0 : (dot(n_, g_, r_) + dot(m_, jc, jr)) / curvature;
    t = std::max(0.0005, std::min(t, 0.05));
    axpy(n_, -t, r_, p_);
  }

  /// q: the gradient candidate, shortened if it leaves the box. Kept: a component with one bound sets no
  /// limit.
  void cut_gradient() {
    copy(n_, pg_, q_);
    bool leaves = false;
    double alpha = kNoBound;
    for (core_int i = 0; i < n_; ++i) {
      const double lower = s_.lower[i], upper = s_.upper[i], x = s_.x[i];
      leaves = leaves || x + pg_[i] < lower || x + pg_[i] > upper;
      if (pg_[i] == 0 || !is_finite_bound(lower) || !is_finite_bound(upper)) continue;
      const double a = lower - x == 0 ? -kTiny : lower - x;
      const double b = upper - x != 0 ? upper - x : upper < 0 ? -kTiny : kTiny;
      alpha = std::min(alpha, std::max(a / pg_[i], b / pg_[i]));
    }
    if (leaves && alpha <= 1) scale(n_, kInsideBox * alpha, q_);
  }

  /// 0.5 |f + ju|^2.
  double model(const double* ju) const {
    double sum = 0;
    for (core_int i = 0; i < m_; ++i) sum += (f_[i] + ju[i]) * (f_[i] + ju[i]);
    return 0.5 * sum;
  }

  /// The step p if the model falls by a tenth of what it falls for q; else a point between them that just
  /// does.
  void choose() {
    double *const jp = s_.bounded_m[0], *const jq = s_.bounded_m[1], *const w = s_.bounded_m[2];
    product('N', m_, n_, j_, p_, jp);
    product('N', m_, n_, j_, q_, jq);
    const double m0 = 0.5 * dot(m_, f_, f_), mq = model(jq);
    const double rho = m0 == 0 && mq == 0 ? kEnough - 1.0 : (m0 - model(jp)) / (m0 - mq);
    if (rho >= kEnough) return copy(n_, p_, s_.step);
    double* const sum = s_.bounded_m[3];
    for (core_int i = 0; i < m_; ++i) {
      w[i] = jq[i] - jp[i];
      sum[i] = f_[i] + jp[i];
    }
    const double b = dot(m_, sum, w), ww = dot(m_, w, w);
    for (core_int i = 0; i < m_; ++i) sum[i] = jp[i] - kEnough * jq[i];
    const double e = 0.5 * dot(m_, jp, jp) - kEnough * 0.5 * dot(m_, jq, jq) + dot(m_, f_, sum);
    double mu = (-b - std::sqrt(b * b - 2 * ww * e)) / (ww == 0 ? kTiny : ww);
    mu = std::isnan(mu) ? 1.0 : std::clamp(mu, 0.0, 1.0);
    for (core_int i = 0; i < n_; ++i) s_.step[i] = mu * q_[i] + (1 - mu) * p_[i];
  }

  trust_region& s_;
  core_int n_, m_;
  const double *j_, *f_;
  double *jd_, *g_, *d_, *gd_, *pg_, *p_, *q_, *r_;
};

}  // namespace

int bounded_trial_step(trust_region& run, const double* jacobian, const double* f, double* pnorm_scaled) {
  return bounded_search(run, jacobian, f).run(pnorm_scaled);
}

}  // namespace qel::nls
