/* SPDX-License-Identifier: BSD-3-Clause
 * Fourier transforms through a descriptor: create it for a precision, a domain and lengths, adjust it, commit
 * it, compute, free it. Plain C.
 *
 * Every function returns a status: 0, or one of DFTI_STATUS below. Nothing is printed. One thread at a time
 * configures a descriptor; several may compute with it at once as far as DFTI_NUMBER_OF_USER_THREADS says.
 */
#ifndef QEL_DFTI_H
#define QEL_DFTI_H

#include "qel/export.h"
#include "qel/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What is set and read, and the type of the value that DftiSetValue takes as its third argument and to which
 * DftiGetValue's third argument points.
 */
enum DFTI_CONFIG_PARAM {
  DFTI_FORWARD_DOMAIN = 0,       /* int, read only */
  DFTI_DIMENSION = 1,            /* int, read only */
  DFTI_LENGTHS = 2,              /* ints, read only; the last dimension's length comes first */
  DFTI_PRECISION = 3,            /* int, read only */
  DFTI_FORWARD_SCALE = 4,        /* double when set; when read the descriptor's own precision */
  DFTI_BACKWARD_SCALE = 5,       /* the same */
  DFTI_FORWARD_SIGN = 6,         /* not implemented */
  DFTI_NUMBER_OF_TRANSFORMS = 7, /* int */
  DFTI_COMPLEX_STORAGE = 8,      /* int: DFTI_COMPLEX_COMPLEX, DFTI_REAL_REAL */
  DFTI_REAL_STORAGE = 9,         /* int: DFTI_REAL_REAL */
  DFTI_CONJUGATE_EVEN_STORAGE =
      10,                    /* int: DFTI_COMPLEX_COMPLEX (sets DFTI_CCE_FORMAT too), DFTI_COMPLEX_REAL */
  DFTI_PLACEMENT = 11,       /* int: DFTI_INPLACE, DFTI_NOT_INPLACE */
  DFTI_INPUT_STRIDES = 12,   /* dimension + 1 ints: offset, then a stride for each dimension */
  DFTI_OUTPUT_STRIDES = 13,  /* the same */
  DFTI_INPUT_DISTANCE = 14,  /* int: from one transform to the next */
  DFTI_OUTPUT_DISTANCE = 15, /* the same */
  DFTI_INITIALIZATION_EFFORT = 16, /* not implemented */
  DFTI_WORKSPACE = 17,             /* not implemented */
  DFTI_ORDERING = 18,              /* int: DFTI_ORDERED; complex domain: DFTI_BACKWARD_SCRAMBLED */
  DFTI_TRANSPOSE = 19,             /* int, read only */
  DFTI_DESCRIPTOR_NAME = 20,       /* text, at most 9 characters are kept; read: 10 bytes */
  DFTI_PACKED_FORMAT = 21,         /* int: DFTI_CCS_FORMAT to DFTI_CCE_FORMAT */
  DFTI_COMMIT_STATUS = 22,         /* int, read only */
  DFTI_VERSION = 23,               /* text, read only: 198 bytes */
  DFTI_FORWARD_ORDERING = 24,      /* not implemented */
  DFTI_BACKWARD_ORDERING = 25,     /* not implemented */
  DFTI_NUMBER_OF_USER_THREADS = 26 /* int */
};

/* Values of parameters; those not accepted give status 2 or 6. */
enum DFTI_CONFIG_VALUE {
  DFTI_COMMITTED = 30,
  DFTI_UNCOMMITTED = 31,
  DFTI_COMPLEX = 32,
  DFTI_REAL = 33,
  DFTI_CONJUGATE_EVEN = 34, /* not accepted */
  DFTI_SINGLE = 35,
  DFTI_DOUBLE = 36,
  DFTI_COMPLEX_COMPLEX = 39, /* pairs, real part first */
  DFTI_COMPLEX_REAL = 40,    /* conjugate-even data packed into a real array */
  DFTI_REAL_COMPLEX = 41,    /* not accepted */
  DFTI_REAL_REAL = 42,       /* real and imaginary parts in two arrays */
  DFTI_INPLACE = 43,
  DFTI_NOT_INPLACE = 44,
  DFTI_ORDERED = 48,
  DFTI_BACKWARD_SCRAMBLED = 49, /* the forward transform leaves, the backward one takes scrambled order */
  DFTI_FORWARD_SCRAMBLED = 50,  /* not accepted */
  DFTI_NONE = 53,
  DFTI_CCS_FORMAT = 54,
  DFTI_PACK_FORMAT = 55,
  DFTI_PERM_FORMAT = 56,
  DFTI_CCE_FORMAT = 57
};

