// SPDX-License-Identifier: BSD-3-Clause
#include "cli/bench/results.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace qel::cli::bench {

using nlohmann::ordered_json;

const contender_result* case_result::own() const {
  const auto found =
      std::find_if(results.begin(), results.end(), [](const auto& r) { return r.contender == "QEL"; });
  return found == results.end() ? nullptr : &*found;
}

const contender_result* case_result::best_peer() const {
  const contender_result* best = nullptr;
  for (const contender_result& one : results) {
    if (role_of(one.contender) == contender_role::peer && (best == nullptr || one.seconds < best->seconds))
      best = &one;
  }
  return best;
}

double case_result::ratio() const {
  const contender_result *mine = own(), *peer = best_peer();
  return mine == nullptr || peer == nullptr ? 0 : peer->seconds / mine->seconds;
}

double case_result::share() const {
  const contender_result* const mine = own();
  double limit = 0;
  for (const contender_result& one : results) {
    if (role_of(one.contender) == contender_role::limit) limit = std::max(limit, one.seconds);
  }
  return mine == nullptr ? 0 : limit / mine->seconds;
}

family_summary summarise(const family_results& family) {
  family_summary summary;
  double logarithms = 0, logarithms_of_shares = 0;
  int limited = 0;
  for (const case_result& one : family.cases) {
    ++summary.cases;
    if (const double share = one.share(); share > 0) {
      logarithms_of_shares += std::log(share);
      ++limited;
    }
    const double ratio = one.ratio();
    if (ratio == 0) continue;
    logarithms += std::log(ratio);
    if (++summary.compared == 1 || ratio < summary.worst) {
      summary.worst = ratio;
      summary.worst_case = one.name;
      summary.worst_peer = one.best_peer()->contender;
    }
    if (summary.compared == 1 || ratio > summary.best) {
      summary.best = ratio;
      summary.best_case = one.name;
    }
  }
  if (summary.compared > 0) summary.ratio = std::exp(logarithms / summary.compared);
  if (limited > 0) summary.share = std::exp(logarithms_of_shares / limited);
  return summary;
}

void add_record(family_results& family, const ordered_json& record) {
  if (!record.is_object() || !record.contains("case") || !record.contains("seconds")) return;
  const std::string name = record["case"].get<std::string>();
  const auto found =
      std::find_if(family.cases.begin(), family.cases.end(), [&](const auto& c) { return c.name == name; });
  case_result& target =
      found != family.cases.end() ? *found : family.cases.emplace_back(case_result{name, {}});
  target.results.push_back({record["contender"].get<std::string>(), record["seconds"].get<double>(),
                            record.value("least", 0.0), record.value("most", 0.0),
                            record.value("flop/s", 0.0), record.value("byte/s", 0.0)});
}

ordered_json as_document(ordered_json heading, const std::vector<family_results>& families) {
  heading["families"] = ordered_json::array();
  for (const family_results& family : families) {
    const family_summary summary = summarise(family);
    ordered_json out = {{"name", family.name},
                        {"title", family.title},
                        {"about", family.about},
                        {"note", family.note},
                        {"seconds", family.seconds},
                        {"summary",
                         {{"cases", summary.cases},
                          {"compared", summary.compared},
                          {"ratio", summary.ratio},
                          {"share", summary.share},
                          {"worst", summary.worst},
                          {"worst_case", summary.worst_case},
                          {"worst_peer", summary.worst_peer},
                          {"best", summary.best},
                          {"best_case", summary.best_case}}},
                        {"cases", ordered_json::array()}};
    for (const case_result& one : family.cases) {
      const case_place place = place_of(one.name);
      ordered_json entry = {{"case", one.name},
                            {"panel", place.panel},
                            {"size", place.size},
                            {"ratio", one.ratio()},
                            {"results", ordered_json::array()}};
      for (const contender_result& r : one.results) {
        entry["results"].push_back({{"contender", r.contender},
                                    {"seconds", r.seconds},
                                    {"least", r.least},
                                    {"most", r.most},
                                    {"flop/s", r.flops},
                                    {"byte/s", r.bytes}});
      }
      out["cases"].push_back(std::move(entry));
    }
    heading["families"].push_back(std::move(out));
  }
  return heading;
}

std::vector<family_results> families_of(const ordered_json& document) {
  if (!document.is_object() || !document.contains("families") || document.value("kind", "") != "qel bench") {
    throw std::invalid_argument("that is no file of qel bench --json");
  }
  std::vector<family_results> families;
  for (const ordered_json& from : document["families"]) {
    family_results family{from["name"], from["title"], from["about"], from["note"], from["seconds"], {}};
    for (const ordered_json& one : from["cases"]) {
      for (ordered_json record : one["results"]) {
        record["case"] = one["case"];
        add_record(family, record);
      }
    }
    families.push_back(std::move(family));
  }
  return families;
}

}  // namespace qel::cli::bench
