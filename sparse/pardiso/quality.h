// SPDX-License-Identifier: BSD-3-Clause
// How far a factorisation and its solutions can be trusted.
#pragma once

#include <stddef.h>

namespace qel::pardiso {

struct quality_question {
  void* const* pt;
  int mnum;
  const void* a;
  const int *ia, *ja;
  int nrhs;
  const void *b, *x;  ///< looked at if nrhs is above 0
};

enum quality_verdict : int {
  quality_good = 0,
  quality_doubtful = 1,
  quality_bad = 2,
  quality_no_factors = -1,
  quality_no_memory = -2,
};
struct quality {
  int verdict = quality_no_factors;
  bool single = false;
  int perturbed_pivots = 0, positive = 0, negative = 0;
  double condition = 0;        ///< 1-norm, an estimate from below
  double backward_error = -1;  ///< largest of the right-hand sides'; below 0: none
  double forward_error = -1;
};
/// backward_errors: one for each right-hand side; may be null.
quality judge_quality(const quality_question& question, double* backward_errors);

/// Verdict by the figures alone.
int verdict_of(const quality& figures);
/// The verdict in words, at most size - 1 characters.
void word_quality(const quality& figures, char* text, size_t size);

}  // namespace qel::pardiso
