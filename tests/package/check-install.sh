#!/bin/sh
# Usage: check-install.sh CMAKE BUILD_FOLDER CXX plain|sanitize
# Installs the build into a new folder, moves that, and builds and runs a small project outside the tree against it:
# once found through CMake, once through pkg-config. A part that is not installed is named.
set -eu
cmake=$1
build=$2
cxx=$3
kind=$4

here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/moved
flags=
[ "$kind" = plain ] || flags=-fsanitize=address,undefined

for component in libmoxwriter libmoxwriter-dev libmoxreader libmoxreader-dev libmoxwriter-deflate; do
    "$cmake" --install "$build" --prefix "$work/prefix" --component $component > "$work/install.log"
done
mv "$work/prefix" "$prefix"

# compare_headers INCLUDE_FOLDER NAMESPACE: those that are installed are those that are promised.
compare_headers() {
    (cd "$here/../../$1/$2" && find . -type f | sort) > "$work/promised"
    (cd "$prefix/include/$2" && find . -type f | sort) > "$work/installed"
    diff "$work/promised" "$work/installed"
}
compare_headers include Qel
compare_headers reader/include MoxReader
if grep -rlF "$work" --include='*.cmake' --include='*.pc' "$prefix"; then
    echo "these files name the folder that they were installed into" >&2
    exit 1
fi

"$here/run-programs.sh" package "$cmake" "$cxx" "$prefix" "$flags"

# Nor may one that the machine has be found.
rm -r "$(dirname "$(find "$prefix" -name MoxReaderConfig.cmake)")"
if "$cmake" -DCMAKE_DISABLE_FIND_PACKAGE_MoxReader=ON -S "$here/project" -B "$work/project" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$cxx" \
    > "$work/refused.log" 2>&1 || ! grep -q "component 'reader' of MoxWriter is not installed" "$work/refused.log"
then
    echo "that the reader is missing is not said:" >&2
    cat "$work/refused.log" >&2
    exit 1
fi
