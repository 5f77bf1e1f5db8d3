# Builds for 64-bit ARM on Debian: g++-aarch64-linux-gnu zlib1g-dev:arm64, and qemu-user for the tests.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu /usr/lib/aarch64-linux-gnu)
set(ZLIB_INCLUDE_DIR /usr/include CACHE PATH "")
set(ZLIB_LIBRARY /usr/lib/aarch64-linux-gnu/libz.so CACHE FILEPATH "")
include(${CMAKE_CURRENT_LIST_DIR}/debianPackages.cmake)

set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L /usr/aarch64-linux-gnu)
