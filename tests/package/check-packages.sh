#!/bin/sh
# Usage: check-packages.sh FOLDER
# Installs the Debian packages of a folder into a clean Debian, and uses them there: programs save, read and restart,
# mox imports, checks and shows its manual, and Python saves and reads. The programs are compiled outside, against the
# files that the packages have installed. Needs root and mmdebstrap.
set -eu
packages=$(cd "$1" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
work=$(mktemp -d)
chmod 755 "$work"
trap 'rm -rf "$work"' EXIT
clean=$work/debian

# The module for Gmsh needs half a desktop; whether what it depends on exists is asked without installing it.
mkdir "$work/packages"
cp "$packages"/*.deb "$work/packages"
rm -f "$work"/packages/mox-tools-gmsh_*.deb
mmdebstrap --mode=root --variant=apt --skip=chroot/mount --dpkgopt=force-unsafe-io "$suite" "$clean" \
    --customize-hook='mkdir -p "$1/packages"' --customize-hook="cp $work/packages/*.deb \$1/packages" \
    --customize-hook='chroot "$1" sh -c "DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends \
        /packages/*.deb"' > "$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }

# run COMMAND...: in the clean Debian, in the folder /tries.
mkdir "$clean/tries"
run() {
    chroot "$clean" env -i PATH=/usr/bin:/bin HOME=/tries LANG=C.UTF-8 sh -c 'cd /tries && exec "$@"' run "$@"
}

libraries=$clean/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)
PKG_CONFIG_PATH=$libraries/pkgconfig
export PKG_CONFIG_PATH
# build SOURCE PACKAGE...
build() {
    source=$1
    shift
    # shellcheck disable=SC2046 # the flags are lists of words
    g++ -std=c++20 "$source" -o "$clean/tries/$(basename "$source" .cpp)" $(pkg-config --cflags --libs "$@") \
        -Wl,-rpath-link,"$libraries"
}
build "$here/project/save.cpp" moxwriter
build "$here/project/read.cpp" moxreader
build "$here/project/restart.cpp" moxwriter moxreader
build "$here/../../examples/minimal/minimal.cpp" moxwriter
run ./save saved.mox
run ./read saved.mox
run ./restart saved.mox next.mox

if [ -x "$clean/usr/bin/mox" ]; then
    run mox check saved.mox next.mox
    run mox --version
    run ./minimal cube.mox
    run mox export cube.mox cube.e
    run mox import cube.e imported.mox
    run mox check imported.mox
    test -s "$clean/usr/share/man/man1/mox.1.gz"
    for completion in bash-completion/completions/mox zsh/vendor-completions/_mox fish/vendor_completions.d/mox.fish; do
        test -s "$clean/usr/share/$completion"
    done
fi
if [ -d "$clean/usr/lib/python3/dist-packages/moxwriter" ]; then
    run python3 -c '
import moxwriter
with moxwriter.Model("bar.mox") as model:
    model.add_group("root")
    model.add_array(model.add_shape("bar"), "Coordinates", [[0, 0, 0], [1.5, 0, 0]])
with moxwriter.open("bar.mox") as file:
    assert file["root/bar"]["Coordinates"].read().tolist() == [[0, 0, 0], [1.5, 0, 0]]
with moxwriter.open("saved.mox") as file:
    assert file["outside/part"]["Coordinates"].read().tolist() == [[1, 2, 3]]
assert moxwriter.compressor("deflate") == "deflate"
'
fi
chroot "$clean" dpkg --audit
echo "check-packages.sh: the packages work in a clean Debian $suite" >&2
