"""Files saved with moxwriter-deflate: the same content in other bytes, whole, and read alike by both readers.

Needs in the environment: DUMP_MODEL and MAKE_CORPUS (programs of tests/agreement), DEFLATE (the library that is
preloaded), and MOX (the tool, without which no file is checked).
"""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "reader" / "python"))

import moxreader  # noqa: E402


def run(*command, **options):
    return subprocess.run([str(word) for word in command], capture_output=True, text=True, check=True, **options)


def save_models(folder, preload=None):
    environment = {key: value for key, value in os.environ.items() if key != "MOXWRITER_DEFAULT_BLOCK_SIZE"}
    if preload:
        environment["LD_PRELOAD"] = preload
    folder.mkdir()
    run(os.environ["MAKE_CORPUS"], folder, env=environment)
    # The blocks of the others are so small that what covers what depends on their compressed sizes.
    return {path.stem: path for path in folder.iterdir() if not path.stem.startswith("low")}


def contents(path):
    """The content of each stream. That of the global information holds the date, and is not compared."""
    with moxreader.File(path) as file:
        names = dict.fromkeys(block.name for block in file.blocks if block.holds_data)
        return {name: b"".join(file.read_block(block) for block in file.blocks if block.name == name)
                for name in names if name != "Global Information"}


class SavedFiles(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.temporary.cleanup)
        folder = Path(cls.temporary.name)
        cls.by_zlib = save_models(folder / "zlib")
        cls.by_deflate = save_models(folder / "deflate", os.environ["DEFLATE"])

    def test_the_models_are_those_of_the_corpus(self):
        self.assertEqual({"empty", "example", "few1", "few2", "few3", "few4", "golden", "many"}, set(self.by_zlib))
        self.assertEqual(set(self.by_zlib), set(self.by_deflate))

    def test_they_inflate_to_the_same_content(self):
        for name, path in self.by_zlib.items():
            with self.subTest(name):
                self.assertEqual(contents(path), contents(self.by_deflate[name]))

    def test_their_bytes_are_those_of_another_compressor(self):
        sizes = [(path.stat().st_size, self.by_deflate[name].stat().st_size) for name, path in self.by_zlib.items()]
        self.assertTrue(any(first != second for first, second in sizes), sizes)

    def test_both_readers_read_them_alike(self):
        for name, path in self.by_deflate.items():
            with self.subTest(name), moxreader.File(path) as file:
                dump = moxreader.Dump(file, moxreader.Model(file), numbers=True, storage=True)
                self.assertEqual(run(os.environ["DUMP_MODEL"], path).stdout, dump.text())

    def check(self, path):
        result = subprocess.run([os.environ["MOX"], "check", path], capture_output=True, text=True, check=False)
        return result.returncode, (result.stdout + result.stderr).replace(str(path), "")

    @unittest.skipUnless("MOX" in os.environ, "there is no mox tool")
    def test_mox_check_finds_the_golden_model_and_the_example_whole(self):
        for name in ("golden", "example"):
            self.assertEqual(0, self.check(self.by_deflate[name])[0], name)

    # The models of random calls have arrays whose lengths don't fit together.
    @unittest.skipUnless("MOX" in os.environ, "there is no mox tool")
    def test_mox_check_says_the_same_of_all(self):
        for name, path in self.by_zlib.items():
            with self.subTest(name):
                self.assertEqual(self.check(path), self.check(self.by_deflate[name]))


if __name__ == "__main__":
    unittest.main(verbosity=2)
