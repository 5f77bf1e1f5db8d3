#!/usr/bin/env python3
"""Reads mox files with nothing but Python's standard library. The format is described in docs/format/.

As a module:

    import moxreader

    with moxreader.File("model.mox") as file:
        model = moxreader.Model(file)
        for node in model.nodes:
            if isinstance(node.content, moxreader.Geometry):
                for dataset in node.content.datasets:
                    print(dataset.name, dataset.step, model.numbers(dataset))

As a script it prints a model as JSON, in the form of docs/format/dump.md:

    python3 moxreader.py [--numbers] [--no-date] [--storage] FILE

Reading any bytes ends in a value or in a MoxError. A length or a count is believed only as far as the file can justify
it, and memory holds only the tree and the block in use. Asking for numbers that are lost raises MoxError; all others
can be read. Texts are UTF-8; bytes that are not are kept as surrogates (PEP 383), so that
text.encode("utf-8", "surrogateescape") returns what the file has.
"""

import argparse
import array
import bisect
import decimal
import functools
import io
import json
import math
import os
import struct
import sys
import zlib
from dataclasses import dataclass, field
from typing import Any, Callable, Dict, Iterator, List, NamedTuple, Optional, Set, Tuple

SIGNATURE = b"\x89TNF\r\n\x1a\n"
VERSION = b"1.3\0"
HEAD_LENGTH_AT = 12
HEAD_TABLE_AT = 16
NAME_SIZE = 128
RECORD = struct.Struct(f"<BI{NAME_SIZE}sIBB")
HEAD_RECORDS = 20
INDEX_BLOCK_RECORDS = 200
INDEX_BLOCK = b"\x0bIndex Block "
EMPTY_BLOCK = b"\x0bEmpty Block "
COMPRESSED = 0x01
STREAMED = 0x21
LENGTH_WORD = 4
MOST_CONTENT = 0xFFFFFFFF
MOST_BYTES_OF_ONE = 1032  # No byte of a zlib stream yields more bytes of content.

HEAVY_DATA = "Heavy Data"
MOST_LIMITS = 100  # How many block sizes are tried to find where blocks of unknown length end.

STEP_SEPARATOR = "\x1e"
UNTAGGED = 0xFFFFFFFF
FLOAT_TAG = 1
UNSIGNED_TAG = 5
SMALLEST_NORMAL = 2.0 ** -126  # Of single precision.
ARRAY_CODES = {FLOAT_TAG: "f", UNSIGNED_TAG: "I"}

VARIABLE_TYPES = {
    1: "Coordinates", 4: "Connectivity0", 5: "Connectivity1", 6: "Connectivity2", 9: "Polylength",
    12: "NodeScalar", 13: "NodeVector", 14: "NodeSixA", 15: "NodeSixB",
    16: "ElementScalar", 17: "ElementVector", 18: "ElementSixA", 19: "ElementSixB",
    20: "ThirdScalar", 21: "ThirdVector", 22: "ThirdSixA", 23: "ThirdSixB",
    24: "FourthScalarA", 25: "FourthScalarB", 26: "FourthVector", 27: "FourthSixA", 28: "FourthSixB",
}

ELEMENT_TYPES = {FLOAT_TAG: "float", UNSIGNED_TAG: "unsigned"}


class MoxError(Exception):
    """The file is damaged, was never finished, or has another format.

    code: what is wrong, one of the names in docs/format/dump.md; None for what makes the whole file unreadable.
    """

    def __init__(self, complaint: str, code: Optional[str] = None):
        super().__init__(complaint)
        self.code = code


def require(is_sound: bool, complaint: str, code: Optional[str] = None) -> None:
    if not is_sound:
        raise MoxError(complaint, code)


def table_size(records: int) -> int:
    return 4 + records * RECORD.size


def little_endian(code: str, data: bytes) -> array.array:
    """The numbers of an array of the given code ("B", "I", "f" or "d")."""
    numbers = array.array(code)
    numbers.frombytes(data)
    if sys.byteorder == "big":
        numbers.byteswap()
    return numbers


# --- The container: named blocks ------------------------------------------------------------------------------------


class Block(NamedTuple):
    """One record of the index, and where its block lies."""

    id: int
    number: int
    name: str
    length: int  # Bytes in the file.
    flags: int
    reserved: int
    position: int  # File offset.
    is_index_block: bool
    is_empty_entry: bool
    is_overwritten: bool = False  # A part of it was overwritten.
    has_length_word: bool = True  # Whether its content length can still be read.

    @property
    def is_compressed(self) -> bool:
        return bool(self.flags & COMPRESSED)

    @property
    def holds_data(self) -> bool:
        return not self.is_index_block and not self.is_empty_entry

    @property
    def end(self) -> int:
        return self.position + self.length

    def moved(self, shift: int) -> "Block":
        return self._replace(position=self.position - shift)

    def __str__(self) -> str:
        return f'block {self.id}, "{self.name}"'


@dataclass
class Table:
    """An index table of the chain. Its blocks lie `shift` bytes below the places that the lengths add up to."""

    position: int  # File offset.
    blocks: List[Block]  # At the places that the lengths add up to.
    shift: int
    other_shift: Optional[int] = None  # The shift if the writer took the Index Block of this table to lie at 0.


class Cover:
    """A set of byte ranges, joined where they touch."""

    def __init__(self):
        self._starts: List[int] = []
        self._ends: List[int] = []

    def add(self, start: int, end: int) -> None:
        if start >= end:
            return
        first = bisect.bisect_left(self._ends, start)
        last = bisect.bisect_right(self._starts, end)
        if first < last:
            start, end = min(start, self._starts[first]), max(end, self._ends[last - 1])
        self._starts[first:last], self._ends[first:last] = [start], [end]

    def touches(self, start: int, end: int) -> bool:
        index = bisect.bisect_right(self._ends, start)
        return start < end and index < len(self._starts) and self._starts[index] < end


