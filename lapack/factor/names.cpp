// SPDX-License-Identifier: BSD-3-Clause
// The library's own factorisations under the names by which entries and plain LAPACK call them.
#include "lapack/lapack.h"
#include "service/serv.h"

namespace qel::lapack {
namespace {
void report(const char* name, int position, size_t length) {
  serv_xerbla(name, &position, static_cast<int>(length));
}
}  // namespace
}  // namespace qel::lapack

#define QEL_INT qel::core_int
#define QEL_OWN(routine) qel_core_##routine##_
#include "lapack/factor/names.inl.h"
