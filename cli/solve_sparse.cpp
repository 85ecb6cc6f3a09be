// SPDX-License-Identifier: BSD-3-Clause
#include <fmt/core.h>
#include <stdlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <new>

#include "cli/progress.h"
#include "cli/solve_system.h"
#include "cli/sparse_matrix.h"
#include "cli/spy.h"
#include "qel/pardiso.h"
#include "sparse/pardiso/handle.h"

namespace qel::cli {
namespace {

constexpr int kAnalyse = 11, kFactor = 22, kSolve = 33, kRelease = -1;
enum solver_error : int {
  no_memory = -2,
  bad_pivot = -4,
  no_matching = -6,
  zero_on_diagonal = -7,
  too_large = -8,
  core_too_small = -9,
  files_not_opened = -10,
  files_not_transferred = -11,
};

/// A handle of the solver with its arguments.
class solver_run {
 public:
  solver_run(const sparse_matrix& matrix, int type, int nrhs, const solve_options& options)
      : matrix_(matrix), type_(type), nrhs_(nrhs), msglvl_(options.statistics) {
    pardisoinit(pt_.data(), &type_, iparm_.data());
    iparm(60) = options.out_of_core ? 2 : options.max_core > 0 ? 1 : 0;
    // Symmetric indefinite systems get the pairing of their large entries, too.
    if (iparm(21) == 1) iparm(11) = iparm(13) = 1;
    iparm(8) = 2;
  }
  ~solver_run() {
    msglvl_ = 0;
    call(kRelease, nullptr, nullptr);
  }
  solver_run(const solver_run&) = delete;
  solver_run& operator=(const solver_run&) = delete;

  int call(int phase, double* b, double* x) {
    const int one = 1;
    int error = 0;
    ::pardiso(pt_.data(), &one, &one, &type_, &phase, &matrix_.n, matrix_.values.data(), matrix_.ia.data(),
              matrix_.ja.data(), nullptr, &nrhs_, iparm_.data(), &msglvl_, b, x, &error);
    return error;
  }
  int& iparm(int number) { return iparm_[static_cast<size_t>(number) - 1]; }
  /// A matrix with nothing off its diagonal, which needs no handle.
  bool is_diagonal() { return iparm(12) == -1; }
  qel_pardiso_quality quality(const std::vector<double>& b, const std::vector<double>& x) const {
    qel_pardiso_quality result;
    qel_pardiso_report(pt_.data(), 1, matrix_.values.data(), matrix_.ia.data(), matrix_.ja.data(), nrhs_,
                       b.data(), x.data(), nullptr, &result);
    return result;
  }
  const pardiso::structure& form() { return pardiso::handle(pt_.data()).analysed()->form; }
  double operations() { return pardiso::handle(pt_.data()).record()->work; }
  bool out_of_core() { return pardiso::handle(pt_.data()).record()->out_of_core != 0; }
  int ordering() { return pardiso::handle(pt_.data()).record()->slots[pardiso::slot_ordering]; }

