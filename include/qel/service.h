/* SPDX-License-Identifier: BSD-3-Clause
 * Kernels, threads, memory, the trace of calls and error reports. Plain C. All functions may be called from
 * any thread; what they set holds for the process unless they say otherwise.
 */
#ifndef QEL_SERVICE_H
#define QEL_SERVICE_H

#include <stddef.h>
#include <stdint.h>

#include "qel/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Kernels ---- */

/* Lets the library use AVX2 and AVX-512 kernels on any vendor's processor that has them; results may then
 * differ in rounding from those of the default kernels. Comes before all numeric calls, since the kernels are
 * chosen once. The environment's QEL_NATIVE=1 does the same, QEL_NATIVE=0 forbids it.
 *   flag    1
 * Returns 1 if it took effect, 0 if flag is not 1 or the choice was already made.
 */
QEL_API int qel_enable_native(int flag);

/* ---- Threads ---- */

/* Sets how many threads a call may use, in place of all that the environment says; n <= 0 does nothing. */
QEL_API void qel_set_num_threads(int n);

/* Sets the calling thread's own count, which comes before all others; n <= 0 clears it. Returns the former
 * one, 0 if there was none.
 */
QEL_API int qel_set_num_threads_local(int n);

/* Threads, at least 1, that a call from the calling thread would use at most.
 *   domain    0 all, 1 BLAS and LAPACK, 2 FFT, 3 vector math; others count as 0
 */
QEL_API int qel_get_num_threads(int domain);

/* ---- Memory ---- */

/* Gives the work memory that the library keeps between calls, that of all threads, back to the system. Call
 * it while no other thread is inside the library. The next call takes memory anew.
 */
QEL_API void QEL_FreeBuffers(void);

/* The same for the calling thread alone. Returns 0, or 1 if some of its memory is in use or none is kept
 * between calls (QEL_DISABLE_FAST_MM).
 */
QEL_API int qel_thread_free_buffers(void);

/* Returns the bytes that the library keeps for all threads.
 *   count    out: blocks; -1 if none are kept between calls
 */
QEL_API int64_t qel_memory_stats(int64_t* count);

/* Makes these functions the ones from which the library takes work memory; they mean what the standard
 * functions malloc, calloc, realloc and free mean. Comes before all numeric calls and all other calls of this
 * section, while no other thread is inside the library.
 * Returns 1 if they were taken, 0 if one is null or the library may hold memory already.
 */
QEL_API int qel_set_allocator(void* (*allocate)(size_t size),
                              void* (*allocate_zeroed)(size_t count, size_t size),
                              void* (*reallocate)(void* pointer, size_t size),
                              void (*release)(void* pointer));

/* ---- Trace of calls ---- */

/* Switches the trace, which the environment's QEL_VERBOSE=1 switches on from the start: a line for each call
 * of the library, and a table by name when the process ends, on standard output or appended to the file that
 * QEL_VERBOSE_FILE names (standard output if it can't be opened). A line has the name, option letters, sizes,
 * leading dimensions and strides in the order of the call, the processor level, the threads that the call
 * could use, seconds, 10^9 operations per second where a formula is known, and "refused" if an error was
 * reported.
 *   on    0 off, else on
 * Returns 1 if it was on, else 0.
 */
QEL_API int qel_verbose(int on);

/* ---- Error reports ---- */

/* The error entry: every bad argument and every lack of memory is reported through it.
 *   name         upper-case routine name, name_length characters, not terminated; BLAS names are padded with
 *                a blank to six
 *   code         above 0 the position of the bad argument, from 1, with three exceptions: 1000 no work
 *                memory, 1001 optional parameters that don't go together, 1079 no memory for the 64-bit copy
 *                of an integer array; 0 and below an internal condition
 * The library's own prints a blank line and one line of text on standard output and returns. A program that
 * defines a function of this name replaces it; when it returns, the routine gives up and returns too.
 */
QEL_API void xerbla(const char* name, const int* code, int name_length);

/* A report as its thread can read it afterwards. */
typedef struct qel_error_record {
  char routine[24]; /* upper-case name without padding; empty if there was no report */
  int code;         /* as xerbla gets it; 0 if there was no report */
  int argument;     /* position of the bad argument, from 1; 0 if the report is about something else */
  char text[256];   /* the line that the library's own xerbla prints */
} qel_error_record;

/* The last report that a call of the calling thread made, also if the program has its own xerbla. Calls that
 * succeed leave it alone. The pointer is good until the thread ends, the record until the next report.
 */
QEL_API const qel_error_record* qel_last_error(void);

/* Empties the calling thread's record. */
QEL_API void qel_clear_last_error(void);

#ifdef __cplusplus
}
#endif

#endif /* QEL_SERVICE_H */