class File:
    """An open file and its index. Opening reads the index; content is read on demand."""

    def __init__(self, source):
        """source: a path, or the bytes of a whole file."""
        self._stream = io.BytesIO(source) if isinstance(source, (bytes, bytearray)) else open(source, "rb")
        try:
            self.size = self._stream.seek(0, io.SEEK_END)
            self.version = self._read_front()
            self.blocks = self._read_index()
        except BaseException:
            self.close()
            raise

    def close(self) -> None:
        self._stream.close()

    def __enter__(self) -> "File":
        return self

    def __exit__(self, *_) -> None:
        self.close()

    def read_at(self, offset: int, size: int) -> bytes:
        require(offset + size <= self.size, f"the file ends before offset {offset + size}")
        self._stream.seek(offset)
        data = self._stream.read(size)
        require(len(data) == size, f"the file cannot be read at offset {offset}")
        return data

    def stream_names(self) -> List[str]:
        """The names that have blocks, in the order of their first block."""
        return list(dict.fromkeys(block.name for block in self.blocks if block.holds_data))

    def blocks_of(self, name: str) -> List[Block]:
        return [block for block in self.blocks if block.name == name and block.holds_data]

    def content_length(self, block: Block) -> int:
        """The length of a block's content as stated, provided that it can be true."""
        require(block.length > 0 or not block.is_compressed, f"{block} has lost its content", "ContentLost")
        require(block.end <= self.size, f"{block} reaches past the end of the file", "BlockBeyondFile")
        if not block.is_compressed:
            return block.length
        require(block.has_length_word, f"{block} was written over", "BlockOverwritten")
        is_long_enough = block.length >= LENGTH_WORD
        require(is_long_enough, f"{block} is too short for its content length", "ContentLengthMissing")
        (length,) = struct.unpack("<I", self.read_at(block.position, LENGTH_WORD))
        if block.is_overwritten:
            return length
        stored = block.length - LENGTH_WORD
        require(length <= stored * MOST_BYTES_OF_ONE, f"{block} states more content than its bytes can give",
                "ContentLengthImplausible")
        return length

    def read_block(self, block: Block) -> bytes:
        length = self.content_length(block)
        require(not block.is_overwritten, f"{block} was written over", "BlockOverwritten")
        if not block.is_compressed:
            return self.read_at(block.position, block.length)
        stored = self.read_at(block.position + LENGTH_WORD, block.length - LENGTH_WORD)
        inflater = zlib.decompressobj()
        try:
            content = inflater.decompress(stored, length + 1)
        except zlib.error as error:
            raise MoxError(f"{block}: {error}", zlib_damage(stored, length)) from None
        is_whole = inflater.eof and len(content) == length and not inflater.unused_data
        require(is_whole, f"{block} does not inflate to its stated length",
                end_damage(len(content) - length, inflater.eof))
        return content

    def _read_front(self) -> str:
        require(self.read_at(0, len(SIGNATURE)) == SIGNATURE, "the signature is that of another format")
        version = self.read_at(len(SIGNATURE), len(VERSION))
        require(version == VERSION, f"the version {version!r} is not known")
        (length,) = struct.unpack("<I", self.read_at(HEAD_LENGTH_AT, 4))
        require(length != 0, "the file was never closed by its writer")
        require(length == table_size(HEAD_RECORDS), f"the head index cannot have a length of {length} bytes")
        return version.rstrip(b"\0").decode()

    def _read_index(self) -> List[Block]:
        first_block = HEAD_TABLE_AT + table_size(HEAD_RECORDS)
        tables = [Table(HEAD_TABLE_AT, self._read_table(HEAD_TABLE_AT, HEAD_RECORDS, 0, first_block), 0)]
        while True:
            table = tables[-1]
            index_blocks = [block for block in table.blocks if block.is_index_block]
            if not index_blocks:
                break
            block = index_blocks[0]
            is_sound = block is table.blocks[-1] and block.length == table_size(INDEX_BLOCK_RECORDS)
            require(is_sound, f"block {block.id} cannot be an Index Block")
            self._settle_by_table(table, block)
            position = block.position - table.shift
            blocks = self._read_table(position, INDEX_BLOCK_RECORDS, block.id + 1, block.end)
            tables.append(Table(position, blocks, table.shift, other_shift(table, blocks)))
        self._settle_by_size(tables)
        self.is_displaced = any(table.shift for table in tables)
        return self._marked(tables) if self.is_displaced else [block for table in tables for block in table.blocks]

    def _read_table(self, offset: int, records: int, first_id: int, end: int) -> List[Block]:
        """The blocks of a table, one after another from a place on."""
        data = self.read_at(offset, table_size(records))
        (count,) = struct.unpack_from("<I", data)
        require(count == records, f"the index table at offset {offset} has {count} records instead of {records}")
        blocks: List[Block] = []
        for number, name_length, name, length, flags, reserved in RECORD.iter_unpack(data[4:]):
            block_id = first_id + len(blocks)
            require(name_length == NAME_SIZE, f"the name of block {block_id} has a length of {name_length}")
            blocks.append(Block(block_id, number, to_text(name.split(b"\0")[0]), length, flags, reserved, end,
                                name.startswith(INDEX_BLOCK), name.startswith(EMPTY_BLOCK)))
            end += length
        return blocks

    def _settle_by_table(self, table: Table, block: Block) -> None:
        """Finds where the blocks of a table lie, if another table follows, from where that one lies."""
        if table.other_shift is None or self._is_table(block.position - table.shift, block.id + 1):
            return
        if self._is_table(block.position - table.other_shift, block.id + 1):
            table.shift = table.other_shift

    def _is_table(self, offset: int, first_id: int) -> bool:
        size = table_size(INDEX_BLOCK_RECORDS)
        if offset + size > self.size:
            return False
        data = self.read_at(offset, size)
        records = list(RECORD.iter_unpack(data[4:]))
        return data[:4] == struct.pack("<I", INDEX_BLOCK_RECORDS) and all(
            record[0] == (first_id + i + 1) % 256 and record[1] == NAME_SIZE and record[5] == 0
            for i, record in enumerate(records))

    def _settle_by_size(self, tables: List[Table]) -> None:
        """Finds where the blocks of the last table lie from where the file ends and what inflates."""
        table = tables[-1]
        if table.other_shift is None:
            return
        ends_of_tables = [each.position + table_size(INDEX_BLOCK_RECORDS) for each in tables[1:]]

        def fits(shift: int) -> bool:
            return self.size == max(table.blocks[-1].end - shift, *ends_of_tables)

        is_as_before = fits(table.shift) and (table.shift == 0 or self._inflates(tables, table.shift))
        if not is_as_before and fits(table.other_shift) and self._inflates(tables, table.other_shift):
            table.shift = table.other_shift

    def _inflates(self, tables: List[Table], shift: int) -> bool:
        """Whether the last table's blocks that are not Heavy Data and that no table covers are intact."""
        cover = Cover()
        for table in tables[1:]:
            cover.add(table.position, table.position + table_size(INDEX_BLOCK_RECORDS))
        blocks = [block.moved(shift) for block in tables[-1].blocks
                  if block.holds_data and block.name != HEAVY_DATA and block.length > 0]
        whole = [block for block in blocks if not cover.touches(block.position, block.end)]
        return bool(whole) and all(self._is_whole(block) for block in whole)

    def _is_whole(self, block: Block) -> bool:
        try:
            self.read_block(block)
            return True
        except MoxError:
            return False

    @staticmethod
    def _marked(tables: List[Table]) -> List[Block]:
        """All blocks where they lie. Later blocks overwrite earlier ones, and the tables overwrite all."""
        cover = Cover()
        for table in tables[1:]:
            cover.add(table.position, table.position + table_size(INDEX_BLOCK_RECORDS))
        parts = []
        for table in reversed(tables):
            placed = [block.moved(table.shift) for block in table.blocks]
            parts.append([marked(block, cover) for block in placed])
            cover.add(placed[0].position, placed[-1].end)
        return [block for part in reversed(parts) for block in part]


