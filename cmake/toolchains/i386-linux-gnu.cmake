# Builds for 32-bit x86 on Debian: g++-12-multilib lib32z1-dev. The programs run here.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i386)
set(CMAKE_C_COMPILER gcc-12)
set(CMAKE_CXX_COMPILER g++-12)
# Arithmetic as on all others; that of the older unit has more digits in between. The last folder has the kernel's
# headers, for which gcc-multilib has a link that excludes all cross compilers.
set(CMAKE_C_FLAGS_INIT "-m32 -msse2 -mfpmath=sse -idirafter /usr/include/x86_64-linux-gnu")
set(CMAKE_CXX_FLAGS_INIT "-m32 -msse2 -mfpmath=sse -idirafter /usr/include/x86_64-linux-gnu")
set(CMAKE_FIND_ROOT_PATH /usr/lib32)
set(ZLIB_INCLUDE_DIR /usr/include CACHE PATH "")
set(ZLIB_LIBRARY /usr/lib32/libz.so CACHE FILEPATH "")
include(${CMAKE_CURRENT_LIST_DIR}/debianPackages.cmake)
