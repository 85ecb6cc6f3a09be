# cmake --install build --prefix P: libraries, headers; the drop-ins add their own folder.
install(TARGETS qel LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${QEL_STATIC} DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${CMAKE_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
