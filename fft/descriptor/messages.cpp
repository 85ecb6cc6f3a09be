// SPDX-License-Identifier: BSD-3-Clause
#include "fft/descriptor/messages.h"

#include "qel/dfti.h"
#include "service/message_rows.h"
#include "service/serv.h"

namespace qel::fft {

const char* status_text(int status) {
  const bool known = status >= DFTI_NO_ERROR && status <= DFTI_INCORRECT_STATUS;
  return serv_message_text(kDftiMessages + (known ? status : DFTI_INCORRECT_STATUS), 0);
}

}  // namespace qel::fft
