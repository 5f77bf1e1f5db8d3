# The Debian packages, each of them an install component. scripts/package makes them; cpack alone leaves out the last
# step, which puts the list of checksums in order.

string(TIMESTAMP MOXWRITER_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC) # that of SOURCE_DATE_EPOCH, if it is set
set(MOXWRITER_DEBIAN_REVISION 1)
set(MOXWRITER_MAINTAINER "The authors of moxwriter <moxwriter@example.org>" CACHE STRING "Who makes the packages")

set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES TRUE)
set(CPACK_PACKAGE_NAME moxwriter)
set(CPACK_PACKAGE_VENDOR moxwriter)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES TRUE)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL TRUE)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL "")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${MOXWRITER_DEBIAN_REVISION})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${MOXWRITER_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SOURCE moxwriter)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS TRUE)
# Whoever was linked with a version needs that or a later one, as docs/abi.md promises.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${PROJECT_BINARY_DIR}/src ${PROJECT_BINARY_DIR}/reader ${PROJECT_BINARY_DIR}/extras/deflate)

if(NOT TARGET moxwriter-deflate)
    message(FATAL_ERROR "The packages need moxwriter-deflate (Debian: libdeflate-dev)")
endif()
set(package_texts ${PROJECT_BINARY_DIR}/packaging)
configure_file(packaging/debian/changelog.in ${package_texts}/changelog @ONLY)
execute_process(COMMAND gzip -9nc ${package_texts}/changelog OUTPUT_FILE ${package_texts}/changelog.Debian.gz
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/CHANGELOG.md OUTPUT_FILE ${package_texts}/changelog.gz
    COMMAND_ERROR_IS_FATAL ANY)

# add_package(COMPONENT NAME SECTION SUMMARY DESCRIPTION [RELATION PACKAGES]...)
#
# RELATION is one of DEPENDS, RECOMMENDS, SUGGESTS, CONTROL_EXTRA. What libraries need, dpkg-shlibdeps finds; only for
# those of this source, which it does not know, it is said here.
macro(add_package component name section summary description)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${description}")
    set(CPACK_DEBIAN_${upper}_PACKAGE_SHLIBDEPS TRUE)
    cmake_parse_arguments(relation "" "DEPENDS;RECOMMENDS;SUGGESTS" "CONTROL_EXTRA" ${ARGN})
    foreach(relation IN ITEMS DEPENDS RECOMMENDS SUGGESTS CONTROL_EXTRA)
        if(relation_${relation})
            set(CPACK_DEBIAN_${upper}_PACKAGE_${relation} "${relation_${relation}}")
        endif()
    endforeach()
    install(FILES ${package_texts}/changelog.Debian.gz ${package_texts}/changelog.gz
        DESTINATION share/doc/${name} COMPONENT ${component})
    if(NOT ${component} STREQUAL "mox-tools")
        install(FILES packaging/debian/copyright DESTINATION share/doc/${name} COMPONENT ${component})
    endif()
endmacro()

set(version "${PROJECT_VERSION}-${MOXWRITER_DEBIAN_REVISION}")
set(major ${PROJECT_VERSION_MAJOR})
set(ldconfig ${PROJECT_SOURCE_DIR}/packaging/debian/triggers)
set(python_scripts ${PROJECT_SOURCE_DIR}/packaging/debian/postinst ${PROJECT_SOURCE_DIR}/packaging/debian/prerm)

add_package(libmoxwriter libmoxwriter${major} libs "library that saves finite-element models"
"A program saves a finite-element model into one compact file through this
library: an assembly tree, materials, coordinates, connectivity and results by
step." CONTROL_EXTRA ${ldconfig})
add_package(libmoxwriter-dev libmoxwriter-dev libdevel "library that saves finite-element models (development)"
"Headers and files for CMake and pkg-config for programs that save models, and
for the faster compressor moxwriter-deflate."
    DEPENDS "libmoxwriter${major} (= ${version}), libmoxwriter-deflate${major} (= ${version}), libboost1.81-dev | libboost-dev (>= 1.79)")
add_package(libmoxwriter-deflate libmoxwriter-deflate${major} libs "zlib's compress2() by libdeflate"
"A program that links or preloads this library compresses in about half of
zlib's time. What it makes is about as small, and every zlib reads it."
    CONTROL_EXTRA ${ldconfig})
install(FILES packaging/debian/libmoxwriter-deflate.lintian-overrides DESTINATION share/lintian/overrides
    RENAME libmoxwriter-deflate${major} COMPONENT libmoxwriter-deflate)
add_package(libmoxreader libmoxreader${major} libs "library that reads finite-element models in .mox files"
"A program reads with this library what another has saved with
libmoxwriter${major}, and a solver restarts from it."
    CONTROL_EXTRA ${ldconfig})
add_package(libmoxreader-dev libmoxreader-dev libdevel
"library that reads finite-element models in .mox files (development)"
"Headers and files for CMake and pkg-config for programs that read models."
    DEPENDS "libmoxreader${major} (= ${version})")
if(TARGET mox)
    add_package(mox-tools mox-tools science "shows, checks and converts finite-element models in .mox files"
"The tool mox shows what is in a model, checks and compares models, imports
those of Exodus II and CGNS, exports for ParaView, and shows models in a
browser. With it come its manual, the completion for bash, zsh and fish, and a
plugin for ParaView."
        DEPENDS "libmoxwriter${major} (>= ${version}), libmoxreader${major} (>= ${version}), libmoxwriter-deflate${major} (>= ${version})"
        RECOMMENDS "mox-tools-gmsh"
        SUGGESTS "paraview, www-browser")

    # The program mox contains libraries under licences of their own.
    file(READ packaging/debian/copyright copyright)
    set(three_licence ${PROJECT_BINARY_DIR}/tools/mox/page/node_modules/three/LICENSE)
    if(EXISTS ${three_licence})
        file(READ ${three_licence} licence)
        string(APPEND copyright "\nThe page of mox view contains three.js, which has this licence:\n\n${licence}")
    endif()
    file(WRITE ${package_texts}/copyright "${copyright}")
    install(FILES ${package_texts}/copyright DESTINATION share/doc/mox-tools COMPONENT mox-tools)
    install(CODE [[
        file(GLOB pages "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/share/man/man1/*.1")
        execute_process(COMMAND gzip -9nf ${pages} COMMAND_ERROR_IS_FATAL ANY)
    ]] COMPONENT mox-tools)
endif()
if(TARGET mox_gmsh)
    add_package(mox-tools-gmsh mox-tools-gmsh science "lets mox import the models of Gmsh"
"The module of the tool mox that reads files of Gmsh. It is a package of its own
for the size of the library of Gmsh."
        DEPENDS "mox-tools (= ${version})")
endif()
if(TARGET python_writer)
    math(EXPR next_python "${MOXWRITER_PYTHON_MINOR} + 1")
    add_package(python3-moxwriter python3-moxwriter python "saves and reads finite-element models in .mox files (Python 3)"
"The package moxwriter for Python saves and reads models with arrays of NumPy,
and makes .mox a format of meshio."
        DEPENDS "python3 (>= 3.${MOXWRITER_PYTHON_MINOR}), python3 (<< 3.${next_python}), python3-numpy"
        RECOMMENDS "libmoxwriter-deflate${major}"
        SUGGESTS "python3-meshio, mox-tools"
        CONTROL_EXTRA ${python_scripts})
endif()

include(CPack)
