// SPDX-License-Identifier: BSD-3-Clause
// The factorisations of liblapack.so.3 under their Fortran names. Bad arguments go to the program's own
// xerbla_ if it has one.
#include "lapack/factor/factored.h"
#include "lapack/factor/getrf.h"
#include "lapack/factor/potrf.h"
#include "lapack/factor/triangles.h"
#include "service/serv.h"

extern "C" void xerbla_(const char* name, const int* position, size_t length);

namespace qel::lapack {
namespace {
void report(const char* name, int position, size_t length) { xerbla_(name, &position, length); }
}  // namespace
}  // namespace qel::lapack

#pragma GCC visibility push(default)
#define QEL_INT int
#define QEL_OWN(routine) routine##_
#include "lapack/factor/names.inl.h"
#pragma GCC visibility pop
