#!/bin/sh
# Usage: check-install.sh CMAKE BUILD_FOLDER PYTHON PYTHON_INSTALL_DIR
# Installs the build into a new folder, and saves, reads and converts a model with the package there.
set -eu
cmake=$1
build=$2
python=$3
folder=$4

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$cmake" --install "$build" --prefix "$work/prefix" > "$work/install.log"
cd "$work"
PYTHONPATH=$work/prefix/$folder PYTHONDONTWRITEBYTECODE=1 "$python" - "$work/prefix" << 'END'
import sys
from importlib.metadata import version
from pathlib import Path

import moxwriter

prefix = Path(sys.argv[1])
assert Path(moxwriter.__file__).is_relative_to(prefix), moxwriter.__file__
assert (Path(moxwriter.__file__).parent / "py.typed").exists()
assert version("moxwriter") == moxwriter.__version__
if list(prefix.rglob("libmoxwriter-deflate.so*")):
    assert moxwriter.compressor("deflate") == "deflate"
with moxwriter.Model("bar.mox") as model:
    model.add_group("root")
    model.add_array(model.add_shape("bar"), "Coordinates", [[0, 0, 0], [1.5, 0, 0]])
with moxwriter.open("bar.mox") as file:
    assert file["root/bar"]["Coordinates"].read().tolist() == [[0, 0, 0], [1.5, 0, 0]]
END
