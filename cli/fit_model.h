// SPDX-License-Identifier: BSD-3-Clause
// A model to be fitted: an expression of columns of a table and of parameters, with the response that it
// explains.
#pragma once

#include <muParser.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "cli/table.h"

namespace qel::cli {

/// What is wrong with a model or its parameters.
class model_error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A parameter with its start value and bounds; +-DBL_MAX is no bound.
struct fit_parameter {
  std::string name;
  double start, lower, upper;
};
/// "a=1,b=2" and "a=0:1,b=:5". Throws model_error.
std::vector<fit_parameter> read_parameters(const std::string& start, const std::string& bounds);

class fit_model {
 public:
  /// text is "response = expression" or an expression of the last column. Every name in it must be a column
  /// or a parameter, every parameter must occur. Throws model_error.
  fit_model(const std::string& text, const table& data, const std::vector<fit_parameter>& parameters);

  const std::string& response() const { return response_name_; }
  const std::vector<double>& observed() const { return *observed_; }
  /// Columns that the expression reads.
  const std::vector<std::string>& predictors() const { return predictors_; }
  /// The expression's values for all rows, or at the given values of the single predictor.
  void values(const double* parameters, std::vector<double>& out);
  void values_at(const double* parameters, const std::vector<double>& predictor, std::vector<double>& out);

 private:
  std::string response_name_;
  const std::vector<double>* observed_ = nullptr;
  std::vector<std::string> predictors_;
  std::vector<const std::vector<double>*> columns_;  ///< of the predictors
  std::vector<double> row_, parameters_;             ///< what the parser reads
  mu::Parser parser_;
};

}  // namespace qel::cli