def other_shift(before: Table, blocks: List[Block]) -> Optional[int]:
    """See Table. Only an Index Block with datasets on both sides can have been taken to lie at 0."""
    last, index_block = before.blocks[-2:]
    is_possible = last.name == HEAVY_DATA and last.flags == STREAMED and blocks[0].name == HEAVY_DATA
    return index_block.position if is_possible else None


def marked(block: Block, cover: Cover) -> Block:
    if not block.holds_data or not cover.touches(block.position, block.end):
        return block
    has_word = block.length >= LENGTH_WORD and not cover.touches(block.position, block.position + LENGTH_WORD)
    return block._replace(is_overwritten=True, has_length_word=has_word)


def end_damage(surplus: int, has_ended: bool) -> str:
    """What is wrong with a block of which zlib does not complain."""
    if surplus > 0:
        return "ContentTooLong"
    if not has_ended:
        return "ZlibIncomplete"
    return "ContentTooShort" if surplus < 0 else "TrailingBytes"


def zlib_damage(stored: bytes, length: int) -> str:
    """What is wrong with a block of which zlib complains: the complaint, or what comes before it."""
    inflater, size = zlib.decompressobj(), 0
    try:
        for i in range(len(stored)):
            size += len(inflater.decompress(stored[i:i + 1]))
            if size > length:
                return "ContentTooLong"
    except zlib.error as error:
        return "ChecksumMismatch" if "incorrect data check" in str(error) else "ZlibDamaged"
    raise AssertionError("zlib complains only once")


def to_text(data: bytes) -> str:
    return data.decode("utf-8", "surrogateescape")


NOTHING_LOADED = (0, b"")
NUMBERS = {code: struct.Struct("<" + code) for code in "BIQf"}


class Stream:
    """A cursor over all blocks of one name, decompressed and joined. Holds one block's content.

    The stream ends before the first block whose length is not known; reading on raises why.
    """

    def __init__(self, file: File, name: str, lengths: Optional[Dict[int, int]] = None):
        """lengths: content lengths, by block id, that the blocks themselves do not state."""
        self.name = name
        self._file = file
        self._blocks = file.blocks_of(name)
        self._starts = [0]
        self.damage: Optional[MoxError] = None  # Why the stream ends before its last block.
        for block in self._blocks:
            try:
                length = lengths[block.id] if lengths and block.id in lengths else file.content_length(block)
            except MoxError as damage:
                self.damage = damage
                break
            self._starts.append(self._starts[-1] + length)
        self.size = self._starts[-1]
        self.position = 0
        self._sound: Set[int] = set()  # The ids of the blocks that have been read.
        self._loaded = NOTHING_LOADED  # The place in the stream, and the content, of the block in use.

    def __str__(self) -> str:
        return f'"{self.name}" at {self.position}'

    @property
    def remaining(self) -> int:
        return self.size - self.position

    def seek(self, position: int) -> None:
        if position > self.size:
            self._fail(f'"{self.name}" ends before position {position}', "EndOfStream")
        self.position = position

    def require_end(self) -> None:
        """Also that the blocks of which no byte was asked for are sound: those that are empty or were passed over."""
        require(self.remaining == 0, f"{self}: {self.remaining} bytes too many")
        if self.damage is not None:
            raise self.damage
        for block in self._blocks:
            if block.id not in self._sound:
                self._file.read_block(block)

    def read(self, size: int) -> bytes:
        if size > self.remaining:
            self._fail(f"{self}: the stream ends inside a value of {size} bytes", "EndOfStream")
        start, content = self._loaded
        offset = self.position - start
        if 0 <= offset and offset + size <= len(content):
            self.position += size
            return content[offset:offset + size]
        parts = []
        while size > 0:
            content, offset = self._content_here()
            parts.append(content[offset:offset + size])
            size -= len(parts[-1])
            self.position += len(parts[-1])
        return b"".join(parts)

    def _fail(self, complaint: str, code: str) -> None:
        """Raises the damage that cut the stream short, if any, rather than the complaint."""
        raise self.damage or MoxError(complaint, code)

    def _content_here(self) -> Tuple[bytes, int]:
        start, content = self._loaded
        if not start <= self.position < start + len(content):
            index = bisect.bisect_right(self._starts, self.position) - 1
            start, content = self._loaded = NOTHING_LOADED  # Frees the old content before the new one is read.
            start, content = self._starts[index], self._file.read_block(self._blocks[index])
            self._sound.add(self._blocks[index].id)
            self._loaded = (start, content)
        return content, self.position - start

    def number(self, code: str):
        """One number, by its code in Python's struct: "B", "I", "Q" or "f"."""
        layout = NUMBERS[code]
        return layout.unpack(self.read(layout.size))[0]

    def truth(self) -> bool:
        value = self.number("B")
        require(value <= 1, f"{self}: a truth value of {value}")
        return value == 1

    def text(self) -> str:
        return to_text(self.read(self.number("I")))

    def count(self, smallest: int) -> int:
        """A count of things of at least a given size each."""
        count = self.number("I")
        if count * smallest > self.remaining:
            self._fail(f"{self}: a count of {count} is more than the stream can hold", "BadCount")
        return count

    def floats(self, count: int) -> array.array:
        return little_endian("f", self.read(4 * count))

    def numbers(self, code: str) -> array.array:
        """A count, then that many numbers."""
        size = array.array(code).itemsize
        return little_endian(code, self.read(self.count(size) * size))

    def texts(self) -> List[str]:
        return [self.text() for _ in range(self.count(4))]


