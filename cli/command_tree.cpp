// SPDX-License-Identifier: BSD-3-Clause
#include "cli/command_tree.h"

#include <fmt/core.h>

#include <fstream>
#include <iostream>

namespace qel::cli {
namespace {

// "INT:{1,2,-2}" tells the choices; "INT:POSITIVE", "INT:INT in [0 - 6]" the kind.
void read_type(const std::string& type, option_entry& entry) {
  const size_t colon = type.find(':');
  entry.value = type.substr(0, colon);
  const size_t open = type.find(":{"), close = type.find('}', open);
  if (open == std::string::npos || close == std::string::npos) return;
  std::string list = type.substr(open + 2, close - open - 2);
  for (size_t comma; (comma = list.find(',')) != std::string::npos; list.erase(0, comma + 1)) {
    entry.choices.push_back(list.substr(0, comma));
  }
  entry.choices.push_back(list);
}

option_entry read_option(const CLI::Option& option) {
  option_entry entry;
  entry.positional = option.get_positional() && !option.nonpositional();
  if (entry.positional) {
    entry.names.push_back(option.get_name(true));
  } else {
    for (const std::string& name : option.get_snames()) entry.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) entry.names.push_back("--" + name);
  }
  if (option.get_items_expected_max() > 0) read_type(option.get_type_name(), entry);
  entry.description = option.get_description();
  entry.fallback = option.get_default_str();
  entry.required = option.get_required();
  entry.repeats = option.get_items_expected_max() > 1;
  return entry;
}

void write_file(const std::string& path, const std::string& text) {
  std::ofstream file(path);
  file << text;
  if (!file.flush()) throw std::runtime_error(path + " can't be written");
}

std::string dashes(std::string path) {
  for (char& c : path) {
    if (c == ' ') c = '-';
  }
  return path;
}

void write_manual(const command_entry& top, const std::string& folder) {
  write_file(folder + "/" + top.name() + ".1", manual_page(top, top));
  for (const command_entry& command : top.commands) {
    write_file(folder + "/" + dashes(command.path) + ".1", manual_page(command, top));
  }
  for (const char* shell : {"bash", "zsh", "fish"}) {
    write_file(folder + "/" + top.name() + "." + shell, completion_script(top, shell));
  }
}

void collect(const command_entry& command, std::vector<const command_entry*>& all) {
  all.push_back(&command);
  for (const command_entry& below : command.commands) collect(below, all);
}

}  // namespace

std::string command_entry::name() const { return path.substr(path.rfind(' ') + 1); }

command_entry read_commands(const CLI::App& app, const std::string& path) {
  command_entry command;
  command.path = path;
  command.description = app.get_description();
  // CLI11 hands a footer down to commands that have none.
  const bool inherited = app.get_parent() != nullptr && app.get_parent()->get_footer() == app.get_footer();
  command.footer = inherited ? "" : app.get_footer();
  for (const CLI::Option* option : app.get_options()) {
    if (!option->get_group().empty()) command.options.push_back(read_option(*option));
  }
  for (const CLI::App* below : app.get_subcommands(nullptr)) {
    if (!below->get_group().empty())
      command.commands.push_back(read_commands(*below, path + " " + below->get_name()));
  }
  return command;
}

std::vector<const command_entry*> all_commands(const command_entry& top) {
  std::vector<const command_entry*> all;
  collect(top, all);
  return all;
}

void add_manual_options(CLI::App& app) {
  app.add_option_function<std::string>(
         "--completion",
         [&app](const std::string& shell) {
           std::cout << completion_script(read_commands(app, app.get_name()), shell);
           throw CLI::Success();
         },
         "Print the completion script of a shell")
      ->check(CLI::IsMember({"bash", "zsh", "fish"}));
  app.add_option_function<std::string>("--manual",
                                       [&app](const std::string& folder) {
                                         write_manual(read_commands(app, app.get_name()), folder);
                                         throw CLI::Success();
                                       })
      ->group("");
}

}  // namespace qel::cli
