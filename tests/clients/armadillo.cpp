// SPDX-License-Identifier: BSD-3-Clause
// Dense factorisations and a sparse eigenvalue problem through Armadillo; what they must fulfil, to rounding.
#include <armadillo>
#include <cstdio>

static int faults = 0;

static void small(const char* what, double error, double bound) {
  if (error < bound) return;
  std::printf("%s: %g\n", what, error);
  ++faults;
}

template <class Matrix>
static void dense(arma::uword n) {
  using T = typename Matrix::elem_type;
  using namespace arma;
  const Matrix a(n, n, fill::randn), b(n, 7, fill::randn);
  const double eps = std::is_same_v<typename Matrix::pod_type, float> ? 1e-4 : 1e-11;
  const double size = norm(a, "fro");
  const Matrix x = solve(a, b);
  small("solve", norm(a * x - b, "fro") / (size * norm(x, "fro")), eps);
  Matrix l, u, p, q, r, v, w;
  lu(l, u, p, a);
  small("lu", norm(p.t() * l * u - a, "fro") / size, eps);
  qr(q, r, a);
  small("qr", norm(q * r - a, "fro") / size + norm(q.t() * q - eye<Matrix>(n, n), "fro") / double(n), eps);
  Col<typename Matrix::pod_type> s;
  svd(w, s, v, a);
  small("svd", norm(w * diagmat(conv_to<Col<T>>::from(s)) * v.t() - a, "fro") / size, eps);
  const Matrix gram = a * a.t() + eye<Matrix>(n, n);
  Col<typename Matrix::pod_type> values;
  eig_sym(values, v, gram);
  small("eig_sym", norm(gram * v - v * diagmat(conv_to<Col<T>>::from(values)), "fro") / norm(gram, "fro"),
        eps);
  small("chol", norm(chol(gram).t() * chol(gram) - gram, "fro") / norm(gram, "fro"), eps);
  small("inv", norm(inv(gram) * gram - eye<Matrix>(n, n), "fro"), eps * double(n * n));
}

int main() {
  arma::arma_rng::set_seed(7);
  for (const arma::uword n : {5, 64, 211}) {
    dense<arma::mat>(n);
    dense<arma::fmat>(n);
    dense<arma::cx_mat>(n);
    dense<arma::cx_fmat>(n);
  }
  arma::cx_vec general = arma::eig_gen(arma::mat{{0, 1}, {-1, 0}});
  small("eig_gen", std::abs(general(0) * general(1) - 1.0), 1e-14);
  arma::sp_mat laplacian(100, 100);
  laplacian.diag().fill(2);
  laplacian.diag(1).fill(-1);
  laplacian.diag(-1).fill(-1);
  const arma::vec largest = arma::eigs_sym(laplacian, 1, "la");
  small("eigs_sym", std::abs(largest(0) - (2 + 2 * std::cos(arma::datum::pi / 101))), 1e-10);
  std::puts(faults == 0 ? "right" : "wrong");
  return faults != 0;
}
