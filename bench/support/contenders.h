// SPDX-License-Identifier: BSD-3-Clause
// The libraries that a benchmark compares: QEL and whatever peers are installed, each loaded by dlopen into
// a scope of its own, so that all are called alike and none can take another's symbols.
#pragma once

#include <string>
#include <vector>

namespace qel::bench {

class contender {
 public:
  contender(std::string name, void* handle) : name_(std::move(name)), handle_(handle) {}
  const std::string& name() const { return name_; }
  /// The function of that name, or null if the library does not have it.
  template <class Fn>
  Fn* find(const char* symbol) const {
    return reinterpret_cast<Fn*>(look_up(symbol));
  }

 private:
  void* look_up(const char* symbol) const;
  std::string name_;
  void* handle_;
};

/// One thread unless OMP_NUM_THREADS is set, QEL's native levels unless QEL_NATIVE is. Loading contenders
/// does it first.
void set_environment_defaults();

/// Whether a contender takes part: QEL always; peers by QEL_BENCH_ONLY, a list of names with commas; unset:
/// all, empty: none. A name goes up to its first '-', what follows is a manner of using the library.
bool is_wanted_contender(const std::string& name);

/// Name of the contender that ratios are formed against.
inline constexpr const char* kSubject = "QEL";

/// QEL first (QEL_BENCH_SUBJECT names another build of it, e.g. a drop-in), then the peers found. The list is
/// made once. Peers: OpenBLAS, BLIS and the reference, where Debian's packages put them; QEL_BENCH_PEERS
/// ("name=path:name=path") replaces that list.
const std::vector<contender>& contenders();

}  // namespace qel::bench
