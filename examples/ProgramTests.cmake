# Each program as a test: what it prints and how it ends.

# example_test(<name> <target> EXIT_CODE <code> [ARGUMENTS <argument>...] [OUTPUT <expression>...] [ERROR <expression>])
#
# The output must match all expressions. A program that is to fail must say why in one line on stderr that matches
# the ERROR expression, and nothing on stdout.
function(example_test name target)
    cmake_parse_arguments(PARSE_ARGV 2 test "" "EXIT_CODE;ERROR" "ARGUMENTS;OUTPUT")
    add_test(NAME example.${name} COMMAND ${CMAKE_COMMAND}
        "-DPROGRAM=$<TARGET_FILE:${target}>"
        "-DARGUMENTS=${test_ARGUMENTS}"
        "-DEXIT_CODE=${test_EXIT_CODE}"
        "-DOUTPUT=${test_OUTPUT}"
        "-DERROR=${test_ERROR}"
        -P ${CMAKE_CURRENT_SOURCE_DIR}/CheckProgram.cmake)
endfunction()

set(folder ${CMAKE_CURRENT_BINARY_DIR}/files)
file(MAKE_DIRECTORY ${folder})

example_test(minimal example_minimal ARGUMENTS ${folder}/cube.mox EXIT_CODE 0)
example_test(minimal.listing example_listing ARGUMENTS ${folder}/cube.mox EXIT_CODE 0 OUTPUT
    "1 Group \"Assembly\""
    "3 +Geometry \"Cube\""
    "Coordinates +Coordinates +8 x 3 float"
    "Temperature +Step 2 +NodeScalar +8 x 1 float")
example_test(minimal.without_folder example_minimal ARGUMENTS ${folder}/missing/cube.mox EXIT_CODE 1
    ERROR "^minimal: .*cube.mox")

example_test(cantilever example_cantilever ARGUMENTS ${folder}/cantilever.mox EXIT_CODE 0 OUTPUT
    "1032 hexahedra, 1617 nodes, 4743 equations"
    "Saved .*/files/cantilever.mox")
example_test(cantilever.listing example_listing ARGUMENTS ${folder}/cantilever.mox EXIT_CODE 0 OUTPUT
    "Saved .* by cantilever 1.0"
    "1 Group \"Bolted cantilever\" .*Young's modulus = 210000"
    "Group \"Nut 4\" at \\(-40, 30, 50\\)"
    "Coordinates +Coordinates +1617 x 3 float +Unit = mm"
    "Displacement +Load step 5 +NodeVector +1617 x 3 float +Load = 5000. Time = 1. Unit = mm"
    "Displacement +Load step 5 +NodeVector +1617 x 3 float +numbers of node "
    "Stress +Load step 5 +ElementSixA +720 x 6 float"
    "Mode shape +Mode 6 +NodeVector +1617 x 3 float +Category = Vibration. Frequency = "
    "Heavy Data +1 "
    "files/cantilever.mox: [0-9]+ bytes, 27 nodes")
example_test(cantilever.without_folder example_cantilever ARGUMENTS ${folder}/missing/beam.mox EXIT_CODE 1
    ERROR "^cantilever: .*beam.mox")
example_test(cantilever.blocks_too_small example_cantilever ARGUMENTS ${folder}/damaged.mox EXIT_CODE 1
    ERROR "^cantilever: blocks lie over others")
set_tests_properties(example.cantilever.blocks_too_small PROPERTIES ENVIRONMENT MOXWRITER_DEFAULT_BLOCK_SIZE=1)
example_test(cantilever.size_out_of_range example_cantilever ARGUMENTS --size 0 EXIT_CODE 2 ERROR "^cantilever: --size")
example_test(cantilever.unknown_option example_cantilever ARGUMENTS --colour EXIT_CODE 2 ERROR "^cantilever: .*--colour")
example_test(cantilever.help example_cantilever ARGUMENTS --help EXIT_CODE 0 OUTPUT "--size")

example_test(listing.no_argument example_listing EXIT_CODE 2 ERROR "^listing: file is required")
example_test(listing.missing_file example_listing ARGUMENTS ${folder}/nowhere.mox EXIT_CODE 1
    ERROR "^listing: .*nowhere.mox")
example_test(listing.other_file example_listing ARGUMENTS ${CMAKE_CURRENT_LIST_FILE} EXIT_CODE 1
    ERROR "^listing: .*ProgramTests.cmake: .*signature")

set_tests_properties(example.minimal PROPERTIES FIXTURES_SETUP minimal_file)
set_tests_properties(example.minimal.listing PROPERTIES FIXTURES_REQUIRED minimal_file)
set_tests_properties(example.cantilever PROPERTIES FIXTURES_SETUP cantilever_file)
set_tests_properties(example.cantilever.listing PROPERTIES FIXTURES_REQUIRED cantilever_file)
