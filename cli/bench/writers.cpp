// SPDX-License-Identifier: BSD-3-Clause
#include "cli/bench/writers.h"

#include <fmt/core.h>

#include "cli/bench/report_page.h"

namespace qel::cli::bench {
namespace {

using nlohmann::ordered_json;

/// "12.3 us"
std::string duration(double seconds) {
  if (seconds < 1e-6) return fmt::format("{:.1f} ns", seconds * 1e9);
  if (seconds < 1e-3) return fmt::format("{:.3g} us", seconds * 1e6);
  return seconds < 1 ? fmt::format("{:.3g} ms", seconds * 1e3) : fmt::format("{:.3g} s", seconds);
}
std::string rate(const contender_result& r) {
  if (r.flops > 0) return fmt::format("{:.3g} Gflop/s", r.flops * 1e-9);
  return r.bytes > 0 ? fmt::format("{:.3g} GB/s", r.bytes * 1e-9) : "";
}

std::string markdown_table(const family_results& family) {
  std::vector<std::string> others;
  for (const case_result& one : family.cases) {
    for (const contender_result& r : one.results) {
      if (r.contender != "QEL" && std::find(others.begin(), others.end(), r.contender) == others.end())
        others.push_back(r.contender);
    }
  }
  std::string text = "| case | time | rate |", rule = "|---|---:|---:|";
  for (const std::string& name : others) text += fmt::format(" {} |", name), rule += "---:|";
  text += '\n' + rule + '\n';
  for (const case_result& one : family.cases) {
    const contender_result* const own = one.own();
    text += fmt::format("| `{}` | {} | {} |", one.name, duration(own->seconds), rate(*own));
    for (const std::string& name : others) {
      const auto found = std::find_if(one.results.begin(), one.results.end(),
                                      [&](const contender_result& r) { return r.contender == name; });
      text += found == one.results.end() ? " |" : fmt::format(" {:.2f} |", found->seconds / own->seconds);
    }
    text += '\n';
  }
  return text;
}

}  // namespace

std::string html_page(const ordered_json& document) {
  // A closing tag inside the data would end the script that holds it.
  std::string data = document.dump(-1, ' ', true, ordered_json::error_handler_t::replace);
  for (size_t at = 0; (at = data.find("</", at)) != std::string::npos; at += 3) data.replace(at, 2, "<\\/");
  std::string page = kReportPage;
  constexpr std::string_view kPlace = "@RESULTS@";
  page.replace(page.find(kPlace), kPlace.size(), data);
  return page;
}

std::string markdown_page(const ordered_json& document, const std::vector<family_results>& families) {
  const ordered_json &processor = document["processor"], &settings = document["settings"];
  std::string text = fmt::format(
      "# Benchmarks\n\n"
      "Written by `scripts/bench_report.sh` from `qel bench`, {}. {} thread{}; medians of {} interleaved\n"
      "repetitions. Numbers in the columns of other libraries are their time over QEL's: above 1 QEL is "
      "faster.\n\n"
      "Machine: {}, level {}; at most {:.1f} Gflop/s in double precision and {:.1f} GB/s read from memory, "
      "measured\n"
      "in the same run. QEL {}, {}.\n",
      document["date"].get<std::string>(), settings["threads"].get<int>(),
      settings["threads"] == 1 ? "" : "s", settings["repetitions"].get<int>(),
      processor["model"].get<std::string>(), processor["level"].get<int>(),
      processor["peak_flops"].get<double>() * 1e-9, processor["read_bytes"].get<double>() * 1e-9,
      document["version"].get<std::string>(), document["build"]["compiler"].get<std::string>());
  std::string peers;
  for (const ordered_json& peer : document["peers"]) {
    const std::string version = peer["version"].get<std::string>();
    peers += fmt::format("{}{}{}", peers.empty() ? "" : ", ", peer["name"].get<std::string>(),
                         version.empty() ? "" : ' ' + version);
  }
  if (!peers.empty()) text += fmt::format("Beside: {}.\n", peers);
  text +=
      "\n## Summary\n\n| family | cases | mean ratio to the best peer | worst | best | mean share of a "
      "measured "
      "limit |\n|---|---:|---:|---|---|---:|\n";
  for (const family_results& family : families) {
    const family_summary s = summarise(family);
    text += s.compared == 0
                ? fmt::format("| {} | {} | | | |", family.title, s.cases)
                : fmt::format("| {} | {} | {:.2f} | {:.2f} `{}` ({}) | {:.2f} `{}` |", family.title, s.cases,
                              s.ratio, s.worst, s.worst_case, s.worst_peer, s.best, s.best_case);
    text += s.share > 0 ? fmt::format(" {:.2f} |\n", s.share) : " |\n";
  }
  for (const family_results& family : families) {
    text += fmt::format("\n## {}: {}\n\n", family.title, family.about);
    if (!family.note.empty()) text += family.note + ".\n\n";
    if (!family.cases.empty()) text += markdown_table(family);
  }
  return text;
}

std::string summary_table(const std::vector<family_results>& families) {
  std::string text = fmt::format("{:<22}{:>6}{:>12}   {}\n", "family", "cases", "mean ratio",
                                 "worst case beside the best peer");
  for (const family_results& family : families) {
    const family_summary s = summarise(family);
    text += fmt::format("{:<22}{:>6}", family.title, s.cases);
    if (s.compared > 0) {
      text += fmt::format("{:>12.2f}   {:.2f} {} ({})", s.ratio, s.worst, s.worst_case, s.worst_peer);
    } else if (s.cases > 0) {
      text += fmt::format("{:>12}   no peer", "");
    }
    if (!family.note.empty()) text += fmt::format("   {}", family.note);
    text += '\n';
  }
  return text + "ratio: the peer's time over QEL's; above 1 QEL is faster\n";
}

}  // namespace qel::cli::bench
