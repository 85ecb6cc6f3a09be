// SPDX-License-Identifier: BSD-3-Clause
// The commands of qel. Each has its options as a record, which the command line fills, and one function
// that does the work and returns the exit code.
#pragma once

#include <string>
#include <vector>

namespace qel::cli {

/// Exit codes of all commands.
enum exit_code : int { kDone = 0, kFailed = 1, kBadInput = 2, kSingular = 3 };

// info.cpp
struct info_options {
  bool json = false;
  bool variables = false;
};
/// Version, build, processor, and the environment variables that the library reads.
int run_info(const info_options& options);

// solve.cpp
struct solve_options {
  std::string matrix;                    ///< Matrix Market file of a square matrix
  std::string right_hand_side = "ones";  ///< "ones", "random" or a Matrix Market file with as many rows
  std::string output;                    ///< where the solution goes; empty: nowhere
  bool dense = false;                    ///< LAPACK's way for a sparse matrix, too
  int type = 0;                          ///< of the sparse solver; 0: by the file's header
  bool statistics = false;               ///< the sparse solver prints its own
  bool out_of_core = false;              ///< factors in files
  std::string store_path;                ///< folder of those files; empty: the current one
  int max_core = 0;                      ///< megabytes from which on factors go into files; 0: never
  std::string spy;                       ///< SVG file of the patterns of A and L; empty: none
  bool json = false;
};
/// Solves A X = B and reports sizes, times and the normwise backward error.
int run_solve(const solve_options& options);

// check.cpp
struct check_options {
  std::string matrix;  ///< Matrix Market file
  bool json = false;
};
/// Tells how a sparse matrix is built and what is unusual: rows out of order, double entries, a diagonal with
/// gaps.
int run_check(const check_options& options);

// fit.cpp
struct fit_options {
  std::string model;   ///< "response = expression of columns and parameters"
  std::string data;    ///< CSV file with a line of names
  std::string start;   ///< "a=1,b=2"
  std::string bounds;  ///< "a=0:1,b=:5"; empty: none
  std::string plot;    ///< SVG file of data and curve; empty: none
  bool json = false;
};
/// Fits a model by least squares and reports parameters, standard errors and why it ended. kSingular if it
/// did not converge.
int run_fit(const fit_options& options);

// fft.cpp
struct fft_options {
  std::string input;     ///< .npy, WAV or CSV
  std::string output;    ///< .npy, or CSV if it ends so (one dimension)
  bool real = false;     ///< inverse: from half a spectrum to reals; forward: the data must be real
  bool complex = false;  ///< forward: all frequencies of real data
  bool inverse = false;
  int length = 0;      ///< of the last dimension of real output; 0: even
  std::string column;  ///< of a CSV file
  int channel = 1;     ///< of a WAV file, from 1
  std::string plot;    ///< SVG file of the spectrum; empty: none
  bool json = false;
};
/// Transforms sampled data of up to seven dimensions (real: three); the inverse divides by their number.
int run_fft(const fft_options& options);

// selftest/selftest.cpp
struct selftest_options {
  std::vector<std::string> families;  ///< empty: all
  std::vector<int> levels;            ///< empty: all that the processor has
  bool json = false;
  int child_level = -1;       ///< at least 0: run the checks in this process, which is on that level
  bool only_by_type = false;  ///< only families that go by the processor type
};
/// Whether this machine computes what it should. kFailed if it does not.
int run_selftest(const selftest_options& options);

// bench/bench.cpp
struct bench_options {
  std::vector<std::string> families;  ///< empty: all
  std::string peers = "auto";         ///< auto, none, or names with commas
  std::string html, json, markdown;   ///< files to write; empty: none
  std::vector<std::string> from;      ///< files of --json to show again; empty: run the benchmarks
  int threads = 1;
  bool quick = false, list = false;
};
/// Runs the benchmarks beside the installed peers. kFailed if a family could not be run whole.
int run_bench(const bench_options& options);

}  // namespace qel::cli
