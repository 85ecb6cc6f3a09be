// SPDX-License-Identifier: BSD-3-Clause
// Setting and reading a descriptor's parameters; every function returns a status. The descriptor is good and
// the row that of the parameter.
#pragma once

#include "fft/descriptor/config_rows.h"

namespace qel::fft {

inline constexpr int kVersionBytes = 198;

int set_integer(dfti_node* first, const config_row& row, int value);
int set_scale(dfti_node* first, const config_row& row, double value);
int set_strides(dfti_node* first, const config_row& row, const int* values);
int set_name(dfti_node* first, const char* name);
/// What setting a parameter that takes no value does.
int refuse_setting(dfti_node* first, const config_row& row);

int get_value(const dfti_node* first, const config_row& row, void* result);

}  // namespace qel::fft
