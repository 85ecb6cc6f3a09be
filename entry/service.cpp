// SPDX-License-Identifier: BSD-3-Clause
// Entries of the service: kernels, threads, work memory, the trace, the error entry and its record. No trace
// lines of their own.
#include "qel/service.h"

#include "service/last_error.h"
#include "service/serv.h"
#include "service/threads.h"
#include "service/verbose.h"

extern "C" {

int qel_enable_native(int flag) { return qel::serv_enable_native(flag); }

void qel_set_num_threads(int n) { qel::set_threads_over_environment(n); }
int qel_set_num_threads_local(int n) { return qel::set_threads_of_this_thread(n); }
int qel_get_num_threads(int domain) { return qel::serv_threads_for_domain(domain); }

void QEL_FreeBuffers() { qel::serv_free_buffers(); }
int qel_thread_free_buffers() { return qel::serv_thread_free_buffers(); }
int64_t qel_memory_stats(int64_t* count) { return qel::serv_memory_stats(count); }

int qel_set_allocator(void* (*allocate)(size_t), void* (*allocate_zeroed)(size_t, size_t),
                      void* (*reallocate)(void*, size_t), void (*release)(void*)) {
  if (!allocate || !allocate_zeroed || !reallocate || !release || qel::memory_in_use()) return 0;
  qel::serv_platform_malloc = allocate;
  qel::serv_platform_calloc = allocate_zeroed;
  qel::serv_platform_realloc = reallocate;
  qel::serv_platform_free = release;
  return 1;
}

int qel_verbose(int on) { return qel::set_verbose(on != 0) ? 1 : 0; }

// Weak, so that a program's own xerbla takes its place in a static link too.
__attribute__((weak)) void xerbla(const char* name, const int* code, int name_length) {
  qel::serv_xerbla_default(name, code, name_length);
}

const qel_error_record* qel_last_error() { return qel::last_error(); }
void qel_clear_last_error() { qel::clear_last_error(); }

}  // extern "C"
