// SPDX-License-Identifier: BSD-3-Clause
// The outer loop of both solvers as a sequence of requests; acceptance and radius follow the
// Levenberg-Marquardt form (J. J. More, The Levenberg-Marquardt algorithm, Lecture Notes in Mathematics 630,
// 1978).
#include <algorithm>
#include <cmath>
#include <limits>

#include "nls/dense.h"
#include "nls/trust_region.h"
#include "service/serv.h"

namespace qel::nls {
namespace {

/// The ratio's value after a rejected step: the Jacobian is still good.
constexpr double kRejected = -std::numeric_limits<double>::max();

class protocol_step {
 public:
  protocol_step(trust_region& run, double* fvec, const double* fjac, int* rci)
      : s_(run), fvec_(fvec), fjac_(fjac), rci_(rci) {}

  void run() {
    switch (*rci_) {
      case kCallAgain:
        return start_iteration();
      case kNeedsResidual:
        if (s_.phase == 2) return judge();
        return with_start_residual();
      case kNeedsJacobian:
        return with_jacobian();
      case kStoppedByCaller1:
      case kStoppedByCaller2:
        s_.st_cr = *rci_;
        *rci_ = kCallAgain;
        return;
      default:
        return;
    }
  }

 private:
  void ask(request what) {
    *rci_ = what;
    if (what == kNeedsResidual) ++s_.f_calls;
    if (what == kNeedsJacobian) ++s_.j_calls;
  }
  void stop(stop_code why, double residual) {
    s_.st_cr = why;
    s_.r2 = residual;
    *rci_ = kCallAgain;
  }
  double residual_norm() const { return norm(s_.m, fvec_); }

  void start_iteration() {
    if (s_.first) {
      s_.delta = 1.0;
      s_.lambda = 0.0;
      s_.rules = {};
      s_.ratio = 0;
    }
    if (s_.iter >= s_.iter1) return stop(kIterationLimit, residual_norm());
    if (!s_.first && s_.eps[0] > s_.delta) return stop(kSmallRadius, residual_norm());
    if (s_.first) {
      // F is never asked for outside the box.
      if (s_.bounded()) into_box(s_.x);
      s_.phase = 1;
      return ask(kNeedsResidual);
    }
    test_residual();
  }

  void with_start_residual() {
    if (s_.first) {
      s_.fnorm = residual_norm();
      s_.r1 = s_.fnorm;
    }
    test_residual();
  }

  void test_residual() {
    if (s_.eps[1] >= s_.fnorm) return stop(kSmallResidual, residual_norm());
    if (s_.ratio != kRejected) return ask(kNeedsJacobian);
    with_jacobian();
  }

  void with_jacobian() {
    const int threads = threads_for_norms(s_.m, s_.n, serv_threads_all());
    double* const norms = s_.scratch[0];
    column_norms(s_.m, s_.n, fjac_, norms, threads);
    // Counted before the first radius, which overwrites the norms; neither reads what the other writes.
    const auto zero_columns = std::count_if(norms, norms + s_.n, [&](double c) { return c < s_.eps[2]; });
    if (s_.first) first_radius(norms);
    if (zero_columns == s_.n) return stop(kZeroJacobian, s_.fnorm);

    double pnorm = 0;
    const int status = form_step(&pnorm);
    if (status < 0) {
      s_.iter = 0;
      s_.st_cr = kFailedStep;
      return;
    }
    const double step_length = norm(s_.n, s_.step);
    s_.pnorm = s_.modern.scaled_norm && s_.bounded() ? pnorm : step_length;
    if (s_.first) s_.delta = std::min(s_.delta, s_.pnorm);
    if (s_.eps[3] >= step_length) return stop(kSmallStep, s_.fnorm);
    if (!model_progresses()) return stop(kNoProgress, s_.fnorm);
    s_.phase = 2;
    ask(kNeedsResidual);
  }

  /// delta = rs |w|, w being x weighted with the columns' norms.
  void first_radius(double* norms) {
    double* const w = s_.scratch[1];
    for (int j = 0; j < s_.n; ++j)
      w[j] = s_.x[j] * (s_.modern.unit_free_radius || norms[j] <= 0 ? 1.0 : norms[j]);
    const double radius = s_.rs * norm(s_.n, w);
    s_.delta = s_.eps[0] >= radius ? s_.rs : radius;
  }

