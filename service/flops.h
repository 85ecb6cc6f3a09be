// SPDX-License-Identifier: BSD-3-Clause
// Floating-point operations of a traced call, for the rates that the trace prints.
#pragma once

namespace qel {

struct traced_call;

/// Additions and multiplications that the call's sizes and letters stand for; complex routines count four
/// times, 8 operations for a multiplication with addition. 0 where there is no formula, and for a query of
/// the work space.
double flops_of(const traced_call& call);

}  // namespace qel
