# Computes the plate on RANKS ranks and on one, joins what the ranks saved, checks it and compares both. With KILL, that
# rank is killed before its last step is saved, and the files of the others are joined.

set(SIZE 20)

function(run)
    execute_process(COMMAND ${ARGN} WORKING_DIRECTORY ${FOLDER} RESULT_VARIABLE code OUTPUT_VARIABLE output
                    ERROR_VARIABLE error)
    message("${output}${error}")
    if(NOT code STREQUAL 0)
        message(FATAL_ERROR "This ended with ${code}: ${ARGN}")
    endif()
endfunction()

file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})

execute_process(COMMAND ${MPIEXEC} 1 ${CMAKE_COMMAND} -E true RESULT_VARIABLE code OUTPUT_QUIET ERROR_VARIABLE error)
if(NOT code STREQUAL 0)
    message("MPI does not run here: ${error}")
    return()
endif()

run(${MPIEXEC} 1 ${PLATE} one.mox --size ${SIZE})
set(parts "")
math(EXPR last "${RANKS} - 1")
foreach(rank RANGE ${last})
    list(APPEND parts plate.${rank}.mox)
endforeach()

if(KILL STREQUAL "")
    run(${MPIEXEC} ${RANKS} ${PLATE} plate.mox --size ${SIZE})
    set(mode "")
else()
    execute_process(COMMAND ${MPIEXEC} ${RANKS} ${PLATE} plate.mox --size ${SIZE} --kill ${KILL}
                    WORKING_DIRECTORY ${FOLDER} RESULT_VARIABLE code TIMEOUT 180)
    # Not a number: the launcher was still running when the time was over, or was killed itself.
    if(NOT code MATCHES "^[1-9][0-9]*$")
        message(FATAL_ERROR "The launcher does not report that a rank has died: ${code}")
    endif()
    execute_process(COMMAND ${MOX} check plate.${KILL}.mox WORKING_DIRECTORY ${FOLDER} RESULT_VARIABLE code)
    if(code STREQUAL 0)
        message(FATAL_ERROR "The file of the rank that died is whole, so this shows nothing.")
    endif()
    list(REMOVE_ITEM parts plate.${KILL}.mox)
    set(mode part)
endif()

list(LENGTH parts shapes)
run(${MOX} join plate.mox ${parts})
run(${MOX} check plate.mox)
run(${COMPARE} plate.mox one.0.mox ${shapes} ${mode})
