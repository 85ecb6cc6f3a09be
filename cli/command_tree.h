// SPDX-License-Identifier: BSD-3-Clause
// The commands and options of a program as plain records, read from its command-line parser: what manual
// pages and completion scripts are written from.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace qel::cli {

struct option_entry {
  std::vector<std::string> names;  ///< "-o", "--output"; a positional's single name
  std::string value;               ///< what follows: "TEXT", "INT"; empty: a flag
  std::vector<std::string> choices;
  std::string description;
  std::string fallback;  ///< value that holds without the option
  bool positional = false, required = false, repeats = false;
};

struct command_entry {
  std::string path;  ///< "qel explain gemm"
  std::string description, footer;
  std::vector<option_entry> options;  ///< positionals among them
  std::vector<command_entry> commands;

  /// The last word of the path.
  std::string name() const;
};

/// Hidden options are left out.
command_entry read_commands(const CLI::App& app, const std::string& path);

/// The command and all below it, parents first.
std::vector<const command_entry*> all_commands(const command_entry& top);

/// A completion script; shell: "bash", "zsh", "fish".
std::string completion_script(const command_entry& top, const std::string& shell);

/// The manual page, as roff, of the program, or of one of its commands with all below it.
std::string manual_page(const command_entry& command, const command_entry& top);

/// Adds --completion SHELL, and a hidden --manual FOLDER that writes all pages and scripts there. Call it
/// when all commands are there.
void add_manual_options(CLI::App& app);

}  // namespace qel::cli
