// SPDX-License-Identifier: BSD-3-Clause
// qel fit: fits a model to the columns of a table by least squares.
#include <fmt/core.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <vector>

#include "cli/commands.h"
#include "cli/fit_model.h"
#include "cli/plot.h"
#include "qel/lapack.h"
#include "qel/nls.h"

namespace qel::cli {
namespace {

constexpr double kDifferenceStep = 6.0554544523933429e-6;  // cube root of 2^-52
// Radius, residual, columns and model, step; the last two have no effect.
constexpr double kEps[6] = {1e-14, 1e-300, 1e-14, 1e-14, 1, 1};

struct fit_result {
  std::vector<double> parameters, deviations;
  double squares = 0, deviation = 0;
  int stop = 0, iterations = 0, evaluations = 0, jacobians = 0;
  bool converged() const { return stop > 1; }
};

class fit {
 public:
  fit(fit_model& model, const std::vector<fit_parameter>& parameters)
      : model_(model),
        n_(static_cast<int>(parameters.size())),
        m_(static_cast<int>(model.observed().size())) {
    for (const fit_parameter& p : parameters) {
      x_.push_back(p.start);
      lower_.push_back(p.lower);
      upper_.push_back(p.upper);
    }
    f_.resize(static_cast<size_t>(m_));
    jacobian_.resize(f_.size() * x_.size());
  }

  fit_result run() {
    const int iterations = 1000, trials = 100, all = QEL_NLS_MODERN, on = 1;
    const double bound = 0;
    void* run = nullptr;
    if (dtrnlspbc_init(&run, &n_, &m_, x_.data(), lower_.data(), upper_.data(), kEps, &iterations, &trials,
                       &bound) != QEL_NLS_SUCCESS)
      throw std::bad_alloc();
    qel_dtrnlsp_option(&run, &all, &on);
    fit_result result;
    double first = 0, last = 0;
    for (int request = 0; result.stop == 0;) {
      if (request == 1) residuals(f_.data());
      if (request == 2) differences();
      dtrnlspbc_solve(&run, f_.data(), jacobian_.data(), &request);
      dtrnlspbc_get(&run, &result.iterations, &result.stop, &first, &last);
    }
    dtrnlspbc_delete(&run);
    residuals(f_.data());
    differences();
    result.parameters = x_;
    result.evaluations = evaluations_;
    result.jacobians = jacobians_;
    for (const double value : f_) result.squares += value * value;
    result.deviation = m_ > n_ ? std::sqrt(result.squares / (m_ - n_)) : NAN;
    result.deviations = deviations(result.deviation);
    return result;
  }

 private:
  void residuals(double* f) {
    ++evaluations_;
    model_.values(x_.data(), values_);
    for (size_t i = 0; i < values_.size(); ++i) f[i] = values_[i] - model_.observed()[i];
  }
  /// Central differences, cut at the bounds: the model may make no sense beyond them.
  void differences() {
    ++jacobians_;
    std::vector<double> ahead(f_.size()), behind(f_.size());
    for (size_t j = 0; j < x_.size(); ++j) {
      const double at = x_[j], size = std::fabs(at);
      const double step = size > kDifferenceStep ? kDifferenceStep * size : kDifferenceStep;
      const double above = std::min(at + step, upper_[j]), below = std::max(at - step, lower_[j]);
      x_[j] = above;
      residuals(ahead.data());
      x_[j] = below;
      residuals(behind.data());
      x_[j] = at;
      double* const column = jacobian_.data() + j * f_.size();
      for (size_t i = 0; i < f_.size(); ++i)
        column[i] = above > below ? (ahead[i] - behind[i]) / (above - below) : 0;
    }
  }
  /// Square roots of the diagonal of s^2 (J^T J)^-1; NaN where it is singular. J's columns are scaled to
  /// norm 1.
  std::vector<double> deviations(double s) {
    const size_t n = x_.size(), m = f_.size();
    std::vector<double> norms, normal(n * n), inverse(n * n), result(n, NAN);
    for (size_t j = 0; j < n; ++j) {
      double sum = 0;
      for (size_t i = 0; i < m; ++i) sum += jacobian_[j * m + i] * jacobian_[j * m + i];
      norms.push_back(std::sqrt(sum));
    }
    for (size_t j = 0; j < n; ++j) {
      inverse[j * n + j] = 1;
      for (size_t k = 0; k < n; ++k) {
        double sum = 0;
        for (size_t i = 0; i < m; ++i) sum += jacobian_[j * m + i] * jacobian_[k * m + i];
        normal[j * n + k] = sum / (norms[j] * norms[k]);
      }
    }
    int info = 0;
    dposv("L", &n_, &n_, normal.data(), &n_, inverse.data(), &n_, &info);
    for (size_t j = 0; info == 0 && j < n; ++j) result[j] = s * std::sqrt(inverse[j * n + j]) / norms[j];
    return result;
  }

