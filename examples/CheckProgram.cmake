# Runs PROGRAM with ARGUMENTS and checks how it ends (EXIT_CODE), that its output matches each expression of OUTPUT,
# and that a failure is reported in one line on stderr that matches ERROR.

execute_process(COMMAND ${PROGRAM} ${ARGUMENTS}
    RESULT_VARIABLE exitCode OUTPUT_VARIABLE output ERROR_VARIABLE error)
message("${output}${error}")

if(NOT exitCode STREQUAL EXIT_CODE)
    message(FATAL_ERROR "The exit code is ${exitCode} and not ${EXIT_CODE}.")
endif()
foreach(expression IN LISTS OUTPUT)
    if(NOT output MATCHES "${expression}")
        message(FATAL_ERROR "The output does not match: ${expression}")
    endif()
endforeach()
if(ERROR)
    if(NOT error MATCHES "${ERROR}" OR NOT error MATCHES "^[^\n]+\n$")
        message(FATAL_ERROR "This is not one line on stderr that matches: ${ERROR}")
    endif()
    if(NOT output STREQUAL "")
        message(FATAL_ERROR "A failure leaves stdout empty.")
    endif()
elseif(NOT error STREQUAL "")
    message(FATAL_ERROR "stderr is not empty.")
endif()