/* What functions return; qel_dfti_message words it. */
enum DFTI_STATUS {
  DFTI_NO_ERROR = 0,
  DFTI_MEMORY_ERROR = 1,
  DFTI_INVALID_CONFIGURATION = 2,
  DFTI_INCONSISTENT_CONFIGURATION = 3,
  DFTI_MULTITHREADED_ERROR = 4,
  DFTI_BAD_DESCRIPTOR = 5,
  DFTI_UNIMPLEMENTED = 6,
  DFTI_INTERNAL_ERROR = 7,
  DFTI_NUMBER_OF_THREADS_ERROR = 8,
  DFTI_LENGTH_EXCEEDS_32_BITS = 9,
  DFTI_INCORRECT_STATUS = 10
};

/* A descriptor, and how callers hold it. */
typedef struct DFTI_DESCRIPTOR DFTI_DESCRIPTOR;
typedef DFTI_DESCRIPTOR* DFTI_DESCRIPTOR_HANDLE;

/* ---- Life of a descriptor ---- */

/* Creates a descriptor, uncommitted and with default values.
 *   handle       out: the descriptor; left alone unless the status is 0
 *   precision    DFTI_SINGLE, DFTI_DOUBLE
 *   domain       DFTI_COMPLEX, DFTI_REAL (dimension 1 to 3)
 *   dimension    1 to 7
 *   ...          dimension 1: the length, an int; else the address of dimension ints, the fastest one last
 * 3: handle is null; 2: another argument is bad; 1: no memory; 6: real of dimension 4 or more.
 */
QEL_API int DftiCreateDescriptor(DFTI_DESCRIPTOR_HANDLE* handle, int precision, int domain, int dimension,
                                 ...);
/* The same for double (d) or single (s) precision, for one length (1d) or an array of them (md).
 */
QEL_API int DftiCreateDescriptor_d_1d(DFTI_DESCRIPTOR_HANDLE* handle, int domain, int length);
QEL_API int DftiCreateDescriptor_s_1d(DFTI_DESCRIPTOR_HANDLE* handle, int domain, int length);
QEL_API int DftiCreateDescriptor_d_md(DFTI_DESCRIPTOR_HANDLE* handle, int domain, int dimension,
                                      const int* lengths);
QEL_API int DftiCreateDescriptor_s_md(DFTI_DESCRIPTOR_HANDLE* handle, int domain, int dimension,
                                      const int* lengths);

/* Creates a descriptor with source's configuration, and commits it if source is committed.
 * 5: source is null or no descriptor; 3: handle is null; 1: no memory; else what the commit returned.
 */
QEL_API int DftiCopyDescriptor(const DFTI_DESCRIPTOR* source, DFTI_DESCRIPTOR_HANDLE* handle);

/* Releases a descriptor and all it holds, and makes *handle null.
 * 3: handle is null; 5: *handle is null or no descriptor.
 */
QEL_API int DftiFreeDescriptor(DFTI_DESCRIPTOR_HANDLE* handle);

/* ---- Configuration ---- */

/* Sets a parameter; the descriptor is uncommitted afterwards, also if the value was refused. Two exceptions:
 * a name doesn't uncommit, and neither does what has no place here at all (DFTI_LENGTHS, DFTI_VERSION,
 * numbers above 26). 5: no descriptor; 3: the value is refused or the parameter read only; 6: not
 * implemented.
 */
QEL_API int DftiSetValue(DFTI_DESCRIPTOR* descriptor, int parameter, ...);

