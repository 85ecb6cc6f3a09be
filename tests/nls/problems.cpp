// SPDX-License-Identifier: BSD-3-Clause
#include "tests/nls/problems.h"

#include <iterator>

namespace qel::test {
namespace {

std::vector<nls_problem> make_problems() {
  std::vector<nls_problem> all;
  const auto add = [&](const char* name, std::vector<double> start, int m, std::vector<double> minima,
                       std::function<void(const duals&, duals&)> f) {
    all.push_back({name, std::move(start), m, std::move(f), std::move(minima)});
  };
  const auto index = [](std::size_t i) { return static_cast<double>(i); };

  add("Rosenbrock", {-1.2, 1}, 2, {0}, [](const duals& x, duals& f) {
    f[0] = 10.0 * (x[1] - x[0] * x[0]);
    f[1] = 1.0 - x[0];
  });
  add("Freudenstein-Roth", {0.5, -2}, 2, {0, 48.9842536792}, [](const duals& x, duals& f) {
    f[0] = -13.0 + x[0] + ((5.0 - x[1]) * x[1] - 2.0) * x[1];
    f[1] = -29.0 + x[0] + ((x[1] + 1.0) * x[1] - 14.0) * x[1];
  });
  add("Powell badly scaled", {0, 1}, 2, {0}, [](const duals& x, duals& f) {
    f[0] = 1e4 * x[0] * x[1] - 1.0;
    f[1] = exp(-x[0]) + exp(-x[1]) - 1.0001;
  });
  add("Brown badly scaled", {1, 1}, 3, {0}, [](const duals& x, duals& f) {
    f[0] = x[0] - 1e6;
    f[1] = x[1] - 2e-6;
    f[2] = x[0] * x[1] - 2.0;
  });
  add("Beale", {1, 1}, 3, {0}, [](const duals& x, duals& f) {
    f[0] = 1.5 - x[0] * (1.0 - x[1]);
    f[1] = 2.25 - x[0] * (1.0 - x[1] * x[1]);
    f[2] = 2.625 - x[0] * (1.0 - x[1] * x[1] * x[1]);
  });
  add("Jennrich-Sampson", {0.3, 0.4}, 10, {124.362182356}, [=](const duals& x, duals& f) {
    for (std::size_t i = 0; i < 10; ++i)
      f[i] = 2.0 + 2.0 * index(i + 1) - (exp(index(i + 1) * x[0]) + exp(index(i + 1) * x[1]));
  });
  add("Helical valley", {-1, 0, 0}, 3, {0}, [](const duals& x, duals& f) {
    f[0] = 10.0 * (x[2] - 10.0 * turn(x[1], x[0]));
    f[1] = 10.0 * (sqrt(x[0] * x[0] + x[1] * x[1]) - 1.0);
    f[2] = x[2];
  });
  add("Bard", {1, 1, 1}, 15, {8.21487730658e-3, 17.4286926698}, [=](const duals& x, duals& f) {
    static constexpr double y[] = {.14, .18, .22, .25, .29,  .32,  .35, .39,
                                   .37, .58, .73, .96, 1.34, 2.10, 4.39};
    for (std::size_t i = 0; i < 15; ++i) {
      const double u = index(i + 1), v = 15 - index(i), w = u < v ? u : v;
      f[i] = y[i] - (x[0] + u / (v * x[1] + w * x[2]));
    }
  });
  add("Gaussian", {0.4, 1, 0}, 15, {1.12793276962e-8}, [=](const duals& x, duals& f) {
    static constexpr double y[] = {.0009, .0044, .0175, .0540, .1295, .2420, .3521, .3989,
                                   .3521, .2420, .1295, .0540, .0175, .0044, .0009};
    for (std::size_t i = 0; i < 15; ++i)
      f[i] = x[0] * exp(-x[1] * square((7 - index(i)) / 2 - x[2]) / 2.0) - y[i];
  });
  add("Meyer", {0.02, 4000, 250}, 16, {87.9458551737}, [=](const duals& x, duals& f) {
    static constexpr double y[] = {34780, 28610, 23650, 19630, 16370, 13720, 11540, 9744,
                                   8261,  7030,  6005,  5147,  4427,  3820,  3307,  2872};
    for (std::size_t i = 0; i < 16; ++i) f[i] = x[0] * exp(x[1] / (45 + 5 * index(i + 1) + x[2])) - y[i];
  });
  add("Box 3D", {0, 10, 20}, 10, {0}, [=](const duals& x, duals& f) {
    for (std::size_t i = 0; i < 10; ++i) {
      const double t = index(i + 1) / 10;
      f[i] = exp(-t * x[0]) - exp(-t * x[1]) - x[2] * (std::exp(-t) - std::exp(-10 * t));
    }
  });
  add("Powell singular", {3, -1, 0, 1}, 4, {0}, [](const duals& x, duals& f) {
    f[0] = x[0] + 10.0 * x[1];
    f[1] = std::sqrt(5.0) * (x[2] - x[3]);
    f[2] = square(x[1] - 2.0 * x[2]);
    f[3] = std::sqrt(10.0) * square(x[0] - x[3]);
  });
  add("Wood", {-3, -1, -3, -1}, 6, {0}, [](const duals& x, duals& f) {
    f[0] = 10.0 * (x[1] - x[0] * x[0]);
    f[1] = 1.0 - x[0];
    f[2] = std::sqrt(90.0) * (x[3] - x[2] * x[2]);
    f[3] = 1.0 - x[2];
    f[4] = std::sqrt(10.0) * (x[1] + x[3] - 2.0);
    f[5] = (x[1] - x[3]) / std::sqrt(10.0);
  });
  // Its second minimum lies at infinity.
  add("Kowalik-Osborne", {0.25, 0.39, 0.415, 0.39}, 11, {3.07505603849e-4, 1.02734e-3},
      [](const duals& x, duals& f) {
        static constexpr double y[] = {.1957, .1947, .1735, .1600, .0844, .0627,
                                       .0456, .0342, .0323, .0235, .0246},
                                u[] = {4, 2, 1, .5, .25, .167, .125, .1, .0833, .0714, .0625};
        for (std::size_t i = 0; i < 11; ++i)
          f[i] = y[i] - x[0] * (u[i] * u[i] + u[i] * x[1]) / (u[i] * u[i] + u[i] * x[2] + x[3]);
      });
  add("Brown-Dennis", {25, 5, -5, -1}, 20, {85822.2016264}, [=](const duals& x, duals& f) {
    for (std::size_t i = 0; i < 20; ++i) {
      const double t = index(i + 1) / 5;
      f[i] = square(x[0] + t * x[1] - std::exp(t)) + square(x[2] + x[3] * std::sin(t) - std::cos(t));
    }
  });
  add("Osborne 1", {0.5, 1.5, -1, 0.01, 0.02}, 33, {5.46489469748e-5, 1.10603621875},
      [=](const duals& x, duals& f) {
        static constexpr double y[] = {.844, .908, .932, .936, .925, .908, .881, .850, .818, .784, .751,
                                       .718, .685, .658, .628, .603, .580, .558, .538, .522, .506, .490,
                                       .478, .467, .457, .448, .438, .431, .424, .420, .414, .411, .406};
        for (std::size_t i = 0; i < 33; ++i) {
          const double t = 10 * index(i);
          f[i] = y[i] - (x[0] + x[1] * exp(-t * x[3]) + x[2] * exp(-t * x[4]));
        }
      });
  add("Biggs EXP6", {1, 2, 1, 1, 1, 1}, 13, {0, 5.65564991798e-3, 0.306366772629},
      [=](const duals& x, duals& f) {
        for (std::size_t i = 0; i < 13; ++i) {
          const double t = index(i + 1) / 10;
          const double y = std::exp(-t) - 5 * std::exp(-10 * t) + 3 * std::exp(-4 * t);
          f[i] = x[2] * exp(-t * x[0]) - x[3] * exp(-t * x[1]) + x[5] * exp(-t * x[4]) - y;
        }
      });
  add("Osborne 2", {1.3, 0.65, 0.65, 0.7, 0.6, 3, 5, 7, 2, 4.5, 5.5}, 65, {4.01377362935e-2, 1.78981358688},
      [=](const duals& x, duals& f) {
        static constexpr double y[] = {1.366, 1.191, 1.112, 1.013, .991, .885, .831, .847, .786, .725, .746,
                                       .679,  .608,  .655,  .616,  .606, .602, .626, .651, .724, .649, .649,
                                       .694,  .644,  .624,  .661,  .612, .558, .533, .495, .500, .423, .395,
                                       .375,  .372,  .391,  .396,  .405, .428, .429, .523, .562, .607, .653,
                                       .672,  .708,  .633,  .668,  .645, .632, .591, .559, .597, .625, .739,
                                       .710,  .729,  .720,  .636,  .581, .428, .292, .162, .098, .054};
        for (std::size_t i = 0; i < 65; ++i) {
          const double t = index(i) / 10;
          f[i] = y[i] - (x[0] * exp(-t * x[4]) + x[1] * exp(-x[5] * square(t - x[8])) +
                         x[2] * exp(-x[6] * square(t - x[9])) + x[3] * exp(-x[7] * square(t - x[10])));
        }
      });
  const auto watson = [=](const duals& x, duals& f) {
    for (std::size_t i = 0; i < 29; ++i) {
      const double t = index(i + 1) / 29;
      dual derivative = 0, sum = 0;
      double power = 1;
      for (std::size_t j = 0; j < x.size(); ++j) {
        sum = sum + power * x[j];
        if (j + 1 < x.size()) derivative = derivative + index(j + 1) * power * x[j + 1];
        power *= t;
      }
      f[i] = derivative - sum * sum - 1.0;
    }
    f[29] = x[0];
    f[30] = x[1] - x[0] * x[0] - 1.0;
  };
  add("Watson 6", std::vector<double>(6), 31, {2.28767005355e-3}, watson);
  add("Watson 9", std::vector<double>(9), 31, {1.39976013998e-6}, watson);
  const auto chebyquad = [](const duals& x, duals& f) {
    const auto n = static_cast<double>(x.size());
    for (dual& value : f) value = 0;
    for (const dual& xj : x) {
      dual before = 1, now = 2.0 * xj - 1.0;
      const dual twice = 2.0 * now;
      for (dual& value : f) {
        value = value + now / n;
        const dual next = twice * now - before;
        before = now;
        now = next;
      }
    }
    for (std::size_t i = 1; i < f.size(); i += 2)
      f[i] = f[i] + 1.0 / (square(static_cast<double>(i + 1)) - 1);
  };
  std::vector<double> spread;
  for (int j = 1; j <= 8; ++j) spread.push_back(j / 9.0);
  add("Chebyquad 8", spread, 8, {3.51687372568e-3}, chebyquad);
  spread.clear();
  for (int j = 1; j <= 9; ++j) spread.push_back(j / 10.0);
  add("Chebyquad 9", spread, 9, {0}, chebyquad);
  add("Brown almost linear", std::vector<double>(10, 0.5), 10, {0, 1}, [](const duals& x, duals& f) {
    dual sum = 0, product = 1;
    for (const dual& xj : x) {
      sum = sum + xj;
      product = product * xj;
    }
    for (std::size_t i = 0; i + 1 < x.size(); ++i) f[i] = x[i] + sum - 11.0;
    f[9] = product - 1.0;
  });
  add("Linear, full rank", std::vector<double>(5, 1), 10, {5}, [](const duals& x, duals& f) {
    dual sum = 0;
    for (const dual& xj : x) sum = sum + xj;
    for (std::size_t i = 0; i < 10; ++i) f[i] = (i < 5 ? x[i] : dual(0)) - 2.0 * sum / 10.0 - 1.0;
  });
  return all;
}

}  // namespace

const std::vector<nls_problem>& classic_problems() {
  static const std::vector<nls_problem> all = make_problems();
  return all;
}

void evaluate(const nls_problem& problem, const double* x, double* f, double* fjac) {
  const std::size_t n = problem.start.size(), m = static_cast<std::size_t>(problem.residuals);
  duals at(x, x + n), result(m);
  problem.evaluate(at, result);
  for (std::size_t i = 0; i < m; ++i) f[i] = result[i].value;
  if (fjac == nullptr) return;
  for (std::size_t j = 0; j < n; ++j) {
    at[j].slope = 1;
    problem.evaluate(at, result);
    at[j].slope = 0;
    for (std::size_t i = 0; i < m; ++i) fjac[j * m + i] = result[i].slope;
  }
}

}  // namespace qel::test
