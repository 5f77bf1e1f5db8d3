"""Compares the second example of docs/format/example.md with the file that it shows."""

import re
import sys
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))

import index_block_example as example  # noqa: E402

PAGE = (HERE.parents[1] / "docs" / "format" / "example.md").read_text("utf-8")


class IndexBlockExample(unittest.TestCase):
    maxDiff = None

    def test_the_page_has_the_lines_that_are_generated_from_the_file(self):
        self.assertEqual(example.fenced(), example.shown_in(PAGE))

    def test_each_line_has_the_bytes_at_its_offset(self):
        data = example.FILE.read_bytes()
        lines = re.findall(r"^([0-9a-f]{8})  (.*?) +\|", example.shown_in(PAGE), re.MULTILINE)
        self.assertGreater(len(lines), 30)
        for offset, words in lines:
            expected = b"".join(bytes(int(word[3:])) if "*" in word else bytes.fromhex(word) for word in words.split())
            self.assertEqual(expected, data[int(offset, 16):int(offset, 16) + len(expected)], offset)

    def test_what_the_page_says_of_places_is_true(self):
        data = example.FILE.read_bytes()
        self.assertEqual((8).to_bytes(4, "little") + b"\x78\x9c", data[3160:3166])
        self.assertEqual((200).to_bytes(4, "little"), data[3180:3184])
        self.assertEqual((8).to_bytes(4, "little") + b"\x78\x9c", data[30984:30990])


if __name__ == "__main__":
    unittest.main(verbosity=2)
