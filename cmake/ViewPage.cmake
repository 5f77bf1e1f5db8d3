# The page of mox view: TypeScript, bundled with its libraries from npm into a source that the program is built with.

find_program(NODE_PROGRAM node)
find_program(NPM_PROGRAM npm)
mark_as_advanced(NODE_PROGRAM NPM_PROGRAM)

# prepare_view_page(SOURCE_FOLDER BUILD_FOLDER RESULT)
#
# Installs the libraries into a copy of the folder, once for each list of them. RESULT is whether they are there; if
# not, a status line says why, and the next configuration tries again.
function(prepare_view_page source build result)
    set(${result} FALSE PARENT_SCOPE)
    if(NOT NODE_PROGRAM OR NOT NPM_PROGRAM)
        message(STATUS "mox view: without npm and Node.js (Debian: npm), so without its page; the command will say so")
        return()
    endif()
    file(MAKE_DIRECTORY ${build})
    file(SHA256 ${source}/package-lock.json wanted)
    set(stamp ${build}/installed)
    set(installed "")
    if(EXISTS ${stamp})
        file(READ ${stamp} installed)
    endif()
    if(NOT installed STREQUAL wanted)
        file(COPY ${source}/package.json ${source}/package-lock.json DESTINATION ${build})
        message(STATUS "mox view: installing the page's libraries into ${build}")
        execute_process(
            COMMAND ${NPM_PROGRAM} ci --omit=dev --ignore-scripts --no-audit --no-fund --prefer-offline
                    --fetch-retries=1 --fetch-timeout=20000
            WORKING_DIRECTORY ${build} RESULT_VARIABLE failed OUTPUT_FILE ${build}/npm.log ERROR_FILE ${build}/npm.log)
        if(failed)
            message(STATUS "mox view: without its page, since npm could not install the libraries (see "
                           "${build}/npm.log); the command will say so")
            return()
        endif()
        file(WRITE ${stamp} ${wanted})
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source}/package-lock.json)
    set(${result} TRUE PARENT_SCOPE)
endfunction()

# add_view_page(TARGET SOURCE_FOLDER BUILD_FOLDER): bundles the page and adds it to a target.
function(add_view_page target source build)
    file(GLOB sources CONFIGURE_DEPENDS ${source}/*.mjs ${source}/src/*)
    add_custom_command(
        OUTPUT ${build}/pageSource.cpp
        COMMAND ${CMAKE_COMMAND} -E copy_directory ${source}/src ${build}/src
        COMMAND ${CMAKE_COMMAND} -E copy ${source}/bundle.mjs ${source}/tsconfig.json ${build}
        COMMAND ${NODE_PROGRAM} bundle.mjs pageSource.cpp
        WORKING_DIRECTORY ${build} DEPENDS ${sources} ${source}/tsconfig.json ${build}/installed VERBATIM
        COMMENT "Bundling the page of mox view")
    set_source_files_properties(${build}/pageSource.cpp PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    target_sources(${target} PRIVATE ${build}/pageSource.cpp)
endfunction()
