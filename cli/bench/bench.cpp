// SPDX-License-Identifier: BSD-3-Clause
// qel bench: the benchmark programs one after the other, a summary, and a page to send on.
#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>

#include "cli/bench/heading.h"
#include "cli/bench/writers.h"
#include "cli/child_process.h"
#include "cli/commands.h"

namespace qel::cli {

using namespace bench;
using nlohmann::ordered_json;

namespace {

/// What --family names. Throws std::invalid_argument for what there is not.
std::vector<bench_family> chosen_families(const std::vector<std::string>& names) {
  const std::vector<bench_family>& all = bench_families();
  std::vector<bench_family> chosen;
  for (const std::string& name : names) {
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const bench_family& f) { return name == f.name; });
    if (found == all.end()) {
      std::string list;
      for (const bench_family& f : all) list += (list.empty() ? "" : ", ") + std::string(f.name);
      throw std::invalid_argument(fmt::format("there is no family {}; there are {}", name, list));
    }
    chosen.push_back(*found);
  }
  return names.empty() ? all : chosen;
}

/// What --peers says, put into the settings.
void choose_peers(const std::string& text, run_settings& settings) {
  settings.all_peers = text == "auto";
  if (settings.all_peers || text == "none") return;
  size_t first = 0;
  while (first <= text.size()) {
    const size_t end = std::min(text.find(',', first), text.size());
    const std::string name = text.substr(first, end - first);
    const bool known =
        std::any_of(bench_families().begin(), bench_families().end(), [&](const bench_family& f) {
          return std::find(f.peers.begin(), f.peers.end(), name) != f.peers.end();
        });
    if (!known)
      throw std::invalid_argument(fmt::format("there is no peer '{}'; qel bench --list tells them", name));
    settings.peers.push_back(name);
    first = end + 1;
  }
}

void print_list() {
  for (const bench_family& family : bench_families()) {
    std::string peers;
    for (const char* peer : family.peers) peers += fmt::format("{}{}", peers.empty() ? "" : ", ", peer);
    fmt::print("{:<10}{:<22}{}{}\n", family.name, family.title, peers,
               find_program(family).empty() ? "   (not installed)" : "");
  }
}

std::string in_minutes(double seconds) {
  const auto whole = static_cast<long>(std::lround(seconds));
  return whole < 90 ? fmt::format("{} s", whole) : fmt::format("{} min", (whole + 30) / 60);
}

/// One line on a terminal; elsewhere a line for every family that begins.
class progress_bar {
 public:
  progress_bar(double total_seconds, bool terminal) : total_(total_seconds), terminal_(terminal) {
    if (!terminal_) fmt::print(stderr, "about {}\n", in_minutes(total_));
  }
  ~progress_bar() {
    if (terminal_) fmt::print(stderr, "\r\033[K");
  }
  progress_bar(const progress_bar&) = delete;
  progress_bar& operator=(const progress_bar&) = delete;

  void begin(const bench_family& family, double seconds) {
    name_ = family.title;
    share_ = seconds;
    if (!terminal_) fmt::print(stderr, "{}\n", name_);
    show(0);
  }
  void show(double part) {
    if (!terminal_) return;
    constexpr int kWidth = 30;
    const double done = (before_ + part * share_) / total_;
    const double elapsed = std::chrono::duration<double>(child_process::clock::now() - start_).count();
    // At first by the estimate, later more and more by what it has taken so far.
    const double left = (1 - done) * ((1 - done) * total_ + (done > 0 ? elapsed : 0));
    const auto full = static_cast<size_t>(done * kWidth);
    fmt::print(stderr, "\r\033[K[{:<{}}] {:3.0f} %  {}, about {} left", std::string(full, '#'), kWidth,
               100 * done, name_, in_minutes(left));
    std::fflush(stderr);
  }
  void end() { before_ += share_; }

 private:
  const double total_;
  const bool terminal_;
  const child_process::clock::time_point start_ = child_process::clock::now();
  std::string name_;
  double before_ = 0, share_ = 0;
};

/// Before minutes of work are done for it.
void expect_writable(const std::string& path) {
  if (!path.empty() && !std::ofstream(path, std::ios::app))
    throw std::runtime_error(path + " can't be written");
}

void write_file(const std::string& path, const std::string& text) {
  if (path.empty()) return;
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw std::runtime_error(path + " can't be written");
}

struct findings {
  ordered_json heading;
  std::vector<family_results> families;
};

/// Peers of another document that this heading has not.
void join_peers(ordered_json& heading, const ordered_json& other) {
  for (const ordered_json& peer : other["peers"]) {
    const bool known = std::any_of(heading["peers"].begin(), heading["peers"].end(),
                                   [&](const ordered_json& p) { return p["name"] == peer["name"]; });
    if (!known) heading["peers"].push_back(peer);
  }
}

findings run_all(const bench_options& options) {
  run_settings settings = settings_of(options.quick, options.threads);
  choose_peers(options.peers, settings);
  const std::vector<bench_family> chosen = chosen_families(options.families);
  const auto seconds_of = [&](const bench_family& f) {
    return options.quick ? f.quick_seconds : f.ordinary_seconds;
  };
  double total = seconds_of(machine_family());
  for (const bench_family& family : chosen) total += seconds_of(family);
  progress_bar bar(total, isatty(STDERR_FILENO) != 0);
  const auto run = [&](const bench_family& family) {
    bar.begin(family, seconds_of(family));
    family_results results = run_family(family, settings, [&](double part) { bar.show(part); });
    bar.end();
    return results;
  };
  findings found;
  const family_results machine = run(machine_family());
  for (const bench_family& family : chosen) found.families.push_back(run(family));
  found.heading = heading_of(settings, machine, found.families);
  return found;
}

/// The files' families; heading and order of the first one count, a later file's family replaces an earlier
/// one's.
findings read_findings(const std::vector<std::string>& paths) {
  findings found;
  for (const std::string& path : paths) {
    std::ifstream file(path);
    if (!file) throw std::invalid_argument(path + " can't be read");
    const ordered_json document = ordered_json::parse(file, nullptr, false);
    for (family_results& family : families_of(document)) {
      const auto earlier = std::find_if(found.families.begin(), found.families.end(),
                                        [&](const family_results& f) { return f.name == family.name; });
      if (earlier == found.families.end()) {
        found.families.push_back(std::move(family));
      } else {
        *earlier = std::move(family);
      }
    }
    if (found.heading.is_null()) found.heading = document;
    join_peers(found.heading, document);
  }
  return found;
}

}  // namespace

int run_bench(const bench_options& options) {
  if (options.list) {
    print_list();
    return kDone;
  }
  for (const std::string& path : {options.json, options.html, options.markdown}) expect_writable(path);
  const findings found = options.from.empty() ? run_all(options) : read_findings(options.from);
  const ordered_json document = as_document(found.heading, found.families);
  fmt::print("{}", summary_table(found.families));
  write_file(options.json, document.dump(1) + '\n');
  write_file(options.html, html_page(document));
  write_file(options.markdown, markdown_page(document, found.families));
  const bool whole = std::all_of(found.families.begin(), found.families.end(),
                                 [](const family_results& family) { return family.note.empty(); });
  return whole ? kDone : kFailed;
}

}  // namespace qel::cli
