"""Makes files byte by byte, including damaged ones and ones that no writer makes. Shares nothing with the reader."""

import struct
import zlib

SIGNATURE = bytes([0x89, 0x54, 0x4E, 0x46, 0x0D, 0x0A, 0x1A, 0x0A])


def u8(*values):
    return struct.pack(f"<{len(values)}B", *values)


def u32(*values):
    return struct.pack(f"<{len(values)}I", *values)


def u64(value):
    return struct.pack("<Q", value)


def f32(*values):
    return struct.pack(f"<{len(values)}f", *values)


def text(data):
    return u32(len(data)) + data


def texts(*items):
    return u32(len(items)) + b"".join(map(text, items))


def counted(code, *values):
    """A count, then that many numbers."""
    return struct.pack(f"<I{len(values)}{code}", len(values), *values)


def compressed(content):
    return u32(len(content)) + zlib.compress(content, 6)


def record(number, name, length, flags):
    return u8(number % 256) + u32(128) + name.ljust(128, b"\0") + u32(length) + u8(flags, 0)


def empty_record(number):
    return record(number, b"\x0bEmpty Block ", 0, 0)


def file(blocks):
    """A file of up to 20 blocks, each a name, the bytes in the file, and the flags."""
    records = [record(i + 1, name, len(stored), flags) for i, (name, stored, flags) in enumerate(blocks)]
    records += [empty_record(i + 1) for i in range(len(blocks), 20)]
    head = SIGNATURE + b"1.3\0" + u32(2784, 20) + b"".join(records)
    return head + b"".join(stored for _, stored, _ in blocks)


INDEX_BLOCK = b"\x0bIndex Block "
TABLE_SIZE = 4 + 200 * 139


def with_index_blocks(blocks):
    """Puts an Index Block at id 19, 219 and so on, if a block follows; its bytes are not filled in."""
    result = []
    for block in blocks:
        if len(result) >= 19 and (len(result) - 19) % 200 == 0:
            result.append((INDEX_BLOCK, bytes(TABLE_SIZE), 0x20))
        result.append(block)
    return result


def table(blocks, first, count):
    """A table of `count` records from the id `first` on."""
    records = [record(i + 1, blocks[i][0], len(blocks[i][1]), blocks[i][2]) if i < len(blocks) else empty_record(i + 1)
               for i in range(first, first + count)]
    return u32(count) + b"".join(records)


def chained_file(blocks, restarts=()):
    """A file of any number of blocks, each a name, the bytes in the file, and the flags.

    restarts: the ids of Index Blocks that the writer takes to lie at 0 when it places the blocks after them. It writes
    all blocks in the order of their ids, then the tables.
    """
    blocks = with_index_blocks(blocks)
    data = bytearray(SIGNATURE + b"1.3\0" + u32(2784) + table(blocks, 0, 20))
    place, tables = len(data), []
    for i, (name, stored, _) in enumerate(blocks):
        if name == INDEX_BLOCK:
            tables.append((i, place))
        else:
            write_at(data, place, stored)
        place = (0 if i in restarts else place) + len(stored)
    for i, at in tables:
        write_at(data, at, table(blocks, i + 1, 200))
    return bytes(data)


def write_at(data, place, part):
    data.extend(bytes(max(0, place + len(part) - len(data))))
    data[place:place + len(part)] = part


def compressed_file(streams):
    """A file of one compressed block for each stream; streams are contents by name."""
    return file([(name, compressed(content), 0x01) for name, content in streams.items()])


def plain_file(streams):
    """The same without compression, so that damage reaches the readers of records."""
    return file([(name, content, 0x00) for name, content in streams.items()])


def node(ids, name, kind, version, position):
    """A record of "Mox Tree". ids: own, parent, previous, next, first child, last child."""
    return u32(*ids) + text(name) + text(kind) + text(version) + u64(position)


NO_ATTRIBUTES = u32(0, 0, 0, 0, 0, 0)


