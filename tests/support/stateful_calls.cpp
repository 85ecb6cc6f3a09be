// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/stateful_calls.h"

#include <algorithm>
#include <cmath>

#include "qel/qel.h"
#include "tavik/kernel/convolution.h"
#include "tavik/kernel/correlation.h"
#include "tavik/kernel/fft_kernel.h"
#include "tavik/kernel/fft_manager.h"
#include "tavik/kernel/qel_pardiso_solver.h"
#include "tavik/kernel/trust_region_kernel.h"

namespace qel::test {

std::vector<double> life::numbers(size_t count, size_t diagonal_step) {
  std::vector<double> values(count);
  const size_t stream = ++streams_ * 100003;
  for (size_t k = 0; k < count; ++k) values[k] = numbers_(stream + k);
  if (diagonal_step > 0)
    for (size_t k = 0; k < count; k += diagonal_step) values[k] = std::fabs(values[k]) + 8;
  return values;
}

void life::expect_done(int status, std::initializer_list<int> no_memory) {
  told = told || std::find(no_memory.begin(), no_memory.end(), status) != no_memory.end();
}

namespace {

using Tavik::Core::Array;

// ---- Transforms ----

struct transform_case {
  int precision, domain;
  std::vector<int> lengths;
  int parameter, value;
};

void transform(life& run, const transform_case& c) {
  const int dimension = static_cast<int>(c.lengths.size());
  std::vector<double> data = run.numbers(1 << 17), other = run.numbers(1 << 17), back(data.size());
  const auto out = [&](DFTI_DESCRIPTOR_HANDLE handle) {
    int placement = 0;
    DftiGetValue(handle, DFTI_PLACEMENT, &placement);
    return placement == DFTI_NOT_INPLACE;
  };
  std::vector<int> lengths = c.lengths;
  for (int& length : lengths) length = run.scalar(length);
  const int parameter = run.scalar(c.parameter), value = run.scalar(c.value);
  run.during([&] {
    DFTI_DESCRIPTOR_HANDLE handle = nullptr, copy = nullptr;
    const auto step = [&](int status) {
      run.expect_done(status, {DFTI_MEMORY_ERROR});
      return status == DFTI_NO_ERROR;
    };
    const bool made = step(
        dimension == 1 ? DftiCreateDescriptor(&handle, c.precision, c.domain, 1, lengths[0])
                       : DftiCreateDescriptor(&handle, c.precision, c.domain, dimension, lengths.data()));
    if (made) {
      DftiSetValue(handle, parameter, value);
      DftiSetValue(handle, DFTI_FORWARD_SCALE, 0.25);
      // One after the other: at a distance of 0 threads would share the data.
      if (parameter == DFTI_NUMBER_OF_TRANSFORMS) DftiSetValue(handle, DFTI_INPUT_DISTANCE, lengths[0]);
      // Strided results go through a buffer of the call's own.
      const int strides[] = {0, 2};
      if (dimension == 1 && out(handle)) DftiSetValue(handle, DFTI_OUTPUT_STRIDES, strides);
      const bool split = value == DFTI_REAL_REAL;
      if (step(DftiCommitDescriptor(handle)) && step(DftiCopyDescriptor(handle, &copy))) {
        step(DftiComputeForward(handle, data.data(), split || out(handle) ? other.data() : nullptr));
        step(DftiComputeBackward(copy, back.data(), split || out(copy) ? other.data() : nullptr));
      }
    }
    if (copy != nullptr) DftiFreeDescriptor(&copy);
    if (handle != nullptr) DftiFreeDescriptor(&handle);
  });
  run.result = data;
  run.result.insert(run.result.end(), other.begin(), other.end());
}

// ---- Convolution ----

template <class New, class Exec>
void convolve(life& run, New make, Exec execute, int mode) {
  using element = std::remove_const_t<
      std::remove_pointer_t<decltype([]<class R, class... P>(R (*)(VSLConvTaskPtr, P...)) {
        return std::get<0>(std::tuple<P...>());
      }(execute))>>;
  const std::vector<double> x = run.numbers(3000), y = run.numbers(3000);
  std::vector<double> z(16000);
  // Whatever the element type, these bytes are numbers of it; floats get halves of doubles, which are finite.
  const auto of = [](const auto& v) { return reinterpret_cast<const element*>(v.data()); };
  const int nx = run.scalar(700), ny = run.scalar(900), nz = run.scalar(1500);
  run.during([&] {
    VSLConvTaskPtr task = nullptr;
    run.expect_done(make(&task, mode, nx, ny, nz, of(x), run.scalar(1)), {VSL_ERROR_MEM_FAILURE});
    if (task == nullptr) return;
    run.expect_done(vslConvSetInternalPrecision(task, 2), {});
    run.expect_done(execute(task, of(y), run.scalar(-1), reinterpret_cast<element*>(z.data()), run.scalar(1)),
                    {VSL_ERROR_MEM_FAILURE, VSL_CC_ERROR_ALLOCATION_FAILURE, VSL_CC_ERROR_KERNEL_FAILURE});
    vslConvDeleteTask(&task);
  });
  run.result = z;
}

void correlate_both(life& run) {
  const std::vector<double> x = run.numbers(700), y = run.numbers(900);
  std::vector<double> z(1500);
  run.during([&] {
    VSLCorrTaskPtr task = nullptr;
    run.expect_done(vsldCorrNewTask1D(&task, run.scalar(VSL_CORR_MODE_DIRECT), run.scalar(700),
                                      run.scalar(900), run.scalar(1500)),
                    {VSL_ERROR_MEM_FAILURE});
    if (task == nullptr) return;
    run.expect_done(vsldCorrExec1D(task, x.data(), 1, y.data(), 1, z.data(), 1),
                    {VSL_ERROR_MEM_FAILURE, VSL_CC_ERROR_ALLOCATION_FAILURE, VSL_CC_ERROR_KERNEL_FAILURE});
    vslCorrDeleteTask(&task);
  });
  run.result = z;
}

// ---- Vectors and random numbers ----

void vector_math(life& run) {
  const std::vector<double> a = run.numbers(20000), b = run.numbers(20000);
  std::vector<double> r(60000);
  const int length = run.scalar(20000);
  run.during([&] {
    const unsigned mode = qel_vml_set_mode(VML_HA | VML_ERRMODE_ERRNO);
    vdDiv(length, a.data(), b.data(), r.data());
    vddiv(&length, a.data(), b.data(), r.data());
    vdMul(run.scalar(20000), a.data(), b.data(), r.data() + 20000);
    vdSub(run.scalar(20000), a.data(), b.data(), r.data() + 40000);
    qel_vml_set_status(VML_STATUS_OK);
    qel_vml_set_callback(nullptr);
    if (qel_vml_get_status() == VML_STATUS_OK && qel_vml_get_mode() != mode) qel_vml_set_mode(mode);
  });
  run.result = r;
}

void random_numbers(life& run) {
  std::vector<double> r(1000);
  const double low = run.numbers(1)[0], high = low + 1;
  run.during([&] {
    qel_random_stream_handle stream = nullptr;
    run.expect_done(vslNewStream(&stream, run.scalar(QEL_BRNG_R250), 5), {QEL_RNG_NO_MEMORY});
    if (stream == nullptr) return;
    vdRngUniform(run.scalar(QEL_RNG_UNIFORM_PLAIN), stream, run.scalar(1000), r.data(), low, high);
    vslDeleteStream(&stream);
  });
  run.result = r;
}

// ---- Sparse systems ----

/// The five-point pattern on a square of that side, or its upper triangle.
struct grid_matrix {
  std::vector<int> ia{1}, ja;
  std::vector<double> a;
  int n;
  grid_matrix(life& run, int side, bool upper, bool pairs) : n(side * side) {
    for (int i = 0; i < n; ++i) {
      for (const int j : {i - side, i - 1, i, i + 1, i + side}) {
        const bool wraps = (j == i - 1 && i % side == 0) || (j == i + 1 && j % side == 0);
        if (j >= (upper ? i : 0) && j < n && !wraps) ja.push_back(j + 1);
      }
      ia.push_back(static_cast<int>(ja.size()) + 1);
    }
    const size_t parts = pairs ? 2 : 1;
    a = run.numbers(ja.size() * parts);
    size_t k = 0;
    for (int i = 0; i < n; ++i)
      for (; k + 1 < static_cast<size_t>(ia[static_cast<size_t>(i) + 1]); ++k)
        if (ja[k] == i + 1) {
          a[k * parts] = std::fabs(a[k * parts]) + 6;
          if (pairs) a[k * parts + 1] = 0;
        }
  }
};

struct solver_case {
  int mtype;
  std::vector<std::pair<int, int>> iparm;
};

void solve_directly(life& run, const solver_case& c) {
  const bool pairs = c.mtype == 3 || c.mtype == 13 || c.mtype == 6 || std::abs(c.mtype) == 4;
  const grid_matrix m(run, std::clamp(run.n / 8, 3, 14), c.mtype % 2 == 0, pairs);
  const size_t count = static_cast<size_t>(m.n) * (pairs ? 2 : 1);
  std::vector<double> b = run.numbers(2 * count), x(2 * count);
  int iparm[64] = {1, 2, 0, 0, 0, 0, 0, 2, 0, 13, 1, 0, 1, 0, 0, 0, 0, -1, -1, 0, 1};
  for (const auto& [number, value] : c.iparm) iparm[number - 1] = value;
  std::vector<float> single(m.a.begin(), m.a.end());
  const bool is_single = iparm[27] == 1;
  const void* const a = is_single ? static_cast<const void*>(single.data()) : m.a.data();
  std::vector<int> perm(static_cast<size_t>(m.n));
  run.during([&] {
    void* pt[64] = {};
    int error = 0;
    const auto call = [&](int phase) {
      const int maxfct = run.scalar(2), mnum = run.scalar(2), mtype = run.scalar(c.mtype),
                n = run.scalar(m.n), nrhs = run.scalar(2), msglvl = run.scalar(0), given = run.scalar(phase);
      pardiso(pt, &maxfct, &mnum, &mtype, &given, &n, a, m.ia.data(), m.ja.data(), perm.data(), &nrhs, iparm,
              &msglvl, b.data(), x.data(), &error);
      // -4 comes from a factorisation that had no memory for its pivots.
      run.expect_done(error, {-2, -4, -9});
      return error == 0;
    };
    if (call(11) && call(22) && call(331) && call(332) && call(333)) call(23);
    qel_pardiso_quality quality;
    const int verdict = pt[0] == nullptr ? -1
                                         : qel_pardiso_report(pt, run.scalar(2), a, m.ia.data(), m.ja.data(),
                                                              1, b.data(), x.data(), nullptr, &quality);
    run.expect_done(verdict, {-2});
    const int all = -1, one = 1, none = 0;
    pardiso(pt, &one, &one, &c.mtype, &all, &m.n, nullptr, m.ia.data(), m.ja.data(), nullptr, &one, iparm,
            &none, nullptr, nullptr, &error);
  });
  if (!is_single) run.result = x;
}

void solve_simply(life& run) {
  const grid_matrix m(run, 8, false, false);
  std::vector<double> b = run.numbers(64), x(64), values(16);
  const int entries = static_cast<int>(m.ja.size());
  run.during([&] {
    void* handle = nullptr;
    // The levels are not spoiled: they are what keeps statuses from ending the process.
    const int levels = QEL_DSS_TERM_LVL_FATAL, kind = QEL_DSS_TERM_LVL_FATAL | QEL_DSS_NON_SYMMETRIC;
    const auto step = [&](int status) {
      run.expect_done(status, {-2, -1, -3});
      return status == 0;
    };
    if (!step(dss_create(&handle, &levels))) return;
    const int rows = run.scalar(m.n), columns = run.scalar(m.n), count = run.scalar(entries),
              nrhs = run.scalar(1), data = run.scalar(1);
    if (step(dss_define_structure(&handle, &kind, m.ia.data(), &rows, &columns, m.ja.data(), &count)) &&
        step(dss_reorder(&handle, &levels, nullptr)) &&
        step(dss_factor(&handle, &levels, m.a.data(), &data)) &&
        step(dss_factor_real(&handle, &levels, m.a.data())) &&
        step(dss_solve_real(&handle, &levels, b.data(), &nrhs, x.data()))) {
      step(dss_statistics(&handle, &levels, "determinant,flops,peakmem", values.data()));
      // Kept: a solve that had no memory says 0, as the solver underneath does.
      run.told = run.told || std::all_of(x.begin(), x.end(), [](double v) { return v == 0; });
    }
    dss_delete(&handle, &levels);
  });
  run.result = x;
}

// ---- Least squares ----

/// Residuals whose minimum is near 1 .. n, in numbers of the run.
struct residuals {
  std::vector<double> offsets;
  size_t n;
  void value(const double* x, double* f) const {
    for (size_t i = 0; i < n; ++i) f[i] = x[i] * x[i] + x[(i + 1) % n] - 2 - offsets[i] * 0.25;
  }
  void slopes(const double* x, double* j) const {
    std::fill_n(j, n * n, 0.0);
    for (size_t i = 0; i < n; ++i) {
      j[i + i * n] += 2 * x[i];
      j[i + (i + 1) % n * n] += 1;
    }
  }
};

void minimise(life& run, bool bounded) {
  const int n = std::min(run.n, 30);
  const auto size = static_cast<size_t>(n);
  const residuals r{run.numbers(size), size};
  std::vector<double> x(size, 1.5), low(size, 0.5), up(size, 3), eps(6, 1e-9), f(size), jacobian(size * size);
  const int unknowns = run.scalar(n), count = run.scalar(n), steps = run.scalar(60), rounds = run.scalar(40);
  const double rs = 1;
  run.during([&] {
    void* solver = nullptr;
    const int made =
        bounded ? dtrnlspbc_init(&solver, &unknowns, &count, x.data(), low.data(), up.data(), eps.data(),
                                 &steps, &rounds, &rs)
                : dtrnlsp_init(&solver, &unknowns, &count, x.data(), eps.data(), &steps, &rounds, &rs);
    run.expect_done(made, {QEL_NLS_OUT_OF_MEMORY});
    if (made != QEL_NLS_SUCCESS) return;
    const int option = run.scalar(QEL_NLS_MODERN), on = 1;
    qel_dtrnlsp_option(&solver, &option, &on);
    int request = 0, iterations = 0, reason = 0, evaluations = 0, jacobians = 0;
    double r1 = 0, r2 = 0;
    const auto solve = bounded ? dtrnlspbc_solve : dtrnlsp_solve;
    for (int step = 0; step < 1000 && request >= 0; ++step) {
      if (solve(&solver, f.data(), jacobian.data(), &request) != QEL_NLS_SUCCESS) break;
      if (request == 1) r.value(x.data(), f.data());
      if (request == 2) r.slopes(x.data(), jacobian.data());
    }
    (bounded ? dtrnlspbc_get : dtrnlsp_get)(&solver, &iterations, &reason, &r1, &r2);
    qel_dtrnlsp_evaluations(&solver, &evaluations, &jacobians);
    qel_nls_reason(&reason);
    (bounded ? dtrnlspbc_delete : dtrnlsp_delete)(&solver);
  });
  run.result = x;
}

void cubes(int* m, int* n, double* x, double* f) {
  for (int i = 0; i < *m; ++i) f[i] = x[i % *n] * x[i % *n] * x[i % *n];
}
void differentiate(life& run, bool by_requests) {
  const int n = run.scalar(20), m = run.scalar(25), threads = run.scalar(3);
  std::vector<double> x = run.numbers(20), jacobian(500), f1(25), f2(25);
  const double eps = 1e-6;
  run.during([&] {
    if (!by_requests) {
      run.expect_done(qel_djacobi(cubes, &n, &m, jacobian.data(), x.data(), &eps, &threads),
                      {QEL_NLS_OUT_OF_MEMORY});
      return;
    }
    void* solver = nullptr;
    run.expect_done(djacobi_init(&solver, &n, &m, x.data(), jacobian.data(), &eps), {QEL_NLS_OUT_OF_MEMORY});
    if (solver == nullptr) return;
    int request = 0, unknowns = 20, count = 25;
    do {
      djacobi_solve(&solver, f1.data(), f2.data(), &request);
      if (request != 0) cubes(&count, &unknowns, x.data(), request == 1 ? f1.data() : f2.data());
    } while (request != 0);
    djacobi_delete(&solver);
  });
  run.result = jacobian;
}
void differentiate_untold(life& run) {
  // Without memory for several threads the plain form fills nothing and says nothing.
  const int n = run.scalar(20), m = 25;
  std::vector<double> x = run.numbers(20), jacobian(500);
  const double eps = 1e-6;
  run.during([&] {
    const int status = djacobi(cubes, &n, &m, jacobian.data(), x.data(), &eps);
    run.told = status == QEL_NLS_OUT_OF_MEMORY ||
               std::all_of(jacobian.begin(), jacobian.end(), [](double v) { return v == 0; });
  });
  run.result = jacobian;
}

// ---- Classes ----

Array<double> array_of(const std::vector<double>& values) { return Array<double>(values); }
std::vector<double> values_of(const Array<double>& array) {
  std::vector<double> values;
  for (int i = 0; i < array.Length(); ++i) values.push_back(array[i]);
  return values;
}

void transform_class(life& run) {
  const Array<double> data = array_of(run.numbers(60));
  const Array<int> lengths = {run.scalar(60)};
  run.during([&] {
    Tavik::Kernel::FFTManager manager;
    manager.ConfigureFFTManager(Tavik::Core::FFTPrecision::Double, Tavik::Core::FFTDomain::Real, lengths,
                                run.scalar(1));
    const auto kernel = Tavik::Kernel::FFTKernelInstantiator().CreateDoubleKernel();
    kernel->Forward1DFFT(manager, data, 0);
    const auto clone = manager.Clone();
    clone->Dispose();
  });
  run.result = values_of(data);
}
void convolution_class(life& run) {
  using Tavik::Kernel::Convolution;
  const Array<double> x = array_of(run.numbers(300)), y = array_of(run.numbers(400)), z(600);
  const int nx = run.scalar(300), ny = run.scalar(400), nz = run.scalar(600);
  run.during([&] {
    const auto task = Convolution::NewConvTaskX1d(Tavik::Core::ConvolutionMode::Auto, nx, ny, nz, x, 1, 0);
    try {
      Convolution::ExecuteX1DConvTask(task, y, 1, 0, z, 1, 0);
    } catch (const std::exception&) {
      run.told = true;
    }
    Convolution::ConvDeleteTask(task);
  });
  run.result = values_of(z);
}
void solver_class(life& run) {
  const grid_matrix m(run, 6, false, false);
  const Array<int> ia(m.ia), ja(m.ja);
  const Array<double> a = array_of(m.a), b = array_of(run.numbers(36)), x(36);
  run.during([&] {
    const auto solver = Tavik::Kernel::QelPardisoSolver::GetInstance(0, run.scalar(11));
    const int factored = solver->Factor(run.scalar(m.n), a, ia, ja);
    run.expect_done(factored, {-2, -4});
    if (factored == 0) solver->Solve(run.scalar(m.n), a, ia, ja, run.scalar(1), b, x);
    // Kept: a solve that had no memory says 0.
    run.told = run.told || (factored == 0 && x[0] == 0);
    solver->Dispose();
  });
  run.result = values_of(x);
}
void trust_region_class(life& run) {
  const std::vector<double> offsets = run.numbers(5);
  const Array<double> x(std::vector<double>(5, 1.5)), eps(std::vector<double>(6, 1e-9));
  const auto f = [&](const Array<double>& at) {
    Array<double> values(5);
    for (int i = 0; i < 5; ++i) values[i] = at[i] * at[i] - 2 - offsets[static_cast<size_t>(i)];
    return values;
  };
  run.during([&] {
    int iterations = 0, reason = 0;
    double r1 = 0, r2 = 0;
    Tavik::Kernel::TrustRegionKernel().Solve(run.scalar(5), run.scalar(5), f, x, 0, nullptr, eps,
                                             run.scalar(50), run.scalar(40), 1, iterations, reason, r1, r2);
  });
  run.result = values_of(x);
}

}  // namespace

const std::vector<life_row>& life_rows() {
  static const std::vector<life_row> rows = [] {
    std::vector<life_row> all = {
        {"correlation of two given arrays", "vsldCorrNewTask1D vsldCorrExec1D vslCorrDeleteTask",
         correlate_both},
        {"vector math",
         "vdDiv vddiv vdMul vdSub qel_vml_get_mode qel_vml_set_mode qel_vml_get_status qel_vml_set_status "
         "qel_vml_set_callback",
         vector_math},
        {"random stream", "vslNewStream vslDeleteStream vdRngUniform", random_numbers},
        {"simple solver",
         "dss_create dss_define_structure dss_delete dss_factor dss_factor_real dss_factor_complex "
         "dss_reorder "
         "dss_solve_real dss_solve_complex dss_statistics",
         solve_simply},
        {"trust region",
         "dtrnlsp_init dtrnlsp_solve dtrnlsp_get dtrnlsp_delete qel_dtrnlsp_option qel_dtrnlsp_evaluations "
         "qel_nls_reason",
         [](life& run) { minimise(run, false); }},
        {"trust region with bounds", "dtrnlspbc_init dtrnlspbc_solve dtrnlspbc_get dtrnlspbc_delete",
         [](life& run) { minimise(run, true); }},
        {"differences by requests", "djacobi_init djacobi_solve djacobi_delete",
         [](life& run) { differentiate(run, true); }},
        {"differences by calls", "qel_djacobi", [](life& run) { differentiate(run, false); }},
        {"differences by calls, plain", "djacobi", differentiate_untold},
        {"FFTManager", "", transform_class},
        {"Convolution", "", convolution_class},
        {"QelPardisoSolver", "", solver_class},
        {"TrustRegionKernel", "", trust_region_class},
    };
    const transform_case transforms[] = {
        {DFTI_DOUBLE, DFTI_COMPLEX, {8}, DFTI_PLACEMENT, DFTI_INPLACE},
        {DFTI_SINGLE, DFTI_COMPLEX, {60}, DFTI_PLACEMENT, DFTI_NOT_INPLACE},
        {DFTI_DOUBLE, DFTI_COMPLEX, {149}, DFTI_PLACEMENT, DFTI_INPLACE},
        {DFTI_DOUBLE, DFTI_COMPLEX, {151}, DFTI_PLACEMENT, DFTI_INPLACE},
        {DFTI_DOUBLE, DFTI_COMPLEX, {13 * 13}, DFTI_PLACEMENT, DFTI_NOT_INPLACE},
        {DFTI_DOUBLE, DFTI_COMPLEX, {12, 30}, DFTI_PLACEMENT, DFTI_NOT_INPLACE},
        {DFTI_SINGLE, DFTI_COMPLEX, {4, 5, 6}, DFTI_PLACEMENT, DFTI_INPLACE},
        {DFTI_DOUBLE, DFTI_COMPLEX, {100}, DFTI_COMPLEX_STORAGE, DFTI_REAL_REAL},
        {DFTI_DOUBLE, DFTI_COMPLEX, {5184}, DFTI_ORDERING, DFTI_BACKWARD_SCRAMBLED},
        {DFTI_DOUBLE, DFTI_COMPLEX, {100}, DFTI_NUMBER_OF_USER_THREADS, 3},
        {DFTI_DOUBLE, DFTI_COMPLEX, {100}, DFTI_NUMBER_OF_TRANSFORMS, 7},
        {DFTI_DOUBLE, DFTI_COMPLEX, {1 << 15}, DFTI_PLACEMENT, DFTI_INPLACE},
        {DFTI_DOUBLE, DFTI_REAL, {100}, DFTI_PACKED_FORMAT, DFTI_PACK_FORMAT},
        {DFTI_SINGLE, DFTI_REAL, {179}, DFTI_PACKED_FORMAT, DFTI_PERM_FORMAT},
        {DFTI_DOUBLE, DFTI_REAL, {1001}, DFTI_PACKED_FORMAT, DFTI_CCS_FORMAT},
        {DFTI_DOUBLE, DFTI_REAL, {6, 20}, DFTI_PACKED_FORMAT, DFTI_PERM_FORMAT},
    };
    for (const transform_case& c : transforms) {
      all.push_back({"transform",
                     "DftiCreateDescriptor DftiSetValue DftiGetValue DftiCommitDescriptor DftiCopyDescriptor "
                     "DftiComputeForward DftiComputeBackward DftiFreeDescriptor",
                     [c](life& run) { transform(run, c); }});
    }
    const solver_case solvers[] = {
        {11, {}},        {11, {{2, 0}, {5, 2}}},   {11, {{60, 2}}},
        {1, {{8, -3}}},  {2, {{2, 3}, {13, 0}}},   {2, {{28, 1}, {13, 0}}},
        {-2, {{10, 8}}}, {-2, {{60, 2}, {13, 0}}}, {3, {{27, 1}}},
        {4, {{13, 0}}},  {-4, {{10, 8}, {21, 0}}}, {6, {{28, 1}, {10, 8}}},
        {13, {{4, 61}}},
    };
    for (const solver_case& c : solvers)
      all.push_back({"direct solver", "pardiso PARDISO qel_pardiso_report",
                     [c](life& run) { solve_directly(run, c); }});
#define QEL_CONVOLUTION(letter, kind, mode)                     \
  all.push_back(                                                \
      {"vsl" #letter #kind,                                     \
       "vsl" #letter #kind "NewTaskX1D vsl" #letter #kind       \
       "ExecX1D vslConvSetInternalPrecision vslConvDeleteTask", \
       [](life& run) { convolve(run, vsl##letter##kind##NewTaskX1D, vsl##letter##kind##ExecX1D, mode); }})
    QEL_CONVOLUTION(s, Conv, VSL_CONV_MODE_DIRECT);
    QEL_CONVOLUTION(d, Conv, VSL_CONV_MODE_FFT);
    QEL_CONVOLUTION(c, Conv, VSL_CONV_MODE_FFT);
    QEL_CONVOLUTION(z, Conv, VSL_CONV_MODE_AUTO);
    QEL_CONVOLUTION(s, Corr, VSL_CONV_MODE_FFT);
    QEL_CONVOLUTION(d, Corr, VSL_CONV_MODE_AUTO);
    QEL_CONVOLUTION(c, Corr, VSL_CONV_MODE_DIRECT);
    QEL_CONVOLUTION(z, Corr, VSL_CONV_MODE_FFT);
#undef QEL_CONVOLUTION
    return all;
  }();
  return rows;
}

}  // namespace qel::test
