# The products: libqel.so (public entries and facade only), libqel.a (everything, one archive), and
# qel_internal, which tests link to reach the hidden core.
get_property(qel_objects GLOBAL PROPERTY QEL_ROOM_OBJECTS)

# The direct solver's partitioner; only its adapter sees the header.
find_library(QEL_METIS metis REQUIRED)

add_library(qel_internal INTERFACE)
target_link_libraries(qel_internal INTERFACE $<LINK_GROUP:RESCAN,qel_kernel,qel_lapack_core> ${QEL_METIS} OpenMP::OpenMP_CXX m)

# Version script: the names of entry/exports.txt and the facade's namespaces are global, all else is hidden.
set(QEL_EXPORTS ${CMAKE_SOURCE_DIR}/entry/exports.txt)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${QEL_EXPORTS})
file(STRINGS ${QEL_EXPORTS} qel_export_lines REGEX "^[A-Za-z_]")
list(JOIN qel_export_lines ";\n    " qel_export_names)
set(QEL_MAP ${CMAKE_BINARY_DIR}/qel.map)
file(CONFIGURE OUTPUT ${QEL_MAP} CONTENT "{
  global:
    @qel_export_names@;
    extern \"C++\" {
      Tavik::*;
      \"typeinfo for Tavik::*\";
      typeinfo?for?Tavik::*;
      typeinfo?name?for?Tavik::*;
      vtable?for?Tavik::*;
    };
  local: *;
};
" @ONLY)
# Calls inside the library are bound inside it, except those of the error entry, which an application may
# replace: the dynamic list names what stays preemptible.
set(QEL_DYNAMIC_LIST ${CMAKE_SOURCE_DIR}/cmake/preemptible.list)

add_library(qel SHARED ${qel_objects})
add_library(qel::qel ALIAS qel)
set_target_properties(qel PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 1 LINK_DEPENDS "${QEL_MAP};${QEL_DYNAMIC_LIST}")
target_link_options(qel PRIVATE -Wl,--version-script=${QEL_MAP} -Wl,--dynamic-list=${QEL_DYNAMIC_LIST})
# Never unloaded: handlers of threads' ends, forks and the process's end point into it.
target_link_options(qel PRIVATE -Wl,-z,nodelete)
if(NOT QEL_SANITIZE)
  target_link_options(qel PRIVATE -Wl,-z,defs)
endif()
target_link_libraries(qel PRIVATE $<LINK_GROUP:RESCAN,qel_kernel,qel_lapack_core> ${QEL_METIS} OpenMP::OpenMP_CXX m)
target_include_directories(qel INTERFACE $<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

# libqel.a: our objects and the private LAPACK members in one archive.
set(QEL_STATIC ${CMAKE_BINARY_DIR}/libqel.a)
add_custom_command(
  OUTPUT ${QEL_STATIC}
  COMMAND ${CMAKE_SOURCE_DIR}/scripts/merge_archives.sh ${CMAKE_AR} ${QEL_STATIC} $<TARGET_FILE:qel_kernel> ${QEL_LAPACK_CORE}
  DEPENDS qel_kernel qel_lapack_core_archive ${CMAKE_SOURCE_DIR}/scripts/merge_archives.sh
  VERBATIM)
add_custom_target(qel_static ALL DEPENDS ${QEL_STATIC})

include(qel_install)
