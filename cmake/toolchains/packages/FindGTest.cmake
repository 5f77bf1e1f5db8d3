# Debian has GoogleTest as a library for this system, and as sources for all others.
if(NOT TARGET GTest::gtest)
    set(BUILD_SHARED_LIBS OFF)
    set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
    add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
endif()
set(GTest_FOUND TRUE)
