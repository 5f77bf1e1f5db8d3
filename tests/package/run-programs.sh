#!/bin/sh
# Usage: run-programs.sh package CMAKE CXX PREFIX [FLAGS]
#    or: run-programs.sh folder|fetch CMAKE CXX SOURCES [FLAGS]
# Builds and runs the programs of the folder project: against what is installed below PREFIX, found by CMake and by
# pkg-config, or with the sources as a part of their own build, added as a subdirectory or by FetchContent.
set -eu
way=$1
cmake=$2
cxx=$3
libraries=$4
flags=${5:-}

project=$(cd "$(dirname "$0")" && pwd)/project
generator=
case $way in
    # Beside other builds, so that a compiler's cache knows the sources again.
    folder | fetch) work=$libraries/build/outside generator='-G Ninja' && rm -rf "$work" && mkdir -p "$work" ;;
    *) work=$(mktemp -d) ;;
esac
trap 'rm -rf "$work"' EXIT

# run_programs FOLDER: saves, reads, and goes on from what was saved.
run_programs() {
    "$1/save" "$1/saved.mox"
    "$1/read" "$1/saved.mox"
    "$1/restart" "$1/saved.mox" "$1/next.mox"
}

# run_logged COMMAND...: shows what a command prints only if it fails.
run_logged() {
    "$@" > "$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }
}

case $way in
    package) origin="-DMOXWRITER_FROM=PACKAGE -DCMAKE_PREFIX_PATH=$libraries" ;;
    folder) origin="-DMOXWRITER_FROM=FOLDER -DMOXWRITER_SOURCES=$libraries -DMOXWRITER_WERROR=ON" ;;
    fetch) origin="-DMOXWRITER_FROM=FETCH -DMOXWRITER_SOURCES=$libraries -DMOXWRITER_WERROR=ON" ;;
    *) echo "run-programs.sh: there is no way '$way'" >&2; exit 2 ;;
esac
# Here as elsewhere, clang compiles several sources at once.
case $cxx in *clang*) origin="$origin -DCMAKE_UNITY_BUILD=ON" ;; esac
# shellcheck disable=SC2086 # lists of words
run_logged "$cmake" -S "$project" -B "$work" $generator $origin -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER="$cxx" \
    -DCMAKE_CXX_FLAGS="$flags"
run_logged "$cmake" --build "$work" --target save read restart
run_programs "$work"
[ "$way" = package ] || exit 0

folder=$(dirname "$(find "$libraries" -name 'libmoxwriter.so')")
PKG_CONFIG_PATH=$folder/pkgconfig
export PKG_CONFIG_PATH
mkdir "$work/pkg-config"
# build PROGRAM STANDARD PACKAGE...
build() {
    program=$1
    standard=$2
    shift 2
    # shellcheck disable=SC2046,SC2086 # the flags are lists of words
    "$cxx" -std="$standard" $flags "$project/$program.cpp" -o "$work/pkg-config/$program" \
        $(pkg-config --cflags --libs "$@") -Wl,-rpath,"$folder"
}
build save c++17 moxwriter
build read c++20 moxreader
build restart c++20 moxwriter moxreader
run_programs "$work/pkg-config"
