# Flags of the whole build. Nothing here changes the meaning of floating-point code; -ffp-contract=off,
# because g++ fuses multiply and add by default as soon as a kernel's flags allow FMA.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O3 -DNDEBUG")

option(QEL_WERROR "Warnings are errors" ON)
set(QEL_SANITIZE "" CACHE STRING "Sanitizers, as for -fsanitize=, e.g. address,undefined")
option(QEL_COVERAGE "Instrument for gcov" OFF)

add_compile_options(-ffp-contract=off -Wall -Wextra -Wshadow -Wundef)
add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wconversion> $<$<COMPILE_LANGUAGE:CXX>:-Wmissing-declarations>)
# clang's -Wconversion has signs in it, g++'s has not.
add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wno-sign-conversion>)
if(QEL_WERROR)
  add_compile_options(-Werror)
endif()
if(QEL_SANITIZE)
  add_compile_options(-fsanitize=${QEL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${QEL_SANITIZE})
  # Lines for reports are enough. Checks become calls in functions with many: the compiler takes minutes over
  # unrolled kernels otherwise.
  add_compile_options(-g1)
  if(QEL_SANITIZE MATCHES address AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    add_compile_options("$<$<COMPILE_LANGUAGE:C,CXX>:SHELL:--param asan-instrumentation-with-call-threshold=200>")
  endif()
endif()
if(QEL_COVERAGE)
  # Not in kernels: counters in unrolled code take the compiler minutes, and their lengths, strides and places are
  # tested one by one.
  add_compile_options("$<$<NOT:$<BOOL:$<TARGET_PROPERTY:QEL_KERNELS>>>:SHELL:--coverage -O0>")
  add_link_options(--coverage)
endif()

find_program(QEL_CCACHE ccache)
if(QEL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${QEL_CCACHE})
endif()

find_package(OpenMP REQUIRED COMPONENTS CXX)

# Includes are written from the root; public headers as <qel/...>, <tavik/...>.
include_directories(${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/include)

# Numbers of a caller may lie at any address, which x86 allows and tests try; the language would rather not.
function(qel_takes_any_address target)
  if(QEL_SANITIZE MATCHES undefined)
    target_compile_options(${target} PRIVATE -fno-sanitize=alignment)
  endif()
endfunction()

# qel_add_room(NAME SOURCES...): the sources of one room as objects of the kernel library.
function(qel_add_room name)
  add_library(qel_${name} OBJECT ${ARGN})
  target_compile_options(qel_${name} PRIVATE ${OpenMP_CXX_FLAGS})
  target_sources(qel_kernel PRIVATE $<TARGET_OBJECTS:qel_${name}>)
  set_property(GLOBAL APPEND PROPERTY QEL_ROOM_OBJECTS $<TARGET_OBJECTS:qel_${name}>)
endfunction()
