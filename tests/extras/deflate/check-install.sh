#!/bin/sh
# Usage: check-install.sh CMAKE BUILD_FOLDER CXX
# Installs the build into a new folder, and builds and runs a small project outside the tree that links
# moxwriter-deflate: once found through CMake, once through pkg-config.
set -eu
cmake=$1
build=$2
cxx=$3

here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
"$cmake" --install "$build" --prefix "$prefix" > "$work/install.log"

"$cmake" -S "$here/project" -B "$work/project" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$cxx" \
    > "$work/configure.log"
"$cmake" --build "$work/project" > "$work/build.log"
"$work/project/outside" "$work/cmake.mox"

library=$(dirname "$(find "$prefix" -name 'libmoxwriter-deflate.so')")
PKG_CONFIG_PATH=$library/pkgconfig
export PKG_CONFIG_PATH
# shellcheck disable=SC2046 # the flags are lists of words
"$cxx" -std=c++17 "$here/project/outside.cpp" -o "$work/outside" \
    $(pkg-config --cflags --libs moxwriter-deflate moxwriter) -Wl,-rpath,"$library"
"$work/outside" "$work/pkg-config.mox"
