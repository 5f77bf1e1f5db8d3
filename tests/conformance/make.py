"""Makes the conformance set of the format: files, sound and broken. expected.json says what a reader must do with them.

    python3 make.py FOLDER

Needs nothing but Python. docs/format/conformance.md explains the entries of expected.json.
"""

import struct
import sys
import zlib
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "reader" / "python" / "tests"))

import moxfile  # noqa: E402
from moxfile import compressed, dataset, link, text, texts, u32, u64, u8  # noqa: E402

FLOATS, UNSIGNED = 0x01000000, 0x05000000
NODE_SCALAR = 12
GLOBAL = u32(1) + moxfile.modifier(b"app", b"2.0", b"1.3", b"today", b"", b"", b"") + u32(0)


# --- Parts of files


def planes(numbers):
    """Unsigned numbers of one column as they are stored."""
    return b"".join(bytes(number >> 8 * plane & 0xFF for number in numbers) for plane in range(4))


def numbers_of(i, length):
    """The numbers of array i: close to random, so that they hardly compress."""
    return [((i + 1) * 2654435761 ^ (row + 1) * (row + 1) * 2246822519) % (1 << 32) for row in range(length)]


def array(key, numbers, position, kind=NODE_SCALAR):
    """A dataset of unsigned numbers."""
    return dataset(key, UNSIGNED | kind, 4 * numbers, 1, position)


def to(key, index, node=1):
    """A link."""
    return link(key, UNSIGNED | NODE_SCALAR, node, index)


def geometry(datasets, heavy, attributes=None):
    """The blocks of a file that is one geometry, node 1. heavy: the blocks of its numbers."""
    tree = u32(1) + moxfile.node((1, 0, 0, 0, 0, 0), b"G", b"Geometry", b"0.7", 0)
    light = u32(len(datasets)) + b"".join(datasets)
    records = moxfile.NO_ATTRIBUTES * len(datasets) if attributes is None else attributes
    return [*heavy, *streams({b"Mox Tree": tree, b"Light Data": light, b"Attributes": records,
                              b"Global Information": GLOBAL})]


def streams(contents):
    return [(name, compressed(content), 0x01) for name, content in contents.items() if content]


def heavy(content, flags=0x21):
    return b"Heavy Data", compressed(content), flags


def sample_with(name, change):
    contents = moxfile.sample()
    contents[name] = change(contents[name])
    return moxfile.compressed_file(contents)


def with_bytes(data, offset, replacement):
    return data[:offset] + replacement + data[offset + len(replacement):]


def replaced(old, new):
    assert len(old) == len(new)

    def change(content):
        assert content.count(old) >= 1
        return content.replace(old, new, 1)
    return change


def arrays(lengths, restarts=(), lost=()):
    """A file of one geometry whose datasets T0, T1 and so on hold numbers_of(), each in a block of its own."""
    blocks, entries, position = [], [], 0
    for i, length in enumerate(lengths):
        entries.append(array(b"T%d" % i, length, position))
        content = planes(numbers_of(i, length))
        flags = 0x21 if i + 1 < len(lengths) else 0x01
        blocks.append((b"Heavy Data", b"" if i in lost else compressed(content), flags))
        position += 4 * length
    return moxfile.chained_file(geometry(entries, blocks), restarts)


def lone(datasets, content, flags=0x01):
    """A file of one geometry with one block of numbers."""
    return moxfile.chained_file(geometry(datasets, [heavy(content, flags)]))


EIGHT = planes(range(1, 9))  # The numbers 1 to 8 as one array.
FOURS = planes([1, 2, 3, 4]) + planes([5, 6, 7, 8])  # As two arrays.


# --- The files


def make_files():
    """The files by name."""
    return {**sound(), **blocks(), **datasets(), **records(), **low(), **broken()}


def sound():
    empty = {b"Mox Tree": u32(1) + moxfile.node((1, 0, 0, 0, 0, 0), b"", b"", b"", 0), b"Global Information": GLOBAL}
    parts = [(name, compressed(content[i:i + 7]), 0x21 if name == b"Heavy Data" else 0x01)
             for name, content in moxfile.sample().items() for i in range(0, len(content), 7)]
    return {
        "sample": moxfile.compressed_file(moxfile.sample()),
        "empty": moxfile.compressed_file(empty),
        "one-array": lone([array(b"A", 8, 0)], EIGHT),
        "streams-in-many-blocks": moxfile.chained_file(parts),
        "index-block": arrays([5] * 19),
        "index-blocks": arrays([5 + i % 3 for i in range(450)]),
        "no-index-block": arrays([5] * 15),
    }


