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

example_test(first_model example_first_model ARGUMENTS ${folder}/first.mox EXIT_CODE 0 OUTPUT "Saved .*first.mox")
example_test(results_by_step example_results_by_step ARGUMENTS ${folder}/heated.mox EXIT_CODE 0)
example_test(assembly_from_paths example_assembly_from_paths ARGUMENTS ${folder}/bridge.mox EXIT_CODE 0)
example_test(shared_arrays example_shared_arrays ARGUMENTS ${folder}/wheels.mox EXIT_CODE 0
    OUTPUT "wheels.mox: 24 datasets, 5 arrays")
example_test(vibration_modes example_vibration_modes ARGUMENTS ${folder}/modes.mox EXIT_CODE 0)
example_test(restart example_restart ARGUMENTS ${folder}/heated.mox ${folder}/cooled.mox EXIT_CODE 0
    OUTPUT "Read Step 5 at 20 s, saved .*cooled.mox")
example_test(restart.without_model example_restart ARGUMENTS ${folder}/missing.mox ${folder}/never.mox EXIT_CODE 1
    ERROR "^restart: .*missing.mox")
set_tests_properties(example.results_by_step PROPERTIES FIXTURES_SETUP heated_file)
set_tests_properties(example.restart PROPERTIES FIXTURES_REQUIRED heated_file FIXTURES_SETUP cooled_file)

# What is in the files of the programs that pages show.
# page_listing(<name> <file> <expression>...)
function(page_listing name file)
    example_test(${name}.listing example_listing ARGUMENTS ${folder}/${file} EXIT_CODE 0 OUTPUT ${ARGN})
    set_tests_properties(example.${name} PROPERTIES FIXTURES_SETUP ${name}_file)
    set_tests_properties(example.${name}.listing PROPERTIES FIXTURES_REQUIRED ${name}_file)
endfunction()
page_listing(first_model first.mox "Group \"Assembly\" Units = mm, N, tonne, s" "Coordinates +Coordinates +12 x 3")
page_listing(results_by_step heated.mox "Temperature +Step 5 +NodeScalar +1025 x 1 float +Time = 20. Unit = degC"
    "Displacement +Step 1 +NodeVector" "Heat flow +Step 3 +ElementVector +640 x 3")
page_listing(assembly_from_paths bridge.mox "Group \"South\" at \\(18500, 0, 0\\)"
    "Group \"Piers\" Concrete = C35/45. Count = 2" "Shape \"Slab\" colour \\(0.75, 0.75, 0.72\\)"
    "Coordinates +Coordinates +351 x 3 float +numbers of node")
page_listing(shared_arrays wheels.mox "Pressure +Waiting +NodeScalar +845 x 1 float +numbers of node 4")
page_listing(vibration_modes modes.mox "Mode shape +Mode 3 +NodeVector +606 x 3 float +Category = Vibration. Frequency")
page_listing(restart cooled.mox "Restarted after = Step 5" "Temperature +Cooling 3 +NodeScalar +1025 x 1 float +Time = 50")

example_test(failures example_failures ARGUMENTS ${folder}/missing/failures.mox EXIT_CODE 1
    ERROR "missing/failures.mox: Unable to open file .* \\(2, from Qel/Tnf/TnFile\\)")
example_test(mesh_once example_mesh_once ARGUMENTS ${folder}/run EXIT_CODE 0)
example_test(several_threads example_several_threads ARGUMENTS ${folder}/part EXIT_CODE 0)
page_listing(mesh_once run.1.mox "Displacement +Step 5 +NodeVector +1000 x 3")
page_listing(several_threads part.3.mox "Geometry \"Part 3\"" "Temperature +Step 1")

# More numbers than the process can have in memory: 161 MB of results, a limit of 128 MiB.
if(UNIX AND NOT MOXWRITER_SANITIZE AND NOT MOXWRITER_SANITIZE_THREAD)
    add_test(NAME example.larger_than_memory COMMAND sh -c
        "ulimit -v 131072 && exec \"$@\"" sh $<TARGET_FILE:example_larger_than_memory> ${folder}/large.mox 0.16)
    set_tests_properties(example.larger_than_memory PROPERTIES
        PASS_REGULAR_EXPRESSION "large.mox: 160 MB of results"
        ENVIRONMENT MOXWRITER_DEFAULT_BLOCK_SIZE=8500000)
endif()

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