# --- The model: what the streams hold -------------------------------------------------------------------------------


@dataclass
class Group:
    translation: array.array
    rotation: array.array  # Axis, then angle.
    scale: array.array
    kind: int
    attributes: Dict[str, Any] = field(default_factory=dict)


@dataclass
class Material:
    version: str
    diffuse: array.array  # Red, green, blue, alpha, like all colours.
    specular: array.array
    emissive: array.array  # The fourth value means nothing.
    ambient: array.array
    transparency: float
    shininess: float
    flag: int


@dataclass
class Shape:
    material: Optional[Material] = None


@dataclass
class Dataset:
    node_id: int
    index: int  # Place in the geometry's list.
    key: str
    variable_type: int
    element_tag: int
    is_link: bool
    link_node_id: int = 0
    link_index: int = 0
    size: int = 0  # Bytes of the numbers.
    width: int = 0
    reserved: tuple = ()  # Two truth values, two floats, a truth value; nothing sets them.
    position: int = 0  # In "Heavy Data".
    vibration: bool = False
    attributes: Dict[str, Any] = field(default_factory=dict)

    @property
    def name(self) -> str:
        return self.key.partition(STEP_SEPARATOR)[0]

    @property
    def step(self) -> str:
        return self.key.partition(STEP_SEPARATOR)[2]

    def __str__(self) -> str:
        return f"dataset {self.index} of node {self.node_id}"


@dataclass
class Geometry:
    datasets: List[Dataset]


@dataclass
class NodeSets:
    count: int
    position: int  # In "Heavy Data".
    size: int


@dataclass
class Node:
    id: int
    parent: int
    previous: int
    next: int
    first_child: int
    last_child: int
    name: str
    type: str  # "" for a root that was never set.
    version: str
    light_position: int
    content: Any = None  # Group, Shape, Geometry, NodeSets, or None.
    children: List[int] = field(default_factory=list)


@dataclass
class Modifier:
    """Who saved the file."""

    version: str
    source_name: str
    source_version: str
    format_version: str
    date: str
    computer: str
    user: str
    comment: str


class Integer(int):
    """An integer attribute: 32 bits, which a reader can take as unsigned (as here) or as signed."""


class Float(float):
    """A single precision attribute; one of double precision is a plain float."""


def read_attributes(stream: Stream) -> Dict[str, Any]:
    """One attribute record. Values are Integer, Float, str or float."""
    start = str(stream)
    keys, kinds = stream.texts(), stream.numbers("B")
    integers, floats, doubles, texts = stream.numbers("I"), stream.numbers("f"), stream.numbers("d"), stream.texts()
    require(len(keys) == len(kinds), f"{start}: {len(keys)} keys have {len(kinds)} kinds")
    values = [map(Integer, integers), map(Float, floats), iter(texts), iter(doubles)]
    counts = [len(integers), len(floats), len(texts), len(doubles)]
    require([kinds.count(kind) for kind in range(4)] == counts and max(kinds, default=0) < 4,
            f"{start}: the kinds of the attributes do not match their values")
    attributes = {key: next(values[kind]) for key, kind in zip(keys, kinds)}
    require(len(attributes) == len(keys), f"{start}: two attributes of one key")
    return attributes


class VersionedRecord:
    """A size, a version, and fields, of which a reader may know only some."""

    def __init__(self, stream: Stream):
        self._stream = stream
        self._start = str(stream)
        begin = stream.position
        self._end = begin + stream.number("I")
        self.version = stream.text()

    def __enter__(self) -> "VersionedRecord":
        return self

    def __exit__(self, kind, *_) -> None:
        if kind is None:
            require(self._stream.position <= self._end, f"{self._start}: the record is too small for its fields")
            self._stream.seek(self._end)


def read_material(stream: Stream) -> Material:
    with VersionedRecord(stream) as record:
        has_shininess = record.version != "0.1"
        has_flag = has_shininess and record.version != "0.2"
        colours = [stream.floats(4) for _ in range(4)]
        transparency = stream.number("f")
        shininess = stream.number("f") if has_shininess else 0.0
        flag = stream.number("B") if has_flag else 0
        return Material(record.version, *colours, transparency, shininess, flag)


def read_modifier(stream: Stream) -> Modifier:
    with VersionedRecord(stream) as record:
        return Modifier(record.version, *(stream.text() for _ in range(7)))


def read_dataset(light: Stream, node_id: int, index: int) -> Dataset:
    key, word, is_link = light.text(), light.number("I"), light.truth()
    variable_type, tag = (word, 0) if word == UNTAGGED else (word & 0xFFFFFF, word >> 24)
    dataset = Dataset(node_id, index, key, variable_type, tag, is_link)
    if is_link:
        dataset.link_node_id, dataset.link_index = light.number("I"), light.number("I")
    else:
        dataset.size, dataset.width = light.number("I"), light.number("B")
        dataset.reserved = (light.truth(), light.truth(), light.number("f"), light.number("f"), light.truth())
        dataset.position = light.number("Q")
    dataset.vibration = light.truth()
    return dataset


def read_group(light: Stream) -> Group:
    return Group(light.floats(3), light.floats(4), light.floats(3), light.number("B"))


