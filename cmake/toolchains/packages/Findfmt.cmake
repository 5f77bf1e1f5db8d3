include(${CMAKE_CURRENT_LIST_DIR}/HeaderPackage.cmake)
add_header_package(fmt::fmt fmt FMT_HEADER_ONLY=1)
set(fmt_FOUND TRUE)
