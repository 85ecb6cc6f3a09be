// SPDX-License-Identifier: BSD-3-Clause
// Vector math below its entries: arguments are good. n elements, n > 0; r may be a or b.
#pragma once

namespace qel::core {

void vd_div(int n, const double* a, const double* b, double* r);
void vd_mul(int n, const double* a, const double* b, double* r);
void vd_sub(int n, const double* a, const double* b, double* r);

}  // namespace qel::core