def read_geometry(light: Stream, node_id: int) -> Geometry:
    smallest = 18  # An empty key, a type word and a link.
    return Geometry([read_dataset(light, node_id, index) for index in range(light.count(smallest))])


def read_node_sets(light: Stream) -> NodeSets:
    fields_size = 16
    size = light.number("I")
    require(size >= fields_size, f"{light}: the record is too small for its fields")
    sets = NodeSets(light.number("I"), light.number("Q"), light.number("I"))
    light.read(size - fields_size)
    return sets


def read_node(tree: Stream) -> Node:
    ids = [tree.number("I") for _ in range(6)]
    return Node(*ids, tree.text(), tree.text(), tree.text(), tree.number("Q"))


class Model:
    """The tree of a file and everything that belongs to it. The file must stay open while numbers are read."""

    def __init__(self, file: File):
        self.nodes = self._read_tree(required_stream(file, "Mox Tree"))
        self._link_family()
        self._read_light_data(Stream(file, "Light Data"))
        self._read_attributes(Stream(file, "Attributes"))
        self._read_materials(Stream(file, "Resources"))
        self._read_global_information(required_stream(file, "Global Information"))
        self._heavy = Stream(file, HEAVY_DATA, lost_lengths(file, list(self.datasets())))
        self._holders: Dict[Tuple[int, int], Optional[Dataset]] = {}

    def node(self, node_id: int) -> Node:
        require(1 <= node_id <= len(self.nodes), f"there is no node {node_id}")
        return self.nodes[node_id - 1]

    def datasets(self):
        """All datasets of all geometries."""
        for node in self.nodes:
            if isinstance(node.content, Geometry):
                yield from node.content.datasets

    def holder(self, dataset: Dataset) -> Optional[Dataset]:
        """The dataset that holds the numbers; None if the links lead nowhere or in a ring."""
        walked = []
        current: Optional[Dataset] = dataset
        while current is not None and current.is_link:
            key = (current.node_id, current.index)
            if key in self._holders:
                current = self._holders[key]
                break
            self._holders[key] = None  # A walk that comes back here finds this.
            walked.append(key)
            current = self._target(current)
        self._holders.update((key, current) for key in walked)
        return current

    def required_holder(self, dataset: Dataset) -> Dataset:
        """Like holder(), but raises MoxError if there is none."""
        holder = self.holder(dataset)
        if holder is None:
            raise MoxError(f"{dataset} is a link without an end", self._link_damage(dataset))
        return holder

    def _link_damage(self, link: Dataset) -> str:
        passed = set()
        current: Optional[Dataset] = link
        while current is not None and (current.node_id, current.index) not in passed:
            passed.add((current.node_id, current.index))
            current = self._target(current)
        return "BadLinkTarget" if current is None else "LinkCycle"

    def numbers(self, dataset: Dataset) -> array.array:
        """The numbers row by row, one row for each item, holder(dataset).width numbers in each."""
        holder, payload = self.shuffled_numbers(dataset)
        return unshuffle(payload, holder.width, ARRAY_CODES[holder.element_tag])

    def shuffled_numbers(self, dataset: Dataset) -> Tuple[Dataset, bytes]:
        """The dataset that holds the numbers, and their bytes as the file has them: column by column, in planes."""
        holder = self.required_holder(dataset)
        require(holder.element_tag in ARRAY_CODES, f"{holder} has numbers of an unknown type", "WrongElementType")
        row = 4 * holder.width
        is_whole = holder.size % row == 0 if row else holder.size == 0
        require(is_whole, f"{holder} has no whole number of items", "BadDatasetSize")
        self._heavy.seek(holder.position)
        return holder, self._heavy.read(holder.size)

    def node_sets(self, node: Node) -> List[Tuple[str, List[Tuple[int, int]]]]:
        """The names and the members of a NodeSets node."""
        heavy, sets = self._heavy, node.content
        heavy.seek(sets.position)
        names_at, names = heavy.numbers("I"), heavy.read(heavy.number("I"))
        members_at, firsts, seconds = heavy.numbers("I"), heavy.numbers("I"), heavy.numbers("I")
        is_sound = (heavy.position - sets.position == sets.size and len(firsts) == len(seconds)
                    and are_offsets(names_at, sets.count, len(names))
                    and are_offsets(members_at, sets.count, len(firsts)))
        require(is_sound, f"the node sets of node {node.id} contradict themselves", "BadNodeSets")
        members = list(zip(firsts, seconds))
        return [(to_text(names[names_at[i]:names_at[i + 1]]), members[members_at[i]:members_at[i + 1]])
                for i in range(sets.count)]

    def _target(self, link: Dataset) -> Optional[Dataset]:
        if not 1 <= link.link_node_id <= len(self.nodes):
            return None
        content = self.nodes[link.link_node_id - 1].content
        if not isinstance(content, Geometry) or link.link_index >= len(content.datasets):
            return None
        return content.datasets[link.link_index]

    @staticmethod
    def _read_tree(tree: Stream) -> List[Node]:
        smallest = 44  # Six ids, three empty texts and a position.
        nodes = [read_node(tree) for _ in range(tree.count(smallest))]
        tree.require_end()
        require(len(nodes) > 0, "the tree has no node")
        for place, node in enumerate(nodes, 1):
            require(node.id == place, f"node {place} has the id {node.id}")
        return nodes

    def _link_family(self) -> None:
        """Builds the lists of children from the parents' ids, then checks the other links against them."""
        root = self.nodes[0]
        require(root.parent == root.previous == root.next == 0, "the root has a parent or a sibling")
        for node in self.nodes[1:]:
            require(1 <= node.parent < node.id, f"the parent of node {node.id} does not stand before it")
            self.nodes[node.parent - 1].children.append(node.id)
        for node in self.nodes:
            family = [0, *node.children, 0]
            is_sound = (node.first_child, node.last_child) == (family[1], family[-2])
            require(is_sound, f"the first or last child of node {node.id} is wrong")
            for before, child, after in zip(family, node.children, family[2:]):
                links = (self.nodes[child - 1].previous, self.nodes[child - 1].next)
                require(links == (before, after), f"the siblings of node {child} are wrong")

    def _read_light_data(self, light: Stream) -> None:
        for node in self.nodes:
            require(node.light_position == light.position, f"{light}: node {node.id} expects another position")
            node.content = self._read_content(node, light)
        light.require_end()

    @staticmethod
    def _read_content(node: Node, light: Stream) -> Any:
        kind = (node.type, node.version)
        if kind == ("Group", "0.4"):
            return read_group(light)
        if kind == ("Geometry", "0.7"):
            return read_geometry(light, node.id)
        if node.type == "Shape":
            return Shape()
        if node.type == "NodeSets":
            return read_node_sets(light)
        require(node.type in ("", "Node"), f'node {node.id} is a "{node.type}" of the unknown version "{node.version}"')
        return None

    def _read_attributes(self, stream: Stream) -> None:
        for node in self.nodes:
            if isinstance(node.content, Group):
                node.content.attributes = read_attributes(stream)
            elif isinstance(node.content, Geometry):
                for dataset in node.content.datasets:
                    dataset.attributes = read_attributes(stream)
        stream.require_end()

    def _read_materials(self, stream: Stream) -> None:
        for node in self.nodes:
            if isinstance(node.content, Shape):
                node.content.material = read_material(stream)
        stream.require_end()

    def _read_global_information(self, stream: Stream) -> None:
        smallest = 8  # A size and an empty version.
        self.modifiers = [read_modifier(stream) for _ in range(stream.count(smallest))]
        self.result_attribute_count = stream.number("I")
        if self.result_attribute_count == 0:  # What would follow any other count is not known.
            stream.require_end()


