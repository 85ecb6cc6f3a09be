// SPDX-License-Identifier: BSD-3-Clause
// The simpler interface to the direct solver: any sequence of calls with any option words. Where a call would
// end the process, exit (wrapped by the linker) comes back here.
#include <algorithm>
#include <csetjmp>
#include <list>

#include "fuzz/support/input.h"
#include "fuzz/support/small_matrix.h"
#include "qel/dss.h"

namespace {

using namespace qel::fuzz;

std::jmp_buf before_call;
bool in_call = false;

}  // namespace

extern "C" {
[[noreturn]] void __real_exit(int status);
[[noreturn]] void __wrap_exit(int status);
void __wrap_exit(int status) {
  if (!in_call) __real_exit(status);
  in_call = false;
  // Above 0: statistics that are refused.
  promise(status >= -16 && status <= 5, "the process ends with a status");
  std::longjmp(before_call, 1);
}
}

namespace {

constexpr int kWords[] = {QEL_DSS_MSG_LVL_SUCCESS,
                          QEL_DSS_MSG_LVL_WARNING,
                          QEL_DSS_MSG_LVL_FATAL,
                          QEL_DSS_TERM_LVL_SUCCESS,
                          QEL_DSS_TERM_LVL_ERROR,
                          QEL_DSS_TERM_LVL_FATAL,
                          QEL_DSS_OOC_VARIABLE,
                          QEL_DSS_OOC_STRONG,
                          QEL_DSS_SINGLE_PRECISION,
                          QEL_DSS_SYMMETRIC,
                          QEL_DSS_SYMMETRIC_STRUCTURE,
                          QEL_DSS_NON_SYMMETRIC,
                          QEL_DSS_SYMMETRIC_COMPLEX,
                          QEL_DSS_SYMMETRIC_STRUCTURE_COMPLEX,
                          QEL_DSS_NON_SYMMETRIC_COMPLEX,
                          QEL_DSS_DEFAULT_ORDER,
                          QEL_DSS_MY_ORDER,
                          QEL_DSS_MINIMUM_DEGREE,
                          QEL_DSS_GET_ORDER,
                          QEL_DSS_METIS_ORDER,
                          QEL_DSS_METIS_SUBGRAPHS_ORDER,
                          QEL_DSS_POSITIVE_DEFINITE,
                          QEL_DSS_INDEFINITE,
                          QEL_DSS_HERMITIAN_POSITIVE_DEFINITE,
                          QEL_DSS_HERMITIAN_INDEFINITE,
                          QEL_DSS_REFINEMENT_OFF,
                          QEL_DSS_REFINEMENT_ON,
                          QEL_DSS_FORWARD_SOLVE,
                          QEL_DSS_DIAGONAL_SOLVE,
                          QEL_DSS_BACKWARD_SOLVE};

class session {
 public:
  explicit session(input& in)
      : in_(in), general_(structure_from(in, false)), upper_(structure_from(in, true)) {}

  /// Calls until the input or the process would end.
  void run() {
    if (setjmp(before_call) != 0) return;
    for (int calls = 0; !in_.empty() && calls < 30; ++calls) step();
  }
  void end() {
    if (handle_ == nullptr) return;
    const int levels = QEL_DSS_TERM_LVL_FATAL;
    promise(dss_delete(&handle_, &levels) == 0 && handle_ == nullptr, "a handle can be deleted in any state");
  }

 private:
  template <class Call>
  int status_of(const Call& call) {
    in_call = true;
    const int status = call();
    in_call = false;
    promise(status >= -16 && status <= 0, "a documented status");
    return status;
  }
  int options() {
    const int kind = in_.byte();
    int word = QEL_DSS_TERM_LVL_FATAL;
    if (kind < 192) {
      for (int k = kind % 3; k > 0; --k) word |= in_.one_of(kWords);
      return word;
    }
    if (kind < 224) return in_.one_of(kWords);
    return in_.raw<int>();
  }

