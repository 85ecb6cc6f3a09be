// SPDX-License-Identifier: BSD-3-Clause
#include "tests/nls/nist.h"

#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace qel::test {
namespace {

using model = dual (*)(double x, const duals& b);

const std::pair<const char*, model> kModels[] = {
    {"Chwirut2", [](double x, const duals& b) { return exp(-b[0] * x) / (b[1] + b[2] * x); }},
    {"DanWood", [](double x, const duals& b) { return b[0] * pow(x, b[1]); }},
    {"Eckerle4",
     [](double x, const duals& b) { return b[0] / b[1] * exp(-0.5 * square((x - b[2]) / b[1])); }},
    {"Gauss1",
     [](double x, const duals& b) {
       return b[0] * exp(-b[1] * x) + b[2] * exp(-square((x - b[3]) / b[4])) +
              b[5] * exp(-square((x - b[6]) / b[7]));
     }},
    {"Kirby2",
     [](double x, const duals& b) {
       return (b[0] + b[1] * x + b[2] * x * x) / (1.0 + b[3] * x + b[4] * x * x);
     }},
    {"Lanczos3",
     [](double x, const duals& b) {
       return b[0] * exp(-b[1] * x) + b[2] * exp(-b[3] * x) + b[4] * exp(-b[5] * x);
     }},
    {"MGH09", [](double x, const duals& b) { return b[0] * (x * x + x * b[1]) / (x * x + x * b[2] + b[3]); }},
    {"Misra1a", [](double x, const duals& b) { return b[0] * (1.0 - exp(-b[1] * x)); }},
    {"Rat42", [](double x, const duals& b) { return b[0] / (1.0 + exp(b[1] - b[2] * x)); }},
    {"Thurber",
     [](double x, const duals& b) {
       return (b[0] + b[1] * x + b[2] * x * x + b[3] * x * x * x) /
              (1.0 + b[4] * x + b[5] * x * x + b[6] * x * x * x);
     }},
};

nist_set read_set(const char* name, model f) {
  nist_set set;
  std::ifstream file(std::string(QEL_DATA "nist/") + name + ".dat");
  if (!file) throw std::runtime_error(std::string("no data file of ") + name);
  std::vector<double> y, x;
  double squares = 0;
  std::string line;
  for (bool data = false; std::getline(file, line);) {
    int number;
    double first, second, value, deviation;
    if (std::sscanf(line.c_str(), " b%d = %lf %lf %lf %lf", &number, &first, &second, &value, &deviation) ==
        5) {
      set.problem.start.push_back(first);
      set.second_start.push_back(second);
      set.certified.push_back(value);
      set.deviation.push_back(deviation);
    }
    std::sscanf(line.c_str(), "Residual Sum of Squares: %lf", &squares);
    if (data && std::sscanf(line.c_str(), "%lf %lf", &first, &second) == 2) {
      y.push_back(first);
      x.push_back(second);
    }
    // The line above the numbers; an earlier one of the head says "Data:" with a text.
    std::istringstream words(line);
    std::string label, of_y;
    words >> label >> of_y;
    data = data || (label == "Data:" && of_y == "y");
  }
  set.problem.name = name;
  set.problem.residuals = static_cast<int>(y.size());
  set.problem.minima = {squares};
  set.problem.evaluate = [=](const duals& b, duals& out) {
    for (std::size_t i = 0; i < y.size(); ++i) out[i] = y[i] - f(x[i], b);
  };
  return set;
}

}  // namespace

std::vector<nist_set> nist_sets() {
  std::vector<nist_set> all;
  for (const auto& [name, f] : kModels) all.push_back(read_set(name, f));
  return all;
}

}  // namespace qel::test