def lost_lengths(file: File, datasets: List[Dataset]) -> Dict[int, int]:
    """The content lengths of blocks of Heavy Data that have lost their own, by id; empty if they can't be determined.

    A writer puts one dataset after another into a block until it has a limit or more, then begins the next. The limit
    is not in the file: every limit that gives all known blocks their lengths is possible.
    """
    blocks = file.blocks_of(HEAVY_DATA)
    known: List[Optional[int]] = []
    for block in blocks:
        is_lost = block.is_compressed and (block.length == 0 or not block.has_length_word)
        if is_lost and block.length > 0 and block.end > file.size:
            return {}
        try:
            known.append(None if is_lost else file.content_length(block))
        except MoxError:
            return {}
    if None not in known:
        return {}
    sizes = [length for length in known[:-1] if length is not None]
    limit = min(sizes, default=1 << 64)
    arrays = sorted((dataset.position, dataset.size) for dataset in datasets if not dataset.is_link and dataset.size)
    solution: Optional[List[int]] = None
    for _ in range(MOST_LIMITS):
        if limit == 0:
            break
        lengths, limit = divide(arrays, known, limit)
        if lengths is not None and solution is not None and starts(lengths, known) != starts(solution, known):
            return {}
        solution = solution or lengths
    if solution is None or limit > 0:
        return {}
    return {block.id: length for block, length, own in zip(blocks, solution, known) if own is None}


def divide(arrays: List[Tuple[int, int]], known: List[Optional[int]], limit: int) -> Tuple[Optional[List[int]], int]:
    """Divides arrays, each a position and a size, among blocks as a writer with a given limit does.

    known: the lengths of the blocks, None for those to be found.
    Returns all lengths, or None if the limit does not fit, and the next lower limit that can give others, or 0.
    """
    lengths: List[int] = []
    end = place = lower = 0
    for index, length in enumerate(known):
        start = end
        while place < len(arrays) and end - start < (limit if length is None else length):
            position, size = arrays[place]
            if position != end or end - start >= limit:
                return None, lower
            if length is None:
                lower = max(lower, end - start)
            end += size
            place += 1
        is_last = index + 1 == len(known)
        is_enough = end - start >= limit or is_last and end > start
        if not (is_enough and end - start <= MOST_CONTENT if length is None else end - start == length):
            return None, lower
        lengths.append(end - start)
    return (lengths if place == len(arrays) else None), lower


def starts(lengths: List[int], known: List[Optional[int]]) -> List[int]:
    """Where the blocks of known length begin."""
    return [sum(lengths[:i]) for i, length in enumerate(known) if length is not None]


def required_stream(file: File, name: str) -> Stream:
    require(bool(file.blocks_of(name)), f'there is no block "{name}"')
    return Stream(file, name)


def are_offsets(offsets: array.array, count: int, size: int) -> bool:
    """Whether offsets divide a list of a given size into a given number of parts."""
    return (len(offsets) == count + 1 and offsets[0] == 0 and offsets[-1] == size
            and all(offsets[i] <= offsets[i + 1] for i in range(count)))


def unshuffle(payload: bytes, width: int, code: str) -> array.array:
    """Turns the byte planes of a dataset's payload back into rows of numbers."""
    row = 4 * width
    items = len(payload) // row if row else 0
    rows = bytearray(len(payload))
    for plane in range(row):  # A row's bytes in their order: component by component, lowest byte first.
        rows[plane::row] = payload[plane * items:(plane + 1) * items]
    return little_endian(code, bytes(rows))


# --- The dump: a model as JSON --------------------------------------------------------------------------------------


def shortest(value: float) -> float:
    """The double with the fewest digits that rounds to a value of single precision; of several, the nearest."""
    if value < 0:
        return -shortest(-value)
    if value < SMALLEST_NORMAL:
        return exact_shortest(value)
    near, far = value * 2 ** -25, value * 2 ** -24  # Half of the distance to the next float is between these.
    for form in ("%.5e", "%.6e", "%.7e"):
        rounded = float(form % value)
        error = abs(rounded - value)
        if error < near:
            return rounded
        if error <= far:
            mantissa, exponent = math.frexp(value)
            half = math.ldexp(0.5, exponent - 24)
            if mantissa == 0.5 or error == half:
                return exact_shortest(value)
            if error < half:
                return rounded
    return float("%.8e" % value)


