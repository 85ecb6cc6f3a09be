// SPDX-License-Identifier: BSD-3-Clause
// The record of a least-squares run, one for both solvers. The caller's arrays x, eps and bounds are kept by
// reference; all others are the record's own.
#pragma once

#include "service/core_types.h"

namespace qel::nls {

/// What the public routines return.
enum nls_status : int { kSuccess = 1501, kInvalidOption = 1502, kOutOfMemory = 1503 };

/// Why a run ended; 0 while it goes on. RCI_Request tells the positive ones with their sign changed.
enum stop_code : int {
  kRunning = 0,
  kIterationLimit = 1,
  kSmallRadius = 2,
  kSmallResidual = 3,
  kZeroJacobian = 4,
  kSmallStep = 5,
  kNoProgress = 6,
  kStoppedByCaller1 = -1,
  kStoppedByCaller2 = -2,
  kFailedStep = -4,
};

/// What the caller does next.
enum request : int { kCallAgain = 0, kNeedsResidual = 1, kNeedsJacobian = 2 };

/// Departures from the classic rules, each off unless asked for.
struct modern_rules {
  bool radius_grows = false;      ///< to twice the step if the ratio is 0.75 and more, with a lambda, too
  bool scaled_norm = false;       ///< bounded: ratio and radius measure the step in the scaled space
  bool unit_free_radius = false;  ///< the first radius does not depend on the units of F
};

/// Constants of the acceptance rules. Only the first is read; the record carries all four.
struct acceptance {
  double accept_ratio = 1e-4, most = 0.99, quarter = 0.25, growth = 2.0;
};

struct trust_region {
  acceptance rules;
  modern_rules modern;
  double fnorm, pnorm, ratio, lambda, delta, jsnorm;
  int phase;   ///< 0, 1 awaits F at the start, 2 awaits F at a trial point
  bool first;  ///< until the first step has been judged
  int n, m;
  double *step, *saved_x, *trial_x;  ///< n each
  double* scratch[3];                ///< n each
  double *fsave, *ftrial;            ///< m each
  double *h, *l;                     ///< n by n: normal matrix, Cholesky factor
  double* scaled_jacobian;           ///< bounded: m by n
  double* bounded_m[4];              ///< bounded: m each
  double* bounded_n[7];              ///< bounded: n each
  double* x;
  const double *lower, *upper;  ///< null without bounds
  int iter1, iter2, iter, st_cr;
  double rs, r1, r2;
  const double* eps;
  int f_calls, j_calls;  ///< requests so far

  bool bounded() const { return lower != nullptr; }
};

/// What both init routines test; eps has six elements.
bool valid_options(int n, int m, const double* eps, int iter1, int iter2, double rs);

/// Bounds are both null or both there. kOutOfMemory leaves nothing behind.
int create_trust_region(trust_region** made, int n, int m, double* x, const double* lower,
                        const double* upper, const double* eps, int iter1, int iter2, double rs);
void delete_trust_region(trust_region* run);

/// One step of the protocol: reads the caller's answer to *rci and leaves the next request there, negative
/// when the run has ended. A run that has ended stays as it is.
void advance(trust_region& run, double* fvec, const double* fjac, int* rci);

/// A trial step for the model |J s + f| with |s| near delta, in run.step; lambda belongs to it. Statuses of 0
/// and above are steps, below 0 there is none.
int trial_step(trust_region& run, const double* jacobian, const double* f, double delta, double* step,
               double* lambda);
/// The same inside the bounds of x; pnorm_scaled is the step's norm in the scaled space.
int bounded_trial_step(trust_region& run, const double* jacobian, const double* f, double* pnorm_scaled);

/// Whether only one triangle of the normal matrix is formed: others sum in the order of a full product.
constexpr bool forms_one_triangle(int level) { return level >= 5; }

/// Threads that the norms of the columns of an m by n matrix are worth.
int threads_for_norms(int m, int n, int threads);
/// norms[j] = norm of column j of the m by n matrix a, columns shared out among threads.
void column_norms(int m, int n, const double* a, double* norms, int threads);

/// A stop code in words; "unknown" for others.
const char* stop_reason(int st_cr);

}  // namespace qel::nls
