include(GoogleTest)

# discover_tests(<program> [TEST_PREFIX <prefix>]): makes each test of a program one of CTest's, in a process of its own.
# With sanitizers, which take longer to start than most tests take, each of four processes has a quarter of them.
function(discover_tests program)
    if(NOT MOXWRITER_SANITIZE)
        gtest_discover_tests(${program} DISCOVERY_TIMEOUT 60 ${ARGN})
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 1 arg "" TEST_PREFIX "")
    set(shards 4)
    foreach(shard RANGE 1 ${shards})
        math(EXPR index "${shard} - 1")
        set(name ${arg_TEST_PREFIX}${program}.${shard}_of_${shards})
        add_test(NAME ${name} COMMAND ${program})
        set_tests_properties(${name} PROPERTIES ENVIRONMENT "GTEST_TOTAL_SHARDS=${shards};GTEST_SHARD_INDEX=${index}")
    endforeach()
endfunction()
