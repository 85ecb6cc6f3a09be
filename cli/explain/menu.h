// SPDX-License-Identifier: BSD-3-Clause
// qel explain: what the library would do with an operation of given sizes, and why. The answers come from the
// functions by which the drivers decide; only the facts can be replaced. Each subject declares its own
// options and answers with a record, which the menu prints.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

namespace qel::cli {

using report = nlohmann::ordered_json;

/// What may be said of the machine in place of this process's own facts.
struct asked_machine {
  int threads = 0;  ///< 0: what this process may use
  int level = -1;   ///< below 0: this process's

  int level_or_own() const;
  /// Threads of a domain (service/thread_policy.h).
  int threads_or_own(int domain) const;
};

class explain_menu {
 public:
  /// Adds the command "explain" with all subjects.
  explicit explain_menu(CLI::App& app);
  bool chosen() const { return command_->parsed(); }
  /// Prints the answer or, without a subject, what there is. An exit code.
  int run() const;

  /// Options is filled by what declare adds to the command line.
  template <class Options>
  void add(const char* family, const char* name, const char* about,
           void (*declare)(CLI::App& command, Options& options),
           report (*answer)(const Options& options, const asked_machine& machine)) {
    const auto options = std::make_shared<Options>();
    declare(
        add_command(family, name, about,
                    [options, answer](const asked_machine& machine) { return answer(*options, machine); }),
        *options);
  }

 private:
  using answer_function = std::function<report(const asked_machine&)>;
  struct subject {
    const char *family, *about;
    CLI::App* command;
    answer_function answer;
  };
  CLI::App& add_command(const char* family, const char* name, const char* about, answer_function answer);
  void print_subjects() const;

  CLI::App* command_;
  asked_machine machine_;
  bool json_ = false;
  std::vector<subject> subjects_;
};

// One function per family.
void add_blas_vectors(explain_menu& menu);
void add_blas_products(explain_menu& menu);
void add_factorisations(explain_menu& menu);
void add_lapack_rest(explain_menu& menu);
void add_transforms(explain_menu& menu);
void add_convolutions(explain_menu& menu);
void add_sparse_products(explain_menu& menu);
void add_direct_solver(explain_menu& menu);
void add_least_squares(explain_menu& menu);
void add_vector_math(explain_menu& menu);

/// A positional size, not negative.
const CLI::Validator& not_negative();
template <class Integer>
void add_size(CLI::App& command, const char* name, Integer& size, const char* about) {
  command.add_option(name, size, about)->required()->check(not_negative());
}
/// --type with one of these letters.
void add_type(CLI::App& command, std::string& type, const std::vector<std::string>& letters);

/// Has this process run on a processor level (0..6), for answers that objects of the library give. Must come
/// before anything asks for the level; throws if the processor has no such level.
void take_level(int level);
/// The processor type (0..7) that goes with a level.
int type_of_level(int level);

}  // namespace qel::cli
