# How the tests of this directory and below are compiled.

if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    # Tests are compiled more often than they run long, and what they test is optimised as users get it.
    add_compile_options(-O0)
endif()
if(MOXWRITER_JOIN_SOURCES)
    set(CMAKE_UNITY_BUILD ON)
endif()
if(CMAKE_UNITY_BUILD)
    # g++ takes the unnamed namespace of a joined source for one of a header.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endif()
