// SPDX-License-Identifier: BSD-3-Clause
// Convolution by a task, and how far two signals are shifted against each other by correlation.
#include "tavik/kernel/convolution.h"
#include "tavik/kernel/correlation.h"

#include "check.h"

using namespace Tavik::Core;
using Tavik::Kernel::Convolution;
using Tavik::Kernel::Correlation;

int main() {
  constexpr int kFilter = 3, kSignal = 200, kShift = 17;
  const Array<double> filter{0.25, 0.5, 0.25}, signal(kSignal), shifted(kSignal);
  for (int k = 0; k < kSignal; ++k) signal[k] = std::sin(0.01 * k * k);
  for (int k = kShift; k < kSignal; ++k) shifted[k] = signal[k - kShift];

  const Array<double> smooth(kFilter + kSignal - 1);
  TaskHandle task =
      Convolution::NewConvTaskX1d(ConvolutionMode::Auto, kFilter, kSignal, smooth.Length(), filter, 1, 0);
  Convolution::ExecuteX1DConvTask(task, signal, 1, 0, smooth, 1, 0);
  Convolution::ConvDeleteTask(task);
  check("a smoothed element", smooth[51], 0.25 * signal[49] + 0.5 * signal[50] + 0.25 * signal[51], 1e-15);

  const Array<double> likeness(2 * kSignal - 1);
  task =
      Correlation::NewCorrTaskX1d(CorrelationMode::Auto, kSignal, kSignal, likeness.Length(), signal, 1, 0);
  check("status", Correlation::ExecuteX1DCorrTask(task, shifted, 1, 0, likeness, 1, 0), 0, 0);
  Correlation::CorrDeleteTask(task);
  int best = 0;
  for (int k = 1; k < likeness.Length(); ++k)
    if (likeness[k] > likeness[best]) best = k;
  check("the shift", best + 1 - kSignal, kShift, 0);
  std::printf("shifted by %d\n", best + 1 - kSignal);
  return 0;
}
