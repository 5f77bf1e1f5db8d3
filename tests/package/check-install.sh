#!/bin/sh
# Usage: check-install.sh CMAKE BUILD_FOLDER CXX plain|sanitize
# Installs the build into a new folder, and builds and runs a small project outside the tree against it: once found
# through CMake, once through pkg-config.
set -eu
cmake=$1
build=$2
cxx=$3
kind=$4

here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
flags=
[ "$kind" = plain ] || flags=-fsanitize=address,undefined

"$cmake" --install "$build" --prefix "$prefix" > "$work/install.log"

(cd "$here/../../include" && find . -type f | sort) > "$work/promised"
(cd "$prefix/include" && find . -type f -path './Qel/*' | sort) > "$work/installed"
diff "$work/promised" "$work/installed"

"$cmake" -S "$here/project" -B "$work/project" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$cxx" \
    -DCMAKE_CXX_FLAGS="$flags" > "$work/configure.log"
"$cmake" --build "$work/project" > "$work/build.log"
"$work/project/outside" "$work/cmake.mox"

library=$(dirname "$(find "$prefix" -name 'libmoxwriter.so')")
PKG_CONFIG_PATH=$library/pkgconfig
export PKG_CONFIG_PATH
# shellcheck disable=SC2046,SC2086 # the flags are lists of words
"$cxx" -std=c++17 $flags "$here/project/outside.cpp" -o "$work/outside" $(pkg-config --cflags --libs moxwriter) \
    -Wl,-rpath,"$library"
"$work/outside" "$work/pkg-config.mox"
