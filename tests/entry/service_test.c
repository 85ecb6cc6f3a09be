/* SPDX-License-Identifier: BSD-3-Clause
 * usage: entry_service_test [native]
 * The service functions from plain C, in the order in which a program calls them: allocator and kernels
 * before the first numeric call. With the word native, the kernels that the first call gets are native ones.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "qel/qel.h"

static int failures = 0;
static int taken = 0, given_back = 0;

static void expect(int holds, const char* what) {
  if (!holds) {
    printf("failed: %s\n", what);
    ++failures;
  }
}

static void* counted_malloc(size_t size) {
  ++taken;
  return malloc(size);
}
static void counted_free(void* pointer) {
  given_back += pointer != NULL;
  free(pointer);
}

static int solve(void) {
  const int n = 2, one = 1;
  double a[4] = {2, 1, 1, 3}, b[2] = {5, 10};
  int pivots[2], info = 77;
  dgesv(&n, &one, a, &n, pivots, b, &n, &info);
  return info;
}

static void memory(void) {
  int64_t count = 77;
  expect(qel_set_allocator(NULL, calloc, realloc, free) == 0, "no malloc");
  expect(qel_set_allocator(malloc, NULL, realloc, free) == 0, "no calloc");
  expect(qel_set_allocator(malloc, calloc, NULL, free) == 0, "no realloc");
  expect(qel_set_allocator(malloc, calloc, realloc, NULL) == 0, "no free");
  expect(qel_set_allocator(counted_malloc, calloc, realloc, counted_free) == 1, "allocator before first use");
  expect(solve() == 0 && taken > 0 && given_back == 0, "the allocator is the one that is used");
  expect(qel_set_allocator(malloc, calloc, realloc, free) == 0, "allocator after first use");
  expect(qel_memory_stats(&count) > 0 && count > 0, "memory is kept between calls");
  expect(qel_thread_free_buffers() == 0 && given_back > 0, "the thread's memory goes back");
  expect(qel_memory_stats(&count) == 0 && count == 0, "nothing is kept");
  expect(solve() == 0, "memory is taken anew");
  QEL_FreeBuffers();
  expect(qel_memory_stats(&count) == 0, "all memory goes back");
}

static void threads(void) {
  qel_set_num_threads(1);
  expect(qel_get_num_threads(1) == 1 && qel_get_num_threads(0) == 1, "count for all");
  qel_set_num_threads(2);
  const int two = qel_get_num_threads(1);
  qel_set_num_threads(0);
  expect(qel_get_num_threads(1) == two, "0 is not a count");
  expect(qel_set_num_threads_local(1) == 0, "no count of the thread's own");
  expect(qel_get_num_threads(1) == 1, "the thread's own count comes first");
  expect(qel_set_num_threads_local(0) == 1, "the former count comes back");
  expect(qel_get_num_threads(1) == two, "the thread's own count is gone");
}

static void errors(void) {
  const int n = 1, zero = 0;
  const double x = 1;
  double y = 5;
  expect(qel_last_error()->code == 0 && strcmp(qel_last_error()->routine, "") == 0, "no report yet");
  dgemm("N", "N", &n, &n, &n, &x, &x, &n, &x, &n, &x, &y, &zero);
  const qel_error_record* record = qel_last_error();
  expect(strcmp(record->routine, "DGEMM") == 0 && record->code == 13 && record->argument == 13, "record");
  expect(strcmp(record->text, "QEL ERROR: Parameter 13 was incorrect on entry to DGEMM ") == 0, "text");
  qel_clear_last_error();
  expect(qel_last_error()->code == 0, "cleared");
}

/* The level that a traced call shows, -1 if there is no line. */
static int traced_level(void) {
  char path[] = "/tmp/qel_service_test_XXXXXX", line[512] = "";
  const int n = 1;
  const double x = 2;
  const int descriptor = mkstemp(path);
  int level = -1;
  setenv("QEL_VERBOSE_FILE", path, 1);
  expect(qel_verbose(1) == 0, "off at first");
  ddot(&n, &x, &n, &x, &n);
  expect(qel_verbose(0) == 1, "on since then");
  FILE* file = descriptor >= 0 ? fdopen(descriptor, "r") : NULL;
  if (file != NULL && fgets(line, sizeof line, file) != NULL)
    sscanf(line, "QEL_VERBOSE ddot(1,1,1) level=%d", &level);
  if (file != NULL) fclose(file);
  return level;
}

int main(int count, char** words) {
  const int wants_native = count > 1 && strcmp(words[1], "native") == 0;
  const int has_native = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  unsetenv("QEL_NATIVE");
  unsetenv("QEL_VERBOSE");
  expect(qel_enable_native(2) == 0, "only 1 enables");
  if (wants_native) expect(qel_enable_native(1) == 1, "native before first use");
  memory();
  threads();
  errors();
  const int level = traced_level();
  expect(wants_native && has_native ? level >= 5 : level >= 0 && level < 5, "level of the kernels");
  if (!wants_native) expect(qel_enable_native(1) == 0, "native after first use");
  return failures != 0;
}
