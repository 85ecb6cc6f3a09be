// SPDX-License-Identifier: BSD-3-Clause
#include "bench/support/contenders.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace qel::bench {
namespace {

constexpr const char* kDebianPeers =
    "OpenBLAS=/usr/lib/x86_64-linux-gnu/openblas-openmp/libopenblas.so.0:"
    "BLIS=/usr/lib/x86_64-linux-gnu/blis-openmp/libblis.so.4:"
    "reference=/usr/lib/x86_64-linux-gnu/blas/libblas.so.3";

void* load(const std::string& path) { return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND); }

std::vector<contender> load_all() {
  // Before any library is loaded: OpenMP's run time reads its variables then.
  setenv("OMP_NUM_THREADS", "1", 0);
  setenv("QEL_NATIVE", "1", 0);
  std::vector<contender> all;
  void* subject = load(QEL_LIBRARY);
  if (subject == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::exit(1);
  }
  all.emplace_back(kSubject, subject);
  const char* list = std::getenv("QEL_BENCH_PEERS");
  std::istringstream peers(list != nullptr ? list : kDebianPeers);
  for (std::string peer; std::getline(peers, peer, ':');) {
    const size_t equals = peer.find('=');
    if (equals == std::string::npos) continue;
    if (void* handle = load(peer.substr(equals + 1))) {
      all.emplace_back(peer.substr(0, equals), handle);
    } else {
      std::fprintf(stderr, "without %s: %s\n", peer.substr(0, equals).c_str(), dlerror());
    }
  }
  return all;
}

}  // namespace

void* contender::look_up(const char* symbol) const { return dlsym(handle_, symbol); }

const std::vector<contender>& contenders() {
  static const std::vector<contender> all = load_all();
  return all;
}

}  // namespace qel::bench
