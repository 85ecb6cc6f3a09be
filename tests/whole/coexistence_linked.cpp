// SPDX-License-Identifier: BSD-3-Clause
// usage: coexistence_linked WINNER
// The libraries come in by plain linking; the order on the link line decides whose dgesv_ all callers get,
// LAPACK's own included. WINNER is part of the file name of the library that must have won: without that
// check a changed link order would test the same thing twice.
#include <dlfcn.h>

#include <cstdio>
#include <cstring>

#include "tests/whole/coexistence_checks.h"

extern "C" {
coexistence::gesv_function dgesv;
coexistence::gemm_function dgemm;
coexistence::zdotc_function zdotc;
coexistence::fortran_gesv_function dgesv_;
coexistence::gemm_function dgemm_;
coexistence::fortran_zdotc_function zdotc_;
coexistence::node_nd_function METIS_NodeND;
}

int main(int argument_count, char** arguments) {
  if (argument_count != 2) return 2;
  Dl_info where{};
  if (dladdr(dlsym(RTLD_DEFAULT, "dgesv_"), &where) == 0 ||
      std::strstr(where.dli_fname, arguments[1]) == nullptr) {
    std::printf("dgesv_ is that of %s, not of %s\n", where.dli_fname, arguments[1]);
    return 1;
  }
  return coexistence::wrong_results({dgesv, dgemm, zdotc, dgesv_, dgemm_, zdotc_, METIS_NodeND}) == 0 ? 0 : 1;
}
