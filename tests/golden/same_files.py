"""Whether models of the same calls that two systems have saved are equal: same_files.py FOLDER FOLDER.

The stored bytes of each block have to be, but for the date of the save, since systems name the time zone differently.
"""

import re
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parents[2] / "reader" / "python"))

import moxreader  # noqa: E402

# The length of a date and the date itself, such as Tue Nov 14 22:13:20 2023 UTC.
DATE = re.compile(rb".\0\0\0[A-Z][a-z]{2} [A-Z][a-z]{2} \d\d \d\d:\d\d:\d\d \d{4} [^\0]*", re.DOTALL)


def without_date(content: bytes) -> bytes:
    """The global information without the date, and without the size of a record, which depends on it."""
    return re.sub(rb".{4}(?=\x03\0\0\0)", b"", DATE.sub(b"", content), count=1, flags=re.DOTALL)


def blocks(path: Path) -> list:
    """Name, flags and bytes of each block; an Index Block has none, since its records are these blocks."""
    found = []
    with open(path, "rb") as source:
        data = source.read()
    with moxreader.File(str(path)) as file:
        for name in file.stream_names():
            for block in file.blocks_of(name):
                content = data[block.position : block.position + block.length]
                if name == "Global Information":
                    content = without_date(file.read_block(block))
                elif block.is_index_block:
                    content = b""
                found.append((name, block.id, block.flags, content))
    return found


def main() -> int:
    here, there = (Path(folder) for folder in sys.argv[1:3])
    names = sorted(path.name for path in here.glob("*.mox"))
    if not names or names != sorted(path.name for path in there.glob("*.mox")):
        print(f"{here} and {there} do not have the same files")
        return 1
    different = [name for name in names if blocks(here / name) != blocks(there / name)]
    for name in different:
        print(f"{name} differs")
    print(f"{len(names) - len(different)} of {len(names)} files are equal")
    return 1 if different else 0


if __name__ == "__main__":
    sys.exit(main())
