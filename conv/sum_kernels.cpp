// SPDX-License-Identifier: BSD-3-Clause
#include "conv/sum_kernels.h"

#include "conv/kernels/conv_kernels.h"
#include "service/dispatch.h"

namespace qel::conv {
namespace {

// Each processor type has either kind.
#define QEL_ACCUMULATE(letter)                                                                         \
  {                                                                                                    \
    {                                                                                                  \
      t0_ex::accumulate_##letter, t1_e7::accumulate_##letter, t2_u8::accumulate_##letter,              \
          t3_y8::accumulate_##letter, t4_h8::accumulate_##letter, t5_e9::accumulate_##letter, nullptr, \
          nullptr                                                                                      \
    }                                                                                                  \
  }
#define QEL_SUMS(letter)                                                                                 \
  {                                                                                                      \
    { nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, t6_n6::sums_##letter, t7_n7::sums_##letter } \
  }
constexpr type_row<accumulate_kernel<float>> kAccumulateS = QEL_ACCUMULATE(s);
constexpr type_row<accumulate_kernel<double>> kAccumulateD = QEL_ACCUMULATE(d);
constexpr type_row<sums_kernel<float>> kSumsS = QEL_SUMS(s);
constexpr type_row<sums_kernel<double>> kSumsD = QEL_SUMS(d);
constexpr type_row<sums_kernel<complex8>> kSumsC = QEL_SUMS(c);
constexpr type_row<sums_kernel<complex16>> kSumsZ = QEL_SUMS(z);
#undef QEL_ACCUMULATE
#undef QEL_SUMS
constinit bind_slot<accumulate_kernel<float>> accumulate_slot_s{nullptr};
constinit bind_slot<accumulate_kernel<double>> accumulate_slot_d{nullptr};
constinit bind_slot<sums_kernel<float>> sums_slot_s{nullptr};
constinit bind_slot<sums_kernel<double>> sums_slot_d{nullptr};
constinit bind_slot<sums_kernel<complex8>> sums_slot_c{nullptr};
constinit bind_slot<sums_kernel<complex16>> sums_slot_z{nullptr};

}  // namespace

#define QEL_CALL(name, E, slot, row)                                                               \
  template <>                                                                                      \
  void name(const E* taps, core_int tap_count, const E* data, core_int data_count, core_int first, \
            core_int last, E* w) {                                                                 \
    call_bound<slot, row>(taps, tap_count, data, data_count, first, last, w);                      \
  }
QEL_CALL(accumulate, float, accumulate_slot_s, kAccumulateS)
QEL_CALL(accumulate, double, accumulate_slot_d, kAccumulateD)
QEL_CALL(native_sums, float, sums_slot_s, kSumsS)
QEL_CALL(native_sums, double, sums_slot_d, kSumsD)
QEL_CALL(native_sums, complex8, sums_slot_c, kSumsC)
QEL_CALL(native_sums, complex16, sums_slot_z, kSumsZ)
#undef QEL_CALL

}  // namespace qel::conv
