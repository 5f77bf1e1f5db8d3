"""Gives the files of this folder to all readers: each must print the dump that stands beside the file.

Needs in the environment: DUMP_MODEL (tests/agreement), and MOX (the tool; without it only the readers are tested).
"""

import os
import subprocess
import sys
import unittest
from pathlib import Path

FOLDER = Path(__file__).resolve().parent
READER = FOLDER.parents[1] / "reader" / "python" / "moxreader.py"
OPTIONS = ["--numbers", "--storage"]


def run(*command):
    return subprocess.run([str(word) for word in command], capture_output=True, check=False)


class Dumps(unittest.TestCase):
    maxDiff = None

    def for_each_file(self, command, can_fail=True):
        """can_fail: whether the command ends with 1 if a part of the file can't be read, else with 0."""
        paths = sorted(FOLDER.glob("*.mox"))
        self.assertGreater(len(paths), 12)
        for path in paths:
            with self.subTest(file=path.name):
                expected = path.with_suffix(".json").read_bytes()
                result = run(*command, path)
                self.assertEqual(expected.decode("utf-8"), result.stdout.decode("utf-8"))
                is_damaged = b'"unreadable": ' in expected
                self.assertEqual(1 if is_damaged and can_fail else 0, result.returncode)
                self.assertEqual(1 if is_damaged and can_fail else 0, result.stderr.count(b"\n"))

    def test_the_cpp_reader(self):
        self.for_each_file([os.environ["DUMP_MODEL"]], can_fail=False)

    def test_the_python_reader(self):
        self.for_each_file([sys.executable, "-B", READER, *OPTIONS])

    def test_mox_dump(self):
        if "MOX" not in os.environ:
            self.skipTest("there is no mox tool")
        self.for_each_file([os.environ["MOX"], "dump", *OPTIONS])


if __name__ == "__main__":
    unittest.main(verbosity=2)
