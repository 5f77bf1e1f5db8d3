"""Checks both readers and mox check against what expected.json says about each file of the conformance set.

Needs DUMP_MODEL in the environment (tests/agreement), and MOX for the findings of mox check.
"""

import json
import os
import re
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[1]
sys.path[:0] = [str(HERE), str(ROOT / "reader" / "python")]

import make  # noqa: E402
import moxreader  # noqa: E402

PAGE = ROOT / "docs" / "format" / "conformance.md"
REFUSED = 3  # How dump_model ends if the reader refuses a file.


def run(*command):
    return subprocess.run([str(word) for word in command], capture_output=True, text=True, check=False)


def places(spans):
    """"1/3-5" stands for "1/3", "1/4" and "1/5"."""
    for span in spans:
        match = re.fullmatch(r"(\d+)/(\d+)-(\d+)", span)
        if match:
            node, first, last = map(int, match.groups())
            yield from (f"{node}/{index}" for index in range(first, last + 1))
        else:
            yield span


def bits(numbers):
    return [struct.unpack("<I", struct.pack("<f", number))[0] if isinstance(number, float) else number
            for number in numbers]


def cpp_outcome(path):
    """The numbers by place, with None for those refused; None if the whole file is refused."""
    result = run(os.environ["DUMP_MODEL"], path, "outcome")
    if result.returncode == REFUSED:
        return None
    if result.returncode != 0:
        raise AssertionError(f"the C++ reader ended with {result.returncode}: {result.stderr}")
    lines = (line.split() for line in result.stdout.splitlines())
    return {place: None if words == ["refused"] else list(map(int, words)) for place, *words in lines}


def python_outcome(path):
    try:
        with moxreader.File(path) as file:
            model = moxreader.Model(file)
            outcome = {}
            for node in model.nodes:
                if isinstance(node.content, moxreader.NodeSets):
                    read = lambda: [len(members) for _, members in model.node_sets(node)]
                    outcome[str(node.id)] = value_or_none(read)
            for dataset in model.datasets():
                outcome[f"{dataset.node_id}/{dataset.index}"] = value_or_none(lambda: bits(model.numbers(dataset)))
            return outcome
    except moxreader.MoxError:
        return None


def value_or_none(read):
    try:
        return list(read())
    except moxreader.MoxError:
        return None


def broken_rules(path):
    result = run(os.environ["MOX"], "check", "--json", path)
    return sorted({finding["rule"] for finding in json.loads(result.stdout)["files"][0]["findings"]})


class Conformance(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        make.main([cls.folder.name])
        cls.expected = json.loads((HERE / "expected.json").read_text())
        cls.paths = {path.stem: path for path in Path(cls.folder.name).iterdir()}

    def for_each(self, check):
        for name, expected in self.expected.items():
            with self.subTest(file=name):
                check(self.paths[name], expected)

    def compare(self, outcome, expected):
        if expected["result"] == "refuse":
            self.assertIsNone(outcome)
            return
        self.assertIsNotNone(outcome, "the file is refused")
        refused = {place for place, numbers in outcome.items() if numbers is None}
        self.assertEqual(set(places(expected.get("refused", []))), refused)
        self.assertEqual("part" if refused else "read", expected["result"])
        for place, numbers in expected.get("numbers", {}).items():
            self.assertEqual(bits(numbers), outcome[place], place)
        if "arrays" in expected:
            for place, numbers in outcome.items():
                if numbers is not None:
                    i = int(place.split("/")[1])
                    self.assertEqual(make.numbers_of(i, len(numbers)), numbers, place)
            self.assertEqual(expected["arrays"], len(outcome))

    def test_each_file_has_an_expected_result(self):
        self.assertEqual(set(self.paths), set(self.expected))

    def test_the_cpp_reader(self):
        self.for_each(lambda path, expected: self.compare(cpp_outcome(path), expected))

    def test_the_python_reader(self):
        self.for_each(lambda path, expected: self.compare(python_outcome(path), expected))

    def test_mox_check(self):
        if "MOX" not in os.environ:
            self.skipTest("there is no mox tool")
        self.for_each(lambda path, expected: self.assertEqual(expected["check"], broken_rules(path)))

    def test_the_page_lists_each_file_with_its_result(self):
        rows = re.findall(r"^\| ([\w.-]+) \| (read|part|refuse) \|", PAGE.read_text(), re.MULTILINE)
        self.assertEqual([(name, expected["result"]) for name, expected in self.expected.items()], rows)


if __name__ == "__main__":
    unittest.main(verbosity=2)
