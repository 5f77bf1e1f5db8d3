"""The package as a whole: its doctests, its types, its installation."""

import doctest
import os
import subprocess
import sys
from pathlib import Path

import moxwriter
import pytest
from moxwriter import _cells, _meshes, _reading, _types, _writing, convert

PACKAGE = Path(moxwriter.__file__).resolve().parent


@pytest.mark.parametrize("module", [_cells, _meshes, _reading, _types, _writing, convert])
def test_examples_in_the_documentation_work(module):
    found = doctest.testmod(module)
    assert found.attempted > 0 and found.failed == 0


def test_everything_exported_is_documented():
    for name in moxwriter.__all__:
        thing = getattr(moxwriter, name)
        assert not callable(thing) or thing.__doc__, name


def run_module(*arguments, folder):
    return subprocess.run([sys.executable, "-m", *arguments], capture_output=True, text=True, cwd=folder, check=False,
                          env={**os.environ, "MYPYPATH": str(Path(moxwriter.__file__).parent.parent)})


def test_types_are_whole(tmp_path):
    pytest.importorskip("mypy")
    checked = run_module("mypy", "--strict", "--ignore-missing-imports", "--cache-dir", str(tmp_path), "-p", "moxwriter",
                         folder=tmp_path)
    assert checked.returncode == 0, checked.stdout


def test_stubs_match_the_native_modules(tmp_path):
    pytest.importorskip("mypy")
    allowed = tmp_path / "allowed"
    # Classes of pybind11 have a metaclass of its own, which it declares nowhere.
    allowed.write_text("moxwriter\\._writer\\.Model\nmoxwriter\\._reader\\.File\n")
    checked = run_module("mypy.stubtest", "--allowlist", str(allowed), "moxwriter._writer", "moxwriter._reader", folder=tmp_path)
    assert checked.returncode == 0, checked.stdout + checked.stderr
