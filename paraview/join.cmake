# Makes the one file that ParaView loads of the sources that are tested by themselves: the reader without its dump and
# script, the meshes, and the plugin.
# Usage: cmake -D OUTPUT=MoxReader.py -P paraview/join.cmake

function(join_paraview_plugin output)
    set(sources
        ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../reader/python/moxreader.py
        ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/moxmesh.py
        ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/plugin.py)
    set(text "# Made by paraview/join.cmake of moxreader.py, moxmesh.py and plugin.py: change those, not this file.\n")
    foreach(source IN LISTS sources)
        file(READ "${source}" part)
        string(FIND "${part}" "\n\n\n# --- The dump" end)
        string(SUBSTRING "${part}" 0 ${end} part)
        string(REGEX REPLACE "[^\n]*  # not in the joined file\n" "" part "${part}")
        string(REPLACE "#!/usr/bin/env python3\n" "" part "${part}")
        string(APPEND text "${part}\n")
    endforeach()
    file(WRITE "${output}" "${text}")
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
    if(NOT OUTPUT)
        message(FATAL_ERROR "name the file to make: cmake -D OUTPUT=MoxReader.py -P ${CMAKE_CURRENT_LIST_FILE}")
    endif()
    get_filename_component(OUTPUT "${OUTPUT}" ABSOLUTE)
    join_paraview_plugin("${OUTPUT}")
endif()
