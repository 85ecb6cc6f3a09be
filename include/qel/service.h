/* SPDX-License-Identifier: BSD-3-Clause
 * Memory and error reports. Plain C.
 */
#ifndef QEL_SERVICE_H
#define QEL_SERVICE_H

#include "qel/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Gives the work memory that the library keeps between calls, that of all threads, back to the system. Call
 * it while no other thread is inside the library. The next call takes memory anew.
 */
QEL_API void QEL_FreeBuffers(void);

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

#ifdef __cplusplus
}
#endif

#endif /* QEL_SERVICE_H */
