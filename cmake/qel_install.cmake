# cmake --install build --prefix P: libraries, headers, the CMake package, pkg-config files. Each belongs to the
# component of the package that carries it (qel_packages.cmake). No installed file knows its prefix.
include(CMakePackageConfigHelpers)
set(QEL_CMAKE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/qel)

install(TARGETS qel EXPORT qel_targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
install(FILES ${QEL_STATIC} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
        FILES_MATCHING PATTERN "*.h")
install(EXPORT qel_targets NAMESPACE qel:: FILE qelTargets.cmake DESTINATION ${QEL_CMAKE_FOLDER} COMPONENT development)

# What a program with libqel.a in it needs beside: names for the linker, which finds the compiler's own run times.
set(QEL_STATIC_NEEDS ${OpenMP_CXX_LIB_NAMES} stdc++ m pthread)
list(REMOVE_DUPLICATES QEL_STATIC_NEEDS)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/qelConfig.cmake.in ${CMAKE_BINARY_DIR}/qelConfig.cmake
  INSTALL_DESTINATION ${QEL_CMAKE_FOLDER} PATH_VARS CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_INCLUDEDIR)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/qelConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/qelConfig.cmake ${CMAKE_BINARY_DIR}/qelConfigVersion.cmake
        DESTINATION ${QEL_CMAKE_FOLDER} COMPONENT development)

# qel.pc is for both libraries (--static, and the linker's -static); qel-static.pc takes libqel.a and leaves the
# system's libraries shared.
list(TRANSFORM QEL_STATIC_NEEDS PREPEND -l OUTPUT_VARIABLE static_flags)
list(JOIN static_flags " " QEL_PC_STATIC_NEEDS)
file(RELATIVE_PATH QEL_PC_UP /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
foreach(name qel qel-static)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/${name}.pc.in ${CMAKE_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()
