// SPDX-License-Identifier: BSD-3-Clause
// What a program would write itself, compiled for this machine in a unit of its own: loops over pointers that
// may overlap, a copy, standard random numbers.
#pragma once

namespace qel::bench {

using vector_fn = void(int n, const double* a, const double* b, double* r);
vector_fn plain_div, plain_mul, plain_sub, plain_copy;
/// r[i] uniform in [0, 1) by std::mt19937_64 and std::uniform_real_distribution.
void standard_uniform(int n, double* r);
/// r[i] = a number: what memory alone costs, through the caches and past them. r is a multiple of 8.
void constant_fill(int n, double* r);
void constant_fill_past_caches(int n, double* r);

}  // namespace qel::bench
