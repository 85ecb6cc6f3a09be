// SPDX-License-Identifier: BSD-3-Clause
// Calls of the families whose entries work on objects: each makes one, uses it and deletes it. Numbers depend
// on the seed alone; statuses are among the results.
#pragma once

#include <vector>

namespace qel::test {

std::vector<double> run_complex_transform(unsigned seed);
std::vector<double> run_real_transform(unsigned seed);
std::vector<double> run_convolution(unsigned seed);
std::vector<double> run_row_form(unsigned seed);
std::vector<double> run_direct_solver(unsigned seed);
std::vector<double> run_simpler_solver(unsigned seed);
std::vector<double> run_vector_math(unsigned seed);
std::vector<double> run_random_stream(unsigned seed);
std::vector<double> run_least_squares_fit(unsigned seed);

}  // namespace qel::test