def blocks():
    one = lone([array(b"A", 8, 0)], EIGHT)
    unknown = moxfile.chained_file([(b"View Points", compressed(b"anything"), 0x01),
                                    *geometry([array(b"A", 8, 0)], [heavy(EIGHT, 0x01)])])
    tree_record = 20 + 139
    return {
        "uncompressed": moxfile.plain_file(moxfile.sample()),
        "unknown-block": unknown,
        "bytes-after-last-block": one + b"more",
        "unknown-flags": with_bytes(one, 20 + 137, u8(0x01 | 0x42)),
        "freezable-flag": with_bytes(one, 20 + 137, u8(0x21)),
        "reserved-byte": with_bytes(one, 20 + 138, u8(9)),
        "record-number": with_bytes(one, tree_record, u8(77)),
        "name-with-bytes-after": with_bytes(one, 20 + 5 + 20, b"x"),
        "lost-block": arrays([8] * 4, lost=[1]),
        "lost-blocks-in-a-row": arrays([8, 9, 10, 8, 8, 8], lost=[1, 2, 4]),
        "lost-last-block": arrays([8] * 3, lost=[2]),
        "lost-block-and-a-gap": moxfile.chained_file(geometry(
            [array(b"A", 4, 0), array(b"B", 4, 48)],
            [heavy(planes([1, 2, 3, 4])), (b"Heavy Data", b"", 0x21), heavy(planes([5, 6, 7, 8]), 0x01)])),
        "lost-tree": moxfile.chained_file([(b"Mox Tree", b"", 0x01), *streams({b"Global Information": GLOBAL})]),
    }


def datasets():
    a = array(b"A", 8, 0)
    other_type = link(b"L", FLOATS | 14, 1, 0)
    attributes = moxfile.NO_ATTRIBUTES + texts(b"Unit") + moxfile.counted("B", 2) + u32(0, 0, 0) + texts(b"K")
    return {
        "link": lone([a, to(b"L", 0)], EIGHT),
        "link-chain": lone([a, to(b"L", 2), to(b"M", 0)], EIGHT),
        "link-ring": lone([a, to(b"L", 2), to(b"M", 1)], EIGHT),
        "link-to-itself": lone([a, to(b"L", 1)], EIGHT),
        "link-to-no-dataset": lone([a, to(b"L", 2)], EIGHT),
        "link-to-no-node": lone([a, to(b"L", 0, node=2)], EIGHT),
        "link-of-another-type": lone([a, other_type], EIGHT),
        "link-with-attributes": moxfile.chained_file(geometry(
            [a, to(b"L", 0)], [heavy(EIGHT, 0x01)], attributes)),
        "key-with-two-separators": lone([array(b"A\x1eB\x1eC", 8, 0)], EIGHT),
        "key-twice": lone([array(b"A", 4, 0), array(b"A", 4, 16)], FOURS, 0x21),
        "variable-type-unknown": lone([array(b"A", 8, 0, 99)], EIGHT),
        "element-type-unknown": lone([dataset(b"A", 0x02000000 | NODE_SCALAR, 32, 1, 0)], EIGHT),
        "no-element-type": lone([dataset(b"A", 0xFFFFFFFF, 32, 1, 0)], EIGHT),
        "width-of-another-type": lone([dataset(b"A", UNSIGNED | NODE_SCALAR, 32, 2, 0)], FOURS),
        "width-0": lone([dataset(b"A", UNSIGNED | NODE_SCALAR, 32, 0, 0)], EIGHT),
        "width-0-without-numbers": lone([array(b"A", 8, 0), dataset(b"B", UNSIGNED | NODE_SCALAR, 0, 0, 32)], EIGHT),
        "empty-array": lone([array(b"A", 8, 0), array(b"B", 0, 32)], EIGHT),
        "size-with-remainder": lone([dataset(b"A", UNSIGNED | 13, 32, 3, 0), array(b"B", 8, 0)], EIGHT),
        "past-the-end": lone([array(b"A", 8, 0), array(b"B", 8, 4)], EIGHT),
        "far-past-the-end": lone([array(b"A", 8, 0), array(b"B", 8, (1 << 64) - 16)], EIGHT),
        "no-heavy-data": moxfile.chained_file(geometry([array(b"A", 8, 0)], [])),
        "numbers-in-two-blocks": moxfile.chained_file(geometry([array(b"A", 8, 0)],
                                                               [heavy(EIGHT[:10]), heavy(EIGHT[10:], 0x21)])),
        "numbers-of-two-datasets": lone([array(b"A", 8, 0), array(b"B", 8, 0)], EIGHT),
        "numbers-of-no-dataset": lone([array(b"B", 4, 16)], FOURS, 0x21),
        "fields-without-meaning": lone([a[:-1 - 8 - 1] + u8(1) + a[-1 - 8:]], EIGHT),
    }