  void step() {
    const int what = in_.byte() % 16, word = options();
    switch (what) {
      case 0:
        // A handle in use would be lost.
        if (handle_ == nullptr && status_of([&] { return dss_create(&handle_, &word); }) == 0)
          single_ = (word & QEL_DSS_SINGLE_PRECISION) != 0;
        break;
      case 1:
      case 2:
        define(word);
        break;
      case 3:
      case 4:
        reorder(word);
        break;
      case 5:
      case 6:
      case 7:
        factor(word);
        break;
      case 8:
      case 9:
      case 10:
        solve(word);
        break;
      case 11:
      case 12:
        statistics(word);
        break;
      case 13:
        if (in_.byte() < 64) status_of([&] { return dss_delete(&handle_, &word); });
        break;
      default:
        break;
    }
  }
  void define(int word) {
    const bool upper = in_.byte() % 2 == 0;
    const small_matrix& m = upper ? upper_ : general_;
    int rows = m.n, columns = m.n, entries = m.entries();
    // Sizes that don't go with the arrays, but are refused.
    const int fault = in_.byte();
    if (fault < 8) rows = in_.in_range(-2, 0);
    if (fault >= 8 && fault < 16) columns = in_.in_range(-2, 0);
    if (fault >= 16 && fault < 24) entries = in_.in_range(0, rows) - 1;
    if (fault >= 24 && fault < 32) entries = m.n * m.n + 1;
    if (fault >= 32 && fault < 40) entries = m.n;
    if (status_of([&] {
          return dss_define_structure(&handle_, &word, m.ia.data(), &rows, &columns, m.ja.data(), &entries);
        }) == 0)
      defined_ = &m;
  }
  void reorder(int word) {
    perm_.resize(static_cast<size_t>(defined_ != nullptr ? defined_->n : 1));
    for (size_t k = 0; k < perm_.size(); ++k) perm_[k] = static_cast<int>(perm_.size() - k);
    if (in_.byte() < 32) perm_[static_cast<size_t>(in_.byte()) % perm_.size()] = in_.integer();
    const bool none = in_.byte() < 32;
    status_of([&] { return dss_reorder(&handle_, &word, none ? nullptr : perm_.data()); });
  }
  void factor(int word) {
    const int kind = in_.byte() % 4, data_kind = kind < 3 ? kind : in_.integer();
    const bool complex_numbers = kind == 1 || data_kind != 1;
    void* const a = block(defined_ != nullptr ? defined_->entries() : 1, complex_numbers);
    status_of([&] {
      if (kind == 0) return dss_factor_real(&handle_, &word, a);
      if (kind == 1) return dss_factor_complex(&handle_, &word, a);
      return dss_factor(&handle_, &word, a, &data_kind);
    });
  }
  void solve(int word) {
    const int nrhs = in_.byte() < 224 ? in_.in_range(1, 3) : in_.in_range(-2, 0);
    const int count = (defined_ != nullptr ? defined_->n : 1) * std::max(nrhs, 0);
    void *const b = block(count, true), *const x = block(count, true);
    status_of([&] { return dss_solve_real(&handle_, &word, b, &nrhs, x); });
  }
  void statistics(int word) {
    constexpr const char* kKeys[] = {"determinant",  "Inertia",   "flops",   "factortime",
                                     "reorder time", "solvetime", "peakmem", "factormem",
                                     "solvemem",     "unknown",   ""};
    keys_.clear();
    for (int k = in_.byte() % 6; k >= 0; --k) keys_.append(in_.one_of(kKeys)).append(k > 0 ? "," : "");
    double result[64];
    status_of([&] { return dss_statistics(&handle_, &word, keys_.c_str(), result); });
  }

  void* block(int count, bool complex_numbers) {
    blocks_.emplace_back(in_, static_cast<size_t>(count), complex_numbers, single_);
    return blocks_.back().data();
  }

  // All that calls are given lives here: no destructor runs on the way back from exit, and the handle keeps
  // the addresses of values.
  input& in_;
  std::list<number_block> blocks_;
  std::vector<int> perm_;
  std::string keys_;
  small_matrix general_, upper_;
  const small_matrix* defined_ = nullptr;
  void* handle_ = nullptr;
  bool single_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  setenv("QEL_PARDISO_OOC_PATH", "/tmp/qel_fuzz_dss", 1);
  input in(data, size);
  session one(in);
  one.run();
  one.end();
  return 0;
}
