"""Replays the files in `finds`, each of which once broke a reader, a command of mox or an import: README.md there.

Needs MOX and DUMP_MODEL in the environment.
"""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

import compare_readers
import import_damaged

FINDS = Path(__file__).resolve().parent / "finds"
MOX = os.environ.get("MOX", "")
# The exit codes that the help of a command lists, and 1 for any failure.
COMMANDS = {("check",): (0, 1, 2, 3), ("dump", "--numbers", "--storage"): (0, 1), ("tree",): (0, 1), ("info",): (0, 1),
            ("stat",): (0, 1), ("stat", "--values"): (0, 1), ("diff",): (0, 1, 2), ("salvage", "--force"): (0, 1),
            ("export", "--format", "vtu"): (0, 1), ("extract", "--all"): (0, 1)}
WITH_OUTPUT = ("salvage", "export", "extract")


class Finds(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def files(self, pattern):
        paths = sorted(FINDS.glob(pattern))
        self.assertTrue(paths)
        for path in paths:
            with self.subTest(file=path.name):
                yield path

    def test_both_readers_give_the_same_result(self):
        reader = compare_readers.CppReader()
        self.addCleanup(reader.stop)
        for path in self.files("*.mox"):
            data = path.read_bytes()
            verdict = reader.verdict(data)
            self.assertRegex(verdict, "^(refused|(read|in part) [0-9a-f]{8})$")
            self.assertEqual(verdict, compare_readers.python_verdict(data))

    @unittest.skipUnless(MOX, "there is no mox")
    def test_commands_end_with_an_exit_code_and_a_line(self):
        for path in self.files("*.mox"):
            for number, (words, codes) in enumerate(COMMANDS.items()):
                output = [self.folder / f"{path.stem}-{number}"] if words[0] in WITH_OUTPUT else []
                second = [path] if words[0] == "diff" else []
                result = subprocess.run([MOX, *words, path, *second, *output], capture_output=True, timeout=60, check=False)
                self.assertIn(result.returncode, codes, words)
                if result.returncode and not result.stdout:
                    self.assertRegex(result.stderr.decode(), f"^mox {words[0]}: .+\n$", words)

    @unittest.skipUnless(MOX, "there is no mox")
    def test_imports_end_with_a_file_or_with_a_line(self):
        (self.folder / "work").mkdir()
        importer = import_damaged.Importer(self.folder)
        for path in self.files("import-*"):
            model = importer.folder / path.name
            model.write_bytes(path.read_bytes())
            self.assertEqual("", importer.run(model)[0])
            for each in importer.folder.iterdir():
                each.unlink()


if __name__ == "__main__":
    unittest.main(verbosity=2)
