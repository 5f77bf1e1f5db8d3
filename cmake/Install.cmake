include(CMakePackageConfigHelpers)

install(DIRECTORY ${CMAKE_SOURCE_DIR}/include/Qel DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS moxwriter EXPORT MoxWriterTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

set(MOXWRITER_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/MoxWriter)
install(EXPORT MoxWriterTargets NAMESPACE MoxWriter:: DESTINATION ${MOXWRITER_PACKAGE_DIR})
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/MoxWriterConfig.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/MoxWriterConfig.cmake
    INSTALL_DESTINATION ${MOXWRITER_PACKAGE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/MoxWriterConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/MoxWriterConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/MoxWriterConfigVersion.cmake
    DESTINATION ${MOXWRITER_PACKAGE_DIR})

# The installed tree can be moved as a whole.
file(RELATIVE_PATH MOXWRITER_PREFIX_FROM_PC
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(${CMAKE_SOURCE_DIR}/cmake/moxwriter.pc.in ${CMAKE_CURRENT_BINARY_DIR}/moxwriter.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/moxwriter.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
