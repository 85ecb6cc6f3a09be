// SPDX-License-Identifier: BSD-3-Clause
// Completion scripts. All three walk the words before the cursor down to the command that they name, then
// offer its commands and options, an option's choices after it, and files elsewhere.
#include <fmt/core.h>

#include "cli/command_tree.h"

namespace qel::cli {
namespace {

std::string joined(const std::vector<std::string>& words, const char* between = " ") {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : between) + word;
  return text;
}

// In single quotes, as all three shells read them.
std::string quoted(const std::string& text, bool fish = false) {
  std::string result = "'";
  for (const char c : text) {
    if (c == '\'') {
      result += fish ? "\\'" : "'\\''";
    } else {
      result += fish && c == '\\' ? "\\\\" : std::string(1, c);
    }
  }
  return result + "'";
}

// Paths of all commands but the program itself, as alternatives of a case.
std::string paths_below(const command_entry& top) {
  std::vector<std::string> paths;
  for (const command_entry* command : all_commands(top)) {
    if (command != &top) paths.push_back(quoted(command->path));
  }
  return joined(paths, "|");
}

// Calls use(command, option) for every option with choices.
template <class F>
void for_choices(const command_entry& top, F use) {
  for (const command_entry* command : all_commands(top)) {
    for (const option_entry& option : command->options) {
      if (!option.positional && !option.choices.empty()) use(*command, option);
    }
  }
}

std::string bash(const command_entry& top) {
  std::string script = fmt::format(R"(# Completion of {0} in bash
_{0}() {{
  local current=${{COMP_WORDS[COMP_CWORD]}} previous=${{COMP_WORDS[COMP_CWORD-1]}} command={0} words= i
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case "$command ${{COMP_WORDS[i]}}" in
      {1}) command="$command ${{COMP_WORDS[i]}}" ;;
    esac
  done
  case "$command $previous" in
)",
                                   top.path, paths_below(top));
  for_choices(top, [&](const command_entry& command, const option_entry& option) {
    for (const std::string& name : option.names) {
      script += fmt::format("    {}) COMPREPLY=($(compgen -W {} -- \"$current\")); return ;;\n",
                            quoted(command.path + " " + name), quoted(joined(option.choices)));
    }
  });
  script += "  esac\n  case $command in\n";
  for (const command_entry* command : all_commands(top)) {
    std::vector<std::string> words;
    for (const command_entry& below : command->commands) words.push_back(below.name());
    for (const option_entry& option : command->options) {
      if (!option.positional) words.insert(words.end(), option.names.begin(), option.names.end());
    }
    script += fmt::format("    {}) words={} ;;\n", quoted(command->path), quoted(joined(words)));
  }
  script += fmt::format(R"(  esac
  # Without commands to name, a word without a dash is a file.
  [[ $current != -* && $words == -* ]] || COMPREPLY=($(compgen -W "$words" -- "$current"))
}}
complete -o default -F _{0} {0}
)",
                        top.path);
  return script;
}

// A name and its meaning as _describe takes them.
std::string described(const std::string& name, const std::string& description) {
  std::string escaped;
  for (const char c : name) escaped += c == ':' ? "\\:" : std::string(1, c);
  return quoted(escaped + ":" + description);
}

std::string zsh(const command_entry& top) {
  std::string script = fmt::format(R"(#compdef {0}
_{0}() {{
  local command={0} word
  local -a entries
  for word in ${{words[2,CURRENT-1]}}; do
    case "$command $word" in
      ({1}) command="$command $word" ;;
    esac
  done
  case "$command ${{words[CURRENT-1]}}" in
)",
                                   top.path, paths_below(top));
  for_choices(top, [&](const command_entry& command, const option_entry& option) {
    for (const std::string& name : option.names) {
      script += fmt::format("    ({}) compadd -- {}; return ;;\n", quoted(command.path + " " + name),
                            joined(option.choices));
    }
  });
  script += "  esac\n  case $command in\n";
  for (const command_entry* command : all_commands(top)) {
    script += fmt::format("    ({}) entries=(\n", quoted(command->path));
    for (const command_entry& below : command->commands) {
      script += "      " + described(below.name(), below.description) + "\n";
    }
    for (const option_entry& option : command->options) {
      if (option.positional) continue;
      for (const std::string& name : option.names) {
        script += "      " + described(name, option.description) + "\n";
      }
    }
    script += "    ) ;;\n";
  }
  script += fmt::format(R"(  esac
  _describe -o {0} entries
  [[ ${{words[CURRENT]}} == -* ]] || _files
}}
if [[ $funcstack[1] == _{0} ]]; then _{0} "$@"; else compdef _{0} {0}; fi
)",
                        top.path);
  return script;
}

std::string fish(const command_entry& top) {
  std::string cases;
  for (const command_entry* command : all_commands(top)) {
    if (command != &top) cases += " " + quoted(command->path, true);
  }
  std::string script = fmt::format(R"(# Completion of {0} in fish
function __{0}_command
    set -l command {0}
    set -l words (commandline -opc)
    for word in $words[2..-1]
        switch "$command $word"
            case{1}
                set command "$command $word"
        end
    end
    echo $command
end
)",
                                   top.path, cases);
  for (const command_entry* command : all_commands(top)) {
    const std::string start =
        fmt::format("complete -c {} -n 'test (__{}_command) = \"{}\"'", top.path, top.path, command->path);
    for (const command_entry& below : command->commands) {
      script += fmt::format("{} -a {} -d {}\n", start, below.name(), quoted(below.description, true));
    }
    for (const option_entry& option : command->options) {
      if (option.positional) continue;
      script += start;
      for (const std::string& name : option.names) {
        script += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
      }
      if (!option.value.empty()) script += " -r";
      if (!option.choices.empty()) script += " -f -a " + quoted(joined(option.choices), true);
      script += " -d " + quoted(option.description, true) + "\n";
    }
  }
  return script;
}

}  // namespace

std::string completion_script(const command_entry& top, const std::string& shell) {
  if (shell == "fish") return fish(top);
  return shell == "zsh" ? zsh(top) : bash(top);
}

}  // namespace qel::cli