/* Reads a parameter through the pointer that is the third argument.
 * 5: no descriptor; 3: no such parameter, or a null pointer; 6: not implemented.
 */
QEL_API int DftiGetValue(const DFTI_DESCRIPTOR* descriptor, int parameter, ...);

/* ---- Transforms ---- */

/* Plans the transform.
 * 1: no memory; 3: real data in place in several dimensions whose rows of complex numbers do not begin where
 * the rows of reals do; 5: no descriptor; 6: a packed format that is not there; 7: the length is too great.
 */
QEL_API int DftiCommitDescriptor(DFTI_DESCRIPTOR* descriptor);

/* y[k] = scale * the sum of x[j] exp(-+ 2 pi i j k / n) over all dimensions: minus forward, plus backward,
 * each with its own scale. Real data go forward to half of their spectrum and back; docs/fft.md has the
 * layouts.
 *   data    the input, which in place is the output; else the output's address follows. Parts in two
 *           arrays (DFTI_COMPLEX_STORAGE) are two addresses for each side, the real parts first
 * 1: no memory (strides, several dimensions, threads); 2: not committed, or split parts in scrambled order;
 * 5: null; 6: split parts in several dimensions; 8: more threads at once than DFTI_NUMBER_OF_USER_THREADS.
 */
QEL_API int DftiComputeForward(DFTI_DESCRIPTOR* descriptor, void* data, ...);
QEL_API int DftiComputeBackward(DFTI_DESCRIPTOR* descriptor, void* data, ...);

/* How a committed descriptor computes, as lines of text "key value": level, precision, domain, placement,
 * plan, the method of each line, threads, workspace_bytes, flops. The buffer gets as much as fits, always
 * ended by 0. 5: no descriptor; 2: not committed; 3: no buffer.
 */
QEL_API int qel_dfti_explain(const DFTI_DESCRIPTOR* descriptor, char* buffer, int size);

/* What the configuration would do to the caller's data in one direction (backward: 0 or 1), committed or not:
 * stride or distance 0, elements of the output (in place: of either side) that share a place, sides in place
 * that lie differently, storages that are not there. A line of text for each fault; the buffer gets as much
 * as fits, always ended by 0 (size 0: nothing). 0: no fault; 3: faults; 5: no descriptor.
 */
QEL_API int qel_dfti_validate(const DFTI_DESCRIPTOR* descriptor, int backward, char* buffer, int size);

/* ---- Packed spectra ---- */

/* Between the packed spectrum of real data and all of its frequencies. Dense arrays:
 *   format      DFTI_CCS_FORMAT, DFTI_PACK_FORMAT, DFTI_PERM_FORMAT, DFTI_CCE_FORMAT; CCS and CCE: rows of
 *               lengths[dimension - 1] / 2 + 1 complex numbers
 *   dimension   1 to 3
 *   lengths     of the real data, each at least 1, the fastest one last
 *   packed      as a transform of real data leaves it (docs/fft.md has pictures)
 *   full        the product of the lengths complex numbers; unpack fills it by F[-k] = conj(F[k]), pack reads
 *               only what the packed form holds
 * The arrays must not overlap. 0, or 3: a bad argument, a null pointer among them; nothing is written then.
 */
QEL_API int qel_dfti_unpack_d(int format, int dimension, const int* lengths, const double* packed,
                              _QEL_Complex16* full);
QEL_API int qel_dfti_unpack_s(int format, int dimension, const int* lengths, const float* packed,
                              _QEL_Complex8* full);
QEL_API int qel_dfti_pack_d(int format, int dimension, const int* lengths, const _QEL_Complex16* full,
                            double* packed);
QEL_API int qel_dfti_pack_s(int format, int dimension, const int* lengths, const _QEL_Complex8* full,
                            float* packed);

/* ---- Status ---- */

/* Returns -1 if status is of that class, which is itself a status; else 0.
 */
QEL_API int DftiErrorClass(int status, int error_class);

/* The text of a status; of an unknown one, that of DFTI_INCORRECT_STATUS. Never null.
 */
QEL_API const char* qel_dfti_message(int status);

#ifdef __cplusplus
}
#endif

#endif /* QEL_DFTI_H */
