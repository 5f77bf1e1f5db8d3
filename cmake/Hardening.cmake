# What makes a mistake in the code harder to exploit: buffer overruns that the compiler can see end the program, and
# the tables that calls go through are read-only once a library is loaded.

function(harden)
    if(NOT UNIX OR APPLE OR MOXWRITER_SANITIZE OR MOXWRITER_SANITIZE_THREAD)
        return()
    endif()
    foreach(target ${ARGN})
        if(NOT TARGET ${target})
            continue()
        endif()
        # The checks of buffers need a compiler that optimises; some systems define the macro themselves.
        target_compile_options(${target} PRIVATE -fstack-protector-strong
            $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=3>)
        get_target_property(type ${target} TYPE)
        if(type MATCHES "EXECUTABLE|SHARED_LIBRARY|MODULE_LIBRARY")
            target_link_options(${target} PRIVATE -Wl,-z,relro,-z,now)
        endif()
    endforeach()
endfunction()
