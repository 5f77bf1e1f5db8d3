"""The files that fuzzing begins with: seeds.py FOLDER makes FOLDER/files, FOLDER/records and FOLDER/commands.

They are the golden files, the files of the conformance set and a few that are made here, each as small as it can be: in
blocks that are not compressed. `records` and `commands` have them in the form that moxreader_records_fuzz and mox_fuzz
read.
"""

import struct
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "reader" / "python"), str(ROOT / "reader" / "python" / "tests"),
                str(ROOT / "tests" / "conformance")]

import make  # noqa: E402
import moxfile  # noqa: E402
import moxreader  # noqa: E402

STREAMS = (b"Mox Tree", b"Light Data", b"Attributes", b"Resources", b"Global Information", b"Heavy Data")
LARGEST = 4096
COMMANDS = 15


def streams_of(path_or_bytes):
    """The contents of the streams by name; nothing if they can't be read."""
    try:
        with moxreader.File(path_or_bytes) as file:
            streams = {}
            for block in file.blocks:
                if block.holds_data:
                    name = block.name.encode("latin-1", "replace")
                    streams[name] = streams.get(name, b"") + file.read_block(block)
            return streams
    except moxreader.MoxError:
        return None


def records_input(streams, division=0):
    contents = [streams.get(name, b"") for name in STREAMS]
    sizes = [len(content) for content in contents[:-1]]
    if max(sizes) > 0xFFFF:
        return None
    return bytes([division]) + struct.pack("<5H", *sizes) + b"".join(contents)


def streams_of_input(data):
    """The streams of an input of moxreader_records_fuzz."""
    if len(data) < 11:
        return {}
    sizes, rest, streams = struct.unpack("<5H", data[1:11]), data[11:], {}
    for name, size in zip(STREAMS, (*sizes, len(data))):
        streams[name], rest = rest[:size], rest[size:]
    return streams


def small_model():
    """One shape with one dataset of one number: the fewest bytes that reach the numbers."""
    geometry = moxfile.u32(1) + moxfile.dataset(b"a", 0x0100000C, 4, 1, 0)
    tree = moxfile.u32(3) + b"".join([
        moxfile.node((1, 0, 0, 0, 2, 2), b"", b"Group", b"0.4", 0),
        moxfile.node((2, 1, 0, 0, 3, 3), b"", b"Shape", b"0.2", 41),
        moxfile.node((3, 2, 0, 0, 0, 0), b"", b"Geometry", b"0.7", 41)])
    return {b"Heavy Data": bytes(4), b"Mox Tree": tree, b"Light Data": bytes(41) + geometry,
            b"Attributes": 2 * moxfile.NO_ATTRIBUTES,
            b"Resources": moxfile.material(b"0.3", moxfile.COLOURS, moxfile.f32(0, 0), moxfile.u8(1)),
            b"Global Information": moxfile.u32(0, 0)}


def models():
    """Streams by the name of a model."""
    found = {"small": small_model(), "sample": moxfile.sample()}
    for path in sorted((ROOT / "tests" / "golden").glob("*.mox")):
        found[path.stem] = streams_of(path)
    for name, data in make.make_files().items():
        found[name] = streams_of(data)
    return {name: streams for name, streams in found.items() if streams}


def write_seeds(folder):
    for kind in ("files", "records", "commands"):
        (folder / kind).mkdir(parents=True, exist_ok=True)
    for i, (name, streams) in enumerate(models().items()):
        data = records_input(streams)
        if data is not None and len(data) <= LARGEST:
            (folder / "records" / name).write_bytes(data)
            for command in range(COMMANDS) if name in ("sample", "small", "mesh") else (i % COMMANDS,):
                (folder / "commands" / f"{name}-{command}").write_bytes(bytes([command, 1, 7]) + data)
        if len(streams) <= 20 and sum(map(len, streams.values())) <= LARGEST:
            (folder / "files" / f"{name}-plain").write_bytes(moxfile.plain_file(streams))
    for path in (ROOT / "tests" / "golden").glob("*.mox"):
        if path.stat().st_size <= 2800 + LARGEST:
            (folder / "files" / path.stem).write_bytes(path.read_bytes())
    for name, data in make.make_files().items():
        if len(data) <= 2800 + LARGEST:
            (folder / "files" / name).write_bytes(data)


if __name__ == "__main__":
    write_seeds(Path(sys.argv[1]))
