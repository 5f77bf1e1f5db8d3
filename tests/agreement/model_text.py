"""Everything that the Python reader finds in a file, in the same lines as the ModelText of the C++ reader."""

import array
import math
import struct
import sys
import zlib

import moxreader


def model_text(file):
    """The text of an open file. Raises moxreader.MoxError for anything wrong with it except its numbers."""
    model = moxreader.Model(file)
    lines = [line(file.version)]
    lines += [line(block.id, block.number, block.length, block.flags, block.reserved, block.position,
                   block.is_overwritten, block.name)
              for block in file.blocks]
    for name in file.stream_names():
        lines += numbers_or_lost(lambda: [stream_line(file, name)]) if name == "Heavy Data" else [stream_line(file, name)]
    lines += [line(info.version, info.source_name, info.source_version, info.format_version, info.date,
                   info.computer, info.user, info.comment) for info in model.modifiers]
    lines.append(line(model.result_attribute_count))
    for node in model.nodes:
        lines += node_lines(model, node)
    return "".join(lines)


def numbers_or_lost(make_lines):
    try:
        return list(make_lines())
    except moxreader.MoxError:
        return [LOST]


def stream_line(file, name):
    stream = moxreader.Stream(file, name)
    content = stream.read(stream.size)
    stream.require_end()
    return line(name, stream.size, zlib.crc32(content))


def node_lines(model, node):
    yield line(node.id, node.parent, node.previous, node.next, node.first_child, node.last_child, node.name,
               node.type, node.version, node.light_position)
    for child in node.children:
        yield line(child)
    content = node.content
    if isinstance(content, moxreader.Group):
        yield line(*content.translation, *content.rotation, *content.scale, content.kind)
        yield from attribute_lines(content.attributes)
    elif isinstance(content, moxreader.Shape):
        yield material_line(content.material)
    elif isinstance(content, moxreader.Geometry):
        for dataset in content.datasets:
            yield from dataset_lines(model, dataset)
    elif isinstance(content, moxreader.NodeSets):
        yield line(content.count, content.position, content.size)
        yield from numbers_or_lost(lambda: set_lines(model, node))


def set_lines(model, node):
    for name, members in model.node_sets(node):
        yield line(name)
        for first, second in members:
            yield line(first, second)


def material_line(material):
    return line(material.version, *material.diffuse, *material.specular, *material.emissive[:3], *material.ambient,
                material.transparency, material.shininess, material.flag)


def dataset_lines(model, dataset):
    reserved = dataset.reserved or (False, False, 0.0, 0.0, False)
    yield line(dataset.node_id, dataset.index, dataset.key, dataset.name, dataset.step, dataset.variable_type,
               dataset.element_tag, dataset.is_link, dataset.link_node_id, dataset.link_index, dataset.size,
               dataset.width, *reserved, dataset.position, dataset.vibration)
    yield from attribute_lines(dataset.attributes)
    if dataset.is_link:
        holder = model.holder(dataset)
        yield line(holder.node_id, holder.index) if holder else line("no end")
    else:
        yield from numbers_or_lost(lambda: [big_endian(model.numbers(dataset)).hex() + "\n"])


def big_endian(numbers):
    bits = array.array(numbers.typecode, numbers)
    if sys.byteorder == "little":
        bits.byteswap()
    return bits.tobytes()


def attribute_lines(attributes):
    kinds = {moxreader.Integer: 0, moxreader.Float: 1, str: 2, float: 3}
    for key, value in sorted(attributes.items(), key=lambda item: to_bytes(item[0])):
        kind = kinds[type(value)]
        yield line(key, kind, double_word(value) if kind == 3 else value)


class Word(str):
    """A word that goes into the text unchanged."""


def double_word(number):
    return Word("nan" if math.isnan(number) else struct.pack(">d", number).hex())


def line(*words):
    return "".join(map(word, words)) + "\n"


def word(value):
    if isinstance(value, Word):
        return value + " "
    if isinstance(value, str):
        plain = (chr(byte) if 0x20 <= byte <= 0x7E and byte not in b'"\\' else f"\\x{byte:02x}"
                 for byte in to_bytes(value))
        return '"' + "".join(plain) + '" '
    if isinstance(value, float):
        return ("nan" if math.isnan(value) else struct.pack(">f", value).hex()) + " "
    return f"{int(value)} "


def to_bytes(text):
    return text.encode("utf-8", "surrogateescape")


LOST = line("lost")
