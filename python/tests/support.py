"""What several tests use."""

import os
import subprocess
import sys
from pathlib import Path

import moxreader
import pytest


class Independent:
    """A file as the reader sees it that shares no code with the package."""

    def __init__(self, path):
        self.file = moxreader.File(str(path))
        self.model = moxreader.Model(self.file)

    def names(self):
        return [(node.type, node.name) for node in self.model.nodes]

    def dataset(self, name, step="", node=None):
        return next(one for one in self.model.datasets()
                    if one.name == name and one.step == step and node in (None, one.node_id))

    def numbers(self, name, step="", node=None):
        return list(self.model.numbers(self.dataset(name, step, node)))


def mox(*arguments):
    """Runs mox; skips a test where it is not built."""
    program = os.environ.get("MOX")
    if not program or not Path(program).exists():
        pytest.skip("mox is not built")
    return subprocess.run([program, *map(str, arguments)], capture_output=True, text=True, check=False)


def run_python(code, **environment):
    """A new Python that runs a program; its stdout."""
    done = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, check=False,
                          env={**os.environ, **environment})
    assert done.returncode == 0, done.stderr
    return done.stdout