def exact_shortest(value: float) -> float:
    """The same, slower, for any positive value."""
    mantissa, exponent = math.frexp(value)
    unit = max(exponent - 24, -149)
    half = math.ldexp(0.5, unit)
    if mantissa == 0.5 and unit > -149:
        return shortest_power(value, value - half / 2, value + half)
    for digits in range(1, 9):
        text = f"{value:.{digits - 1}e}"
        rounded = float(text)
        error = abs(rounded - value)
        if error < half or error == half and rounds_to(value, text, rounded):
            return rounded
    return float(f"{value:.8e}")


def rounds_to(value: float, text: str, limit: float) -> bool:
    """Whether a decimal, which as a double is a limit of those that round to a value, is one of those."""
    is_even = math.ldexp(value, 149 if value < SMALLEST_NORMAL else 24 - math.frexp(value)[1]) % 2 == 0
    exact = decimal.Decimal(text)
    return is_even if exact == decimal.Decimal(limit) else (exact > limit) == (value > limit)


def shortest_power(value: float, low: float, high: float) -> float:
    """The same for a power of two, below which floats are closer than above: the nearest decimal can be too low."""
    exact = decimal.Decimal(value)
    for digits in range(1, 9):
        last = decimal.Decimal(1).scaleb(exact.adjusted() - digits + 1)
        with decimal.localcontext() as context:
            context.prec = 200
            lower = exact // last * last
            fitting = [each for each in (lower, lower + last) if decimal.Decimal(low) <= each <= decimal.Decimal(high)]
            if fitting:
                return float(min(fitting, key=lambda each: abs(each - exact)))
    return float(f"{value:.8e}")


@functools.lru_cache(maxsize=1 << 16)
def finite_text(value: float) -> str:
    return repr(shortest(value))


def float_text(value: float, is_single: bool = True) -> str:
    """A number as JSON, which has none that are not finite."""
    if not math.isfinite(value):
        return '"nan"' if math.isnan(value) else '"inf"' if value > 0 else '"-inf"'
    if value == 0 or not is_single:
        return repr(value)
    return finite_text(value)


def floats_text(values) -> str:
    return "[" + ",".join(map(float_text, values)) + "]"


ENCODER = json.JSONEncoder(ensure_ascii=False)


def quoted(text: str) -> str:
    try:
        text.encode("utf-8")
    except UnicodeEncodeError:
        return one_line({"bytes": text.encode("utf-8", "surrogateescape").hex()})
    return ENCODER.encode(text)


class Ready(str):
    """JSON on one line."""


class Lines(list):
    """A list of which every item begins a line. Its items, like the members of Members, can be any of these."""


class Rows(list):
    """A list of which every item is Ready and has a line of its own."""


class Members(list):
    """An object of which every member begins a line; a list of pairs."""


def one_line(value: Any) -> str:
    """Ready, integers, truth values, texts, and lists and dictionaries of these."""
    kind = type(value)
    if kind is Ready:
        return value
    if kind is int:
        return str(value)
    if kind is bool:
        return "true" if value else "false"
    if kind is str:
        return quoted(value)
    if kind is dict:
        return "{" + ",".join([f'"{key}":{one_line(each)}' for key, each in value.items()]) + "}"
    return "[" + ",".join(map(one_line, value)) + "]"


def laid_out(value: Any, indent: str) -> str:
    """The text of any of these values. indent: that of the line on which it begins."""
    kind = type(value)
    if kind is Rows:
        items, brackets = value, "[]"
    elif kind is Lines:
        items, brackets = [laid_out(item, indent + "  ") for item in value], "[]"
    elif kind is Members:
        items, brackets = [f'"{key}": {laid_out(item, indent + "  ")}' for key, item in value], "{}"
    else:
        return one_line(value)
    if not items:
        return brackets
    inner = f"\n{indent}  "
    return brackets[0] + inner + f",{inner}".join(items) + f"\n{indent}{brackets[1]}"


