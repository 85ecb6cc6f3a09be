# Kernels of one processor level: an object library with that level's instructions, and nothing else gets
# those flags. Kernel files are hermetic (one include, no exceptions, no rtti), so that no shared inline
# function can be compiled with a level's instructions; scripts/check_isa_symbols.sh tests it.
set(QEL_FLAGS_l0_generic "")
set(QEL_FLAGS_l1_sse3 -msse3)
set(QEL_FLAGS_l2_ssse3 -mssse3)
set(QEL_FLAGS_l3_sse42 -msse4.2)
set(QEL_FLAGS_l4_avx -mavx)
set(QEL_FLAGS_l5_avx2 -mavx2 -mfma)
set(QEL_FLAGS_l6_avx512 -mavx512f -mavx512bw -mavx512dq -mavx512vl -mavx2 -mfma)

# Kernels of one processor type (vector math, random streams, convolution) are built in the same way.
set(QEL_FLAGS_t0_ex "")
set(QEL_FLAGS_t1_e7 "")
set(QEL_FLAGS_t2_u8 -mssse3)
set(QEL_FLAGS_t3_y8 -msse4.1)
set(QEL_FLAGS_t4_h8 -msse4.2)
set(QEL_FLAGS_t5_e9 -mavx)
set(QEL_FLAGS_t6_n6 ${QEL_FLAGS_l5_avx2})
set(QEL_FLAGS_t7_n7 ${QEL_FLAGS_l6_avx512})

# qel_add_level(FAMILY LEVEL SOURCES...): e.g. qel_add_level(blas l2_ssse3 dot_d.cpp)
function(qel_add_level family level)
  add_library(qel_${family}_${level} OBJECT ${ARGN})
  set_target_properties(qel_${family}_${level} PROPERTIES QEL_KERNELS ON)
  target_compile_options(qel_${family}_${level} PRIVATE ${QEL_FLAGS_${level}} -fno-exceptions -fno-rtti)
  qel_takes_any_address(qel_${family}_${level})
  if(QEL_FUZZ)
    # clang takes many minutes over unrolled kernels with all checks; addresses stay checked.
    target_compile_options(qel_${family}_${level} PRIVATE -O1 -fno-sanitize=undefined)
  endif()
  target_compile_definitions(qel_${family}_${level} PRIVATE QEL_LEVEL=${level} QEL_LEVEL_${level})
  target_sources(qel_kernel PRIVATE $<TARGET_OBJECTS:qel_${family}_${level}>)
  set_property(GLOBAL APPEND PROPERTY QEL_ROOM_OBJECTS $<TARGET_OBJECTS:qel_${family}_${level}>)
  set_property(GLOBAL APPEND PROPERTY QEL_LEVEL_TARGETS qel_${family}_${level})
endfunction()