def records():
    contents = moxfile.sample()
    sets_size = len(contents[b"Heavy Data"]) - 32
    materials = {b"0.1": moxfile.f32(0.75), b"0.2": moxfile.f32(0.75, 0.5), b"0.3": moxfile.f32(0.75, 0.5) + u8(1),
                 b"0.4": moxfile.f32(0.75, 0.5) + u8(1, 2, 3)}

    def material(version):
        return sample_with(b"Resources", lambda _: 2 * moxfile.material(version, moxfile.COLOURS, materials[version]))

    return {
        **{f"material-{version.decode()}": material(version) for version in materials},
        "group-version": sample_with(b"Mox Tree", replaced(text(b"0.4"), text(b"0.5"))),
        "geometry-version": sample_with(b"Mox Tree", replaced(text(b"0.7"), text(b"0.6"))),
        "shape-version": sample_with(b"Mox Tree", replaced(text(b"0.2"), text(b"9.2"))),
        "node-sets-version": sample_with(b"Mox Tree", replaced(text(b"0.1"), text(b"0.9"))),
        "plain-node": plain_root(b"N", b"Node", b"0.1"),
        "plain-node-version": plain_root(b"N", b"Node", b"7"),
        "empty-type-with-name-and-version": plain_root(b"N", b"", b"7"),
        "unknown-type": plain_root(b"N", b"Beam", b"0.1"),
        "node-sets-contradict": sample_with(b"Heavy Data", replaced(moxfile.counted("I", 0, 2, 2, 3),
                                                                    moxfile.counted("I", 0, 2, 1, 3))),
        "node-sets-size": sample_with(b"Light Data", replaced(u32(16, 3) + u64(32) + u32(sets_size),
                                                              u32(16, 3) + u64(32) + u32(sets_size - 4))),
        "attributes-in-another-order": sample_with(b"Attributes", replaced(text(b"count"), text(b"zount"))),
        "attribute-twice": sample_with(b"Attributes", replaced(text(b"ratio"), text(b"count"))),
        "attribute-kind-unknown": sample_with(b"Attributes", replaced(u8(0, 2, 3, 1), u8(0, 2, 3, 4))),
        "attributes-left-over": sample_with(b"Attributes", lambda content: content + moxfile.NO_ATTRIBUTES),
        "bool-of-2": sample_with(b"Light Data", lambda content: with_bytes(content, 41 + 4 + 15 + 4, u8(2))),
        "position-of-a-node": sample_with(b"Mox Tree", replaced(u64(41), u64(42))),
        "parent-after-its-child": sample_with(b"Mox Tree", lambda content: with_bytes(content, 4 + 4, u32(2))),
        "a-tree-of-no-nodes": moxfile.compressed_file({b"Mox Tree": u32(0), b"Global Information": GLOBAL}),
        "a-count-of-all-nodes": sample_with(b"Mox Tree", lambda content: u32(0xFFFFFFFF) + content[4:]),
        "no-global-information": moxfile.compressed_file(
            {name: content for name, content in moxfile.sample().items() if name != b"Global Information"}),
        "no-tree": moxfile.compressed_file(
            {name: content for name, content in moxfile.sample().items() if name != b"Mox Tree"}),
        "saved-by-nobody": plain_root(b"N", b"Node", b"0.1", u32(0, 0)),
        "result-attributes": plain_root(b"N", b"Node", b"0.1", GLOBAL[:-4] + u32(1) + bytes(32)),
    }


def plain_root(name, kind, version, information=GLOBAL):
    tree = u32(1) + moxfile.node((1, 0, 0, 0, 0, 0), name, kind, version, 0)
    return moxfile.compressed_file({b"Mox Tree": tree, b"Global Information": information})


def low():
    """Files in which blocks lie too low."""
    even = arrays([150] * 105, restarts=[19])
    under_the_first_table, end_of_the_first_table = last_block_under_the_first_table()
    return {
        "low-blocks": even,
        "low-blocks-over-earlier-ones": arrays([1500] * 30, restarts=[19]),
        "low-blocks-of-different-lengths": arrays([100 + 37 * i % 111 for i in range(150)], restarts=[19]),
        "low-blocks-of-one-length": arrays([40] * 210, restarts=[19]),
        "low-table": arrays([150] * 300, restarts=[19]),
        "low-blocks-after-the-second-index-block": arrays([150] * 300, restarts=[219]),
        "low-blocks-twice": arrays([150] * 219 + [300] * 81, restarts=[19, 219]),
        "low-tree-under-a-table": arrays([10] * 25, restarts=[19]),
        "low-table-under-a-table": arrays([150] * 440, restarts=[19, 219, 419]),
        "low-last-block-under-the-first-table": under_the_first_table,
        "low-last-block-past-the-end": under_the_first_table[:end_of_the_first_table],
        "low-blocks-cut": even[:-1],
        "sound-cut-to-the-size-of-low-blocks": arrays([150] * 105)[:len(even)],
    }


