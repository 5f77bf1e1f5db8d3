include(${CMAKE_CURRENT_LIST_DIR}/HeaderPackage.cmake)
add_header_package(Boost::headers boost)
set(Boost_FOUND TRUE)