  fit_model& model_;
  int n_, m_, evaluations_ = 0, jacobians_ = 0;
  std::vector<double> x_, lower_, upper_, f_, jacobian_, values_;
};

/// Draws by gnuplot: data and curve over a single predictor, else fitted values over observed ones.
void draw(const std::string& path, fit_model& model, const table& data, const fit_result& result) {
  svg_plot picture(path);
  FILE* const plot = picture.stream();
  const bool curve = model.predictors().size() == 1;
  const std::vector<double>& observed = model.observed();
  std::vector<double> x, fitted;
  fmt::print(plot, "set xlabel {} noenhanced\nset ylabel {} noenhanced\n",
             quoted(curve ? model.predictors()[0] : "observed"), quoted(curve ? model.response() : "fitted"));
  fmt::print(plot,
             "plot '-' using 1:2 with points pt 7 ps 0.5 lc rgb '#1f5fa8' title '{}', "
             "'-' using 1:2 with lines lw 2 lc rgb '#c8402a' title '{}'\n",
             curve ? "data" : "rows", curve ? "fit" : "equal");
  if (curve) {
    const std::vector<double>& at = data.columns[static_cast<size_t>(data.find(model.predictors()[0]))];
    for (size_t i = 0; i < at.size(); ++i) fmt::print(plot, "{:.17g} {:.17g}\n", at[i], observed[i]);
    const auto [least, greatest] = std::minmax_element(at.begin(), at.end());
    constexpr int kPoints = 400;
    for (int k = 0; k <= kPoints; ++k) x.push_back(*least + (*greatest - *least) * k / kPoints);
    model.values_at(result.parameters.data(), x, fitted);
  } else {
    model.values(result.parameters.data(), fitted);
    for (size_t i = 0; i < fitted.size(); ++i) fmt::print(plot, "{:.17g} {:.17g}\n", observed[i], fitted[i]);
    const auto [least, greatest] = std::minmax_element(observed.begin(), observed.end());
    x = fitted = {*least, *greatest};
  }
  fmt::print(plot, "e\n");
  for (size_t k = 0; k < x.size(); ++k) fmt::print(plot, "{:.17g} {:.17g}\n", x[k], fitted[k]);
  fmt::print(plot, "e\n");
  picture.finish();
}

nlohmann::ordered_json number_or_null(double value) {
  return std::isfinite(value) ? nlohmann::ordered_json(value) : nlohmann::ordered_json(nullptr);
}

void print_json(const fit_model& model, const std::vector<fit_parameter>& parameters,
                const fit_result& result) {
  nlohmann::ordered_json json = {{"response", model.response()},
                                 {"rows", model.observed().size()},
                                 {"parameters", nlohmann::ordered_json::array()}};
  for (size_t k = 0; k < parameters.size(); ++k)
    json["parameters"].push_back({{"name", parameters[k].name},
                                  {"value", result.parameters[k]},
                                  {"standard_error", number_or_null(result.deviations[k])}});
  json["sum_of_squares"] = result.squares;
  json["residual_deviation"] = number_or_null(result.deviation);
  json["converged"] = result.converged();
  json["reason"] = qel_nls_reason(&result.stop);
  json["iterations"] = result.iterations;
  json["evaluations"] = result.evaluations;
  json["jacobians"] = result.jacobians;
  fmt::print("{}\n", json.dump(2));
}

void print_text(const fit_options& options, const fit_model& model,
                const std::vector<fit_parameter>& parameters, const fit_result& result) {
  fmt::print("model           {}\ndata            {}: {} rows\n\n", options.model, options.data,
             model.observed().size());
  fmt::print("{:<16}{:>20}{:>20}\n", "parameter", "value", "standard error");
  for (size_t k = 0; k < parameters.size(); ++k)
    fmt::print("{:<16}{:>20.10g}{:>20.4g}\n", parameters[k].name, result.parameters[k], result.deviations[k]);
  fmt::print(
      "\nsum of squares  {:.10g}\nresidual        {:.6g} (standard deviation, {} degrees of freedom)\n",
      result.squares, result.deviation,
      model.observed().size() - std::min(model.observed().size(), parameters.size()));
  fmt::print(
      "ended           {} after {} iterations\nevaluations     {} of the model, {} Jacobians by "
      "differences\n",
      qel_nls_reason(&result.stop), result.iterations, result.evaluations, result.jacobians);
}

}  // namespace

int run_fit(const fit_options& options) {
  const table data = read_table(options.data);
  const std::vector<fit_parameter> parameters = read_parameters(options.start, options.bounds);
  if (data.rows() < parameters.size())
    throw model_error(
        fmt::format("{} parameters need as many rows, there are {}", parameters.size(), data.rows()));
  fit_model model(options.model, data, parameters);
  const fit_result result = fit(model, parameters).run();
  if (options.json) {
    print_json(model, parameters, result);
  } else {
    print_text(options, model, parameters, result);
  }
  if (!options.plot.empty()) {
    draw(options.plot, model, data, result);
    if (!options.json) fmt::print("picture         {}\n", options.plot);
  }
  return result.converged() ? kDone : kSingular;
}

}  // namespace qel::cli
