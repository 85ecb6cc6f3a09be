// SPDX-License-Identifier: BSD-3-Clause
// CHOLMOD (supernodal, METIS), UMFPACK, KLU, SuperLU and MUMPS (sequential, METIS) with their defaults
// otherwise.
#include <cholmod.h>
#include <dmumps_c.h>
#include <klu.h>
#include <slu_ddefs.h>
#include <umfpack.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "bench/direct/qel_solver.h"

namespace qel::bench {
namespace {

void require(bool good, const char* what) {
  if (!good) throw std::runtime_error(what);
}

/// The matrix counted from 0. Its rows are the columns of the transposed one, which the libraries by columns
/// are asked to solve with.
struct from_zero {
  std::vector<int> start, index;
  explicit from_zero(const matrix& a) : start(a.ia), index(a.ja) {
    for (int& i : start) --i;
    for (int& j : index) --j;
  }
};

class cholmod_solver : public direct_solver {
 public:
  explicit cholmod_solver(const matrix& a) : zero_(a) {
    cholmod_start(&common_);
    common_.supernodal = CHOLMOD_SUPERNODAL;
    common_.nmethods = 1;
    common_.method[0].ordering = CHOLMOD_METIS;
    common_.postorder = 1;
    // Rows of the upper triangle are columns of the lower one.
    const auto n = static_cast<size_t>(a.n);
    a_ = {n,
          n,
          a.a.size(),
          zero_.start.data(),
          zero_.index.data(),
          nullptr,
          const_cast<double*>(a.a.data()),
          nullptr,
          -1,
          CHOLMOD_INT,
          CHOLMOD_REAL,
          CHOLMOD_DOUBLE,
          1,
          1};
  }
  ~cholmod_solver() override {
    cholmod_free_dense(&x_, &common_);
    cholmod_free_dense(&y_, &common_);
    cholmod_free_dense(&e_, &common_);
    cholmod_free_factor(&factor_, &common_);
    cholmod_finish(&common_);
  }
  void analyse() override {
    cholmod_free_factor(&factor_, &common_);
    factor_ = cholmod_analyze(&a_, &common_);
    require(factor_ != nullptr, "CHOLMOD analysis");
  }
  void factor() override {
    require(cholmod_factorize(&a_, factor_, &common_) != 0 && common_.status == CHOLMOD_OK, "CHOLMOD factor");
  }
  void solve(int nrhs, const double* b, double* x) override {
    cholmod_dense right{a_.nrow,
                        static_cast<size_t>(nrhs),
                        a_.nrow * static_cast<size_t>(nrhs),
                        a_.nrow,
                        const_cast<double*>(b),
                        nullptr,
                        CHOLMOD_REAL,
                        CHOLMOD_DOUBLE};
    require(cholmod_solve2(CHOLMOD_A, factor_, &right, nullptr, &x_, nullptr, &y_, &e_, &common_) != 0,
            "CHOLMOD solve");
    const double* const result = static_cast<const double*>(x_->x);
    std::copy(result, result + right.nzmax, x);
  }
  double factor_entries() const override { return common_.lnz; }

 private:
  from_zero zero_;
  cholmod_common common_{};
  cholmod_sparse a_{};
  cholmod_factor* factor_ = nullptr;
  cholmod_dense *x_ = nullptr, *y_ = nullptr, *e_ = nullptr;
};

class umfpack_solver : public direct_solver {
 public:
  explicit umfpack_solver(const matrix& a) : a_(a), zero_(a) {
    umfpack_di_defaults(control_);
    control_[UMFPACK_IRSTEP] = 0;
  }
  ~umfpack_solver() override {
    umfpack_di_free_numeric(&numeric_);
    umfpack_di_free_symbolic(&symbolic_);
  }
  void analyse() override {
    umfpack_di_free_symbolic(&symbolic_);
    require(umfpack_di_symbolic(a_.n, a_.n, zero_.start.data(), zero_.index.data(), a_.a.data(), &symbolic_,
                                control_, info_) == UMFPACK_OK,
            "UMFPACK analysis");
  }
  void factor() override {
    umfpack_di_free_numeric(&numeric_);
    require(umfpack_di_numeric(zero_.start.data(), zero_.index.data(), a_.a.data(), symbolic_, &numeric_,
                               control_, info_) == UMFPACK_OK,
            "UMFPACK factor");
    entries_ = info_[UMFPACK_LNZ] + info_[UMFPACK_UNZ];
  }
  void solve(int nrhs, const double* b, double* x) override {
    for (int k = 0; k < nrhs; ++k) {
      const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(k) * a_.n;
      require(umfpack_di_solve(UMFPACK_At, zero_.start.data(), zero_.index.data(), a_.a.data(), x + at,
                               b + at, numeric_, control_, info_) == UMFPACK_OK,
              "UMFPACK solve");
    }
  }
  double factor_entries() const override { return entries_; }

