// SPDX-License-Identifier: BSD-3-Clause
// Vector math's state, one record per thread, made when the thread first asks for it.
#pragma once

#include "qel/vml.h"

namespace qel {

inline constexpr unsigned kAccuracyBits = 0x0f, kErrorBits = 0xff00, kFormatBits = 0x30000;
inline constexpr unsigned kFirstMode = 0x1a02;  ///< high accuracy; errno, exception, callback

struct vml_record {
  unsigned mode = kFirstMode;
  int status = VML_STATUS_OK;
  qel_vml_callback callback = nullptr;
  const double* base = nullptr;  ///< first element of the whole input while a thread works on a part of it
};

/// The calling thread's record; null until it first asks for it.
[[gnu::tls_model("initial-exec"),
  gnu::visibility("hidden")]] extern constinit thread_local vml_record* own_vml_record;
/// Makes it. Without memory for one, a message is printed and all such threads share one.
vml_record& make_vml_record();

inline vml_record& vml_state() {
  if (own_vml_record == nullptr) [[unlikely]] {
    return make_vml_record();
  }
  return *own_vml_record;
}

/// The mode that a setter with this request makes of mode.
unsigned changed_vml_mode(unsigned mode, unsigned request);

inline unsigned vml_get_mode() { return vml_state().mode; }
unsigned vml_set_mode(unsigned mode);
void vml_set_status(int status);

}  // namespace qel
