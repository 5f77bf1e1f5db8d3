# The Debian packages that a script of this folder needs, and how they are installed. Sourced, not run.

MOXWRITER_BUILD_PACKAGES="g++ cmake ninja-build pkg-config zlib1g-dev libboost1.81-dev libeigen3-dev"
MOXWRITER_EXAMPLE_PACKAGES="libcli11-dev libfmt-dev"
MOXWRITER_TOOL_PACKAGES="libcli11-dev libfmt-dev nlohmann-json3-dev"
# Each is for a file format of its own; mox builds without them.
MOXWRITER_IMPORT_PACKAGES="libexodusii-dev libcgns-dev libhdf5-dev libgmsh-dev"
# For mox view --serve; mox builds without it. For the page itself, any npm and Node.js from 18 on will do.
MOXWRITER_VIEW_PACKAGES="libcpp-httplib-dev"
# For the example of a parallel program; without it that is not built.
MOXWRITER_MPI_PACKAGES="libopenmpi-dev openmpi-bin"
# For the faster compressor; without it there is zlib alone.
MOXWRITER_DEFLATE_PACKAGES="libdeflate-dev"
# For the Python package and its tests; without pybind11 and NumPy it is not built.
MOXWRITER_PYTHON_PACKAGES="python3-dev pybind11-dev python3-numpy python3-pytest python3-matplotlib python3-meshio python3-h5py
mypy"
MOXWRITER_TEST_PACKAGES="python3 python3-numpy libgtest-dev libgmock-dev clang libclang-rt-14-dev clang-format clang-tidy
libbenchmark-dev zsh fish"
# For other systems: the library, the reader and mox are built for them here, and tested under wine and qemu.
# GoogleTest is built from its sources. Before the packages of an architecture: dpkg --add-architecture arm64.
MOXWRITER_WINDOWS_PACKAGES="g++-mingw-w64-x86-64-posix libz-mingw-w64-dev wine64 googletest"
MOXWRITER_ARM_PACKAGES="g++-aarch64-linux-gnu zlib1g-dev:arm64 qemu-user googletest"
MOXWRITER_32_BIT_PACKAGES="g++-12-multilib lib32z1-dev googletest"
# For the site of the documentation.
MOXWRITER_DOCS_PACKAGES="doxygen graphviz python3"
# For what is tested on a desktop.
MOXWRITER_BROWSER_PACKAGES="chromium fonts-dejavu-core"
MOXWRITER_PARAVIEW_PACKAGES="paraview python3-paraview python3-numpy xvfb xauth"

# install_packages PACKAGE...: installs those that are missing, and says which.
install_packages() {
    missing=
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2> /dev/null | grep -q 'install ok installed' ||
            missing="$missing $package"
    done
    [ -n "$missing" ] || return 0
    echo "Installing Debian packages:$missing" >&2
    sudo=
    [ "$(id -u)" -eq 0 ] || sudo=sudo
    $sudo apt-get update -qq
    # shellcheck disable=SC2086 # a list of words
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing > /dev/null
}

# install_npm: installs Debian's npm and Node.js where there is none.
install_npm() {
    command -v npm > /dev/null && command -v node > /dev/null || install_packages npm nodejs
}
