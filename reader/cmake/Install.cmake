include(CMakePackageConfigHelpers)

install(DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/include/MoxReader DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    COMPONENT libmoxreader-dev)
install(TARGETS moxreader EXPORT MoxReaderTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT libmoxreader NAMELINK_COMPONENT libmoxreader-dev
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT libmoxreader-dev
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT libmoxreader)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/MoxReader)
install(EXPORT MoxReaderTargets NAMESPACE MoxReader:: DESTINATION ${package_folder} COMPONENT libmoxreader-dev)
configure_package_config_file(${CMAKE_CURRENT_SOURCE_DIR}/cmake/MoxReaderConfig.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/MoxReaderConfig.cmake
    INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/MoxReaderConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/MoxReaderConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/MoxReaderConfigVersion.cmake
    DESTINATION ${package_folder} COMPONENT libmoxreader-dev)

# The installed tree can be moved as a whole.
file(RELATIVE_PATH MOXREADER_PREFIX_FROM_PC ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
if(NOT MOXREADER_SHARED)
    set(MOXREADER_PC_LIBS " -lz")
endif()
configure_file(cmake/moxreader.pc.in ${CMAKE_CURRENT_BINARY_DIR}/moxreader.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/moxreader.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT libmoxreader-dev)