def dataset(key, type_word, size, width, position, vibration=0):
    return (text(key) + u32(type_word) + u8(0) + u32(size) + u8(width) + u8(0, 0) + f32(0, 0) + u8(0)
            + u64(position) + u8(vibration))


def link(key, type_word, node_id, index):
    return text(key) + u32(type_word) + u8(1) + u32(node_id, index) + u8(0)


def material(version, *fields):
    body = text(version) + b"".join(fields)
    return u32(4 + len(body)) + body


COLOURS = f32(0.8, 0.7, 0.6, 1, 0.1, 0.2, 0.3, 1, 0, 0, 0, 5, 0.16, 0.15, 0.14, 0.2)


def modifier(*fields):
    body = text(b"0.1") + b"".join(map(text, fields))
    return u32(4 + len(body)) + body


SAMPLE_LINKS = link(b"Again", 0x0500000C, 3, 3) + link(b"Once more", 0x0500000C, 3, 1)


def sample(links=SAMPLE_LINKS):
    """The streams of a model with every type of node, both kinds of numbers, links and old records.

    links: the third and fourth dataset of node 3.
    """
    heavy_numbers = (bytes([0, 0, 0, 0, 0x80, 0x00, 0x3F, 0x40])  # 1.0 and 2.0 in planes: the first column
                     + bytes([0, 0, 0, 0, 0x40, 0x80, 0x40, 0x40])  # 3.0 and 4.0: the second
                     + bytes([0, 0, 0, 0, 0xA0, 0xC0, 0x40, 0x40]))  # 5.0 and 6.0: the third
    heavy_ids = bytes([0x04, 0x08, 0x03, 0x07, 0x02, 0x06, 0x01, 0x05])  # 0x01020304 and 0x05060708
    heavy_sets = (counted("I", 0, 3, 3, 5) + text(b"topfe") + counted("I", 0, 2, 2, 3)
                  + counted("I", 7, 8, 9) + counted("I", 1, 2, 3))
    group = f32(1, 2, 3, 0, 0, 1, 0.5, 1, 1, 2) + u8(1)
    geometry = (u32(4) + dataset(b"Coordinates", 0x01000001, 24, 3, 0)
                + dataset(b"Ids\x1eStep 1", 0x0500000C, 8, 1, 24, 1) + links)
    old_geometry = u32(0)
    sets = u32(16, 3) + u64(32) + u32(len(heavy_sets))
    tree = u32(6) + b"".join([
        node((1, 0, 0, 0, 2, 6), b"root", b"Group", b"0.4", 0),
        node((2, 1, 0, 4, 3, 3), b"part", b"Shape", b"0.2", 41),
        node((3, 2, 0, 0, 0, 0), b"part", b"Geometry", b"0.7", 41),
        node((4, 1, 2, 6, 5, 5), b"old", b"Shape", b"0.2", 41 + len(geometry)),
        node((5, 4, 0, 0, 0, 0), b"\xff", b"Geometry", b"0.7", 41 + len(geometry)),
        node((6, 1, 4, 0, 0, 0), b"sets", b"NodeSets", b"0.1", 41 + len(geometry) + 4)])
    attributes = (texts(b"count", b"name", b"pi", b"ratio") + counted("B", 0, 2, 3, 1) + counted("I", 7)
                  + counted("f", 0.1) + counted("d", 3.25) + texts(b"M\xc3\xbcller"))
    return {
        b"Heavy Data": heavy_numbers + heavy_ids + heavy_sets,
        b"Mox Tree": tree,
        b"Light Data": group + geometry + old_geometry + sets,
        b"Attributes": attributes + 4 * NO_ATTRIBUTES,
        b"Resources": (material(b"0.3", COLOURS, f32(0.25, 0.5), u8(1))
                       + material(b"0.1", COLOURS, f32(0.75))),
        b"Global Information": u32(1) + modifier(b"app", b"2.0", b"1.3", b"today", b"", b"", b"") + u32(0),
    }