 private:
  const sparse_matrix& matrix_;
  const int type_, nrhs_;
  int msglvl_;
  std::array<void*, 64> pt_;
  std::array<int, 64> iparm_;
};

/// Right-hand sides as the solver takes them: pairs for complex types; else the imaginary parts, if there are
/// any, as columns of their own behind the real ones.
struct column_form {
  bool complex_type, split;
  size_t n, columns;
  int solver_columns() const { return static_cast<int>(split ? 2 * columns : columns); }
  std::vector<double> pack(const std::vector<complex>& values) const {
    std::vector<double> out(n * columns * (complex_type || split ? 2 : 1));
    for (size_t i = 0; i < n * columns; ++i) {
      out[complex_type ? 2 * i : i] = values[i].real();
      if (complex_type) out[2 * i + 1] = values[i].imag();
      if (split) out[n * columns + i] = values[i].imag();
    }
    return out;
  }
  std::vector<complex> unpack(const std::vector<double>& x) const {
    std::vector<complex> out(n * columns);
    for (size_t i = 0; i < n * columns; ++i) {
      out[i] =
          complex_type ? complex(x[2 * i], x[2 * i + 1]) : complex(x[i], split ? x[n * columns + i] : 0.0);
    }
    return out;
  }
};

void draw_patterns(const std::string& path, const sparse_matrix& matrix, bool symmetric, solver_run& run) {
  std::vector<pattern_picture> pictures;
  pattern_picture of_a(fmt::format("A: order {}, {} entries{}", matrix.n, matrix.ja.size(),
                                   symmetric ? " in its triangle" : ""),
                       matrix.n);
  for (int i = 0; i < matrix.n; ++i) {
    for (int k = matrix.ia[static_cast<size_t>(i)]; k < matrix.ia[static_cast<size_t>(i) + 1]; ++k) {
      const int j = matrix.ja[static_cast<size_t>(k) - 1] - 1;
      of_a.add(i, j, j);
      if (symmetric && j != i) of_a.add(j, i, i);
    }
  }
  pictures.push_back(of_a);
  if (!run.is_diagonal()) {
    const pardiso::structure& form = run.form();
    pattern_picture of_l(fmt::format("L: {} entries", form.nonzeros_l), matrix.n);
    for (int s = 0; s < form.supernodes; ++s) {
      const int first = form.xsup[s], last = form.xsup[s + 1] - 1;
      for (int64_t k = form.xlindx[s]; k < form.xlindx[s + 1]; ++k) {
        const int row = form.lindx[k];
        of_l.add(row, first, std::min(row, last));
      }
    }
    pictures.push_back(of_l);
  }
  write_pictures(path, pictures);
}

const char* name_of_ordering(int method) {
  return method == 0   ? "minimum degree"
         : method == 1 ? "constrained minimum degree"
         : method == 2 ? "nested dissection"
                       : "nested dissection with subgraphs";
}
const char* name_of_factors(int type) {
  if (type % 2 != 0) return "L U";
  if (type == 2) return "L L^T";
  if (type == 4) return "L L^H";
  return type == -4 ? "L D L^H" : "L D L^T";
}

/// What the factorisation was like, for programs and for people.
void tell_details(solver_run& run, int type, size_t entries, double analysis_seconds, solution& result) {
  const auto add = [&](const char* what, const std::string& text) { result.lines.emplace_back(what, text); };
  result.details["type"] = type;
  result.details["analysis_seconds"] = analysis_seconds;
  if (run.is_diagonal()) {
    result.method = "division by the diagonal";
    return;
  }
  const double fill = static_cast<double>(run.form().nonzeros_l + run.form().nonzeros_u);
  const double rate = result.factor_seconds > 0 ? run.operations() / result.factor_seconds / 1e9 : 0;
  result.details["ordering"] = name_of_ordering(run.ordering());
  result.details["factor_entries"] = static_cast<long>(fill);
  result.details["operations"] = run.operations();
  result.details["gflops"] = rate;
  result.details["kilobytes"] = {
      {"analysis_peak", run.iparm(15)}, {"analysis", run.iparm(16)}, {"factors", run.iparm(17)}};
  result.details["threads"] = run.iparm(3);
  result.details["out_of_core"] = run.out_of_core();
  result.details["refinement_steps"] = run.iparm(7);
  result.details["perturbed_pivots"] = run.iparm(14);
  result.method =
      fmt::format("sparse {} ({}), {}{}", name_of_factors(type), describe_type(type),
                  name_of_ordering(run.ordering()), run.out_of_core() ? ", factors in files" : "");
  add("fill", fmt::format("{:.0f} entries in the factors, {:.1f} for each of the matrix", fill,
                          fill / static_cast<double>(std::max<size_t>(entries, 1))));
  add("memory", fmt::format("{:.1f} MB factors and work, {:.1f} MB structure ({:.1f} MB at its peak)",
                            run.iparm(17) / 1024.0, run.iparm(16) / 1024.0, run.iparm(15) / 1024.0));
  add("factorisation", fmt::format("{:.3g} million operations, {:.2f} GFlop/s on {} thread{}",
                                   run.operations() / 1e6, rate, run.iparm(3), run.iparm(3) == 1 ? "" : "s"));
  add("analysis", fmt::format("{:.3f} s", analysis_seconds));
  add("refinement", fmt::format("{} steps, {} perturbed pivots", run.iparm(7), run.iparm(14)));
  if (type == -2 || type == -4) {
    result.details["inertia"] = {{"positive", run.iparm(22)}, {"negative", run.iparm(23)}};
    add("inertia", fmt::format("{} positive, {} negative eigenvalues", run.iparm(22), run.iparm(23)));
  }
}

/// Why there is no solution, empty if error says something else.
std::string singularity(int error, solver_run& run, int n) {
  switch (error) {
    case bad_pivot:
      return fmt::format("no pivot in row {} of {}", run.iparm(30), n);
    case no_matching:
      return "there is no way to put non-zeros on all of its diagonal";
    case zero_on_diagonal:
      return "a diagonal matrix with a zero on its diagonal";
    default:
      return {};
  }
}

std::string word_failure(int error, solver_run& run) {
  switch (error) {
    case too_large:
      return "the factors have more entries than the solver can count";
    case core_too_small:
      return fmt::format("the factorisation needs {} MB with its factors in files; --max-core allows less",
                         (run.iparm(15) + 1023) / 1024);
    case files_not_opened:
      return "the files of the factors can't be opened (--ooc-path names their folder)";
    case files_not_transferred:
      return "the files of the factors can't be written or read";
    default:
      return fmt::format("the solver ended with error {}", error);
  }
}

/// False if the next type is to be tried.
bool try_type(const matrix_file& matrix, const right_hand_sides& rhs, const solve_options& options, int type,
              bool last_type, solution& result) {
  const sparse_matrix form = sparse_form(matrix, type, options.matrix);
  const bool complex_type = is_complex_type(type);
  const column_form columns = {complex_type, rhs.is_complex && !complex_type,
                               static_cast<size_t>(matrix.rows), static_cast<size_t>(rhs.count)};
  solver_run run(form, type, columns.solver_columns(), options);
  result.method = fmt::format("sparse {} ({})", name_of_factors(type), describe_type(type));
  const auto failed = [&](int error) {
    if (error == no_memory) throw std::bad_alloc();
    result.singular = singularity(error, run, form.n);
    if (error == bad_pivot) result.zero_pivot = run.iparm(30);
    if (result.singular.empty()) throw std::runtime_error(options.matrix + ": " + word_failure(error, run));
  };

  const solve_clock::time_point start = solve_clock::now();
  int error = run.call(kAnalyse, nullptr, nullptr);
  if (error != 0) {
    failed(error);
    return true;
  }
  const double analysis_seconds = seconds_since(start);
  const solve_clock::time_point analysed = solve_clock::now();
  {
    progress_line progress(fmt::format("factoring a sparse matrix of order {}", form.n));
    qel_pardiso_set_progress(
        [](void* context, int, double share) {
          static_cast<progress_line*>(context)->update(share);
          return 0;
        },
        &progress);
    error = run.call(kFactor, nullptr, nullptr);
    qel_pardiso_set_progress(nullptr, nullptr);
  }
  if (error == bad_pivot && !last_type) return false;
  if (error != 0) {
    failed(error);
    return true;
  }
  result.factor_seconds = seconds_since(analysed);
  if (!options.spy.empty()) draw_patterns(options.spy, form, type % 2 == 0, run);

  std::vector<double> b = columns.pack(rhs.values), x(b.size());
  const solve_clock::time_point factored = solve_clock::now();
  error = run.call(kSolve, b.data(), x.data());
  if (error != 0) {
    failed(error);
    return true;
  }
  result.solve_seconds = seconds_since(factored);
  result.values = columns.unpack(x);
  std::vector<double> residuals;
  result.backward_errors = normwise_backward_errors(matrix, rhs, result.values, &residuals);
  tell_details(run, type, form.ja.size(), analysis_seconds, result);
  if (run.is_diagonal()) {
    const auto size = [&](size_t i) {
      return std::abs(complex_type ? complex(form.values[2 * i], form.values[2 * i + 1])
                                   : complex(form.values[i]));
    };
    double least = INFINITY, largest = 0;
    for (size_t i = 0; i < form.ja.size(); ++i) {
      least = std::min(least, size(i));
      largest = std::max(largest, size(i));
    }
    result.reciprocal_condition = least / largest;
    return true;
  }
  const qel_pardiso_quality quality = run.quality(b, x);
  result.reciprocal_condition = 1 / quality.condition;
  result.details["verdict"] = quality.text;
  result.lines.emplace_back("verdict", quality.text);
  // Perturbed pivots solve another system. Where its solution leaves the right-hand side unmet, this one has
  // none; the backward error would not tell, because such solutions are huge.
  constexpr double kUnmet = 1e-3;
  const double worst = *std::max_element(residuals.begin(), residuals.end());
  if (run.iparm(14) > 0 && !(worst < kUnmet)) {
    result.singular = fmt::format("{} of {} pivots were too small", run.iparm(14), form.n);
  }
  return true;
}

}  // namespace

solution solve_sparse(const matrix_file& matrix, const right_hand_sides& rhs, const solve_options& options) {
  // The solver reads these when its handle is made.
  if (!options.store_path.empty()) {
    setenv("QEL_PARDISO_OOC_PATH", (options.store_path + "/qel_factors").c_str(), 1);
  }
  if (options.max_core > 0) {
    setenv("QEL_PARDISO_OOC_MAX_CORE_SIZE", std::to_string(options.max_core).c_str(), 1);
  }
  const std::vector<int> types = types_to_try(matrix, options.type, options.matrix);
  solution result;
  for (size_t k = 0; k < types.size(); ++k) {
    if (try_type(matrix, rhs, options, types[k], k + 1 == types.size(), result)) break;
  }
  return result;
}

}  // namespace qel::cli
