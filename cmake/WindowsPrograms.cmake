# Every program takes arguments and paths in UTF-8, and paths of any length where the system allows them: its manifest
# asks Windows for that. Libraries have none, since the program decides.
set(manifest ${CMAKE_BINARY_DIR}/program-manifest.o)
execute_process(
    COMMAND ${CMAKE_RC_COMPILER} -I ${CMAKE_CURRENT_LIST_DIR}/windows ${CMAKE_CURRENT_LIST_DIR}/windows/program.rc
            -o ${manifest}
    COMMAND_ERROR_IS_FATAL ANY)
add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${manifest}>)

# What is not optimised, or joined of several sources, can have more sections than the usual form of an object holds.
add_compile_options(-Wa,-mbig-obj)
