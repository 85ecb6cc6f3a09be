// SPDX-License-Identifier: BSD-3-Clause
// The direct solver: any sequence of phases with any parameters on sound structures.
#include <algorithm>
#include <cmath>

#include "fuzz/support/input.h"
#include "fuzz/support/small_matrix.h"
#include "qel/pardiso.h"

namespace {

using namespace qel::fuzz;

class session {
 public:
  explicit session(input& in) : in_(in) {
    for (int k = 0; k < 2; ++k) {
      general_[k] = structure_from(in, false);
      upper_[k] = structure_from(in, true);
    }
  }
  ~session() {
    iparm_[11] = 0;
    msglvl_ = 0;
    const small_matrix& m = general_[0];
    int phase = -1, error = 1;
    pardiso(pt_, &one_, &one_, &mtype_, &phase, &m.n, nullptr, m.ia.data(), m.ja.data(), nullptr, &one_,
            iparm_, &msglvl_, nullptr, nullptr, &error);
    promise(error == 0 && std::all_of(pt_, pt_ + 64, [](void* p) { return p == nullptr; }),
            "phase -1 empties the handle");
  }
  void step() {
    switch (in_.byte() % 8) {
      case 0:
        iparm_[in_.in_range(0, 63)] = in_.integer();
        break;
      case 1:
        mtype_ = in_.byte() < 224 ? in_.one_of({11, 1, 2, -2, 3, 4, -4, 6, 13}) : in_.integer();
        break;
      case 2:
        maxfct_ = in_.integer();
        mnum_ = in_.integer();
        break;
      case 3:
        msglvl_ = in_.integer();
        chosen_ = in_.byte() % 2;
        break;
      case 4:
        report();
        break;
      default:
        call();
    }
  }

 private:
  bool complex_numbers() const { return !(std::abs(mtype_ / 1.0) <= 2 || mtype_ == 11); }
  const small_matrix& matrix() const { return mtype_ % 2 == 0 ? upper_[chosen_] : general_[chosen_]; }

  void call() {
    const int phase =
        in_.byte() < 224 ? in_.one_of({11, 12, 13, 22, 23, 33, 331, 332, 333, 0, -1, -2, -3}) : in_.integer();
    const int nrhs = in_.byte() < 224 ? in_.in_range(1, 3) : in_.integer();
    // More columns than there is data for are the caller's fault.
    if (nrhs > 1000) return;
    small_matrix m = matrix();
    if (in_.byte() < 8) m.n = in_.in_range(-1, 0);  // refused or a query
    const bool live = pt_[0] != nullptr;
    const int stage = phase > 99 ? phase / 100 : phase / 10;
    const bool single = live && stage != 1 ? single_ : iparm_[27] == 1;
    const auto n = static_cast<size_t>(std::max(m.n, 0)), columns = static_cast<size_t>(std::max(nrhs, 0));
    number_block a(in_, m.ja.size(), complex_numbers(), single),
        b(in_, n * columns, complex_numbers(), single), x(in_, n * columns, complex_numbers(), single);
    std::vector<int> perm(n);
    for (size_t k = 0; k < n; ++k) perm[k] = static_cast<int>(n - k);
    if (n > 0 && in_.byte() < 32) perm[static_cast<size_t>(in_.byte()) % n] = in_.integer();
    int error = 777;
    pardiso(pt_, &maxfct_, &mnum_, &mtype_, &phase, &m.n, a.data(), m.ia.data(), m.ja.data(), perm.data(),
            &nrhs, iparm_, &msglvl_, b.data(), x.data(), &error);
    promise((error >= -11 && error <= 0) || (phase == -2 && error == 16) || (phase == -3 && error == 300000),
            "a code that is documented");
    promise(error != -1 || msglvl_ != 0, "-1 is told where something is printed");
    // With a diagonal matrix, and after it, the handle is not asked.
    const bool asked = iparm_[11] != -1;
    if (asked && pt_[0] != nullptr && (phase / 10 == 1 || !live)) single_ = single;
    const bool factors =
        error == 0 && m.n > 0 && asked && (phase == 12 || phase == 13 || phase == 22 || phase == 23);
    if (factors || stage == 1 || pt_[0] == nullptr || error != 0) {
      factored_ = factors ? m : small_matrix{};
      factored_complex_ = complex_numbers();
    }
    if (pt_[0] == nullptr)
      promise(std::all_of(pt_, pt_ + 64, [](void* p) { return p == nullptr; }), "all or none");
  }
  void report() {
    // The matrix has to be the one that was factored.
    const small_matrix& m = factored_;
    if (m.n == 0) return;
    const int columns = in_.in_range(0, 2);
    number_block a(in_, m.ja.size(), factored_complex_, single_),
        b(in_, static_cast<size_t>(m.n * columns), factored_complex_, single_),
        x(in_, static_cast<size_t>(m.n * columns), factored_complex_, single_);
    double errors[2] = {};
    qel_pardiso_quality quality;
    const int verdict = qel_pardiso_report(pt_, in_.integer(), a.data(), m.ia.data(), m.ja.data(), columns,
                                           b.data(), x.data(), errors, &quality);
    promise(verdict >= -2 && verdict <= 2, "a documented verdict");
  }

  input& in_;
  small_matrix general_[2], upper_[2], factored_{};
  void* pt_[64] = {};
  int iparm_[64] = {};
  int maxfct_ = 1, mnum_ = 1, mtype_ = 11, msglvl_ = 0, chosen_ = 0;
  const int one_ = 1;
  bool single_ = false, factored_complex_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  setenv("QEL_PARDISO_OOC_PATH", "/tmp/qel_fuzz_pardiso", 1);
  input in(data, size);
  session one(in);
  for (int calls = 0; !in.empty() && calls < 40; ++calls) one.step();
  return 0;
}
