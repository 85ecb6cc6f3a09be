// SPDX-License-Identifier: BSD-3-Clause
#include "cli/fit_model.h"

#include <algorithm>
#include <cfloat>
#include <cstdlib>

namespace qel::cli {
namespace {

std::string trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t"), last = text.find_last_not_of(" \t");
  return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  for (size_t begin = 0; begin <= text.size();) {
    const size_t end = std::min(text.find(separator, begin), text.size());
    parts.push_back(trimmed(text.substr(begin, end - begin)));
    begin = end + 1;
  }
  return parts;
}

double number(const std::string& text, const std::string& where) {
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != 0) throw model_error("'" + text + "' in " + where + " is no number");
  return value;
}

/// NAME=VALUE
std::pair<std::string, std::string> assignment(const std::string& text) {
  const size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0) throw model_error("'" + text + "' is not NAME=VALUE");
  return {trimmed(text.substr(0, equals)), trimmed(text.substr(equals + 1))};
}

}  // namespace

std::vector<fit_parameter> read_parameters(const std::string& start, const std::string& bounds) {
  std::vector<fit_parameter> result;
  const auto find = [&](const std::string& name) {
    return std::find_if(result.begin(), result.end(), [&](const fit_parameter& p) { return p.name == name; });
  };
  for (const std::string& part : split(start, ',')) {
    const auto [name, value] = assignment(part);
    if (find(name) != result.end()) throw model_error("parameter " + name + " has two start values");
    result.push_back({name, number(value, part), -DBL_MAX, DBL_MAX});
  }
  if (bounds.empty()) return result;
  for (const std::string& part : split(bounds, ',')) {
    const auto [name, range] = assignment(part);
    const auto parameter = find(name);
    if (parameter == result.end()) throw model_error("bounds of " + name + ", which has no start value");
    const size_t colon = range.find(':');
    if (colon == std::string::npos) throw model_error("bounds '" + part + "' are not NAME=LOW:HIGH");
    const std::string low = trimmed(range.substr(0, colon)), high = trimmed(range.substr(colon + 1));
    if (!low.empty()) parameter->lower = number(low, part);
    if (!high.empty()) parameter->upper = number(high, part);
    if (!(parameter->lower <= parameter->upper)) throw model_error("bounds '" + part + "' leave nothing");
  }
  return result;
}

fit_model::fit_model(const std::string& text, const table& data, const std::vector<fit_parameter>& parameters)
    : parameters_(parameters.size()) {
  const size_t equals = text.find('=');
  const bool named = equals != std::string::npos && text.compare(equals, 2, "==") != 0;
  response_name_ = named ? trimmed(text.substr(0, equals)) : data.names.back();
  const int response = data.find(response_name_);
  if (response < 0) throw model_error("the response " + response_name_ + " is no column of the data");
  observed_ = &data.columns[static_cast<size_t>(response)];
  try {
    parser_.SetExpr(named ? text.substr(equals + 1) : text);
    const auto used = parser_.GetUsedVar();
    for (size_t k = 0; k < parameters.size(); ++k) {
      const std::string& name = parameters[k].name;
      if (data.find(name) >= 0) throw model_error(name + " is a parameter and a column of the data");
      if (used.find(name) == used.end())
        throw model_error("parameter " + name + " does not occur in the model");
      parser_.DefineVar(name, &parameters_[k]);
    }
    for (const auto& [name, unused] : used) {
      const bool is_parameter = std::any_of(parameters.begin(), parameters.end(),
                                            [&, n = name](const fit_parameter& p) { return p.name == n; });
      if (is_parameter) continue;
      const int column = data.find(name);
      if (column < 0) throw model_error(name + " is neither a parameter (--start) nor a column of the data");
      predictors_.push_back(name);
      columns_.push_back(&data.columns[static_cast<size_t>(column)]);
    }
    row_.resize(predictors_.size());
    for (size_t k = 0; k < predictors_.size(); ++k) parser_.DefineVar(predictors_[k], &row_[k]);
    parser_.Eval();
  } catch (const mu::Parser::exception_type& error) {
    throw model_error("the model: " + error.GetMsg());
  }
}

void fit_model::values(const double* parameters, std::vector<double>& out) {
  std::copy_n(parameters, parameters_.size(), parameters_.begin());
  out.resize(observed_->size());
  for (size_t i = 0; i < out.size(); ++i) {
    for (size_t k = 0; k < row_.size(); ++k) row_[k] = (*columns_[k])[i];
    out[i] = parser_.Eval();
  }
}

void fit_model::values_at(const double* parameters, const std::vector<double>& predictor,
                          std::vector<double>& out) {
  std::copy_n(parameters, parameters_.size(), parameters_.begin());
  out.clear();
  for (const double value : predictor) {
    row_[0] = value;
    out.push_back(parser_.Eval());
  }
}

}  // namespace qel::cli
