// SPDX-License-Identifier: BSD-3-Clause
// A circle through points by functions: with bounds, and a Jacobian by differences.
#include "tavik/kernel/trust_region_kernel.h"

#include "check.h"

using namespace Tavik::Core;

int main() {
  const Array<double> px{3, 0, -1, 1}, py{1, 3, 2, -1};
  // unknowns: centre and radius; residuals: distances from the circle
  const auto distances = [&](const Array<double>& c) {
    const Array<double> f(px.Length());
    for (int k = 0; k < px.Length(); ++k) f[k] = std::hypot(px[k] - c[0], py[k] - c[1]) - c[2];
    return f;
  };
  Tavik::Kernel::TrustRegionKernel kernel;
  kernel.UseModernRules = true;
  const Array<double> circle{0, 0, 1}, low{-10, -10, 0}, high{10, 10, 10};
  const Array<double> eps{1e-10, 1e-10, 1e-10, 1e-10, 1e-10, 1e-10};
  int steps = 0, reason = 0;
  double before = 0, after = 0;
  kernel.SolveWithBoundaryContraints(3, 4, distances, circle, low, high, nullptr, eps, 100, 100, 0, steps,
                                     reason, before, after);
  std::printf("centre %.4f %.4f, radius %.4f, off by %.4f (%.4f at first), %d steps\n", circle[0], circle[1],
              circle[2], after, before, steps);
  // at the minimum no small move makes it better
  const auto sum = [&](double dx, double dy, double dr) {
    const Array<double> f = distances(Array<double>{circle[0] + dx, circle[1] + dy, circle[2] + dr});
    double squares = 0;
    for (int k = 0; k < f.Length(); ++k) squares += f[k] * f[k];
    return squares;
  };
  const double best = sum(0, 0, 0);
  const double h = 1e-4;
  for (const double other :
       {sum(h, 0, 0), sum(-h, 0, 0), sum(0, h, 0), sum(0, -h, 0), sum(0, 0, h), sum(0, 0, -h)})
    check("a worse circle (1: yes)", other > best, 1, 0);
  return 0;
}
