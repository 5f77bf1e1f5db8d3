"""Writes the dump of each file of this folder beside it."""

import sys
from pathlib import Path

FOLDER = Path(__file__).resolve().parent
sys.path.insert(0, str(FOLDER.parents[1] / "reader" / "python"))

import moxreader  # noqa: E402


def dump_of(path):
    with moxreader.File(path) as file:
        return moxreader.Dump(file, moxreader.Model(file), numbers=True, storage=True).text()


if __name__ == "__main__":
    for path in sorted(FOLDER.glob("*.mox")):
        path.with_suffix(".json").write_bytes(dump_of(path).encode("utf-8"))
