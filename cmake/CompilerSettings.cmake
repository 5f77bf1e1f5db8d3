# Settings that hold for every target of this tree. An application that adds this tree as a subdirectory keeps its
# own: everything here is scoped to this directory.

if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        # The warning mistakes assigning a short literal to a std::string for an overlapping copy (GCC bug 105651).
        add_compile_options(-Wno-restrict)
    endif()
    # Binaries reveal nothing about the machine that built them.
    add_compile_options("-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.")
    if(MOXWRITER_WERROR)
        add_compile_options(-Werror)
    endif()
    if(MOXWRITER_SANITIZE)
        add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
        add_link_options(-fsanitize=address,undefined)
    endif()
    if(MOXWRITER_SANITIZE_THREAD)
        if(MOXWRITER_SANITIZE)
            message(FATAL_ERROR "MOXWRITER_SANITIZE and MOXWRITER_SANITIZE_THREAD need builds of their own")
        endif()
        add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
        add_link_options(-fsanitize=thread)
    endif()
    if(MOXWRITER_COVERAGE)
        # The counters are in a file that is mapped into memory, so those of a process that is killed count too.
        add_compile_options(-fprofile-instr-generate -fcoverage-mapping "SHELL:-mllvm -runtime-counter-relocation")
        add_link_options(-fprofile-instr-generate)
    endif()
endif()
