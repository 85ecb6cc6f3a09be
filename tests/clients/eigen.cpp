// SPDX-License-Identifier: BSD-3-Clause
// Eigen with its products on BLAS and its factorisations on LAPACK (EIGEN_USE_BLAS, EIGEN_USE_LAPACKE).
#include <Eigen/Dense>

#include <complex>
#include <cstdio>

static int faults = 0;

static void small(const char* what, double error, double bound) {
  if (error < bound) return;
  std::printf("%s: %g\n", what, error);
  ++faults;
}

template <class T>
static void dense(int n) {
  using Matrix = Eigen::Matrix<T, Eigen::Dynamic, Eigen::Dynamic>;
  const double eps = sizeof(typename Eigen::NumTraits<T>::Real) == 4 ? 1e-4 : 1e-12;
  const Matrix a = Matrix::Random(n, n), b = Matrix::Random(n, 5), one = Matrix::Identity(n, n);
  const double size = a.norm();
  // a lazy product is Eigen's own loop
  small("product", (a * b - a.lazyProduct(b)).norm() / (size * b.norm()), eps);
  small("adjoint", (a.adjoint() * b - a.adjoint().lazyProduct(b)).norm() / (size * b.norm()), eps);
  const Matrix x = a.partialPivLu().solve(b);
  small("LU", (a.lazyProduct(x) - b).norm() / (size * x.norm()), eps);
  const Eigen::HouseholderQR<Matrix> qr(a);
  const Matrix q = qr.householderQ(), r = qr.matrixQR().template triangularView<Eigen::Upper>();
  small("QR", (q.lazyProduct(r) - a).norm() / size, eps);
  small("orthogonal", (q.adjoint().lazyProduct(q) - one).norm(), eps * n);
  const Matrix gram = a.lazyProduct(a.adjoint()) + one;
  const Matrix l = gram.llt().matrixL();
  small("Cholesky", (l.lazyProduct(l.adjoint()) - gram).norm() / gram.norm(), eps);
  const Eigen::SelfAdjointEigenSolver<Matrix> eigen(gram);
  const Matrix v = eigen.eigenvectors();
  small("eigenvectors",
        (gram.lazyProduct(v) - v * eigen.eigenvalues().template cast<T>().asDiagonal()).norm() / gram.norm(),
        eps);
  const Eigen::JacobiSVD<Matrix> svd(a, Eigen::ComputeFullU | Eigen::ComputeFullV);
  const Matrix again =
      svd.matrixU() * svd.singularValues().template cast<T>().asDiagonal() * svd.matrixV().adjoint();
  small("SVD", (again - a).norm() / size, eps);
}

int main() {
  std::srand(5);
  for (const int n : {3, 40, 120}) {
    dense<double>(n);
    dense<std::complex<float>>(n);
  }
  std::puts(faults == 0 ? "right" : "wrong");
  return faults != 0;
}
