// SPDX-License-Identifier: BSD-3-Clause
// Manual pages of the program and its commands, as roff.
#include <fmt/core.h>

#include "cli/command_tree.h"
#include "cli/variables.h"

namespace qel::cli {
namespace {

// Text as roff prints it unchanged: dashes that can be copied, no line that reads as a request.
std::string plain(const std::string& text) {
  std::string result;
  bool line_start = true;
  for (const char c : text) {
    if (line_start && (c == '.' || c == '\'')) result += "\\&";
    if (c == '-') {
      result += "\\-";
    } else if (c == '\\') {
      result += "\\e";
    } else {
      result += c;
    }
    line_start = c == '\n';
  }
  return result;
}

std::string bold(const std::string& text) { return "\\fB" + plain(text) + "\\fR"; }
std::string slanted(const std::string& text) { return "\\fI" + plain(text) + "\\fR"; }

std::string synopsis(const command_entry& command) {
  std::string text = bold(command.path);
  bool options = false;
  std::string operands;
  for (const option_entry& option : command.options) {
    if (!option.positional) {
      options = true;
      continue;
    }
    const std::string name = slanted(option.names[0]) + (option.repeats ? " ..." : "");
    operands += option.required ? " " + name : " [" + name + "]";
  }
  if (options) text += " [" + slanted("options") + "]";
  if (!command.commands.empty()) text += " " + slanted("command") + " ...";
  return text + operands + "\n";
}

std::string option_text(const option_entry& option) {
  std::string head;
  for (const std::string& name : option.names) {
    if (!head.empty()) head += ", ";
    head += option.positional ? slanted(name) : bold(name);
  }
  if (!option.positional && !option.value.empty()) head += " " + slanted(option.value);
  std::string text = ".TP\n" + head + "\n" + plain(option.description);
  if (!option.choices.empty()) {
    text += "; one of";
    for (const std::string& choice : option.choices) text += " " + bold(choice);
  }
  if (!option.fallback.empty()) text += " (default: " + plain(option.fallback) + ")";
  return text + "\n";
}

std::string options_text(const command_entry& command) {
  std::string text;
  for (const option_entry& option : command.options) {
    if (option.positional) text += option_text(option);
  }
  for (const option_entry& option : command.options) {
    if (!option.positional) text += option_text(option);
  }
  return text;
}

// A footer's lines stay lines.
std::string footer_text(const std::string& footer) {
  return footer.empty() ? "" : ".PP\n.nf\n" + plain(footer) + "\n.fi\n";
}

std::string commands_text(const command_entry& command, const command_entry& top) {
  std::string text;
  for (const command_entry& below : command.commands) {
    if (&command == &top) {
      text += ".TP\n" + bold(below.name()) + "\n" + plain(below.description) + "; see " +
              bold(top.name() + "-" + below.name()) + "(1)\n";
    } else {
      text += ".SS " + bold(below.path) + "\n" + plain(below.description) + "\n.PP\n" + synopsis(below);
      text += options_text(below) + footer_text(below.footer);
    }
  }
  return text;
}

std::string environment_text() {
  std::string text;
  for (const variable_state& variable : environment_variables()) {
    text += ".TP\n" + bold(variable.name) + "\n" + plain(variable.purpose) + "\n";
  }
  return text;
}

}  // namespace

std::string manual_page(const command_entry& command, const command_entry& top) {
  std::string name = command.path, title;
  for (char& c : name) {
    if (c == ' ') c = '-';
    title += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  }
  std::string page =
      fmt::format(".TH {} 1 \"\" \"{} {}\" \"User Commands\"\n", plain(title), top.name(), QEL_VERSION);
  page += ".SH NAME\n" + plain(name) + " \\- " + plain(command.description) + "\n";
  page += ".SH SYNOPSIS\n" + synopsis(command);
  page += ".SH DESCRIPTION\n" + plain(command.description) + ".\n" + footer_text(command.footer);
  if (!command.commands.empty()) page += ".SH COMMANDS\n" + commands_text(command, top);
  page += ".SH OPTIONS\n" + options_text(command);
  if (&command == &top) {
    page += ".SH ENVIRONMENT\nThe library under the program reads these; " + bold("qel info") +
            " tells what their values do.\n" + environment_text();
    page += ".SH EXIT STATUS\n0: done; 2: bad input; a command's page tells others.\n";
  } else {
    page += ".SH SEE ALSO\n" + bold(top.name()) + "(1)\n";
  }
  return page;
}

}  // namespace qel::cli
