// SPDX-License-Identifier: BSD-3-Clause
// Convolutions and correlations beside their defining sums, of lengths that take each method.
#include <fmt/core.h>

#include <algorithm>

#include "cli/selftest/recorder.h"
#include "qel/conv.h"

namespace qel::cli::selftest {
namespace {

template <class T>
struct task_calls;
#define QEL_TASKS_OF(T, Public, t)                           \
  template <>                                                \
  struct task_calls<T> {                                     \
    using element = Public;                                  \
    static constexpr auto new_conv = vsl##t##ConvNewTaskX1D; \
    static constexpr auto conv = vsl##t##ConvExecX1D;        \
    static constexpr auto new_corr = vsl##t##CorrNewTaskX1D; \
    static constexpr auto corr = vsl##t##CorrExecX1D;        \
  };
QEL_TASKS_OF(float, float, s)
QEL_TASKS_OF(double, double, d)
QEL_TASKS_OF(complex8, _QEL_Complex8, c)
QEL_TASKS_OF(complex16, _QEL_Complex16, z)
#undef QEL_TASKS_OF

template <class T>
void check_lengths(recorder& out, int nx, int ny, int mode) {
  using calls = task_calls<T>;
  using element = typename calls::element;
  number_source source(static_cast<std::uint64_t>(nx * 10000 + ny));
  const std::vector<T> x = source.numbers<T>(nx), y = source.numbers<T>(ny);
  const int nz = nx + ny - 1;
  const auto as_public = [](auto* p) {
    return reinterpret_cast<
        std::conditional_t<std::is_const_v<std::remove_pointer_t<decltype(p)>>, const element*, element*>>(p);
  };
  for (const bool correlates : {false, true}) {
    std::vector<T> z(static_cast<size_t>(nz) + 1, narrowed<T>(77));
    VSLConvTaskPtr task = nullptr;
    int status =
        (correlates ? calls::new_corr : calls::new_conv)(&task, mode, nx, ny, nz, as_public(x.data()), 1);
    if (status == 0) {
      status = (correlates ? calls::corr : calls::conv)(task, as_public(y.data()), 1, as_public(z.data()), 1);
    }
    vslConvDeleteTask(&task);
    const std::string name = fmt::format("{} {}", kLetter<T>, correlates ? "correlation" : "convolution"),
                      sizes =
                          fmt::format("{} by {}{}", nx, ny, mode == VSL_CONV_MODE_DIRECT ? " direct" : "");
    out.expect(name, sizes + " status", status == 0);
    // Transforms spread the errors over all elements, so all have one scale.
    std::vector<wide> want(z.size(), wide(77));
    for (int r = 0; r < nz; ++r) {
      const int t = correlates ? r + 1 - nx : r;
      wide sum = 0;
      const int first = correlates ? std::max(0, -t) : std::max(0, t - ny + 1),
                last = correlates ? std::min(nx, ny - t) : std::min(nx, t + 1);
      for (int i = first; i < last; ++i) {
        const wide a = widened(x[static_cast<size_t>(i)]),
                   b = widened(y[static_cast<size_t>(correlates ? i + t : t - i)]);
        sum += wide(a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real());
      }
      want[static_cast<size_t>(r)] = sum;
    }
    std::vector<double> scale(z.size(), std::max(1.0, 0.4 * std::min(nx, ny)));
    scale.back() = 0;
    out.compare(name, sizes, worst_error(z, want, scale), sum_bound(std::min(nx, ny)));
  }
}

template <class T>
void check_type(recorder& out) {
  for (int nx = 1; nx <= 20; ++nx)
    for (const int ny : {1, 2, 3, 7, 16, 19}) check_lengths<T>(out, nx, ny, VSL_CONV_MODE_AUTO);
  for (const auto& [nx, ny] :
       {std::pair{100, 33}, {33, 5001}, {4097, 63}, {300, 300}, {256, 257}, {64, 1000}, {3000, 70}}) {
    check_lengths<T>(out, nx, ny, VSL_CONV_MODE_AUTO);
  }
  check_lengths<T>(out, 300, 301, VSL_CONV_MODE_DIRECT);
}

}  // namespace

void check_convolutions(recorder& out) {
  check_type<float>(out);
  check_type<double>(out);
  check_type<complex8>(out);
  check_type<complex16>(out);
}

}  // namespace qel::cli::selftest
