// SPDX-License-Identifier: BSD-3-Clause
// Matrices in compressed rows: any arrays go to the check; what it lets pass goes to the operations, whose
// results are compared with dense ones (all numbers are small integers, so that these are exact), and to the
// direct solver.
#include <algorithm>
#include <cmath>

#include "fuzz/support/input.h"
#include "qel/pardiso.h"
#include "qel/sparse.h"

namespace {

using qel::fuzz::promise;

struct csr {
  int rows, columns;
  std::vector<int> ia, ja;
  std::vector<double> a;
};

std::vector<double> dense(const csr& m, int base) {
  std::vector<double> d(static_cast<size_t>(m.rows * m.columns));
  for (int i = 0; i < m.rows; ++i)
    for (int k = m.ia[i] - base; k < m.ia[i + 1] - base; ++k) d[i * m.columns + m.ja[k] - base] += m.a[k];
  return d;
}

void compare_product(qel::fuzz::input& in, const csr& m, int base) {
  const char letters[] = {'N', 't', 'C'}, transa = in.one_of(letters);
  // Only a square matrix can be symmetric.
  const char matdescra[] = {m.rows == m.columns ? in.one_of("GTDSHA") : in.one_of("GTD"),
                            in.one_of("LU"),
                            in.one_of("NU"),
                            base == 0 ? 'C' : 'F',
                            ' ',
                            ' '};
  const bool whole = matdescra[0] == 'G', plain = transa == 'N';
  const int inputs = plain ? m.columns : m.rows, outputs = plain ? m.rows : m.columns;
  std::vector<double> x(static_cast<size_t>(inputs)), y(static_cast<size_t>(outputs), NAN);
  for (double& v : x) v = in.in_range(-4, 4);
  const double alpha = in.in_range(-2, 2), beta = 0;
  qel_dcsrmv(&transa, &m.rows, &m.columns, &alpha, matdescra, m.a.data(), m.ja.data(), m.ia.data(),
             m.ia.data() + 1, x.data(), &beta, y.data());
  if (!whole) return;
  const std::vector<double> d = dense(m, base);
  for (int i = 0; i < outputs; ++i) {
    double sum = 0;
    for (int j = 0; j < inputs; ++j) sum += (plain ? d[i * m.columns + j] : d[j * m.columns + i]) * x[j];
    promise(y[i] == alpha * sum, "csrmv is the dense product");
  }
}

void compare_matrices(qel::fuzz::input& in, csr m, bool sorted) {
  const char transa = 'N';
  // A + beta A, in rows that hold them or don't.
  if (sorted) {
    const double beta = in.in_range(-2, 2);
    const int request = 0, sort = 0, nzmax = in.in_range(1, 80);
    std::vector<double> c(static_cast<size_t>(nzmax));
    std::vector<int> jc(c.size()), ic(static_cast<size_t>(m.rows) + 1);
    int info = -7;
    csr b = m;
    qel_dcsradd(&transa, &request, &sort, &m.rows, &m.columns, m.a.data(), m.ja.data(), m.ia.data(), &beta,
                b.a.data(), b.ja.data(), b.ia.data(), c.data(), jc.data(), ic.data(), &nzmax, &info);
    promise(info >= 0 && info <= m.rows, "csradd's info");
    if (info == 0) {
      std::vector<double> expected = dense(m, 1);
      for (double& v : expected) v *= 1 + beta;
      promise(dense({m.rows, m.columns, ic, jc, c}, 1) == expected, "csradd is the dense sum");
    }
  }
  if (m.rows != m.columns) return;
  const size_t n = static_cast<size_t>(m.rows);
  const std::vector<double> d = dense(m, 1);
  std::vector<double> product(n * n), c(n * n, NAN);
  for (size_t i = 0; i < n; ++i)
    for (size_t k = 0; k < n; ++k)
      for (size_t j = 0; j < n; ++j) product[i * n + j] += d[i * n + k] * d[k * n + j];
  qel_dcsrmultd(&transa, &m.rows, &m.rows, &m.rows, m.a.data(), m.ja.data(), m.ia.data(), m.a.data(),
                m.ja.data(), m.ia.data(), c.data(), &m.rows);
  for (size_t k = 0; k < n * n; ++k)
    promise(c[k / n + k % n * n] == product[k], "csrmultd is the dense product");

  int info = -7, request = 1, nzmax = 0;
  const int sort = in.in_range(0, 3);
  std::vector<int> ic(n + 1);
  csr b = m;
  const auto multiply = [&](double* values, int* columns) {
    qel_dcsrmultcsr(&transa, &request, &sort, &m.rows, &m.rows, &m.rows, m.a.data(), m.ja.data(), m.ia.data(),
                    b.a.data(), b.ja.data(), b.ia.data(), values, columns, ic.data(), &nzmax, &info);
  };
  multiply(nullptr, nullptr);
  promise(info == 0, "csrmultcsr counts");
  std::vector<double> values(static_cast<size_t>(ic[n] - 1));
  std::vector<int> columns(values.size());
  request = 2;
  multiply(values.data(), columns.data());
  promise(info == 0 && dense({m.rows, m.rows, ic, columns, values}, 1) == product,
          "csrmultcsr is the dense product");
}

void solve(qel::fuzz::input& in, const csr& m, bool sound) {
  void* pt[64] = {};
  int iparm[64] = {};
  const int type = in.one_of({11, 1, 2, -2}), one = 1;
  if (type % 2 == 0) {
    // Only the upper triangle: else the check must find it out.
    for (int i = 0; i < m.rows; ++i) sound = sound && m.ia[i] < m.ia[i + 1] && m.ja[m.ia[i] - 1] > i;
  }
  for (int i = 0; i < m.rows; ++i) sound = sound && m.ia[i] < m.ia[i + 1];
  pardisoinit(pt, &type, iparm);
  iparm[26] = 1;
  std::vector<double> b(static_cast<size_t>(m.rows), 1), x(b.size());
  int phase = 13, error = 99;
  pardiso(pt, &one, &one, &type, &phase, &m.rows, m.a.data(), m.ia.data(), m.ja.data(), nullptr, &one, iparm,
          &one, b.data(), x.data(), &error);
  promise(error >= -11 && error <= 0, "a code that is documented");
  const bool diagonal = m.ia.back() - 1 == m.rows;
  if (!diagonal) promise((iparm[26] == 0) == sound, "the solver's check agrees");
  if (!diagonal && !sound) promise(error == -1, "a faulty structure is bad input");
  phase = -1;
  iparm[11] = 0;
  pardiso(pt, &one, &one, &type, &phase, &m.rows, m.a.data(), m.ia.data(), m.ja.data(), nullptr, &one, iparm,
          &one, b.data(), x.data(), &error);
  promise(error == 0 && pt[0] == nullptr, "phase -1 empties the handle");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  qel::fuzz::input in(data, size);
  csr m;
  const int shape = in.byte(), base = shape & 1;
  m.rows = in.in_range(0, 9);
  m.columns = (shape & 2) != 0 ? in.in_range(0, 9) : m.rows;
  const int entries = in.in_range(0, 40);
  int given_base = base;
  // Mostly row starts by lengths and columns inside, so that the check is passed at all.
  m.ia.push_back(base);
  for (int i = 0; i < m.rows; ++i)
    m.ia.push_back((shape & 4) != 0 ? in.integer() : m.ia.back() + in.in_range(0, 7));
  const int stored = (shape & 4) != 0 ? entries : m.ia.back() - base;
  for (int k = 0; k < stored; ++k)
    m.ja.push_back((shape & 8) != 0 || m.columns == 0 ? in.integer()
                                                      : in.in_range(base, m.columns - 1 + base));
  if ((shape & 16) != 0) {
    for (int i = 0; i < m.rows; ++i)
      if (m.ia[i] <= m.ia[i + 1] && m.ia[i] >= base && m.ia[i + 1] - base <= stored)
        std::sort(m.ja.begin() + (m.ia[i] - base), m.ja.begin() + (m.ia[i + 1] - base));
  }
  for (int k = 0; k < stored; ++k) m.a.push_back(in.in_range(-4, 4));
  if ((shape & 32) != 0) given_base = in.integer();

  std::vector<char> words(static_cast<size_t>(in.in_range(0, 200)));
  const int word_size = static_cast<int>(words.size());
  const int found = qel_csr_check(&m.rows, &m.columns, m.ia.data(), m.ja.data(), &stored, &given_base,
                                  words.empty() ? nullptr : words.data(), &word_size);
  promise(found >= 0 && found < 128, "a sum of the documented bits");
  if (!words.empty()) promise(std::memchr(words.data(), 0, words.size()) != nullptr, "the words end");
  const bool usable =
      (found & (QEL_CSR_BAD_SIZES | QEL_CSR_BAD_ROW_STARTS | QEL_CSR_OTHER_BASE | QEL_CSR_OUT_OF_RANGE)) == 0;
  const bool sorted = (found & (QEL_CSR_UNSORTED | QEL_CSR_DUPLICATE)) == 0;
  if (usable) {
    compare_product(in, m, given_base);
    if (given_base == 1) compare_matrices(in, m, sorted);
  }
  // The solver doesn't know the length of ja.
  if (m.rows == m.columns && m.rows > 0 && given_base == 1 && m.ia.back() == stored + 1 && stored > 0)
    solve(in, m, usable && sorted);
  return 0;
}
