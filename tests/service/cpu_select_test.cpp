// SPDX-License-Identifier: BSD-3-Clause
// Which kernels a processor gets: the decisions as tables over invented processors, and the process-wide
// queries in processes of their own.
#include <gtest/gtest.h>

#include <cstring>

#include "service/cpu_facts.h"
#include "service/dispatch.h"
#include "service/serv.h"
#include "tests/support/in_child.h"

namespace qel {
namespace {

constexpr uint32_t kSse3 = 1u << 0, kSsse3 = 1u << 9, kSse41 = 1u << 19, kSse42 = 1u << 20,
                   kOsxsave = 1u << 27, kAvx = 1u << 28;

cpu_facts processor(const char* vendor, uint32_t features) {
  cpu_facts facts{};
  std::strcpy(facts.vendor, vendor);
  facts.features_c = features;
  return facts;
}

struct select_case {
  const char* vendor;
  uint32_t features;
  int type, level, level_with_avx;
};
constexpr const char* kOurs = "GenuineIntel";
constexpr select_case kSelect[] = {
    {kOurs, 0, 1, 0, 0},
    {kOurs, kSse3, 1, 1, 1},
    {kOurs, kSse3 | kSsse3, 2, 2, 2},
    {kOurs, kSse3 | kSsse3 | kSse41, 3, 2, 2},
    {kOurs, kSse3 | kSsse3 | kSse41 | kSse42, 4, 3, 3},
    {kOurs, kSse3 | kSsse3 | kSse41 | kSse42 | kOsxsave | kAvx, 5, 3, 4},
    {kOurs, kOsxsave, 5, 0, 4},  // either bit of the mask counts
    {kOurs, kAvx | kSse3, 5, 1, 4},
    {"AuthenticAMD", kSse3 | kSsse3 | kSse41 | kSse42 | kOsxsave | kAvx, 0, 0, 0},
    {"genuineintel", kSse3 | kSse42, 0, 0, 0},
};

TEST(CpuSelect, FollowsTheTableOfFeatures) {
  for (const select_case& c : kSelect) {
    const cpu_facts facts = processor(c.vendor, c.features);
    EXPECT_EQ(natural_cpu_type(facts), c.type) << c.vendor << std::hex << c.features;
    EXPECT_EQ(choose_cpu_level(facts, kNoLevelOverride, false, native_set::none), c.level)
        << c.vendor << std::hex << c.features;
    EXPECT_EQ(choose_cpu_level(facts, kNoLevelOverride, true, native_set::none), c.level_with_avx)
        << c.vendor << std::hex << c.features;
    for (int forced = 0; forced <= 4; ++forced)
      EXPECT_EQ(choose_cpu_level(facts, forced, forced == 4, native_set::avx512), forced);
  }
}

constexpr uint32_t kFma = 1u << 12, kAvx2 = 1u << 5, kAvx512 = 1u << 16 | 1u << 17 | 1u << 30 | 1u << 31;
constexpr uint32_t kAvxAndFma = kSse3 | kSsse3 | kSse41 | kSse42 | kFma | kOsxsave | kAvx;

TEST(CpuSelect, NativeLevelsGoByInstructionsAndSavedRegistersOfAnyVendor) {
  const struct {
    const char* what;
    uint32_t features_c, features_7;
    uint64_t xcr0;
    int level, type;
  } cases[] = {
      {"AVX2 and FMA", kAvxAndFma, kAvx2, 0x07, 5, 6},
      {"AVX-512", kAvxAndFma, kAvx2 | kAvx512, 0xe7, 6, 7},
      {"AVX-512 whose registers are not saved", kAvxAndFma, kAvx2 | kAvx512, 0x07, 5, 6},
      {"AVX-512 without VL", kAvxAndFma, kAvx2 | (kAvx512 & ~(1u << 31)), 0xe7, 5, 6},
      {"AVX2 without FMA", kAvxAndFma & ~kFma, kAvx2, 0x07, -1, -1},
      {"AVX without AVX2", kAvxAndFma, 0, 0x07, -1, -1},
      {"AVX registers not saved", kAvxAndFma, kAvx2, 0x03, -1, -1},
      {"no OSXSAVE", kAvxAndFma & ~kOsxsave, kAvx2, 0x07, -1, -1},
  };
  for (const char* vendor : {kOurs, "AuthenticAMD"}) {
    for (const auto& c : cases) {
      cpu_facts facts = processor(vendor, c.features_c);
      facts.features_7 = c.features_7;
      facts.xcr0 = c.xcr0;
      const int common_level = choose_cpu_level(facts, kNoLevelOverride, false, native_set::none),
                common_type = natural_cpu_type(facts);
      EXPECT_EQ(choose_cpu_level(facts, kNoLevelOverride, false, native_set::avx512),
                c.level < 0 ? common_level : c.level)
          << c.what;
      EXPECT_EQ(choose_cpu_type(facts, native_set::avx512), c.type < 0 ? common_type : c.type) << c.what;
      EXPECT_EQ(choose_cpu_level(facts, kNoLevelOverride, false, native_set::avx2),
                c.level < 0 ? common_level : 5)
          << c.what;
      EXPECT_EQ(choose_cpu_type(facts, native_set::none), common_type) << c.what;
    }
  }
}

TEST(CpuSelect, LevelOverrideTakesOnlyExactForms) {
  const struct {
    const char* value;
    int want;
  } cases[] = {{nullptr, kNoLevelOverride},
               {"0", 0},
               {"1", 1},
               {"4", 4},
               {"5", kNoLevelOverride},
               {"-1", kNoLevelOverride},
               {"abc", kNoLevelOverride},
               {"00", kNoLevelOverride},
               {"3abc", 3},
               {" 2", 2},
               {"", kNoLevelOverride}};
  for (const auto& c : cases)
    EXPECT_EQ(cpu_level_override(c.value), c.want) << (c.value ? c.value : "absent");
}

TEST(CpuSelect, TypeOverrideIsTheDistanceOfTheFirstByte) {
  const struct {
    const char* value;
    int want;
  } cases[] = {{nullptr, -1},    {"0", 0},          {"5", 5},
               {"6", -1},        {"39", 3},         {"x", -1},
               {"-", '-' - '0'}, {" 3", ' ' - '0'}, {"\xC3", static_cast<signed char>(0xC3) - '0'}};
  for (const auto& c : cases) EXPECT_EQ(cpu_type_override(c.value), c.want) << (c.value ? c.value : "absent");
}

// An AVX2 processor of the selected vendor with four caches and an instruction cache among them.
cpuid_answer invented_processor(uint32_t leaf, uint32_t subleaf) {
  cpuid_answer answer{};
  if (leaf == 0) {
    answer = {11, 0, 0, 0};
    std::memcpy(&answer.ebx, "Genu", 4);
    std::memcpy(&answer.edx, "ineI", 4);
    std::memcpy(&answer.ecx, "ntel", 4);
  } else if (leaf == 1) {
    answer.ecx = kAvxAndFma;
  } else if (leaf == 7) {
    answer.ebx = kAvx2;
  } else if (leaf == 4) {
    const auto cache = [](uint32_t kind, uint32_t ways, uint32_t sets) {
      return cpuid_answer{kind, (ways - 1) << 22 | 63, sets - 1, 0};
    };
    const cpuid_answer caches[] = {cache(1, 8, 64), cache(2, 4, 128), cache(3, 8, 1024), cache(3, 16, 8192)};
    if (subleaf < 4) answer = caches[subleaf];
  }
  return answer;
}

int with_variables(const char* level, const char* type, int (*query)(), const char* native = nullptr) {
  const auto set = [](const char* name, const char* value) {
    value ? setenv(name, value, 1) : unsetenv(name);
  };
  return test::in_child([&] {
           replace_cpuid(invented_processor);
           replace_xcr0([] { return uint64_t{7}; });
           set("QEL_DEBUG_CPU_TYPE", level);
           set("QEL_DEBUG_VECTOR_TYPE", type);
           set("QEL_NATIVE", native);
           return query();
         })
      .exit_status;
}

TEST(CpuSelect, QueriesDecideOnceFromProcessorAndEnvironment) {
  EXPECT_EQ(with_variables(nullptr, nullptr, serv_cpu_level), 3);
  EXPECT_EQ(with_variables(nullptr, nullptr, serv_cpu_type), 5);
  EXPECT_EQ(with_variables("4", nullptr, serv_cpu_level), 4);
  EXPECT_EQ(with_variables("0", nullptr, serv_cpu_level), 0);
  EXPECT_EQ(with_variables("", nullptr, serv_cpu_level), 3) << "an empty value counts as absent";
  EXPECT_EQ(with_variables(nullptr, "2", serv_cpu_type), 2);
  EXPECT_EQ(with_variables("1", nullptr,
                           [] {
                             const int first = serv_cpu_level();
                             setenv("QEL_DEBUG_CPU_TYPE", "2", 1);
                             return 10 * first + serv_cpu_level();
                           }),
            11);
}

TEST(CpuSelect, AvxMustBeAllowedBeforeTheFirstQuery) {
  EXPECT_EQ(
      with_variables(nullptr, nullptr, [] { return 10 * serv_cpu_level_enable_avx(1) + serv_cpu_level(); }),
      14);
  EXPECT_EQ(
      with_variables(nullptr, nullptr, [] { return 10 * serv_cpu_level_enable_avx(2) + serv_cpu_level(); }),
      3);
  EXPECT_EQ(with_variables(nullptr, nullptr,
                           [] {
                             const int level = serv_cpu_level();
                             return 10 * serv_cpu_level_enable_avx(1) + level;
                           }),
            3);
  EXPECT_EQ(with_variables(nullptr, nullptr,
                           [] {
                             const int before = serv_cpu_level_avx_enabled();  // asking settles the flag
                             return 10 * before + serv_cpu_level_enable_avx(1);
                           }),
            0);
  EXPECT_EQ(with_variables("4", nullptr, [] { return 10 * serv_cpu_level() + serv_cpu_level_avx_enabled(); }),
            41);
}

TEST(CpuSelect, NativeIsOnRequestAndOverridesWin) {
  EXPECT_EQ(with_variables(nullptr, nullptr, serv_cpu_level, "1"), 5);
  EXPECT_EQ(with_variables(nullptr, nullptr, serv_cpu_type, "1"), 6);
  EXPECT_EQ(with_variables(nullptr, nullptr, serv_cpu_level, "0"), 3);
  EXPECT_EQ(with_variables(nullptr, nullptr, serv_cpu_level, ""), 3);
  EXPECT_EQ(with_variables(
                "2", "3", [] { return 10 * serv_cpu_level() + serv_cpu_type(); }, "1"),
            23);
  EXPECT_EQ(with_variables("4", nullptr, serv_cpu_level, "1"), 4);
  EXPECT_EQ(with_variables("5", nullptr, serv_cpu_level, "1"), 5) << "5 is no override: the natural level";
  const auto call_first = [] { return 10 * serv_enable_native(1) + serv_cpu_level(); };
  EXPECT_EQ(with_variables(nullptr, nullptr, call_first), 15);
  EXPECT_EQ(with_variables(nullptr, nullptr, [] { return 10 * serv_enable_native(2) + serv_cpu_level(); }),
            3);
  EXPECT_EQ(with_variables(nullptr, nullptr,
                           [] {
                             const int level = serv_cpu_level();
                             return 10 * serv_enable_native(1) + level;
                           }),
            3)
      << "too late";
}

template <int kType>
int typed_kernel() {
  return kType;
}
constexpr type_row<int()> kTypedRow{{typed_kernel<0>, typed_kernel<1>, typed_kernel<2>, typed_kernel<3>,
                                     typed_kernel<4>, typed_kernel<5>, typed_kernel<6>, typed_kernel<7>}};

constinit bind_slot<int()> typed_slot{nullptr};

TEST(Dispatch, BindsTheKernelOfTheTypeOnFirstUse) {
  const auto call_and_look = [] {
    const int first = call_bound<typed_slot, kTypedRow>();
    return first + (typed_slot.load() == kTypedRow.kernel[3] ? 10 : 0) +
           20 * call_bound<typed_slot, kTypedRow>();
  };
  EXPECT_EQ(with_variables(nullptr, "3", call_and_look), 3 + 10 + 60);
}

TEST(Dispatch, AForcedNegativeTypeEndsTheProcessWithALineThatNamesTheVariable) {
  const test::child_result result = test::in_child([] {
    setenv("QEL_DEBUG_VECTOR_TYPE", "-", 1);
    return call_bound<typed_slot, kTypedRow>();
  });
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_EQ(result.output, "QEL: no kernel for the value -3 that QEL_DEBUG_VECTOR_TYPE forces\n");
}

TEST(CacheSizes, SkipsInstructionCachesAndCountsTheRest) {
  int sizes[5];
  walk_cache_leaves(invented_processor, kCacheLeaf, sizes);
  EXPECT_EQ(sizes[0], 3);
  EXPECT_EQ(sizes[1], 32 << 10);
  EXPECT_EQ(sizes[2], 512 << 10);
  EXPECT_EQ(sizes[3], 8 << 20);
  EXPECT_EQ(sizes[4], 0);
  // A processor that never ends its list is asked 32 times at most, and only four sizes are kept.
  walk_cache_leaves([](uint32_t, uint32_t) { return cpuid_answer{1, 63, 63, 0}; }, kCacheLeaf, sizes);
  EXPECT_EQ(sizes[0], 32);
  EXPECT_EQ(sizes[4], 64 * 64);
}

}  // namespace
}  // namespace qel
