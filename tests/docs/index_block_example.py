"""Prints the second example of docs/format/example.md: the bytes around an Index Block, with a note on each.

    python3 index_block_example.py [PAGE]

With a page, puts them there instead of those that it has.
"""

import re
import struct
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
FILE = ROOT / "tests" / "golden" / "index-block.mox"
OPENING = "```hexparts index-block.mox\n"
CLOSING = "```\n"

HEAD_TABLE = 16
FIRST_BLOCK = 2800
RECORD = 139
HEAD_RECORDS = 20
TABLE_RECORDS = 200
INDEX_BLOCK = 19
LAST_USED = 25
FLAGS = {0x01: "compressed", 0x20: "freezable"}


class Example:
    def __init__(self, data):
        self.data = data
        self.lines = []

    def number(self, offset):
        return struct.unpack_from("<I", self.data, offset)[0]

    def add(self, offset, size, note):
        """A line for each 16 bytes; runs of zeros count as one."""
        words = hex_words(self.data[offset:offset + size])
        for line in [words[i:i + 16] for i in range(0, len(words), 16)]:
            self.lines.append(f"{offset:08x}  {' '.join(line):<47} | {note}".rstrip())
            offset += sum(int(word[3:]) if "*" in word else 1 for word in line)
            note = ""

    def skip(self, note):
        self.lines.append(f"...{'':<54} | {note}")

    def record(self, block, offset):
        name = self.data[offset + 5:offset + 133].rstrip(b"\0").decode()
        flags = self.data[offset + 137]
        shown = f'0x0B, "{name[1:]}"' if name.startswith("\x0b") else f'"{name}"'
        self.add(offset, 1, f"block {block}: number {self.data[offset]}")
        self.add(offset + 1, 4, f"  name length {self.number(offset + 1)}")
        self.add(offset + 5, 128, f"  name {shown}")
        self.add(offset + 133, 4, f"  length {self.number(offset + 133)}: bytes in the file")
        self.add(offset + 137, 1, "  flags: " + ", ".join(text for flag, text in FLAGS.items() if flags & flag))
        self.add(offset + 138, 1, "  reserved")

    def empty_entry(self, block, offset):
        self.add(offset, RECORD, f"block {block}: empty entry")

    def content(self, block, offset, length):
        self.add(offset, 4, f'block {block}, "Heavy Data": content length {self.number(offset)}')
        self.add(offset + 4, length - 4, "  zlib stream")


def hex_words(data):
    """Two digits for each byte; "00*118" for five zeros and more."""
    return [word for run in re.findall(rb"\0{5,}|[\s\S]", data)
            for word in ([f"00*{len(run)}"] if len(run) > 1 else [run.hex()])]


def make_lines(data):
    example = Example(data)
    head = HEAD_TABLE + 4
    length_of = lambda record: example.number(record + 133)
    example.add(12, 4, f"head index length {example.number(12)}")
    example.add(HEAD_TABLE, 4, f"record count {example.number(HEAD_TABLE)}")
    example.skip("blocks 0 to 17, like block 18")
    example.record(18, head + 18 * RECORD)
    example.record(INDEX_BLOCK, head + INDEX_BLOCK * RECORD)

    lengths = [length_of(head + i * RECORD) for i in range(HEAD_RECORDS)]
    place = FIRST_BLOCK + sum(lengths[:18])
    example.skip("the bytes of blocks 0 to 17")
    example.content(18, place, lengths[18])

    table = place + lengths[18]
    example.add(table, 4, f"block {INDEX_BLOCK}, the Index Block: record count {example.number(table)}")
    record_of = lambda block: table + 4 + (block - INDEX_BLOCK - 1) * RECORD
    example.record(20, record_of(20))
    example.record(21, record_of(21))
    example.skip(f"blocks 22 to {LAST_USED}: the other streams")
    example.empty_entry(LAST_USED + 1, record_of(LAST_USED + 1))
    example.skip(f"blocks {LAST_USED + 2} to {INDEX_BLOCK + TABLE_RECORDS - 1}, likewise")
    example.empty_entry(INDEX_BLOCK + TABLE_RECORDS, record_of(INDEX_BLOCK + TABLE_RECORDS))

    after = table + lengths[INDEX_BLOCK]
    example.content(20, after, length_of(record_of(20)))
    end = after + sum(length_of(record_of(block)) for block in range(20, LAST_USED + 1))
    assert end == len(data)
    example.skip(f"the bytes of blocks 21 to {LAST_USED}; the file ends at {end}")
    return example.lines


def fenced():
    return OPENING + "".join(line + "\n" for line in make_lines(FILE.read_bytes())) + CLOSING


def shown_in(page):
    """The example as it stands in the text of a page."""
    start = page.index(OPENING)
    return page[start:page.index(CLOSING, start + len(OPENING)) + len(CLOSING)]


if __name__ == "__main__":
    if len(sys.argv) > 1:
        path = Path(sys.argv[1])
        page = path.read_text("utf-8")
        path.write_text(page.replace(shown_in(page), fenced()), "utf-8")
    else:
        sys.stdout.write(fenced())
