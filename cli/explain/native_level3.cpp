// SPDX-License-Identifier: BSD-3-Clause
// qel explain on the native levels: the plan of one product, and the slabs of triangular operations.
#include "cli/explain/native_level3.h"

#include <fmt/core.h>

#include <algorithm>

#include "blas/level3/native/copies.h"
#include "blas/level3/native/level3_native.h"

namespace qel::cli {
namespace {

using native::product_facts;
using native::product_plan;
using native::product_scheme;

template <class T>
product_facts facts_of(const native_question& q) {
  const level3_kernels<T>& kernels = *native::kernels_of_level<T>::row[q.level];
  product_facts facts{};
  facts.element_size = static_cast<int>(sizeof(T));
  facts.weight = native::kProductWeight<T>;
  facts.tile_rows = kernels.tile_rows;
  facts.tile_columns = kernels.tile_columns;
  facts.lanes = kernels.lanes;
  facts.threads = q.threads;
  std::copy(std::begin(q.caches), std::end(q.caches), facts.caches);
  return facts;
}
product_facts facts_of(const native_question& q) {
  switch (q.type) {
    case 's':
      return facts_of<float>(q);
    case 'd':
      return facts_of<double>(q);
    case 'c':
      return facts_of<complex8>(q);
    default:
      return facts_of<complex16>(q);
  }
}

const char* name_of(product_scheme scheme) {
  constexpr const char* kNames[] = {"in place", "A packed, B in place", "slabs in place", "packed",
                                    "split depth"};
  return kNames[static_cast<int>(scheme)];
}

report describe(const product_facts& facts) {
  const product_plan plan = native::plan_product(facts);
  report out;
  out["scheme"] = name_of(plan.scheme);
  out["reason"] = plan.reason;
  out["threads"] = plan.threads;
  out["tile"] = fmt::format("{} x {}", facts.tile_rows, facts.tile_columns);
  if (plan.scheme == product_scheme::slabs || plan.scheme == product_scheme::packed) {
    out["grid"] = fmt::format("{} x {}", plan.grid_rows, plan.grid_columns);
  }
  if (plan.depth != 0) out["depth"] = plan.depth;
  if (plan.scheme == product_scheme::packed) {
    out["packed_at_a_time"] = {{"rows", plan.rows}, {"columns", plan.columns}};
    out["columns_in_cache"] = plan.columns_in_cache;
  }
  if (plan.scheme == product_scheme::packed || plan.scheme == product_scheme::a_packed) {
    out["outer_loop"] = plan.columns_outside ? "columns" : "rows";
  }
  return out;
}

}  // namespace

report explain_native(const native_question& q) {
  product_facts facts = facts_of(q);
  report out;
  out["level"] = q.level;
  out["threads_allowed"] = q.threads;
  if (q.operation == "trmm" && native::fills_triangle(false, q.m, q.n)) {
    out["scheme"] = "on copies";
    out["reason"] = "small: the triangle is filled up with zeros, unless a result is not finite";
    out["threads"] = 1;
    return out;
  }
  const bool one_triangle = q.operation == "syrk", structured = q.operation == "symm";
  const native::copy_plan copies =
      native::plan_copies(q.m, q.n, q.k, structured && q.left, false, structured && !q.left,
                          one_triangle ? c_part::upper : c_part::whole);
  if (copies.pays) {
    out["scheme"] = "on copies";
    out["reason"] = "small: packing would cost more than the product";
    out["threads"] = 1;
    out["copied"] = fmt::format("{}{}{}", copies.a ? "A" : "", copies.b ? "B" : "", copies.c ? "C" : "");
    return out;
  }
  if (q.operation == "trsm" || q.operation == "trmm") {
    const core_int order = q.left ? q.m : q.n, count = q.left ? q.n : q.m;
    const int slabs = native::plan_slabs(order, count, facts.weight, q.threads);
    out["threads"] = slabs;
    out["reason"] = slabs > 1 ? "slabs of right-hand sides don't depend on one another"
                              : "one slab; products between the diagonal blocks may fork";
    out["diagonal_blocks"] = kTriangleOrder;
    out["tile"] = fmt::format("{} x {}", facts.tile_rows, facts.tile_columns);
    return out;
  }
  facts.m = q.m;
  facts.n = q.n;
  facts.k = q.k;
  facts.direct = q.operation == "gemm";
  if (one_triangle) {
    facts.part = c_part::upper;
    facts.weight /= 2;
  }
  out.update(describe(facts));
  return out;
}

}  // namespace qel::cli
