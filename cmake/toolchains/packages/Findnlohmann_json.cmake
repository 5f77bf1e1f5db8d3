include(${CMAKE_CURRENT_LIST_DIR}/HeaderPackage.cmake)
add_header_package(nlohmann_json::nlohmann_json nlohmann)
set(nlohmann_json_FOUND TRUE)
