// SPDX-License-Identifier: BSD-3-Clause
// qel explain: what the library would do with a matrix operation of given sizes, and why. The answers come
// from the functions by which the drivers decide; only the facts can be replaced.
#include <fmt/core.h>

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "blas/level3/gemm_blocks.h"
#include "blas/level3/gemm_rules.h"
#include "blas/level3/native/level3_native.h"
#include "blas/level3/side_rules.h"
#include "cli/commands.h"
#include "cli/explain_native.h"
#include "lapack/factor/plans.h"
#include "service/serv.h"

namespace qel::cli {
namespace {

element_type type_of(const std::string& letter) {
  constexpr const char* kLetters = "sdcz";
  for (int i = 0; i < 4; ++i) {
    if (letter.size() == 1 && (letter[0] | 32) == kLetters[i]) return static_cast<element_type>(i);
  }
  throw std::invalid_argument("the element type is one of s, d, c, z");
}

dense_processor processor_of(const explain_options& options) {
  dense_processor processor = this_processor();
  if (options.level >= 0) processor.level = options.level;
  if (!options.caches.empty()) {
    for (int& entry : processor.caches) entry = 0;
    processor.caches[0] = static_cast<int>(options.caches.size());
    for (size_t i = 0; i < options.caches.size() && i < 4; ++i) processor.caches[i + 1] = options.caches[i];
  }
  return processor;
}

core_int size_at(const explain_options& options, size_t place, const char* usage) {
  if (place >= options.sizes.size()) throw std::invalid_argument(usage);
  if (options.sizes[place] < 0) throw std::invalid_argument("sizes are not negative");
  return options.sizes[place];
}
void expect_sizes(const explain_options& options, size_t count, const char* usage) {
  if (options.sizes.size() != count) throw std::invalid_argument(usage);
}

const char* path_name(gemm_path path) {
  constexpr const char* kNames[] = {
      "SSE2, strips of B", "SSE3", "SSSE3", "SSSE3 with SSE4.1", "SSE4.2", "AVX", "AMD family 10h"};
  return kNames[static_cast<int>(path)];
}

void add_serial_part(report& out, element_type type, const dense_processor& processor,
                     const gemm_choice& choice, core_int m, core_int n, core_int k) {
  const gemm_path path = gemm_path_of(processor);
  out["kernels"] = path_name(path);
  gemm_blocks blocks;
  if (path == gemm_path::strips) {
    const gemm_strip_blocks strips = choose_strip_blocks(type, gemm_widths(path, type).mr, m, n, k);
    blocks = gemm_widths(path, type);
    blocks.mc = strips.mc;
    blocks.nc = strips.nc;
    blocks.kc = strips.kc;
  } else if (path == gemm_path::sse3) {
    blocks = choose_sse3_blocks(m, n, k);
    const gemm_blocks widths = gemm_widths(path, type);
    blocks.mr = widths.mr;
    blocks.nr = widths.nr;
    blocks.ku = widths.ku;
    out["b_without_transpose"] = reads_b_unpacked(false, m, n, k) ? "read as it lies" : "packed";
  } else {
    blocks.mc = choice.scheme == gemm_scheme::private_pack || choice.scheme == gemm_scheme::shared_a ||
                        choice.scheme == gemm_scheme::shared_b
                    ? choice.block_m
                    : 0;
    choose_gemm_blocks(choice.blocking, type, processor, m, n, k, blocks);
    out["b"] = packs_b_as_it_goes(path, type, n, k) ? "packed strip by strip" : "packed in blocks";
  }
  out["small_kernel"] = goes_to_small_kernel(path, m, n, k);
  out["tile"] = fmt::format("{} x {}", blocks.mr, blocks.nr);
  out["blocks"] = {{"mc", blocks.mc}, {"nc", blocks.nc}, {"kc", blocks.kc}};
}

report explain_gemm(const explain_options& options, element_type type) {
  constexpr const char* kUsage = "explain gemm takes three sizes: M N K";
  expect_sizes(options, 3, kUsage);
  const core_int m = size_at(options, 0, kUsage), n = size_at(options, 1, kUsage),
                 k = size_at(options, 2, kUsage);
  gemm_facts facts{type, processor_of(options), 1, options.in_parallel, m, n, k};
  facts.threads = options.threads > 0 ? options.threads : serv_threads_for_domain(1);
  const gemm_choice choice = choose_gemm(facts);
  report out;
  out["level"] = facts.processor.level;
  out["class"] = gemm_class(facts.processor);
  out["threads_allowed"] = facts.threads;
  out["scheme"] = name_of(choice.scheme);
  out["reason"] = choice.reason;
  out["threads"] = choice.threads;
  if (choice.grid_rows != 0) out["grid"] = fmt::format("{} x {}", choice.grid_rows, choice.grid_cols);
  for (const auto& [key, value] :
       {std::pair{"block_m", choice.block_m}, {"block_n", choice.block_n}, {"block_k", choice.block_k}}) {
    if (value != 0) out[key] = value;
  }
  out["beta_in_a_region_of_its_own"] = choice.scale_first;
  add_serial_part(out, type, facts.processor, choice, m, n, k);
  return out;
}

report explain_side(const explain_options& options) {
  const bool solve = options.operation == "trsm";
  const std::string usage = "explain " + options.operation + " takes two sizes: M N";
  expect_sizes(options, 2, usage.c_str());
  if (options.side != "L" && options.side != "R") throw std::invalid_argument("the side is L or R");
  side_facts facts{options.side == "L", processor_of(options).level, size_at(options, 0, usage.c_str()),
                   size_at(options, 1, usage.c_str()),
                   options.threads > 0 ? options.threads : serv_threads_for_domain(1)};
  const side_choice choice = solve ? choose_trsm(facts) : choose_trmm(facts);
  report out;
  out["level"] = facts.level;
  out["threads_allowed"] = facts.threads;
  out["threads"] = choice.threads;
  out["reason"] = choice.reason;
  if (choice.threads > 1) out[facts.left ? "columns_per_thread" : "rows_per_thread"] = choice.chunk;
  if (options.operation != "symm") {
    const triangle_plan plan = choose_triangle_plan(facts.level, facts.left, facts.n);
    out["diagonal_blocks"] = {plan.outer, plan.inner};
    out[facts.left ? "columns_at_a_time" : "rows_at_a_time"] = plan.right_hand;
  }
  return out;
}

report explain_syrk(const explain_options& options) {
  constexpr const char* kUsage = "explain syrk takes two sizes: N K";
  expect_sizes(options, 2, kUsage);
  const syrk_facts facts{processor_of(options).level, size_at(options, 0, kUsage),
                         size_at(options, 1, kUsage),
                         options.threads > 0 ? options.threads : serv_threads_for_domain(1), false};
  const syrk_choice choice = choose_syrk(facts);
  constexpr const char* kNames[] = {"nothing", "order 4", "serial", "slices", "triangle_blocks"};
  report out;
  out["level"] = facts.level;
  out["threads_allowed"] = facts.threads;
  out["scheme"] = kNames[static_cast<int>(choice.scheme)];
  out["reason"] = choice.reason;
  out["threads"] = choice.threads;
  if (choice.threads > 1) {
    out["columns_per_piece"] = choice.chunk;
    out["pieces"] = choice.items;
  }
  return out;
}

/// The sizes of a native operation as those of its product.
native_question native_question_of(const explain_options& options, int level) {
  const std::string& operation = options.operation;
  const bool gemm = operation == "gemm", rank_update = operation == "syrk";
  const std::string usage = "explain " + operation + " takes " + (gemm ? "three" : "two") + " sizes";
  expect_sizes(options, gemm ? 3 : 2, usage.c_str());
  if (options.side != "L" && options.side != "R") throw std::invalid_argument("the side is L or R");
  native_question question{};
  question.operation = operation;
  question.type = static_cast<char>(options.type[0] | 32);
  question.level = level;
  question.left = options.side == "L";
  const core_int first = size_at(options, 0, usage.c_str()), second = size_at(options, 1, usage.c_str());
  question.m = first;
  question.n = rank_update ? first : second;
  question.k = gemm          ? size_at(options, 2, usage.c_str())
               : rank_update ? second
                             : (question.left ? first : second);
  question.threads = options.threads > 0 ? options.threads : serv_threads_for_domain(1);
  serv_native_cache_sizes(question.caches);
  if (!options.caches.empty()) {
    const dense_processor replaced = processor_of(options);
    std::copy(std::begin(replaced.caches), std::end(replaced.caches), question.caches);
  }
  return question;
}

lapack::tuning_processor tuning_processor_of(const explain_options& options) {
  const dense_processor processor = processor_of(options);
  return {processor.level, gemm_class(processor)};
}
char capital(char letter) { return static_cast<char>(letter & ~32); }

report explain_getrf(const explain_options& options) {
  constexpr const char* kUsage = "explain getrf takes two sizes: M N";
  expect_sizes(options, 2, kUsage);
  const lapack::lu_facts facts{
      capital(options.type[0]), size_at(options, 0, kUsage), size_at(options, 1, kUsage),
      options.threads > 0 ? options.threads : serv_threads_all(), tuning_processor_of(options)};
  const lapack::lu_plan plan = lapack::plan_lu(facts);
  constexpr const char* kNames[] = {"nothing", "recursive", "threads of the BLAS", "unblocked", "tasks"};
  report out;
  out["level"] = facts.processor.level;
  out["threads_allowed"] = facts.threads;
  out["path"] = kNames[static_cast<int>(plan.path)];
  out["reason"] = plan.reason;
  out["threads"] = plan.threads;
  if (plan.path == lapack::lu_path::tasks) {
    out["block"] = plan.block;
    out["columns_of_one_grant"] = plan.group;
    out["columns_kept_out_of_first_grants"] = plan.lookahead;
  }
  return out;
}

report explain_potrf(const explain_options& options) {
  constexpr const char* kUsage = "explain potrf takes one size: N";
  expect_sizes(options, 1, kUsage);
  if (options.uplo != "L" && options.uplo != "U") throw std::invalid_argument("the triangle is L or U");
  const lapack::cholesky_facts facts{
      capital(options.type[0]), options.uplo == "U", size_at(options, 0, kUsage),
      options.threads > 0 ? options.threads : serv_threads_all(), tuning_processor_of(options)};
  const lapack::cholesky_plan plan = lapack::plan_cholesky(facts);
  constexpr const char* kNames[] = {"nothing", "unblocked", "serial", "tasks"};
  report out;
  out["level"] = facts.processor.level;
  out["threads_allowed"] = facts.threads;
  out["path"] = kNames[static_cast<int>(plan.path)];
  out["reason"] = plan.reason;
  out["threads"] = plan.threads;
  if (plan.path == lapack::cholesky_path::tasks) {
    out["tile"] = plan.block;
    out["panels_of_one_task"] = plan.grain;
  }
  return out;
}

std::string as_text(const report& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  if (!value.is_structured()) return value.dump();
  std::string text;
  for (const auto& [key, part] : value.items()) {
    text += (text.empty() ? "" : ", ") + (value.is_object() ? key + " " : "") + part.dump();
  }
  return text;
}

}  // namespace

int run_explain(const explain_options& options) {
  const element_type type = type_of(options.type);
  report out;
  const int level = processor_of(options).level;
  const bool factorisation = options.operation == "getrf" || options.operation == "potrf";
  if (level >= kFirstNativeLevel && !factorisation) {
    out = explain_native(native_question_of(options, level));
  } else if (options.operation == "gemm") {
    out = explain_gemm(options, type);
  } else if (options.operation == "syrk") {
    out = explain_syrk(options);
  } else if (options.operation == "getrf") {
    out = explain_getrf(options);
  } else if (options.operation == "potrf") {
    out = explain_potrf(options);
  } else {
    out = explain_side(options);
  }
  if (options.json) {
    fmt::print("{}\n", out.dump(2));
    return kDone;
  }
  for (auto [key, value] : out.items()) {
    std::string words = key;
    for (char& c : words) c = c == '_' ? ' ' : c;
    fmt::print("{:<28} {}\n", words, as_text(value));
  }
  return kDone;
}

}  // namespace qel::cli
