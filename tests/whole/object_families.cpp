// SPDX-License-Identifier: BSD-3-Clause
// The families whose calls go through an object that is made, used and deleted.
#include "tests/whole/object_families.h"

#include <array>
#include <cmath>

#include "qel/qel.h"

namespace qel::test {
namespace {

/// Reproducible numbers in -1..1.
std::vector<double> numbers(size_t count, unsigned seed) {
  std::vector<double> values(count);
  uint32_t state = seed * 2654435761u + 12345u;
  for (double& value : values) {
    state = state * 1664525u + 1013904223u;
    value = state / 2147483648.0 - 1;
  }
  return values;
}

/// Sums may be shared out to threads in any order; this thread's calls get one thread for its lifetime.
class one_thread {
 public:
  one_thread() : former_(qel_set_num_threads_local(1)) {}
  ~one_thread() { qel_set_num_threads_local(former_); }
  one_thread(const one_thread&) = delete;
  one_thread& operator=(const one_thread&) = delete;

 private:
  int former_;
};

/// A five-point grid, its upper triangle or all of it, counted from 1.
struct grid_matrix {
  std::vector<double> a;
  std::vector<int> ia, ja;
  int n, nnz = 0;
  grid_matrix(int side, bool upper, unsigned seed) : n(side * side) {
    const std::vector<double> noise = numbers(static_cast<size_t>(n), seed);
    for (int i = 0; i < n; ++i) {
      ia.push_back(nnz + 1);
      for (const int j : {i - side, i - 1, i, i + 1, i + side}) {
        const bool neighbour = j == i || std::abs(j - i) == side || j / side == i / side;
        if (j < 0 || j >= n || !neighbour || (upper && j < i)) continue;
        a.push_back(j == i ? 4.5 + noise[static_cast<size_t>(i)] / 4 : -1);
        ja.push_back(j + 1);
        ++nnz;
      }
    }
    ia.push_back(nnz + 1);
  }
};

}  // namespace

std::vector<double> run_complex_transform(unsigned seed) {
  std::vector<double> data = numbers(2 * 60, seed);
  DFTI_DESCRIPTOR_HANDLE plan = nullptr;
  DftiCreateDescriptor(&plan, DFTI_DOUBLE, DFTI_COMPLEX, 1, 60);
  DftiSetValue(plan, DFTI_BACKWARD_SCALE, 1.0 / 60);
  double status = DftiCommitDescriptor(plan);
  status += DftiComputeForward(plan, data.data());
  DftiFreeDescriptor(&plan);
  data.push_back(status);
  return data;
}

std::vector<double> run_real_transform(unsigned seed) {
  const std::vector<double> data = numbers(12 * 20, seed);
  std::vector<double> spectrum(12 * 22);
  const int lengths[] = {12, 20}, strides[] = {0, 11, 1}, data_strides[] = {0, 20, 1};
  DFTI_DESCRIPTOR_HANDLE plan = nullptr, copy = nullptr;
  DftiCreateDescriptor(&plan, DFTI_DOUBLE, DFTI_REAL, 2, lengths);
  DftiSetValue(plan, DFTI_PLACEMENT, DFTI_NOT_INPLACE);
  DftiSetValue(plan, DFTI_CONJUGATE_EVEN_STORAGE, DFTI_COMPLEX_COMPLEX);
  DftiSetValue(plan, DFTI_INPUT_STRIDES, data_strides);
  DftiSetValue(plan, DFTI_OUTPUT_STRIDES, strides);
  double status = DftiCommitDescriptor(plan) + DftiCopyDescriptor(plan, &copy);
  DftiFreeDescriptor(&plan);
  status += DftiComputeForward(copy, const_cast<double*>(data.data()), spectrum.data());
  DftiFreeDescriptor(&copy);
  spectrum.push_back(status);
  return spectrum;
}

std::vector<double> run_convolution(unsigned seed) {
  const std::vector<double> x = numbers(100, seed), y = numbers(700, seed + 1);
  std::vector<double> z(799);
  VSLConvTaskPtr task = nullptr;
  int status = vsldConvNewTaskX1D(&task, VSL_CONV_MODE_AUTO, 100, 700, 799, x.data(), 1);
  status += vsldConvExecX1D(task, y.data(), 1, z.data(), 1) + vslConvDeleteTask(&task);
  z.push_back(status);
  return z;
}

std::vector<double> run_row_form(unsigned seed) {
  grid_matrix m(9, false, seed);
  const std::vector<double> x = numbers(81, seed);
  std::vector<double> y(81), c(2000);
  std::vector<int> jc(2000), ic(82);
  const double one = 1, zero = 0;
  qel_dcsrmv("N", &m.n, &m.n, &one, "SUNF", m.a.data(), m.ja.data(), m.ia.data(), m.ia.data() + 1, x.data(),
             &zero, y.data());
  const int request = 0, sort = 0, room = 2000;
  int info = -1;
  qel_dcsrmultcsr("T", &request, &sort, &m.n, &m.n, &m.n, m.a.data(), m.ja.data(), m.ia.data(), m.a.data(),
                  m.ja.data(), m.ia.data(), c.data(), jc.data(), ic.data(), &room, &info);
  y.insert(y.end(), c.begin(), c.end());
  y.push_back(info);
  return y;
}

std::vector<double> run_direct_solver(unsigned seed) {
  const one_thread serial;
  std::vector<double> results;
  for (const int mtype : {2, -2, 11}) {
    const grid_matrix m(9, mtype != 11, seed);
    std::vector<double> b = numbers(81, seed), x(81);
    void* handle[64] = {};
    int iparm[64] = {}, error = -1, phase = 13;
    const int one = 1, silent = 0;
    pardiso(handle, &one, &one, &mtype, &phase, &m.n, m.a.data(), m.ia.data(), m.ja.data(), nullptr, &one,
            iparm, &silent, b.data(), x.data(), &error);
    results.insert(results.end(), x.begin(), x.end());
    results.push_back(error);
    phase = -1;
    pardiso(handle, &one, &one, &mtype, &phase, &m.n, nullptr, nullptr, nullptr, nullptr, &one, iparm,
            &silent, nullptr, nullptr, &error);
    results.push_back(error);
  }
  return results;
}

std::vector<double> run_simpler_solver(unsigned seed) {
  const one_thread serial;
  const grid_matrix m(9, true, seed);
  const std::vector<double> b = numbers(81, seed);
  std::vector<double> x(81);
  void* handle = nullptr;
  const int levels = QEL_DSS_TERM_LVL_FATAL, kind = QEL_DSS_SYMMETRIC, none = 0, one = 1;
  int status = dss_create(&handle, &levels);
  status += dss_define_structure(&handle, &kind, m.ia.data(), &m.n, &m.n, m.ja.data(), &m.nnz);
  status += dss_reorder(&handle, &none, nullptr);
  status += dss_factor_real(&handle, &none, m.a.data());
  status += dss_solve_real(&handle, &none, b.data(), &one, x.data());
  status += dss_delete(&handle, &none);
  x.push_back(status);
  return x;
}

std::vector<double> run_vector_math(unsigned seed) {
  const std::vector<double> a = numbers(500, seed), b = numbers(500, seed + 1);
  std::vector<double> r(1500);
  vdDiv(500, a.data(), b.data(), r.data());
  vdMul(500, a.data(), b.data(), r.data() + 500);
  vdSub(500, a.data(), b.data(), r.data() + 1000);
  return r;
}

std::vector<double> run_random_stream(unsigned seed) {
  std::vector<double> r(1000);
  qel_random_stream_handle stream = nullptr;
  int status = vslNewStream(&stream, QEL_BRNG_R250, seed);
  status += vdRngUniform(QEL_RNG_UNIFORM_PLAIN, stream, 1000, r.data(), -1, 1);
  status += vslDeleteStream(&stream);
  r.push_back(status);
  return r;
}

std::vector<double> run_least_squares_fit(unsigned seed) {
  const one_thread serial;
  constexpr int kPoints = 12;
  const std::vector<double> noise = numbers(kPoints, seed);
  const int n = 2, m = kPoints, steps = 40, rounds = 20;
  const double radius = 10;
  const std::array<double, 6> eps{1e-10, 1e-10, 1e-10, 1e-10, 1e-10, 1e-10};
  std::vector<double> x{1, 0.5};
  std::array<double, kPoints> f{};
  std::array<double, 2 * kPoints> jacobian{};
  void* run = nullptr;
  dtrnlsp_init(&run, &n, &m, x.data(), eps.data(), &steps, &rounds, &radius);
  int request = 0;
  while (dtrnlsp_solve(&run, f.data(), jacobian.data(), &request) == QEL_NLS_SUCCESS && request >= 0) {
    for (size_t i = 0; i < kPoints; ++i) {
      const double t = static_cast<double>(i), model = std::exp(-x[1] * t);
      if (request == 1) f[i] = x[0] * model - 3 * std::exp(-0.2 * t) - 0.01 * noise[i];
      if (request != 2) continue;
      jacobian[i] = model;
      jacobian[i + kPoints] = -t * x[0] * model;
    }
  }
  dtrnlsp_delete(&run);
  x.push_back(request);
  return x;
}

}  // namespace qel::test
