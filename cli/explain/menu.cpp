// SPDX-License-Identifier: BSD-3-Clause
#include "cli/explain/menu.h"

#include <fmt/core.h>
#include <stdlib.h>

#include <stdexcept>

#include "cli/commands.h"
#include "service/native_level.h"
#include "service/serv.h"

namespace qel::cli {
namespace {

std::string as_text(const report& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  if (!value.is_structured()) return value.dump();
  std::string text;
  for (const auto& [key, part] : value.items()) {
    text += (text.empty() ? "" : ", ") + (value.is_object() ? key + " " : "") + as_text(part);
  }
  return text;
}

std::string with_blanks(std::string key) {
  for (char& c : key) c = c == '_' ? ' ' : c;
  return key;
}

/// The names of a command's positional arguments: "M N K".
std::string arguments_of(const CLI::App& command) {
  std::string names;
  for (const CLI::Option* option : command.get_options()) {
    if (!option->nonpositional() && option->get_positional()) names += ' ' + option->get_name(true);
  }
  return names;
}

}  // namespace

int asked_machine::level_or_own() const { return level >= 0 ? level : serv_cpu_level(); }
int asked_machine::threads_or_own(int domain) const {
  return threads > 0 ? threads : serv_threads_for_domain(domain);
}

explain_menu::explain_menu(CLI::App& app)
    : command_(app.add_subcommand("explain", "How an operation of given sizes would be done, and why")) {
  command_->require_subcommand(0, 1);
  command_->footer("Without a subject: a list of all.");
  command_->add_flag("--json", json_, "Print JSON");
  add_blas_vectors(*this);
  add_blas_products(*this);
  add_factorisations(*this);
  add_lapack_rest(*this);
  add_transforms(*this);
  add_convolutions(*this);
  add_sparse_products(*this);
  add_direct_solver(*this);
  add_least_squares(*this);
  add_vector_math(*this);
}

CLI::App& explain_menu::add_command(const char* family, const char* name, const char* about,
                                    answer_function answer) {
  CLI::App* command = command_->add_subcommand(name, about)->group(family);
  command->add_option("--threads", machine_.threads, "Threads allowed, instead of this process's")
      ->check(CLI::PositiveNumber);
  command->add_option("--level", machine_.level, "Processor level 0 to 6, instead of this process's")
      ->check(CLI::Range(0, 6));
  command->add_flag("--json", json_, "Print JSON");
  subjects_.push_back({family, about, command, std::move(answer)});
  return *command;
}

void explain_menu::print_subjects() const {
  if (json_) {
    report list = report::array();
    for (const subject& one : subjects_) {
      list.push_back({{"family", one.family},
                      {"name", one.command->get_name() + arguments_of(*one.command)},
                      {"about", one.about}});
    }
    fmt::print("{}\n", list.dump(2));
    return;
  }
  fmt::print(
      "qel explain SUBJECT SIZES [--threads T] [--level L] [--json]; qel explain SUBJECT --help tells "
      "more\n");
  std::string family;
  for (const subject& one : subjects_) {
    if (family != one.family) fmt::print("\n{}\n", family = one.family);
    fmt::print("  {:<32} {}\n", one.command->get_name() + arguments_of(*one.command), one.about);
  }
}

int explain_menu::run() const {
  for (const subject& one : subjects_) {
    if (!one.command->parsed()) continue;
    const report out = one.answer(machine_);
    if (json_) {
      fmt::print("{}\n", out.dump(2));
    } else {
      for (const auto& [key, value] : out.items())
        fmt::print("{:<34} {}\n", with_blanks(key), as_text(value));
    }
    return kDone;
  }
  print_subjects();
  return kDone;
}

const CLI::Validator& not_negative() {
  static const CLI::Validator validator(
      [](std::string& text) { return text.starts_with('-') ? text + " is negative" : std::string(); }, "");
  return validator;
}

void add_type(CLI::App& command, std::string& type, const std::vector<std::string>& letters) {
  command.add_option("--type", type, "Element type")->check(CLI::IsMember(letters))->capture_default_str();
}

void take_level(int level) {
  if (level < 0) return;
  if (level < kFirstNativeLevel) {
    setenv("QEL_DEBUG_CPU_TYPE", std::to_string(level).c_str(), 1);
    if (type_of_level(level) <= 5)
      setenv("QEL_DEBUG_VECTOR_TYPE", std::to_string(type_of_level(level)).c_str(), 1);
  } else {
    unsetenv("QEL_DEBUG_CPU_TYPE");
    unsetenv("QEL_DEBUG_VECTOR_TYPE");
    setenv("QEL_NATIVE", level == kFirstNativeLevel ? "avx2" : "1", 1);
  }
  if (serv_cpu_level() != level) {
    throw std::invalid_argument(fmt::format("this processor has no level {}", level));
  }
}

int type_of_level(int level) {
  constexpr int kTypes[] = {0, 1, 2, 4, 5, 6, 7};
  return kTypes[level];
}

}  // namespace qel::cli
