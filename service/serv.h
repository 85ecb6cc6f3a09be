// SPDX-License-Identifier: BSD-3-Clause
// Chief header of the service core: what every numeric routine leans on. One section per source file.
#pragma once

#include <stddef.h>

#include "service/core_types.h"

namespace qel {

// cpu_select.cpp: which kernels this process uses. Decided once, on first use.

/// Processor type: selects the kernels of vector math, random numbers and convolution. 0 generic, 1 the
/// selected vendor's baseline, 2 SSSE3, 3 SSE4.1, 4 SSE4.2, 5 AVX; native: 6 AVX2 and FMA, 7 AVX-512.
int serv_cpu_type();
/// Processor level: selects all other kernels and steers the dense drivers. 0 generic, 1 SSE3, 2 SSSE3,
/// 3 SSE4.2, 4 AVX; native: 5 AVX2 and FMA, 6 AVX-512.
int serv_cpu_level();
/// Lets serv_cpu_level answer 4 on an AVX processor. Must come before the first serv_cpu_level call;
/// returns 1 if taken, 0 if flag is not 1 or the decision has been made.
int serv_cpu_level_enable_avx(int flag);
/// 1 if level 4 is allowed, else 0; an undecided flag becomes 0.
int serv_cpu_level_avx_enabled();
/// Lets level and type go on to the native ones, on any vendor's processor that has the instructions. Must
/// come before the first query; returns 1 if taken, 0 if flag is not 1 or native was decided to be off.
int serv_enable_native(int flag);
/// Whether native levels are on where neither QEL_NATIVE nor a call says so: a constant of each product
/// (native_default.cpp: 0; the drop-ins and the command
/// link native_on/native_default.cpp: 1).
int native_by_default();

// cache_sizes.cpp

/// out[0]: data and unified caches found; out[1..4]: bytes of the first four, 0 where absent.
/// Returns out[1].
int serv_cache_sizes(int out[5]);
/// The same with the caches of processors that list them elsewhere, for tuning of the native levels.
int serv_native_cache_sizes(int out[5]);

// threads.cpp: thread counts. Domains: 0 all, 1 BLAS, 2 FFT, 3 VML; an unknown one counts as 0.

/// Threads, at least 1, that a region of the domain may use.
int serv_threads_for_domain(int domain);
/// The same for no domain.
int serv_threads_all();
/// 1 if dynamic adjustment is on, else 0.
int serv_threads_dynamic();
/// 1 inside a parallel region of OpenMP.
int serv_in_parallel();
/// Count for all domains; n <= 0 does nothing.
void serv_set_num_threads(int n);
/// Count of one domain; 0 if n is negative or there is no such domain, else 1.
int serv_set_domain_threads(int n, int domain);
void serv_set_dynamic(int flag);
/// 1: counts are not reduced for MPI ranks; anything else: every region gets one thread.
void serv_set_process_mode(int flag);

// memory.cpp

/// Aligned work memory from the calling thread's cache of buffers. Null if size is 0 or memory is out.
void* serv_malloc(size_t size, int alignment);
/// Gives a serv_malloc block back; null is ignored. Any thread may call it.
void serv_free(void* pointer);
/// Buffers held in all threads' caches (count) and their bytes (result); count -1 if the cache is off.
int64_t serv_memory_stats(int64_t* count);
/// Releases the calling thread's unused buffers; 1 if some are in use or the cache is off, else 0.
int serv_thread_free_buffers();
/// Releases all threads' unused buffers.
void serv_free_buffers();
/// True once any of these has been called: blocks of the platform allocator may be about.
bool memory_in_use();

// aligned_memory.cpp: aligned memory without a cache, for objects that outlive a call.

void* serv_aligned_malloc(size_t size, int alignment);
void* serv_aligned_calloc(size_t count, size_t size, int alignment);
void* serv_aligned_realloc(void* pointer, size_t size);
void serv_aligned_free(void* pointer);

/// The platform allocator, as four pointers that an application may replace before first use.
extern void* (*serv_platform_malloc)(size_t);
extern void* (*serv_platform_calloc)(size_t, size_t);
extern void* (*serv_platform_realloc)(void*, size_t);
extern void (*serv_platform_free)(void*);

// xerbla.cpp: reports of bad arguments.

/// An error entry: the routine's name (not terminated), the code, the name's length.
using xerbla_entry = void (*)(const char* name, const int* code, int name_length);
/// Makes entry the one that core routines report to.
void serv_set_xerbla(xerbla_entry entry);
/// What core routines call: the installed entry, or the default reporter if there is none.
void serv_xerbla(const char* name, const int* code, int name_length);
/// Prints the report on standard output. Codes: above 0 a parameter's position, 1000 no work memory,
/// 1001 incompatible optional parameters, 0 and below an internal condition.
void serv_xerbla_default(const char* name, const int* code, int name_length);

// messages.cpp: the catalogue.

/// Prints row number of the catalogue; arguments follow the row's format. channel is 0 or 1, both alike.
void serv_message(int channel, int number, int argument_count, ...);
/// The text of a row, formatted if argument_count is above 0; a static buffer, row 0 gives "".
const char* serv_message_text(int number, int argument_count, ...);

}  // namespace qel
