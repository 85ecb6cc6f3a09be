// SPDX-License-Identifier: BSD-3-Clause
#include "bench/direct/qel_solver.h"

#include <cstdlib>
#include <stdexcept>

#include "bench/support/contenders.h"

namespace qel::bench {
namespace {

using pardiso_entry = void(void**, const int*, const int*, const int*, const int*, const int*, const void*,
                           const int*, const int*, int*, const int*, int*, const int*, void*, void*, int*);

class qel_solver : public direct_solver {
 public:
  explicit qel_solver(const matrix& a) : a_(a), entry_(contenders().front().find<pardiso_entry>("pardiso")) {
    if (entry_ == nullptr) throw std::runtime_error("no solver");
    const char* const ordering = std::getenv("QEL_BENCH_ORDERING");
    auto* const initialise = contenders().front().find<int(void**, const int*, int*)>("pardisoinit");
    if (ordering == nullptr || initialise == nullptr) return;
    initialise(pt_, &a.type, iparm_);
    iparm_[1] = std::atoi(ordering);
  }
  ~qel_solver() override {
    if (pt_[0] != nullptr) call(-1, 1, nullptr, nullptr);
  }
  void analyse() override { call(11, 1, nullptr, nullptr); }
  void factor() override { call(22, 1, nullptr, nullptr); }
  void solve(int nrhs, const double* b, double* x) override { call(33, nrhs, b, x); }
  double factor_entries() const override { return iparm_[17]; }

 private:
  void call(int phase, int nrhs, const double* b, double* x) {
    const int one = 1, silent = 0;
    int error = 0;
    entry_(pt_, &one, &one, &a_.type, &phase, &a_.n, a_.a.data(), a_.ia.data(), a_.ja.data(), nullptr, &nrhs,
           iparm_, &silent, const_cast<double*>(b), x, &error);
    if (error != 0) throw std::runtime_error("error " + std::to_string(error));
  }
  const matrix& a_;
  pardiso_entry* const entry_;
  void* pt_[64] = {};
  int iparm_[64] = {};
};

}  // namespace

std::unique_ptr<direct_solver> make_qel(const matrix& a) { return std::make_unique<qel_solver>(a); }

}  // namespace qel::bench