class Dump:
    """A model as JSON, in the form of docs/format/dump.md."""

    def __init__(self, file: File, model: Model, numbers: bool = False, no_date: bool = False, storage: bool = False):
        self._file = file
        self._model = model
        self._with_numbers = numbers
        self._with_date = not no_date
        self._with_storage = storage
        self.damage: Optional[MoxError] = None  # Why the first of the parts asked for can't be read.

    def text(self) -> str:
        return "".join(self.pieces())

    def pieces(self) -> Iterator[str]:
        """The text in pieces, so that the whole need not be in memory."""
        top = Members([("fileVersion", self._file.version)])
        if self._with_storage:
            top += [("blocks", Lines(map(block_line, filter(is_claimed, self._file.blocks)))),
                    ("streams", Lines(map(self._stream, self._file.stream_names())))]
        top += [("saves", Lines(map(self._save, self._model.modifiers))),
                ("resultAttributes", self._model.result_attribute_count)]
        yield laid_out(top, "")[:-2] + ',\n  "nodes": ['
        separator = "\n    "
        for node in self._model.nodes:
            yield separator + laid_out(self._node(node), "    ")
            separator = ",\n    "
        yield "\n  ]\n}\n"

    def _or_unreadable(self, make: Callable[[], list]) -> list:
        """The members of a part of the file that can be damaged by itself."""
        try:
            return make()
        except MoxError as error:
            self.damage = self.damage or error
            return [("unreadable", error.code)]

    def _stream(self, name: str) -> Dict[str, Any]:
        return dict([("name", name), *self._or_unreadable(lambda: stream_members(self._file, name))])

    def _save(self, modifier: Modifier) -> Dict[str, str]:
        save = {
            "version": modifier.version, "sourceName": modifier.source_name, "sourceVersion": modifier.source_version,
            "formatVersion": modifier.format_version, "date": modifier.date, "computer": modifier.computer,
            "user": modifier.user, "comment": modifier.comment}
        if not self._with_date:
            del save["date"]
        return save

    def _node(self, node: Node) -> Members:
        members = Members([("id", node.id), ("parent", node.parent), ("name", node.name), ("type", node.type),
                           ("version", node.version)])
        if self._with_storage:
            members += [("previous", node.previous), ("next", node.next), ("children", node.children),
                        ("descriptor", node.light_position)]
        members += self._content(node)
        return members

    def _content(self, node: Node) -> list:
        content = node.content
        if isinstance(content, Group):
            return [("translation", Ready(floats_text(content.translation))),
                    ("rotation", Ready(floats_text(content.rotation))),
                    ("scale", Ready(floats_text(content.scale))), ("kind", content.kind),
                    ("attributes", attribute_rows(content.attributes))]
        if isinstance(content, Shape) and content.material:
            return [("material", material_line(content.material))]
        if isinstance(content, Geometry):
            return [("datasets", Lines(map(self._dataset, content.datasets)))]
        if isinstance(content, NodeSets):
            return self._node_sets(node, content)
        return []

    def _node_sets(self, node: Node, content: NodeSets) -> list:
        members: list = [("setCount", content.count)]
        if self._with_storage:
            members += [("bytes", content.size), ("position", content.position)]
        if self._with_numbers:
            members += self._or_unreadable(lambda: [("sets", Lines(
                Members([("name", name), ("members", pairs)]) for name, pairs in self._model.node_sets(node)))])
        return members

    def _dataset(self, dataset: Dataset) -> Members:
        members = Members([("name", dataset.name)])
        if STEP_SEPARATOR in dataset.key:
            members.append(("step", dataset.step))
        kind, element = dataset.variable_type, dataset.element_tag
        members += [("type", VARIABLE_TYPES.get(kind, f"type {kind}")),
                    ("element", ELEMENT_TYPES.get(element, f"element type {element}")),
                    ("vibration", dataset.vibration)]
        members += self._link(dataset) if dataset.is_link else self._holder(dataset)
        return members

    def _link(self, link: Dataset) -> list:
        target = {"node": link.link_node_id, "dataset": link.link_index}
        members = [("link", target), *self._or_unreadable(lambda: self._end_of(link, target))]
        if link.attributes:
            members.append(("attributes", attribute_rows(link.attributes)))
        return members

    def _end_of(self, link: Dataset, target: Dict[str, int]) -> list:
        holder = self._model.required_holder(link)
        end = {"node": holder.node_id, "dataset": holder.index}
        return [] if end == target else [("holder", end)]

    def _holder(self, dataset: Dataset) -> list:
        items = dataset.size // (4 * dataset.width) if dataset.width else 0
        members: list = [("shape", [items, dataset.width]), ("bytes", dataset.size)]
        if self._with_storage:
            members.append(("position", dataset.position))
        if any(value if isinstance(value, bool) else struct.pack("<f", value) != bytes(4) for value in dataset.reserved):
            members.append(("unknown", [value if isinstance(value, bool) else Ready(float_text(value))
                                        for value in dataset.reserved]))
        members.append(("attributes", attribute_rows(dataset.attributes)))
        if self._with_numbers:
            members += self._or_unreadable(lambda: [("numbers", number_rows(self._model.numbers(dataset), dataset.width))])
        return members


def is_claimed(block: Block) -> bool:
    """Whether a record is anything but one that no block has claimed, as every writer leaves it."""
    return (block.name.encode("utf-8", "surrogateescape") != EMPTY_BLOCK or block.number != (block.id + 1) % 256
            or block.length != 0 or block.flags != 0 or block.reserved != 0)


def block_line(block: Block) -> Dict[str, Any]:
    return {"id": block.id, "number": block.number, "name": block.name, "length": block.length, "flags": block.flags,
            "reserved": block.reserved, "position": block.position, "overwritten": block.is_overwritten}


def stream_members(file: File, name: str) -> list:
    stream, checksum = Stream(file, name), 0
    if stream.damage:
        raise stream.damage
    while stream.remaining:
        checksum = zlib.crc32(stream.read(min(stream.remaining, 1 << 20)), checksum)
    return [("bytes", stream.size), ("crc32", f"{checksum:08x}")]


def attribute_rows(attributes: Dict[str, Any]) -> Rows:
    ordered = sorted(attributes.items(), key=lambda item: item[0].encode("utf-8", "surrogateescape"))
    return Rows(one_line({"key": key, **attribute_member(value)}) for key, value in ordered)


def attribute_member(value: Any) -> Dict[str, Any]:
    """The name shows the kind."""
    if isinstance(value, Integer):
        return {"integer": int(value)}
    if isinstance(value, str):
        return {"text": value}
    is_single = isinstance(value, Float)
    return {"float" if is_single else "double": Ready(float_text(float(value), is_single))}


def material_line(material: Material) -> Dict[str, Any]:
    return {
        "version": material.version, "diffuse": Ready(floats_text(material.diffuse)),
        "specular": Ready(floats_text(material.specular)), "emissive": Ready(floats_text(material.emissive[:3])),
        "ambient": Ready(floats_text(material.ambient)), "transparency": Ready(float_text(material.transparency)),
        "shininess": Ready(float_text(material.shininess)), "flag": material.flag}


def number_rows(numbers: array.array, width: int) -> Rows:
    """A line for each item: a number, or a list of them if there are several columns."""
    texts = list(map(float_text if numbers.typecode == "f" else str, numbers))
    if width == 1:
        return Rows(texts)
    return Rows("[" + ",".join(texts[i:i + width]) + "]" for i in range(0, len(texts), max(width, 1)))


# --- The script -----------------------------------------------------------------------------------------------------


def main(arguments: Optional[List[str]] = None) -> int:
    parser = argparse.ArgumentParser(description="Prints the model in a mox file as JSON.")
    parser.add_argument("file", metavar="FILE")
    parser.add_argument("--numbers", action="store_true",
                        help="with the numbers of all datasets and the members of node sets")
    parser.add_argument("--no-date", action="store_true", help="without the date on which the file was saved")
    parser.add_argument("--storage", action="store_true",
                        help="with the blocks and the streams of the file, and the places in them")
    options = parser.parse_args(arguments)
    try:
        with File(options.file) as file:
            dump = Dump(file, Model(file), options.numbers, options.no_date, options.storage)
            for piece in dump.pieces():
                sys.stdout.buffer.write(piece.encode("utf-8"))
        sys.stdout.flush()
        if dump.damage:
            raise dump.damage
    except BrokenPipeError:
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())  # Otherwise the exit would complain again.
        return 1
    except (MoxError, OSError) as error:
        reason = error.strerror if isinstance(error, OSError) and error.strerror else error
        print(f"moxreader.py: {options.file}: {reason}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
