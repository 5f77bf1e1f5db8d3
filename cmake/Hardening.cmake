# What makes a mistake in the code harder to exploit: buffer overruns that the compiler can see end the program, and
# the tables that calls go through are read-only once a library is loaded.

# harden(TARGET...): those that there are. Sanitizers find more, and bring checks of their own.
function(harden)
    if(NOT MOXWRITER_HARDEN OR NOT UNIX OR APPLE OR MOXWRITER_SANITIZE OR MOXWRITER_SANITIZE_THREAD)
        return()
    endif()
    # The checks of buffers need a compiler that optimises; some systems define the macro themselves.
    set(optimises $<NOT:$<CONFIG:Debug>>)
    foreach(target ${ARGN})
        if(NOT TARGET ${target})
            continue()
        endif()
        target_compile_options(${target} PRIVATE -fstack-protector-strong
            $<${optimises}:-U_FORTIFY_SOURCE> $<${optimises}:-D_FORTIFY_SOURCE=3>)
        get_target_property(type ${target} TYPE)
        if(type MATCHES "EXECUTABLE|SHARED_LIBRARY|MODULE_LIBRARY")
            target_link_options(${target} PRIVATE -Wl,-z,relro,-z,now)
        endif()
    endforeach()
endfunction()