  /// The step in s_.step and the point that it leads to in s_.trial_x.
  int form_step(double* pnorm_scaled) {
    const int status = s_.bounded() ? bounded_trial_step(s_, fjac_, fvec_, pnorm_scaled)
                                    : trial_step(s_, fjac_, fvec_, s_.delta, s_.step, &s_.lambda);
    if (status < 0) return status;
    copy(s_.n, s_.x, s_.trial_x);
    axpy(s_.n, 1.0, s_.step, s_.trial_x);
    if (s_.bounded()) {
      into_box(s_.trial_x);
      for (int i = 0; i < s_.n; ++i) s_.step[i] = s_.trial_x[i] - s_.x[i];
    }
    return status;
  }

  void into_box(double* x) const {
    for (int i = 0; i < s_.n; ++i) {
      if (x[i] < s_.lower[i]) x[i] = s_.lower[i];
      if (x[i] > s_.upper[i]) x[i] = s_.upper[i];
    }
  }

  /// Notes |J s| and moves x to the trial point unless the linear model stands still. Kept: the model's
  /// residual is formed with a minus, F - J s.
  bool model_progresses() {
    product('N', s_.m, s_.n, fjac_, s_.step, s_.ftrial);
    s_.jsnorm = norm(s_.m, s_.ftrial);
    int i = 0;
    for (; i + 1 < s_.m; i += 2) {
      s_.ftrial[i] = fvec_[i] - s_.ftrial[i];
      s_.ftrial[i + 1] = fvec_[i + 1] - s_.ftrial[i + 1];
    }
    if (i < s_.m) s_.ftrial[i] = fvec_[i] - s_.ftrial[i];
    if (s_.eps[2] >= std::fabs(s_.fnorm - norm(s_.m, s_.ftrial))) return false;
    copy(s_.n, s_.x, s_.saved_x);
    copy(s_.n, s_.trial_x, s_.x);
    copy(s_.m, fvec_, s_.fsave);
    return true;
  }

  /// F at the trial point is there. x goes back by its copy, so that a rejected step leaves the same bits.
  void judge() {
    copy(s_.n, s_.saved_x, s_.x);
    const double fnew = residual_norm();
    copy(s_.m, fvec_, s_.ftrial);
    copy(s_.m, s_.fsave, fvec_);

    const auto square = [](double value) { return value * value; };
    const double t1 = s_.jsnorm / s_.fnorm;
    const double actred = s_.fnorm > 0.1 * fnew ? 1 - square(fnew / s_.fnorm) : -1.0;
    const double t2 = square(std::sqrt(s_.lambda) * s_.pnorm / s_.fnorm);
    const double prered = square(t1) + 2 * t2, dirder = -(square(t1) + t2);
    const double ratio = actred / prered;
    // A ratio that is no number counts as a bad one.
    if (!(ratio > 0.25)) {
      shrink(fnew, actred, dirder);
    } else if (s_.lambda == 0 || (s_.modern.radius_grows && ratio >= 0.75)) {
      s_.delta = 2 * s_.pnorm;
    }
    if (ratio >= s_.rules.accept_ratio) {
      s_.ratio = ratio;
      copy(s_.n, s_.trial_x, s_.x);
      copy(s_.m, s_.ftrial, fvec_);
      s_.fnorm = fnew;
      ++s_.iter;
    } else {
      s_.ratio = kRejected;
    }
    s_.first = false;
    *rci_ = kCallAgain;
  }

  void shrink(double fnew, double actred, double dirder) {
    // Kept: actred is halved in the divisor, not dirder.
    double factor = actred >= 0 ? 0.5 : 0.5 * dirder / (0.5 * actred + dirder);
    if (0.1 * fnew >= s_.fnorm || !(factor >= 0.1)) factor = 0.1;
    s_.delta = factor * std::min(s_.delta, s_.bounded() ? s_.pnorm * 10.0 : s_.pnorm / 0.1);
  }

  trust_region& s_;
  double* fvec_;
  const double* fjac_;
  int* rci_;
};

}  // namespace

void advance(trust_region& run, double* fvec, const double* fjac, int* rci) {
  if (run.st_cr != kRunning) return;
  protocol_step(run, fvec, fjac, rci).run();
  if (run.st_cr > 0) *rci = -run.st_cr;
}

}  // namespace qel::nls
