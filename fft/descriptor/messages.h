// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace qel::fft {

/// The catalogue's text of a status; that of DFTI_INCORRECT_STATUS for what is none.
const char* status_text(int status);

}  // namespace qel::fft