 private:
  const matrix& a_;
  from_zero zero_;
  double control_[UMFPACK_CONTROL], info_[UMFPACK_INFO] = {}, entries_ = 0;
  void *symbolic_ = nullptr, *numeric_ = nullptr;
};

class klu_solver : public direct_solver {
 public:
  explicit klu_solver(const matrix& a) : a_(a), zero_(a) { klu_defaults(&common_); }
  ~klu_solver() override {
    klu_free_numeric(&numeric_, &common_);
    klu_free_symbolic(&symbolic_, &common_);
  }
  void analyse() override {
    klu_free_symbolic(&symbolic_, &common_);
    symbolic_ = klu_analyze(a_.n, zero_.start.data(), zero_.index.data(), &common_);
    require(symbolic_ != nullptr, "KLU analysis");
  }
  void factor() override {
    klu_free_numeric(&numeric_, &common_);
    numeric_ = klu_factor(zero_.start.data(), zero_.index.data(), const_cast<double*>(a_.a.data()), symbolic_,
                          &common_);
    require(numeric_ != nullptr, "KLU factor");
  }
  void solve(int nrhs, const double* b, double* x) override {
    std::copy(b, b + static_cast<std::ptrdiff_t>(nrhs) * a_.n, x);
    require(klu_tsolve(symbolic_, numeric_, a_.n, nrhs, x, &common_) != 0, "KLU solve");
  }
  double factor_entries() const override { return numeric_->lnz + numeric_->unz + numeric_->nzoff; }

 private:
  const matrix& a_;
  from_zero zero_;
  klu_common common_{};
  klu_symbolic* symbolic_ = nullptr;
  klu_numeric* numeric_ = nullptr;
};

/// Its orderings are by minimum degree of A^T + A (for nearly symmetric patterns) and by COLAMD: the first is
/// taken, which is far better on grids.
class superlu_solver : public direct_solver {
 public:
  explicit superlu_solver(const matrix& a)
      : a_(a), zero_(a), column_order_(a.ja.size()), row_order_(a.ja.size()), tree_(a.ja.size()) {
    set_default_options(&options_);
    options_.ColPerm = MMD_AT_PLUS_A;
    options_.SymmetricMode = YES;
    options_.DiagPivotThresh = 0.01;
    StatInit(&statistics_);
    dCreate_CompCol_Matrix(&matrix_, a.n, a.n, static_cast<int>(a.a.size()), const_cast<double*>(a.a.data()),
                           zero_.index.data(), zero_.start.data(), SLU_NC, SLU_D, SLU_GE);
  }
  ~superlu_solver() override {
    drop_factors();
    if (permuted_) Destroy_CompCol_Permuted(&permuted_matrix_);
    Destroy_SuperMatrix_Store(&matrix_);
    StatFree(&statistics_);
  }
  void analyse() override {
    if (permuted_) Destroy_CompCol_Permuted(&permuted_matrix_);
    get_perm_c(options_.ColPerm, &matrix_, column_order_.data());
    sp_preorder(&options_, &matrix_, column_order_.data(), tree_.data(), &permuted_matrix_);
    permuted_ = true;
  }
  void factor() override {
    drop_factors();
    int info = 0;
    dgstrf(&options_, &permuted_matrix_, sp_ienv(2), sp_ienv(1), tree_.data(), nullptr, 0,
           column_order_.data(), row_order_.data(), &l_, &u_, &global_, &statistics_, &info);
    require(info == 0, "SuperLU factor");
    factored_ = true;
  }
  void solve(int nrhs, const double* b, double* x) override {
    std::copy(b, b + static_cast<std::ptrdiff_t>(nrhs) * a_.n, x);
    SuperMatrix right;
    dCreate_Dense_Matrix(&right, a_.n, nrhs, x, a_.n, SLU_DN, SLU_D, SLU_GE);
    int info = 0;
    dgstrs(TRANS, &l_, &u_, column_order_.data(), row_order_.data(), &right, &statistics_, &info);
    Destroy_SuperMatrix_Store(&right);
    require(info == 0, "SuperLU solve");
  }
  double factor_entries() const override {
    return static_cast<double>(static_cast<SCformat*>(l_.Store)->nnz + static_cast<NCformat*>(u_.Store)->nnz);
  }

