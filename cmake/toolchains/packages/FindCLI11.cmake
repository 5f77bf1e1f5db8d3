include(${CMAKE_CURRENT_LIST_DIR}/HeaderPackage.cmake)
add_header_package(CLI11::CLI11 CLI)
set(CLI11_FOUND TRUE)
