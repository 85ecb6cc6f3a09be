# cpack --config build/CPackConfig.cmake: Debian packages, one for each component.
#   runtime libqel1, development libqel-dev, tools qel-tools, dropin libqel-drop-in
set(QEL_PACKAGE_runtime libqel1)
set(QEL_PACKAGE_development libqel-dev)
set(QEL_PACKAGE_tools qel-tools)
set(QEL_PACKAGE_dropin libqel-drop-in)
set(packaging ${CMAKE_SOURCE_DIR}/packaging)
set(CPACK_COMPONENTS_ALL runtime development dropin)
if(QEL_BUILD_CLI)
  list(APPEND CPACK_COMPONENTS_ALL tools)
endif()
set(qel_documents ${CMAKE_SOURCE_DIR}/LICENSE ${packaging}/copyright ${CMAKE_SOURCE_DIR}/CHANGELOG.md)
install(FILES ${qel_documents} DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/qel COMPONENT documents)
foreach(component ${CPACK_COMPONENTS_ALL})
  install(FILES ${packaging}/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${QEL_PACKAGE_${component}}
          COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()

# Benchmarks that run on every x86-64 processor and link no other numeric library.
set(qel_bench_pages "")
foreach(name machine blas level1 level2 level3 lapack fft facade entry service)
  if(TARGET qel_bench_${name})
    install(TARGETS qel_bench_${name} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
    set(page ${CMAKE_BINARY_DIR}/packaging/qel-bench-${name}.1)
    file(CONFIGURE OUTPUT ${page} CONTENT ".so man1/qel-bench-programs.1\n")
    list(APPEND qel_bench_pages ${page})
  endif()
endforeach()
if(qel_bench_pages)
  install(FILES ${packaging}/qel-bench-programs.1 ${qel_bench_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "the QEL developers")
set(CPACK_PACKAGE_CONTACT "the QEL developers <qel@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR} ${QEL_DROPIN_DIR})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_THREADS 0)
set(qel_this_version "libqel1 (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

# qel_package(COMPONENT SECTION DEPENDS DESCRIPTION): its paragraph of the control file; the project's description
# is the first line of all
macro(qel_package component section depends description)
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${QEL_PACKAGE_${component}})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}")
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${description}")
endmacro()
qel_package(runtime libs "" "The shared library: BLAS and LAPACK entries, Fourier transforms, convolution,
sparse BLAS, a direct sparse solver, vector math, random numbers and nonlinear
least squares.")
qel_package(development libdevel "${qel_this_version}, libmetis-dev" "For building programs: C headers of the entries, C++ headers of the classes,
the static library, the CMake package qel, pkg-config files qel and qel-static.")
qel_package(tools math "${qel_this_version}" "The command qel solves systems, fits models, transforms sampled data and tells
how an operation would be done; qel-bench-* measure the library beside others.")
qel_package(dropin libs "" "BLAS with CBLAS, and LAPACK, for programs built against any other:
libblas.so.3 and liblapack.so.3, registered with update-alternatives. With
priority 105 they are taken when the package is installed, before OpenBLAS;
update-alternatives --config libblas.so.3-${CMAKE_LIBRARY_ARCHITECTURE} chooses otherwise.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SUGGESTS "gnuplot-nox, libopenblas0-openmp, libblis4-openmp")
set(CPACK_DEBIAN_DROPIN_PACKAGE_PROVIDES "libblas.so.3, liblapack.so.3")

# Control files: who needs libqel.so.1 needs libqel1; the drop-ins enter and leave the alternatives.
set(qel_alternatives_priority 105)
set(qel_multiarch ${CMAKE_LIBRARY_ARCHITECTURE})
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/packaging/runtime/shlibs
     CONTENT "libqel 1 libqel1 (>= ${PROJECT_VERSION})\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/packaging/runtime/shlibs)
foreach(script postinst prerm)
  configure_file(${packaging}/dropin.${script}.in ${CMAKE_BINARY_DIR}/packaging/dropin/${script} @ONLY)
endforeach()
set(CPACK_DEBIAN_DROPIN_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/packaging/dropin/postinst
    ${CMAKE_BINARY_DIR}/packaging/dropin/prerm ${packaging}/triggers)
include(CPack)