 private:
  void drop_factors() {
    if (!factored_) return;
    Destroy_SuperNode_Matrix(&l_);
    Destroy_CompCol_Matrix(&u_);
    factored_ = false;
  }
  const matrix& a_;
  from_zero zero_;
  std::vector<int> column_order_, row_order_, tree_;
  superlu_options_t options_{};
  SuperLUStat_t statistics_{};
  GlobalLU_t global_{};
  SuperMatrix matrix_{}, permuted_matrix_{}, l_{}, u_{};
  bool permuted_ = false, factored_ = false;
};

class mumps_solver : public direct_solver {
 public:
  explicit mumps_solver(const matrix& a) : a_(a), columns_(a.ja) {
    for (int i = 0; i < a.n; ++i)
      rows_.insert(rows_.end(),
                   static_cast<size_t>(a.ia[static_cast<size_t>(i) + 1] - a.ia[static_cast<size_t>(i)]),
                   i + 1);
    data_.par = 1;
    data_.sym = a.type == 2 ? 1 : a.type == -2 ? 2 : 0;
    data_.comm_fortran = -987654;
    run(-1);
    for (int k = 0; k < 4; ++k) data_.icntl[k] = k == 3 ? 0 : -1;  // silent
    data_.icntl[6] = 7;    // an ordering by its own choice: Debian builds it without METIS
    data_.icntl[13] = 50;  // room for pivots that are put off
    data_.n = a.n;
    data_.nnz = static_cast<MUMPS_INT8>(a.a.size());
    data_.irn = rows_.data();
    data_.jcn = columns_.data();
    data_.a = const_cast<double*>(a.a.data());
  }
  ~mumps_solver() override {
    data_.job = -2;
    dmumps_c(&data_);
  }
  void analyse() override { run(1); }
  void factor() override { run(2); }
  void solve(int nrhs, const double* b, double* x) override {
    std::copy(b, b + static_cast<std::ptrdiff_t>(nrhs) * a_.n, x);
    data_.nrhs = nrhs;
    data_.lrhs = a_.n;
    data_.rhs = x;
    run(3);
  }
  double factor_entries() const override {
    const MUMPS_INT entries = data_.infog[28];  // negative: in millions
    return entries < 0 ? -1e6 * entries : entries;
  }

 private:
  void run(int job) {
    data_.job = job;
    dmumps_c(&data_);
    require(data_.infog[0] >= 0, "MUMPS");
  }
  const matrix& a_;
  std::vector<int> rows_, columns_;
  DMUMPS_STRUC_C data_{};
};

template <class Solver>
std::unique_ptr<direct_solver> make(const matrix& a) {
  return std::make_unique<Solver>(a);
}

}  // namespace

std::vector<direct_library> libraries_for(int type, bool circuit) {
  std::vector<direct_library> all{{"QEL", make_qel}};
  if (type == 2) all.push_back({"CHOLMOD", make<cholmod_solver>});
  if (type == 11) {
    all.push_back({"UMFPACK", make<umfpack_solver>});
    all.push_back({"SuperLU", make<superlu_solver>});
    if (circuit) all.push_back({"KLU", make<klu_solver>});
  }
  all.push_back({"MUMPS", make<mumps_solver>});
  return all;
}

double backward_error(const matrix& a, const double* b, const double* x) {
  const auto n = static_cast<size_t>(a.n);
  std::vector<double> residual(b, b + n), row_sum(n);
  double norm_x = 0, norm_b = 0, norm_a = 0, norm_r = 0;
  for (size_t i = 0; i < n; ++i)
    for (auto p = static_cast<size_t>(a.ia[i]) - 1; p + 1 < static_cast<size_t>(a.ia[i + 1]); ++p) {
      const auto j = static_cast<size_t>(a.ja[p]) - 1;
      residual[i] -= a.a[p] * x[j];
      row_sum[i] += std::abs(a.a[p]);
      if (a.type % 2 != 0 || i == j) continue;
      residual[j] -= a.a[p] * x[i];
      row_sum[j] += std::abs(a.a[p]);
    }
  for (size_t i = 0; i < n; ++i) {
    norm_x = std::max(norm_x, std::abs(x[i]));
    norm_b = std::max(norm_b, std::abs(b[i]));
    norm_a = std::max(norm_a, row_sum[i]);
    norm_r = std::max(norm_r, std::abs(residual[i]));
  }
  return norm_r / (norm_a * norm_x + norm_b);
}

}  // namespace qel::bench
