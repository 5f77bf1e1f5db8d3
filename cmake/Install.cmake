include(CMakePackageConfigHelpers)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/Qel DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    COMPONENT libmoxwriter-dev)
install(TARGETS moxwriter EXPORT MoxWriterTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT libmoxwriter NAMELINK_COMPONENT libmoxwriter-dev
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT libmoxwriter-dev
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT libmoxwriter)

set(MOXWRITER_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/MoxWriter)
install(EXPORT MoxWriterTargets NAMESPACE MoxWriter:: DESTINATION ${MOXWRITER_PACKAGE_DIR}
    COMPONENT libmoxwriter-dev)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/MoxWriterConfig.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/MoxWriterConfig.cmake
    INSTALL_DESTINATION ${MOXWRITER_PACKAGE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/MoxWriterConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/MoxWriterConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/MoxWriterConfigVersion.cmake
    DESTINATION ${MOXWRITER_PACKAGE_DIR} COMPONENT libmoxwriter-dev)

# The installed tree can be moved as a whole.
file(RELATIVE_PATH MOXWRITER_PREFIX_FROM_PC
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(${PROJECT_SOURCE_DIR}/cmake/moxwriter.pc.in ${CMAKE_CURRENT_BINARY_DIR}/moxwriter.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/moxwriter.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT libmoxwriter-dev)
