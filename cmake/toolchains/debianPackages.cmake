# How packages are found that are the same for every system; each toolchain of this folder includes this.
list(PREPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR}/packages)
set(Eigen3_DIR /usr/share/eigen3/cmake)

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# What these build on has no package for other systems.
set(MOXWRITER_BUILD_PYTHON OFF CACHE BOOL "")
set(CMAKE_DISABLE_FIND_PACKAGE_MPI ON)

# A test program is asked for its tests when they are run, not while it is built.
set(CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE PRE_TEST)
