/* SPDX-License-Identifier: BSD-3-Clause
 * Random streams: an object with the state of a generator, which fills arrays. Plain C. A stream is for one
 * thread at a time.
 */
#ifndef QEL_RNG_H
#define QEL_RNG_H

#include "qel/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A stream of random numbers, which one thread at a time may use. */
typedef struct qel_random_stream* qel_random_stream_handle;

/* The generator: R250, y(k) = y(k - 250) xor y(k - 147) on 32-bit words.
 * Source: S. Kirkpatrick, E. P. Stoll, J. Comput. Phys. 40 (1981) 517-526.
 */
#define QEL_BRNG_R250 0x200000

/* Methods of vdRngUniform: plain, and with results clamped into [a, b]. */
#define QEL_RNG_UNIFORM_PLAIN 0
#define QEL_RNG_UNIFORM_CLAMPED 0x40000000

/* Statuses. */
#define QEL_RNG_OK 0
#define QEL_RNG_BAD_ARGUMENT (-3)
#define QEL_RNG_NO_MEMORY (-4)
#define QEL_RNG_NULL_STREAM (-5)
#define QEL_RNG_INVALID_GENERATOR (-1000)
#define QEL_RNG_NOT_A_STREAM (-1006)

/* Makes a stream.
 *   stream  out: its handle, untouched on failure
 *   brng    the generator
 *   seed    equal seeds give equal numbers; 0 is the same as 1
 * Returns 0; -1000 for a generator that there is not (for the ids of abstract streams, 0xa00000, 0xb00000,
 * 0xc00000, also reported through xerbla as position 2); -4 without memory; -5 if stream is null.
 */
QEL_API int vslNewStream(qel_random_stream_handle* stream, int brng, unsigned seed);

/* Releases the stream and sets the handle to null.
 * Returns 0; -5 if stream or its handle is null, -1006 if it is none.
 */
QEL_API int vslDeleteStream(qel_random_stream_handle* stream);

/* r[i] := a + w (b - a) / 2^32 with the next n words w of the stream: uniform in [a, b), but that rounding
 * may reach b.
 *   method  QEL_RNG_UNIFORM_PLAIN or QEL_RNG_UNIFORM_CLAMPED
 *   n       0 returns at once
 *   a, b    a < b
 * Returns 0, or what is wrong, which is also reported through xerbla by its position: method 1 (-3), stream
 * 2 (-5, -1006), n 3, r 4, a or b 5 (-3). r is then untouched.
 */
QEL_API int vdRngUniform(int method, qel_random_stream_handle stream, int n, double* r, double a, double b);

#ifdef __cplusplus
}
#endif

#endif /* QEL_RNG_H */
