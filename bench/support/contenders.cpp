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
  set_environment_defaults();  // before any library is loaded: OpenMP run times read the environment then
  std::vector<contender> all;
  const char* library = std::getenv("QEL_BENCH_SUBJECT");
  void* subject = load(library != nullptr ? library : QEL_LIBRARY);
  if (subject == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::exit(1);
  }
  all.emplace_back(kSubject, subject);
  const char* list = std::getenv("QEL_BENCH_PEERS");
  std::istringstream peers(list != nullptr ? list : kDebianPeers);
  for (std::string peer; std::getline(peers, peer, ':');) {
    const size_t equals = peer.find('=');
    if (equals == std::string::npos || !is_wanted_contender(peer.substr(0, equals))) continue;
    if (void* handle = load(peer.substr(equals + 1))) {
      all.emplace_back(peer.substr(0, equals), handle);
    } else {
      std::fprintf(stderr, "without %s: %s\n", peer.substr(0, equals).c_str(), dlerror());
    }
  }
  return all;
}

}  // namespace

void set_environment_defaults() {
  setenv("OMP_NUM_THREADS", "1", 0);
  setenv("QEL_NATIVE", "1", 0);
}

bool is_wanted_contender(const std::string& name) {
  static const char* const list = std::getenv("QEL_BENCH_ONLY");
  const std::string library = name.substr(0, name.find('-'));
  if (list == nullptr || library == kSubject) return true;
  std::istringstream names(list);
  for (std::string one; std::getline(names, one, ',');)
    if (one == library) return true;
  return false;
}

void* contender::look_up(const char* symbol) const { return dlsym(handle_, symbol); }

const std::vector<contender>& contenders() {
  static const std::vector<contender> all = load_all();
  return all;
}

}  // namespace qel::bench
