// SPDX-License-Identifier: BSD-3-Clause
#include "vector/vml/state.h"

#include <new>

#include "service/message_rows.h"
#include "service/serv.h"

namespace qel {

constinit thread_local vml_record* own_vml_record = nullptr;

namespace {

constinit vml_record shared_record;

/// Releases the record at the thread's end.
struct record_owner {
  ~record_owner() {
    serv_aligned_free(own_vml_record == &shared_record ? nullptr : own_vml_record);
    own_vml_record = nullptr;
  }
};

}  // namespace

[[gnu::noinline, gnu::cold]] vml_record& make_vml_record() {
  if (void* memory = serv_aligned_malloc(sizeof(vml_record), alignof(vml_record))) {
    static thread_local record_owner owner;
    (void)owner;
    own_vml_record = new (memory) vml_record;
  } else {
    serv_message(0, kVmlNoMemoryMessage, 0);
    own_vml_record = &shared_record;
  }
  return *own_vml_record;
}

unsigned changed_vml_mode(unsigned mode, unsigned request) {
  if ((request & kAccuracyBits) != 0) mode = (mode & ~kAccuracyBits) | (request & kAccuracyBits);
  if ((request & kFormatBits) != 0) {
    mode = (mode & ~(kFormatBits | kErrorBits)) | (request & kFormatBits);
  }
  if ((request & kErrorBits) != 0) mode = (mode & ~kErrorBits) | (request & kErrorBits);
  return mode;
}

unsigned vml_set_mode(unsigned mode) {
  vml_record& state = vml_state();
  const unsigned before = state.mode;
  state.mode = changed_vml_mode(before, mode);
  return before;
}

void vml_set_status(int status) { vml_state().status = status; }

}  // namespace qel
