// SPDX-License-Identifier: BSD-3-Clause
// The kernels of vector math and of random streams, by processor type.
#pragma once

#include "service/dispatch.h"
#include "vector/kernels/vector_kernels.h"

namespace qel {

#define QEL_VML_ROW(name)                                                       \
  {                                                                             \
    {                                                                           \
      t0_ex::qel_vml_core_ex_vml_##name, t1_e7::qel_vml_core_e7_vml_##name,     \
          t2_u8::qel_vml_core_u8_vml_##name, t3_y8::qel_vml_core_y8_vml_##name, \
          t4_h8::qel_vml_core_h8_vml_##name, t5_e9::qel_vml_core_e9_vml_##name, \
          t6_n6::qel_vml_core_n6_vml_##name, t7_n7::qel_vml_core_n7_vml_##name  \
    }                                                                           \
  }
#define QEL_VSL_ROW(name)                                                                              \
  {                                                                                                    \
    {                                                                                                  \
      t0_ex::qel_vsl_core_ex_##name, t1_e7::qel_vsl_core_e7_##name, t2_u8::qel_vsl_core_u8_##name,     \
          t3_y8::qel_vsl_core_y8_##name, t4_h8::qel_vsl_core_h8_##name, t5_e9::qel_vsl_core_e9_##name, \
          t6_n6::qel_vsl_core_n6_##name, t7_n7::qel_vsl_core_n7_##name                                 \
    }                                                                                                  \
  }

inline constexpr type_row<vml_kernel> kDivHa = QEL_VML_ROW(dDiv_HA);
inline constexpr type_row<vml_kernel> kDivLa = QEL_VML_ROW(dDiv_50);
inline constexpr type_row<vml_kernel> kDivEp = QEL_VML_ROW(dDiv_26);
inline constexpr type_row<vml_kernel> kMul = QEL_VML_ROW(dMul);
inline constexpr type_row<vml_kernel> kSub = QEL_VML_ROW(dSub);
inline constexpr type_row<r250_fill_kernel> kR250Fill = QEL_VSL_ROW(r250_fill);
inline constexpr type_row<clamp_kernel> kClamp = QEL_VSL_ROW(clamp);

#undef QEL_VML_ROW
#undef QEL_VSL_ROW

}  // namespace qel
