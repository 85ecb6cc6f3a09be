// SPDX-License-Identifier: BSD-3-Clause
#include "cli/bench/families.h"

#include <cstdlib>
#include <sstream>

namespace qel::cli::bench {

const bench_family& machine_family() {
  static const bench_family machine = {"machine", "The machine", "registers and memory", {}, "", "", 2, 4};
  return machine;
}

const std::vector<bench_family>& bench_families() {
  static const std::vector<bench_family> all = {
      {"level1",
       "Vectors",
       "BLAS level 1",
       {"OpenBLAS", "BLIS", "reference"},
       "^(ddot|daxpy|zdotu)/n:(100|1000|10000|1000000)$",
       "^([sdz]dotu?|[dz]axpy|dscal|dcopy|dasum|dnrm2|idamax)/",
       4,
       60},
      {"level2",
       "Matrix and vector",
       "BLAS level 2",
       {"OpenBLAS", "BLIS", "reference"},
       "^(dgemv/[NT]|dtrmv/UN)/n:(8|64|256|1000)$",
       "^([sdz]gemv/[NT]|[dz]trmv/(UN|LT))/n:[0-9]+$",
       4,
       60},
      {"level3",
       "Matrix products",
       "BLAS level 3",
       {"OpenBLAS", "BLIS", "reference"},
       "^(dgemm/NN/m:(16|32|64|128|256|512)/n:\\2/k:\\2|sgemm/NN/m:(32|128|512)/n:\\3/k:\\3"
       "|dtrsm/LLN/m:(100|300)/)",
       "^([sdcz]gemm/NN/m:(4|8|16|24|32|48|64|100|128|256|512|1000)/n:\\2/k:\\2|dgemm/(NT|TN|TT)/|"
       "dgemm/NN/m:(2000|4000|32|64)/n:[0-9]+/k:(32|1000|4000)|[dz]trsm/(LLN|RUN)/m:(32|100|300|1000)/)",
       6,
       100},
      {"lapack",
       "Factorisations",
       "LAPACK",
       {"OpenBLAS"},
       "^d(getrf|geqrf|gesv)/n:(32|100|300)$",
       "^([dz](getrf|getri|geqrf)|d(gesv|posv|gels))/n:(8|16|32|64|100|200|300|500|1000)$",
       5,
       80},
      {"fft",
       "Fourier transforms",
       "complex and real, one to three dimensions",
       {"FFTW"},
       "^(pow2/z/(128|1024|8192|65536)|smooth/z/(100|1000|10000)|rpow2/d/(256|4096|65536)|2d/z/"
       "(64x64|256x256))$",
       "^(small/z/[0-9]+|pow2/[cz]/(128|256|512|1024|2048|4096|8192|16384|32768|65536|131072|262144)"
       "|smooth/z/([0-9]{2,5})|prime/z/(101|211|401|1009|4001|10007)|rpow2/d/[0-9]{2,6}"
       "|(2d/z|r2d/d)/(64x64|128x128|256x256|512x512|1024x1024)|3d/z/(32x32x32|64x64x64|128x128x128))$",
       6,
       120},
      {"conv",
       "Convolution",
       "real sequences, double precision",
       {"FFTW", "loop"},
       "^conv/(64x16|512x32|512x512|4096x128|4096x1024|65536x64)$",
       "^conv/",
       4,
       40},
      {"sparse",
       "Sparse products",
       "CSR matrices",
       {"Eigen", "loop"},
       "^csrmv/(general|transposed|symmetric)/(grid2d:(100|300)|grid3d:(20|40)|random:5000)$",
       "^(csr|read)",
       6,
       90},
      {"direct",
       "Direct sparse solver",
       "analysis, factorisation, solution",
       {"CHOLMOD", "UMFPACK", "KLU", "SuperLU", "MUMPS"},
       "^((analysis|factor|solve1)/spd/grid2d:(1e3|1e4)|factor/spd/grid3d:(1e3|1e4)"
       "|factor/unsymmetric/convection2d:1e4)$",
       ":(1e3|1e4|3e4)$|spd/grid2d:1e5$",
       8,
       120},
      {"nls",
       "Least squares",
       "five iterations, ten residuals per unknown",
       {"cminpack", "GSL", "Ceres"},
       "/n:(20|50|100)$",
       "",
       4,
       60},
      {"vector",
       "Vector math",
       "element by element, and random numbers",
       {"plain", "standard"},
       "^(vdDiv|vdMul|uniform)/n:(100|1000|10000|100000|1000000)$",
       "",
       5,
       40},
  };
  return all;
}

contender_role role_of(const std::string& contender) {
  if (contender == "QEL" || contender.starts_with("QEL-")) return contender_role::own;
  const bool limits = contender == "copy" || contender == "constant" || contender == "past-caches" ||
                      contender == "stream" || contender == "elements";
  return limits ? contender_role::limit : contender_role::peer;
}

namespace {

/// The whole text as a number above 0, or 0.
double as_number(const std::string& text) {
  if (text.empty() || (text[0] < '0' || text[0] > '9')) return 0;
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  return *end == '\0' ? value : 0;
}

/// "64x64" as 4096; 0 if it isn't of that form.
double as_product(const std::string& text) {
  double product = 1;
  std::istringstream factors(text);
  for (std::string factor; std::getline(factors, factor, 'x');) {
    const double value = as_number(factor);
    if (value == 0) return 0;
    product *= value;
  }
  return product;
}

}  // namespace

case_place place_of(const std::string& case_name) {
  case_place place;
  double n = 0;
  bool one_size = true;
  const auto add_word = [&](const std::string& word) {
    place.panel += (place.panel.empty() ? "" : " ") + word;
  };
  std::istringstream parts(case_name);
  for (std::string part; std::getline(parts, part, '/');) {
    const size_t colon = part.find(':');
    const std::string key = part.substr(0, colon);
    if (colon == std::string::npos) {
      const double size = as_product(part);
      if (size == 0) {
        add_word(part);
      } else if (n == 0) {
        n = size;
      }
      continue;
    }
    const double value = as_number(part.substr(colon + 1));
    if (key == "m" || key == "n" || key == "k") {
      // A depth of 0: the operation has none.
      if (n != 0 && value != n && value != 0) one_size = false;
      if (n == 0) n = value;
    } else if (value > 0 && key != "inc" && key != "nrhs") {
      add_word(key);
      n = value;
    } else {
      add_word(part);
    }
  }
  place.size = one_size ? n : 0;
  return place;
}

}  // namespace qel::cli::bench
