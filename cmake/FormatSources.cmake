# Sources for a file format whose library a machine may lack. Where it is missing, a source (or a test) whose name
# tells so by "without" stands in for all others of its folder.
#
# add_format_sources(TARGET HAS_LIBRARY FOLDER...)
function(add_format_sources target has_library)
    foreach(folder IN LISTS ARGN)
        file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp)
        if(has_library)
            list(FILTER sources EXCLUDE REGEX "[Ww]ithout[^/]*$")
        else()
            list(FILTER sources INCLUDE REGEX "[Ww]ithout[^/]*$")
        endif()
        target_sources(${target} PRIVATE ${sources})
    endforeach()
endfunction()
