// SPDX-License-Identifier: BSD-3-Clause
// Entries of the service: work memory and the error entry.

#include "service/serv.h"

#include "qel/service.h"

extern "C" {

void QEL_FreeBuffers() { qel::serv_free_buffers(); }

// Weak, so that a program's own xerbla takes its place in a static link too.
__attribute__((weak)) void xerbla(const char* name, const int* code, int name_length) {
  qel::serv_xerbla_default(name, code, name_length);
}

}  // extern "C"