def last_block_under_the_first_table():
    """A file whose last block begins under the first of two tables and ends after it, and where that table ends.

    The streams of the model come first, so that nothing covers them. 15 blocks of 8 KB follow under the head index, 199
    short ones after a restart, and two after the second table, which ends just before the first one begins.
    """
    lengths = [2600] * 15 + [80] * 199 + [2000, 9000]
    starts = [4 * sum(lengths[:i]) for i in range(len(lengths))]
    model = geometry([array(b"T%d" % i, length, starts[i]) for i, length in enumerate(lengths)], [])
    numbers = [heavy(planes(numbers_of(i, length))) for i, length in enumerate(lengths)]
    numbers[-1] = (*numbers[-1][:2], 0x01)
    stored = [len(block[1]) for block in model + numbers]
    first_table = 2800 + sum(stored[:19])
    after_second_table = 27804 + sum(stored[19:19 + 199]) + 27804
    under_table = after_second_table + stored[-2]
    assert after_second_table + 4 <= first_table < under_table < first_table + 27804 - 4 < under_table + stored[-1] - 4
    return moxfile.chained_file(model + numbers, [19]), first_table + 27804


def broken():
    """Files broken in the ways that disks and transfers break them."""
    sample = moxfile.compressed_file(moxfile.sample())
    content = moxfile.sample()[b"Heavy Data"]

    def with_heavy(stored, flags=0x01):
        others = [block for block in streams(moxfile.sample()) if block[0] != b"Heavy Data"]
        return moxfile.file([(b"Heavy Data", stored, flags), *others])

    stored = zlib.compress(content)

    def with_second_block(name, content, second):
        """The sample with two blocks of a name. The checksum of the second is wrong."""
        blocks = [block for block in streams({**moxfile.sample(), name: content}) if block[0] != name]
        wrong = compressed(second)
        return moxfile.file([*blocks, (name, compressed(content), 0x01), (name, wrong[:-1] + bytes([wrong[-1] ^ 1]), 0x01)])

    # The second material has fields of a later version, which stand in the second block.
    materials = [moxfile.material(b"0.4", moxfile.COLOURS, moxfile.f32(0.75, 0.5) + u8(1), unknown)
                 for unknown in (b"", bytes(8))]
    return {
        "nothing": b"",
        "signature": b"\x09" + sample[1:],
        "version": with_bytes(sample, 8, b"1.4\0"),
        "never-closed": with_bytes(sample, 12, bytes(2788)),
        "header-alone": sample[:12],
        "head-length": with_bytes(sample, 12, u32(2785)),
        "record-count": with_bytes(sample, 16, u32(21)),
        "name-length": with_bytes(sample, 20 + 1, u32(127)),
        "cut-in-the-last-block": sample[:-1],
        "cut-after-the-index": sample[:2800],
        "checksum": with_heavy(u32(len(content)) + stored[:-1] + bytes([stored[-1] ^ 1])),
        "content-shorter-than-stated": with_heavy(u32(len(content) + 1) + stored),
        "content-longer-than-stated": with_heavy(u32(len(content) - 1) + stored),
        "content-of-four-gibibytes": with_heavy(u32(0xFFFFFFFF) + stored),
        "bytes-after-the-stream": with_heavy(u32(len(content)) + stored + b"x"),
        "no-content-length": with_heavy(b"\x20\0\0"),
        "checksum-of-the-tree": with_bytes(sample, tree_end(sample) - 1, bytes([sample[tree_end(sample) - 1] ^ 1])),
        "checksum-of-an-empty-block": with_second_block(b"Light Data", moxfile.sample()[b"Light Data"], b""),
        "checksum-of-unknown-fields": with_second_block(b"Resources", b"".join(materials)[:-8], bytes(8)),
    }


def tree_end(sample):
    """Where the second block ends."""
    lengths = [struct.unpack_from("<I", sample, 20 + 139 * i + 133)[0] for i in range(2)]
    return 2800 + sum(lengths)


def main(arguments):
    if len(arguments) != 1:
        print("usage: make.py FOLDER", file=sys.stderr)
        return 2
    folder = Path(arguments[0])
    folder.mkdir(parents=True, exist_ok=True)
    for name, data in make_files().items():
        (folder / f"{name}.mox").write_bytes(data)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
