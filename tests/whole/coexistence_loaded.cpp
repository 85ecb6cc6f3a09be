// SPDX-License-Identifier: BSD-3-Clause
// usage: coexistence_loaded LIBQEL LAPACK BLAS qel|reference local|global
// The libraries come in by dlopen, libqel or the reference pair first, with or without their names global.
// Exit code 77 if a library other than libqel is not installed.
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tests/whole/coexistence_checks.h"

namespace {

constexpr int kNotInstalled = 77;

void* opened(const char* path, int mode, int code_if_missing) {
  void* handle = dlopen(path, RTLD_NOW | mode);
  if (handle != nullptr) return handle;
  std::printf("%s\n", dlerror());
  std::exit(code_if_missing);
}

template <class Function>
Function* found(void* library, const char* name) {
  void* address = dlsym(library, name);
  if (address == nullptr) {
    std::printf("no %s: %s\n", name, dlerror());
    std::exit(1);
  }
  return reinterpret_cast<Function*>(address);
}

}  // namespace

int main(int argument_count, char** arguments) {
  using namespace coexistence;
  if (argument_count != 6) return 2;
  const bool qel_first = std::strcmp(arguments[4], "qel") == 0;
  const int mode = std::strcmp(arguments[5], "global") == 0 ? RTLD_GLOBAL : RTLD_LOCAL;

  void* qel = qel_first ? opened(arguments[1], mode, 1) : nullptr;
  // The BLAS by its path, so that LAPACK gets this one and not the machine's choice.
  void* blas = opened(arguments[3], mode, kNotInstalled);
  void* lapack = opened(arguments[2], mode, kNotInstalled);
  if (!qel_first) qel = opened(arguments[1], mode, 1);
  void* metis = opened("libmetis.so.5", mode, kNotInstalled);

  return wrong_results({found<gesv_function>(qel, "dgesv"), found<gemm_function>(qel, "dgemm"),
                        found<zdotc_function>(qel, "zdotc"), found<fortran_gesv_function>(lapack, "dgesv_"),
                        found<gemm_function>(blas, "dgemm_"), found<fortran_zdotc_function>(blas, "zdotc_"),
                        found<node_nd_function>(metis, "METIS_NodeND")}) == 0
             ? 0
             : 1;
}
